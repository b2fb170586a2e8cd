#pragma once

#include "printing/queue/print_system.h"
#include "shipping/slips/slip_document.h"

#include <QHash>

class QWidget;

// How a screen has slips printed:
//
//     SlipPrinter m_printer{workspace, Sending::MailOrder};        // one a window
//     ...
//     if (!m_printer.prepare(this, {shipment}))                    // asks for the printer, the first time
//         return;
//     const auto issued = m_printer.issue(shipment, Record::Add);  // printed and in the history, or neither
namespace shipping
{

/// What becomes of the history when a slip is printed: a row more, its row written over, or nothing.
enum class Record { Add, Update, None };

class SlipPrinter
{
public:
    explicit SlipPrinter(workspace::Workspace &workspace, Sending sending = Sending::Other);

    /// Asks for printer, bin and copies, once for each form as long as the window is open and the settings of
    /// slips keep their printer and its paper, or \a again; and whether what cannot be printed as it ought to
    /// is to be printed all the same. \return whether \a shipments may be printed now; what keeps them from
    /// it was told
    bool prepare(QWidget *parent, const std::vector<Shipment> &shipments, bool again = false);

    /// Prints slips of \a form by \a settings from now on, without asking.
    void take(const QString &form, const printing::JobSettings &settings);

    /// Shows \a shipment as it would be printed; it can be saved as PDF, but not be printed, from there.
    void preview(QWidget *parent, const Shipment &shipment);

    /// Prints \a shipment as a job of its own and records it, as one action: where the queue takes no job, or
    /// the row cannot be written, neither is done. \return the shipment as its row stands now. Fails as
    /// changeShipment() does, too.
    base::Result<Shipment> issue(const Shipment &shipment, Record record);

    /// As issue() for several labels or tags that go onto one sheet, as one job; onto as many sheets of the
    /// other forms.
    base::Result<std::vector<Shipment>> issueTogether(const std::vector<Shipment> &shipments, Record record);

    /// How many of the \a shipments from \a first on are printed together: all that the rest of a sheet of
    /// labels or tags takes, else one.
    [[nodiscard]] std::size_t countTogether(const std::vector<Shipment> &shipments, std::size_t first) const;

private:
    struct Choice
    {
        printing::JobSettings settings;
        bool isDeclared = false; // the paper of slips, when it was asked
        QString printer;         // that the settings kept for slips then
    };

    bool choose(QWidget *parent, const std::vector<Shipment> &shipments);
    bool mayPrint(QWidget *parent, const std::vector<Shipment> &shipments) const;
    [[nodiscard]] const printing::JobSettings *settingsFor(const QString &form) const;
    base::Result<std::vector<Shipment>> recordAll(const std::vector<Shipment> &shipments, Record record);
    base::Error takenBack(const base::Error &error, int job, const printing::JobSettings &settings);

    workspace::Workspace &m_workspace;
    const Sending m_sending;
    QHash<QString, Choice> m_choices; // by form
};

} // namespace shipping
