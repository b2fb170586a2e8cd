#include "slips/documents/delivery_note_print.h"

#include "printing/forms/form_files.h"
#include "printing/frmPreview.h"
#include "slips/documents/delivery_note.h"
#include "slips/documents/note_document.h"
#include "slips/issued/issued_documents.h"
#include "slips/tax_rates_of.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

QString remarksOn(const DeliveryNoteData &note, const QString &complaint)
{
    QStringList remarks{roomRemark(note.rates), complaint};
    remarks.removeAll(QString());
    return remarks.join(u'\n');
}

} // namespace

base::Result<printing::Document> deliveryNoteDocument(workspace::Workspace &workspace,
                                                      const NoteRequest &request)
{
    DeliveryNoteOptions options{request.inclusive, std::nullopt, request.memo, companyNameOf(workspace),
                                noteOffsets(printing::noteSteps(workspace.settings))};
    options.includedOnBill = workspace.settings.checked(workspace::keys::includedOnBill);
    if (!request.closed) {
        const auto rates = taxRatesOf(workspace);
        if (!rates)
            return rates.error();
        options.closing = *rates;
    }
    auto note = readDeliveryNote(workspace.connection, request.slipId, options);
    if (!note)
        return note.error();
    printing::Document document;
    document.title = u"納品書 "_s + note->slip.number;
    document.purpose = printing::Purpose::DeliveryNotesAndBills;
    const printing::FormFile layout = printing::loadForm(
        workspace.applicationFolder(),
        deliveryNoteLayout(workspace.panel.deliveryPaper, request.designatedForm), deliveryNoteItems());
    document.remark = remarksOn(*note, layout.complaint);
    note->companyName = addCompanyName(document, workspace, options.companyName);
    document.sheets = deliveryNote(*note, layout.form);
    document.keep = keeperOf(workspace, describedDocument(QString::fromUtf16(deliveryNoteKind), book::sale,
                                                          note->slip, note->total));
    return document;
}

bool printDeliveryNote(workspace::Workspace &workspace, QWidget *parent, const NoteRequest &request)
{
    auto document = deliveryNoteDocument(workspace, request);
    if (!document) {
        ui::prompts::inform(parent, document.error().text);
        return false;
    }
    return printing::showPreview(workspace, parent, std::move(*document));
}

} // namespace slips
