#pragma once

#include "printing/sheet.h"

namespace printing
{

/// Fills a sheet in millimetres. Everything is moved by the shift in force when it is added: the printer's
/// adjustment of a form.
class SheetWriter
{
public:
    explicit SheetWriter(Sheet &sheet)
        : m_sheet(sheet)
    {}

    void setShift(double right, double down);

    /// \a text at \a x, \a y (see TextItem); \a room in millimetres.
    void text(double x, double y, const QString &text, double points, Align align = Align::Left,
              double room = 0, bool bold = false);
    /// A text with all that \a item tells, its room in millimetres; its place is \a x, \a y.
    void text(double x, double y, TextItem item);
    void line(double x1, double y1, double x2, double y2, double width, int grey = 0);
    void box(double x, double y, double width, double height, double lineWidth, int grey = 255,
             bool vermilion = false);
    void richText(double x, double y, double width, double height, const QString &name);

private:
    [[nodiscard]] double across(double x) const { return twipsFromMillimetres(x + m_right); }
    [[nodiscard]] double down(double y) const { return twipsFromMillimetres(y + m_down); }

    Sheet &m_sheet;
    double m_right = 0; // millimetres
    double m_down = 0;
};

} // namespace printing
