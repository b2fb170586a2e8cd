#include "printing/sheet_writer.h"

namespace printing
{

void SheetWriter::setShift(double right, double down)
{
    m_right = right;
    m_down = down;
}

void SheetWriter::text(double x, double y, const QString &text, double points, Align align, double room,
                       bool bold)
{
    if (!text.isEmpty())
        m_sheet.texts.push_back({across(x), down(y), text, points, align, bold, twipsFromMillimetres(room)});
}

void SheetWriter::text(double x, double y, TextItem item)
{
    if (item.text.isEmpty())
        return;
    item.x = across(x);
    item.y = down(y);
    item.room = twipsFromMillimetres(item.room);
    m_sheet.texts.push_back(std::move(item));
}

void SheetWriter::line(double x1, double y1, double x2, double y2, double width, int grey)
{
    m_sheet.lines.push_back({across(x1), down(y1), across(x2), down(y2), twipsFromMillimetres(width), grey});
}

void SheetWriter::box(double x, double y, double width, double height, double lineWidth, int grey,
                      bool vermilion)
{
    m_sheet.boxes.push_back({across(x), down(y), twipsFromMillimetres(width), twipsFromMillimetres(height),
                             twipsFromMillimetres(lineWidth), grey, vermilion});
}

void SheetWriter::richText(double x, double y, double width, double height, const QString &name)
{
    m_sheet.richTexts.push_back(
        {across(x), down(y), twipsFromMillimetres(width), twipsFromMillimetres(height), name});
}

} // namespace printing
