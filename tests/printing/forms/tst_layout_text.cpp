#include "printing/forms/form_files.h"
#include "printing/forms/layout_elements.h"
#include "printing/forms/layout_text.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace printing;

namespace
{

// Every value with its path, but for lines: "text/3/x=20".
void flatten(const TomlNode &node, const QString &path, QStringList &into)
{
    if (node.kind == TomlNode::Kind::Table || node.kind == TomlNode::Kind::Array) {
        int index = 0;
        for (const TomlNode &child : node.children)
            flatten(child, path + u'/' + (child.key.isEmpty() ? QString::number(index++) : child.key), into);
        return;
    }
    into << u"%1=%2%3%4"_s.arg(path, node.text, QString::number(node.number), node.flag ? u"t"_s : QString());
}

QStringList values(const QByteArray &content)
{
    QStringList all;
    const TomlFile file = readToml(content);
    if (!file.faults.empty())
        return {u"no layout"_s};
    flatten(file.root, {}, all);
    all.sort();
    return all;
}

QStringList without(QStringList all, const QStringList &gone)
{
    for (const QString &value : gone)
        all.removeOne(value);
    return all;
}

} // namespace

class TestLayoutText : public QObject
{
    Q_OBJECT

private slots:
    void singleMeasures_data();
    void singleMeasures();
    void everyMeasureOfTheBuiltInForms_data();
    void everyMeasureOfTheBuiltInForms();
    void clicks();
};

void TestLayoutText::singleMeasures_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("changed"); // empty: told that it cannot be

    const auto row = [](const char *name, const char *line, const char *key, const char *changed) {
        QTest::newRow(name) << QByteArray(line) << QString::fromLatin1(key) << QByteArray(changed);
    };
    row("as we write it", "x     = 158.5", "x", "x     = 12.25");
    row("with its explanation", "y = 12 # y = 13 は前の値", "y", "y = 12.25 # y = 13 は前の値");
    row("without blanks", "x=20", "x", "x=12.25");
    row("of Windows", "x = 20\r", "x", "x = 12.25\r");
    row("negative, with a sign", "x = +2.0e1", "x", "x = 12.25");
    row("in braces", "label = { grey = 5, x = 134.0, size = 10 }", "label.x",
        "label = { grey = 5, x = 12.25, size = 10 }");
    row("the same letters in a text", "amount = { before = \"x = 3, # \\\"\", x = 4 }", "amount.x",
        "amount = { before = \"x = 3, # \\\"\", x = 12.25 }");
    row("to_x is not x", "rule = { to_x = 3, x = 4 }", "rule.x", "rule = { to_x = 3, x = 12.25 }");
    row("in an explanation only", "# x = 4", "x", "");
    row("dotted", "label.x = 4", "label.x", "");
    row("a word", "x = inf", "x", "");
}

void TestLayoutText::singleMeasures()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, key);
    QFETCH(QByteArray, changed);
    const QByteArray before = "[[text]]\n" + line + "\nend";
    const auto after = withMeasure(before, 1, 2, key, 12.25);
    QCOMPARE(bool(after), !changed.isEmpty());
    if (after)
        QCOMPARE(*after, "[[text]]\n" + changed + "\nend");
}

void TestLayoutText::everyMeasureOfTheBuiltInForms_data()
{
    QTest::addColumn<QString>("fileName");
    const QStringList names = QDir(QStringLiteral(FORMS_FOLDER)).entryList({u"*.toml"_s});
    QVERIFY(names.size() >= 5);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << QStringLiteral(FORMS_FOLDER) + u'/' + name;
}

// Each alone is changed, and everything else stays to the letter.
void TestLayoutText::everyMeasureOfTheBuiltInForms()
{
    QFETCH(QString, fileName);
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    const QStringList before = values(content);
    int changes = 0;
    for (const LayoutElement &element : layoutElements(readToml(content).root)) {
        for (const LayoutMeasure &measure : element.measures) {
            const double wanted = measure.value + 0.375;
            const auto after = withMeasure(content, element.line, measure.line, measure.key, wanted);
            QVERIFY2(after, qPrintable(element.kind + element.name + measure.key));
            const QStringList now = values(*after);
            const QStringList gone = without(before, now);
            const QStringList come = without(now, before);
            QCOMPARE(gone.size(), measure.line > 0 ? 1 : 0);
            QCOMPARE(come.size(), 1);
            const QString name = measure.key.section(u'.', -1);
            QVERIFY2(
                come.front().endsWith(u'/' + name + u'=' + QString::number(measureText(wanted).toDouble())),
                qPrintable(come.front() + measure.key));
            QCOMPARE(after->count('\n'), content.count('\n') + (measure.line > 0 ? 0 : 1));
            QCOMPARE(after->count('#'), content.count('#'));
            ++changes;
        }
    }
    QVERIFY2(changes > 15, qPrintable(QString::number(changes)));
}

// A clerk points at what is to be moved.
void TestLayoutText::clicks()
{
    const QByteArray content = R"(format = 1
name = "試し"
paper = { width = 210.0, height = 100.0 }
[[box]]
x = 10.0
y = 10.0
width = 100.0
height = 50.0
[[text]]
text = "合計"
x = 60.0
y = 20.0
width = 30.0
size = 10
align = "right"
[[part]]
name = "受領書"
y = 50.0
[[part.text]]
item = "日付"
x = 150.0
y = 10.0
)";
    const auto elements = layoutElements(readToml(content).root);
    const auto clicked = [&](double x, double y) {
        const int found = elementAt(elements, {x, y});
        return found < 0 ? QString() : elements[static_cast<std::size_t>(found)].name;
    };
    QCOMPARE(clicked(40, 21), u"「合計」"_s); // ends at 60
    QCOMPARE(clicked(75, 21), QString());     // the box, which has no name
    QCOMPARE(elementAt(elements, {75, 21}), 1);
    QCOMPARE(clicked(151, 61), u"受領書　日付"_s);
    QCOMPARE(elementAt(elements, {200, 5}), -1);
}

QTEST_GUILESS_MAIN(TestLayoutText)

#include "tst_layout_text.moc"
