#include "printing/print_frame.h"
#include "printing/print_offsets.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace printing;
namespace keys = workspace::keys;

class TestPrintFrame : public QObject
{
    Q_OBJECT

private slots:
    void eachPurposeKeepsItsPrinterAndFont_data()
    {
        QTest::addColumn<Purpose>("purpose");
        QTest::addColumn<QString>("printerKey");
        QTest::addColumn<QString>("fontKey");

        QTest::newRow("notes") << Purpose::DeliveryNotesAndBills << u"PrinterName"_s << u"PrinterFont"_s;
        QTest::newRow("slips") << Purpose::ShippingSlips << u"KuroPrinterName"_s << u"KuroPrinterFont"_s;
        QTest::newRow("gifts") << Purpose::GiftSheets << u"MotoPrinterName"_s << u"MotoFont"_s;
        QTest::newRow("daily reports")
            << Purpose::DailyReports << u"NippoPrinterName"_s << u"NippoPrinterFont"_s;
        QTest::newRow("rosters") << Purpose::Rosters << u"MeiboPrinterName"_s << u"MeiboPrinterFont"_s;
        QTest::newRow("transfers") << Purpose::TransferForms << u"OderPrinterName"_s << u"OderPrinterFont"_s;
        QTest::newRow("addresses") << Purpose::Addresses << u"FuPrinterName"_s << u"FuPrinterFont"_s;
        QTest::newRow("range") << Purpose::AddressRange << u"HagakiPrinterName"_s << u"HagakiPrinterFont"_s;
    }

    void eachPurposeKeepsItsPrinterAndFont()
    {
        QFETCH(const Purpose, purpose);
        FreshShop shop;
        FakePrinters printers;
        QTEST(QString::fromLatin1(printing::printerKey(purpose).name), "printerKey");
        QTEST(QString::fromLatin1(printing::fontKey(purpose).name), "fontKey");
        QCOMPARE(shop.settings.text(printing::fontKey(purpose)), u"ＭＳ 明朝"_s);
        QCOMPARE(selectPrinter(printers, shop.settings, purpose)->name, u"LASER"_s);
        shop.settings.write(printing::printerKey(purpose), u"DOT"_s);
        shop.settings.write(printing::fontKey(purpose), u"@ＭＳ ゴシック"_s);
        QCOMPARE(selectPrinter(printers, shop.settings, purpose)->name, u"DOT"_s);
        QCOMPARE(fontFace(shop.settings, purpose), u"IPAGothic"_s);
    }

    void aPrinterThatIsGoneLeavesTheUsualOne()
    {
        FreshShop shop;
        FakePrinters printers;
        shop.settings.write(keys::kuroPrinterName, u"倉庫のドット"_s);
        const auto selected = selectPrinter(printers, shop.settings, Purpose::ShippingSlips);
        QCOMPARE(selected->name, u"LASER"_s);
        QVERIFY(missingInWords(*selected).contains(u"「倉庫のドット」が見つからない"_s));
        printers.usual = u"さらに別の"_s;
        printers.names = {u"DOT"_s};
        QCOMPARE(selectPrinter(printers, shop.settings, Purpose::ShippingSlips)->name, u"DOT"_s);
    }

    void labelsTellTheWay_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("isAcross");
        QTest::addColumn<int>("steps");
        QTest::addColumn<QString>("label");

        const auto row = [](const QString &typed, bool isAcross, int steps, const QString &label) {
            QTest::addRow("%s %d", qPrintable(typed), isAcross) << typed << isAcross << steps << label;
        };
        row(u"2"_s, false, 2, u"下へ2.82㎜移動"_s);
        row(u"3"_s, false, 3, u"下へ4.23㎜移動"_s);
        row(u"100"_s, false, 100, u"下へ141㎜移動"_s);
        row(u"-4"_s, false, -4, u"上へ5.64㎜移動"_s);
        row(u"-5"_s, false, -4, u"上へ5.64㎜移動"_s);
        row(u"-2"_s, true, -2, u"左へ3.5㎜移動"_s);
        row(u"-9"_s, true, -8, u"左へ14㎜移動"_s);
        row(u"4"_s, true, 4, u"右へ7㎜移動"_s);
        row(u"0"_s, true, 0, u"標準"_s);
        row(u"１２"_s, false, 12, u"下へ16.92㎜移動"_s);
        row(u"ー３"_s, false, -3, u"上へ4.23㎜移動"_s);
        row(u"1.9"_s, false, 1, u"下へ1.41㎜移動"_s);
        row(u"3mm"_s, false, 0, u"標準"_s);
        row(u"-"_s, false, 0, u"標準"_s);
        row(QString(), false, 0, u"標準"_s);
        row(u"99999999999999999999"_s, true, 10'000, u"右へ17500㎜移動"_s);
    }

    void labelsTellTheWay()
    {
        QFETCH(const QString, typed);
        QFETCH(const bool, isAcross);
        const OffsetRule &rule = isAcross ? noteRight : noteDown;
        QTEST(offsetFrom(typed, rule), "steps");
        QTEST(offsetLabel(offsetFrom(typed, rule), rule), "label");
    }

    void slipsAreMovedByWholeTwips_data()
    {
        QTest::addColumn<int>("millimetres");
        QTest::addColumn<int>("twips");

        QTest::newRow("none") << 0 << 0;
        QTest::newRow("down to the nearest") << 1 << 57;
        QTest::newRow("a half goes to the even one above") << 5 << 284;
        QTest::newRow("a half goes to the even one below") << 15 << 850;
        QTest::newRow("to the left") << -5 << -284;
        QTest::newRow("far") << 100 << 5670;
    }

    void slipsAreMovedByWholeTwips()
    {
        QFETCH(const int, millimetres);
        QFETCH(const int, twips);
        FreshShop shop;
        shop.settings.write(keys::kuOffsetX, millimetres);
        shop.settings.write(keys::kuOffsetY, 2);
        QCOMPARE(shipOffsetTwips(shop.settings), QPoint(twips, 113));
    }

    // 6.35 mm, a quarter of an inch; and what a queue of cut paper leaves free.
    void whatThePrinterDoesNotReach()
    {
        QCOMPARE(physicalOffsetTwips({6.35, 12.7, 6.35, 12.7}), QPoint(360, 720));
        QCOMPARE(physicalOffsetTwips({4.23, 4.23, 4.23, 4.23}), QPoint(240, 240));
        QueueAbilities abilities{.media = {{u"A4"_s, {210, 297}, {3, 4, 3, 4}}},
                                 .custom =
                                     CustomSizes{{50, 50}, 300, std::nullopt, {6.35, 12.7, 6.35, 12.7}}};
        QCOMPARE(unprintableOn(abilities, {210, 297}), QMarginsF(3, 4, 3, 4));
        QCOMPARE(unprintableOn(abilities, {241.3, 114.3}), QMarginsF(6.35, 12.7, 6.35, 12.7));
        abilities.custom.reset();
        QVERIFY(unprintableOn(abilities, {241.3, 114.3}).isNull());
    }

    void slipsDeclareTheirPaperWhenTheyAreTo()
    {
        QVERIFY(!slipPaper(false));
        const QSizeF paper = *slipPaper(true);
        QCOMPARE(qRound(twipsFromMillimetres(paper.width())), 6486);
        QCOMPARE(qRound(twipsFromMillimetres(paper.height())), 13041);
    }

    void transferFormsLieAsTheyAreToldTo()
    {
        FreshShop shop;
        Sheet sheet;
        shop.settings.write(keys::oderOption2, true);
        setTransferFormPaper(sheet, shop.settings);
        QCOMPARE(QSizeF(sheet.paperWidth, sheet.paperHeight), QSizeF(184, 114));
        QVERIFY(!sheet.turned);
        shop.settings.write(keys::oderOption1, true);
        shop.settings.write(keys::oderOption2, false);
        setTransferFormPaper(sheet, shop.settings);
        QCOMPARE(QSizeF(sheet.paperWidth, sheet.paperHeight), QSizeF(114, 184));
        QCOMPARE(QSizeF(sheet.readWidth(), sheet.readHeight()), QSizeF(184, 114));

        QCOMPARE(transferFormOffset(shop.settings), QPoint(0, 0));
        shop.settings.write(keys::oderOffsetX, -9);
        shop.settings.write(keys::oderOffsetY, -9);
        QCOMPARE(transferFormOffset(shop.settings), QPoint(-2, -8));
    }
};

QTEST_MAIN(TestPrintFrame)
#include "tst_print_frame.moc"
