// From a sale to its parcel, on the sales screen and on that of corrections.
#include "printing/frmPreview.h"
#include "slips/correction/correction_screen_desk.h"
#include "slips/entry/frmOut.h"
#include "slips/parcel_desk.h"
#include "slips/slip_desk.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTimer>

using namespace slips;

namespace
{

// What was opened of which slip, and what went out of them.
struct Parcels
{
    explicit Parcels(workspace::Workspace &workspace)
    {
        workspace.keep(ParcelDesk{
            .begin = [this](QWidget *, qint64 slip) { opened << u"begin %1"_s.arg(slip); },
            .words = [this](qint64) -> base::Result<QString> { return sent; },
            .show = [this](QWidget *, qint64 slip,
                           const QString &number) { opened << u"show %1 %2"_s.arg(slip).arg(number); }});
    }

    QStringList opened;
    QString sent;
};

QString offer(const QString &number) { return u"伝票 %1 の発送伝票を作りますか。"_s.arg(number); }

void saveNextPaper(const QString &file)
{
    QTimer::singleShot(0, qApp, [file] {
        QWidget *shown = QApplication::activeModalWidget();
        ui::file_dialogs::expectFile(file);
        ScreenDriver(shown).press("cmdPdf");
        shown->close();
    });
}

struct Sale : SlipDesk<frmOut>
{
    Parcels parcels{shop.workspace};

    void sell(bool prints)
    {
        open(0);
        goods(u"1"_s, u"1000"_s);
        if (!prints)
            return;
        saveNextPaper(shop.path(u"note.pdf"_s));
        press("Command3");
    }
};

} // namespace

class TestParcelOffers : public ScriptedTest
{
    Q_OBJECT

private slots:
    void nothingIsOfferedWithoutADesk()
    {
        SlipDesk<frmOut> sale;
        QVERIFY(!sale.the("cmdParcel").isVisible());
        QVERIFY(!sale.the("chkParcel").isVisible());
        CorrectionDesk correction;
        QVERIFY(!correction.driver.the("cmdParcel").isVisible());
        QVERIFY(!correction.driver.the("cmdParcels").isVisible());
    }

    void aSaleThatWasPrintedIsOffered_data()
    {
        QTest::addColumn<bool>("prints");
        QTest::addColumn<bool>("asks"); // the shop wants to be asked
        QTest::addColumn<QString>("sent");
        QTest::addColumn<bool>("isOffered");
        QTest::newRow("printed") << true << true << u""_s << true;
        QTest::newRow("not printed") << false << true << u""_s << false;
        QTest::newRow("never asked") << true << false << u""_s << false;
        QTest::newRow("sent already") << true << true << u"発送　2026/04/01"_s << false;
    }

    void aSaleThatWasPrintedIsOffered()
    {
        QFETCH(bool, prints);
        QFETCH(bool, asks);
        QFETCH(QString, sent);
        QFETCH(bool, isOffered);
        Sale sale;
        sale.parcels.sent = sent;
        sale.sell(prints);
        if (!asks)
            sale.press("chkParcel");
        QCOMPARE(sale.shop.settings.checked(workspace::keys::offersShipping), asks);
        QVERIFY(!sale.the("cmdParcel").isEnabled());
        if (isOffered)
            ui::prompts::expectAskCautiously(offer(u"O1"_s), false);
        sale.press("cmdNext");
        QCOMPARE(sale.parcels.opened, QStringList());
        sale.press("cmdParcel"); // whatever was answered
        QCOMPARE(sale.parcels.opened, QStringList(u"begin 1"_s));
        sale.sell(false); // the next one has no paper
        sale.press("cmdNext");
        sale.press("cmdParcel");
        QCOMPARE(sale.parcels.opened.last(), u"begin 2"_s);
    }

    void theOfferLeadsToTheParcel()
    {
        Sale sale;
        sale.sell(true);
        ui::prompts::expectAskCautiously(offer(u"O1"_s), true);
        sale.press("cmdNext");
        QCOMPARE(sale.parcels.opened, QStringList(u"begin 1"_s));
        QCOMPARE(sale.shop.value(u"SELECT 完了 FROM 入出庫マスター"_s).toInt(), 1);
        sale.shop.run(u"UPDATE 入出庫マスター SET 伝票番号 = 'O99'"_s); // another program's by now
        ui::prompts::expectInform({});
        sale.press("cmdParcel");
        QCOMPARE(sale.parcels.opened.size(), 1);
    }

    void parcelsStandBesideTheirSlip()
    {
        CorrectionDesk desk;
        Parcels parcels(desk.shop.workspace);
        desk.screen = screenOf(desk.shop.workspace, book::sale);
        desk.driver = ScreenDriver(desk.screen.get());
        parcels.sent = u"発送　2026/04/01　宅急便　415624751765\n発送　2026/03/01　宅急便"_s;
        desk.driver.show();
        desk.driver.press("cmdAll");
        auto &link = desk.driver.the<QPushButton>("cmdParcels");
        QVERIFY(link.isVisible());
        QCOMPARE(link.text(), u"発送　2026/04/01　宅急便　415624751765　ほか"_s);
        desk.driver.press("cmdParcels");
        desk.driver.press("cmdParcel");
        QCOMPARE(parcels.opened, QStringList({u"show 9 O9"_s, u"begin 9"_s}));
        parcels.sent.clear();
        desk.driver.press("cmdParcel");
        QVERIFY(!link.isVisible());
    }

    void aReprintIsOffered()
    {
        CorrectionDesk desk;
        Parcels parcels(desk.shop.workspace);
        desk.screen = screenOf(desk.shop.workspace, book::sale);
        desk.driver = ScreenDriver(desk.screen.get());
        desk.driver.show();
        saveNextPaper(desk.shop.path(u"note.pdf"_s));
        ui::prompts::expectAskCautiously(offer(u"O9"_s), true);
        desk.driver.press("Command2");
        QCOMPARE(parcels.opened, QStringList(u"begin 9"_s));
        desk.screen = screenOf(desk.shop.workspace, book::receipt);
        QVERIFY(!ScreenDriver(desk.screen.get()).the("cmdParcel").isVisible());
    }
};

QTEST_MAIN(TestParcelOffers)
#include "tst_parcel_offers.moc"
