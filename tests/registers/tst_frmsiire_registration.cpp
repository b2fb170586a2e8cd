#include "registers/frmSiire.h"
#include "registers/register_desk.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QtTest>

using namespace Qt::StringLiterals;
using ui::prompts::Choice;
using ui::prompts::Version;

namespace
{

const QString registration = u"登録番号, 登録, 登録開始日, 登録終了日"_s;
const QString nothingKnown = u"-|-|-|-"_s;
const QString editsOpen = u"変更が保存されていません。保存しますか？"_s;

// The register of a shop with the suppliers 2 and 5, the first one on the screen.
struct Register : RegisterDesk<registers::frmSiire>
{
    Register()
        : RegisterDesk(u"仕入先"_s)
    {
        shop.run(
            u"INSERT INTO 仕入先 (仕入先ID, コード, 仕入先名1) VALUES (2, 'S2', '浪速市場'), (5, 'S5', '大阪問屋')"_s);
        show();
    }

    QString state() { return list("Combo2").currentText(); }
    QString remark() { return the<QLabel>("lblRegistrationRemark").text(); }
    QString dayIsNone(const QString &column, const QString &typed)
    {
        return u"%1「%2」は日付ではありません。2023/10/01 のように入力し直してください。"_s.arg(column,
                                                                                                typed);
    }
};

} // namespace

class TestFrmSiireRegistration : public ScriptedTest
{
    Q_OBJECT

private slots:
    void whatIsTypedIsStoredInItsForm_data()
    {
        QTest::addColumn<QStringList>("typed"); // number, from, to
        QTest::addColumn<int>("state");         // chosen; -1: left alone
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("remark"); // what it holds
        const QString none;
        const auto row = [](const char *name, const QStringList &typed, int state, const QString &stored,
                            const QString &remark) {
            QTest::newRow(name) << typed << state << stored << remark;
        };
        row("a number says registered", {u"ｔ７０００ー０１２０ー５０００２"_s, none, none}, -1,
            u"T7000012050002|1|-|-"_s, none);
        row("days say so too", {none, u"令和5年10月1日"_s, u"20270331"_s}, -1, u"-|1|2023-10-01|2027-03-31"_s,
            none);
        row("a wrong digit is stored, and told", {u"T1234567890123"_s, none, none}, -1,
            u"T1234567890123|1|-|-"_s, u"検査数字"_s);
        row("what is no number is stored, and told", {u"申請中"_s, none, none}, -1, u"申請中|-|-|-"_s,
            u"数字13桁"_s);
        row("without a number", {none, none, none}, 2, u"-|2|-|-"_s, none);
        row("a number of one who is not registered", {u"T7000012050002"_s, none, none}, 2,
            u"T7000012050002|2|-|-"_s, u"「登録なし」になっています"_s);
        row("days of one who is not registered", {none, none, u"2026/3/31"_s}, 2, u"-|2|-|2026-03-31"_s,
            u"「登録あり」にしてください"_s);
        row("not known after all", {u"T7000012050002"_s, none, none}, 0, u"T7000012050002|0|-|-"_s, none);
    }

    // By the button's letter too, with the cursor still in the box.
    void whatIsTypedIsStoredInItsForm()
    {
        QFETCH(QStringList, typed);
        QFETCH(int, state);
        QFETCH(QString, stored);
        QFETCH(QString, remark);
        const char *boxes[] = {"txtRegistration", "txtRegisteredFrom", "txtRegisteredTo"};
        for (const bool isLeft : {true, false}) {
            Register r;
            QCOMPARE(r.state(), u"不明"_s);
            for (int i = 0; i < 3; ++i) {
                if (typed.at(i).isEmpty())
                    continue;
                r.type(boxes[i], typed.at(i));
                if (isLeft)
                    r.leave(boxes[i]);
            }
            if (state >= 0)
                r.choose("Combo2", state);
            if (isLeft)
                r.press("cmdUpdate");
            else
                QTest::keyClick(r.screen.focusWidget(), Qt::Key_U, Qt::AltModifier);
            QTRY_COMPARE(r.stored(registration, 2), stored); // the button goes down and comes up again
            QVERIFY2(remark.isEmpty() ? r.remark().isEmpty() : r.remark().contains(remark),
                     qPrintable(r.remark()));
            QCOMPARE(r.stored(registration, 5), nothingKnown);
            r.goTo(1);
            QCOMPARE(r.state() + r.box("txtRegistration").text() + r.remark(), u"不明"_s);
            r.goTo(0);
            QCOMPARE(r.list("Combo2").currentIndex(), qMax(0, stored.section(u'|', 1, 1).toInt()));
            QCOMPARE(r.remark().contains(remark), true);
        }
    }

    // Passing through the boxes, looking into the drop-down, and the wheel in passing.
    void whoPassesThroughChangesNothing()
    {
        Register r;
        r.shop.run(
            u"UPDATE 仕入先 SET 登録番号 = 't7000-012', 登録開始日 = '2023年', 登録 = 9 WHERE 仕入先ID = 5"_s);
        r.goTo(1);
        const QString before = r.stored(u"*"_s, 5);
        r.box("txtPay2").setFocus();
        for (int i = 0; i < 7; ++i)
            QTest::keyClick(r.screen.focusWidget(), Qt::Key_Return);
        r.box("txtName1").setFocus();
        turnWheelOver(r.list("Combo2"));
        r.list("Combo2").setFocus();
        QTest::keyClick(&r.list("Combo2"), Qt::Key_Down, Qt::AltModifier);
        QTest::keyClick(r.list("Combo2").findChild<QAbstractItemView *>(), Qt::Key_Escape);
        r.screen.reject();
        QVERIFY(!r.screen.isVisible());
        QCOMPARE(r.stored(u"*"_s, 5), before);
    }

    // The row is left, the screen closed, or a new one begun, with half a day in the box.
    void halfADayKeepsTheRow()
    {
        Register r;
        r.type("txtTel1", u"06-1"_s);
        r.type("txtRegisteredTo", u"2026/3"_s);
        ui::prompts::expectInform(r.dayIsNone(u"登録終了日"_s, u"2026/3"_s));
        r.goTo(1);
        QCOMPARE(r.box("txtID").text(), u"2"_s);
        QVERIFY(r.box("txtRegisteredTo").hasFocus());
        ui::prompts::expectInform(r.dayIsNone(u"登録終了日"_s, u"2026/3"_s));
        r.press("cmdAdd");
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 仕入先"_s).toInt(), 2);
        ui::prompts::expectAskToSave(editsOpen, Choice::Save);
        ui::prompts::expectInform(r.dayIsNone(u"登録終了日"_s, u"2026/3"_s));
        r.screen.reject();
        ui::prompts::expectAskToSave(editsOpen, Choice::Cancel); // Esc, twice
        r.screen.reject();
        QVERIFY(r.screen.isVisible());
        QCOMPARE(r.box("txtRegisteredTo").text(), u"2026/3"_s);
        QCOMPARE(r.stored(registration + u", TEL1"_s, 2), nothingKnown + u"|-"_s);
        r.type("txtRegisteredTo", u"2026/3/31"_s);
        r.goTo(1);
        QCOMPARE(r.stored(registration + u", TEL1"_s, 2), u"-|1|-|2026-03-31|06-1"_s);
    }

    void theTermEndsAfterItBegan()
    {
        Register r;
        r.type("txtRegisteredFrom", u"2026/4/1"_s);
        r.type("txtRegisteredTo", u"2026/3/31"_s);
        ui::prompts::expectInform(
            u"登録終了日が登録開始日より前になっています。日付を入力し直してください。"_s);
        r.press("cmdUpdate");
        QCOMPARE(r.cursor(), u"txtRegisteredTo"_s);
        QCOMPARE(r.stored(registration, 2), nothingKnown);
        r.clear("txtRegisteredTo");
        r.press("cmdUpdate");
        QCOMPARE(r.stored(registration, 2), u"-|1|2026-04-01|-"_s);
    }

    void whatWasTypedCanBeTakenBack()
    {
        Register r;
        const QString before = r.stored(u"*"_s, 2);
        r.type("txtRegistration", u"T1234567890123"_s);
        r.leave("txtRegistration");
        r.type("txtRegisteredFrom", u"2023/1"_s);
        QCOMPARE(r.state(), u"登録あり"_s);
        r.press("cmdUndo");
        QCOMPARE(r.state() + r.box("txtRegistration").text() + r.box("txtRegisteredFrom").text() + r.remark(),
                 u"不明"_s);
        r.goTo(1);
        QCOMPARE(r.stored(u"*"_s, 2), before);
    }

    void anotherProgramChangesTheRow_data()
    {
        QTest::addColumn<int>("version");
        QTest::addColumn<QString>("stored");
        QTest::newRow("mine") << int(Version::Mine) << u"-|2|2024-04-01|-"_s;
        QTest::newRow("theirs") << int(Version::Theirs) << u"-|1|2024-04-01|-"_s;
        QTest::newRow("Esc") << int(Version::Undecided) << u"-|1|2024-04-01|-"_s;
    }

    void anotherProgramChangesTheRow()
    {
        QFETCH(int, version);
        QFETCH(QString, stored);
        Register r;
        r.choose("Combo2", 2);
        r.shop.run(u"UPDATE 仕入先 SET 登録 = 1, 登録開始日 = '2024-04-01' WHERE 仕入先ID = 2"_s);
        ui::prompts::expectAskWhichVersion(
            u"表示中のデータは、編集している間にほかのプログラムで変更されました。どちらを残しますか。\n\n"
            "登録：自分の入力は「登録なし」、ほかの変更は「登録あり」\n"
            "登録開始日：「」がほかで「2024/04/01」に変更（どちらを選んでも残ります）"_s,
            Version(version));
        r.press("cmdUpdate");
        QCOMPARE(r.stored(registration, 2), stored);
        QCOMPARE(r.state(), Version(version) == Version::Theirs ? u"登録あり"_s : u"登録なし"_s);
        if (Version(version) == Version::Undecided) {
            ui::prompts::expectAskToSave(editsOpen, Choice::Discard);
            r.screen.reject();
            QCOMPARE(r.stored(registration, 2), stored);
        }
    }
};

QTEST_MAIN(TestFrmSiireRegistration)
#include "tst_frmsiire_registration.moc"
