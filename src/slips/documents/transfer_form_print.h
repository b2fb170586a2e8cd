#pragma once

#include "base/progress.h"
#include "base/result.h"
#include "printing/queue/print_system.h"
#include "printing/renderer.h"
#include "slips/documents/transfer_form.h"

#include <optional>
#include <vector>

class QWidget;

// How a screen has postal transfer forms printed. After a single document:
//
//     slips::printTransferForm(workspace(), this, {customer, amount});
//
// For a bulk run, which asks for the settings once, either all at once after the run (printTransferForms), or
// each behind its own document:
//
//     const auto run = slips::askTransferRun(workspace(), this, requests);   // none: the clerk left it
//     ...
//     const base::Result<int> job = run->print({customer, amount});          // a job of its own
namespace slips
{

/// Who is to pay what.
struct TransferRequest
{
    qint64 customer = 0; // 納品先ID
    double amount = 0;   // yen
};

/// Opens DialogOderEX for one form, from which it is previewed, printed or saved as PDF. An amount that no
/// form can bear, or a customer deleted meanwhile, is told in its place.
/// \return whether there is a form now
bool printTransferForm(workspace::Workspace &workspace, QWidget *parent, const TransferRequest &request);

/// Forms of a bulk run, after their settings and the printer were asked for.
class TransferRun
{
public:
    TransferRun(workspace::Workspace &workspace, printing::JobSettings settings);

    /// Prints one form as a job of its own. \return the job's number. Fails where the amount cannot be
    /// printed, the customer is gone, or the queue takes nothing; then nothing of it comes out.
    [[nodiscard]] base::Result<int> print(const TransferRequest &request,
                                          const base::Progress &progress = base::unwatched) const;

private:
    workspace::Workspace *m_workspace;
    printing::JobSettings m_settings;
};

/// Opens DialogOderEX once for all of \a requests, and then asks for the printer.
/// \return nothing where the clerk leaves it, or no form of them could be printed, which is told
std::optional<TransferRun> askTransferRun(workspace::Workspace &workspace, QWidget *parent,
                                          const std::vector<TransferRequest> &requests);

/// Asks as askTransferRun() and prints all forms, a job each, with progress; stopping leaves the rest
/// cancelled. \return the number of each one's job in their order; empty where the clerk left it
std::vector<base::Result<int>> printTransferForms(workspace::Workspace &workspace, QWidget *parent,
                                                  const std::vector<TransferRequest> &requests);

/// \a form ready for the renderer, on the paper and with the texts' place that the settings keep. The remark
/// tells what is wrong with a layout of the shop's own, in whose place the built-in one is.
base::Result<printing::Document> transferDocument(const workspace::Workspace &workspace,
                                                  const TransferForm &form);

/// What the shop's settings keep of the texts.
TransferTexts transferTexts(const workspace::Settings &settings);

/// How far the settings move what layouts call by their names, millimetres.
QHash<QString, double> transferShifts(const workspace::Settings &settings);

} // namespace slips
