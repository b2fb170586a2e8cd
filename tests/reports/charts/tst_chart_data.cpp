#include "book/generated_book.h"

#include "reports/charts/chart_sheet.h"
#include "text/format_value.h"

#include <QtTest>

#include <cmath>

using namespace Qt::StringLiterals;
using book::Party;
using printing::Sheet;
using reports::ChartData;
using reports::ChartKind;
using reports::ChartQuery;

namespace
{

const QDate endOfYear{2026, 1, 15}; // any day of the last month

ChartData chartOf(FreshShop &shop, const ChartQuery &query)
{
    const auto data = reports::readChart(shop.connection, query, base::unwatched);
    return data ? *data : ChartData();
}

// "name|hundredths" of each category
QStringList shown(const ChartData &data, std::size_t series)
{
    QStringList lines;
    for (qsizetype i = 0; i < data.categories.size(); ++i)
        lines << u"%1|%2"_s.arg(data.categories.at(i))
                     .arg(std::llround(data.series.at(series).values.at(static_cast<std::size_t>(i)) * 100));
    return lines;
}

ChartData dataOf(const std::vector<double> &values, bool lying)
{
    ChartData data{.title = u"売上"_s, .series = {{u"売上"_s, values}}, .lying = lying};
    for (std::size_t i = 0; i < values.size(); ++i)
        data.categories << u"名%1"_s.arg(i);
    return data;
}

// The bars: boxes with an outline, in the order of their categories.
std::vector<printing::Box> barsOf(const Sheet &sheet)
{
    std::vector<printing::Box> bars;
    for (const printing::Box &box : sheet.boxes) {
        if (box.lineWidth > 0)
            bars.push_back(box);
    }
    return bars;
}

bool has(const Sheet &sheet, const QString &text)
{
    return std::ranges::any_of(sheet.texts,
                               [&](const printing::TextItem &item) { return item.text == text; });
}

} // namespace

class TestChartData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_shop = std::make_unique<FreshShop>();
        GeneratedBook::writeTo(*m_shop);
    }

    void months_data()
    {
        QTest::addColumn<Party>("party");
        QTest::addColumn<QVariant>("counterpart"); // null: all
        QTest::addColumn<QString>("charged");
        QTest::addColumn<QString>("settled");
        QTest::newRow("customers") << Party::Customer << QVariant() << u"O"_s << u"R"_s;
        QTest::newRow("a customer") << Party::Customer << QVariant(3) << u"O"_s << u"R"_s;
        QTest::newRow("suppliers") << Party::Supplier << QVariant() << u"I"_s << u"P"_s;
        QTest::newRow("a supplier") << Party::Supplier << QVariant(7) << u"I"_s << u"P"_s;
    }
    void months()
    {
        QFETCH(const Party, party);
        QFETCH(const QVariant, counterpart);
        QFETCH(const QString, charged);
        QFETCH(const QString, settled);
        ChartQuery query{ChartKind::ByMonth, party, endOfYear};
        if (!counterpart.isNull())
            query.counterpart = book::CounterpartKey(counterpart.toLongLong());
        const auto sums = [&](const QString &letter, int yearsBack) {
            QStringList lines;
            for (int i = 0; i < 12; ++i) {
                const QDate month = QDate(2025, 2, 1).addMonths(i);
                lines << month.toString(u"yyyy/MM"_s) + u'|' +
                             m_shop
                                 ->value(u"SELECT ifnull(CAST(round(sum(金額) * 100) AS INTEGER), 0) FROM "
                                         "入出庫サブ JOIN 入出庫マスター USING (ID) WHERE "
                                         "substr(伝票番号, 1, 1) = ? AND substr(日付, 1, 7) = ? AND "
                                         "(? IS NULL OR 相手先ID = ?)"_s,
                                         {letter, month.addYears(-yearsBack).toString(u"yyyy-MM"_s),
                                          counterpart, counterpart})
                                 .toString();
            }
            return lines;
        };
        const ChartData monthly = chartOf(*m_shop, query);
        QCOMPARE(shown(monthly, 0), sums(charged, 0));
        QCOMPARE(shown(monthly, 1), sums(settled, 0));
        QCOMPARE(counterpart.isNull(), monthly.remark.startsWith(u"全"_s));
        query.kind = ChartKind::YearBeside;
        const ChartData beside = chartOf(*m_shop, query);
        QCOMPARE(shown(beside, 0), sums(charged, 1)); // the older one stands left
        QCOMPARE(shown(beside, 1), sums(charged, 0));
    }

    void theTop_data()
    {
        QTest::addColumn<ChartKind>("kind");
        QTest::addColumn<QString>("sums"); // of all names
        const QString sum =
            u"SELECT CAST(round(sum(金額) * 100) AS INTEGER) s FROM 入出庫サブ JOIN 入出庫マスター "
            "USING (ID) WHERE substr(伝票番号, 1, 1) = 'O' AND 日付 >= '2025-02-01' AND "
            "日付 < '2026-02-01' "_s;
        QTest::newRow("customers") << ChartKind::TopCounterparts << sum + u"GROUP BY 相手先ID"_s;
        QTest::newRow("goods") << ChartKind::TopGoods << sum + u"AND 商品名 <> '消費税' GROUP BY 商品名"_s;
    }
    void theTop()
    {
        QFETCH(const ChartKind, kind);
        QFETCH(const QString, sums);
        const ChartData data = chartOf(*m_shop, {kind, Party::Customer, endOfYear});
        const QStringList all = m_shop->rows(sums + u" ORDER BY s DESC"_s);
        constexpr auto most = static_cast<qsizetype>(reports::mostNames);
        QStringList wanted = all.first(std::min(all.size(), most));
        qint64 rest = 0;
        for (qsizetype i = most; i < all.size(); ++i)
            rest += all.at(i).toLongLong();
        if (all.size() > most)
            wanted << QString::number(rest);
        QStringList found;
        for (const double value : data.series[0].values)
            found << QString::number(std::llround(value * 100));
        QCOMPARE(found, wanted);
        QCOMPARE(data.categories.size(), wanted.size());
        QVERIFY(wanted.size() > 2);
    }

    // Someone who returned more than was sold, an amount that is none, and names of nothing.
    void oddAmounts()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, '2026-01-31', 'O1', 7), "
            "(2, '2026-01-31', 'O2', 8), (3, '2026-02-01', 'O3', 9), (4, NULL, 'O4', 9)"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (1, 'りんご', -500), (1, ' ', 30), "
                 "(2, 'みかん', 'abc'), (3, '次の月', 9), (4, '日なし', 9)"_s);
        const ChartData goods = chartOf(shop, {ChartKind::TopGoods, Party::Customer, endOfYear});
        QCOMPARE(goods.categories.join(u'|'), u"みかん|(商品名なし)|りんご"_s);
        QVERIFY(std::isnan(goods.series[0].values[0]));
        const Sheet sheet = reports::chartSheet(goods, u"2026/04/01"_s);
        QCOMPARE(barsOf(sheet).size(), 2u); // what is no number has none
        QVERIFY(has(sheet, u"計算不能"_s));
        const auto stopped =
            reports::readChart(shop.connection, {.until = endOfYear}, [](qint64, qint64) { return false; });
        QVERIFY(!stopped && stopped.error().cancelled);
        QVERIFY(!shop.connection.inTransaction());
    }

    void scales_data()
    {
        QTest::addColumn<double>("least");
        QTest::addColumn<double>("most");
        QTest::addColumn<QString>("scale");
        QTest::newRow("nothing") << 0.0 << 0.0 << u"0 1 1"_s;
        QTest::newRow("round") << 0.0 << 6000.0 << u"0 6000 1000"_s;
        QTest::newRow("one more") << 0.0 << 6001.0 << u"0 8000 2000"_s;
        QTest::newRow("both ways") << -1200.0 << 3300.0 << u"-2000 4000 1000"_s;
        QTest::newRow("below alone") << -90.0 << -10.0 << u"-100 0 20"_s;
        QTest::newRow("the greatest") << 0.0 << 9e11 << u"0 1000000000000 200000000000"_s;
    }
    void scales()
    {
        QFETCH(const double, least);
        QFETCH(const double, most);
        const reports::ChartScale scale = reports::scaleFor(least, most);
        QTEST(u"%1 %2 %3"_s.arg(scale.least, 0, 'f', 0).arg(scale.most, 0, 'f', 0).arg(scale.step, 0, 'f', 0),
              "scale");
    }

    // Bars are as long as their amounts, stand on one line, and do not leave the page.
    void barsOnPaper_data()
    {
        QTest::addColumn<bool>("lying");
        QTest::newRow("standing") << false;
        QTest::newRow("lying") << true;
    }
    void barsOnPaper()
    {
        QFETCH(const bool, lying);
        const std::vector<double> values{1000, 250, -500, 9'000};
        const Sheet sheet = reports::chartSheet(dataOf(values, lying), u"2026/04/01"_s);
        const auto bars = barsOf(sheet);
        QCOMPARE(bars.size(), values.size());
        const auto length = [lying](const printing::Box &bar) { return lying ? bar.width : bar.height; };
        const double perYen = length(bars[0]) / 1000;
        const double zero = lying ? bars[0].x : bars[0].y + bars[0].height;
        for (std::size_t i = 0; i < bars.size(); ++i) {
            QVERIFY(std::abs(length(bars[i]) - std::abs(values[i]) * perYen) < 1);
            // A lying bar goes to the right, a standing one up; what is below nothing goes the other way.
            const bool startsAtZero = lying == (values[i] > 0);
            const double start = lying ? bars[i].x : bars[i].y;
            QVERIFY(std::abs(start + (startsAtZero ? 0 : length(bars[i])) - zero) < 1); // twips
            QVERIFY(bars[i].x > 0 && bars[i].y > 0);
            QVERIFY(bars[i].x + bars[i].width < printing::twipsFromMillimetres(297 - 12));
            QVERIFY(bars[i].y + bars[i].height < printing::twipsFromMillimetres(210 - 12));
        }
        QVERIFY(has(sheet, u"1,000"_s) && has(sheet, u"-500"_s) && has(sheet, u"9,000"_s));
    }

    void asTable()
    {
        const base::Report table = reports::tableOf(chartOf(*m_shop, {.until = endOfYear}));
        QCOMPARE(table.rows.size(), 12u);
        QCOMPARE(table.columns.size(), 3u);
        double sum = 0;
        for (const base::ReportRow &row : table.rows)
            sum += row.values.at(1).toDouble();
        QCOMPARE(std::llround(table.totals.at(1).toDouble() * 100), std::llround(sum * 100));
    }

private:
    std::unique_ptr<FreshShop> m_shop;
};

QTEST_GUILESS_MAIN(TestChartData)
#include "tst_chart_data.moc"
