#include "reports/charts/DialogCharts.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QImage>
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
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (1, '山田&商店')"_s);
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, '2026-04-01', 'O1', 1), "
            "(2, '2025-04-30', 'O2', 2), (3, '2026-03-31', 'R3', 2)"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (1, 'りんご', 3000), (2, 'みかん', 500), "
                 "(3, '入金', 400)"_s);
        screen = std::make_unique<reports::DialogCharts>(shop.workspace);
        screen->openCharts(book::Party::Customer, shop.workspace.today(), book::CounterpartKey(1), false);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
        QApplication::processEvents();
    }

    QString row(int row)
    {
        QStringList cells;
        const base::Report &table = driver->the<ui::ReportGrid>("dgdSub").report();
        const QVariantList &values = table.rows.at(static_cast<std::size_t>(row)).values;
        for (const QVariant &value : values)
            cells << value.toString();
        return cells.join(u'|');
    }

    FreshShop shop;
    std::unique_ptr<reports::DialogCharts> screen;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestChartsScreen : public ScriptedTest
{
    Q_OBJECT

private slots:
    void showsWhatIsChosen()
    {
        Desk desk;
        ScreenDriver &driver = *desk.driver;
        QCOMPARE(desk.row(11), u"2026/04|3000|0"_s);
        QCOMPARE(desk.row(10), u"2026/03|0|400"_s);
        driver.choose("Combo1", 1);
        QCOMPARE(desk.row(11), u"2026/04|500|3000"_s);
        driver.press("cmdYearBefore");
        QCOMPARE(desk.row(11), u"2025/04|0|500"_s);
        driver.press("cmdYearAfter");
        driver.choose("Combo1", 2);
        QCOMPARE(desk.row(0), u"山田&商店|3000"_s);
        QCOMPARE(driver.the<QCheckBox>("Check1").text(), u"山田&&商店 だけ(&C)"_s);
        driver.press("Check1");
        driver.choose("Combo1", 0);
        QCOMPARE(desk.row(10), u"2026/03|0|0"_s); // the receipt is another's
        driver.key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
    }

    void nothingToShow()
    {
        Desk desk;
        desk.driver->the<QDateEdit>("DTPicker1").setDate({2001, 1, 1});
        desk.driver->press("Command5");
        QCOMPARE(desk.driver->the<QLabel>("lblMessage").text(), u"該当するデータがありません。"_s);
        QCOMPARE(desk.driver->enabled({"Command2", "cmdPicture", "Command3"}), QString());
    }

    // The picture is as sharp as paper wants it, and never takes the place of a file unasked.
    void savedAsPicture()
    {
        Desk desk;
        const QString fileName = desk.shop.path(u"グラフ.png"_s);
        ui::file_dialogs::expectFile(fileName);
        desk.driver->press("cmdPicture");
        const QImage picture(fileName);
        QVERIFY(picture.width() > 1000);
        int coloured = 0; // by the bar of April
        for (int x = 0; x < picture.width(); ++x)
            coloured += qGray(picture.pixel(x, picture.height() / 2)) < 200 ? 1 : 0;
        QVERIFY(coloured > 15);
        ui::file_dialogs::expectFile(fileName);
        ui::prompts::expectAsk({}, false);
        const QDateTime written = QFileInfo(fileName).lastModified();
        desk.driver->press("cmdPicture");
        QCOMPARE(QFileInfo(fileName).lastModified(), written);
        ui::file_dialogs::expectFile(desk.shop.path(u"shop.cdb"_s));
        ui::prompts::expectInform({});
        desk.driver->press("cmdPicture");
        QCOMPARE(desk.shop.value(u"SELECT COUNT(*) FROM 入出庫サブ"_s).toInt(), 3);
        ui::file_dialogs::expectFile(u"/nowhere/グラフ.png"_s);
        ui::prompts::expectInform({});
        desk.driver->press("cmdPicture");
    }

    void printedOnOneSheet()
    {
        Desk desk;
        const QString pdf = desk.shop.path(u"グラフ.pdf"_s);
        QTimer::singleShot(0, desk.screen.get(), [&] {
            QWidget *preview = QApplication::activeModalWidget();
            ScreenDriver hands(preview);
            QApplication::processEvents();
            ui::file_dialogs::expectFile(pdf);
            hands.press("cmdPdf");
            preview->close();
        });
        desk.driver->press("Command2");
        QVERIFY(QFileInfo(pdf).size() > 1000);
    }
};

QTEST_MAIN(TestChartsScreen)
#include "tst_charts_screen.moc"
