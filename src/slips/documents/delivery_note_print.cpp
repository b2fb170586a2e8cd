#include "slips/documents/delivery_note_print.h"

#include "printing/forms/form_files.h"
#include "printing/frmPreview.h"
#include "slips/documents/delivery_note.h"
#include "slips/documents/note_document.h"
#include "slips/tax_rates_of.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

const QString plainPaper = u"A4 無地"_s;

NoteOffsets offsetsIn(const workspace::Settings &settings)
{
    return {settings.integer(workspace::keys::offsetB), settings.integer(workspace::keys::offsetL),
            settings.integer(workspace::keys::offsetF)};
}

// The form the note was meant for, where it is not plain paper.
QString formWithoutLayout(const workspace::Workspace &workspace, const NoteRequest &request)
{
    if (request.designatedForm)
        return u"指定納品書"_s;
    const QString paper = workspace.panel.deliveryPaper;
    return paper.isEmpty() || paper == plainPaper ? QString() : paper;
}

} // namespace

base::Result<printing::Document> deliveryNoteDocument(workspace::Workspace &workspace,
                                                      const NoteRequest &request)
{
    DeliveryNoteOptions options{request.inclusive, std::nullopt, request.memo, companyNameOf(workspace),
                                offsetsIn(workspace.settings)};
    if (!request.closed)
        options.closing = taxRatesOf(workspace);
    const auto note = readDeliveryNote(workspace.connection, request.slipId, options);
    if (!note)
        return note.error();
    printing::Document document;
    document.title = u"納品書 "_s + note->slip.number;
    document.purpose = printing::Purpose::DeliveryNotesAndBills;
    const printing::FormFile layout = printing::loadForm(
        workspace.applicationFolder(), QString::fromUtf16(plainDeliveryNoteLayout), deliveryNoteItems());
    document.sheets = deliveryNote(*note, layout.form);
    QStringList remarks;
    if (const QString form = formWithoutLayout(workspace, request); !form.isEmpty())
        remarks << u"「%1」の用紙に合わせた印刷はまだできません。無地の A4 用紙に印刷してください。"_s.arg(
            form);
    if (!layout.complaint.isEmpty())
        remarks << layout.complaint;
    document.remark = remarks.join(u'\n');
    if (const base::Status named = addCompanyName(document, workspace, options.companyName); !named)
        return named.error();
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
