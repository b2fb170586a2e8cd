#include "day_book.h"

#include "printing/pdf.h"
#include "reports/daily/DialogDayReport.h"
#include "support/fake_printers.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QAction>
#include <QApplication>
#include <QDateEdit>
#include <QLabel>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QtTest>

using namespace Qt::StringLiterals;
using reports::DayReportKind;

namespace
{

const QString nothing = u"該当するデータがありません。"_s;
const QString reversed = u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s;

template <DayReportKind kind>
struct Desk
{
    Desk()
    {
        printing::keepPrintSystem(book.workspace, printers);
        open();
    }

    void open()
    {
        driver.reset();
        screen = std::make_unique<reports::DayReportOf<kind>>(book.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
        QApplication::processEvents();
    }

    void period(const QDate &from, const QDate &to)
    {
        driver->the<QDateEdit>("DTPicker1").setDate(from);
        driver->the<QDateEdit>("DTPicker2").setDate(to);
    }

    int rows() { return driver->the<ui::ReportGrid>("dgdSub").rowCount(); }
    QString days()
    {
        return driver->the<QDateEdit>("DTPicker1").text() + u' ' + driver->the<QDateEdit>("DTPicker2").text();
    }
    QString message() { return driver->the<QLabel>("lblMessage").text(); }

    DayBook book;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    std::unique_ptr<ui::Screen> screen;
    std::unique_ptr<ScreenDriver> driver;
};

// Works the screen that opens next, and closes it.
void inNextScreen(QWidget &over, const std::function<void(ScreenDriver &)> &work)
{
    QTimer::singleShot(0, &over, [work] {
        QWidget *opened = QApplication::activeModalWidget();
        ScreenDriver driver(opened);
        QApplication::processEvents();
        work(driver);
        opened->close();
    });
}

QString textOf(const QString &pdf)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

} // namespace

class TestDayReportScreen : public ScriptedTest
{
    Q_OBJECT

private slots:
    void opensWithTodayAndGoesByDays()
    {
        Desk<DayReportKind::Sales> desk; // the clock stands on 2026-04-01
        ScreenDriver &driver = *desk.driver;
        QCOMPARE(desk.screen->objectName(), u"DialogDayReport"_s);
        QCOMPARE(desk.screen->windowTitle(), u"納品日報"_s);
        QCOMPARE(desk.rows(), 4);
        QCOMPARE(driver.box("txtTotal").text(), u"700"_s);
        QCOMPARE(desk.message(), u"伝票 2 件、明細 2 行　登録のない納品先の伝票 1 件を含みます。"_s);
        driver.press("cmdDayAfter");
        QCOMPARE(desk.days(), u"2026/04/02 2026/04/02"_s);
        QCOMPARE(desk.message(), nothing); // no box for what is no news
        QCOMPARE(driver.enabled({"cmdOpen", "Command3", "cmdExport"}), u"Command3"_s);
        desk.period({2026, 3, 31}, {2026, 4, 7});
        driver.press("cmdDayBefore");
        QCOMPARE(desk.days(), u"2026/03/30 2026/03/30"_s);
        driver.press("cmdToday");
        QCOMPARE(desk.rows(), 4);
    }

    void emptyAndReversedPeriods()
    {
        Desk<DayReportKind::Sales> desk;
        ScreenDriver &driver = *desk.driver;
        desk.period({2026, 4, 2}, {2026, 4, 6});
        QCOMPARE(desk.message(), u"期間が変わりました。「表示」を押すと読み直します。"_s);
        for (const char *button : {"Command5", "Command3"}) {
            ui::prompts::expectInform(nothing);
            driver.press(button);
            QCOMPARE(driver.cursor(), u"DTPicker1"_s);
        }
        QVERIFY(desk.printers->given.empty());
        desk.period({2026, 4, 7}, {2026, 4, 1});
        for (const char *button : {"Command5", "Command3"}) {
            ui::prompts::expectInform(reversed);
            driver.press(button);
        }
        QCOMPARE(desk.rows(), 0);
        QCOMPARE(driver.box("txtTotal").text(), u"0"_s);
    }

    // By keys alone: period, rows, a slip, and back into its row; another program deleted one meanwhile.
    void rowsLeadToTheirSlips()
    {
        Desk<DayReportKind::Sales> desk;
        ScreenDriver &driver = *desk.driver;
        driver.the("DTPicker1").setFocus();
        QTest::keyClicks(&driver.the("DTPicker1"), u"20260407"_s);
        driver.key(Qt::Key_Return);
        QTest::keyClicks(&driver.the("DTPicker2"), u"20260407"_s);
        driver.key(Qt::Key_Return);
        QCOMPARE(driver.cursor(), u"dgdSub"_s);
        auto &grid = driver.the<ui::ReportGrid>("dgdSub");
        grid.selectRow(1);
        QString seen;
        inNextScreen(*desk.screen, [&](ScreenDriver &correction) {
            seen = correction.box("txtDenNo").text();
            desk.book.run(u"UPDATE 入出庫サブ SET 金額 = 302 WHERE 金額 = 301"_s);
        });
        driver.key(Qt::Key_Return);
        QCOMPARE(seen, u"O1"_s);
        QCOMPARE(grid.currentIndex().row(), 1);
        QCOMPARE(driver.box("txtTotal").text(), u"3,632"_s);
        desk.book.run(u"DELETE FROM 入出庫サブ WHERE ID = 1"_s);
        desk.book.run(u"DELETE FROM 入出庫マスター WHERE ID = 1"_s);
        ui::prompts::expectInform({});
        driver.press("cmdOpen");
        QCOMPARE(desk.rows(), 0);
        // The subtotal leads nowhere, and Enter on it does nothing.
        driver.press("cmdToday");
        grid.selectRow(2);
        QCOMPARE(driver.enabled({"cmdOpen"}), QString());
    }

    void printedWithPrinterAndFontOfItsOwn()
    {
        Desk<DayReportKind::Sales> desk;
        ScreenDriver &driver = *desk.driver;
        QCOMPARE(driver.box("LblPrinterName").text(), u"通常使うプリンタ"_s);
        QMenu *menu = driver.the<QPushButton>("Picture4").menu();
        emit menu->aboutToShow();
        menu->actions().at(2)->trigger();
        QCOMPARE(driver.box("LblPrinterName").text(), u"DOT"_s);
        ui::file_dialogs::expectFont(QFont(u"@IPAGothic"_s));
        driver.press("Command7");
        QCOMPARE(driver.box("txtFontName").text(), u"IPAGothic"_s);
        driver.the("Option1").setFocus();
        driver.key(Qt::Key_Right);
        QVERIFY(driver.the<QRadioButton>("Option2").isChecked());
        const QString pdf = desk.book.path(u"日報.pdf"_s);
        inNextScreen(*desk.screen, [&](ScreenDriver &preview) {
            ui::file_dialogs::expectFile(pdf);
            preview.press("cmdPdf");
        });
        driver.press("Command3");
        const QString text = textOf(pdf);
        QVERIFY2(text.contains(u"(削除済み) ID 77"_s) && text.contains(u"Page 1"_s), qPrintable(text));
        // Esc closes, and the next report lies too.
        driver.key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        desk.open();
        QVERIFY(desk.driver->the<QRadioButton>("Option2").isChecked());
        QCOMPARE(desk.book.settings.text(workspace::keys::checkCOption1) +
                     desk.book.settings.text(workspace::keys::checkCOption2),
                 u"01"_s);
        QCOMPARE(desk.book.settings.text(workspace::keys::nippoPrinterName), u"DOT"_s);
        QCOMPARE(desk.book.settings.text(workspace::keys::nippoPrinterFont), u"IPAGothic"_s);
    }

    void noPrintServiceIsTold()
    {
        Desk<DayReportKind::Receipts> desk;
        desk.printers->noService = base::Error{u"印刷サービスが応答しません。"_s};
        QMenu *menu = desk.driver->the<QPushButton>("Picture4").menu();
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 2);
        QVERIFY(!menu->actions().last()->isEnabled());
    }

    // Goods have other columns than money; a width of the one is none of the other.
    void widthsAreKeptByTheKindOfColumns()
    {
        Desk<DayReportKind::Sales> desk;
        desk.driver->the<ui::ReportGrid>("dgdSub").setColumnWidth(5, 177);
        desk.screen->close();
        desk.open();
        QCOMPARE(desk.driver->the<ui::ReportGrid>("dgdSub").columnWidth(5), 177);
        reports::DayReportOf<DayReportKind::Payments> payments(desk.book.workspace);
        ScreenDriver driver(&payments);
        driver.show();
        QVERIFY(driver.the<ui::ReportGrid>("dgdSub").columnWidth(5) != 177);
    }

    void wheelAndEscChangeNothing()
    {
        Desk<DayReportKind::Sales> desk;
        ScreenDriver &driver = *desk.driver;
        driver.the("dgdSub").setFocus();
        turnWheelOver(driver.the("DTPicker1"));
        QCOMPARE(desk.days(), u"2026/04/01 2026/04/01"_s);
        driver.key(Qt::Key_Escape);
        driver.key(Qt::Key_Escape);
        QCOMPARE(desk.book.value(u"SELECT COUNT(*) FROM 入出庫サブ"_s).toInt(), 14);
    }
};

QTEST_MAIN(TestDayReportScreen)
#include "tst_day_report_screen.moc"
