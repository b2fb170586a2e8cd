#include "app/main_window/main_window_stage.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "workspace/settings.h"

#include <QAction>
#include <QLineEdit>
#include <QTest>

// What of the main window leads to printers and fonts, and what it shows of them.
class TestPrinterCommands : public ScriptedTest
{
    Q_OBJECT

private slots:
    void eachWayLeadsToItsPrinter_data();
    void eachWayLeadsToItsPrinter();
    void aNewPrinterShowsAtOnce();
    void theFontOfSlipsIsKeptAtOnce();
};

void TestPrinterCommands::eachWayLeadsToItsPrinter_data()
{
    QTest::addColumn<QString>("control");
    QTest::addColumn<Action>("action");

    QTest::newRow("notes, their printer") << u"LblPrinterName"_s << Action::PrinterChoice;
    QTest::newRow("notes, menu") << u"mnuPrinter"_s << Action::PrinterChoice;
    QTest::newRow("slips, their printer") << u"Label19"_s << Action::SlipPrinter;
    QTest::newRow("slips, button") << u"Picture3"_s << Action::SlipPrinter;
    QTest::newRow("the day's jobs, menu") << u"mnuPrintJobs"_s << Action::PrintJobs;
    QTest::newRow("properties, menu") << u"munPrinter"_s << Action::PrinterProperties;
}

void TestPrinterCommands::eachWayLeadsToItsPrinter()
{
    QFETCH(const QString, control);
    QFETCH(const Action, action);
    MainWindowStage stage;
    if (auto *item = stage.window->findChild<QAction *>(control))
        item->trigger();
    else
        stage.click(control.toLatin1().constData());
    QCOMPARE(stage.opened, QList<Action>{action});
}

void TestPrinterCommands::aNewPrinterShowsAtOnce()
{
    MainWindowStage stage([](FreshShop &shop) { shop.settings.write(workspace::keys::kuUserSize, true); });
    QVERIFY(stage.shop.workspace.panel.slipPaperDeclared);
    QCOMPARE(stage.find<QAbstractButton>("Label19")->text(), u"通常使うプリンタ"_s);
    stage.whenOpened = [&stage](Action) {
        stage.shop.settings.write(workspace::keys::kuroPrinterName, u"倉庫"_s);
        stage.shop.settings.write(workspace::keys::printerFont, u"@IPAGothic"_s);
    };
    stage.click("Label19");
    QCOMPARE(stage.find<QAbstractButton>("Label19")->text(), u"倉庫"_s);
    QCOMPARE(stage.find<QLineEdit>("txtFontName")->text(), u"IPAGothic"_s);
}

void TestPrinterCommands::theFontOfSlipsIsKeptAtOnce()
{
    MainWindowStage stage;
    ui::file_dialogs::expectFont(QFont(u"@IPAGothic"_s));
    stage.click("Picture4");
    QCOMPARE(stage.find<QLineEdit>("txtFontName2")->text(), u"IPAGothic"_s);
    QCOMPARE(stage.shop.settings.text(workspace::keys::kuroPrinterFont), u"IPAGothic"_s);
    ui::file_dialogs::expectFont(std::nullopt);
    stage.click("Picture4");
    QCOMPARE(stage.find<QLineEdit>("txtFontName2")->text(), u"IPAGothic"_s);
}

QTEST_MAIN(TestPrinterCommands)
#include "tst_printer_commands.moc"
