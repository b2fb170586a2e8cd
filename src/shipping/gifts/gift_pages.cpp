#include "shipping/gifts/gift_pages.h"

#include "printing/list_sheet.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const QString lyingPaper = u"A4無地 横"_s;

printing::ListPaper listPaper(const QString &paper)
{
    return paper == lyingPaper ? printing::ListPaper::Lying : printing::ListPaper::Upright;
}

void move(printing::Sheet &sheet, const QPoint &offset)
{
    for (printing::Box &box : sheet.boxes) {
        box.x += offset.x();
        box.y += offset.y();
    }
    for (printing::Line &line : sheet.lines) {
        line.x1 += offset.x();
        line.x2 += offset.x();
        line.y1 += offset.y();
        line.y2 += offset.y();
    }
    for (printing::TextItem &text : sheet.texts) {
        text.x += offset.x();
        text.y += offset.y();
    }
}

// One after the other, each page made when it is looked at.
printing::Sheets joined(std::vector<printing::Sheets> parts, const QPoint &offset)
{
    std::size_t count = 0;
    for (const printing::Sheets &part : parts)
        count += part.size();
    const auto all = std::make_shared<const std::vector<printing::Sheets>>(std::move(parts));
    return {count, [all, offset](std::size_t index) {
                auto part = all->begin();
                for (; index >= part->size(); ++part)
                    index -= part->size();
                printing::Sheet sheet = (*part)[index];
                move(sheet, offset);
                return sheet;
            }};
}

printing::Sheets pagesOf(base::Report report, const QString &date, const GiftListLook &look)
{
    leaveColumnsOut(report, look.leftOut);
    return printing::listSheets(std::move(report), date, listPaper(look.paper));
}

} // namespace

const QStringList &giftListPapers()
{
    static const QStringList papers{u"A4無地"_s, lyingPaper};
    return papers;
}

printing::Sheets senderPages(const std::vector<Shipment> &shipments, const GiftListQuery &query,
                             const QString &date, const GiftListLook &look)
{
    std::vector<printing::Sheets> parts;
    if (!look.pageEach) {
        parts.push_back(pagesOf(senderList(shipments, query, look.hidesAmounts), date, look));
        return joined(std::move(parts), look.offset);
    }
    for (const SenderGifts &sender : bySender(shipments))
        parts.push_back(pagesOf(senderList(sender.shipments, query, look.hidesAmounts), date, look));
    return joined(std::move(parts), look.offset);
}

printing::Sheets shipmentPages(const std::vector<Shipment> &shipments, const GiftListQuery &query,
                               const QString &date, const GiftListLook &look)
{
    std::vector<printing::Sheets> parts;
    parts.push_back(pagesOf(shipmentList(shipments, query, look.hidesAmounts), date, look));
    return joined(std::move(parts), look.offset);
}

} // namespace shipping
