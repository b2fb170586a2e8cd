#include "book/balance.h"
#include "book/slip_shop.h"
#include "book/tax.h"

#include <QRandomGenerator>

#include <map>

using book::GoodsTax;

// A book of slips with up to four ways of being taxed, against whole numbers that were never a double.
class TestThreeRates : public QObject
{
    Q_OBJECT

private slots:
    void everySlipIsRightToTheYen_data();
    void everySlipIsRightToTheYen();
};

namespace
{

struct Way
{
    GoodsTax taxClass;
    int percent;

    auto operator<=>(const Way &) const = default;
};

constexpr int slipRate = 10;
const std::array<Way, 5> ways{{{GoodsTax::Standard, slipRate},
                               {GoodsTax::Food, 8},
                               {GoodsTax::Standard, 8}, // by a transitional rule
                               {GoodsTax::Food, 1},
                               {GoodsTax::Exempt, 0}}};

struct Line
{
    Way way;
    int thousandths; // quantity
    int hundredths;  // price

    // Whole yen, toward zero as integers divide.
    [[nodiscard]] qint64 yen() const { return qint64(thousandths) * hundredths / 100'000; }
};

Line lineFrom(QRandomGenerator &dice)
{
    Line line{ways.at(dice.bounded(int(ways.size()))), 1000 * dice.bounded(1, 30),
              100 * dice.bounded(1, 50'000)};
    switch (dice.bounded(6)) {
    case 0:
        line.thousandths = dice.bounded(1, 5000); // by weight
        break;
    case 1:
        line.hundredths = dice.bounded(1, 100'000); // sen
        break;
    case 2:
        line.thousandths = -line.thousandths; // comes back
        break;
    default:
        break;
    }
    return line;
}

void store(FreshShop &shop, qint64 slip, const Line &line)
{
    const double quantity = line.thousandths / 1000.0;
    const double price = line.hundredths / 100.0;
    const book::GoodsLine goods{u"茶"_s,
                                {},
                                quantity,
                                u"個"_s,
                                price,
                                *book::lineAmount(quantity, price),
                                book::besideSlips({line.way.taxClass, double(line.way.percent)}, slipRate)};
    if (!book::addLine(shop.connection, slip, goods))
        qFatal("the line was not stored");
}

} // namespace

void TestThreeRates::everySlipIsRightToTheYen_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2026U, 110701U})
        QTest::addRow("%u", seed) << seed;
}

void TestThreeRates::everySlipIsRightToTheYen()
{
    QFETCH(quint32, seed);
    QRandomGenerator dice(seed);
    Shop shop;
    qint64 owed = 0;
    const base::Status written = db::atomically(shop.connection, [&]() -> base::Status {
        for (int number = 0; number < 150; ++number) {
            const qint64 slip = savedSale(shop);
            std::map<Way, qint64> sold;
            for (int lines = dice.bounded(1, 9); lines > 0; --lines) {
                const Line line = lineFrom(dice);
                store(shop, slip, line);
                sold[line.way] += line.yen();
            }
            qint64 net = 0;
            qint64 tax = 0;
            QStringList lines; // of tax, by class and rate
            for (const auto &[way, yen] : sold) {
                net += yen;
                const qint64 of = yen * way.percent / 100;
                tax += of;
                if (of != 0)
                    lines << u"%1|%2|%3"_s.arg(int(way.taxClass)).arg(way.percent).arg(of);
            }
            const auto closed =
                book::closeSlip(shop.connection, slip, slipRate, book::TaxClass::OnDelivery, false);
            if (!closed || closed->total != double(net) || closed->tax != double(tax))
                return base::Error{u"slip %1: %2 and %3, not %4 and %5"_s.arg(slip)
                                       .arg(closed->total)
                                       .arg(closed->tax)
                                       .arg(net)
                                       .arg(tax)};
            const QStringList stored = shop.rows(
                u"SELECT COALESCE(税区分, 0), COALESCE(税率, 10), 金額 FROM 入出庫サブ WHERE ID = ? AND "
                "商品名 = '消費税' ORDER BY 1, 2"_s,
                {slip});
            if (stored != lines)
                return base::Error{
                    u"slip %1: %2, not %3"_s.arg(slip).arg(stored.join(u' '), lines.join(u' '))};
            owed += net + tax;
        }
        return {};
    });
    QVERIFY2(written, qPrintable(written ? QString() : written.error().text));
    QCOMPARE(balanceOf(shop.connection, book::Party::Customer, 1), double(owed));
}

QTEST_GUILESS_MAIN(TestThreeRates)
#include "tst_three_rates.moc"
