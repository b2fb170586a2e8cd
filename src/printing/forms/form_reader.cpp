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
        , m_parts(m_items, m_form, m_faults)
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
        readShift(fields);
        readElements(fields);
        readBody(fields);
        readCarry(fields);
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
        own.text("source", m_form.paper.source);
        own.finish();
    }

    void readShift(FormFields &fields)
    {
        const TomlNode *node = fields.table("shift");
        if (!node)
            return;
        FormFields own(*node, m_faults);
        m_form.shiftRight = m_parts.shiftNames(own, "right");
        m_form.shiftDown = m_parts.shiftNames(own, "down");
        own.finish();
    }

    void readElements(FormFields &fields)
    {
        const auto add = [&](const char *key, auto &into, auto part) {
            fields.tables(key, [&](const TomlNode &node) { into.push_back((m_parts.*part)(node)); });
        };
        add("box", m_form.boxes, &FormParts::box);
        add("rule", m_form.rules, &FormParts::rule);
        add("stack", m_form.stacks, &FormParts::stack);
        add("table", m_form.tables, &FormParts::table);
        add("slot", m_form.richTexts, &FormParts::slot);
        fields.tables("text", [&](const TomlNode &node) { m_form.texts.push_back(m_parts.text(node)); });
        fields.tables("total", [&](const TomlNode &node) {
            m_form.texts.push_back(m_parts.text(node, OnSheets::Last));
        });
    }

    void readBody(FormFields &fields)
    {
        if (const TomlNode *node = fields.table("body"))
            m_form.body = m_parts.body(*node);
    }

    void readCarry(FormFields &fields)
    {
        const TomlNode *node = fields.table("carry");
        if (!node)
            return;
        m_form.carry = m_parts.carry(*node);
        if (m_form.carry->takesRow && (!m_form.body || m_form.body->first.count < 2))
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
