#include "printing/queue/queue_abilities.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

const Medium a4{u"iso_a4_210x297mm"_s, {209.9, 297.04}, {}};

QueueAbilities cutPaper() { return {.media = {a4, {u"iso_a5_148x210mm"_s, {147.81, 209.9}, {}}}}; }

QueueAbilities continuousPaper()
{
    return {.media = {a4}, .custom = customSizesFrom({u"custom_min_1x1in"_s, u"custom_max_381x30480mm"_s})};
}

} // namespace

class TestQueueAbilities : public QObject
{
    Q_OBJECT

private slots:
    void papersAQueueTakes_data()
    {
        QTest::addColumn<bool>("continuous");
        QTest::addColumn<QSizeF>("paper");
        QTest::addColumn<bool>("taken");

        QTest::newRow("A4") << false << QSizeF(210, 297) << true;
        QTest::newRow("A5") << false << QSizeF(148, 210) << true;
        QTest::newRow("A4 turned is another paper") << false << QSizeF(297, 210) << false;
        QTest::newRow("a letter is no A4") << false << QSizeF(215.9, 279.4) << false;
        QTest::newRow("a delivery note that it does not know") << false << QSizeF(241.3, 114.3) << false;
        QTest::newRow("a delivery note") << true << QSizeF(241.3, 114.3) << true;
        QTest::newRow("as wide as it may be") << true << QSizeF(381, 114.3) << true;
        QTest::newRow("too wide") << true << QSizeF(383, 114.3) << false;
        QTest::newRow("a stamp") << true << QSizeF(20, 20) << false;
        QTest::newRow("a banner") << true << QSizeF(210, 30000) << true;
        QTest::newRow("too long") << true << QSizeF(210, 30600) << false;
    }

    void papersAQueueTakes()
    {
        QFETCH(const bool, continuous);
        QFETCH(const QSizeF, paper);
        QTEST(takesPaper(continuous ? continuousPaper() : cutPaper(), paper), "taken");
    }

    void boundsOfFreeSizes_data()
    {
        QTest::addColumn<QStringList>("media");
        QTest::addColumn<double>("widest");  // 0: no free sizes
        QTest::addColumn<double>("longest"); // 0: without bound

        QTest::newRow("millimetres") << QStringList{u"iso_a4_210x297mm"_s, u"custom_min_25.4x25.4mm"_s,
                                                    u"custom_max_381x1058.33mm"_s}
                                     << 381.0 << 1058.33;
        QTest::newRow("inches") << QStringList{u"custom_min_1x1in"_s, u"custom_max_15x120in"_s} << 381.0
                                << 3048.0;
        QTest::newRow("a length that was counted over")
            << QStringList{u"custom_min_0.5x0.5in"_s, u"custom_max_15x-490.-931in"_s} << 381.0 << 0.0;
        QTest::newRow("no greatest") << QStringList{u"custom_min_1x1in"_s} << 0.0 << 0.0;
        QTest::newRow("nonsense") << QStringList{u"custom_min_axb"_s, u"custom_max_1e9x2mm"_s} << 0.0 << 0.0;
    }

    void boundsOfFreeSizes()
    {
        QFETCH(const QStringList, media);
        const auto sizes = customSizesFrom(media);
        QTEST(sizes ? sizes->widest : 0.0, "widest");
        QTEST(sizes ? sizes->longest.value_or(0) : 0.0, "longest");
    }

    // A queue of a driver that passes everything on tells nothing of its paper.
    void aQueueThatTellsNothingTakesAll() { QVERIFY(takesPaper({}, {241.3, 114.3})); }

    void kanjiAreNeverPrintedWithSixtyDots()
    {
        QueueAbilities needles{.resolutions = {{60, 60}, {120, 60}, {360, 360}, {180, 180}, {360, 180}},
                               .usualResolution = Resolution{120, 60}};
        QCOMPARE(resolutionToAskFor(needles), (Resolution{180, 180}));
        needles.usualResolution = Resolution{300, 300};
        QCOMPARE(resolutionToAskFor(needles), std::nullopt);
        needles.resolutions = {{60, 60}};
        needles.usualResolution = Resolution{60, 60};
        QCOMPARE(resolutionToAskFor(needles), std::nullopt);
    }
};

} // namespace printing

QTEST_APPLESS_MAIN(printing::TestQueueAbilities)
#include "tst_queue_abilities.moc"
