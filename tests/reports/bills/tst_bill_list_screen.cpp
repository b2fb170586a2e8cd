#include "bill_book.h"

#include "reports/bills/frmOutBillList.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QApplication>
#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QTimer>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

struct Desk
{
    Desk()
    {
        shop.run(u"BEGIN"_s);
        writeCustomer(shop, 8, 0, 20);
        writeCustomer(shop, 9, 0, 0);
        writeSlip(shop, 1, u"O 2026-04-01 3000"_s, 8);
        writeSlip(shop, 2, u"O 2026-03-10 1000"_s, 9);
        writeSlip(shop, 3, u"R 2026-04-01 入金=1500"_s, 9);
        writeSlip(shop, 4, u"O 2026-02-01 40"_s, 77);
        shop.run(u"COMMIT"_s);
        screen = std::make_unique<reports::frmOutBillList>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
        QApplication::processEvents();
    }

    ui::ReportGrid &grid() { return driver->the<ui::ReportGrid>("MSFlexGrid1"); }
    QString names()
    {
        QStringList names;
        for (const base::ReportRow &row : grid().report().rows)
            names << row.values.at(1).toString();
        return names.join(u' ');
    }
    QString message() { return driver->the<QLabel>("lblMessage").text(); }

    /// Works the screen that opens next, and closes it.
    void inNextScreen(const std::function<void(ScreenDriver &)> &work)
    {
        QTimer::singleShot(0, screen.get(), [work] {
            QWidget *opened = QApplication::activeModalWidget();
            ScreenDriver other(opened);
            QApplication::processEvents();
            work(other);
            opened->close();
        });
    }

    FreshShop shop;
    std::unique_ptr<reports::frmOutBillList> screen;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestBillListScreen : public ScriptedTest
{
    Q_OBJECT

private slots:
    void opensWithTheMonth()
    {
        Desk desk;
        QCOMPARE(desk.screen->objectName(), u"frmOutBillList"_s);
        QCOMPARE(desk.names(), u"山田商店8 (削除済み) ID 77 山田商店9"_s); // who owes comes first
        QCOMPARE(desk.driver->box("txtSum3").text(), u"2,540"_s);
        QCOMPARE(desk.driver->box("txtSum4").text() + u' ' + desk.driver->box("txtSum6").text(),
                 u"3,000 40"_s);
        QCOMPARE(desk.message(), u"納品先　3 件"_s);
        desk.driver->the<QDateEdit>("DTPicker2").setDate({2026, 3, 31});
        QCOMPARE(desk.message(), u"期間が変わりました。再集計を押してください。"_s);
    }

    void reversedAndEmptyPeriods()
    {
        Desk desk;
        desk.driver->the<QDateEdit>("DTPicker2").setDate({2026, 3, 1});
        ui::prompts::expectInform(
            u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s);
        desk.driver->press("cmdMasterUpdate");
        QCOMPARE(desk.grid().rowCount(), 0); // nothing stands under dates that it is not of
        desk.driver->the<QDateEdit>("DTPicker1").setDate({2020, 3, 1});
        desk.driver->the<QDateEdit>("DTPicker2").setDate({2020, 3, 31});
        ui::prompts::expectInform(u"該当するデータが見つかりませんでした。"_s);
        desk.driver->press("cmdMasterUpdate");
        QCOMPARE(desk.driver->enabled({"Command2", "Command3", "Command4", "cmdLedger"}), QString());
    }

    void ownClosingDays()
    {
        Desk desk;
        desk.driver->press("Check2");
        QVERIFY(!desk.driver->the("DTPicker1").isEnabled());
        QCOMPARE(desk.grid().report().columns.back().heading, u"締め日"_s);
        // Of the 20th the sale of April the 1st belongs to the period, and of the month's end too.
        QCOMPARE(desk.grid().report().rows.front().values.last().toString(), u"2026-04-20"_s);
        desk.driver->the<QDateEdit>("DTPicker2").setDate({2026, 4, 10});
        desk.driver->press("cmdMasterUpdate");
        QCOMPARE(desk.grid().report().rows.front().values.last().toString(), u"2026-03-31"_s);
        desk.driver->press("Check2");
        QVERIFY(desk.driver->the("DTPicker1").isEnabled());
        QVERIFY(desk.grid().report().columns.back().heading != u"締め日"_s);
    }

    // The books are read anew afterwards: what was paid meanwhile moves its row.
    void leadsToBillsLedgersAndCharts()
    {
        Desk desk;
        desk.grid().selectRow(0);
        QString seen;
        desk.inNextScreen([&](ScreenDriver &ledger) {
            seen = ledger.box("txtNouhinsaki1").text();
            writeSlip(desk.shop, 9, u"R 2026-04-01 入金=3000"_s, 8);
        });
        desk.driver->press("cmdLedger");
        QCOMPARE(seen, u"山田商店8"_s);
        QCOMPARE(desk.names(), u"(削除済み) ID 77 山田商店9 山田商店8"_s);
        desk.grid().selectRow(0); // a deleted customer has a ledger, and no bill
        QCOMPARE(desk.driver->enabled({"Command4", "cmdLedger"}), u"cmdLedger"_s);
        desk.grid().selectRow(1);
        desk.inNextScreen([&](ScreenDriver &bill) {
            seen =
                bill.the<QDateEdit>("DTPicker2").text() + u' ' + bill.the("DTPicker2").window()->objectName();
        });
        desk.grid().setFocus();
        desk.driver->key(Qt::Key_Return);
        QCOMPARE(seen, u"2026/04/30 frmOutBill"_s);
        desk.grid().selectRow(2);
        desk.inNextScreen([&](ScreenDriver &charts) {
            seen = charts.the<QCheckBox>("Check1").text();
            QVERIFY(!charts.the<QCheckBox>("Check1").isChecked());
        });
        desk.driver->press("cmdCharts");
        QCOMPARE(seen, u"山田商店8 だけ(&C)"_s);
    }

    void writtenAsTable()
    {
        ui::desktop::beginScript();
        Desk desk;
        const QString fileName = desk.shop.path(u"請求.csv"_s);
        ui::file_dialogs::expectFile(fileName);
        desk.driver->press("Command3");
        QVERIFY(ui::desktop::takeOpened().endsWith(u".csv"_s));
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        QVERIFY2(text.contains(u"山田商店9,1000,1500,-500,0,0,0,-500,,0,0,0,2026/04/01"_s), qPrintable(text));
    }

    void wheelAndEscChangeNothing()
    {
        Desk desk;
        desk.grid().setFocus();
        turnWheelOver(desk.driver->the("DTPicker2"));
        QCOMPARE(desk.driver->the<QDateEdit>("DTPicker2").date(), QDate(2026, 4, 30));
        desk.driver->key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.shop.value(u"SELECT COUNT(*) FROM 入出庫マスター"_s).toInt(), 4);
    }
};

QTEST_MAIN(TestBillListScreen)
#include "tst_bill_list_screen.moc"
