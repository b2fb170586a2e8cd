// The printer of parcels' slips, and where their print stands.
#include "printing/printer_desk.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace printing;
namespace keys = workspace::keys;

class TestSlipPrinterDialog : public ScriptedTest
{
    Q_OBJECT

private slots:
    void theSlipPrinterTellsWhatItCan()
    {
        const SlipDesk desk;
        auto &papers = desk.driver->list("Combo1");
        QCOMPARE(desk.driver->list("Combo3").currentText(), u"LASER"_s);
        QCOMPARE(papers.count(), 3);
        QCOMPARE(papers.currentText(), u"A4"_s);
        QCOMPARE(papers.currentData().toInt(), 9);
        QCOMPARE(desk.label("Label8"), u"A4、210 x 297 mm"_s);
        QCOMPARE(desk.label("Label7"), u"用紙が1枚ずつ手差しで供給されるまで待機します。"_s);
        QCOMPARE(desk.label("Label6"), u"このプリンターの最大印刷部数は999枚です。"_s);
        desk.driver->choose("Combo1", u"USER(257)"_s);
        QCOMPARE(desk.label("Label8"), u"User Size  H 94 × W 94㎜"_s);
        desk.driver->choose("Combo3", u"DOT"_s);
        QCOMPARE(papers.itemText(0), u"FANFOLD_US"_s);
        QCOMPARE(papers.currentText(), u"USER(256)"_s);
        QCOMPARE(desk.label("Label8"), u"ユーザー定義サイズ  H 113 × W 240㎜"_s);
        QCOMPARE(desk.label("Label7"), u"トラクタフィーダの用紙を使います。"_s);
        QCOMPARE(desk.label("Label6"), u"このプリンターの最大印刷部数は1枚です。"_s);
        ui::prompts::expectAskHowToLeave(u"送り状のプリンタを「DOT」に変えますか。"_s,
                                         ui::prompts::Choice::Discard, ui::prompts::Choice::Save);
        desk.esc();
        QCOMPARE(desk.stored(keys::kuroPrinterName), QString());
    }

    void closingStoresThePosition_data()
    {
        QTest::addColumn<QString>("way"); // empty: Esc

        for (const auto *way : {"Command1", "Command5", ""})
            QTest::newRow(way) << QString::fromLatin1(way);
    }

    void closingStoresThePosition()
    {
        QFETCH(const QString, way);
        const SlipDesk desk([](FakePrinters &, FreshShop &shop) {
            shop.settings.write(keys::kuOffsetX, 4);
            shop.settings.write(keys::kuOffsetY, -2);
        });
        QCOMPARE(desk.box("Text1") + u' ' + desk.box("Text3"), u"4 -2"_s);
        desk.click("UpDown1", true);
        desk.driver->type("Text3", u"7"_s);
        desk.driver->press("Command4");
        QCOMPARE(desk.box("Text1") + u' ' + desk.box("Text3"), u"4 -2"_s);
        desk.click("UpDown2", false);
        desk.driver->the<QCheckBox>("Check1").click();
        if (way.isEmpty())
            desk.esc();
        else
            desk.driver->press(way);
        QVERIFY(!desk.dialog->isVisible());
        QCOMPARE(desk.stored(keys::kuOffsetX) + u' ' + desk.stored(keys::kuOffsetY), u"4 -3"_s);
        QCOMPARE(desk.stored(keys::kuUserSize), u"1"_s);
        QVERIFY(desk.shop.workspace.panel.slipPaperDeclared);
        QVERIFY(desk.stored(keys::kuroPrinterName).isEmpty());
    }

    void registeringKeepsTheDialogOpenAndThePrinter()
    {
        const SlipDesk desk(
            [](FakePrinters &, FreshShop &shop) { shop.settings.write(keys::kuroPrinterName, u"倉庫"_s); });
        QVERIFY(desk.label("lblRemark").contains(u"「倉庫」が見つからない"_s));
        desk.driver->press("Command2");
        QCOMPARE(desk.stored(keys::kuroPrinterName), u"倉庫"_s);
        desk.driver->choose("Combo3", u"DOT"_s);
        desk.driver->clear("Text1");
        desk.driver->press("Command2");
        QCOMPARE(desk.box("Text1"), u"0"_s);
        QCOMPARE(desk.label("Label4"), u"登録しました。"_s);
        QVERIFY(desk.dialog->isVisible());
        QCOMPARE(desk.stored(keys::kuroPrinterName), u"DOT"_s);
        desk.esc(); // asks no more
        QVERIFY(!desk.dialog->isVisible());
    }

    void aSlipsPaperThatThePrinterDoesNotTakeIsTold()
    {
        const SlipDesk desk;
        QCOMPARE(desk.label("lblRemark"), QString());
        desk.driver->the<QCheckBox>("Check1").click();
        QVERIFY(desk.label("lblRemark").contains(u"受け付けません"_s));
        desk.driver->type("Text1", u"200"_s);
        QVERIFY(desk.label("lblRemark").contains(u"多すぎる"_s));
    }

    void propertiesThatCannotBeShownAreToldInTheStatusLine()
    {
        const SlipDesk slips;
        slips.driver->press("Command3");
        QCOMPARE(slips.printers->shown, QStringList{u"LASER"_s});
        QCOMPARE(slips.label("Label4"), QString());
        slips.printers->hasProperties = false;
        slips.driver->press("Command3");
        QCOMPARE(slips.label("Label4"), u"表示できません。"_s);
        QCOMPARE(slips.driver->list("Combo1").currentText(), u"A4"_s);

        const NoteDesk notes([](FakePrinters &printers, FreshShop &) { printers.hasProperties = false; });
        notes.driver->press("cmdProperties");
        QCOMPARE(notes.label("Label4"), u"表示できません。"_s);
    }

    // What was changed in the system's window shows when the clerk comes back from it.
    void comingBackReadsThePrinterAgain()
    {
        const SlipDesk desk;
        desk.driver->press("Command3");
        desk.printers->can[u"LASER"_s].usualBin = u"auto"_s;
        QWidget elsewhere;
        elsewhere.show();
        elsewhere.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&elsewhere));
        desk.dialog->activateWindow();
        QTRY_COMPARE(desk.label("Label7"), u"現在の既定値のトレーの用紙を使います。"_s);
    }

    void aPrinterWithoutPapersOrThatIsSilent()
    {
        const SlipDesk desk([](FakePrinters &printers, FreshShop &) { printers.can[u"LASER"_s] = {}; });
        QCOMPARE(desk.driver->list("Combo1").count(), 0);
        QCOMPARE(desk.label("Label8") + desk.label("Label7"), QString());

        const SlipDesk without([](FakePrinters &printers, FreshShop &) { printers.names.clear(); });
        QCOMPARE(without.driver->list("Combo1").count(), 0);
        QVERIFY(!without.driver->the<QPushButton>("Command3").isEnabled());
        without.driver->type("Text1", u"3"_s);
        without.esc();
        QCOMPARE(without.stored(keys::kuOffsetX), u"3"_s);
    }

    // A wheel or arrow keys on the way change nothing that is stored unseen.
    void aWheelInPassingChangesNothing()
    {
        const SlipDesk slips;
        QCOMPARE(slips.driver->cursor(), u"Text1"_s);
        const NoteDesk notes;
        QCOMPARE(notes.driver->cursor(), u"Text8"_s);
        for (const auto *name : {"Combo3", "Combo1", "Text1", "Text3"})
            turnWheelOver(slips.driver->the(name));
        for (const auto *name : {"Combo2", "Text8", "Text2", "Text1", "Text3", "Text4"})
            turnWheelOver(notes.driver->the(name));
        slips.esc();
        notes.esc(); // asks nothing: nothing has changed
        QCOMPARE(slips.stored(keys::kuroPrinterName), QString());
        QCOMPARE(slips.stored(keys::kuOffsetX), u"0"_s);
    }

    void theTwinIsTheSameWindow()
    {
        FreshShop shop;
        keepPrintSystem(shop.workspace, std::make_shared<FakePrinters>());
        frmPrinterP twin(shop.workspace);
        ScreenDriver driver(&twin);
        driver.show();
        driver.type("Text1", u"6"_s);
        driver.press("Command5");
        QCOMPARE(shop.settings.text(keys::kuOffsetX), u"6"_s);
        QVERIFY(!shop.settings.layout(u"frmPrinterP/size"_s).isEmpty());
    }
};

QTEST_MAIN(TestSlipPrinterDialog)
#include "tst_slip_printer_dialog.moc"
