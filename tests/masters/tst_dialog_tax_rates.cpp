#include "masters/DialogTaxRates.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using ui::prompts::Choice;

Q_DECLARE_METATYPE(ui::prompts::Choice)

namespace
{

const QString unsaved = u"入力した税率が登録されていません。登録しますか。"_s;
const QString overlaps =
    u"同じ区分の期間が重なっています。重なる税率の期間を、この税率の前と後に分けて登録しますか。"_s;
const QString foodAsNow = u"重なる税率：\n軽減（飲食料品）　2019/10/01 から　8％"_s;

struct Desk
{
    Desk() { driver.show(); }

    ui::ReportGrid &grid() { return driver.the<ui::ReportGrid>("gridRates"); }
    void click(int row)
    {
        const QModelIndex place = grid().model()->index(row, 0);
        grid().scrollTo(place);
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, {}, grid().visualRect(place).center());
    }
    // The rows of \a taxClass: "5 2019-10-01 - 8 1".
    QStringList stored(int taxClass)
    {
        return shop.rows(u"SELECT 税率ID, 開始日, 終了日, 税率, 有効 FROM 税率 WHERE 税区分 = ? "
                         "ORDER BY 開始日"_s,
                         {taxClass});
    }

    FreshShop shop;
    masters::DialogTaxRates screen{shop.workspace};
    ScreenDriver driver{&screen};
};

const QStringList standard = {u"1|1989-04-01|1997-03-31|3|1"_s, u"2|1997-04-01|2014-03-31|5|1"_s,
                              u"3|2014-04-01|2019-09-30|8|1"_s, u"4|2019-10-01|-|10|1"_s};
const QStringList food = {u"5|2019-10-01|-|8|1"_s, u"7|2027-04-01|2029-03-31|1|0"_s};
constexpr int lastStandard = 3; // rows of the grid
constexpr int announced = 5;

} // namespace

class TestDialogTaxRates : public ScriptedTest
{
    Q_OBJECT

private slots:
    void announcedRateIsSwitchedOn_data();
    void announcedRateIsSwitchedOn();
    void whatIsNoRateIsRefused_data();
    void whatIsNoRateIsRefused();
    void rowLeftWhileItsBoxesAreFilled_data();
    void rowLeftWhileItsBoxesAreFilled();
    void newRowIsTypedByKeys();
    void todaysRateIsNotMadeTheNextOne();
    void deletionNamesTheRow();
    void changedByAnotherProgram();
    void wheelChangesNothing();
    void theInvoiceOfIncludedPricesIsChosenOnce();
};

void TestDialogTaxRates::announcedRateIsSwitchedOn_data()
{
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("with room made") << true
                                    << QStringList{u"5|2019-10-01|2027-03-31|8|1"_s,
                                                   u"7|2027-04-01|2029-03-31|1|1"_s, u"8|2029-04-01|-|8|1"_s};
    QTest::newRow("not after all") << false << food;
}

void TestDialogTaxRates::announcedRateIsSwitchedOn()
{
    QFETCH(bool, yes);
    Desk desk;
    desk.click(announced);
    QVERIFY(desk.driver.the<QLabel>("lblMessage").text().contains(u"法律が成立"_s));
    desk.driver.press("chkInForce");
    ui::prompts::expectAskCautiously(overlaps, yes, foodAsNow);
    desk.driver.press("cmdStore");
    QTEST(desk.stored(1), "rows");
    QCOMPARE(desk.stored(0), standard);
    // What was ticked stays until the clerk has thought about it.
    QVERIFY(desk.driver.the<QCheckBox>("chkInForce").isChecked());
    if (!yes)
        ui::prompts::expectAskHowToLeave(unsaved, Choice::Discard, Choice::Save);
    desk.driver.key(Qt::Key_Escape);
    QVERIFY(!desk.screen.isVisible());
    QTEST(desk.stored(1), "rows");
}

void TestDialogTaxRates::whatIsNoRateIsRefused_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored"); // empty: refused

    QTest::newRow("full width") << u"１２"_s << u"12"_s;
    QTest::newRow("with a fraction") << u"7.8"_s << u"7.8"_s;
    QTest::newRow("nothing") << u"0"_s << u"0"_s;
    QTest::newRow("negative") << u"-1"_s << QString();
    QTest::newRow("too much") << u"101"_s << QString();
    QTest::newRow("words") << u"八"_s << QString();
    QTest::newRow("empty") << QString() << QString();
}

void TestDialogTaxRates::whatIsNoRateIsRefused()
{
    QFETCH(QString, typed);
    QFETCH(QString, stored);
    Desk desk;
    desk.click(lastStandard);
    desk.driver.clear("txtPercent");
    desk.driver.type("txtPercent", typed);
    if (stored.isEmpty())
        ui::prompts::expectInform(u"消費税率は０から１００までの数字で入力してください。"_s);
    desk.driver.press("cmdStore");
    QCOMPARE(desk.shop.value(u"SELECT 税率 FROM 税率 WHERE 税率ID = 4"_s).toString(),
             stored.isEmpty() ? u"10"_s : stored);
    if (!stored.isEmpty())
        return;
    QCOMPARE(desk.driver.cursor(), u"txtPercent"_s);
    QCOMPARE(desk.driver.box("txtPercent").text(), typed);
    ui::prompts::expectAskHowToLeave(unsaved, Choice::Discard, Choice::Save);
    desk.driver.key(Qt::Key_Escape);
}

void TestDialogTaxRates::rowLeftWhileItsBoxesAreFilled_data()
{
    QTest::addColumn<Choice>("choice");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("row");

    QTest::newRow("stored") << Choice::Save << u"11"_s << 0;
    QTest::newRow("dropped") << Choice::Discard << u"10"_s << 0;
    QTest::newRow("gone back") << Choice::Cancel << u"10"_s << lastStandard;
}

void TestDialogTaxRates::rowLeftWhileItsBoxesAreFilled()
{
    QFETCH(Choice, choice);
    QFETCH(int, row);
    Desk desk;
    desk.click(lastStandard);
    desk.driver.type("txtPercent", u"11"_s);
    ui::prompts::expectAskHowToLeave(unsaved, choice, Choice::Save);
    desk.click(0);
    QCOMPARE(desk.grid().currentIndex().row(), row);
    QCOMPARE(desk.driver.box("txtPercent").text(), choice == Choice::Cancel ? u"11"_s : u"3"_s);
    QTEST(desk.shop.value(u"SELECT 税率 FROM 税率 WHERE 税率ID = 4"_s).toString(), "stored");
    if (choice == Choice::Cancel)
        ui::prompts::expectAskHowToLeave(unsaved, Choice::Discard, Choice::Save);
    desk.driver.key(Qt::Key_Escape);
    QVERIFY(!desk.screen.isVisible());
}

void TestDialogTaxRates::newRowIsTypedByKeys()
{
    Desk desk;
    desk.driver.press("cmdNew");
    QCOMPARE(desk.driver.cursor(), u"cboClass"_s);
    desk.driver.key(Qt::Key_Return);
    desk.driver.type("txtPercent", u"12"_s);
    desk.driver.leave("txtPercent");
    QCOMPARE(desk.driver.cursor(), u"dtFrom"_s);
    QTest::keyClicks(&desk.driver.the("dtFrom"), u"20301001"_s);
    ui::prompts::expectAskCautiously(overlaps, true, ui::prompts::anyRemark);
    desk.driver.press("cmdStore");
    QCOMPARE(desk.stored(0).mid(3),
             (QStringList{u"4|2019-10-01|2030-09-30|10|1"_s, u"8|2030-10-01|-|12|1"_s}));
    QCOMPARE(desk.grid().currentLink().toInt(), 8);
}

// As who does not know of 新規 enters the next rate.
void TestDialogTaxRates::todaysRateIsNotMadeTheNextOne()
{
    Desk desk;
    desk.click(lastStandard);
    desk.driver.type("txtPercent", u"12"_s);
    desk.driver.the("dtFrom").setFocus();
    QTest::keyClick(&desk.driver.the("dtFrom"), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(&desk.driver.the("dtFrom"), u"20270401"_s);
    ui::prompts::expectAskCautiously(u"標準の税率が 2019/10/01 からなくなります。登録しますか。"_s, false,
                                     ui::prompts::anyRemark);
    desk.driver.press("cmdStore");
    QCOMPARE(desk.stored(0), standard);
    ui::prompts::expectAskHowToLeave(unsaved, Choice::Discard, Choice::Save);
    desk.driver.key(Qt::Key_Escape);
}

void TestDialogTaxRates::deletionNamesTheRow()
{
    Desk desk;
    const QString question = u"税率表から次の税率を削除します。よろしいですか。"_s;
    const QString named = u"標準　2019/10/01 から　10％\n登録済みの伝票の税率は変わりません。"_s;
    desk.click(lastStandard);
    ui::prompts::expectAskCautiously(question, false, named);
    desk.driver.press("cmdDelete");
    QCOMPARE(desk.stored(0), standard);
    // The rate of today: slips without their tax would be the end of it.
    const QString lost = u"標準の税率が 2019/10/01 からなくなります。登録しますか。"_s;
    for (const bool sure : {false, true}) {
        ui::prompts::expectAskCautiously(question, true, named);
        ui::prompts::expectAskCautiously(lost, sure, ui::prompts::anyRemark);
        desk.driver.press("cmdDelete");
        QCOMPARE(desk.stored(0), sure ? standard.first(3) : standard);
    }
    QVERIFY(desk.driver.the<QLabel>("lblMessage").text().contains(u"2019/10/01 からありません"_s));
}

void TestDialogTaxRates::changedByAnotherProgram()
{
    Desk desk;
    desk.click(lastStandard);
    desk.driver.type("txtPercent", u"11"_s);
    desk.shop.run(u"UPDATE 税率 SET 税率 = 15 WHERE 税率ID = 4"_s);
    ui::prompts::expectInform(u"税率表は、別のプログラムで変更されました。もう一度確認してください。"_s);
    desk.driver.press("cmdStore");
    QCOMPARE(desk.shop.value(u"SELECT 税率 FROM 税率 WHERE 税率ID = 4"_s).toInt(), 15);
    QCOMPARE(desk.driver.box("txtPercent").text(), u"11"_s);
    // Asked again, the rows as they are now stand beside what was typed.
    QCOMPARE(desk.grid().report().rows.at(lastStandard).values.at(3).toInt(), 15);
    desk.driver.press("cmdStore");
    QCOMPARE(desk.shop.value(u"SELECT 税率 FROM 税率 WHERE 税率ID = 4"_s).toInt(), 11);
}

void TestDialogTaxRates::wheelChangesNothing()
{
    Desk desk;
    desk.click(lastStandard);
    for (const char *name : {"cboClass", "dtFrom", "dtTo"})
        turnWheelOver(desk.driver.the(name));
    desk.driver.key(Qt::Key_Escape);
    QVERIFY(!desk.screen.isVisible());
    QCOMPARE(desk.stored(0), standard);
    QCOMPARE(desk.stored(1), food);
}

void TestDialogTaxRates::theInvoiceOfIncludedPricesIsChosenOnce()
{
    Desk desk;
    QVERIFY(!desk.driver.the<QCheckBox>("chkIncludedOnBill").isChecked());
    desk.driver.press("chkIncludedOnBill");
    QVERIFY(desk.shop.settings.checked(workspace::keys::includedOnBill));
    masters::DialogTaxRates again(desk.shop.workspace);
    QVERIFY(again.findChild<QCheckBox *>(u"chkIncludedOnBill"_s)->isChecked());
}

QTEST_MAIN(TestDialogTaxRates)

#include "tst_dialog_tax_rates.moc"
