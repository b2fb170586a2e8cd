#pragma once

#include "masters/own_company.h"
#include "printing/sheet_writer.h"

#include <QDate>

// What the printed slips for customers, delivery note and estimate, have in common.
namespace slips
{

/// How a printed slip names its sender.
enum class CompanyName {
    Plain,    // 会社名1 and 会社名2
    Omitted,  // left off, where the paper bears it already
    Extended, // the rich-text block in their place
};

/// The name of the sheets' slot for the extended company-name block.
inline constexpr const char16_t *companyNameSlot = u"社名";

// Widths of the rules, millimetres.
inline constexpr double thinRule = 0.15;
inline constexpr double thickRule = 0.4;

/// Writes lines of text one under the other; one that is too long is made smaller, then broken.
class TextColumn
{
public:
    /// Millimetres.
    TextColumn(printing::SheetWriter &writer, double x, double y, double width)
        : m_writer(writer)
        , m_x(x)
        , m_y(y)
        , m_width(width)
    {}

    void add(const QString &text, double points, bool bold = false);
    void skip(double millimetres) { m_y += millimetres; }
    [[nodiscard]] double y() const { return m_y; }

private:
    printing::SheetWriter &m_writer;
    double m_x;
    double m_y;
    double m_width;
};

/// "2026年4月1日"; empty for no date.
QString printedDate(QDate date);
/// "〒380-0821"; empty for no code.
QString postalMark(const QString &zip);
/// "TEL …　FAX …", of those there are.
QString telephones(const QString &tel, const QString &fax);

/// The top of type of \a points in the middle of a box.
double centredIn(double top, double height, double points);

/// The sender's block in the upper right of the sheet, 34 to 76 mm from the paper's top.
void writeSender(printing::SheetWriter &writer, const masters::OwnCompany &sender, CompanyName name,
                 const QString &employee);

/// The sheet's title over its double rule.
void writeTitle(printing::SheetWriter &writer, const QString &title);

/// A box titled "備考" with \a remarks, made smaller until they fit.
void writeRemarks(printing::SheetWriter &writer, double top, double height, const QString &remarks);

} // namespace slips
