#include "printing/forms/form_parts.h"

#include "printing/forms/form_words.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

FormColumn FormParts::column(const TomlNode &node)
{
    FormColumn column;
    FormFields fields(node, m_faults);
    fields.require({"x"});
    readSource(fields, column.source, Wanted::Anything, true);
    fields.text("heading", column.heading);
    fields.number("x", column.x, 0, paperWidth());
    fields.number("width", column.width, 0, paperWidth());
    fields.choice("align", column.align, wordList(alignWords));
    if (column.align == Align::Right)
        column.fit = FormFit::Shrink; // a number is never broken
    fields.choice("fit", column.fit, wordList(fitWords));
    checkAcross(fields, column.x, column.width, column.align);
    fields.finish();
    return column;
}

void FormParts::checkRows(FormFields &fields, const FormBody &body, const FormRows &rows) const
{
    if (rows.y + rows.count * body.pitch > paperHeight() + slack)
        fields.fault("rows", u"明細の行が用紙の下端からはみ出しています。"_s);
}

void FormParts::readFurther(FormFields &fields, FormBody &body)
{
    const TomlNode *node = fields.table("further");
    if (!node)
        return;
    FormFields own(*node, m_faults);
    body.further = body.first;
    own.number("y", body.further->y, 0, paperHeight());
    own.integer("rows", body.further->count, 1, 1000);
    checkRows(own, body, *body.further);
    own.finish();
}

void FormParts::readBodyRules(FormFields &fields, FormBody &body)
{
    fields.number("left", body.left, 0, paperWidth());
    fields.number("right", body.right, 0, paperWidth());
    fields.number("heading_height", body.headingHeight, 0, paperHeight());
    fields.number("heading_size", body.headingPoints, smallestFormType, largestFormType);
    fields.integer("heading_grey", body.headingGrey, 0, 255);
    fields.number("frame", body.frame, 0, thickestLine);
    fields.number("divider", body.divider, 0, thickestLine);
    fields.numbers("dividers", body.dividers, 0, paperWidth());
    fields.number("rule", body.rule, 0, thickestLine);
    fields.integer("rule_grey", body.ruleGrey, 0, 255);
}

FormBody FormParts::body(const TomlNode &node)
{
    FormBody body;
    FormFields fields(node, m_faults);
    fields.require({"y", "pitch", "rows", "column"});
    fields.number("y", body.first.y, 0, paperHeight());
    fields.number("pitch", body.pitch, 1, paperHeight());
    body.first.count = 1;
    fields.integer("rows", body.first.count, 1, 1000);
    readType(fields, body.type);
    body.smallest = std::min(body.smallest, body.type.points);
    fields.number("smallest", body.smallest, smallestFormType, largestFormType);
    fields.number("leading", body.leading, 1, mostLeading);
    fields.integer("lines_in_row", body.linesInRow, 1, 10);
    readShift(fields, body.shift);
    readFurther(fields, body);
    readBodyRules(fields, body);
    checkRows(fields, body, body.first);
    fields.tables("column", [&](const TomlNode &child) { body.columns.push_back(column(child)); });
    fields.finish();
    return body;
}

} // namespace printing
