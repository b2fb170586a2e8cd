#pragma once

#include "shipping/slips/shipment.h"

#include <QObject>

class QAbstractButton;
class QLabel;
class QLineEdit;

namespace registers
{
class PostalBoxes;
}

namespace workspace
{
class Workspace;
}

namespace shipping
{

/// The boxes of one of the two parties of a slip, and the customer whom they were filled with. What is typed
/// is brought into form; postal code and address fill each other in.
class PartyBoxes : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QLineEdit *boxes[6]; // in the order of Party's members
        QLabel *link;        // says which customer it is
        QAbstractButton *lookUp;
        QAbstractButton *remark; // that the code is the one of a whole city
    };
    PartyBoxes(const Controls &controls, QObject *parent);

    void connectPostalCodes(workspace::Workspace &workspace);
    /// Does now what leaving the boxes leaves to do.
    void settle();

    /// \a id: the customer whose they are, 0 for one of whom no register knows.
    void fill(const Party &party, qint64 id);
    [[nodiscard]] Party party() const;
    /// The customer whom they were filled with, as long as his first name line says the same.
    [[nodiscard]] qint64 id() const;
    /// Whether something stands there that was typed, and not put there.
    [[nodiscard]] bool isTyped() const;

private:
    void showLink();

    Controls m_controls;
    registers::PostalBoxes *m_postal = nullptr;
    Party m_filled;
    qint64 m_id = 0;
};

/// Brings what was typed into \a box into the form that \a formed makes of it, when the cursor leaves it;
/// passing through is no edit.
void bringIntoForm(QLineEdit *box, QString (*formed)(const QString &));

} // namespace shipping
