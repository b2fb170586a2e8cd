#include "printing/DialogPrinterP.h"
#include "printing/DialogPrinterSet.h"
#include "printing/frmPreview.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui/up_down.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;
using namespace printing;
namespace keys = workspace::keys;

namespace
{

const QSizeF continuous(241.3, 114.3);

QueueAbilities laser()
{
    return {.media = {{u"iso_a5_148x210mm"_s, {148, 210}, {4, 4, 4, 4}},
                      {u"iso_a4_210x297mm"_s, {210, 297}, {4, 4, 4, 4}},
                      {u"odd"_s, {95, 95}, {4, 4, 4, 4}}},
            .usualPaper = Medium{u"iso_a4_210x297mm"_s, {210, 297}, {4, 4, 4, 4}},
            .bins = {u"tray-1"_s, u"manual"_s},
            .usualBin = u"manual"_s,
            .mostCopies = 999};
}

QueueAbilities needles()
{
    return {.media = {{u"na_fanfold-us"_s, {377.8, 279.4}, {6, 6, 6, 6}}},
            .custom = CustomSizes{{50, 50}, 381, std::nullopt, {6, 6, 6, 6}},
            .usualPaper = Medium{u"custom"_s, continuous, {6, 6, 6, 6}},
            .usualBin = u"tractor"_s,
            .mostCopies = 1};
}

// A dialog over two printers, "LASER" for cut paper and "DOT" for continuous forms.
template <class Dialog>
struct Desk
{
    template <class... More>
    explicit Desk(const std::function<void(FakePrinters &, FreshShop &)> &prepare, More &&...more)
    {
        printers->can = {{u"LASER"_s, laser()}, {u"DOT"_s, needles()}};
        if (prepare)
            prepare(*printers, shop);
        keepPrintSystem(shop.workspace, printers);
        dialog = std::make_unique<Dialog>(shop.workspace, std::forward<More>(more)...);
        driver = std::make_unique<ScreenDriver>(dialog.get());
        driver->show();
    }

    [[nodiscard]] QString stored(const workspace::SettingKey &key) const { return shop.settings.text(key); }
    [[nodiscard]] QString label(const char *name) const
    {
        auto &found = driver->template the<QLabel>(name);
        return found.isVisible() ? found.text() : QString();
    }
    [[nodiscard]] QString box(const char *name) const { return driver->box(name).text(); }
    void click(const char *arrows, bool up) const
    {
        const auto buttons = driver->template the<ui::UpDown>(arrows).template findChildren<QToolButton *>();
        QTest::mouseClick(buttons.at(up ? 0 : 1), Qt::LeftButton);
    }
    void esc() const { QTest::keyClick(dialog.get(), Qt::Key_Escape); }

    FreshShop shop;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    std::unique_ptr<Dialog> dialog;
    std::unique_ptr<ScreenDriver> driver;
};

// Notes on a continuous form, with one word that is moved by the steps.
base::Result<Document> note(const NoteSteps &steps)
{
    Sheet sheet;
    sheet.paperWidth = continuous.width();
    sheet.paperHeight = continuous.height();
    sheet.texts.push_back({1000, 1000, u"下へ%1段"_s.arg(steps.noteDown), 12});
    Document document;
    document.title = u"位置合わせ"_s;
    document.sheets.push_back(sheet);
    return document;
}

struct NoteDesk : Desk<DialogPrinterSet>
{
    explicit NoteDesk(const std::function<void(FakePrinters &, FreshShop &)> &prepare = {})
        : Desk(prepare, note)
    {}
};

struct SlipDesk : Desk<DialogPrinterP>
{
    explicit SlipDesk(const std::function<void(FakePrinters &, FreshShop &)> &prepare = {})
        : Desk(prepare)
    {}
};

// Does \a work in the window \a name once it stands above the others; it ends with \a owner.
void inWindow(const QString &name, QObject &owner, const std::function<void(QWidget &)> &work)
{
    auto *look = new QTimer(&owner);
    QObject::connect(look, &QTimer::timeout, look, [look, name, work] {
        QWidget *window = QApplication::activeModalWidget();
        if (!window || !window->isVisible() || window->objectName() != name)
            return;
        look->stop();
        work(*window);
    });
    look->start(5);
}

const QString unsaved = u"変更した内容は、まだ登録されていません。"_s;

} // namespace

class TestPrinterDialogs : public ScriptedTest
{
    Q_OBJECT

private slots:
    void theFormIsAdjustedWhereThatIsOffered()
    {
        const auto adjust = [](auto &desk) {
            QVERIFY(desk.driver->the("cmdAdjust").isHidden());
            int adjusted = 0;
            desk.dialog->setAdjuster([&](QWidget *over) { adjusted += over == desk.dialog.get(); });
            desk.driver->press("cmdAdjust");
            QCOMPARE(adjusted, 1);
        };
        NoteDesk notes;
        adjust(notes);
        SlipDesk slips;
        adjust(slips);
    }

    void eachBoxStoresItsOffset_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("arrows");
        QTest::addColumn<QString>("label"); // empty: none
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("least"); // of what is typed as -30

        QTest::newRow("bill") << u"Text8"_s << u"UpDown1"_s << u"Label3"_s << u"OffsetA"_s << -4;
        QTest::newRow("note") << u"Text2"_s << u"UpDown2"_s << u"Label5"_s << u"OffsetB"_s << -4;
        QTest::newRow("receipt") << u"Text1"_s << u"UpDown3"_s << u"Label6"_s << u"OffsetC"_s << -4;
        QTest::newRow("across") << u"Text3"_s << u"UpDown4"_s << u"Label7"_s << u"OffsetL"_s << -8;
        QTest::newRow("addressee") << u"Text4"_s << u"UpDown5"_s << QString() << u"OffsetF"_s << -30;
    }

    void eachBoxStoresItsOffset()
    {
        QFETCH(const QString, box);
        QFETCH(const QString, arrows);
        QFETCH(const QString, label);
        QFETCH(const QString, key);
        const QByteArray keyName = key.toLatin1();
        const workspace::SettingKey setting{"Printer", keyName.constData(), u""};
        const NoteDesk desk([&](FakePrinters &, FreshShop &shop) { shop.settings.write(setting, 5); });
        const QByteArray name = box.toLatin1();
        auto &line = desk.driver->box(box);
        const auto shown = [&] { return desk.driver->the<QLabel>(label).text(); };
        QCOMPARE(line.text(), u"5"_s);

        desk.driver->type(box, u"-30"_s);
        QTEST(line.text().toInt(), "least");
        desk.driver->clear(box);
        QCOMPARE(line.text(), u"0"_s);
        if (!label.isEmpty())
            QCOMPARE(shown(), u"標準"_s);
        QTest::keyClicks(&line, u"2"_s); // in place of the 0
        QCOMPARE(line.text(), u"2"_s);
        if (!label.isEmpty())
            QCOMPARE(shown(), key == u"OffsetL"_s ? u"右へ3.5㎜移動"_s : u"下へ2.82㎜移動"_s);
        desk.click(arrows.toLatin1().constData(), true);
        QCOMPARE(line.text(), u"3"_s);
        QTest::keyClick(&line, Qt::Key_Up);
        desk.click(arrows.toLatin1().constData(), false);
        QTest::keyClick(&line, Qt::Key_Down);
        QTest::keyClick(&line, Qt::Key_Down);
        QCOMPARE(line.text(), u"1"_s);
        desk.driver->type(box, u"３"_s);
        desk.driver->press("Command1");
        QVERIFY(!desk.dialog->isVisible());
        QCOMPARE(desk.stored(setting), u"3"_s);
    }

    // The arrows stop where nobody needs more.
    void arrowsHaveBounds()
    {
        const NoteDesk desk;
        for (int i = 0; i < 30; ++i)
            QTest::keyClick(&desk.driver->box("Text2"), Qt::Key_Up);
        QCOMPARE(desk.box("Text2"), u"20"_s);
        desk.driver->type("Text2", u"50"_s);
        desk.click("UpDown2", true);
        QCOMPARE(desk.box("Text2"), u"50"_s);
        desk.click("UpDown2", false);
        QCOMPARE(desk.box("Text2"), u"49"_s);
        ui::prompts::expectAskHowToLeave(unsaved, ui::prompts::Choice::Discard, ui::prompts::Choice::Save);
        desk.esc();
    }

    void whatReadsLikeASlipOfTheHandIsAskedAbout()
    {
        const NoteDesk desk;
        desk.driver->type("Text3", u"300"_s);
        const QString question =
            u"「横方向の出力位置の調整」の 300 は、動かす量が多すぎるようです。このまま登録しますか。"_s;
        ui::prompts::expectAskCautiously(question, false);
        desk.driver->press("Command1");
        QVERIFY(desk.dialog->isVisible());
        QCOMPARE(desk.driver->cursor(), u"Text3"_s);
        QCOMPARE(desk.stored(keys::offsetL), u"0"_s);
        ui::prompts::expectAskCautiously(question, true);
        desk.driver->press("Command1");
        QCOMPARE(desk.stored(keys::offsetL), u"300"_s);
    }

    void escAsksAndStoresNothingByItself()
    {
        const NoteDesk desk;
        desk.driver->type("Text2", u"2"_s);
        desk.driver->the<QCheckBox>("Check1").click();
        ui::prompts::expectAskHowToLeave(unsaved, ui::prompts::Choice::Cancel, ui::prompts::Choice::Save);
        desk.esc();
        QVERIFY(desk.dialog->isVisible());
        QCOMPARE(desk.stored(keys::offsetB), u"0"_s);
        ui::prompts::expectAskHowToLeave(unsaved, ui::prompts::Choice::Save, ui::prompts::Choice::Save);
        desk.driver->press("Command3");
        QVERIFY(!desk.dialog->isVisible());
        QCOMPARE(desk.stored(keys::offsetB), u"2"_s);
        QVERIFY(desk.shop.settings.checked(keys::offsetD));
    }

    void printerAndFontAreStored()
    {
        const NoteDesk desk(
            [](FakePrinters &, FreshShop &shop) { shop.settings.write(keys::printerFont, u"@ＭＳ 明朝"_s); });
        QCOMPARE(desk.box("txtFontName"), u"ＭＳ 明朝"_s);
        QTest::keyClick(desk.dialog.get(), Qt::Key_N, Qt::AltModifier);
        QCOMPARE(desk.driver->cursor(), u"Combo2"_s);
        desk.driver->choose("Combo2", u"DOT"_s);
        QCOMPARE(desk.label("LblPrinterName"), u"DOT"_s);
        ui::file_dialogs::expectFont(QFont(u"@IPAGothic"_s));
        desk.driver->press("Command7");
        QCOMPARE(desk.box("txtFontName"), u"IPAGothic"_s);
        desk.driver->press("Command1");
        QCOMPARE(desk.stored(keys::printerName), u"DOT"_s);
        QCOMPARE(desk.stored(keys::printerFont), u"IPAGothic"_s);
    }

    void aPrinterThatIsGoneIsToldAndStaysStored()
    {
        const NoteDesk desk(
            [](FakePrinters &, FreshShop &shop) { shop.settings.write(keys::printerName, u"事務所"_s); });
        QCOMPARE(desk.label("LblPrinterName"), u"LASER"_s);
        QVERIFY(desk.label("lblRemark").contains(u"「事務所」が見つからない"_s));
        desk.driver->type("Text2", u"1"_s);
        desk.driver->press("Command1");
        QCOMPARE(desk.stored(keys::printerName), u"事務所"_s);
    }

    // Before any of it is wasted.
    void paperThatThePrinterDoesNotTakeIsTold()
    {
        const NoteDesk desk;
        QVERIFY(desk.label("lblRemark").contains(u"幅 241.3 × 長さ 114.3 mmの用紙を受け付けません"_s));
        desk.driver->choose("Combo2", u"DOT"_s);
        QCOMPARE(desk.label("lblRemark"), QString());
        ui::prompts::expectAskHowToLeave(unsaved, ui::prompts::Choice::Discard, ui::prompts::Choice::Save);
        desk.esc();
        QCOMPARE(desk.stored(keys::printerName), QString());
    }

    // As it is entered, on the printer that is shown, with the grid.
    void theSheetIsPrintedBeforeAnythingIsStored()
    {
        const NoteDesk desk;
        desk.driver->choose("Combo2", u"DOT"_s);
        desk.driver->type("Text2", u"3"_s);
        inWindow(u"frmPreview"_s, *desk.dialog, [&desk](QWidget &preview) {
            QVERIFY(preview.findChild<QCheckBox *>(u"chkGrid"_s)->isChecked());
            QTRY_COMPARE(preview.findChild<QLabel *>(u"LblPrinterName"_s)->text(), u"プリンタ：DOT"_s);
            inWindow(u"DialogPrint"_s, *desk.dialog,
                     [](QWidget &dialog) { dialog.findChild<QPushButton *>(u"cmdPrint"_s)->click(); });
            preview.findChild<QPushButton *>(u"cmdPrint"_s)->click();
        });
        desk.driver->press("Command49");
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
        QCOMPARE(desk.printers->given.front().settings.queue, u"DOT"_s);
        QCOMPARE(desk.printers->given.front().settings.paper, continuous);
        QCOMPARE(desk.stored(keys::offsetB), u"0"_s);
        ui::prompts::expectAskHowToLeave(unsaved, ui::prompts::Choice::Discard, ui::prompts::Choice::Save);
        desk.esc();
    }

    void billsHaveASheetOfTheirOwn()
    {
        const NoteDesk desk;
        int down = 99; // steps, that the bill's sheet was asked for with
        desk.dialog->setBillSheet([&down](const NoteSteps &steps) {
            down = steps.billDown;
            return note(steps);
        });
        desk.driver->type("Text8", u"-2"_s);
        const QString question = u"どちらの用紙の位置を合わせますか。"_s;
        const auto close = [](QWidget &preview) { preview.close(); };
        ui::prompts::expectAskWhichWay(question, QString());
        desk.driver->press("Command49"); // and thought better of it
        ui::prompts::expectAskWhichWay(question, u"納品書"_s);
        inWindow(u"frmPreview"_s, *desk.dialog, close);
        desk.driver->press("Command49");
        QCOMPARE(down, 99);
        ui::prompts::expectAskWhichWay(question, u"請求書"_s);
        inWindow(u"frmPreview"_s, *desk.dialog, close);
        desk.driver->press("Command49");
        QCOMPARE(down, -2);
        ui::prompts::expectAskHowToLeave(unsaved, ui::prompts::Choice::Discard, ui::prompts::Choice::Save);
        desk.esc();
    }

    void withoutAPrintServiceThePositionsCanStillBeStored()
    {
        const NoteDesk desk([](FakePrinters &printers, FreshShop &) {
            printers.noService = base::Error{u"印刷サービスに接続できません。"_s};
        });
        QCOMPARE(desk.label("lblRemark"), u"印刷サービスに接続できません。"_s);
        desk.driver->type("Text8", u"-1"_s);
        desk.driver->press("Command1");
        QCOMPARE(desk.stored(keys::offsetA), u"-1"_s);
        QCOMPARE(desk.stored(keys::printerName), QString());
    }

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

QTEST_MAIN(TestPrinterDialogs)
#include "tst_printer_dialogs.moc"
