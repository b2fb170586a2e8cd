// Reads the sources and holds them to the house: floors, seams, clock, and forms that work by keyboard and
// screen reader. docs/developing.md tells the rules.

#include "form_rules.h"
#include "source_rules.h"

#include <QDirIterator>
#include <QLibraryInfo>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

using house::Source;

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList filesUnderSrc(const QStringList &patterns)
{
    const QDir top(QStringLiteral(SOURCE_FOLDER));
    QStringList paths;
    for (QDirIterator it(top.path(), patterns, QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
        paths += top.relativeFilePath(it.next());
    }
    paths.sort();
    return paths;
}

QString readSource(const QString &path)
{
    return QString::fromUtf8(readAll(QStringLiteral(SOURCE_FOLDER) + u'/' + path));
}

QStringList checkAll(const std::function<QStringList(const Source &)> &check)
{
    QStringList findings;
    for (const QString &path : filesUnderSrc({u"*.cpp"_s, u"*.h"_s})) {
        findings += check(house::takeApart(path, readSource(path)));
    }
    return findings;
}

/// "book/tax": the files of one kind of target, without suffix, so that headers go with them.
QSet<QString> stemsOfTargets(const QString &function)
{
    QSet<QString> stems;
    for (const QString &cmake : filesUnderSrc({u"CMakeLists.txt"_s})) {
        for (const QString &file : house::filesOfTargets(readSource(cmake), function)) {
            stems.insert(cmake.section(u'/', 0, -2) + u'/' + file);
        }
    }
    return stems;
}

QSet<QString> widgetHeaders()
{
    QSet<QString> names;
    const QString headers = QLibraryInfo::path(QLibraryInfo::HeadersPath);
    for (const QString &module : {u"QtWidgets"_s, u"QtPrintSupport"_s}) {
        for (const QString &name : QDir(headers + u'/' + module).entryList(QDir::Files)) {
            names.insert(name);
        }
    }
    return names;
}

QString stemOf(const Source &source) { return source.path.section(u'.', 0, 0); }

void expectNone(const QStringList &findings)
{
    QVERIFY2(findings.isEmpty(), qUtf8Printable(u'\n' + findings.join(u'\n')));
}

} // namespace

class TestHouse : public QObject
{
    Q_OBJECT

private slots:
    void includesPointDownward() { expectNone(checkAll(house::checkFloors)); }
    void roomsUseEachOtherOneWay();
    void boxesAndChoosersStayInUi() { expectNone(checkAll(house::checkSeams)); }
    void onlyTheWorkspaceHasAClock() { expectNone(checkAll(house::checkClock)); }
    void loopsHoldWhatTheyRead();
    void logicSeesNoWidgets();
    void screensHoldNoSql();
    void everyEngineUnderstands() { expectNone(checkAll(house::checkEngines)); }
    void everyOrderEndsInTheKey() { expectNone(checkAll(house::checkOrders)); }
    void issuedDocumentsStay() { expectNone(checkAll(house::checkKept)); }
    void bookAloneKnowsSlips() { expectNone(checkAll(house::checkSlipSql)); }
    void formsAreInOrder();

    void rulesFindFaults_data();
    void rulesFindFaults();
    void circlesAreFound();
    void targetsAreRead();
    void formRulesFindFaults_data();
    void formRulesFindFaults();
};

void TestHouse::roomsUseEachOtherOneWay()
{
    QList<Source> sources;
    for (const QString &path : filesUnderSrc({u"*.cpp"_s, u"*.h"_s}))
        sources += house::takeApart(path, readSource(path));
    expectNone(house::checkRooms(sources));
}

void TestHouse::circlesAreFound()
{
    const QList<Source> sources{
        house::takeApart(u"slips/entry/a.cpp"_s,
                         u"#include \"slips/correction/b.h\"\n#include \"slips/c.h\""_s),
        house::takeApart(u"slips/correction/b.cpp"_s, u"#include \"slips/entry/a.h\""_s),
        house::takeApart(u"slips/c.cpp"_s, u"#include \"slips/entry/a.h\""_s)};
    QCOMPARE(house::checkRooms(sources).size(), 1);
    QCOMPARE(house::checkRooms(sources.mid(1)), QStringList());
}

// The tests and tools, too.
void TestHouse::loopsHoldWhatTheyRead()
{
    QStringList findings;
    for (const QString &house : {u"../tests"_s, u"../tools"_s, u"../bench"_s, u"."_s}) {
        const QDir top(QStringLiteral(SOURCE_FOLDER) + u'/' + house);
        for (QDirIterator it(top.path(), {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
             it.hasNext();) {
            const QString path = it.next();
            findings += house::checkLoops(house::takeApart(path, QString::fromUtf8(readAll(path))));
        }
    }
    expectNone(findings);
}

void TestHouse::logicSeesNoWidgets()
{
    const QSet<QString> logic = stemsOfTargets(u"kanbalore_logic"_s);
    const QSet<QString> headers = widgetHeaders();
    QVERIFY(logic.contains(u"db/connection"_s));
    QVERIFY(headers.contains(u"QWidget"_s));
    expectNone(checkAll([&](const Source &source) {
        return logic.contains(stemOf(source)) ? house::checkNoWidgets(source, headers) : QStringList();
    }));
}

void TestHouse::screensHoldNoSql()
{
    const QSet<QString> screens = stemsOfTargets(u"kanbalore_screens"_s);
    expectNone(checkAll([&](const Source &source) {
        const QString file = source.path.section(u'/', -1);
        const bool isScreen =
            screens.contains(stemOf(source)) || file.startsWith(u"frm"_s) || file.startsWith(u"Dialog"_s);
        return isScreen ? house::checkNoSql(source) : QStringList();
    }));
}

void TestHouse::formsAreInOrder()
{
    QStringList findings;
    for (const QString &path : filesUnderSrc({u"*.ui"_s})) {
        findings += house::checkForm(path, readAll(QStringLiteral(SOURCE_FOLDER) + u'/' + path));
    }
    expectNone(findings);
}

void TestHouse::rulesFindFaults_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("faultyLines"); // "rule line"

    const auto row = [](const char *name, const QString &path, const QString &text,
                        const QStringList &faulty) { QTest::newRow(name) << path << text << faulty; };
    row("downward", u"slips/entry/frmIn.cpp"_s,
        u"#include \"slips/entry/frmIn.h\"\n#include \"book/tax.h\"\n"_s, {});
    row("upward", u"db/keys.cpp"_s, u"#include \"db/keys.h\"\n#include \"book/tax.h\"\n"_s, {u"floor 2"_s});
    row("neighbour", u"reports/bill.cpp"_s, u"#include \"shipping/slip.h\""_s, {u"floor 1"_s});
    row("settings lie low", u"ui/grid.cpp"_s, u"#include \"workspace/settings_keys.h\""_s, {});
    row("settings look down", u"workspace/settings.cpp"_s, u"#include \"ui/grid.h\""_s,
        {u"floor 1"_s, u"widget 1"_s});
    row("unknown folder", u"misc/x.cpp"_s, u""_s, {u"floor 1"_s});
    row("message box", u"slips/frmOut.cpp"_s, u"\n#include <QMessageBox>"_s, {u"seam 2"_s});
    row("message box in ui", u"ui/prompts.cpp"_s, u"QMessageBox box;"_s, {});
    row("message box in a comment", u"slips/frmOut.cpp"_s, u"// QMessageBox\n/* QMessageBox */"_s, {});
    row("clock", u"book/tax.cpp"_s, u"auto d = 1'000;\nQDate::currentDate();"_s, {u"clock 2"_s});
    row("clock of the workspace", u"workspace/workspace.cpp"_s, u"QDateTime::currentDateTime()"_s, {});
    row("clock in a text", u"book/tax.cpp"_s, u"char c = '\"'; f(\"currentDate\");"_s, {});
    row("SQL", u"slips/frmOut.cpp"_s, u"f(u\"x\\\"\"_s,\nu\"SELECT 1\"_s);"_s, {u"sql 2"_s});
    row("raw SQL", u"slips/frmOut.cpp"_s, u"f(uR\"sql(\nDELETE FROM x)sql\");"_s, {u"sql 1"_s});
    row("SQL in a comment", u"slips/frmOut.cpp"_s, u"// \"SELECT 1\"\n"_s, {});
    row("a slip's kind", u"reports/bill.cpp"_s, u"f(u\"WHERE 伝票番号 LIKE ?\"_s,\nu\" AND 種別 = ?\"_s);"_s,
        {u"slip 1"_s, u"slip 2"_s, u"engine 1"_s});
    row("a slip's kind in the book", u"book/bill.cpp"_s, u"f(u\"WHERE 種別 IN (?)\"_s);"_s, {});
    row("a line of tax", u"reports/bill.cpp"_s, u"f(u\"商品名 = '消費税'\"_s);"_s, {u"slip 1"_s});
    row("issued documents", u"slips/a.cpp"_s,
        u"f(u\"DELETE FROM 発行控\"_s);\ng(u\"UPDATE 発行控 SET 税込金額 = ?\"_s);\nh(u\"INSERT INTO 発行控 (a) VALUES (?)\"_s);"_s,
        {u"sql 1"_s, u"sql 2"_s, u"sql 3"_s, u"kept 1"_s, u"kept 2"_s});
    row("order of rows", u"book/a.cpp"_s, u"f(u\"ORDER BY rowid\"_s);"_s, {u"engine 1"_s, u"order 1"_s});
    row("order without the key", u"book/a.cpp"_s,
        u"f(u\"SELECT 1 FROM x ORDER BY 日付, \"\n  \"ID DESC LIMIT ?\"_s + u\" ORDER BY 日付 DESC, \"\n\"コード\"_s);"_s,
        {u"sql 1"_s, u"order 2"_s});
    row("order goes on in the code", u"book/a.cpp"_s,
        u"f(u\" ORDER BY \"_s + columns::lineKey);\ng(u\"(SELECT 1 ORDER BY 日付)\"_s);\nh(u\" ORDER BY \"_s + term);"_s,
        {u"sql 2"_s, u"order 2"_s, u"order 3"_s});
    row("typed signs", u"book/a.cpp"_s,
        u"f(u\"a LIKE ? ESCAPE '\\\\' AND b = 1\"_s);\ng(u\"(b LIKE ?)\"_s);"_s, {u"engine 2"_s});
    row("NULL or a value", u"book/a.cpp"_s, u"f(u\"相手先ID IS ?\"_s);"_s, {u"engine 1"_s});
    row("SQLite's dates", u"book/a.cpp"_s, u"f(u\"date(日付) > 1\"_s);"_s, {u"engine 1"_s});
    row("columns not named", u"book/a.cpp"_s, u"f(u\"INSERT INTO 単位 VALUES (1)\"_s);"_s,
        {u"sql 1"_s, u"engine 1"_s});
    row("the same in db", u"db/a.cpp"_s, u"f(u\"ORDER BY rowid\"_s);"_s, {});
    row("a heading", u"reports/bill.cpp"_s, u"f(u\"種別\"_s, u\"消費税\"_s);"_s, {});
    row("a part of what is gone", u"text/a.cpp"_s,
        u"for (const auto &word : wordsOf(pdf).front().words)\n    f();\nfor (auto w : a.wordsOf(b)[0].c) {}"_s,
        {u"loop 1"_s, u"loop 3"_s});
    row("what the loop holds", u"text/a.cpp"_s,
        u"for (auto &w : wordsOf(pdf)) {}\nfor (auto &w : pages.front().words) {}\nfor (auto &w : pageOf(a).words) {}"_s,
        {});
    row("widget", u"book/tax.h"_s, u"#include <QString>\n#include <QLabel>"_s, {u"widget 2"_s});
    row("widget in a module", u"book/tax.h"_s, u"#include <QtWidgets/QLabel>"_s, {u"widget 1"_s});
}

void TestHouse::rulesFindFaults()
{
    QFETCH(QString, path);
    QFETCH(QString, text);
    QFETCH(QStringList, faultyLines);

    const Source source = house::takeApart(path, text);
    QStringList found;
    const auto note = [&](const QString &rule, const QStringList &findings) {
        for (const QString &finding : findings) {
            found += rule + u' ' + finding.section(u':', 1, 1);
        }
    };
    note(u"floor"_s, house::checkFloors(source));
    note(u"seam"_s, house::checkSeams(source));
    note(u"clock"_s, house::checkClock(source));
    note(u"sql"_s, house::checkNoSql(source));
    note(u"slip"_s, house::checkSlipSql(source));
    note(u"kept"_s, house::checkKept(source));
    note(u"engine"_s, house::checkEngines(source));
    note(u"order"_s, house::checkOrders(source));
    note(u"loop"_s, house::checkLoops(source));
    note(u"widget"_s, house::checkNoWidgets(source, {u"QLabel"_s}));
    QCOMPARE(found, faultyLines);
}

void TestHouse::targetsAreRead()
{
    const QString cmake = u"kanbalore_logic(a SOURCES\n    b.cpp # c.cpp\n    d.cpp\n    LINK text)\n"
                          "kanbalore_screens(a_screens SOURCES entry/frmE.cpp)\n"_s;
    QCOMPARE(house::filesOfTargets(cmake, u"kanbalore_logic"_s), QStringList({u"b"_s, u"d"_s}));
    QCOMPARE(house::filesOfTargets(cmake, u"kanbalore_screens"_s), QStringList({u"entry/frmE"_s}));
}

void TestHouse::formRulesFindFaults_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("fault"); // empty: the form is in order

    const auto row = [](const char *name, const QByteArray &items, const QByteArray &tabStops,
                        const char *fault) {
        QTest::newRow(name)
            << "<ui version=\"4.0\"><class>frmX</class><widget class=\"QDialog\" name=\"frmX\">"
               "<layout class=\"QVBoxLayout\" name=\"box\">" +
                   items + "</layout></widget><tabstops>" + tabStops + "</tabstops></ui>"
            << QString::fromUtf8(fault);
    };
    const QByteArray button = "<item><widget class='QPushButton' name='cmdA'><property name='text'>"
                              "<string>保存(&amp;S)</string></property></widget></item>";
    const QByteArray line = "<item><widget class='QLineEdit' name='txtA'/></item>";
    const QByteArray label = "<item><widget class='QLabel' name='lblA'><property name='buddy'>"
                             "<cstring>txtA</cstring></property></widget></item>";
    const QByteArray bothStops = "<tabstop>txtA</tabstop><tabstop>cmdA</tabstop>";

    row("in order", label + line + button, bothStops, "");
    row("no name", line + button, bothStops, "txtA has no name for screen readers");
    row("left out", label + line + button, "<tabstop>txtA</tabstop>", "cmdA is not among the tab stops");
    row("hidden",
        label + line + button +
            "<item><widget class='QWidget' name='boxes'><property "
            "name='visible'><bool>false</bool></property>"
            "<layout class='QHBoxLayout' name='row'><item><widget class='QLineEdit' name='txtB'>"
            "<property "
            "name='accessibleName'><string>B</string></property></widget></item></layout></widget></item>",
        bothStops, "");
    row("stray stop", label + line + button, bothStops + "<tabstop>txtB</tabstop>",
        "the tab stop txtB does not exist");
    row("stray buddy", label + button, "", "the buddy txtA does not exist");
    row("twice", button + button, "<tabstop>cmdA</tabstop>", "cmdA is there twice");
    row("same letter",
        button + "<item><widget class='QPushButton' name='cmdB'><property name='text'>"
                 "<string>削除(&amp;s)</string></property></widget></item>",
        bothStops.mid(bothStops.indexOf("<tabstop>cmdA")) + "<tabstop>cmdB</tabstop>",
        "cmdB has the letter of cmdA");
    row("other letter",
        "<item><widget class='QPushButton' name='cmdB'><property name='text'>"
        "<string>登録(&amp;s)</string></property></widget></item>",
        "", "cmdB has not the letter I");
    row("sign",
        "<item><widget class='QToolButton' name='cmdB'><property name='text'><string>…</string>"
        "</property></widget></item>",
        "", "cmdB has no name for screen readers");
    row("fixed position",
        "<item><widget class='QFrame' name='fraA'><widget class='QLabel' name='lblB'/></widget>"
        "</item>",
        "", "lblB lies in no layout");
    row("not XML", "<item>", "", "Opening and ending tag mismatch.");
}

void TestHouse::formRulesFindFaults()
{
    QFETCH(QByteArray, xml);
    QFETCH(QString, fault);

    const QStringList findings = house::checkForm(u"slips/frmX.ui"_s, xml);
    QCOMPARE(findings.size(), fault.isEmpty() ? 0 : 1);
    QVERIFY2(findings.isEmpty() || findings.first().endsWith(fault), qUtf8Printable(findings.join(u'\n')));

    const QStringList elsewhere = house::checkForm(u"slips/frmY.ui"_s, xml);
    QCOMPARE(elsewhere.size(), fault.contains(u"mismatch"_s) ? 1 : findings.size() + 1);
}

QTEST_GUILESS_MAIN(TestHouse)
#include "tst_house.moc"
