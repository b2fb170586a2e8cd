#include "printing/forms/form_parts.h"

#include "printing/forms/form_words.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

QStringList namesOf(const std::map<QString, FormItemKind> &items)
{
    QStringList names;
    for (const auto &[name, kind] : items)
        names << name;
    return names;
}

} // namespace

QStringList FormParts::shiftNames(FormFields &fields, const char *key)
{
    QStringList names;
    fields.texts(key, names);
    for (const QString &name : names) {
        if (!m_items.shifts.contains(name))
            fields.fault(key, u"「%1」というずれはありません。使えるもの：%2"_s.arg(
                                  name, m_items.shifts.join(u"、"_s)));
    }
    return names;
}

void FormParts::readShift(FormFields &fields, FormShift &shift)
{
    const TomlNode *node = fields.table("shift");
    if (!node)
        return;
    FormFields own(*node, m_faults);
    if (const QStringList names = shiftNames(own, "right"); own.has("right"))
        shift.right = names;
    if (const QStringList names = shiftNames(own, "down"); own.has("down"))
        shift.down = names;
    own.finish();
}

void FormParts::readPlace(FormFields &fields, FormPlace &place)
{
    fields.number("x", place.x, 0, paperWidth());
    fields.number("y", place.y, 0, paperHeight());
    fields.choice("sheet", place.sheets, wordList(sheetWords));
    readWhen(fields, place.when);
    readShift(fields, place.shift);
}

void FormParts::readWhen(FormFields &fields, QString &when)
{
    if (fields.text("when", when))
        known(fields, "when", when);
}

bool FormParts::known(FormFields &fields, const char *key, const QString &item, FormItemKind *kind,
                      bool ofRows) const
{
    const auto &items = ofRows ? m_items.columns : m_items.items;
    if (const auto found = items.find(item); found != items.end()) {
        if (kind)
            *kind = found->second;
        return true;
    }
    fields.fault(key,
                 u"「%1」という項目はありません。使える項目：%2"_s.arg(item, namesOf(items).join(u"、"_s)));
    return false;
}

void FormParts::readSource(FormFields &fields, FormSource &source, Wanted wanted, bool ofRows)
{
    FormItemKind kind = FormItemKind::Text;
    const bool isItem = fields.text("item", source.item);
    const bool isKnown = isItem && known(fields, "item", source.item, &kind, ofRows);
    const bool isText = wanted != Wanted::Item && fields.text("text", source.text);
    if (wanted != Wanted::Anything && isItem == isText && !fields.has("item"))
        fields.fault("item", u"「item」か「text」のどちらかを書いてください。"_s);
    if (isItem && isText)
        fields.fault("text", u"「item」と「text」は一緒に使えません。"_s);
    fields.text("before", source.before);
    fields.text("after", source.after);
    fields.flag("always", source.always);
    if (fields.text("format", source.format) && isKnown && !isFormFormat(source.format, kind))
        fields.fault("format", u"「%1」にこの「format」は使えません。数には \"#,##0\"、\"#,##0.##\"、\"0\"、"
                               "日付には \"yyyy年M月d日\" のように書いてください。"_s.arg(source.item));
}

void FormParts::readSize(FormFields &fields, double &points) const
{
    fields.number("size", points, smallestFormType, largestFormType);
}

void FormParts::readType(FormFields &fields, FormType &type)
{
    readSize(fields, type.points);
    fields.flag("bold", type.bold);
    fields.text("font", type.font);
}

void FormParts::readWrap(FormFields &fields, double &width, double &height, double &leading) const
{
    fields.number("width", width, 0, std::max(paperWidth(), paperHeight())); // a vertical text's length
    fields.number("height", height, 0, paperHeight());
    fields.number("leading", leading, 1, mostLeading);
}

void FormParts::checkAcross(const FormFields &fields, double x, double width, Align align) const
{
    const double share = shareBefore(align);
    if (x + width * (1 - share) > paperWidth() + slack)
        fields.fault("x", u"用紙の右端からはみ出しています。"_s);
    if (x - width * share < -slack)
        fields.fault("x", u"用紙の左端からはみ出しています。"_s);
}

void FormParts::readTextMeasures(FormFields &fields, FormText &text)
{
    fields.choice("align", text.align, wordList(alignWords));
    fields.choice("fit", text.fit, wordList(fitWords));
    readWrap(fields, text.width, text.height, text.leading);
    fields.flag("middle", text.middle);
    fields.flag("vertical", text.vertical);
    fields.flag("pair_digits", text.pairedDigits);
    if (text.fit == FormFit::Wrap && (text.width <= 0 || text.height <= 0))
        fields.fault("fit", u"「fit = \"wrap\"」には「width」と「height」も書いてください。"_s);
    if (text.vertical && text.fit == FormFit::Wrap)
        fields.fault("fit", u"縦書きでは「fit = \"squeeze\"」か「fit = \"shrink\"」だけが使えます。"_s);
    fields.number("smallest", text.smallest, smallestFormType, largestFormType);
    if (fields.has("smallest") && text.fit != FormFit::Shrink)
        fields.fault("smallest", u"「smallest」は「fit = \"shrink\"」と一緒に書いてください。"_s);
    if (text.vertical)
        checkDown(fields, text);
    else
        checkAcross(fields, text.place.x, text.width, text.align);
}

void FormParts::checkDown(const FormFields &fields, const FormText &text) const
{
    const double share = shareBefore(text.align);
    if (text.place.y + text.width * (1 - share) > paperHeight() + slack)
        fields.fault("y", u"用紙の下端からはみ出しています。"_s);
    if (text.place.y - text.width * share < -slack)
        fields.fault("y", u"用紙の上端からはみ出しています。"_s);
}

void FormParts::readBeside(FormFields &fields, FormText &text)
{
    const TomlNode *node = fields.table("beside");
    if (!node)
        return;
    FormFields own(*node, m_faults);
    readSource(own, text.beside, Wanted::ItemOrText);
    text.besidePoints = text.type.points;
    readSize(own, text.besidePoints);
    own.finish();
}

FormText FormParts::text(const TomlNode &node, OnSheets usual)
{
    FormText text;
    text.place.sheets = usual;
    FormFields fields(node, m_faults);
    fields.require({"x", "y"});
    readSource(fields, text.source, Wanted::ItemOrText);
    readPlace(fields, text.place);
    readType(fields, text.type);
    readTextMeasures(fields, text);
    readBeside(fields, text);
    fields.finish();
    return text;
}

FormText FormParts::carriedText(FormFields &fields, bool takesRow)
{
    FormText text;
    fields.require({"x"});
    if (!takesRow)
        fields.require({"y"});
    readSource(fields, text.source, Wanted::ItemOrText);
    readPlace(fields, text.place);
    readType(fields, text.type);
    readTextMeasures(fields, text);
    return text;
}

FormCarry FormParts::carry(const TomlNode &node)
{
    FormCarry carry;
    FormFields fields(node, m_faults);
    carry.takesRow = !fields.has("y");
    carry.text = carriedText(fields, carry.takesRow);
    if (const TomlNode *amount = fields.table("amount")) {
        FormFields own(*amount, m_faults);
        carry.amount = carriedText(own, carry.takesRow);
        own.finish();
    }
    fields.finish();
    return carry;
}

FormBox FormParts::box(const TomlNode &node)
{
    FormBox box;
    FormFields fields(node, m_faults);
    fields.require({"x", "y", "width", "height"});
    readPlace(fields, box.place);
    fields.number("width", box.width, 0, paperWidth());
    fields.number("height", box.height, 0, paperHeight());
    fields.number("line", box.line, 0, thickestLine);
    fields.integer("grey", box.grey, 0, 255);
    fields.flag("vermilion", box.vermilion);
    checkAcross(fields, box.place.x, box.width, Align::Left);
    if (box.place.y + box.height > paperHeight() + slack)
        fields.fault("y", u"用紙の下端からはみ出しています。"_s);
    fields.finish();
    return box;
}

FormRule FormParts::rule(const TomlNode &node)
{
    FormRule rule;
    FormFields fields(node, m_faults);
    fields.require({"x", "y"});
    readPlace(fields, rule.place);
    rule.toX = rule.place.x;
    rule.toY = rule.place.y;
    fields.number("to_x", rule.toX, 0, paperWidth());
    fields.number("to_y", rule.toY, 0, paperHeight());
    fields.number("line", rule.line, 0, thickestLine);
    fields.integer("grey", rule.grey, 0, 255);
    fields.finish();
    return rule;
}

FormSlot FormParts::slot(const TomlNode &node)
{
    FormSlot slot;
    FormFields fields(node, m_faults);
    fields.require({"item", "x", "y", "width", "height"});
    FormItemKind kind = FormItemKind::RichText;
    if (fields.text("item", slot.item) && known(fields, "item", slot.item, &kind) &&
        kind != FormItemKind::RichText)
        fields.fault("item", u"「%1」は飾り文字の枠に入りません。"_s.arg(slot.item));
    readPlace(fields, slot.place);
    fields.number("width", slot.width, 0, paperWidth());
    fields.number("height", slot.height, 0, paperHeight());
    checkAcross(fields, slot.place.x, slot.width, Align::Left);
    fields.finish();
    return slot;
}

FormStackLine FormParts::stackLine(const TomlNode &node)
{
    FormStackLine line;
    FormFields fields(node, m_faults);
    readSource(fields, line.source, fields.has("rule") ? Wanted::Anything : Wanted::ItemOrText);
    readWhen(fields, line.when);
    readType(fields, line.type);
    fields.number("gap", line.gap, 0, paperHeight());
    fields.number("from", line.from, 0, paperHeight());
    fields.number("rule", line.rule, 0, thickestLine);
    fields.number("left", line.left, 0, paperWidth());
    fields.number("right", line.right, 0, paperWidth());
    fields.finish();
    return line;
}

FormStack FormParts::stack(const TomlNode &node)
{
    FormStack stack;
    FormFields fields(node, m_faults);
    fields.require({"x", "y", "width", "line"});
    readPlace(fields, stack.place);
    fields.number("width", stack.width, 0, paperWidth());
    fields.number("leading", stack.leading, 1, mostLeading);
    fields.number("smallest", stack.smallest, smallestFormType, largestFormType);
    fields.number("text_height", stack.textHeight, 1, paperHeight());
    fields.tables("line", [&](const TomlNode &line) { stack.lines.push_back(stackLine(line)); });
    checkAcross(fields, stack.place.x, stack.width, Align::Left);
    fields.finish();
    return stack;
}

void FormParts::readCell(const TomlNode &node, FormTable &table, FormTableCell &cell, bool isLabel)
{
    FormFields fields(node, m_faults);
    fields.require({"x"});
    fields.number("x", cell.x, 0, paperWidth());
    readWrap(fields, cell.width, cell.height, cell.leading);
    readSize(fields, cell.points);
    fields.choice("align", cell.align, wordList(alignWords));
    fields.choice("fit", cell.fit, wordList(fitWords));
    if (isLabel)
        fields.integer("grey", table.labelGrey, 0, 255);
    checkAcross(fields, cell.x, cell.width, cell.align);
    fields.finish();
}

FormTableRow FormParts::tableRow(const TomlNode &node)
{
    FormTableRow row;
    FormFields fields(node, m_faults);
    fields.require({"item"});
    fields.text("label", row.label);
    readSource(fields, row.source, Wanted::Item);
    if (double points = 0; fields.number("size", points, smallestFormType, largestFormType))
        row.points = points;
    fields.flag("bold", row.bold);
    fields.finish();
    return row;
}

void FormParts::readRowRule(FormFields &fields, FormTable &table)
{
    const TomlNode *node = fields.table("rule");
    if (!node)
        return;
    FormFields own(*node, m_faults);
    own.number("line", table.rule, 0, thickestLine);
    own.integer("grey", table.ruleGrey, 0, 255);
    own.flag("last", table.ruleLast);
    own.finish();
}

FormTable FormParts::table(const TomlNode &node)
{
    FormTable table;
    FormFields fields(node, m_faults);
    fields.require({"x", "y", "width", "pitch", "label", "value", "row"});
    readPlace(fields, table.place);
    fields.number("width", table.width, 0, paperWidth());
    fields.number("pitch", table.pitch, 1, paperHeight());
    if (double top = 0; fields.number("top", top, 0, paperHeight()))
        table.top = top;
    if (double divider = 0; fields.number("divider", divider, 0, paperWidth()))
        table.divider = divider;
    fields.number("frame", table.frame, 0, thickestLine);
    if (const TomlNode *label = fields.table("label"))
        readCell(*label, table, table.label, true);
    if (const TomlNode *value = fields.table("value"))
        readCell(*value, table, table.value, false);
    readRowRule(fields, table);
    fields.tables("row", [&](const TomlNode &row) { table.rows.push_back(tableRow(row)); });
    checkAcross(fields, table.place.x, table.width, Align::Left);
    fields.finish();
    return table;
}

} // namespace printing
