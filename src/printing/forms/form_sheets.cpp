#include "printing/forms/form_sheets.h"

#include "printing/forms/form_body.h"
#include "printing/vertical.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

double middleOf(double top, double height, double points)
{
    return top + (height - millimetresFromPoints(points)) / 2;
}

double shrunk(const FormText &text, const QString &words, double room)
{
    const double points = text.type.points;
    const double natural =
        text.vertical ? columnLength(words, text.pairedDigits, points) : textWidth(words, points);
    return std::max(std::min(text.smallest, points), fittingPoints(natural, room, points));
}

using FormPartList = std::vector<const FormPart *>;

FormPartList partsOf(const Form &form)
{
    FormPartList parts{&form};
    for (const FormPart &part : form.parts)
        parts.push_back(&part);
    return parts;
}

std::vector<FormPage> pagesOf(const FormPartList &parts, const FormValues &values)
{
    FormBodies bodies;
    bool carryTakesRow = false;
    for (const FormPart *part : parts) {
        if (!part->body)
            continue;
        bodies.push_back(&*part->body);
        carryTakesRow = carryTakesRow || (part->carry && part->carry->takesRow);
    }
    return formPages(bodies, values, carryTakesRow);
}

/// Fills one sheet after the other.
class FormFiller
{
public:
    FormFiller(const Form &form, const FormValues &values)
        : m_form(form)
        , m_values(values)
        , m_record(values.items)
        , m_parts(partsOf(form))
        , m_pages(pagesOf(m_parts, values))
        , m_part(m_parts.front())
    {}

    std::vector<Sheet> sheets()
    {
        std::vector<Sheet> sheets(m_pages.size());
        double carried = 0;
        for (m_sheet = 0; m_sheet < sheets.size(); ++m_sheet) {
            for (const FormLine &line : m_pages[m_sheet])
                carried += line.summed;
            setOwnItems(carried);
            fill(sheets[m_sheet]);
        }
        return sheets;
    }

private:
    [[nodiscard]] bool isLast() const { return m_sheet + 1 == m_pages.size(); }

    [[nodiscard]] bool isOn(OnSheets sheets) const
    {
        switch (sheets) {
        case OnSheets::Every:
            return true;
        case OnSheets::First:
            return m_sheet == 0;
        case OnSheets::Further:
            return m_sheet > 0;
        case OnSheets::Last:
            return isLast();
        case OnSheets::BeforeLast:
            break;
        }
        return !isLast();
    }

    void setOwnItems(double carried)
    {
        if (m_pages.size() > 1)
            m_record.insert(QString::fromUtf16(formPageItem),
                            u"%1 / %2"_s.arg(m_sheet + 1).arg(m_pages.size()));
        if (!m_values.summed.isEmpty())
            m_record.insert(QString::fromUtf16(formCarriedItem), carried);
    }

    void fill(Sheet &sheet)
    {
        sheet.paperWidth = m_form.paper.width;
        sheet.paperHeight = m_form.paper.height;
        sheet.turned = m_form.paper.turned;
        sheet.bin = m_form.paper.source;
        sheet.origin = m_form.origin;
        SheetWriter writer(sheet);
        std::size_t body = 0;
        for (const FormPart *part : m_parts) {
            m_part = part;
            fillPart(writer, body);
            body += part->body ? 1 : 0;
        }
    }

    void fillPart(SheetWriter &writer, std::size_t body)
    {
        writeAll(writer, m_part->boxes, &FormFiller::writeBox);
        writeAll(writer, m_part->rules, &FormFiller::writeRule);
        writeAll(writer, m_part->stacks, &FormFiller::writeStack);
        writeAll(writer, m_part->richTexts, &FormFiller::writeSlot);
        writeBody(writer, body);
        writeAll(writer, m_part->texts, &FormFiller::writeText);
        writeAll(writer, m_part->tables, &FormFiller::writeTable);
    }

    template <class Element>
    void writeAll(SheetWriter &writer, const std::vector<Element> &elements,
                  void (FormFiller::*write)(SheetWriter &, const Element &))
    {
        for (const Element &element : elements) {
            if (!isOn(element.place.sheets) || !formHas(element.place.when, m_record))
                continue;
            shift(writer, element.place.shift);
            (this->*write)(writer, element);
        }
    }

    [[nodiscard]] double offset(const std::optional<QStringList> &own, const QStringList &usual) const
    {
        double sum = 0;
        for (const QString &name : own ? *own : usual)
            sum += m_values.shifts.value(name, 0);
        return sum;
    }

    void shift(SheetWriter &writer, const FormShift &own) const
    {
        writer.setShift(m_part->x + offset(own.right, m_part->shiftRight),
                        m_part->y + offset(own.down, m_part->shiftDown));
    }

    void writeBody(SheetWriter &writer, std::size_t body)
    {
        if (!m_part->body)
            return;
        shift(writer, m_part->body->shift);
        writeFormBody(writer, *m_part->body, body, m_pages[m_sheet], m_sheet);
        if (m_part->carry && !isLast()) {
            writeCarried(writer, m_part->carry->text);
            if (m_part->carry->amount)
                writeCarried(writer, *m_part->carry->amount);
        }
    }

    void writeCarried(SheetWriter &writer, FormText text)
    {
        if (m_part->carry->takesRow) {
            text.place.y = formRowAfter(*m_part->body, m_pages[m_sheet], m_sheet);
            text.height = m_part->body->pitch;
            text.middle = true;
        }
        shift(writer, text.place.shift);
        writeText(writer, text);
    }

    void writeBox(SheetWriter &writer, const FormBox &box)
    {
        writer.box(box.place.x, box.place.y, box.width, box.height, box.line, box.grey, box.vermilion);
    }

    void writeRule(SheetWriter &writer, const FormRule &rule)
    {
        writer.line(rule.place.x, rule.place.y, rule.toX, rule.toY, rule.line, rule.grey);
    }

    void writeSlot(SheetWriter &writer, const FormSlot &slot)
    {
        const QString name = formText({.item = slot.item}, m_record);
        if (!name.isEmpty())
            writer.richText(slot.place.x, slot.place.y, slot.width, slot.height, name);
    }

    void writeText(SheetWriter &writer, const FormText &text)
    {
        const QString words = formText(text.source, m_record, text.fit == FormFit::Wrap);
        if (words.isEmpty())
            return;
        double x = text.place.x;
        double width = text.width;
        if (text.besidePoints > 0) {
            const double taken = textWidth(formText(text.beside, m_record), text.besidePoints);
            x -= taken * shareBefore(text.align);
            width = std::max(0.0, width - taken);
        }
        if (text.fit == FormFit::Wrap) {
            writeWrapped(writer, words, x, text);
            return;
        }
        const double points =
            text.fit == FormFit::Shrink && width > 0 ? shrunk(text, words, width) : text.type.points;
        const double y = text.middle ? middleOf(text.place.y, text.height, points) : text.place.y;
        add(writer, x, y, words, points, text, width);
    }

    void writeWrapped(SheetWriter &writer, const QString &words, double x, const FormText &text)
    {
        const FittedText fitted = fitBlock(words, text.width, text.height, text.type.points, text.leading);
        double y = text.place.y;
        for (const QString &line : fitted.lines) {
            add(writer, x, y, line, fitted.points, text, text.width);
            y += millimetresFromPoints(fitted.points) * text.leading;
        }
    }

    void add(SheetWriter &writer, double x, double y, const QString &words, double points,
             const FormText &text, double room)
    {
        TextItem item{0, 0, words, points, text.align, text.type.bold, room};
        item.vertical = text.vertical;
        item.pairedDigits = text.pairedDigits;
        item.face = text.type.font;
        writer.text(x, y, std::move(item));
    }

    void writeStack(SheetWriter &writer, const FormStack &stack)
    {
        double y = stack.place.y;
        for (const FormStackLine &line : stack.lines) {
            if (!formHas(line.when, m_record))
                continue;
            y = std::max(y + line.gap, line.from);
            if (line.rule > 0)
                writer.line(line.left, y, line.right, y, line.rule);
            else
                writeStackText(writer, stack, line, y);
        }
    }

    void writeStackText(SheetWriter &writer, const FormStack &stack, const FormStackLine &line, double &y)
    {
        const QString words = formText(line.source, m_record);
        const double least = std::min(line.type.points, stack.smallest);
        FittedText fitted = fitText(words, stack.width, line.type.points, least);
        if (fitted.lines.size() > 1)
            fitted = fitBlock(words, stack.width, stack.textHeight, least, stack.leading);
        for (const QString &part : fitted.lines) {
            if (part.isEmpty())
                continue;
            TextItem item{0, 0, part, fitted.points, Align::Left, line.type.bold, stack.width};
            item.face = line.type.font;
            writer.text(stack.place.x, y, std::move(item));
            y += millimetresFromPoints(fitted.points) * stack.leading;
        }
    }

    void writeTable(SheetWriter &writer, const FormTable &table)
    {
        std::vector<const FormTableRow *> rows;
        for (const FormTableRow &row : table.rows) {
            if (formHas(row.source.item, m_record))
                rows.push_back(&row);
        }
        if (rows.empty())
            return;
        writeTableFrame(writer, table, table.pitch * static_cast<double>(rows.size()));
        double y = table.place.y;
        for (const FormTableRow *row : rows) {
            writeTableRow(writer, table, *row, y);
            y += table.pitch;
            if (table.rule > 0 && (table.ruleLast || row != rows.back()))
                writer.line(table.place.x, y, table.place.x + table.width, y, table.rule, table.ruleGrey);
        }
    }

    static void writeTableFrame(SheetWriter &writer, const FormTable &table, double height)
    {
        constexpr double dividerWidth = 0.15;
        const double left = table.place.x;
        const double top = table.place.y;
        if (table.divider && table.labelGrey < 255)
            writer.box(left, top, *table.divider - left, height, 0, table.labelGrey);
        if (table.frame > 0)
            writer.box(left, top, table.width, height, table.frame);
        if (table.divider)
            writer.line(*table.divider, top, *table.divider, top + height, dividerWidth);
    }

    void writeTableRow(SheetWriter &writer, const FormTable &table, const FormTableRow &row, double y) const
    {
        writeTableCell(writer, table, table.label, singleLine(row.label), table.label.points, false, y);
        writeTableCell(writer, table, table.value, formText(row.source, m_record),
                       row.points.value_or(table.value.points), row.bold, y);
    }

    static void writeTableCell(SheetWriter &writer, const FormTable &table, const FormTableCell &cell,
                               const QString &words, double points, bool bold, double y)
    {
        FittedText fitted{{words}, points};
        if (cell.fit == FormFit::Shrink && cell.width > 0)
            fitted.points = fittingPoints(words, cell.width, points);
        else if (cell.fit == FormFit::Wrap && cell.width > 0)
            fitted = fitBlock(words, cell.width, cell.height > 0 ? cell.height : table.pitch, points,
                              cell.leading);
        // What begins within the table ends there.
        const double inside = table.place.x + table.width - cell.x;
        const double room = cell.align == Align::Left ? std::min(cell.width, inside) : cell.width;
        const double step = millimetresFromPoints(fitted.points) * cell.leading;
        const double block =
            static_cast<double>(fitted.lines.size() - 1) * step + millimetresFromPoints(fitted.points);
        double top = table.top ? y + *table.top : y + (table.pitch - block) / 2;
        for (const QString &line : fitted.lines) {
            writer.text(cell.x, top, line, fitted.points, cell.align, room, bold);
            top += step;
        }
    }

    const Form &m_form;
    const FormValues &m_values;
    FormRecord m_record; // the values and what the engine adds to them
    FormPartList m_parts;
    std::vector<FormPage> m_pages;
    std::size_t m_sheet = 0;
    const FormPart *m_part; // that is being filled
};

} // namespace

std::vector<Sheet> formSheets(const Form &form, const FormValues &values)
{
    return FormFiller(form, values).sheets();
}

} // namespace printing
