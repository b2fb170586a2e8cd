#include "slips/delivery_note.h"

#include "printing/sheet_writer.h"
#include "printing/text_fit.h"
#include "slips/delivery_note_table.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

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
constexpr double middle = (left + right) / 2;

constexpr double verticalStep = 1.41;
constexpr double horizontalStep = 1.75;
constexpr double halfWidthCharacter = 1.75; // of the addressee's 10-point type

constexpr double addresseeWidth = 96;
constexpr double senderLeft = 122;
constexpr double senderWidth = right - senderLeft;

constexpr double thin = 0.15;
constexpr double thick = 0.4;

constexpr double smallestType = 7; // points; below this a line is broken rather than made smaller

// Writes lines of text one under the other.
class Column
{
public:
    Column(SheetWriter &writer, double x, double y, double width)
        : m_writer(writer)
        , m_x(x)
        , m_y(y)
        , m_width(width)
    {}

    void add(const QString &text, double points, bool bold = false)
    {
        const printing::FittedText fitted =
            printing::fitText(printing::singleLine(text), m_width, points, std::min(points, smallestType));
        for (const QString &line : fitted.lines) {
            m_writer.text(m_x, m_y, line, fitted.points, Align::Left, m_width, bold);
            m_y += millimetresFromPoints(line.isEmpty() ? 0 : fitted.points) * leading;
        }
    }
    void skip(double millimetres) { m_y += millimetres; }
    [[nodiscard]] double y() const { return m_y; }

private:
    static constexpr double leading = 1.38;

    SheetWriter &m_writer;
    double m_x;
    double m_y;
    double m_width;
};

QString dateText(QDate date)
{
    return date.isValid() ? u"%1年%2月%3日"_s.arg(date.year()).arg(date.month()).arg(date.day()) : QString();
}

QString postalMark(const QString &zip) { return zip.isEmpty() ? QString() : u"〒"_s + zip; }

QString telephones(const QString &tel, const QString &fax)
{
    QStringList both;
    if (!tel.isEmpty())
        both << u"TEL "_s + tel;
    if (!fax.isEmpty())
        both << u"FAX "_s + fax;
    return both.join(u"　"_s);
}

void writeTitle(SheetWriter &writer, const DeliveryNoteData &data, int page, int pages)
{
    writer.text(middle, 15, u"納品書"_s, 22, Align::Centre, 0, true);
    writer.line(middle - 30, 24, middle + 30, 24, thick);
    writer.line(middle - 30, 24.8, middle + 30, 24.8, thin);
    writer.text(right, 15, u"伝票番号　"_s + printing::singleLine(data.slip.number), 9, Align::Right, 52);
    writer.text(right, 20, dateText(data.slip.date), 9, Align::Right);
    if (pages > 1)
        writer.text(right, 25, u"%1 / %2"_s.arg(page).arg(pages), 9, Align::Right);
}

void writeAddressee(SheetWriter &writer, const Slip &slip)
{
    Column column(writer, left + 2, 32, addresseeWidth);
    column.add(postalMark(slip.zip), 10);
    column.add(slip.address1, 10);
    column.add(slip.address2, 10);
    column.skip(2);
    const QString honorific = u"　様"_s;
    column.add(slip.name2.isEmpty() ? slip.name1 + honorific : slip.name1, 12.5);
    if (!slip.name2.isEmpty())
        column.add(slip.name2 + honorific, 12.5);
    writer.line(left, column.y(), left + addresseeWidth + 4, column.y(), thin);
    column.skip(1.8);
    column.add(telephones(slip.tel, slip.fax), 9);
}

void writeSender(SheetWriter &writer, const DeliveryNoteData &data)
{
    constexpr double nameTop = 34;
    constexpr double nameHeight = 13;
    const masters::OwnCompany &sender = data.sender;
    Column column(writer, senderLeft, nameTop, senderWidth);
    if (data.companyName == CompanyName::Extended) {
        writer.richText(senderLeft, nameTop, senderWidth, nameHeight, QString::fromUtf16(companyNameSlot));
    } else if (data.companyName == CompanyName::Plain) {
        column.add(sender.name1, 12, true);
        column.add(sender.name2, 10);
    }
    column.skip(std::max(1.0, nameTop + nameHeight + 1 - column.y()));
    column.add(postalMark(sender.zip), 9);
    column.add(sender.address1, 9);
    column.add(sender.address2, 9);
    column.add(telephones(sender.tel1, sender.fax), 9);
    if (!data.slip.employeeName.isEmpty()) {
        column.skip(1);
        column.add(u"担当者　"_s + data.slip.employeeName, 9);
    }
}

void writeMemo(SheetWriter &writer, const QString &memo)
{
    constexpr double width = 96;
    constexpr double padding = 2;
    constexpr double textTop = 6.5;
    writer.box(left, noteFootTop, width, noteFootHeight, thin);
    writer.text(left + padding, noteFootTop + 1.8, u"備考"_s, 8);
    const printing::FittedText fitted =
        printing::fitBlock(memo, width - 2 * padding, noteFootHeight - textTop - 1, 9.5, 1.3);
    double y = noteFootTop + textTop;
    for (const QString &line : fitted.lines) {
        writer.text(left + padding, y, line, fitted.points, Align::Left, width - 2 * padding);
        y += millimetresFromPoints(fitted.points) * 1.3;
    }
}

void writeTotals(SheetWriter &writer, const DeliveryNoteData &data)
{
    constexpr double boxLeft = 119;
    constexpr double labelWidth = 30;
    constexpr double padding = 2.5;
    constexpr double valueWidth = right - boxLeft - labelWidth - 2 * padding;
    const double totalHeight = noteFootHeight * 0.6;
    writer.box(boxLeft, noteFootTop, labelWidth, totalHeight, 0, 236);
    writer.box(boxLeft, noteFootTop, right - boxLeft, totalHeight, thick);
    writer.line(boxLeft + labelWidth, noteFootTop, boxLeft + labelWidth, noteFootTop + totalHeight, thin);
    const auto centred = [](double top, double height, double points) {
        return top + (height - millimetresFromPoints(points)) / 2;
    };
    writer.text(boxLeft + labelWidth / 2, centred(noteFootTop, totalHeight, 11), u"合計金額"_s, 11,
                Align::Centre);
    const QString total = u"¥"_s + text::formatAmount(data.total);
    const double points = printing::fittingPoints(total, valueWidth, 14);
    writer.text(right - padding, centred(noteFootTop, totalHeight, points), total, points, Align::Right,
                valueWidth, true);
    if (!data.includedTax)
        return;
    const double top = noteFootTop + totalHeight;
    const double height = noteFootHeight - totalHeight;
    const QString tax = u"¥"_s + text::formatAmount(std::trunc(*data.includedTax));
    writer.text(boxLeft + labelWidth / 2, centred(top, height, 9.5), u"内税額"_s, 9.5, Align::Centre);
    writer.text(right - padding, centred(top, height, 9.5), tax,
                printing::fittingPoints(tax, valueWidth, 9.5), Align::Right, valueWidth);
    writer.line(boxLeft, top + height, right, top + height, thin);
}

} // namespace

std::vector<printing::Sheet> deliveryNote(const DeliveryNoteData &data)
{
    const std::vector<NotePage> pages = notePages(data.slip.lines);
    std::vector<printing::Sheet> sheets;
    for (std::size_t page = 0; page < pages.size(); ++page) {
        printing::Sheet &sheet = sheets.emplace_back();
        sheet.origin = printing::Origin::PaperEdge;
        SheetWriter writer(sheet);
        const double moveRight = data.offsets.right * horizontalStep;
        const double moveDown = data.offsets.down * verticalStep;
        writer.setShift(moveRight + data.offsets.addresseeRight * halfWidthCharacter, moveDown);
        writeAddressee(writer, data.slip);
        writer.setShift(moveRight, moveDown);
        writeTitle(writer, data, static_cast<int>(page) + 1, static_cast<int>(pages.size()));
        writeSender(writer, data);
        writer.text(left + 2, 79, u"毎度ありがとうございます。下記の通り納品いたします。"_s, 10);
        writeNoteTable(writer, pages[page]);
        if (page + 1 == pages.size()) {
            writeMemo(writer, data.memo);
            writeTotals(writer, data);
        } else {
            writer.text(right - 2, noteFootTop + 2, u"次葉へ繰越"_s, 10.5, Align::Right);
        }
    }
    return sheets;
}

} // namespace slips
