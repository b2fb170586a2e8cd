// Labels have to come out on the labels: by the makers' measures, from the place where the sheet is still
// whole.
#include "shipping/slips/label_places.h"
#include "support/fresh_shop.h"
#include "workspace/settings.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

const QRectF paper(0, 0, 210, 297);

/// A label that is ruled around, with a text that begins in its middle.
printing::Sheet content(std::size_t label)
{
    printing::Sheet sheet;
    sheet.setCutPaper(60, 30);
    const double mm = printing::twipsPerMillimetre;
    sheet.boxes.push_back({0, 0, 60 * mm, 30 * mm, 10});
    printing::TextItem text{30 * mm, 15 * mm, QString::number(label), 10};
    text.room = 30 * mm;
    sheet.texts.push_back(text);
    return sheet;
}

QRectF areaOf(const printing::Box &box)
{
    const double mm = printing::twipsPerMillimetre;
    return {box.x / mm, box.y / mm, box.width / mm, box.height / mm};
}

bool isNear(double a, double b) { return std::abs(a - b) < 0.01; }

} // namespace

class TestLabelSheet : public QObject
{
    Q_OBJECT

private slots:
    void theLastLabelOfEachSheet_data()
    {
        QTest::addColumn<int>("places");
        QTest::addColumn<QRectF>("last"); // of a sheet laid under the ruler
        QTest::newRow("12 面") << 12 << QRectF(105, 232.7, 86.4, 42.3);
        QTest::newRow("12 面（間隔あり）") << 12 << QRectF(107, 232.5, 84, 42);
        QTest::newRow("18 面") << 18 << QRectF(140, 232.7, 70, 42.3);
        QTest::newRow("18 面（間隔あり）") << 18 << QRectF(139.2, 241.7, 63.5, 46.6);
        QTest::newRow("24 面") << 24 << QRectF(138, 250.2, 66, 33.9);
        QTest::newRow("24 面（間隔あり）") << 24 << QRectF(139.5, 250.2, 64, 33.9);
        QTest::newRow("24 面（余白なし）") << 24 << QRectF(140, 259.5, 70, 37);
    }

    void theLastLabelOfEachSheet()
    {
        QFETCH(int, places);
        QFETCH(QRectF, last);
        const LabelSheet &sheet = labelSheet(QString::fromUtf8(QTest::currentDataTag()));
        QCOMPARE(sheet.places(), places);
        const QRectF area = *labelArea(sheet, places);
        QVERIFY(isNear(area.left(), last.left()) && isNear(area.top(), last.top()));
        QVERIFY(isNear(area.width(), last.width()) && isNear(area.height(), last.height()));
        for (int place = 1; place <= places; ++place) {
            const QRectF room = *labelRoom(sheet, place);
            QVERIFY(labelArea(sheet, place)->adjusted(3.9, 3.9, -3.9, -3.9).contains(room));
            QVERIFY(paper.adjusted(7.9, 7.9, -7.9, -7.9).contains(room));
            for (int other = 1; other < place; ++other)
                QVERIFY(!labelArea(sheet, place)
                             ->adjusted(0.01, 0.01, 0, 0)
                             .intersects(*labelArea(sheet, other)));
        }
        QVERIFY(!labelArea(sheet, 0) && !labelRoom(sheet, places + 1) && !labelSpots(sheet, 1, -3));
        QVERIFY(labelArea(sheet, 99).error().text.contains(u"99 番目の場所はありません"_s));
    }

    void labelsFillSheetsFromAPlaceOn()
    {
        const LabelSheet &sheet = labelSheet(u"24 面"_s);
        const auto pages = labelPages(sheet, 30, 20, content);
        QVERIFY(pages && pages->size() == 3);
        QCOMPARE(pages->at(0).texts.size(), std::size_t(5));
        QCOMPARE(pages->at(1).texts.size(), std::size_t(24));
        QCOMPARE(pages->at(2).texts.size(), std::size_t(1));
        QCOMPARE(pages->at(1).texts.front().text, u"5"_s);
        // The 20th place: second of the seventh row.
        const QRectF ruled = areaOf(pages->front().boxes.front());
        QVERIFY(isNear(ruled.left(), 76) && isNear(ruled.top(), 220.3));
        QVERIFY(isNear(ruled.right(), 134) && isNear(ruled.bottom(), 246.2));
        const printing::TextItem &text = pages->front().texts.front();
        QVERIFY(isNear(text.x / printing::twipsPerMillimetre, 76 + 58 / 2.0));
        QVERIFY(isNear(text.points, 10 * 25.9 / 30));
        QVERIFY(isNear(text.room / printing::twipsPerMillimetre, 58 / 2.0));
        QVERIFY(!labelPages(sheet, 3, 25, content));
        QCOMPARE(labelPages(sheet, 0, 1, content)->size(), std::size_t(0));
    }

    void whatIsStoredOfPlaces_data()
    {
        QTest::addColumn<QString>("sheet");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("form");
        QTest::addColumn<int>("next");
        QTest::newRow("first use") << u""_s << u""_s << u"宛名ラベル"_s << 1;
        QTest::newRow("in use") << u"24 面"_s << u"24"_s << u"宛名ラベル"_s << 24;
        QTest::newRow("of a larger sheet") << u"12 面"_s << u"13"_s << u"宛名ラベル"_s << 1;
        QTest::newRow("no number") << u"24 面"_s << u"三"_s << u"宛名ラベル"_s << 1;
        QTest::newRow("beyond all numbers")
            << u"24 面"_s << u"99999999999999999999"_s << u"宛名ラベル"_s << 1;
        QTest::newRow("negative") << u"24 面"_s << u"-4;オリジナル荷札１=0"_s << u"オリジナル荷札１"_s << 1;
        QTest::newRow("a tag's own") << u"24 面"_s << u"9;オリジナル荷札２=3"_s << u"オリジナル荷札２"_s << 3;
        QTest::newRow("no places") << u"24 面"_s << u"9"_s << u"宅急便"_s << 1;
    }

    void whatIsStoredOfPlaces()
    {
        QFETCH(QString, sheet);
        QFETCH(QString, stored);
        QFETCH(QString, form);
        FreshShop shop;
        shop.settings.write(workspace::keys::labelSheet, sheet);
        shop.settings.write(workspace::keys::labelPlace, stored);
        QTEST(nextPlace(shop.settings, form), "next");
    }

    void placesMoveOnAndBeginAnew()
    {
        FreshShop shop;
        chooseLabelSheet(shop.settings, u"18 面"_s);
        setNextPlace(shop.settings, u"宛名ラベル"_s, 18);
        setNextPlace(shop.settings, u"オリジナル荷札１"_s, 8);
        setNextPlace(shop.settings, u"オリジナル荷札３"_s, 2);
        chooseLabelSheet(shop.settings, u"18 面"_s); // that lies there already
        QCOMPARE(nextPlace(shop.settings, u"宛名ラベル"_s), 18);
        setNextPlace(shop.settings, u"オリジナル荷札１"_s, 9);
        QCOMPARE(nextPlace(shop.settings, u"オリジナル荷札１"_s), 1);
        chooseLabelSheet(shop.settings, u"24 面"_s);
        QCOMPARE(nextPlace(shop.settings, u"宛名ラベル"_s), 1);
        QCOMPARE(nextPlace(shop.settings, u"オリジナル荷札３"_s), 2);
    }
};

QTEST_GUILESS_MAIN(TestLabelSheet)
#include "tst_label_sheet.moc"
