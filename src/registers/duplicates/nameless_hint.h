#pragma once

#include "registers/duplicates/nameless_rows.h"

#include <QObject>
#include <QTimer>

#include <optional>

class QPushButton;

namespace registers
{

/// Shows a button for as long as a register has rows without a name, and how many: counted while nothing else
/// is to be done.
class NamelessHint : public QObject
{
    Q_OBJECT

public:
    /// Lives as long as \a button, which is hidden at first.
    NamelessHint(QPushButton *button, db::Connection &connection, book::Party party);

    /// After what may have changed it.
    void countAnew();

private:
    void readOn();

    QPushButton *m_button;
    db::Connection &m_connection;
    const book::Party m_party;
    std::optional<NamelessCount> m_count;
    QTimer m_timer;
};

} // namespace registers
