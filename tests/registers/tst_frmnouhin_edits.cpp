#include "registers/customer_desk.h"
#include "support/scripted_test.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QLineEdit>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString noName = u"納品先名が入力されていません。               "_s;
const QString editsOpen = u"変更が保存されていません。保存しますか？"_s;
const QString entryOpen = u"入力中の納品先が登録されていません。登録しますか？"_s;
const QString anyText;
using ui::prompts::Version;

using Register = CustomerDesk;

} // namespace

// What becomes of an edited row: by accident, beside another program, on a database that fails.
class TestFrmNouhinEdits : public ScriptedTest
{
    Q_OBJECT

private slots:
    void anotherProgramChangesTheCustomer_data()
    {
        QTest::addColumn<int>("version");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("shown");
        QTest::newRow("mine") << int(Version::Mine) << u"田中　商店|03-9|田中商店 C3 03-9 ﾀﾅｶｼﾞﾛｳ"_s
                              << u"田中　商店"_s;
        QTest::newRow("theirs") << int(Version::Theirs) << u"田仲|03-9|田仲 C3 03-9"_s << u"田仲"_s;
        QTest::newRow("Esc") << int(Version::Undecided) << u"田仲|03-9|田仲 C3 03-9"_s << u"田中　商店"_s;
    }

    void anotherProgramChangesTheCustomer()
    {
        QFETCH(int, version);
        QFETCH(QString, stored);
        QFETCH(QString, shown);
        Register r;
        db::Connection other;
        QVERIFY(other.open(r.shop.path(u"shop.cdb"_s)));
        r.type("txtName", u"田中　商店"_s);
        QVERIFY(other.execute(u"UPDATE 納品先 SET 納品先名1 = '田仲', TEL1 = '03-9', "
                              "納品先名キー = '田仲 C3 03-9' WHERE 納品先ID = 3"_s));
        ui::prompts::expectAskWhichVersion(
            u"表示中のデータは、編集している間にほかのプログラムで変更されました。どちらを残しますか。\n\n"
            "納品先名1：自分の入力は「田中　商店」、ほかの変更は「田仲」\n"
            "TEL1：「」がほかで「03-9」に変更（どちらを選んでも残ります）"_s,
            Version(version));
        r.goTo(1);
        QCOMPARE(r.stored(u"納品先名1, TEL1, 納品先名キー"_s, 3), stored);
        const bool isLeft = Version(version) != Version::Undecided;
        QCOMPARE(r.grid().currentIndex().row(), isLeft ? 1 : 0);
        r.goTo(0);
        QCOMPARE(r.box("txtName").text(), shown);
        if (!isLeft) { // what was typed is still there to be saved
            ui::prompts::expectAskWhichVersion({}, Version::Mine);
            r.goTo(1);
            QCOMPARE(r.stored(u"納品先名1"_s, 3), u"田中　商店"_s);
        }
    }

    void aWheelTurnedInPassingChangesNothing()
    {
        Register r;
        r.box("txtName").setFocus();
        turnWheelOver(r.list("dbcKubun"));
        QCOMPARE(r.stored(u"区分ID"_s, 3), u"1"_s);
    }

    // What is marked in the list is what the boxes show and 削除 deletes.
    void aRefusedClickMarksTheRowThatIsShown()
    {
        Register r;
        r.clear("txtName");
        ui::prompts::expectInform({});
        clickRow(r, 2);
        QTest::qWait(60);
        QCOMPARE(r.grid().currentIndex().row(), 0);
        const QModelIndexList marked = r.grid().selectionModel()->selectedRows();
        QCOMPARE(marked.size(), 1);
        QCOMPARE(marked.front().row(), 0);
    }

    void leavingARowSavesIt()
    {
        Register r;
        r.type("txtName2", u"営業部"_s);
        r.goTo(2);
        QCOMPARE(r.stored(u"納品先名2, 納品先名キー, 更新日"_s, 3),
                 u"営業部|田中次郎営業部 C3  ﾀﾅｶｼﾞﾛｳ|2026-04-01"_s);
        QCOMPARE(r.listed(), u"3 1 2"_s);
        QCOMPARE(r.box("txtName").text(), u"鈴木花子"_s);

        r.clear("txtName");
        ui::prompts::expectInform(noName);
        r.goTo(0);
        QCOMPARE(r.grid().currentIndex().row(), 2);
        ui::prompts::expectInform(noName);
        r.press("Command6");
        ui::prompts::expectInform(noName);
        r.press("cmdAdd");
        QCOMPARE(r.stored(u"納品先名1"_s, 2), u"鈴木花子"_s);
        QCOMPARE(r.cursor(), u"txtName"_s);
        QCOMPARE(r.enabled(), browsing);
        ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Save);
        ui::prompts::expectInform(noName);
        r.screen.reject();
        QVERIFY(r.screen.isVisible());
        ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Discard);
        QTest::keyClick(&r.box("txtName"), Qt::Key_Escape);
        QVERIFY(!r.screen.isVisible());
        QCOMPARE(r.stored(u"納品先名1"_s, 2), u"鈴木花子"_s);
    }

    void escNeitherStoresNorDropsWhatWasTyped_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("closed");
        using ui::prompts::Choice;
        QTest::newRow("saved") << int(Choice::Save) << u"改装中|2026-04-01"_s << true;
        QTest::newRow("dropped") << int(Choice::Discard) << u"-|2026-02-01"_s << true;
        QTest::newRow("gone back") << int(Choice::Cancel) << u"-|2026-02-01"_s << false;
    }

    void escNeitherStoresNorDropsWhatWasTyped()
    {
        QFETCH(int, answer);
        Register r;
        r.type("txtMemo", u"改装中"_s);
        ui::prompts::expectAskToSave(editsOpen, static_cast<ui::prompts::Choice>(answer));
        QTest::keyClick(&r.box("txtMemo"), Qt::Key_Escape);
        QTEST(r.stored(u"メモ, 更新日"_s, 3), "stored");
        QTEST(!r.screen.isVisible(), "closed");
        QCOMPARE(r.box("txtMemo").text(),
                 answer == int(ui::prompts::Choice::Discard) ? QString() : u"改装中"_s);
    }

    // The category is stored when it is chosen, and belongs to what was changed all the same.

    void whatWasChangedCanBeTakenBack()
    {
        Register r;
        const QString before = r.stored(u"*"_s, 3);
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.type("txtName", u"田"_s);
        r.type("txtCode", u"A1"_s); // its warning is not due any more either
        r.choose("cmdBill", 20);
        r.choose("dbcKubun", 1);
        QCOMPARE(r.stored(u"区分ID, 納品先名1"_s, 3), u"2|田中次郎"_s);
        QTest::keyClick(r.screen.focusWidget(), Qt::Key_B, Qt::AltModifier);
        QTRY_COMPARE(r.box("txtName").text(), u"田中次郎"_s);
        QCOMPARE(r.list("dbcKubun").currentText(), u"得意先"_s);
        QCOMPARE(r.list("cmdBill").currentIndex(), -1);
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.goTo(1);
        QCOMPARE(r.stored(u"*"_s, 3).section(u'|', 0, -2), before.section(u'|', 0, -2)); // but for the 版
        r.goTo(0); // left in between: what is there now is what it is
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.press("cmdAdd");
        r.type("txtName", u"佐藤"_s);
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.press("cmdCancel");
    }

    // What the row holds once it was saved, or what another program made of it, is no way back.
    void aSavedCategoryStays()
    {
        Register r;
        r.choose("dbcKubun", 1);
        r.type("txtMemo", u"改装中"_s);
        r.press("cmdNewDate");
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.type("txtMemo", u"開店"_s);
        r.press("cmdUndo");
        QCOMPARE(r.stored(u"区分ID, メモ"_s, 3), u"2|改装中"_s);

        r.goTo(1);
        r.choose("dbcKubun", 1);
        r.shop.run(u"UPDATE 納品先 SET 区分ID = 3 WHERE 納品先ID = 1"_s);
        ui::prompts::expectInform(anyText);
        r.press("cmdUndo");
        QVERIFY(!r.the("cmdUndo").isEnabled());
        QCOMPARE(r.stored(u"区分ID"_s, 1), u"3"_s);
    }

    void aCategoryThatCouldNotBeTakenBackCanBeLater()
    {
        Register r;
        r.choose("dbcKubun", 1);
        r.shop.fireTriggers();
        r.shop.run(u"CREATE TEMP TRIGGER t BEFORE UPDATE ON 納品先 BEGIN SELECT RAISE(ABORT, 'no'); END"_s);
        ui::prompts::expectInform(anyText);
        r.press("cmdUndo");
        QCOMPARE(r.stored(u"区分ID"_s, 3), u"2"_s);
        r.shop.run(u"DROP TRIGGER t"_s);
        r.press("cmdUndo");
        QCOMPARE(r.stored(u"区分ID"_s, 3), u"1"_s);
    }

    void closingDuringEntry_data()
    {
        QTest::addColumn<bool>("typed");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("closed");
        using ui::prompts::Choice;
        const QString bare = u"4|-|2026-04-01"_s;
        QTest::newRow("nothing typed") << false << -1 << bare << true;
        QTest::newRow("given up") << true << int(Choice::Discard) << bare << true;
        QTest::newRow("saved") << true << int(Choice::Save) << u"4|佐藤|2026-04-01"_s << true;
        QTest::newRow("gone on") << true << int(Choice::Cancel) << bare << false;
    }

    void closingDuringEntry()
    {
        QFETCH(bool, typed);
        QFETCH(int, answer);
        Register r;
        r.press("cmdAdd");
        if (typed) {
            r.choose("dbcKubun", 0);
            r.type("txtName", u"佐藤"_s);
            ui::prompts::expectAskToSave(entryOpen, static_cast<ui::prompts::Choice>(answer));
        }
        r.screen.reject();
        QTEST(r.stored(u"納品先ID, 納品先名1, 登録日"_s, 4), "stored");
        QTEST(!r.screen.isVisible(), "closed");
    }

    void closingAsksBeforeACustomerIsEnteredTwice()
    {
        Register r;
        r.shop.run(u"UPDATE 納品先 SET TEL1 = '03-1' WHERE 納品先ID = 2"_s);
        r.press("cmdAdd");
        r.choose("dbcKubun", 0);
        r.type("txtName", u"鈴木　花子"_s);
        r.type("txtTel", u"０３－１"_s);
        ui::prompts::expectAskToSave(entryOpen, ui::prompts::Choice::Save);
        ui::prompts::expectAskCautiously({}, false);
        r.screen.reject();
        QVERIFY(r.screen.isVisible());
        QCOMPARE(r.stored(u"納品先名1"_s, 4), u"-"_s);
        ui::prompts::expectAskToSave(entryOpen, ui::prompts::Choice::Save);
        ui::prompts::expectAskCautiously({}, true);
        r.screen.reject();
        QVERIFY(!r.screen.isVisible());
        QCOMPARE(r.stored(u"納品先名1"_s, 4), u"鈴木　花子"_s);
    }

    void aFailingDatabaseChangesNothing()
    {
        Register r;
        r.shop.run(u"PRAGMA query_only = ON"_s);
        ui::prompts::expectInform(anyText);
        r.press("cmdAdd");
        QCOMPARE(r.listed(), u"3 1 2"_s);
        r.goTo(1);
        r.type("txtName", u"山本"_s);
        for (const char *button : {"cmdNewDate", "cmdAdd", "Command6"}) {
            ui::prompts::expectInform(anyText);
            r.press(button);
            QCOMPARE(r.enabled(), browsing);
        }
        ui::prompts::expectInform(anyText);
        QTest::keyClick(&r.list("dbcKubun"), Qt::Key_Down);
        QCOMPARE(r.list("dbcKubun").currentText(), u"得意先"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, ui::prompts::anyRemark);
        ui::prompts::expectInform(anyText);
        r.press("cmdDelete");
        QCOMPARE(r.listed(), u"3 1 2"_s);
        QCOMPARE(r.box("txtName").text(), u"山本"_s);
        QCOMPARE(r.box("txtDate2").text(), u"2026/02/01"_s);
        r.shop.run(u"PRAGMA query_only = OFF"_s);
        QCOMPARE(r.stored(u"納品先名1, 更新日"_s, 1), u"山田太郎|2026-02-01"_s);
        r.press("cmdNewDate");
        QCOMPARE(r.stored(u"納品先名1"_s, 1), u"山本"_s);
    }

    void aRowDeletedByAnotherProgram()
    {
        Register r;
        r.type("txtName", u"田中"_s);
        r.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 3"_s);
        ui::prompts::expectInform(anyText);
        r.press("cmdNewDate");
        QCOMPARE(r.box("txtName").text(), u"田中"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, ui::prompts::anyRemark);
        r.press("cmdDelete");
        QCOMPARE(r.listed(), u"1 2"_s);
    }
};

QTEST_MAIN(TestFrmNouhinEdits)
#include "tst_frmnouhin_edits.moc"
