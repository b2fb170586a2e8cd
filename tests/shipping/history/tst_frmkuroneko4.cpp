// Corrections of the history, deletions and slips that are printed anew; what is typed is never lost.
#include "history_desk.h"
#include "shipping/history/frmKuroneko4.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QComboBox>

using namespace Qt::StringLiterals;
using namespace shipping;
using ui::prompts::Choice;
using ui::prompts::Version;

namespace
{

struct Desk : HistoryDesk<frmKuroneko4>
{
    Desk() { open(); }

    QString cell(int row, const QString &heading)
    {
        const QAbstractItemModel &model = *list().model();
        for (int column = 0; column < model.columnCount(); ++column) {
            if (model.headerData(column, Qt::Horizontal).toString() == heading)
                return model.index(row, column).data().toString();
        }
        return u"no such column"_s;
    }
    QString row4()
    {
        return rows(u"SELECT 届先名1, 届先名キー, 品名, 届先電話, 版 FROM 発送マスター WHERE 発送ID = 4"_s)
            .join(u'\n')
            .section(u'|', 0, 3);
    }
};

} // namespace

class TestFrmKuroneko4 : public ScriptedTest
{
    Q_OBJECT

private slots:
    void aCorrectionIsStored();
    void editsAreAskedAbout_data();
    void editsAreAskedAbout();
    void whatCannotBeMeantIsNotStored();
    void bothVersions_data();
    void bothVersions();
    void goneMeanwhile();
    void deletions_data();
    void deletions();
    void aReissueUpdatesTheRow();
    void anOldRowTakesWhatWasKept();
    void theWindowKeepsItsHeightBesideLabels();
};

void TestFrmKuroneko4::aCorrectionIsStored()
{
    Desk desk;
    desk.hand->type("txtNName1", u"株式会社　伊藤"_s);
    desk.hand->type("txtHinmei", u"りんご"_s);
    desk.hand->press("cmdUndo");
    QCOMPARE(desk.text("txtHinmei"), u"荷物4"_s);
    desk.hand->press("Command3");
    QCOMPARE(desk.row4(), u"伊藤|伊藤|荷物4|"_s);
    desk.hand->type("txtNName1", u"株式会社　伊藤"_s);
    desk.hand->press("Command3");
    QCOMPARE(desk.row4(), u"株式会社　伊藤|株式会社　伊藤|荷物4|"_s);
    QCOMPARE(desk.cell(0, u"お届け先"_s), u"株式会社　伊藤"_s);
    desk.goTo(1); // nothing is left to be asked about
    QCOMPARE(desk.text("txtHinmei"), u"荷物3"_s);
}

void TestFrmKuroneko4::editsAreAskedAbout_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<Choice>("choice");
    for (const char *way : {"another row", "a search", "all", "Esc"}) {
        for (const Choice choice : {Choice::Save, Choice::Discard, Choice::Cancel})
            QTest::addRow("%s %d", way, int(choice)) << QString::fromLatin1(way) << choice;
    }
}

void TestFrmKuroneko4::editsAreAskedAbout()
{
    QFETCH(QString, way);
    QFETCH(Choice, choice);
    Desk desk;
    desk.hand->type("txtHinmei", u"りんご"_s);
    ui::prompts::expectAskToSave(u"入力した訂正を保存しますか。\n4　2026/03/04　伊藤　荷物4"_s, choice);
    if (way == u"another row"_s)
        desk.goTo(2);
    else if (way == u"a search"_s)
        desk.hand->press("Command1");
    else if (way == u"all"_s)
        desk.hand->press("cmdAll");
    else
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
    QCOMPARE(desk.value(u"SELECT 品名 FROM 発送マスター WHERE 発送ID = 4"_s).toString(),
             choice == Choice::Save ? u"りんご"_s : u"荷物4"_s);
    if (choice != Choice::Cancel) {
        if (way == u"another row"_s)
            QCOMPARE(desk.text("txtHinmei"), u"荷物2"_s);
        QCOMPARE(desk.screen->isVisible(), way != u"Esc"_s);
        return;
    }
    QVERIFY(desk.screen->isVisible());
    QCOMPARE(desk.text("txtHinmei"), u"りんご"_s);
    desk.hand->press("cmdUndo");
}

void TestFrmKuroneko4::whatCannotBeMeantIsNotStored()
{
    Desk desk;
    desk.hand->type("txtDate2", u"2026/02/30"_s);
    ui::prompts::expectInform({});
    desk.hand->press("Command3");
    QCOMPARE(desk.hand->cursor(), u"txtDate2"_s);
    ui::prompts::expectAskToSave({}, Choice::Save); // refused once more, and the row is not left
    ui::prompts::expectInform({});
    desk.goTo(2);
    QCOMPARE(desk.text("txtDate2"), u"2026/02/30"_s);
    desk.hand->press("cmdUndo");
    desk.hand->list("dbcKubun").setEditText(u"おせいぼ"_s);
    ui::prompts::expectAskCautiously(u"発送区分「おせいぼ」は登録されていません。このまま保存しますか。"_s,
                                     false);
    desk.hand->press("Command3");
    QCOMPARE(desk.value(u"SELECT 発送区分 FROM 発送マスター WHERE 発送ID = 4"_s).toString(), u"通販"_s);
    desk.hand->press("cmdUndo");
}

void TestFrmKuroneko4::bothVersions_data()
{
    QTest::addColumn<bool>("reissues");
    QTest::addColumn<Version>("version");
    QTest::addColumn<QString>("row"); // 届先名1, key, 品名, 届先電話
    for (const bool reissues : {false, true}) {
        const char *how = reissues ? "reissued" : "saved";
        QTest::addRow("%s, mine", how) << reissues << Version::Mine << u"伊藤|伊藤|りんご|090"_s;
        QTest::addRow("%s, theirs", how) << reissues << Version::Theirs << u"伊藤|伊藤|みかん|090"_s;
        QTest::addRow("%s, undecided", how) << reissues << Version::Undecided << u"伊藤|伊藤|みかん|090"_s;
    }
}

void TestFrmKuroneko4::bothVersions()
{
    QFETCH(bool, reissues);
    QFETCH(Version, version);
    Desk desk;
    desk.hand->type("txtHinmei", u"りんご"_s);
    desk.run(u"UPDATE 発送マスター SET 品名 = 'みかん', 届先電話 = '090', 版 = 99 WHERE 発送ID = 4"_s);
    ui::prompts::expectAskWhichVersion(
        u"表示中のデータは、編集している間にほかのプログラムで変更されました。どちらを残しますか。\n\n"
        "届先電話：「」がほかで「090」に変更（どちらを選んでも残ります）\n"
        "品名：自分の入力は「りんご」、ほかの変更は「みかん」"_s,
        version);
    desk.press(reissues ? "Command2" : "Command3");
    QTEST(desk.row4(), "row");
    QCOMPARE(desk.text("txtHinmei"), version == Version::Theirs ? u"みかん"_s : u"りんご"_s);
    const bool isOut = reissues && version == Version::Mine;
    QCOMPARE(desk.printers->given.size() - desk.printers->cancelled.size(), isOut ? 1U : 0U);
    if (version == Version::Undecided)
        desk.hand->press("cmdUndo");
}

void TestFrmKuroneko4::goneMeanwhile()
{
    Desk desk;
    desk.hand->type("txtHinmei", u"りんご"_s);
    desk.run(u"DELETE FROM 発送マスター WHERE 発送ID = 4"_s);
    ui::prompts::expectInform(u"この発送は、履歴からすでに削除されています。"_s);
    desk.hand->press("Command3");
    QCOMPARE(desk.text("txtHinmei"), u"りんご"_s); // still to be read and copied
    ui::prompts::expectAskToSave({}, Choice::Discard);
    desk.hand->press("cmdAll");
    QCOMPARE(desk.listed(), u"3 2 1"_s);
}

void TestFrmKuroneko4::deletions_data()
{
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QString>("meanwhile");
    QTest::addColumn<QString>("left");
    const QString nothing = u"SELECT 1"_s;
    QTest::newRow("Enter alone") << false << nothing << u"1 2 3 4"_s;
    QTest::newRow("yes") << true << nothing << u"1 2 3"_s;
    QTest::newRow("changed") << true << u"UPDATE 発送マスター SET 品名 = 'x', 版 = 99"_s << u"1 2 3 4"_s;
    QTest::newRow("gone") << true << u"DELETE FROM 発送マスター WHERE 発送ID = 4"_s << u"1 2 3"_s;
}

void TestFrmKuroneko4::deletions()
{
    QFETCH(bool, yes);
    QFETCH(QString, meanwhile);
    Desk desk;
    ui::prompts::expectAskCautiously(u"この発送を履歴から削除します。よろしいですか。"_s, yes,
                                     u"4　2026/03/04　伊藤　荷物4"_s);
    ui::prompts::meanwhile([&] { (void)desk.connection.execute(meanwhile); });
    if (yes && meanwhile != u"SELECT 1"_s)
        ui::prompts::expectInform({});
    desk.hand->press("cmdDelete");
    QTEST(desk.rows(u"SELECT 発送ID FROM 発送マスター ORDER BY 発送ID"_s).join(u' '), "left");
    if (yes && meanwhile == u"SELECT 1"_s) {
        QCOMPARE(desk.listed(), u"3 2 1"_s);
        QCOMPARE(desk.text("txtHinmei"), u"荷物3"_s);
        QVERIFY(desk.message().startsWith(u"削除しました：4"_s));
    }
}

void TestFrmKuroneko4::aReissueUpdatesTheRow()
{
    Desk desk;
    desk.hand->type("txtHinmei", u"りんご"_s);
    desk.printers->refusal = base::Error{u"紙がありません。"_s};
    ui::prompts::expectInform({});
    desk.press("Command2");
    QCOMPARE(desk.history().last(), u"4|伊藤|荷物4|||2026-03-04"_s.replace(u"|||"_s, u"|-|-|"_s));
    QCOMPARE(desk.text("txtHinmei"), u"りんご"_s);
    desk.printers->refusal.reset();
    desk.press("Command2");
    QCOMPARE(desk.printers->given.size(), 1U);
    QVERIFY(desk.message().startsWith(u"送り状を再発行しました"_s));
    desk.printers->refusal = base::Error{u"紙がありません。"_s};
    ui::prompts::expectInform({});
    desk.press("Command2");
    QCOMPARE(desk.message(), QString()); // nothing was
    QCOMPARE(desk.history().size(), 4);
    QVERIFY(desk.history().last().startsWith(u"4|伊藤|りんご|"_s));
    QVERIFY(desk.history().last().endsWith(u"|2026-04-01"_s));
    desk.goTo(2); // nothing is left to be asked about
}

void TestFrmKuroneko4::anOldRowTakesWhatWasKept()
{
    Desk desk;
    desk.settings.write(workspace::keys::inv4Code[1], u"77"_s);
    desk.run(u"UPDATE 発送マスター SET 印刷日 = NULL WHERE 発送ID = 3"_s);
    desk.hand->press("cmdAll");
    desk.goTo(1);
    QCOMPARE(desk.text("txtCode2"), u"77"_s);
    desk.goTo(2); // shown is not typed
    desk.goTo(1);
    desk.hand->type("txtCode2", u"78"_s);
    desk.press("Command2");
    QCOMPARE(desk.settings.text(workspace::keys::inv4Code[1]), u"78"_s);
    QCOMPARE(desk.value(u"SELECT 発店コード FROM 発送マスター WHERE 発送ID = 3"_s).toString(), u"78"_s);
}

void TestFrmKuroneko4::theWindowKeepsItsHeightBesideLabels()
{
    Desk desk;
    desk.screen->resize(1000, 100); // as low as it gets
    QTest::qWait(0);
    const int height = desk.screen->height();
    desk.hand->choose("Combo5", u"宛名ラベル"_s);
    QTest::qWait(0);
    QVERIFY(desk.hand->the("labelPlace").isVisible());
    QCOMPARE(desk.screen->height(), height);
    desk.hand->press("cmdUndo");
}

QTEST_MAIN(TestFrmKuroneko4)
#include "tst_frmkuroneko4.moc"
