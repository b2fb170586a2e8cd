// Every setting of printing, with the control that keeps it and what of printing follows it.

#include "printing/DialogPrinterP.h"
#include "printing/DialogPrinterSet.h"
#include "printing/DialogPrinters.h"
#include "printing/renderer.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace printing;

namespace
{

enum Window { Notes, Slips, Others };

// What the settings have of effect on printing, in one text.
using Effect = std::function<QString(const FreshShop &, FakePrinters &)>;

QString point(const QPoint &where) { return u"%1 %2"_s.arg(where.x()).arg(where.y()); }

Effect printerOf(Purpose purpose)
{
    return [purpose](const FreshShop &shop, FakePrinters &printers) {
        return selectPrinter(printers, shop.settings, purpose)->name;
    };
}

Effect faceOf(Purpose purpose)
{
    return [purpose](const FreshShop &shop, FakePrinters &) { return fontFace(shop.settings, purpose); };
}

QString noteMoves(const FreshShop &shop, FakePrinters &)
{
    const NoteSteps steps = noteSteps(shop.settings);
    return u"%1 %2 %3 %4 %5 %6"_s.arg(steps.billDown)
        .arg(steps.noteDown)
        .arg(steps.receiptDown)
        .arg(steps.right)
        .arg(steps.addresseeRight)
        .arg(steps.totalsHigher);
}

template <QPoint (*move)(const workspace::Settings &)>
QString moved(const FreshShop &shop, FakePrinters &)
{
    return point(move(shop.settings));
}

QString paperOfSlips(const FreshShop &shop, FakePrinters &)
{
    return slipPaper(shop.workspace.panel.slipPaperDeclared) ? u"declared"_s : u"the printer's"_s;
}

QString paperOfTransfers(const FreshShop &shop, FakePrinters &)
{
    Sheet sheet;
    setTransferFormPaper(sheet, shop.settings);
    return sheet.turned ? u"turned"_s : u"upright"_s;
}

struct Key
{
    const char *name;
    Window window;
    const char *control; // for a printer the list, for a font its button, else a box or a tick
    Effect effect;
};

const std::vector<Key> &keys()
{
    using enum Purpose;
    static const std::vector<Key> all{
        {"PrinterName", Notes, "Combo2", printerOf(DeliveryNotesAndBills)},
        {"PrinterFont", Notes, "Command7", faceOf(DeliveryNotesAndBills)},
        {"OffsetA", Notes, "Text8", noteMoves},
        {"OffsetB", Notes, "Text2", noteMoves},
        {"OffsetC", Notes, "Text1", noteMoves},
        {"OffsetD", Notes, "Check1", noteMoves},
        {"OffsetF", Notes, "Text4", noteMoves},
        {"OffsetL", Notes, "Text3", noteMoves},
        {"KuroPrinterName", Slips, "Combo3", printerOf(ShippingSlips)},
        {"KuroPrinterFont", Slips, "", faceOf(ShippingSlips)}, // Picture4 of the main window
        {"kuOffsetX", Slips, "Text1", moved<shipOffsetTwips>},
        {"kuOffsetY", Slips, "Text3", moved<shipOffsetTwips>},
        {"kuUserSize", Slips, "Check1", paperOfSlips},
        {"MeiboPrinterName", Others, "cboPrinter1", printerOf(Rosters)},
        {"MeiboPrinterFont", Others, "cmdFont1", faceOf(Rosters)},
        {"FuPrinterName", Others, "cboPrinter2", printerOf(Addresses)},
        {"FuPrinterFont", Others, "cmdFont2", faceOf(Addresses)},
        {"HagakiPrinterName", Others, "cboPrinter3", printerOf(AddressRange)},
        {"HagakiPrinterFont", Others, "cmdFont3", faceOf(AddressRange)},
        {"OderPrinterName", Others, "cboPrinter4", printerOf(TransferForms)},
        {"OderPrinterFont", Others, "cmdFont4", faceOf(TransferForms)},
        {"MotoPrinterName", Others, "cboPrinter5", printerOf(GiftSheets)},
        {"MotoFont", Others, "cmdFont5", faceOf(GiftSheets)},
        {"NippoPrinterName", Others, "", printerOf(DailyReports)}, // Picture4 of the daily reports
        {"NippoPrinterFont", Others, "", faceOf(DailyReports)},    // and Command7
        {"letterOffsetX", Others, "txtLetterX", moved<letterOffsetTwips>},
        {"letterOffsetY", Others, "txtLetterY", moved<letterOffsetTwips>},
        {"stOffsetAppX", Others, "txtGiftX", moved<giftListOffsetTwips>},
        {"stOffsetAppY", Others, "txtGiftY", moved<giftListOffsetTwips>},
        {"OderOffsetX", Others, "txtTransferX", moved<transferFormOffset>},
        {"OderOffsetY", Others, "txtTransferY", moved<transferFormOffset>},
        {"OderOption1", Others, "optTurned", paperOfTransfers},
        {"OderOption2", Others, "optTurned", paperOfTransfers},
    };
    return all;
}

struct Desk
{
    explicit Desk(Window window)
    {
        keepPrintSystem(shop.workspace, printers);
        if (window == Notes)
            screen = std::make_unique<DialogPrinterSet>(
                shop.workspace, [](const NoteSteps &) -> base::Result<Document> { return Document(); });
        else if (window == Slips)
            screen = std::make_unique<DialogPrinterP>(shop.workspace);
        else
            screen = std::make_unique<DialogPrinters>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }

    void change(const QString &control) const
    {
        if (qobject_cast<QComboBox *>(&driver->the(control))) {
            driver->choose(control, u"DOT"_s);
        } else if (qobject_cast<QLineEdit *>(&driver->the(control))) {
            driver->type(control, u"5"_s);
        } else {
            if (control.contains(u"Font"_s) || control == u"Command7"_s)
                ui::file_dialogs::expectFont(QFont(u"@IPAGothic"_s));
            driver->press(control);
        }
    }

    FreshShop shop;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    std::unique_ptr<ui::Screen> screen;
    std::unique_ptr<ScreenDriver> driver;
};

const QString storeButtons[] = {u"Command1"_s, u"Command2"_s, u"cmdStore"_s};

} // namespace

class TestPrintingKeys : public ScriptedTest
{
    Q_OBJECT

private slots:
    // The keys are read out of the table of all settings, so that a new one is missed here.
    void noKeyIsLeftOut()
    {
        QFile table(QStringLiteral(SETTINGS_KEYS));
        QVERIFY(table.open(QIODevice::ReadOnly));
        QStringList wanted;
        static const QRegularExpression row(u"\\{\"Printer\", \"(\\w+)\""_s);
        for (auto rows = row.globalMatch(QString::fromUtf8(table.readAll())); rows.hasNext();)
            wanted << rows.next().captured(1);
        QStringList tested;
        for (const Key &key : keys())
            tested << QString::fromLatin1(key.name);
        wanted.sort();
        tested.sort();
        QCOMPARE(tested, wanted);
    }

    void eachKeyHasAControlWithAnEffect_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < keys().size(); ++i) {
            if (*keys()[i].control)
                QTest::newRow(keys()[i].name) << static_cast<int>(i);
        }
    }

    void eachKeyHasAControlWithAnEffect()
    {
        QFETCH(const int, index);
        const Key &key = keys().at(static_cast<std::size_t>(index));
        const Desk desk(key.window);
        const workspace::SettingKey setting{"Printer", key.name, u""};
        const QString storedBefore = desk.shop.settings.text(setting);
        const QString before = key.effect(desk.shop, *desk.printers);
        desk.change(QString::fromLatin1(key.control));
        desk.driver->press(storeButtons[key.window]);
        QVERIFY(desk.shop.settings.text(setting) != storedBefore);
        const QString after = key.effect(desk.shop, *desk.printers);
        QVERIFY2(after != before, qPrintable(before));
    }

    void thoseOfOtherPurposesAreNotLostByAccident()
    {
        FreshShop shop;
        keepPrintSystem(shop.workspace, std::make_shared<FakePrinters>());
        shop.settings.write(workspace::keys::fuPrinterName, u"二階"_s);
        DialogPrinters dialog(shop.workspace);
        ScreenDriver driver(&dialog);
        driver.show();
        QCOMPARE(driver.list("cboPrinter2").currentText(), u"二階（見つかりません）"_s);
        turnWheelOver(driver.the("cboPrinter2"));
        const QString question = u"変更した内容は、まだ登録されていません。"_s;
        driver.type("txtTransferY", u"-20"_s);
        QCOMPARE(driver.box("txtTransferY").text(), u"-8"_s);
        ui::prompts::expectAskHowToLeave(question, ui::prompts::Choice::Cancel, ui::prompts::Choice::Save);
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(dialog.isVisible());
        driver.type("txtLetterX", u"10000"_s);
        ui::prompts::expectAskCautiously(
            u"「はがき・封筒の出力位置　横方向」の 10000 は、動かす量が多すぎるようです。このまま登録しますか。"_s,
            false);
        driver.press("cmdStore");
        QVERIFY(dialog.isVisible());
        QCOMPARE(shop.settings.text(workspace::keys::letterOffsetX), QString());
        driver.type("txtLetterX", u"1"_s);
        ui::prompts::expectAskHowToLeave(question, ui::prompts::Choice::Save, ui::prompts::Choice::Save);
        driver.press("cmdClose");
        QCOMPARE(shop.settings.text(workspace::keys::fuPrinterName), u"二階"_s);
        QCOMPARE(shop.settings.text(workspace::keys::oderOffsetY), u"-8"_s);
    }
};

QTEST_MAIN(TestPrintingKeys)
#include "tst_printing_keys.moc"
