#include "slips/documents/estimate_layout.h"

#include "book/counterpart_name.h"
#include "printing/text_fit.h"
#include "slips/documents/delivery_note_table.h"
#include "text/numbers.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using printing::Align;
using printing::millimetresFromPoints;
using printing::SheetWriter;

namespace slips
{

namespace
{

// Millimetres from the paper's top-left corner; the paper keeps a margin that every printer can leave.
constexpr double left = noteLeft;
constexpr double right = noteRight;
constexpr double leftBlock = 96; // width of the addressee, the total and the terms

constexpr std::array<NoteColumn, 6> columns{{
    {u"商品名", 70, Align::Left},
    {u"規格", 31, Align::Left},
    {u"数量", 18, Align::Right},
    {u"単位", 13, Align::Centre},
    {u"単価", 22, Align::Right},
    {u"金額", 26, Align::Right},
}};

// The sheets after the first have a small head, and their tables end where the first one's does.
constexpr int firstRows = 17;
constexpr int rowsMore = 10;
constexpr NoteTable firstTable{columns, 112, firstRows};
constexpr NoteTable furtherTable{columns, firstTable.top - rowsMore *noteRowHeight, firstRows + rowsMore};

constexpr double footTop = firstTable.bottom() + 4;
constexpr double footHeight = 25;

const QStringList &honorifics()
{
    static const QStringList all{u"様"_s, u"御中"_s, u"殿"_s, u"先生"_s};
    return all;
}

// What marks a name as that of a firm or an institution.
const QStringList &firmMarks()
{
    static const QStringList all{u"会社"_s,   u"㈱"_s,   u"㈲"_s,   u"（株）"_s, u"(株)"_s,
                                 u"（有）"_s, u"(有)"_s, u"法人"_s, u"組合"_s,   u"商店"_s,
                                 u"商会"_s,   u"協会"_s, u"学校"_s, u"病院"_s,   u"銀行"_s,
                                 u"ホテル"_s, u"旅館"_s, u"役場"_s, u"市役所"_s};
    return all;
}

bool endsWithAny(const QString &text, const QStringList &ends)
{
    return std::any_of(ends.begin(), ends.end(), [&](const QString &end) { return text.endsWith(end); });
}

bool containsAny(const QString &text, const QStringList &parts)
{
    return std::any_of(parts.begin(), parts.end(), [&](const QString &part) { return text.contains(part); });
}

QString yen(double amount) { return u"¥"_s + text::formatAmount(amount); }

QStringList addresseeNames(const book::Slip &slip)
{
    if (slip.name2.isEmpty())
        return {honoured(slip.name1, slip.name1)};
    return {slip.name1, honoured(slip.name2, slip.name1)};
}

void writeNumber(SheetWriter &writer, const book::Slip &slip, int page, int pages)
{
    writer.text(right, 15, u"見積書No.　"_s + printing::singleLine(slip.number), 9, Align::Right, 52);
    writer.text(right, 20, printedDate(slip.date), 9, Align::Right);
    if (pages > 1)
        writer.text(right, 25, u"%1 / %2"_s.arg(page).arg(pages), 9, Align::Right);
}

void writeAddressee(SheetWriter &writer, const book::Slip &slip)
{
    TextColumn column(writer, left + 2, 32, leftBlock - 2);
    column.add(postalMark(slip.zip), 10);
    column.add(slip.address1, 10);
    column.add(slip.address2, 10);
    column.skip(2);
    for (const QString &name : addresseeNames(slip))
        column.add(name, 13);
    writer.line(left, column.y(), left + leftBlock, column.y(), thinRule);
}

void writeGrandTotal(SheetWriter &writer, const EstimateData &data)
{
    constexpr double top = 70;
    constexpr double height = 13;
    constexpr double labelWidth = 26;
    constexpr double padding = 3;
    writer.text(left, top - 6.5, u"下記の通りお見積り申し上げます。"_s, 10);
    writer.box(left, top, labelWidth, height, 0, 236);
    writer.box(left, top, leftBlock, height, thickRule);
    writer.line(left + labelWidth, top, left + labelWidth, top + height, thinRule);
    writer.text(left + labelWidth / 2, centredIn(top, height, 11), u"合計金額"_s, 11, Align::Centre);
    const QString words = taxWords(data.taxed);
    const double wordsWidth = printing::textWidth(words, 9);
    const double room = leftBlock - labelWidth - wordsWidth - 2 * padding;
    const QString total = yen(data.total());
    const double points = printing::fittingPoints(total, room, 19);
    writer.text(left + labelWidth + padding + room, centredIn(top, height, points), total, points,
                Align::Right, room, true);
    writer.text(left + leftBlock - 1, centredIn(top, height, 9) + 1, words, 9, Align::Right);
}

void writeTerms(SheetWriter &writer, const EstimateTerms &terms)
{
    const std::array<std::pair<QString, QString>, 4> rows{{
        {u"納入期日"_s, printedDate(terms.deliveryDate)},
        {u"受渡場所"_s, printing::singleLine(terms.place)},
        {u"取引方法"_s, printing::singleLine(terms.payment)},
        {u"有効期限"_s, printedDate(terms.validUntil)},
    }};
    constexpr double labelWidth = 20;
    constexpr double step = 6;
    constexpr double width = leftBlock - labelWidth;
    double y = 86;
    for (const auto &[label, value] : rows) {
        if (value.isEmpty())
            continue;
        writer.text(left + 2, y, label, 9.5);
        const printing::FittedText fitted = printing::fitBlock(value, width, step - 0.8, 9.5, 1.15);
        double top = y;
        for (const QString &line : fitted.lines) {
            writer.text(left + labelWidth + 2, top, line, fitted.points, Align::Left, width - 2);
            top += millimetresFromPoints(fitted.points) * 1.15;
        }
        writer.line(left, y + step - 1.2, left + leftBlock, y + step - 1.2, thinRule, 130);
        y += step;
    }
}

// The rows of the totals: the tax is told even where it is no amount of its own.
std::vector<std::pair<QString, QString>> totals(const EstimateData &data)
{
    switch (data.taxed) {
    case EstimateTax::Added:
        return {{u"小計"_s, yen(data.goods)}, {u"消費税"_s, yen(data.tax)}, {u"合計"_s, yen(data.total())}};
    case EstimateTax::Included:
        return {{u"合計"_s, yen(data.total())}, {u"内消費税"_s, yen(data.tax)}};
    case EstimateTax::Separate:
        return {{u"小計"_s, yen(data.goods)}, {u"消費税"_s, u"別途"_s}, {u"合計"_s, yen(data.total())}};
    case EstimateTax::Untold:
        break;
    }
    return {{u"合計"_s, yen(data.total())}};
}

void writeTotals(SheetWriter &writer, const EstimateData &data)
{
    constexpr double boxLeft = 121;
    constexpr double labelWidth = 30;
    constexpr double padding = 1.2; // as in the table above
    constexpr double rowHeight = footHeight / 3;
    constexpr double valueWidth = right - boxLeft - labelWidth - 2 * padding;
    const auto rows = totals(data);
    const double height = rowHeight * static_cast<double>(rows.size());
    writer.box(boxLeft, footTop, labelWidth, height, 0, 236);
    writer.box(boxLeft, footTop, right - boxLeft, height, thickRule);
    writer.line(boxLeft + labelWidth, footTop, boxLeft + labelWidth, footTop + height, thinRule);
    double y = footTop;
    for (const auto &[label, value] : rows) {
        const bool grand = label == u"合計";
        const double points = printing::fittingPoints(value, valueWidth, grand ? 12 : 10);
        writer.text(boxLeft + labelWidth / 2, centredIn(y, rowHeight, 10), label, 10, Align::Centre);
        writer.text(right - padding, centredIn(y, rowHeight, points), value, points, Align::Right, valueWidth,
                    grand);
        y += rowHeight;
        if (y < footTop + height - 1)
            writer.line(boxLeft, y, right, y, thinRule);
    }
}

void writeFirstHead(SheetWriter &writer, const EstimateData &data)
{
    writeTitle(writer, u"御見積書"_s);
    writeAddressee(writer, data.slip);
    writeSender(writer, data.sender, data.companyName, data.slip.employeeName);
    writeGrandTotal(writer, data);
    writeTerms(writer, data.terms);
}

void writeFurtherHead(SheetWriter &writer, const EstimateData &data)
{
    writer.text(left, 14, u"御見積書（続き）"_s, 13, Align::Left, 0, true);
    TextColumn(writer, left, 22, leftBlock).add(addresseeNames(data.slip).join(u'　'), 10);
}

} // namespace

QString taxWords(EstimateTax taxed)
{
    switch (taxed) {
    case EstimateTax::Added:
    case EstimateTax::Included:
        return u"（消費税込）"_s;
    case EstimateTax::Separate:
        return u"（消費税別途）"_s;
    case EstimateTax::Untold:
        break;
    }
    return {};
}

QString honoured(const QString &name, const QString &firm)
{
    if (name.isEmpty() || book::isUnknownCounterpartName(name) || endsWithAny(name.trimmed(), honorifics()))
        return name;
    return name + (containsAny(firm, firmMarks()) ? u"　御中"_s : u"　様"_s);
}

std::vector<printing::Sheet> estimateSheets(const EstimateData &data)
{
    const std::vector<NotePage> pages = notePages(data.slip.lines, firstTable, furtherTable);
    std::vector<printing::Sheet> sheets;
    for (std::size_t page = 0; page < pages.size(); ++page) {
        printing::Sheet &sheet = sheets.emplace_back();
        sheet.origin = printing::Origin::PaperEdge;
        SheetWriter writer(sheet);
        writeNumber(writer, data.slip, static_cast<int>(page) + 1, static_cast<int>(pages.size()));
        if (page == 0)
            writeFirstHead(writer, data);
        else
            writeFurtherHead(writer, data);
        writeNoteTable(writer, page == 0 ? firstTable : furtherTable, pages[page]);
        if (page + 1 == pages.size()) {
            writeRemarks(writer, footTop, footHeight, data.terms.remarks);
            writeTotals(writer, data);
        } else {
            writer.text(right - 2, footTop + 2, u"次葉へ繰越"_s, 10.5, Align::Right);
        }
    }
    return sheets;
}

} // namespace slips
