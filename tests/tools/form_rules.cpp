#include "form_rules.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QSize>
#include <QXmlStreamReader>

#include <algorithm>
#include <map>
#include <vector>

using namespace Qt::StringLiterals;

namespace house
{
namespace
{

// What is left of 1366 × 768 beside a task bar and a title bar, in pixels.
constexpr QSize usableScreen(1366, 700);

struct Element
{
    QString tag;
    QXmlStreamAttributes attributes;
    QString text;
    std::vector<Element> children;

    [[nodiscard]] QString attribute(const QString &name) const { return attributes.value(name).toString(); }

    [[nodiscard]] const Element *child(QStringView tagName) const
    {
        for (const Element &element : children) {
            if (element.tag == tagName) {
                return &element;
            }
        }
        return nullptr;
    }

    /// The value element of a property; null when the form does not set it.
    [[nodiscard]] const Element *property(QStringView name) const
    {
        for (const Element &element : children) {
            if (element.tag == u"property"_s && element.attribute(u"name"_s) == name &&
                !element.children.empty()) {
                return &element.children.front();
            }
        }
        return nullptr;
    }

    [[nodiscard]] QString propertyText(QStringView name) const
    {
        const Element *value = property(name);
        return value ? value->text : QString();
    }
};

Element readElement(QXmlStreamReader &reader)
{
    Element element{reader.name().toString(), reader.attributes(), {}, {}};
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            element.children.push_back(readElement(reader));
            break;
        case QXmlStreamReader::Characters:
            element.text += reader.text();
            break;
        case QXmlStreamReader::EndElement:
            return element;
        default:
            break;
        }
    }
    return element;
}

class FormCheck
{
public:
    FormCheck(const QString &path, const Element &form)
        : m_path(path)
        , m_form(form)
    {}

    QStringList run()
    {
        const Element *top = m_form.child(u"widget");
        if (!top) {
            return {m_path + u": no widget"_s};
        }
        if (const Element *custom = m_form.child(u"customwidgets")) {
            for (const Element &widget : custom->children) {
                m_extends[textOf(widget, u"class")] = textOf(widget, u"extends");
            }
        }
        checkClassName(*top);
        checkSize(*top);
        visit(*top, true);
        checkTabStops();
        checkNames();
        checkLetters(*top);
        return m_findings;
    }

private:
    static QString textOf(const Element &element, QStringView tag)
    {
        const Element *child = element.child(tag);
        return child ? child->text : QString();
    }

    void report(const QString &what) { m_findings += m_path + u": "_s + what; }

    /// The toolkit's class behind a promoted one.
    [[nodiscard]] QString toolkitClass(const Element &widget) const
    {
        QString name = widget.attribute(u"class"_s);
        for (auto found = m_extends.find(name); found != m_extends.end(); found = m_extends.find(name)) {
            name = found->second;
        }
        return name;
    }

    void checkClassName(const Element &top)
    {
        const QString file = m_path.section(u'/', -1).chopped(3);
        if (textOf(m_form, u"class") != file || top.attribute(u"name"_s) != file) {
            report(u"class and object name are not the file's"_s);
        }
    }

    void checkSize(const Element &top)
    {
        const Element *geometry = top.property(u"geometry");
        const Element *minimum = top.property(u"minimumSize");
        for (const Element *size : {geometry, minimum}) {
            if (size && (textOf(*size, u"width").toInt() > usableScreen.width() ||
                         textOf(*size, u"height").toInt() > usableScreen.height())) {
                report(u"does not fit a screen of 1366 × 768"_s);
            }
        }
    }

    /// \a shown: whether all around the element is visible when the form opens.
    void visit(const Element &element, bool shown)
    {
        static const QSet<QString> named = {u"widget"_s, u"layout"_s, u"spacer"_s, u"action"_s,
                                            u"actiongroup"_s};
        const QString name = element.attribute(u"name"_s);
        if (named.contains(element.tag) && !name.isEmpty()) {
            if (m_names.contains(name)) {
                report(name + u" is there twice"_s);
            }
            m_names.insert(name);
        }
        const bool isWidget = element.tag == u"widget"_s;
        shown = shown && element.propertyText(u"visible") != u"false"_s;
        if (isWidget) {
            collect(element, shown);
        }
        for (const Element &child : element.children) {
            if (isWidget && child.tag == u"widget"_s && placesByHand(element)) {
                report(child.attribute(u"name"_s) + u" lies in no layout"_s);
            }
            visit(child, shown);
        }
    }

    /// The letters of \a element and of what is in it: each once.
    void checkLetters(const Element &element)
    {
        static const QRegularExpression mark(u"(?<!&)&([^&])"_s);
        // Captions that clerks have known for long, and that therefore stay.
        static const QSet<QString> knownTwice = {u"Frame2 cmdDelete"_s, u"lblKey1 cmdMasterCancel"_s};
        for (const QString &caption : {element.propertyText(u"text"), element.propertyText(u"title")}) {
            const QString letter = mark.match(caption).captured(1).toUpper();
            if (element.tag != u"widget"_s || letter.isEmpty()) {
                continue;
            }
            const QString name = element.attribute(u"name"_s);
            checkUsualLetter(name, caption, letter);
            const QString former = m_letters.value(letter);
            if (!former.isEmpty() && former != name && !knownTwice.contains(former + u' ' + name)) {
                report(name + u" has the letter of "_s + former);
            }
            m_letters[letter] = name;
        }
        for (const Element &child : element.children) {
            checkLetters(child);
        }
    }

    /// The same key for the same action on every screen.
    void checkUsualLetter(const QString &name, const QString &caption, const QString &letter)
    {
        static const QHash<QString, QString> usual = {
            {u"登録"_s, u"I"_s}, {u"更新"_s, u"U"_s}, {u"新規登録"_s, u"N"_s}, {u"新規"_s, u"N"_s}};
        // Known for long, and pressed by the other letter too.
        static const QSet<QString> known = {u"frmSiire cmdUpdate"_s};
        const QString wanted = usual.value(caption.section(u'(', 0, 0));
        const QString form = m_path.section(u'/', -1).chopped(3);
        if (!wanted.isEmpty() && letter != wanted && !known.contains(form + u' ' + name)) {
            report(u"%1 has not the letter %2"_s.arg(name, wanted));
        }
    }

    /// Whether children of \a widget would have fixed positions, other than a tab widget's pages.
    [[nodiscard]] bool placesByHand(const Element &widget) const
    {
        static const QSet<QString> plain = {u"QWidget"_s, u"QDialog"_s, u"QFrame"_s, u"QGroupBox"_s};
        return plain.contains(toolkitClass(widget));
    }

    void collect(const Element &widget, bool shown)
    {
        if (toolkitClass(widget) == u"QLabel"_s && widget.property(u"buddy")) {
            m_buddies.append(widget.propertyText(u"buddy"));
        }
        if (takesFocus(widget)) {
            m_controls.push_back(&widget);
            const bool byTab = shown && !widget.propertyText(u"focusPolicy").endsWith(u"ClickFocus"_s);
            if (byTab) {
                m_reachedByTab.push_back(widget.attribute(u"name"_s));
            }
        }
    }

    [[nodiscard]] bool takesFocus(const Element &widget) const
    {
        static const QSet<QString> classes = {
            u"QLineEdit"_s,       u"QTextEdit"_s,       u"QPlainTextEdit"_s, u"QTextBrowser"_s,
            u"QPushButton"_s,     u"QToolButton"_s,     u"QCheckBox"_s,      u"QRadioButton"_s,
            u"QComboBox"_s,       u"QFontComboBox"_s,   u"QSpinBox"_s,       u"QDoubleSpinBox"_s,
            u"QDateEdit"_s,       u"QTimeEdit"_s,       u"QDateTimeEdit"_s,  u"QListView"_s,
            u"QListWidget"_s,     u"QTableView"_s,      u"QTableWidget"_s,   u"QTreeView"_s,
            u"QTreeWidget"_s,     u"QSlider"_s,         u"QDial"_s,          u"QScrollBar"_s,
            u"QCalendarWidget"_s, u"QKeySequenceEdit"_s};
        const QString policy = widget.propertyText(u"focusPolicy").section(u':', -1);
        if (policy == u"NoFocus"_s) {
            return false;
        }
        return classes.contains(toolkitClass(widget)) || (!policy.isEmpty() && policy != u"ClickFocus"_s);
    }

    void checkTabStops()
    {
        QStringList stops;
        if (const Element *list = m_form.child(u"tabstops")) {
            for (const Element &stop : list->children) {
                stops += stop.text;
            }
        }
        for (const QString &stop : std::as_const(stops)) {
            if (!m_names.contains(stop)) {
                report(u"the tab stop %1 does not exist"_s.arg(stop));
            }
        }
        if (stops.removeDuplicates() > 0) {
            report(u"a tab stop is there twice"_s);
        }
        // A single control needs no order.
        for (const QString &control : std::as_const(m_reachedByTab)) {
            if (m_reachedByTab.size() > 1 && !stops.contains(control)) {
                report(control + u" is not among the tab stops"_s);
            }
        }
    }

    void checkNames()
    {
        for (const QString &buddy : std::as_const(m_buddies)) {
            if (!m_names.contains(buddy)) {
                report(u"the buddy %1 does not exist"_s.arg(buddy));
            }
        }
        for (const Element *control : m_controls) {
            const QString name = control->attribute(u"name"_s);
            if (!m_buddies.contains(name) && control->propertyText(u"accessibleName").isEmpty() &&
                !saysItself(*control)) {
                report(name + u" has no name for screen readers"_s);
            }
        }
    }

    /// Buttons are known by their caption, when it holds more than signs such as "…" or "▼".
    [[nodiscard]] bool saysItself(const Element &control) const
    {
        static const QSet<QString> buttons = {u"QPushButton"_s, u"QToolButton"_s, u"QCheckBox"_s,
                                              u"QRadioButton"_s};
        const QString caption = control.propertyText(u"text");
        return buttons.contains(toolkitClass(control)) &&
               std::any_of(caption.begin(), caption.end(), [](QChar c) { return c.isLetterOrNumber(); });
    }

    QString m_path;
    const Element &m_form;
    std::map<QString, QString> m_extends;
    QHash<QString, QString> m_letters; // who has each
    QSet<QString> m_names;
    QStringList m_buddies;
    std::vector<const Element *> m_controls; // all that can take the focus
    QStringList m_reachedByTab;
    QStringList m_findings;
};

} // namespace

QStringList checkForm(const QString &path, const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    if (!reader.readNextStartElement()) {
        return {path + u": "_s + reader.errorString()};
    }
    const Element form = readElement(reader);
    while (!reader.atEnd()) {
        reader.readNext();
    }
    if (reader.hasError()) {
        return {u"%1:%2: %3"_s.arg(path).arg(reader.lineNumber()).arg(reader.errorString())};
    }
    return FormCheck(path, form).run();
}

} // namespace house
