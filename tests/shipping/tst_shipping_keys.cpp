// Every setting of the shipping screens: the control that keeps it, stored when its screen closes, and there
// again when the screen opens the next time. What printing makes of those of the printers is the test
// printing_keys.
#include "shipping/addresses/DialogHagakiA.h"
#include "shipping/addresses/DialogHagakiB.h"
#include "shipping/addresses/frmInvoice1.h"
#include "shipping/gifts/DialogAppList1.h"
#include "shipping/gifts/DialogAppList2.h"
#include "shipping/gifts/frmKuroneko5.h"
#include "shipping/gifts/frmKuroneko6.h"
#include "shipping/gifts/frmKuroneko7.h"
#include "shipping/history/frmKuroneko3.h"
#include "shipping/history/frmKuroneko4.h"
#include "shipping/history/frmKuroneko8.h"
#include "shipping/slips/frmKuroneko1.h"
#include "shipping/slips/frmKuroneko2.h"
#include "shipping/slips/shipment_store.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

using Opener = std::unique_ptr<ui::Screen> (*)(workspace::Workspace &);

template <class Screen>
std::unique_ptr<ui::Screen> open(workspace::Workspace &workspace)
{
    return std::make_unique<Screen>(workspace);
}

template <class Dialog>
std::unique_ptr<ui::Screen> openList(workspace::Workspace &workspace)
{
    return std::make_unique<Dialog>(workspace, std::vector<Shipment>{Shipment()}, GiftListQuery());
}

std::unique_ptr<ui::Screen> openAddress(workspace::Workspace &workspace)
{
    return std::make_unique<DialogHagakiA>(workspace, Addressee());
}

// A box, a tick, a list, or the button of a font, whose box stands behind "/"; before ":" the part of the
// screen, where another one has a control of that name.
struct Key
{
    const char *name;
    Opener open;
    const char *control;
    const char *section = "Settings";
};

const Key keys[] = {
    {"InvCode1", open<frmKuroneko1>, "txtCode1"},
    {"InvCode2", open<frmKuroneko1>, "txtCode2"},
    {"InvMemo1", open<frmKuroneko1>, "txtMemo1"},
    {"InvMemo2", open<frmKuroneko1>, "txtMemo2"},
    {"Inv2Code1", open<frmKuroneko2>, "txtCode1"},
    {"Inv2Code2", open<frmKuroneko2>, "txtCode2"},
    {"Inv2Memo1", open<frmKuroneko5>, "txtMemo1"},
    {"Inv2Memo2", open<frmKuroneko5>, "txtMemo2"},
    {"AppList1", openList<DialogAppList2>, "Check1"},
    {"AppList4", openList<DialogAppList1>, "Check4"},
    {"DialogAppList2Combo1", openList<DialogAppList2>, "Combo1"},
    {"stOffsetAppX", openList<DialogAppList1>, "Text1", "Printer"},
    {"stOffsetAppY", openList<DialogAppList1>, "Text3", "Printer"},
    {"MotoPrinterName", openList<DialogAppList1>, "Combo2", "Printer"},
    {"MotoFont", openList<DialogAppList1>, "Command7/txtFontName", "Printer"},
    {"HagakiAop1", openAddress, "Aop1"},
    {"HagakiAop2", openAddress, "Aop2"},
    {"HagakiAop3", openAddress, "Aop3"},
    {"HagakiAop4", openAddress, "Aop4"},
    {"HagakiAop5", openAddress, "Aop5"},
    {"letterOffsetX", openAddress, "Text7", "Printer"},
    {"letterOffsetY", openAddress, "Text8", "Printer"},
    {"FuPrinterName", openAddress, "Combo2", "Printer"},
    {"FuPrinterFont", openAddress, "Command7/txtFontName", "Printer"},
    {"HagakiPrinterName", open<DialogHagakiB>, "panel:Combo2", "Printer"},
    {"HagakiPrinterFont", open<DialogHagakiB>, "Command7/txtFontName", "Printer"},
    {"frmInvCheck1", open<frmInvoice1>, "Check1"},
};

// Maximised when it was closed so.
const std::pair<const char *, Opener> windows[] = {
    {"Kuro1WindowState", open<frmKuroneko1>}, {"Kuro2WindowState", open<frmKuroneko2>},
    {"Kuro3WindowState", open<frmKuroneko3>}, {"Kuro4WindowState", open<frmKuroneko4>},
    {"Kuro5WindowState", open<frmKuroneko5>}, {"Kuro6WindowState", open<frmKuroneko6>},
    {"Kuro7WindowState", open<frmKuroneko7>}, {"Kuro8WindowState", open<frmKuroneko8>},
};

// Written when a slip of an older program, whose row holds none, is printed or changed.
const struct
{
    const char *prefix;
    Opener open;
} oldRows[] = {{"inv3", open<frmKuroneko3>}, {"inv4", open<frmKuroneko4>}};

const char *const panelBoxes[] = {"Code1", "Code2", "Memo1", "Memo2"};

// The printer of slips, their offsets and their paper have their controls in the main window's own dialogs.
const char *const ofPrintingKeys[] = {"KuroPrinterName", "KuroPrinterFont", "kuOffsetX", "kuOffsetY",
                                      "kuUserSize"};

struct Shop : FreshShop
{
    Shop()
    {
        printing::keepPrintSystem(workspace, std::make_shared<FakePrinters>());
        run(u"INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (1, '通販')"_s);
        run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '一般')"_s);
        Shipment old;
        old.accepted = now.date();
        old.consignee = {u"山田"_s, {}, u"380-0821"_s, u"長野市上千歳町1"_s, {}, {}};
        old.sender = old.consignee;
        old.goods = u"りんご"_s;
        old.category = u"通販"_s;
        old.method = u"宅急便"_s;
        for (int row = 0; row < 2; ++row) {
            if (!addShipment(connection, old))
                qFatal("no shipment");
        }
        // Whatever dialog stands in the way of a print is accepted.
        accept.callOnTimeout([] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (dialog && dialog->objectName() == u"DialogPrint"_s)
                dialog->findChild<QPushButton *>(u"cmdPrint"_s)->click();
        });
        accept.start(5);
    }

    [[nodiscard]] QString stored(const char *section, const QByteArray &name) const
    {
        return settings.text({section, name.constData(), u""});
    }

    QTimer accept;
};

QWidget *partOf(ui::Screen &screen, const QString &control)
{
    return control.contains(u':') ? screen.findChild<QWidget *>(control.section(u':', 0, 0)) : &screen;
}

QString shown(ScreenDriver &driver, const QString &control)
{
    auto &widget = driver.the(control.section(u'/', -1));
    if (const auto *box = qobject_cast<QLineEdit *>(&widget))
        return box->text();
    if (const auto *list = qobject_cast<QComboBox *>(&widget))
        return list->currentText();
    return driver.the<QAbstractButton>(control).isChecked() ? u"ticked"_s : u"not ticked"_s;
}

void change(ScreenDriver &driver, const QString &control)
{
    auto &widget = driver.the(control.section(u'/', 0, 0));
    if (qobject_cast<QLineEdit *>(&widget)) {
        driver.type(control, u"3"_s);
    } else if (auto *list = qobject_cast<QComboBox *>(&widget)) {
        driver.choose(control, list->currentIndex() == list->count() - 1 ? 0 : list->count() - 1);
    } else {
        if (control.contains(u'/'))
            ui::file_dialogs::expectFont(QFont(u"IPAGothic"_s));
        driver.press(control.section(u'/', 0, 0));
    }
}

} // namespace

class TestShippingKeys : public ScriptedTest
{
    Q_OBJECT

private slots:
    // The keys are read out of the table of all settings, so that a new one is missed here.
    void noKeyIsLeftOut()
    {
        QFile table(QStringLiteral(SETTINGS_KEYS));
        QVERIFY(table.open(QIODevice::ReadOnly));
        static const QRegularExpression row(u"\"((HagakiAop|frmInvCheck|letterOffset|stOffset|AppList|"
                                            u"DialogAppList|Kuro|ku[OU]|Hagaki|Fu[PF]|Moto|"
                                            "[iI]nv\\d?(Code|Memo))\\w*)\""_s);
        QStringList wanted;
        for (auto rows = row.globalMatch(QString::fromUtf8(table.readAll())); rows.hasNext();)
            wanted << rows.next().captured(1);
        QStringList tested;
        for (const Key &key : keys)
            tested << QString::fromLatin1(key.name);
        for (const auto &[name, opener] : windows)
            tested << QString::fromLatin1(name);
        for (const auto &rows : oldRows) {
            for (const char *box : panelBoxes)
                tested << QString::fromLatin1(rows.prefix) + QString::fromLatin1(box);
        }
        for (const char *name : ofPrintingKeys)
            tested << QString::fromLatin1(name);
        wanted.sort();
        tested.sort();
        QCOMPARE(tested, wanted);
    }

    void eachControlIsThereAgain_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < std::size(keys); ++i)
            QTest::newRow(keys[i].name) << int(i);
    }

    void eachControlIsThereAgain()
    {
        QFETCH(int, index);
        const Key &key = keys[index];
        const QString path = QString::fromLatin1(key.control);
        const QString control = path.section(u':', -1);
        Shop shop;
        const QString storedBefore = shop.stored(key.section, key.name);
        QString changed;
        {
            const auto screen = key.open(shop.workspace);
            ScreenDriver(screen.get()).show();
            ScreenDriver driver(partOf(*screen, path));
            const QString before = shown(driver, control);
            change(driver, control);
            changed = shown(driver, control);
            QVERIFY2(changed != before, qPrintable(before));
            QVERIFY(screen->close());
        }
        QVERIFY2(shop.stored(key.section, key.name) != storedBefore, qPrintable(storedBefore));
        const auto screen = key.open(shop.workspace);
        ScreenDriver(screen.get()).show();
        ScreenDriver driver(partOf(*screen, path));
        QCOMPARE(shown(driver, control), changed);
    }

    void eachWindowOpensAsItClosed_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < std::size(windows); ++i)
            QTest::newRow(windows[i].first) << int(i);
    }

    void eachWindowOpensAsItClosed()
    {
        QFETCH(int, index);
        const auto &[name, opener] = windows[index];
        Shop shop;
        for (const bool maximised : {true, false}) {
            {
                const auto screen = opener(shop.workspace);
                ScreenDriver(screen.get()).show();
                maximised ? screen->showMaximized() : screen->showNormal();
                QVERIFY(screen->close());
            }
            QVERIFY(!shop.stored("Settings", name).isEmpty());
            const auto screen = opener(shop.workspace);
            ScreenDriver(screen.get()).show();
            QCOMPARE(screen->isMaximized(), maximised);
        }
    }

    void eachOldRowTakesWhatWasKept_data()
    {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < std::size(oldRows); ++i)
            QTest::newRow(oldRows[i].prefix) << int(i);
    }

    void eachOldRowTakesWhatWasKept()
    {
        QFETCH(int, index);
        const auto &[prefix, opener] = oldRows[index];
        Shop shop;
        {
            const auto screen = opener(shop.workspace);
            ScreenDriver driver(screen.get());
            driver.show();
            for (const char *box : panelBoxes)
                driver.type(QByteArray("txt") + box, QString::fromLatin1(box));
            driver.press("Command2");
            screen->close();
        }
        shop.run(u"DELETE FROM 発送マスター WHERE 発送ID = 2"_s); // the other one was not printed yet
        const auto screen = opener(shop.workspace);
        ScreenDriver driver(screen.get());
        driver.show();
        for (const char *box : panelBoxes) {
            QCOMPARE(shop.stored("Settings", QByteArray(prefix) + box), QString::fromLatin1(box));
            QCOMPARE(driver.box(QByteArray("txt") + box).text(), QString::fromLatin1(box));
        }
    }
};

QTEST_MAIN(TestShippingKeys)

#include "tst_shipping_keys.moc"
