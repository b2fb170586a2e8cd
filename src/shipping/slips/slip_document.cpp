#include "shipping/slips/slip_document.h"

#include "printing/forms/form_files.h"
#include "printing/forms/form_sheets.h"
#include "printing/print_offsets.h"
#include "shipping/slips/label_places.h"
#include "shipping/slips/shipping_form.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

// What the clerk moves by, in the measure of layouts: by whole twips.
QPointF movedBy(const workspace::Settings &settings)
{
    return QPointF(printing::shipOffsetTwips(settings)) / printing::twipsPerMillimetre;
}

QHash<QString, double> shiftsOf(const QPointF &moved)
{
    return {{u"kuOffsetX"_s, moved.x()}, {u"kuOffsetY"_s, moved.y()}};
}

bool hasNotice(const workspace::Panel &panel, Sending sending)
{
    return sending == Sending::MailOrder ? panel.deliveryNoticeMailOrder : panel.deliveryNotice;
}

base::Error noSuchForm(const QString &form)
{
    return base::Error{u"「%1」という送り状の用紙はありません。用紙を選び直してください。"_s.arg(form)};
}

QString titleOf(const std::vector<Shipment> &shipments)
{
    const QString first = u"送り状 "_s + shipments.front().consignee.name1.trimmed();
    return shipments.size() == 1 ? first : first + u" ほか %1 件"_s.arg(shipments.size() - 1);
}

QString remarkOn(const std::vector<Shipment> &shipments, const QString &complaint)
{
    QStringList remarks{complaint};
    for (const Shipment &shipment : shipments)
        remarks += slipRemarks(shipment);
    remarks.removeAll(QString());
    remarks.removeDuplicates();
    return remarks.join(u'\n');
}

base::Result<std::vector<printing::Sheet>> pageOfPlaces(const printing::Form &form, const LabelSheet &sheet,
                                                        const std::vector<printing::FormValues> &values,
                                                        int place, const QPointF &moved)
{
    auto pages = labelPages(
        sheet, values.size(), place,
        [&](std::size_t label) { return printing::formSheets(form, values[label]).front(); }, moved);
    if (pages && pages->size() > 1)
        return base::Error{u"%1 枚のラベルは、「%2」の %3 番目からの一枚には入りません。"_s.arg(values.size())
                               .arg(sheet.name)
                               .arg(place)};
    return pages;
}

// Every place of \a sheet with \a content, which becomes that sheet.
void fill(const LabelSheet &sheet, printing::Sheet &content, const QPointF &moved)
{
    const printing::Sheet label = content;
    content = labelPages(
                  sheet, static_cast<std::size_t>(sheet.places()), 1, [&label](std::size_t) { return label; },
                  moved)
                  ->front();
}

base::Result<std::vector<printing::Sheet>> sheetsOf(const workspace::Workspace &workspace,
                                                    const std::vector<Shipment> &shipments,
                                                    const printing::Form &form, bool notice, int place)
{
    const QPointF moved = movedBy(workspace.settings);
    std::vector<printing::FormValues> values;
    for (const Shipment &shipment : shipments)
        values.push_back(slipValues(shipment, notice));
    const QString &method = shipments.front().method;
    if (const auto sheet = sheetOfForm(method, workspace.settings))
        return pageOfPlaces(form, *sheet, values, place > 0 ? place : nextPlace(workspace.settings, method),
                            moved);
    std::vector<printing::Sheet> sheets;
    for (printing::FormValues &each : values) {
        each.shifts = shiftsOf(moved);
        for (printing::Sheet &sheet : printing::formSheets(form, each))
            sheets.push_back(std::move(sheet));
    }
    if (isCarriersForm(method) && workspace.panel.slipPaperDeclared)
        std::ranges::for_each(sheets, printing::setSlipPaper);
    return sheets;
}

QStringList wishesOf(const Shipment &shipment)
{
    QStringList wishes;
    if (!shipment.timeSlot.isEmpty())
        wishes << u"時間帯"_s;
    if (!shipment.cooling.isEmpty())
        wishes << u"クール"_s;
    if (shipment.parcels > 1)
        wishes << u"個数"_s;
    return wishes;
}

QStringList textsOn(const printing::Form &form, const printing::FormValues &values)
{
    QStringList texts;
    const std::vector<printing::Sheet> sheets = printing::formSheets(form, values);
    for (const printing::Sheet &sheet : sheets) {
        for (const printing::TextItem &item : sheet.texts)
            texts << item.text;
    }
    return texts;
}

} // namespace

base::Result<printing::Document> slipsDocument(const workspace::Workspace &workspace,
                                               const std::vector<Shipment> &shipments, Sending sending,
                                               int place)
{
    if (shipments.empty())
        return base::Error{u"印刷する送り状がありません。"_s};
    const QString &method = shipments.front().method;
    const QString layout = slipLayout(method);
    if (layout.isEmpty())
        return noSuchForm(method);
    const printing::FormFile file = printing::loadForm(workspace.applicationFolder(), layout, slipItems());
    auto sheets = sheetsOf(workspace, shipments, file.form, hasNotice(workspace.panel, sending), place);
    if (!sheets)
        return sheets.error();
    printing::Document document;
    document.title = titleOf(shipments);
    document.remark = remarkOn(shipments, file.complaint);
    document.purpose = printing::Purpose::ShippingSlips;
    document.onPrintersPaper = isCarriersForm(method) && !workspace.panel.slipPaperDeclared;
    document.sheets = std::move(*sheets);
    return document;
}

base::Result<printing::Document> slipDocument(const workspace::Workspace &workspace, const Shipment &shipment,
                                              Sending sending, int place)
{
    return slipsDocument(workspace, {shipment}, sending, place);
}

// Users lay forms out anew: only the form itself can tell.
QStringList wishesNotPrinted(const workspace::Workspace &workspace, const Shipment &shipment)
{
    QStringList wishes = wishesOf(shipment);
    const QString layout = slipLayout(shipment.method);
    if (wishes.isEmpty() || layout.isEmpty())
        return {};
    const printing::Form form = printing::loadForm(workspace.applicationFolder(), layout, slipItems()).form;
    const printing::FormValues values = slipValues(shipment, false);
    const QStringList printed = textsOn(form, values);
    wishes.removeIf([&](const QString &wish) {
        printing::FormValues others = values;
        others.items.remove(wish);
        return textsOn(form, others) != printed;
    });
    return wishes;
}

std::vector<printing::AdjustableForm> adjustableSlips(const workspace::Workspace &workspace)
{
    const QPointF moved = movedBy(workspace.settings);
    const bool isDeclared = workspace.panel.slipPaperDeclared;
    std::vector<printing::AdjustableForm> forms;
    QStringList layouts;
    for (const QString &form : shippingForms()) {
        const QString layout = slipLayout(form);
        if (layouts.contains(layout))
            continue;
        layouts << layout;
        const bool isCarriers = isCarriersForm(form);
        forms.push_back({.caption = u"送り状　"_s + form,
                         .fileName = layout,
                         .items = &slipItems(),
                         .otherCase = slipItemsOfOtherCases(),
                         .shifts = shiftsOf(moved),
                         .purpose = printing::Purpose::ShippingSlips,
                         .onPrintersPaper = isCarriers && !isDeclared});
        if (isCarriers && isDeclared)
            forms.back().lay = printing::setSlipPaper;
        if (const auto sheet = sheetOfForm(form, workspace.settings))
            forms.back().lay = [sheet = *sheet, moved](printing::Sheet &content) {
                fill(sheet, content, moved);
            };
    }
    return forms;
}

} // namespace shipping
