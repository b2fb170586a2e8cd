// The history at the counter: found, followed, numbered and printed once more.
#include "history_desk.h"
#include "shipping/history/frmKuroneko3.h"
#include "support/scripted_test.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QClipboard>
#include <QFile>

using namespace Qt::StringLiterals;
using namespace shipping;
using ui::prompts::Choice;

namespace
{

struct Desk : HistoryDesk<frmKuroneko3>
{
    Desk() { open(); }

    QString numbers()
    {
        return rows(u"SELECT coalesce(送り状番号, '') FROM 発送マスター ORDER BY 発送ID"_s).join(u'|');
    }
};

} // namespace

class TestFrmKuroneko3 : public ScriptedTest
{
    Q_OBJECT

private slots:
    void searches_data();
    void searches();
    void numbersAreReadOneAfterTheOther();
    void doubtfulNumbersAreAskedAbout_data();
    void doubtfulNumbersAreAskedAbout();
    void aNumberIsKeptHoweverItsRowIsLeft_data();
    void aNumberIsKeptHoweverItsRowIsLeft();
    void anotherProgramsNumber_data();
    void anotherProgramsNumber();
    void aNumberLeadsToItsCarrier();
    void aReprintLeavesTheHistoryAsItIs();
    void anOldRowTakesWhatWasKept();
    void severalAtOnce();
    void theListGoesOut();
};

void TestFrmKuroneko3::searches_data()
{
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("keys"); // empty: it is told that there are none
    QTest::newRow("sender") << u"txtKey1"_s << u"ﾔﾏﾀﾞ"_s << u"2"_s;
    QTest::newRow("consignee") << u"txtKey2"_s << u"高橋　花子"_s << u"1"_s;
    QTest::newRow("an underscore") << u"txtKey2"_s << u"中_"_s << u"3"_s;
    QTest::newRow("nobody") << u"txtKey2"_s << u"%"_s << u""_s;
    QTest::newRow("a number") << u"txtFindNo"_s << u"4156 2475"_s << u"2"_s;
}

void TestFrmKuroneko3::searches()
{
    QFETCH(QString, box);
    QFETCH(QString, typed);
    QFETCH(QString, keys);
    Desk desk;
    desk.run(u"UPDATE 発送マスター SET 送り状番号 = '415624751765' WHERE 発送ID = 2"_s);
    desk.hand->type(box, typed);
    if (keys.isEmpty())
        ui::prompts::expectInform(ui::messages::nothingFound());
    desk.hand->leave(box); // Enter searches
    QCOMPARE(desk.listed(), keys);
    desk.hand->press("cmdAll");
    QCOMPARE(desk.listed(), u"4 3 2 1"_s);
    QCOMPARE(desk.text("txtKey1") + desk.text("txtKey2") + desk.text("txtFindNo"), QString());
    // The wheel over a box in passing chooses nothing.
    turnWheelOver(desk.hand->list("cmbKubun"));
    desk.hand->press("Command1");
    QCOMPARE(desk.listed(), u"4 3 2 1"_s);
    desk.hand->choose("cmbKubun", u"お歳暮"_s);
    desk.hand->press("chkDate"); // from the first of this month on
    ui::prompts::expectInform(ui::messages::nothingFound(), ui::prompts::anyRemark);
    desk.hand->press("Command1");
    desk.hand->press("chkDate");
    desk.hand->press("Command1");
    QCOMPARE(desk.listed(), u"3 1"_s);
}

void TestFrmKuroneko3::numbersAreReadOneAfterTheOther()
{
    Desk desk;
    desk.hand->box("txtNumber").setFocus();
    for (const QString &read : {u"A415624751765A"_s, u"4156-2475-1776"_s}) {
        desk.hand->type("txtNumber", read);
        desk.hand->leave("txtNumber");
        QCOMPARE(desk.hand->cursor(), u"txtNumber"_s);
    }
    QCOMPARE(desk.numbers(), u"||415624751776|415624751765"_s);
    QCOMPARE(desk.text("txtHinmei"), u"荷物2"_s);
    desk.hand->leave("txtNumber"); // one without a number is passed over
    desk.hand->leave("txtNumber");
    QCOMPARE(desk.text("txtHinmei"), u"荷物1"_s);
    QVERIFY(!desk.message().isEmpty()); // the last one
    QCOMPARE(desk.numbers(), u"||415624751776|415624751765"_s);
}

void TestFrmKuroneko3::doubtfulNumbersAreAskedAbout_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<Choice>("choice");
    QTest::addColumn<QString>("numbers");
    const QString before = u"|415624751765||415624751776"_s;
    QTest::newRow("read twice, left") << u"415624751765"_s << Choice::Discard << before;
    QTest::newRow("read twice, kept")
        << u"415624751765"_s << Choice::Save << u"|415624751765||415624751765"_s;
    QTest::newRow("in place of another") << u"415624751787"_s << Choice::Discard << before;
    QTest::newRow("two digits swapped") << u"415624757165"_s << Choice::Discard << before;
    QTest::newRow("rubbed out") << u" "_s << Choice::Discard << before;
    QTest::newRow("goes on typing") << u"415624757165"_s << Choice::Cancel << before;
}

void TestFrmKuroneko3::doubtfulNumbersAreAskedAbout()
{
    QFETCH(QString, typed);
    QFETCH(Choice, choice);
    Desk desk;
    desk.run(u"UPDATE 発送マスター SET 送り状番号 = '415624751765' WHERE 発送ID = 2"_s);
    desk.run(u"UPDATE 発送マスター SET 送り状番号 = '415624751776' WHERE 発送ID = 4"_s);
    desk.hand->press("cmdAll");
    desk.hand->type("txtNumber", typed);
    ui::prompts::expectAskHowToLeave({}, choice, Choice::Cancel);
    desk.hand->leave("txtNumber");
    QTEST(desk.numbers(), "numbers");
    QCOMPARE(desk.text("txtHinmei"), choice == Choice::Cancel ? u"荷物4"_s : u"荷物3"_s);
    if (choice == Choice::Cancel) { // what was typed is still there
        QCOMPARE(desk.text("txtNumber"), typed);
        ui::prompts::expectAskHowToLeave({}, Choice::Discard, Choice::Cancel);
        desk.hand->key(Qt::Key_Escape);
    }
}

void TestFrmKuroneko3::aNumberIsKeptHoweverItsRowIsLeft_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"another row", "a search", "all", "Esc twice", "the close button", "a reprint"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void TestFrmKuroneko3::aNumberIsKeptHoweverItsRowIsLeft()
{
    QFETCH(QString, way);
    Desk desk;
    desk.hand->type("txtNumber", u"415624751765"_s);
    if (way == u"another row"_s)
        desk.goTo(2);
    else if (way == u"a search"_s)
        desk.hand->press("Command1");
    else if (way == u"all"_s)
        desk.hand->press("cmdAll");
    else if (way == u"Esc twice"_s)
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
    else if (way == u"the close button"_s)
        desk.screen->close();
    else
        desk.press("Command2");
    QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
    QCOMPARE(desk.numbers(), u"|||415624751765"_s);
}

void TestFrmKuroneko3::anotherProgramsNumber_data()
{
    QTest::addColumn<QString>("meanwhile");
    QTest::addColumn<ui::prompts::Version>("version");
    QTest::addColumn<QString>("row"); // 送り状番号, 品名
    const QString number = u"UPDATE 発送マスター SET 送り状番号 = '77', 版 = 99 WHERE 発送ID = 4"_s;
    const QString goods = u"UPDATE 発送マスター SET 品名 = 'りんご', 版 = 99 WHERE 発送ID = 4"_s;
    using enum ui::prompts::Version;
    QTest::newRow("mine") << goods << Mine << u"415624751765|りんご"_s;
    QTest::newRow("theirs") << goods << Theirs << u"|りんご"_s;
    QTest::newRow("undecided") << goods << Undecided << u"|りんご"_s;
    QTest::newRow("their number") << number << Theirs << u"77|荷物4"_s;
}

void TestFrmKuroneko3::anotherProgramsNumber()
{
    QFETCH(QString, meanwhile);
    QFETCH(ui::prompts::Version, version);
    Desk desk;
    desk.hand->type("txtNumber", u"415624751765"_s);
    desk.run(meanwhile);
    if (meanwhile.contains(u"'77'"_s)) // seen before anything is written
        ui::prompts::expectAskHowToLeave({}, Choice::Save, Choice::Cancel);
    ui::prompts::expectAskWhichVersion({}, version);
    desk.hand->press("cmdSaveNumber");
    QTEST(desk.rows(u"SELECT coalesce(送り状番号, ''), 品名 FROM 発送マスター WHERE 発送ID = 4"_s).first(),
          "row");
    if (version == ui::prompts::Version::Undecided)
        QCOMPARE(desk.text("txtNumber"), u"415624751765"_s);
}

void TestFrmKuroneko3::aNumberLeadsToItsCarrier()
{
    ui::desktop::beginScript();
    Desk desk;
    ui::prompts::expectInform(u"送り状番号が入力されていません。"_s);
    desk.hand->press("cmdTrack");
    QGuiApplication::clipboard()->setText(u"before"_s);
    QTest::keyClick(desk.screen.get(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"before"_s); // nothing to copy
    desk.run(u"UPDATE 発送マスター SET 送り状番号 = '4156-2475-1765' WHERE 発送ID = 4"_s);
    desk.hand->press("cmdAll");
    QTest::keyClick(desk.screen.get(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"415624751765"_s);
    desk.hand->press("cmdTrack");
    QVERIFY(ui::desktop::takeOpened().endsWith(
        u"kuronekoyamato.co.jp/jizen/servlet/crjz.b.NQ0010?id=415624751765"_s));
    desk.run(u"UPDATE 発送マスター SET 発送方法 = '宛名ラベル' WHERE 発送ID = 4"_s);
    desk.hand->press("cmdAll");
    ui::prompts::expectAskWhichWay(u"どの運送会社の荷物ですか。"_s, {});
    desk.hand->press("cmdTrack");
    QCOMPARE(ui::desktop::takeOpened(), QString());
    ui::prompts::expectAskWhichWay(u"どの運送会社の荷物ですか。"_s, u"佐川急便"_s);
    desk.hand->press("cmdTrack");
    QVERIFY(ui::desktop::takeOpened().contains(u"okurijoNo=415624751765"_s));
}

void TestFrmKuroneko3::aReprintLeavesTheHistoryAsItIs()
{
    Desk desk;
    const QStringList before = desk.rows(u"SELECT * FROM 発送マスター ORDER BY 発送ID"_s);
    desk.hand->type("txtMemo1", u"再送"_s); // for this print alone
    QVERIFY(desk.hand->box("txtNName1").isReadOnly());
    desk.press("Command2");
    QCOMPARE(desk.printers->given.size(), 1U);
    QCOMPARE(desk.rows(u"SELECT * FROM 発送マスター ORDER BY 発送ID"_s), before);
    QCOMPARE(desk.settings.text(workspace::keys::inv3Memo[0]), QString());
    // Another category is gone from the masters: such a slip is not printed any more.
    desk.run(u"DELETE FROM 発送区分 WHERE 発送区分名 = '通販'"_s);
    ui::prompts::expectInform(u"発送区分が不正です。"_s);
    desk.hand->press("Command2");
    desk.goTo(1);
    desk.printers->refusal = base::Error{u"紙がありません。"_s};
    ui::prompts::expectInform({});
    desk.press("Command2");
    QCOMPARE(desk.printers->given.size(), 1U);
    QCOMPARE(desk.rows(u"SELECT * FROM 発送マスター ORDER BY 発送ID"_s), before);
}

void TestFrmKuroneko3::anOldRowTakesWhatWasKept()
{
    Desk desk;
    desk.settings.write(workspace::keys::inv3Code[0], u"0312345678"_s);
    desk.settings.write(workspace::keys::inv3Memo[0], u"割れ物"_s);
    desk.run(u"UPDATE 発送マスター SET 印刷日 = NULL WHERE 発送ID = 3"_s);
    desk.hand->press("cmdAll");
    QCOMPARE(desk.text("txtCode1") + desk.text("txtMemo1"), QString());
    desk.goTo(1);
    QCOMPARE(desk.text("txtCode1"), u"0312345678"_s);
    QCOMPARE(desk.text("txtMemo1"), u"割れ物"_s);
    desk.hand->type("txtMemo1", u"天地無用"_s);
    desk.press("Command2");
    QCOMPARE(desk.settings.text(workspace::keys::inv3Memo[0]), u"天地無用"_s);
    desk.goTo(2);
    QCOMPARE(desk.text("txtMemo1"), QString());
}

void TestFrmKuroneko3::severalAtOnce()
{
    Desk desk;
    std::vector<qint64> exported;
    desk.screen->setCarrierOpeners(
        {.exportRows = [&exported](QWidget *, const std::vector<qint64> &keys) { exported = keys; }});
    desk.hand->press("cmdCarrier");
    QCOMPARE(exported, std::vector<qint64>({4, 3, 2, 1}));
    const auto select = [&desk](int row) {
        desk.list().selectionModel()->select(desk.list().model()->index(row, 0),
                                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
    };
    desk.goTo(0);
    select(2);
    desk.hand->press("cmdCarrier");
    QCOMPARE(exported, std::vector<qint64>({4, 2}));
    desk.goTo(0);
    select(2);
    const QStringList before = desk.history();
    ui::prompts::expectAsk(u"選択した 2 件の送り状を印刷します。よろしいですか。"_s, true);
    desk.press("Command2");
    QCOMPARE(desk.printers->given.size(), 2U);
    QCOMPARE(desk.history(), before);
    // One of them cannot be printed: none is.
    desk.run(u"UPDATE 発送マスター SET 届先郵便番号 = '' WHERE 発送ID = 2"_s);
    ui::prompts::expectInform(u"郵便番号が入力されていません。"_s, ui::prompts::anyRemark);
    desk.press("Command2");
    QCOMPARE(desk.printers->given.size(), 2U);
}

void TestFrmKuroneko3::theListGoesOut()
{
    ui::desktop::beginScript();
    Desk desk;
    const QString file = desk.path(u"list.csv"_s);
    ui::file_dialogs::expectFile(file);
    desk.hand->press("cmdExport");
    QFile written(file);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(written.readAll().count("\r\n"), 5);
    QString title;
    QTimer::singleShot(0, desk.screen.get(), [&title] {
        QWidget *preview = QApplication::activeModalWidget();
        title = preview ? preview->windowTitle() : QString();
        if (preview)
            preview->close();
    });
    desk.hand->press("cmdList");
    QVERIFY2(title.contains(u"発送履歴"_s), qPrintable(title));
}

QTEST_MAIN(TestFrmKuroneko3)
#include "tst_frmkuroneko3.moc"
