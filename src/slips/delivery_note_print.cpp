#include "slips/delivery_note_print.h"

#include "app/settings.h"
#include "app/workspace.h"
#include "printing/frmPreview.h"
#include "slips/delivery_note.h"
#include "slips/note_document.h"
#include "ui/prompts.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

const QString plainPaper = u"A4 無地"_s;

NoteOffsets offsetsIn(const app::Settings &settings)
{
    return {settings.integer(app::keys::offsetB), settings.integer(app::keys::offsetL),
            settings.integer(app::keys::offsetF)};
}

// The form the note was meant for, where it is not plain paper.
QString formWithoutLayout(const app::Workspace &workspace, const NoteRequest &request)
{
    if (request.designatedForm)
        return u"指定納品書"_s;
    const QString paper = workspace.panel.deliveryPaper;
    return paper.isEmpty() || paper == plainPaper ? QString() : paper;
}

} // namespace

db::Result<printing::Document> deliveryNoteDocument(app::Workspace &workspace, const NoteRequest &request)
{
    DeliveryNoteOptions options{request.inclusive, std::nullopt, request.memo, companyNameOf(workspace),
                                offsetsIn(workspace.settings)};
    if (!request.closed)
        options.closingRate = workspace.panel.taxRate;
    const auto note = readDeliveryNote(workspace.connection, request.slipId, options);
    if (!note)
        return note.error();
    printing::Document document;
    document.title = u"納品書 "_s + note->slip.number;
    document.purpose = printing::Purpose::DeliveryNotesAndBills;
    document.sheets = deliveryNote(*note);
    if (const QString form = formWithoutLayout(workspace, request); !form.isEmpty())
        document.remark =
            u"「%1」の用紙に合わせた印刷はまだできません。無地の A4 用紙に印刷してください。"_s.arg(form);
    if (const db::Status named = addCompanyName(document, workspace, options.companyName); !named)
        return named.error();
    return document;
}

void printDeliveryNote(app::Workspace &workspace, QWidget *parent, const NoteRequest &request)
{
    auto document = deliveryNoteDocument(workspace, request);
    if (!document) {
        ui::prompts::inform(parent, document.error().text);
        return;
    }
    printing::showPreview(workspace, parent, std::move(*document));
}

} // namespace slips
