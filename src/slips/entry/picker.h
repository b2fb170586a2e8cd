#pragma once

#include <QObject>

class QComboBox;

namespace slips
{

/// Makes a drop-down of names quick to type in: any part of a name finds it, and Enter takes the name marked
/// in the list and goes on to the next box at once. A text that is not in the list stays as typed.
class Picker : public QObject
{
    Q_OBJECT

public:
    /// Lives as long as \a box.
    explicit Picker(QComboBox *box);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QComboBox *m_box;
};

} // namespace slips
