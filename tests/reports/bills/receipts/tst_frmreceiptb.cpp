#include "payment_shop.h"
#include "reports/bills/receipts/frmReceiptB.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace reports;

namespace
{

const QByteArray list =
    "日付,相手先,入金額\n2026/4/1,ｶ)ﾔﾏﾀﾞｼﾖｳﾃﾝ,11000\n2026/4/1,ﾀｶﾊｼ,7560\n2026/4/1,ﾕ)ｻﾄｳ,5060\n";

// A shop with debtors, and the screen open on a bank's list.
struct Desk
{
    explicit Desk(const QByteArray &content = list)
    {
        makeDebtors(shop);
        file = fileOf(shop, u"bank.csv"_s, content);
        screen = std::make_unique<frmReceiptB>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }

    void open(const QString &name)
    {
        ui::file_dialogs::expectFile(name);
        driver->press("Command1");
    }
    void goTo(int row)
    {
        grid().setFocus();
        grid().setCurrentIndex(grid().model()->index(row, 1));
    }
    ui::Grid &grid() { return driver->the<ui::Grid>("DataGrid1"); }
    QString cell(int row, int column) { return grid().model()->index(row, column).data().toString(); }
    /// The ticks of the rows: "x-x".
    QString ticks()
    {
        QString marks;
        for (int row = 0; row < grid().model()->rowCount(); ++row) {
            const auto state = grid().model()->index(row, 0).data(Qt::CheckStateRole).toInt();
            marks += state == Qt::Checked ? u'x' : u'-';
        }
        return marks;
    }
    void write()
    {
        ui::prompts::expectAskCautiously({}, true);
        ui::prompts::expectInform({});
        driver->press("Command2");
    }
    QStringList receipts()
    {
        return shop.rows(u"SELECT m.相手先ID, s.商品名, s.金額 FROM 入出庫マスター AS m JOIN 入出庫サブ AS s "
                         u"ON s.ID = m.ID "
                         "WHERE m.種別 = 'R' ORDER BY s.明細ID"_s);
    }

    FreshShop shop;
    QString file;
    std::unique_ptr<frmReceiptB> screen;
    std::unique_ptr<ScreenDriver> driver;
};

/// Does \a work in the columns' dialog once it has come.
void inColumns(const std::function<void(ScreenDriver &)> &work)
{
    QTimer::singleShot(5, qApp, [work] {
        QWidget *shown = QApplication::activeModalWidget();
        if (!shown || shown->objectName() != u"DialogPaymentColumns"_s) {
            inColumns(work);
            return;
        }
        ScreenDriver driver(shown);
        work(driver);
        if (shown->isVisible())
            shown->close();
    });
}

} // namespace

class TestFrmReceiptB : public ScriptedTest
{
    Q_OBJECT

private slots:
    // By keys alone: what is certain is ticked, the rest is chosen, a fee written off by choice.
    void theClerkDecides()
    {
        Desk desk;
        desk.open(desk.file);
        QCOMPARE(desk.ticks(), u"x--"_s); // ﾀｶﾊｼ are two; ｻﾄｳ paid too little
        QCOMPARE(desk.cell(2, PaymentModel::Missing), u"440 円少ない（振込手数料？）"_s);
        QCOMPARE(desk.cell(1, PaymentModel::Customer), QString());
        desk.goTo(1);
        desk.driver->type("txtKey1", u"高橋"_s);
        desk.driver->leave("txtKey1"); // searches
        QTableWidget &found = desk.driver->the<QTableWidget>("DataGrid2");
        QCOMPARE(found.rowCount(), 2);
        QVERIFY(found.hasFocus());
        desk.driver->press("Command6");
        QCOMPARE(desk.ticks(), u"xx-"_s);
        QCOMPARE(desk.grid().currentIndex().row(), 2); // goes on
        desk.driver->choose("Combo2", 1);
        desk.goTo(2);
        QTest::keyClick(&desk.grid(), Qt::Key_Space);
        QCOMPARE(desk.ticks(), u"xxx"_s);
        QVERIFY(desk.driver->the<QLabel>("lblSum").text().contains(u"3 件　23,620 円"_s));
        ui::prompts::expectAskCautiously(u"入金伝票を 3 枚（23,620 円）作ります。よろしいですか。"_s, true);
        ui::prompts::expectInform(u"入金伝票を 3 枚（R7 ～ R9）作りました。　合計 23,620 円"_s);
        desk.driver->press("Command2");
        QCOMPARE(desk.receipts(), (QStringList{u"1|入　金|11000"_s, u"4|入　金|7560"_s, u"2|入　金|5060"_s,
                                               u"2|振込手数料|440"_s}));
        QCOMPARE(desk.ticks(), u"---"_s);
        QCOMPARE(desk.cell(0, PaymentModel::State), u"取込済"_s);
        QVERIFY(!desk.driver->the<QPushButton>("Command2").isEnabled());
    }

    // The same list under another name: a row is taken a second time only by a person's word.
    void takenRowsAreLeftAlone()
    {
        Desk desk;
        desk.open(desk.file);
        desk.write();
        desk.open(fileOf(desk.shop, u"bank (1).csv"_s, list));
        QCOMPARE(desk.ticks(), u"---"_s);
        QCOMPARE(desk.cell(0, PaymentModel::Remark), u"入金伝票 R7 になっています"_s);
        desk.goTo(0);
        ui::prompts::expectInform(u"先に、下の欄で納品先を選んでください。"_s);
        QTest::keyClick(&desk.grid(), Qt::Key_Space);
        desk.driver->type("txtKey1", u"C1"_s);
        desk.driver->press("Command5");
        desk.driver->press("Command6");
        QCOMPARE(desk.ticks(), u"---"_s);
        desk.goTo(0);
        ui::prompts::expectAskCautiously(u"この行は、もう入金伝票 R7 になっています。二重に入金しますか。"_s,
                                         false);
        QTest::keyClick(&desk.grid(), Qt::Key_Space);
        QCOMPARE(desk.ticks(), u"---"_s);
        QCOMPARE(desk.receipts().size(), 1);
        ui::prompts::expectAskCautiously({}, true); // what was chosen is let go
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
    }

    void aFileThatChangesIsNotTaken_data()
    {
        QTest::addColumn<bool>("removed");
        QTest::newRow("removed") << true;
        QTest::newRow("grown") << false;
    }

    void aFileThatChangesIsNotTaken()
    {
        QFETCH(bool, removed);
        Desk desk;
        desk.open(desk.file);
        if (removed)
            QFile::remove(desk.file);
        else
            fileOf(desk.shop, u"bank.csv"_s, list + "2026/4/2,ﾀｶﾊｼ,1\n");
        ui::prompts::expectAskCautiously({}, true);
        ui::prompts::expectInform({});
        desk.driver->press("Command2");
        QVERIFY(desk.receipts().isEmpty());
        QCOMPARE(desk.ticks(), u"x--"_s); // nothing of the choice is lost
    }

    // By accident: Esc, a row left while its customer is searched, the wheel, the wrong file.
    void aHandInPassingWritesNothing()
    {
        Desk desk;
        desk.open(desk.file);
        for (const char *name : {"Combo1", "Combo2"})
            turnWheelOver(desk.driver->the(name));
        QCOMPARE(desk.driver->list("Combo1").currentIndex(), 0);
        desk.goTo(1);
        desk.driver->type("txtKey1", u"鈴木"_s);
        desk.goTo(2); // the search was another row's
        QCOMPARE(desk.cell(1, PaymentModel::Customer), QString());
        QTest::keyClick(&desk.grid(), Qt::Key_Space);
        QCOMPARE(desk.ticks(), u"x-x"_s);
        ui::prompts::expectAskCautiously({}, true);
        ui::prompts::expectInform({});
        desk.open(desk.shop.connection.fileName()); // is none: what was chosen stays
        QCOMPARE(desk.ticks(), u"x-x"_s);
        ui::prompts::expectAskHowToLeave({}, ui::prompts::Choice::Cancel, ui::prompts::Choice::Cancel);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(desk.screen->isVisible());
        ui::prompts::expectAskCautiously({}, false); // Enter alone writes nothing
        desk.driver->press("Command2");
        ui::prompts::expectAskHowToLeave({}, ui::prompts::Choice::Discard, ui::prompts::Choice::Cancel);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QVERIFY(desk.receipts().isEmpty());
    }

    // What a ticked row pays is not missing any more in the rows behind it.
    void rowsSettleInOrder()
    {
        Desk desk("日付,相手先,入金額\n2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,6000\n2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,4560\n");
        desk.open(desk.file);
        QCOMPARE(desk.cell(1, PaymentModel::Missing), u"6,440 円少ない"_s);
        ui::prompts::expectInform(u"「有力」の 2 行に印を付けました。差額を確かめてください。"_s);
        desk.driver->press("Command8");
        QCOMPARE(desk.cell(1, PaymentModel::Missing), u"440 円少ない（振込手数料？）"_s);
        desk.goTo(0);
        QTest::keyClick(&desk.grid(), Qt::Key_Space);
        QCOMPARE(desk.cell(1, PaymentModel::Missing), u"6,440 円少ない"_s);
        ui::prompts::expectAskHowToLeave({}, ui::prompts::Choice::Discard, ui::prompts::Choice::Cancel);
        desk.driver->key(Qt::Key_Escape);
    }

    void columnsAreAskedForOnce()
    {
        Desk desk("1,2026/4/1,x,11000,ﾔﾏﾀﾞｼﾖｳﾃﾝ\n");
        inColumns([](ScreenDriver &) {}); // left: nothing is read
        desk.open(desk.file);
        QCOMPARE(desk.grid().model()->rowCount(), 0);
        inColumns([](ScreenDriver &dialog) {
            dialog.choose("cboDate", 2);
            ui::prompts::expectInform(u"「入金額」にする列を指定してください。"_s);
            dialog.press("cmdOK");
            dialog.choose("cboAmount", 4);
            dialog.choose("cboPayer", 5);
            dialog.press("cmdOK");
        });
        desk.open(desk.file);
        QCOMPARE(desk.ticks(), u"x"_s);
        desk.open(fileOf(desk.shop, u"next.csv"_s, "1,2026/4/2,x,77,ﾔﾏﾀﾞｼﾖｳﾃﾝ\n")); // not asked again
        QCOMPARE(desk.cell(0, PaymentModel::Amount), u"77"_s);
    }

    void aClosingDayNarrowsTheSearch()
    {
        Desk desk("日付,相手先,入金額\n2026/4/1,ｽｽﾞｷﾌﾞﾂｻﾝ,20000\n2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,11000\n");
        desk.driver->list("Combo1").setCurrentIndex(21); // 20日
        desk.open(desk.file);
        QCOMPARE(desk.ticks(), u"x-"_s);
        desk.driver->choose("Combo1", 0);
        QCOMPARE(desk.ticks(), u"xx"_s);
    }
};

QTEST_MAIN(TestFrmReceiptB)
#include "tst_frmreceiptb.moc"
