#include "slips/documents/note_parts.h"

#include "printing/text_fit.h"
#include "slips/documents/delivery_note_table.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using printing::Align;
using printing::millimetresFromPoints;
using printing::SheetWriter;

namespace slips
{

namespace
{

constexpr double senderLeft = 122;
constexpr double senderWidth = noteRight - senderLeft;
constexpr double middle = (noteLeft + noteRight) / 2;
constexpr double smallestType = 7; // points; below this a line is broken rather than made smaller

} // namespace

void TextColumn::add(const QString &text, double points, bool bold)
{
    constexpr double leading = 1.38;
    constexpr double mostRoom = 5.5; // millimetres of height for one text, however long it is
    const QString whole = printing::singleLine(text);
    printing::FittedText fitted = printing::fitText(whole, m_width, points, std::min(points, smallestType));
    if (fitted.lines.size() > 1)
        fitted = printing::fitBlock(whole, m_width, mostRoom, std::min(points, smallestType), leading);
    for (const QString &line : fitted.lines) {
        m_writer.text(m_x, m_y, line, fitted.points, Align::Left, m_width, bold);
        m_y += millimetresFromPoints(line.isEmpty() ? 0 : fitted.points) * leading;
    }
}

QString printedDate(QDate date)
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

double centredIn(double top, double height, double points)
{
    return top + (height - millimetresFromPoints(points)) / 2;
}

void writeSender(SheetWriter &writer, const masters::OwnCompany &sender, CompanyName name,
                 const QString &employee)
{
    constexpr double nameTop = 34;
    constexpr double nameHeight = 13;
    TextColumn column(writer, senderLeft, nameTop, senderWidth);
    if (name == CompanyName::Extended) {
        writer.richText(senderLeft, nameTop, senderWidth, nameHeight, QString::fromUtf16(companyNameSlot));
    } else if (name == CompanyName::Plain) {
        column.add(sender.name1, 12, true);
        column.add(sender.name2, 10);
    }
    column.skip(std::max(1.0, nameTop + nameHeight + 1 - column.y()));
    column.add(postalMark(sender.zip), 9);
    column.add(sender.address1, 9);
    column.add(sender.address2, 9);
    column.add(telephones(sender.tel1, sender.fax), 9);
    if (!employee.isEmpty()) {
        column.skip(1);
        column.add(u"担当者　"_s + employee, 9);
    }
}

void writeTitle(SheetWriter &writer, const QString &title)
{
    writer.text(middle, 15, title, 22, Align::Centre, 0, true);
    writer.line(middle - 30, 24, middle + 30, 24, thickRule);
    writer.line(middle - 30, 24.8, middle + 30, 24.8, thinRule);
}

void writeRemarks(SheetWriter &writer, double top, double height, const QString &remarks)
{
    constexpr double width = 96;
    constexpr double padding = 2;
    constexpr double textTop = 6.5;
    constexpr double leading = 1.3;
    writer.box(noteLeft, top, width, height, thinRule);
    writer.text(noteLeft + padding, top + 1.8, u"備考"_s, 8);
    const printing::FittedText fitted =
        printing::fitBlock(remarks, width - 2 * padding, height - textTop - 1, 9.5, leading);
    double y = top + textTop;
    for (const QString &line : fitted.lines) {
        writer.text(noteLeft + padding, y, line, fitted.points, Align::Left, width - 2 * padding);
        y += millimetresFromPoints(fitted.points) * leading;
    }
}

} // namespace slips
