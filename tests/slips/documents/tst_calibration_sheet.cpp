#include "slips/documents/calibration_sheet.h"
#include "support/fresh_shop.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

// Where the first specimen of a product's name stands, millimetres.
QPointF placeOf(const printing::Document &document)
{
    for (const printing::TextItem &item : document.sheets.front().texts) {
        if (item.text == u"商"_s)
            return QPointF(item.x, item.y) / printing::twipsPerMillimetre;
    }
    qFatal("no product is printed");
}

} // namespace

class TestCalibrationSheet : public QObject
{
    Q_OBJECT

private slots:
    void everyPaperShowsItsItemsAndMovesThem_data();
    void everyPaperShowsItsItemsAndMovesThem();
};

void TestCalibrationSheet::everyPaperShowsItsItemsAndMovesThem_data()
{
    QTest::addColumn<QString>("paper");
    QTest::addColumn<QSizeF>("size");

    QTest::newRow("plain") << u"A4 無地"_s << QSizeF(210, 297);
    QTest::newRow("continuous") << u"HISAGO 1149"_s << QSizeF(241.3, 114.3);
    QTest::newRow("with a receipt") << u"HISAGO BP0201"_s << QSizeF(210, 297);
}

void TestCalibrationSheet::everyPaperShowsItsItemsAndMovesThem()
{
    QFETCH(const QString, paper);
    FreshShop shop;
    shop.workspace.panel.deliveryPaper = paper;
    const auto usual = calibrationSheet(shop.workspace, {});
    QVERIFY2(usual, usual ? "" : qPrintable(usual.error().text));
    QCOMPARE(usual->sheets.size(), std::size_t(1));
    const printing::Sheet &sheet = usual->sheets.front();
    QTEST(QSizeF(sheet.paperWidth, sheet.paperHeight), "size");
    // As one slip is: no tax that is charged and included at once.
    QVERIFY(std::ranges::none_of(
        sheet.texts, [](const printing::TextItem &text) { return text.text.contains(u"内税"_s); }));
    const auto moved = calibrationSheet(shop.workspace, {.noteDown = 2, .right = -2});
    const QPointF way = placeOf(*moved) - placeOf(*usual);
    QVERIFY2(std::abs(way.x() + 3.5) < 0.01 && std::abs(way.y() - 2.82) < 0.01,
             qPrintable(u"%1 %2"_s.arg(way.x()).arg(way.y())));
}

QTEST_MAIN(TestCalibrationSheet)
#include "tst_calibration_sheet.moc"
