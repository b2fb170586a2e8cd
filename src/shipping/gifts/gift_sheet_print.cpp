#include "shipping/gifts/gift_sheet_print.h"

#include "printing/forms/form_files.h"
#include "printing/frmPreview.h"
#include "printing/print_offsets.h"
#include "shipping/gifts/gift_sheet.h"
#include "ui/prompts.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

QHash<QString, double> shiftsIn(const workspace::Settings &settings)
{
    const auto steps = [&settings](const printing::OffsetRule &rule) {
        return double(printing::offsetFrom(settings.text(rule.key), rule));
    };
    return {{u"stOffsetAppX"_s, steps(printing::giftRight)}, {u"stOffsetAppY"_s, steps(printing::giftDown)}};
}

} // namespace

base::Result<printing::Document> giftSheetDocument(workspace::Workspace &workspace,
                                                   const std::vector<Shipment> &parcels)
{
    const auto shop = masters::ownCompany(workspace.connection);
    if (!shop)
        return shop.error();
    const GiftSheet sheet{shop->value_or(masters::OwnCompany()), parcels, workspace.panel.employeeName};
    const printing::FormFile layout = printing::loadForm(
        workspace.applicationFolder(), QString::fromUtf16(giftSheetLayout), giftSheetItems());
    printing::Document document;
    document.title = u"贈答品承り票 "_s + parcels.front().sender.name1;
    document.remark = layout.complaint;
    document.purpose = printing::Purpose::GiftSheets;
    document.sheets = giftSheetPages(sheet, layout.form, shiftsIn(workspace.settings));
    return document;
}

void showGiftSheet(workspace::Workspace &workspace, QWidget *parent, const std::vector<Shipment> &parcels)
{
    auto document = giftSheetDocument(workspace, parcels);
    if (document)
        printing::showPreview(workspace, parent, std::move(*document));
    else
        ui::prompts::inform(parent, document.error().text);
}

printing::AdjustableForm adjustableGiftSheet(const workspace::Settings &settings)
{
    return {.caption = u"贈答品承り票　A4 無地"_s,
            .fileName = QString::fromUtf16(giftSheetLayout),
            .items = &giftSheetItems(),
            .shifts = shiftsIn(settings),
            .purpose = printing::Purpose::GiftSheets};
}

} // namespace shipping
