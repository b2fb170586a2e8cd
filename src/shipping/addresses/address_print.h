#pragma once

#include "printing/queue/print_system.h"
#include "printing/renderer.h"
#include "shipping/addresses/address_form.h"
#include "shipping/addresses/address_run.h"

#include <optional>

class QWidget;

// What both dialogs of address printing do with their addresses.
namespace shipping
{

/// What is printed, on what, and whose printer and font it is printed with.
struct AddressJob
{
    std::vector<Addressee> addressees;
    AddressSetup setup;
    printing::Purpose purpose = printing::Purpose::Addresses;
};

/// What \a choice and \a style mean, with the own company as it is registered, and the settings' offsets and
/// free label.
base::Result<AddressSetup> addressSetup(workspace::Workspace &workspace, const AddressChoice &choice,
                                        const AddressStyle &style);

/// Ready for the renderer. The remark tells of postal codes that cannot be read, and of a layout of the
/// shop's own that is not used.
base::Result<printing::Document> addressDocument(const workspace::Workspace &workspace,
                                                 const AddressJob &job);

/// Shows it, for looking and for PDF: what is printed is printed by runAddresses(), with its marks.
void previewAddresses(workspace::Workspace &workspace, QWidget *parent, const AddressJob &job);

/// Asks for the printer, standing at \a printer or else at the purpose's own. Nothing where the clerk leaves
/// it, or nothing can be printed, which is told.
std::optional<printing::JobSettings> askAddressPrinter(workspace::Workspace &workspace, QWidget *parent,
                                                       const AddressJob &job, const QString &printer);

/// Prints with progress; the label sheet's next place is kept. See printAddresses().
AddressRunOutcome runAddresses(workspace::Workspace &workspace, QWidget *parent, const AddressJob &job,
                               const printing::JobSettings &settings);

} // namespace shipping
