#include "printing/forms/layout_elements.h"

#include "printing/sheet.h"

#include <algorithm>
#include <array>
#include <span>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

struct Wanted
{
    const char *key;
    const char16_t *caption;
    enum class Unit { Millimetres, Points, Count } unit = Unit::Millimetres;
    bool isOptional = false; // offered where it is not written, too
};

constexpr auto points = Wanted::Unit::Points;
constexpr auto count = Wanted::Unit::Count;
constexpr auto millimetres = Wanted::Unit::Millimetres;

constexpr Wanted ofText[] = {{"x", u"左から"},
                             {"y", u"上から"},
                             {"width", u"幅", millimetres, true},
                             {"height", u"高さ"},
                             {"size", u"文字の大きさ", points, true}};
constexpr Wanted ofBox[] = {{"x", u"左から"}, {"y", u"上から"}, {"width", u"幅"}, {"height", u"高さ"}};
constexpr Wanted ofRule[] = {
    {"x", u"始点 左から"}, {"y", u"始点 上から"}, {"to_x", u"終点 左から"}, {"to_y", u"終点 上から"}};
constexpr Wanted ofStack[] = {{"x", u"左から"}, {"y", u"上から"}, {"width", u"幅"}};
constexpr Wanted ofStackLine[] = {{"size", u"文字の大きさ", points, true},
                                  {"gap", u"上の余白", millimetres, true},
                                  {"from", u"これより下"}};
constexpr Wanted ofTable[] = {{"x", u"左から"},
                              {"y", u"上から"},
                              {"width", u"幅"},
                              {"pitch", u"行の高さ"},
                              {"divider", u"縦線 左から"},
                              {"label.x", u"見出し 左から"},
                              {"label.size", u"見出しの大きさ", points},
                              {"value.x", u"値 左から"},
                              {"value.width", u"値の幅"},
                              {"value.size", u"値の大きさ", points}};
constexpr Wanted ofBody[] = {{"y", u"1 行目の上端"},
                             {"pitch", u"行の高さ"},
                             {"rows", u"行数", count},
                             {"size", u"文字の大きさ", points},
                             {"left", u"表の左端"},
                             {"right", u"表の右端"},
                             {"heading_height", u"見出しの高さ"}};
constexpr Wanted ofColumn[] = {{"x", u"左から"}, {"width", u"幅", millimetres, true}};
constexpr Wanted ofCarry[] = {{"x", u"左から"},
                              {"y", u"上から"},
                              {"size", u"文字の大きさ", points},
                              {"amount.x", u"金額 左から"},
                              {"amount.y", u"金額 上から"}};
constexpr Wanted ofPart[] = {{"x", u"左から"}, {"y", u"上から"}};
constexpr Wanted ofPaper[] = {{"paper.width", u"用紙の幅"}, {"paper.height", u"用紙の高さ"}};

const TomlNode *child(const TomlNode &node, QStringView key)
{
    const auto found = std::ranges::find(node.children, key, &TomlNode::key);
    return found == node.children.end() ? nullptr : &*found;
}

const TomlNode *at(const TomlNode &node, const QString &path)
{
    const TomlNode *found = &node;
    for (const QString &key : path.split(u'.'))
        found = found ? child(*found, key) : nullptr;
    return found;
}

bool isNumber(const TomlNode *node)
{
    return node && (node->kind == TomlNode::Kind::Number || node->kind == TomlNode::Kind::Integer);
}

double number(const TomlNode &node, const QString &path, double otherwise = 0)
{
    const TomlNode *found = at(node, path);
    return isNumber(found) ? found->number : otherwise;
}

QString text(const TomlNode &node, const QString &path)
{
    const TomlNode *found = at(node, path);
    return found && found->kind == TomlNode::Kind::Text ? found->text : QString();
}

QString shown(const TomlNode &node)
{
    const QString item = text(node, u"item"_s);
    return item.isEmpty() ? u"「%1」"_s.arg(text(node, u"text"_s)) : item;
}

std::vector<LayoutMeasure> measures(const TomlNode &node, std::span<const Wanted> wanted)
{
    std::vector<LayoutMeasure> found;
    for (const Wanted &each : wanted) {
        const QString key = QString::fromLatin1(each.key);
        const TomlNode *value = at(node, key);
        if (!isNumber(value) && !each.isOptional)
            continue;
        const bool isPoints = each.unit == points;
        found.push_back({key, QString::fromUtf16(each.caption),
                         isNumber(value) ? value->number
                         : isPoints      ? 10.0
                                         : 0.0,
                         isNumber(value) ? value->line : 0, isPoints, each.unit == count});
    }
    return found;
}

constexpr double lineHeight = 1.3; // times the type's size
constexpr double usualPoints = 10;

Align alignOf(const TomlNode &node)
{
    const QString word = text(node, u"align"_s);
    return word == u"right" ? Align::Right : word == u"center" ? Align::Centre : Align::Left;
}

// Across: about \a guess wide where the file tells no width.
QRectF across(const TomlNode &node, double y, double height, double guess)
{
    const double told = number(node, u"width"_s);
    const double width = told > 0 ? told : guess;
    return {number(node, u"x"_s) - width * shareBefore(alignOf(node)), y, width, height};
}

QRectF areaOfText(const TomlNode &node)
{
    const double type = millimetresFromPoints(number(node, u"size"_s, usualPoints));
    const QString written = text(node, u"text"_s);
    const double guess = type * (written.isEmpty() ? 6 : static_cast<double>(written.size()));
    return across(node, number(node, u"y"_s), std::max(type * lineHeight, number(node, u"height"_s)), guess);
}

QRectF areaOfBox(const TomlNode &node)
{
    return {number(node, u"x"_s), number(node, u"y"_s), number(node, u"width"_s), number(node, u"height"_s)};
}

QRectF areaOfRule(const TomlNode &node)
{
    const QPointF from(number(node, u"x"_s), number(node, u"y"_s));
    const QPointF to(number(node, u"to_x"_s, from.x()), number(node, u"to_y"_s, from.y()));
    return QRectF(from, to).normalized();
}

QRectF areaOfStack(const TomlNode &node)
{
    double height = 0;
    if (const TomlNode *lines = child(node, u"line"))
        for (const TomlNode &line : lines->children)
            height += number(line, u"gap"_s) +
                      millimetresFromPoints(number(line, u"size"_s, usualPoints)) * lineHeight;
    return {number(node, u"x"_s), number(node, u"y"_s), number(node, u"width"_s), height};
}

QRectF areaOfTable(const TomlNode &node)
{
    const TomlNode *rows = child(node, u"row");
    const double height = number(node, u"pitch"_s) * (rows ? static_cast<double>(rows->children.size()) : 1);
    return {number(node, u"x"_s), number(node, u"y"_s), number(node, u"width"_s), height};
}

class Collector
{
public:
    std::vector<LayoutElement> take() { return std::move(m_elements); }

    void addPaper(const TomlNode &root)
    {
        m_elements.push_back({u"用紙"_s, text(root, u"name"_s), 0, measures(root, ofPaper)});
    }

    void addAll(const TomlNode &node)
    {
        each(node, u"text", u"文字"_s, ofText, areaOfText, shown);
        each(node, u"total", u"文字"_s, ofText, areaOfText, shown);
        for (const TomlNode &stack : tables(node, u"stack"))
            addStack(stack);
        each(node, u"table", u"表"_s, ofTable, areaOfTable,
             [](const TomlNode &table) { return namesIn(table, u"row"); });
        addBody(node);
        if (const TomlNode *carry = child(node, u"carry"))
            add({u"繰越"_s, shown(*carry), carry->line, measures(*carry, ofCarry), u"before_last"_s,
                 areaOfText(*carry)});
        each(node, u"slot", u"飾り文字の枠"_s, ofBox, areaOfBox, shown);
        each(node, u"box", u"枠"_s, ofBox, areaOfBox, [](const TomlNode &) { return QString(); });
        each(node, u"rule", u"線"_s, ofRule, areaOfRule, [](const TomlNode &) { return QString(); });
    }

    void addParts(const TomlNode &root)
    {
        for (const TomlNode &part : tables(root, u"part")) {
            m_part = text(part, u"name"_s);
            m_corner = {number(part, u"x"_s), number(part, u"y"_s)};
            m_elements.push_back({u"区画"_s, m_part, part.line, measures(part, ofPart)});
            addAll(part);
        }
    }

private:
    static const std::vector<TomlNode> &tables(const TomlNode &node, QStringView key)
    {
        static const std::vector<TomlNode> none;
        const TomlNode *array = child(node, key);
        return array && array->kind == TomlNode::Kind::Array ? array->children : none;
    }

    static QString namesIn(const TomlNode &node, QStringView key)
    {
        QStringList names;
        for (const TomlNode &line : tables(node, key)) {
            const QString label = text(line, u"label"_s);
            names << (label.isEmpty() ? shown(line) : label);
        }
        return names.join(u"、"_s);
    }

    void add(LayoutElement element)
    {
        if (element.measures.empty())
            return;
        element.area.translate(m_corner);
        if (!m_part.isEmpty())
            element.name = m_part + u"　"_s + element.name;
        m_elements.push_back(std::move(element));
    }

    template <class Area, class Name>
    void each(const TomlNode &node, QStringView key, const QString &kind, std::span<const Wanted> wanted,
              Area area, Name name)
    {
        for (const TomlNode &table : tables(node, key))
            add({kind, name(table), table.line, measures(table, wanted), text(table, u"sheet"_s),
                 area(table)});
    }

    void addStack(const TomlNode &stack)
    {
        add({u"行の並び"_s, namesIn(stack, u"line"), stack.line, measures(stack, ofStack),
             text(stack, u"sheet"_s), areaOfStack(stack)});
        for (const TomlNode &line : tables(stack, u"line"))
            if (!child(line, u"rule"))
                add({u"　その行"_s, shown(line), line.line, measures(line, ofStackLine),
                     text(stack, u"sheet"_s), areaOfStack(stack)});
    }

    void addBody(const TomlNode &node)
    {
        const TomlNode *body = child(node, u"body");
        if (!body)
            return;
        const double y = number(*body, u"y"_s);
        const double height = number(*body, u"pitch"_s) * number(*body, u"rows"_s);
        const double left = number(*body, u"left"_s);
        add({u"明細"_s,
             namesIn(*body, u"column"),
             body->line,
             measures(*body, ofBody),
             {},
             QRectF(left, y, number(*body, u"right"_s, left) - left, height)});
        for (const TomlNode &column : tables(*body, u"column")) {
            const QString heading = text(column, u"heading"_s);
            add({u"　その列"_s,
                 heading.isEmpty() ? shown(column) : heading,
                 column.line,
                 measures(column, ofColumn),
                 {},
                 across(column, y, height, 10)});
        }
    }

    std::vector<LayoutElement> m_elements;
    QString m_part;
    QPointF m_corner;
};

} // namespace

std::vector<LayoutElement> layoutElements(const TomlNode &root)
{
    Collector collector;
    collector.addPaper(root);
    collector.addAll(root);
    collector.addParts(root);
    auto elements = collector.take();
    std::ranges::stable_sort(elements, {}, &LayoutElement::line);
    return elements;
}

int elementAt(const std::vector<LayoutElement> &elements, const QPointF &point)
{
    constexpr double reach = 1.5; // millimetres around a thin line
    int found = -1;
    double smallest = 0;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const QRectF &area = elements[i].area;
        if (area.isNull() || !area.adjusted(-reach, -reach, reach, reach).contains(point))
            continue;
        // The rows of a stack share its place: the stack itself is meant.
        const double size = (area.width() + reach) * (area.height() + reach);
        if (found < 0 || size < smallest) {
            found = static_cast<int>(i);
            smallest = size;
        }
    }
    return found;
}

} // namespace printing
