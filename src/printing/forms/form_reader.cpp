#include "printing/forms/form_reader.h"

#include "printing/forms/form_parts.h"
#include "printing/forms/form_words.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr qsizetype mostFaultsTold = 5;
constexpr qsizetype mostLetters = 500; // of one fault, which quotes the file

// Labels to continuous forms, millimetres.
constexpr double smallestPaper = 20;
constexpr double largestPaper = 1000;

class FormReader
{
public:
    FormReader(const FormItems &items, FormFaults &faults)
        : m_items(items)
        , m_faults(faults)
        , m_parts(m_items, m_faults)
    {
        m_items.items.emplace(QString::fromUtf16(formPageItem), FormItemKind::Text);
        if (!m_items.summed.isEmpty())
            m_items.items.emplace(QString::fromUtf16(formCarriedItem), FormItemKind::Number);
    }

    Form read(const TomlNode &root)
    {
        FormFields fields(root, m_faults);
        if (!isOurs(fields))
            return m_form;
        fields.require({"name", "paper"});
        fields.text("name", m_form.name);
        readPaper(fields);
        m_parts.setRoom(m_form.paper.readWidth(), m_form.paper.readHeight());
        readElements(fields, m_form);
        fields.tables("part", [&](const TomlNode &node) { m_form.parts.push_back(part(node)); });
        fields.finish();
        return m_form;
    }

private:
    /// A file of a later format may hold anything: it is read no further.
    bool isOurs(FormFields &fields)
    {
        int format = 0;
        if (!fields.has("format")) {
            fields.fault("format", u"「format = %1」が書かれていません。"_s.arg(formFormat));
            return false;
        }
        if (!fields.integer("format", format, 1, 1'000'000))
            return false;
        if (format > formFormat)
            fields.fault(
                "format",
                u"この版より新しい書式（format = %1）です。プログラムを新しくしてください。"_s.arg(format));
        return format <= formFormat;
    }

    void readPaper(FormFields &fields)
    {
        fields.choice("origin", m_form.origin, wordList(originWords));
        const TomlNode *node = fields.table("paper");
        if (!node)
            return;
        FormFields own(*node, m_faults);
        own.require({"width", "height"});
        own.number("width", m_form.paper.width, smallestPaper, largestPaper);
        own.number("height", m_form.paper.height, smallestPaper, largestPaper);
        own.flag("turned", m_form.paper.turned);
        // The printer would take the wrong length for a continuous form, and the paper would run away.
        if (m_form.paper.turned && m_form.paper.width > m_form.paper.height)
            own.fault("turned", u"縦長に送る用紙だけを横向きに読めます。連続用紙は送る向きのまま、"
                                "「turned」なしで書いてください。"_s);
        own.text("source", m_form.paper.source);
        own.finish();
    }

    FormPart part(const TomlNode &node)
    {
        FormPart part;
        FormFields fields(node, m_faults);
        const double width = m_form.paper.readWidth();
        const double height = m_form.paper.readHeight();
        fields.require({"name"});
        fields.text("name", part.name);
        fields.number("x", part.x, 0, width);
        fields.number("y", part.y, 0, height);
        m_parts.setRoom(width - part.x, height - part.y);
        readElements(fields, part);
        fields.finish();
        return part;
    }

    void readElements(FormFields &fields, FormPart &part)
    {
        readShift(fields, part);
        const auto add = [&](const char *key, auto &into, auto element) {
            fields.tables(key, [&](const TomlNode &node) { into.push_back((m_parts.*element)(node)); });
        };
        add("box", part.boxes, &FormParts::box);
        add("rule", part.rules, &FormParts::rule);
        add("stack", part.stacks, &FormParts::stack);
        add("table", part.tables, &FormParts::table);
        add("slot", part.richTexts, &FormParts::slot);
        fields.tables("text", [&](const TomlNode &node) { part.texts.push_back(m_parts.text(node)); });
        fields.tables(
            "total", [&](const TomlNode &node) { part.texts.push_back(m_parts.text(node, OnSheets::Last)); });
        if (const TomlNode *node = fields.table("body"))
            part.body = m_parts.body(*node);
        readCarry(fields, part);
    }

    void readShift(FormFields &fields, FormPart &part)
    {
        const TomlNode *node = fields.table("shift");
        if (!node)
            return;
        FormFields own(*node, m_faults);
        part.shiftRight = m_parts.shiftNames(own, "right");
        part.shiftDown = m_parts.shiftNames(own, "down");
        own.finish();
    }

    void readCarry(FormFields &fields, FormPart &part)
    {
        const TomlNode *node = fields.table("carry");
        if (!node)
            return;
        part.carry = m_parts.carry(*node);
        if (part.carry->takesRow && (!part.body || part.body->first.count < 2))
            fields.fault("carry", u"繰越の行を入れるには、[body] の「rows」が 2 以上必要です。"_s);
    }

    FormItems m_items;
    FormFaults &m_faults;
    Form m_form;
    FormParts m_parts;
};

QString told(std::vector<TomlFault> faults, const QString &fileName)
{
    std::stable_sort(faults.begin(), faults.end(),
                     [](const TomlFault &a, const TomlFault &b) { return a.line < b.line; });
    QStringList lines;
    for (const TomlFault &fault : faults) {
        if (lines.size() == mostFaultsTold) {
            lines << u"ほかに %1 か所あります。"_s.arg(qsizetype(faults.size()) - mostFaultsTold);
            break;
        }
        lines << u"%1:%2: %3"_s.arg(fileName).arg(fault.line).arg(fault.text.left(mostLetters));
    }
    return lines.join(u'\n');
}

} // namespace

base::Result<Form> readForm(const QByteArray &content, const QString &fileName, const FormItems &items)
{
    const TomlFile file = readToml(content);
    if (!file.faults.empty())
        return base::Error{told(file.faults, fileName)};
    FormFaults faults;
    Form form = FormReader(items, faults).read(file.root);
    if (!faults.all().empty())
        return base::Error{told(faults.all(), fileName)};
    return form;
}

} // namespace printing
