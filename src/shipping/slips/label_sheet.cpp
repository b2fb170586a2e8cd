#include "shipping/slips/label_sheet.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr QSizeF paper(210, 297);
constexpr double labelInset = 4; // labels lie on their backing a little askew
constexpr double paperEdge = 8;

LabelSheet labels(const QString &name, int across, int down, QSizeF label, QPointF first, QPointF pitch)
{
    return {name,      across,    down,      label.width(), label.height(),
            first.x(), first.y(), pitch.x(), pitch.y(),     labelInset};
}

/// Moves the elements of a sheet, and draws them out.
class Placing
{
public:
    Placing(const printing::Sheet &content, const QRectF &room)
        : m_left(printing::twipsFromMillimetres(room.left()))
        , m_top(printing::twipsFromMillimetres(room.top()))
        , m_across(room.width() / content.readWidth())
        , m_down(room.height() / content.readHeight())
        , m_type(std::min(m_across, m_down))
    {}

    [[nodiscard]] printing::TextItem operator()(printing::TextItem item) const
    {
        move(item.x, item.y);
        item.points *= m_type;
        item.room *= item.vertical ? m_down : m_across;
        return item;
    }
    [[nodiscard]] printing::Line operator()(printing::Line line) const
    {
        move(line.x1, line.y1);
        move(line.x2, line.y2);
        return line;
    }
    // A box and a slot are measured alike.
    template <class Area>
    [[nodiscard]] Area operator()(Area area) const
    {
        move(area.x, area.y);
        area.width *= m_across;
        area.height *= m_down;
        return area;
    }

private:
    void move(double &x, double &y) const
    {
        x = m_left + x * m_across;
        y = m_top + y * m_down;
    }

    double m_left;
    double m_top;
    double m_across;
    double m_down;
    double m_type;
};

void put(printing::Sheet &page, const printing::Sheet &content, const QRectF &room)
{
    const Placing placed(content, room);
    const auto add = [&placed](auto &into, const auto &elements) {
        for (const auto &element : elements)
            into.push_back(placed(element));
    };
    add(page.boxes, content.boxes);
    add(page.lines, content.lines);
    add(page.texts, content.texts);
    add(page.richTexts, content.richTexts);
}

printing::Sheet emptyPage()
{
    printing::Sheet page;
    page.setCutPaper(paper.width(), paper.height());
    page.origin = printing::Origin::PaperEdge;
    return page;
}

} // namespace

const std::vector<LabelSheet> &labelSheets()
{
    static const std::vector<LabelSheet> sheets{
        labels(u"12 面"_s, 2, 6, {86.4, 42.3}, {18.6, 21.2}, {86.4, 42.3}),
        labels(u"12 面（間隔あり）"_s, 2, 6, {84, 42}, {19, 22.5}, {88, 42}),
        labels(u"18 面"_s, 3, 6, {70, 42.3}, {0, 21.2}, {70, 42.3}),
        labels(u"18 面（間隔あり）"_s, 3, 6, {63.5, 46.6}, {7.2, 8.7}, {66, 46.6}),
        labels(u"24 面"_s, 3, 8, {66, 33.9}, {6, 12.9}, {66, 33.9}),
        labels(u"24 面（間隔あり）"_s, 3, 8, {64, 33.9}, {6.5, 12.9}, {66.5, 33.9}),
        labels(u"24 面（余白なし）"_s, 3, 8, {70, 37}, {0, 0.5}, {70, 37})};
    return sheets;
}

const LabelSheet &labelSheet(const QString &name)
{
    const auto &sheets = labelSheets();
    const auto found = std::ranges::find(sheets, name, &LabelSheet::name);
    return found == sheets.end() ? sheets.front() : *found;
}

base::Result<QRectF> labelArea(const LabelSheet &sheet, int place)
{
    if (place < 1 || place > sheet.places())
        return base::Error{
            u"「%1」の用紙に %2 番目の場所はありません。1 から %3 までの場所を選んでください。"_s
                .arg(sheet.name)
                .arg(place)
                .arg(sheet.places())};
    const int column = (place - 1) % sheet.across;
    const int row = (place - 1) / sheet.across;
    return QRectF(sheet.left + column * sheet.pitchX, sheet.top + row * sheet.pitchY, sheet.width,
                  sheet.height);
}

base::Result<QRectF> labelRoom(const LabelSheet &sheet, int place)
{
    const auto area = labelArea(sheet, place);
    if (!area || sheet.inset <= 0)
        return area;
    const QRectF inside = QRectF(QPointF(), paper).adjusted(paperEdge, paperEdge, -paperEdge, -paperEdge);
    return area->adjusted(sheet.inset, sheet.inset, -sheet.inset, -sheet.inset).intersected(inside);
}

base::Result<std::vector<LabelSpot>> labelSpots(const LabelSheet &sheet, std::size_t count, int first)
{
    if (const auto area = labelArea(sheet, first); !area)
        return area.error();
    const auto places = static_cast<std::size_t>(sheet.places());
    std::vector<LabelSpot> spots;
    for (std::size_t label = 0; label < count; ++label) {
        const std::size_t at = static_cast<std::size_t>(first - 1) + label;
        spots.push_back({at / places, static_cast<int>(at % places) + 1});
    }
    return spots;
}

base::Result<std::vector<printing::Sheet>> labelPages(const LabelSheet &sheet, std::size_t count, int first,
                                                      const LabelContent &content, const QPointF &moved)
{
    const auto spots = labelSpots(sheet, count, first);
    if (!spots)
        return spots.error();
    std::vector<printing::Sheet> pages;
    for (std::size_t label = 0; label < count; ++label) {
        const LabelSpot &spot = spots->at(label);
        pages.resize(std::max(pages.size(), spot.page + 1), emptyPage());
        put(pages[spot.page], content(label), labelRoom(sheet, spot.place)->translated(moved));
    }
    return pages;
}

} // namespace shipping
