// The printer of delivery notes and bills, and where their print stands.
#include "printing/frmPreview.h"
#include "printing/printer_desk.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace printing;
namespace keys = workspace::keys;

namespace
{

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
};

QTEST_MAIN(TestPrinterDialogs)
#include "tst_printer_dialogs.moc"
