#include "slips/documents/estimate_print.h"

#include "slips/documents/DialogMitsumori.h"
#include "slips/documents/estimate.h"
#include "slips/documents/note_document.h"
#include "slips/tax_rates_of.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QStringList>

namespace slips
{

namespace
{

QString remarksOf(const EstimateRequest &request, const book::Slip &slip)
{
    QStringList remarks;
    for (const QString &remark : {request.memo, request.remark1, request.remark2}) {
        if (!remark.trimmed().isEmpty())
            remarks << remark;
    }
    return remarks.isEmpty() ? slip.memo : remarks.join(u'\n');
}

} // namespace

bool printEstimate(workspace::Workspace &workspace, QWidget *parent, const EstimateRequest &request)
{
    EstimateReading reading{request.inclusive, std::nullopt};
    if (!request.closed) {
        const auto rates = taxRatesOf(workspace);
        if (!rates) {
            ui::prompts::inform(parent, rates.error().text);
            return false;
        }
        reading.closing = *rates;
    }
    auto data = readEstimate(workspace.connection, request.slipId, reading);
    if (!data) {
        ui::prompts::inform(parent, data.error().text);
        return false;
    }
    data->companyName = companyNameOf(workspace);
    data->terms.remarks = remarksOf(request, data->slip);
    DialogMitsumori dialog(workspace, std::move(*data), parent);
    dialog.exec();
    return dialog.isIssued();
}

} // namespace slips
