// The clerk at the dialogs of the carriers' files, by keys and buttons, accidents among them.
#include "carrier_shop.h"
#include "shipping/carriers/DialogCarrierExport.h"
#include "shipping/carriers/DialogCarrierSettings.h"
#include "shipping/carriers/DialogTrackingImport.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

const QString leaveMending =
    u"入力した「お届け先の電話」は、まだ発送履歴に書いていません。捨てて続けますか。"_s;

void settle(FreshShop &shop)
{
    CarrierSettings settings = CarrierSettings::read(shop.settings, CarrierProgram::B2Cloud);
    settings.set(u"customer"_s, u"0262000000"_s);
    settings.set(prefixSetting, u"KB-"_s);
    settings.write(shop.settings, CarrierProgram::B2Cloud);
}

/// Does \a work in the dialog \a name once it has come.
void inDialog(const QString &name, const std::function<void(ScreenDriver &)> &work)
{
    QTimer::singleShot(5, qApp, [name, work] {
        QWidget *shown = QApplication::activeModalWidget();
        if (!shown || shown->objectName() != name) {
            inDialog(name, work);
            return;
        }
        ScreenDriver driver(shown);
        work(driver);
        if (shown->isVisible())
            shown->close();
    });
}

template <class Dialog>
struct Desk
{
    explicit Desk(bool ready = true)
    {
        if (ready)
            settle(shop);
        for (int i = 1; i <= 3; ++i) {
            Shipment shipment = hurriedShipment();
            shipment.consignee.tel = i == 2 ? QString() : shipment.consignee.tel;
            shipment.exported = i == 3 ? QDate(2026, 3, 31) : QDate();
            kept(shop, shipment);
        }
        screen = std::make_unique<Dialog>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }

    QString ticks()
    {
        const auto *model = driver->template the<ui::Grid>("DataGrid1").model();
        QString marks;
        for (int row = 0; row < model->rowCount(); ++row)
            marks += model->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked ? u'x' : u'-';
        return marks;
    }
    QTableWidget &findings() { return driver->template the<QTableWidget>("DataGrid2"); }
    QStringList exported()
    {
        return shop.rows(u"SELECT 発送ID FROM 発送マスター WHERE 出力日 = '2026-04-01' ORDER BY 発送ID"_s);
    }

    FreshShop shop;
    std::unique_ptr<Dialog> screen;
    std::unique_ptr<ScreenDriver> driver;
};

using ExportDesk = Desk<DialogCarrierExport>;
using ImportDesk = Desk<DialogTrackingImport>;

QByteArray bytesOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestDialogCarrierExport : public ScriptedTest
{
    Q_OBJECT

private slots:
    // Listed, mended where it is said, written, and noted as written.
    void theClerkExports()
    {
        ExportDesk desk;
        const QString name = desk.shop.path(u"b2.csv"_s);
        desk.driver->press("cmdList");
        QCOMPARE(desk.ticks(), u"xx"_s); // the third one is out already
        QCOMPARE(desk.findings().rowCount(), 1);
        QCOMPARE(desk.findings().item(0, 0)->text(), u"2"_s);
        ui::prompts::expectInform(
            u"直すところが 1 か所あるため、書き出しませんでした。下の一覧で直してください。"_s);
        desk.driver->press("cmdExport");
        QVERIFY(desk.findings().hasFocus());
        desk.driver->type("txtFirst", u"０３－１１１１－２２２２"_s);
        desk.driver->press("cmdMend");
        QCOMPARE(desk.findings().rowCount(), 0);
        QCOMPARE(desk.shop.value(u"SELECT 届先電話 FROM 発送マスター WHERE 発送ID = 2"_s).toString(),
                 u"０３－１１１１－２２２２"_s);
        ui::file_dialogs::expectFile(name);
        ui::prompts::expectInform(u"2 件を書き出しました。\n"_s + name, ui::prompts::anyRemark);
        desk.driver->press("cmdExport");
        QCOMPARE(bytesOf(name).count("\r\n"), 2);
        QVERIFY(bytesOf(name).contains("03-1111-2222"));
        QCOMPARE(desk.exported(), (QStringList{u"1"_s, u"2"_s}));
        QCOMPARE(desk.ticks(), u"--"_s);
        QVERIFY(!desk.driver->the<QPushButton>("cmdExport").isEnabled());
    }

    void whatWasExportedIsAskedAgain()
    {
        ExportDesk desk;
        desk.screen->listShipments({3, 1});
        QCOMPARE(desk.ticks(), u"-x"_s);
        auto &grid = desk.driver->the<ui::Grid>("DataGrid1");
        grid.selectRow(0);
        QTest::keyClick(&grid, Qt::Key_Space);
        ui::prompts::expectAskCautiously({}, false);
        desk.driver->press("cmdExport");
        QCOMPARE(desk.exported(), QStringList());
        QCOMPARE(desk.ticks(), u"xx"_s);
    }

    // What is wrong with a sender is mended once; whose parcels are not ticked, not at all.
    void oneSenderIsMendedInAllHisParcels()
    {
        ExportDesk desk;
        Shipment another = hurriedShipment();
        another.sender.name1 = u"よその店"_s;
        kept(desk.shop, another);
        desk.shop.run(u"UPDATE 発送マスター SET 依頼主電話 = ''"_s);
        desk.driver->press("cmdList");
        desk.driver->type("txtFirst", u"026-200-0000"_s);
        ui::prompts::expectAskCautiously(
            u"同じご依頼主の、「ご依頼主の電話」が同じ発送がほかに 1 件あります。同じように直しますか。"_s,
            true);
        desk.driver->press("cmdMend");
        QCOMPARE(desk.shop.rows(u"SELECT 発送ID FROM 発送マスター WHERE 依頼主電話 = '026-200-0000' "
                                "ORDER BY 発送ID"_s),
                 QStringList({u"1"_s, u"2"_s}));
    }

    // The history as it opens is two years of all carriers; only what may be meant is ticked.
    void aLongListIsNotAllMeant()
    {
        ExportDesk desk;
        kept(desk.shop, hurriedShipment(u"佐川急便"_s));
        Shipment old = hurriedShipment();
        old.accepted = QDate(2024, 12, 5);
        old.delivery = QDate();
        kept(desk.shop, old);
        desk.screen->listShipments({1, 4, 5});
        QCOMPARE(desk.ticks(), u"x--"_s);
        QCOMPARE(desk.driver->the<QDateEdit>("DTPicker1").date(), old.accepted);
        desk.driver->choose("Combo1", int(CarrierProgram::Hiden3));
        QCOMPARE(desk.ticks(), u"-x-"_s);
        desk.driver->choose("Combo1", int(CarrierProgram::B2Cloud));
        QCOMPARE(desk.ticks(), u"x--"_s);
        auto &grid = desk.driver->the<ui::Grid>("DataGrid1");
        grid.selectRow(2);
        QTest::keyClick(&grid, Qt::Key_Space);
        ui::prompts::expectAskCautiously(u"60 日以上前の発送が 1 件あります。すでに発送していませんか。"
                                         "このまま書き出しますか。"_s,
                                         false, u"発送ID 5　受付日 2024/12/05　㈱山田商店"_s);
        desk.driver->press("cmdExport");
        QCOMPARE(desk.exported(), QStringList());
    }

    // Without its settings nothing is written; they open where they are missing.
    void settingsAreAskedFor()
    {
        ExportDesk desk(false);
        desk.screen->listShipments({1});
        ui::prompts::expectInform(
            u"「請求先顧客コード」が入力されていません。\n「運送会社の設定」で入力してください。"_s);
        inDialog(u"DialogCarrierSettings"_s, [](ScreenDriver &driver) {
            driver.type("txtB2Customer", u"０２６２"_s);
            driver.type("txtB2Freight", u"x"_s);
            ui::prompts::expectInform(u"「運賃管理番号」は数字 2 けたまでです。"_s);
            driver.press("cmdOK");
            driver.type("txtB2Freight", u"02"_s);
            driver.press("cmdOK");
        });
        ui::file_dialogs::expectFile({}); // the export goes on, and is left
        desk.driver->press("cmdExport");
        const CarrierSettings stored = CarrierSettings::read(desk.shop.settings, CarrierProgram::B2Cloud);
        QCOMPARE(stored.value(u"customer"_s), u"0262"_s);
        QCOMPARE(stored.value(u"freight"_s), u"02"_s);
        QCOMPARE(desk.exported(), QStringList());
    }

    // Another program's change while the list stands; the wrong file; Esc with a value half typed.
    void accidentsWriteNothing()
    {
        ExportDesk desk;
        desk.driver->press("cmdList");
        for (const char *box : {"Combo1", "DTPicker1", "DTPicker3"})
            turnWheelOver(desk.driver->the(box));
        QCOMPARE(desk.ticks(), u"xx"_s);
        desk.driver->type("txtFirst", u"03-11"_s);
        ui::prompts::expectAskCautiously(leaveMending, false);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(desk.screen->isVisible());
        QCOMPARE(desk.driver->box("txtFirst").text(), u"03-11"_s);
        ui::prompts::expectAskCautiously(leaveMending, false);
        desk.driver->press("cmdExport");
        desk.shop.run(u"UPDATE 発送マスター SET 品名 = 'みかん', 版 = 99 WHERE 発送ID = 2"_s);
        ui::prompts::expectInform({}); // changed by another program
        desk.driver->press("cmdMend");
        QCOMPARE(desk.shop.value(u"SELECT 届先電話 FROM 発送マスター WHERE 発送ID = 2"_s).toString(),
                 QString());
        desk.driver->type("txtFirst", u"03-1111-2222"_s);
        desk.driver->press("cmdMend");
        desk.shop.run(u"DELETE FROM 発送マスター WHERE 発送ID = 1"_s);
        ui::prompts::expectInform({}); // gone since it was listed
        desk.driver->press("cmdExport");
        QCOMPARE(desk.ticks(), u"x"_s);
        QVERIFY(QDir(desk.shop.folder.path()).mkdir(u"folder.csv"_s));
        for (const QString &wrong : {desk.shop.connection.fileName(), desk.shop.path(u"folder.csv"_s)}) {
            ui::file_dialogs::expectFile(wrong);
            ui::prompts::expectInform({});
            desk.driver->press("cmdExport");
        }
        QCOMPARE(desk.exported(), QStringList());
    }

    void theClerkTakesNumbers()
    {
        ImportDesk desk;
        desk.shop.run(u"UPDATE 発送マスター SET 出力日 = '2026-04-01'"_s);
        desk.shop.run(u"UPDATE 発送マスター SET 送り状番号 = '312345678901' WHERE 発送ID = 3"_s);
        ui::file_dialogs::expectFile(fileOf(desk.shop, u"a.csv"_s,
                                            "お客様管理番号,伝票番号\nKB-1,391234567894\nKB-2,391234567905\n"
                                            "KB-3,391234567920\n1,391234567931\n"));
        desk.driver->press("Command1");
        QCOMPARE(desk.ticks(), u"xx--"_s);
        auto &grid = desk.driver->the<ui::Grid>("DataGrid1");
        for (const bool yes : {false, true}) {
            grid.selectRow(2);
            ui::prompts::expectAskCautiously(
                u"発送ID 3 には、送り状番号 312345678901 が入っています。391234567920 に書き換えますか。"_s,
                yes);
            QTest::keyClick(&grid, Qt::Key_Space);
            QCOMPARE(desk.ticks(), yes ? u"xxx-"_s : u"xx--"_s);
        }
        ui::prompts::expectAskHowToLeave({}, ui::prompts::Choice::Cancel, ui::prompts::Choice::Cancel);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        ui::prompts::expectAskCautiously(u"送り状番号を 3 件、発送履歴に書き込みます。よろしいですか。"_s,
                                         true);
        ui::prompts::expectInform(u"送り状番号を 3 件、書き込みました。"_s);
        desk.driver->press("Command2");
        QCOMPARE(desk.shop.rows(u"SELECT 送り状番号 FROM 発送マスター ORDER BY 発送ID"_s),
                 (QStringList{u"391234567894"_s, u"391234567905"_s, u"391234567920"_s}));
        QCOMPARE(desk.ticks(), u"----"_s);
    }

    // A form without known headings is asked about once; our own export is told as what it is.
    void strangeFilesAreAskedAboutOnce()
    {
        ImportDesk desk;
        const QString odd = fileOf(desk.shop, u"odd.csv"_s, "注文No,荷物番号\nKB-1,391234567894\n");
        inDialog(u"DialogTrackingColumns"_s, [](ScreenDriver &driver) {
            ui::prompts::expectInform(u"「お客様管理番号」にする列を指定してください。"_s);
            driver.press("cmdOK");
            driver.choose("cboManagement", 1);
            driver.choose("cboNumber", 2);
            driver.press("cmdOK");
        });
        for (int time = 0; time < 2; ++time) {
            ui::file_dialogs::expectFile(odd);
            desk.driver->press("Command1");
            QCOMPARE(desk.driver->the<ui::Grid>("DataGrid1").model()->rowCount(), 2);
        }
        ui::file_dialogs::expectFile(fileOf(desk.shop, u"own.csv"_s, "お客様管理番号,伝票番号\nKB-1,\n"));
        ui::prompts::expectInform({});
        desk.driver->press("Command1");
        QVERIFY(!desk.driver->the<QPushButton>("Command2").isEnabled());
    }
};

QTEST_MAIN(TestDialogCarrierExport)

#include "tst_dialogcarrierexport.moc"
