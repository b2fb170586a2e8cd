#include "slips/documents/delivery_note.h"

#include "book/counterpart_name.h"
#include "printing/sheet_writer.h"
#include "printing/text_fit.h"
#include "slips/documents/delivery_note_table.h"
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

constexpr double verticalStep = 1.41;
constexpr double horizontalStep = 1.75;
constexpr double halfWidthCharacter = 1.75; // of the addressee's 10-point type

constexpr double addresseeWidth = 96;
void writeHead(SheetWriter &writer, const DeliveryNoteData &data, int page, int pages)
{
    writeTitle(writer, u"納品書"_s);
    writer.text(right, 15, u"伝票番号　"_s + printing::singleLine(data.slip.number), 9, Align::Right, 52);
    writer.text(right, 20, printedDate(data.slip.date), 9, Align::Right);
    if (pages > 1)
        writer.text(right, 25, u"%1 / %2"_s.arg(page).arg(pages), 9, Align::Right);
}

void writeAddressee(SheetWriter &writer, const book::Slip &slip)
{
    TextColumn column(writer, left + 2, 32, addresseeWidth);
    column.add(postalMark(slip.zip), 10);
    column.add(slip.address1, 10);
    column.add(slip.address2, 10);
    column.skip(2);
    const QString honorific = book::isUnknownCounterpartName(slip.name1) ? QString() : u"　様"_s;
    column.add(slip.name2.isEmpty() ? slip.name1 + honorific : slip.name1, 12.5);
    if (!slip.name2.isEmpty())
        column.add(slip.name2 + honorific, 12.5);
    writer.line(left, column.y(), left + addresseeWidth + 4, column.y(), thinRule);
    column.skip(1.8);
    column.add(telephones(slip.tel, slip.fax), 9);
}

void writeTotals(SheetWriter &writer, const DeliveryNoteData &data)
{
    constexpr double boxLeft = 119;
    constexpr double labelWidth = 30;
    constexpr double padding = 2.5;
    constexpr double valueWidth = right - boxLeft - labelWidth - 2 * padding;
    const double totalHeight = noteFootHeight * 0.6;
    writer.box(boxLeft, noteFootTop, labelWidth, totalHeight, 0, 236);
    writer.box(boxLeft, noteFootTop, right - boxLeft, totalHeight, thickRule);
    writer.line(boxLeft + labelWidth, noteFootTop, boxLeft + labelWidth, noteFootTop + totalHeight, thinRule);
    writer.text(boxLeft + labelWidth / 2, centredIn(noteFootTop, totalHeight, 11), u"合計金額"_s, 11,
                Align::Centre);
    const QString total = u"¥"_s + text::formatAmount(data.total);
    const double points = printing::fittingPoints(total, valueWidth, 14);
    writer.text(right - padding, centredIn(noteFootTop, totalHeight, points), total, points, Align::Right,
                valueWidth, true);
    if (!data.includedTax)
        return;
    const double top = noteFootTop + totalHeight;
    const double height = noteFootHeight - totalHeight;
    const QString tax = u"¥"_s + text::formatAmount(std::trunc(*data.includedTax));
    writer.text(boxLeft + labelWidth / 2, centredIn(top, height, 9.5), u"内税額"_s, 9.5, Align::Centre);
    writer.text(right - padding, centredIn(top, height, 9.5), tax,
                printing::fittingPoints(tax, valueWidth, 9.5), Align::Right, valueWidth);
    writer.line(boxLeft, top + height, right, top + height, thinRule);
}

} // namespace

std::vector<printing::Sheet> deliveryNote(const DeliveryNoteData &data)
{
    const std::vector<NotePage> pages = notePages(data.slip.lines, noteTable, noteTable);
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
        writeHead(writer, data, static_cast<int>(page) + 1, static_cast<int>(pages.size()));
        writeSender(writer, data.sender, data.companyName, data.slip.employeeName);
        writer.text(left + 2, 79, u"毎度ありがとうございます。下記の通り納品いたします。"_s, 10);
        writeNoteTable(writer, noteTable, pages[page]);
        if (page + 1 == pages.size()) {
            writeRemarks(writer, noteFootTop, noteFootHeight, data.memo);
            writeTotals(writer, data);
        } else {
            writer.text(right - 2, noteFootTop + 2, u"次葉へ繰越"_s, 10.5, Align::Right);
        }
    }
    return sheets;
}

} // namespace slips
