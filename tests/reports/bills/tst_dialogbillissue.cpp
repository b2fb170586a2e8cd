#include "bill_shop.h"

#include "printing/DialogPrint.h"
#include "reports/bills/DialogBillIssue.h"
#include "slips/issued/withdrawn_prints.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "support/tired_printers.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QtTest>

#include <QApplication>
#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace reports;

namespace
{

const QString unsettled = u"2 件の請求書に、まだ計上されていない消費税があります。"_s;

struct IssueDesk
{
    IssueDesk()
    {
        printing::keepPrintSystem(shop.workspace, printers);
        open();
    }

    /// The list in a window of its own.
    void open()
    {
        driver.reset();
        dialog = std::make_unique<DialogBillIssue>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(dialog.get());
        driver->show();
        driver->press("cmdList");
    }

    /// Prints what is ticked, as it is, and answers the print dialog.
    void print()
    {
        ui::prompts::expectAskWhichWay(unsettled, u"このまま発行"_s);
        answerPrintDialog();
        driver->press("cmdPrint");
    }
    void answerPrintDialog() const
    {
        QTimer::singleShot(0, dialog.get(), [] {
            QWidget *print = QApplication::activeModalWidget();
            QVERIFY(print && print->objectName() == u"DialogPrint"_s);
            QCOMPARE(print->findChild<QLabel *>(u"lblPages"_s)->text(), u"請求書 3 件"_s);
            print->findChild<QPushButton *>(u"cmdPrint"_s)->click();
        });
    }
    QString cell(int row, int column) const
    {
        return driver->the<ui::Grid>("grdBills").model()->index(row, column).data().toString();
    }
    /// "1|発行済 2026/04/01": whether the bill of \a customer is ticked, and its state.
    QString fate(int customer) const
    {
        const QAbstractItemModel &bills = *driver->the<ui::Grid>("grdBills").model();
        const QModelIndex id = bills.match(bills.index(0, 1), Qt::DisplayRole, customer).value(0);
        const bool ticked = id.siblingAtColumn(0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
        return QString::number(int(ticked)) + u'|' + id.siblingAtColumn(10).data().toString();
    }
    QString count() const { return driver->the<QLabel>("lblCount").text(); }

    BillShop shop;
    std::shared_ptr<TiredPrinters> printers = std::make_shared<TiredPrinters>();
    std::unique_ptr<DialogBillIssue> dialog;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestDialogBillIssue : public ScriptedTest
{
    Q_OBJECT

private slots:
    void theClosingDayGivesListAndPeriod()
    {
        IssueDesk desk;
        ScreenDriver &driver = *desk.driver;
        QCOMPARE(desk.count(), u"5 件のうち 3 件　今回請求額 3,645 円"_s);
        QCOMPARE(driver.the<QLabel>("lblUnbooked").text(), u"計上していない消費税　2 件　334 円"_s);
        QCOMPARE(driver.the<QDateEdit>("DTPicker1").date(), QDate(2026, 3, 1));
        QCOMPARE(driver.cursor(), u"grdBills"_s);
        // Another closing day has another last period, and nothing of the list before stays under it.
        driver.choose("cmbClosing", 20);
        QCOMPARE(driver.the<QDateEdit>("DTPicker1").date(), QDate(2026, 2, 21));
        QCOMPARE(driver.the<QDateEdit>("DTPicker2").date(), QDate(2026, 3, 20));
        QCOMPARE(desk.count(), u"0 件のうち 0 件　今回請求額 0 円"_s);
        QVERIFY(!driver.the<QPushButton>("cmdPrint").isEnabled());
        desk.dialog->openClosingDay(20);
        QCOMPARE(desk.count(), u"1 件のうち 1 件　今回請求額 800 円"_s);
        // Dates set by hand stay.
        driver.the<QDateEdit>("DTPicker2").setDate(QDate(2026, 3, 4));
        driver.choose("cmbClosing", 0);
        QCOMPARE(driver.the<QDateEdit>("DTPicker2").date(), QDate(2026, 3, 4));
        driver.the<QDateEdit>("DTPicker1").setDate(QDate(2026, 3, 5));
        ui::prompts::expectInform(
            u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s);
        driver.press("cmdList");
    }

    void whatTheQueueTookIsWhatIsRecorded_data()
    {
        QTest::addColumn<int>("most");
        QTest::addColumn<bool>("clerkStops");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("left");
        QTest::newRow("all") << 99 << false << u"すべてのデータを排出しました。"_s << 0;
        QTest::newRow("refused at once") << 0 << false << QString() << 3;
        QTest::newRow("refused in the middle") << 2 << false << QString() << 1;
        QTest::newRow("stopped in the middle") << 1 << true << u"中止しました。"_s << 2;
    }

    void whatTheQueueTookIsWhatIsRecorded()
    {
        QFETCH(QString, text);
        QFETCH(int, left);
        IssueDesk desk;
        QFETCH(int, most);
        QFETCH(bool, clerkStops);
        desk.printers->most = most;
        desk.printers->clerkStops = clerkStops;
        const QStringList slips = desk.shop.slips();
        ui::prompts::expectAskWhichWay(unsettled, u"このまま発行"_s);
        desk.answerPrintDialog();
        ui::prompts::expectInform(text, ui::prompts::anyRemark);
        desk.driver->press("cmdPrint");

        const int printed = 3 - left;
        QCOMPARE(desk.printers->given.size(), std::size_t(printed));
        const QStringList issued = desk.shop.issued();
        QCOMPARE(issued.size(), printed);
        for (int i = 0; i < printed; ++i)
            QVERIFY(desk.printers->titles[i].startsWith(issued[i].section(u'|', 0, 1).replace(u'|', u' ') +
                                                        u'　'));
        QCOMPARE(desk.shop.value(u"SELECT count(DISTINCT ハッシュ) FROM 発行控"_s).toInt(), printed);
        QVERIFY(desk.count().startsWith(u"5 件のうち %1 件"_s.arg(left)));
        QCOMPARE(desk.shop.slips(), slips);
    }

    void aStoppedRunGoesOnWithTheRest()
    {
        IssueDesk desk;
        desk.printers->most = 2;
        ui::prompts::expectAskWhichWay(unsettled, u"このまま発行"_s);
        desk.answerPrintDialog();
        ui::prompts::expectInform({}, ui::prompts::anyRemark);
        desk.driver->press("cmdPrint");
        desk.printers->most = 99;
        ui::file_dialogs::expectFile(QString()); // the clerk looks for the folder, and rather prints
        const bool asks = desk.driver->the<QLabel>("lblUnbooked").text().contains(u"1 件"_s);
        if (asks)
            ui::prompts::expectAskWhichWay(u"1 件の請求書に、まだ計上されていない消費税があります。"_s,
                                           u"このまま発行"_s);
        desk.driver->press("cmdPdf");
        QTimer::singleShot(0, desk.dialog.get(), [] {
            QApplication::activeModalWidget()->findChild<QPushButton *>(u"cmdPrint"_s)->click();
        });
        if (asks)
            ui::prompts::expectAskWhichWay(u"1 件の請求書に、まだ計上されていない消費税があります。"_s,
                                           u"このまま発行"_s);
        ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
        desk.driver->press("cmdPrint");
        QStringList numbers = desk.shop.rows(u"SELECT 番号 FROM 発行控 ORDER BY 番号"_s);
        QCOMPARE(numbers, QStringList({u"7-20260331"_s, u"8-20260331"_s, u"9-20260331"_s}));
    }

    // After the window was closed or the program ended, and whoever issued it.
    void whatIsOutIsNotIssuedOnceMore()
    {
        IssueDesk desk;
        ui::prompts::expectAskWhichWay(unsettled, u"このまま発行"_s);
        desk.answerPrintDialog();
        ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
        desk.driver->press("cmdPrint");
        desk.open();
        const QString out = u"0|発行済 2026/04/01"_s;
        QCOMPARE(QStringList({desk.fate(7), desk.fate(8), desk.fate(9)}), QStringList(3, out));
        QCOMPARE(desk.count(), u"5 件のうち 0 件　今回請求額 0 円　発行済 3 件"_s);
        QVERIFY(!desk.driver->the<QPushButton>("cmdPrint").isEnabled());
        // 8 is taken back at the printer; 9 buys more, 7 less than was on the bill.
        const QString title = desk.printers->titles.filter(u" 8-20260331"_s).value(0);
        QVERIFY(slips::noteWithdrawn(desk.shop.connection, title, desk.shop.now, desk.shop.now, u"鈴木"_s));
        desk.shop.book(20, u'O', u"2026-03-31"_s, 9, 45);
        desk.shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 1"_s);
        // Papers of somebody else, and of another kind, under the numbers of 11 and 12.
        for (const QString &row :
             {u"101, '請求書', '11-20260331', 12"_s, u"102, '納品書', '11-20260331', 11"_s,
              u"103, '請求書', '11-20260228', 11"_s})
            desk.shop.run(
                u"INSERT INTO 発行控 (発行ID, 種類, 番号, 相手先ID, 税込金額, 発行日時) VALUES (%1, "
                "1, '2026-04-01 10:00:00')"_s.arg(row));
        desk.open();
        QCOMPARE(desk.fate(7), u"0|伝票なし　発行済 2026/04/01（請求額 1,000 円）"_s);
        QCOMPARE(desk.fate(8), u"1|"_s);
        QCOMPARE(desk.fate(9), u"0|発行済 2026/04/01（請求額 300 円）"_s);
        QCOMPARE(desk.fate(11), u"0|"_s);
        // The clerk may all the same; what else is pressed does not undo that.
        auto &grid = desk.driver->the<ui::Grid>("grdBills");
        grid.selectRow(grid.model()->match(grid.model()->index(0, 1), Qt::DisplayRole, 9).value(0).row());
        QTest::keyClick(&grid, Qt::Key_Space);
        QVERIFY(desk.fate(9).startsWith(u"1|発行済"_s));
        QVERIFY(desk.driver->the<QPushButton>("cmdPrint").isEnabled());
    }

    void theTaxComesFirstWhereTheClerkWantsIt()
    {
        IssueDesk desk;
        const QStringList before = desk.shop.slips();
        // Going back issues nothing.
        ui::prompts::expectAskWhichWay(unsettled, QString());
        desk.driver->press("cmdPrint");
        QVERIFY(desk.shop.issued().isEmpty());
        ui::prompts::expectAskWhichWay(unsettled, u"計上して発行"_s);
        desk.answerPrintDialog();
        ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
        desk.driver->press("cmdPrint");
        QStringList issued = desk.shop.issued();
        issued.sort();
        QCOMPARE(issued, QStringList({u"請求書|7-20260331|1100"_s, u"請求書|8-20260331|2579"_s,
                                      u"請求書|9-20260331|300"_s}));
        QCOMPARE(desk.shop.slips().size(), before.size() + 2);
        // Taken back in one go, after a question that Enter alone does not answer with yes.
        ui::prompts::expectAskCautiously(u"計上した 2 件の消費税の伝票を取り消します。よろしいですか。"_s,
                                         false);
        desk.driver->press("cmdUndoTax");
        QCOMPARE(desk.shop.slips().size(), before.size() + 2);
        ui::prompts::expectAskCautiously(u"計上した 2 件の消費税の伝票を取り消します。よろしいですか。"_s,
                                         true);
        desk.driver->press("cmdUndoTax");
        QCOMPARE(desk.shop.slips(), before);
        QVERIFY(!desk.driver->the<QPushButton>("cmdUndoTax").isEnabled());
    }

    // Once for all bills, after they are out; what the clerk leaves there takes nothing of them back.
    void transferFormsAreAskedForOnce()
    {
        IssueDesk desk;
        desk.driver->the<QCheckBox>("Check2").setChecked(true);
        QStringList asked;
        QTimer hand;
        connect(&hand, &QTimer::timeout, &hand, [&asked] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (!dialog || dialog->objectName() == u"progress"_s)
                return;
            asked << dialog->objectName();
            if (auto *print = dialog->findChild<QPushButton *>(u"cmdPrint"_s);
                print && asked.back() == u"DialogPrint"_s)
                print->click();
            else
                dialog->close();
        });
        hand.start(50);
        ui::prompts::expectAskWhichWay(unsettled, u"このまま発行"_s);
        ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
        desk.driver->press("cmdPrint");
        hand.stop();
        QCOMPARE(asked, QStringList({u"DialogPrint"_s, u"DialogOderEX"_s}));
        QCOMPARE(desk.shop.issued().size(), 3);
    }

    void eachCustomerGetsAFile()
    {
        IssueDesk desk;
        const QString folder = desk.shop.path(u"請求書"_s);
        QVERIFY(QDir().mkpath(folder));
        const auto save = [&](int times) {
            if (times == 1)
                ui::prompts::expectAskWhichWay(unsettled, u"計上して発行"_s);
            ui::file_dialogs::expectFile(folder);
            if (times == 2)
                ui::prompts::expectAskCautiously(u"同じ名前のファイルが 3 件あります。上書きしますか。"_s,
                                                 false);
            else
                ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
            desk.driver->press("cmdPdf");
        };
        save(1);
        const QStringList files = QDir(folder).entryList(QDir::Files, QDir::Name);
        QCOMPARE(files, QStringList({u"請求書_7_東京百貨店_20260331.pdf"_s, u"請求書_8_駒形屋_20260331.pdf"_s,
                                     u"請求書_9_蔵前-商店- -本店--_20260331.pdf"_s}));
        QCOMPARE(desk.shop.issued().size(), 3);
        // Asked once for all that are there; nothing is written, nothing recorded where the clerk goes back.
        desk.driver->press("cmdTickAll");
        desk.driver->the<ui::Grid>("grdBills").selectRow(0);
        for (int row = 0; row < 5; ++row) {
            if (desk.cell(row, 1) == u"11"_s) {
                desk.driver->the<ui::Grid>("grdBills").selectRow(row);
                QTest::keyClick(&desk.driver->the<ui::Grid>("grdBills"), Qt::Key_Space);
            }
        }
        save(2);
        QCOMPARE(desk.shop.issued().size(), 3);
    }

    // Enter, Esc, Delete, the wheel and the blank bar where a hand does not mean them.
    void accidentsLeaveTheFileAsItWas()
    {
        IssueDesk desk;
        const QStringList slips = desk.shop.slips();
        auto &grid = desk.driver->the<ui::Grid>("grdBills");
        for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Return, Qt::Key_F5}) {
            grid.setFocus();
            QTest::keyClick(&grid, key);
        }
        turnWheelOver(desk.driver->the("cmbClosing"));
        turnWheelOver(desk.driver->the("DTPicker2"));
        QVERIFY(desk.count().startsWith(u"5 件のうち 3 件"_s));
        const QModelIndexList idle = grid.model()->match(grid.model()->index(0, 1), Qt::DisplayRole, 10);
        grid.selectRow(idle.front().row()); // bought nothing: it cannot be ticked
        QTest::keyClick(&grid, Qt::Key_Space);
        QVERIFY(desk.count().startsWith(u"5 件のうち 3 件"_s));
        desk.driver->press("cmdTickNone");
        QVERIFY(!desk.driver->the<QPushButton>("cmdPrint").isEnabled());
        QTest::keyClick(desk.dialog.get(), Qt::Key_Escape);
        QVERIFY(!desk.dialog->isVisible());
        QCOMPARE(desk.shop.slips(), slips);
        QVERIFY(desk.shop.issued().isEmpty());
    }
};

QTEST_MAIN(TestDialogBillIssue)
#include "tst_dialogbillissue.moc"
