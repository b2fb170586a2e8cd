#include "book/discount.h"
#include "book/tax_choices.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;
using book::GoodsTax;

class TestTaxChoices : public QObject
{
    Q_OBJECT

private slots:
    void ratesOfADay_data();
    void ratesOfADay();
    void whatIsNotInForceIsNotOffered();
    void discounts_data();
    void discounts();
    void partsMakeTheWhole();
};

void TestTaxChoices::ratesOfADay_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("captions");

    QTest::newRow("today") << QDate(2026, 11, 21)
                           << u"10%, 軽減8% 食品, 軽減8% 新聞, 非課税, 対象外, 経過措置 8%, 経過措置 5%, "
                              "経過措置 3%"_s;
    QTest::newRow("before reduced rates")
        << QDate(2019, 9, 30) << u"8%, 非課税, 対象外, 経過措置 5%, 経過措置 3%"_s;
    QTest::newRow("the first day of all") << QDate(1989, 4, 1) << u"3%, 非課税, 対象外"_s;
    QTest::newRow("no day") << QDate() << QString();
}

void TestTaxChoices::ratesOfADay()
{
    QFETCH(QDate, date);
    FreshShop shop;
    const auto terms = book::taxTerms(shop.connection);
    QVERIFY(terms);
    QStringList captions;
    for (const book::TaxChoice &choice : book::taxChoices(*terms, date))
        captions << choice.caption;
    QTEST(captions.join(u", "_s), "captions");
}

// The announced food rate, until a person switches it on; then 8 goes on by hand, and comes back by itself.
void TestTaxChoices::whatIsNotInForceIsNotOffered()
{
    FreshShop shop;
    std::vector<book::TaxTerm> terms = *book::taxTerms(shop.connection);
    const auto foodOn = [&](const QDate &day) {
        const auto choices = book::taxChoices(terms, day);
        return choices.at(static_cast<std::size_t>(choiceOf(choices, GoodsTax::Food))).caption;
    };
    const auto offers = [&](const QDate &day, const QString &caption) {
        const auto choices = book::taxChoices(terms, day);
        return std::ranges::find(choices, caption, &book::TaxChoice::caption) != choices.end();
    };
    QCOMPARE(foodOn({2027, 4, 1}), u"軽減8% 食品"_s);
    book::TaxTerm *announced = nullptr;
    for (book::TaxTerm &term : terms) {
        if (!term.inForce)
            announced = &term;
    }
    QVERIFY(announced);
    book::TaxTerm inForce = *announced;
    inForce.inForce = true;
    terms = book::withRoomFor(terms, inForce);
    QCOMPARE(foodOn({2027, 3, 31}), u"軽減8% 食品"_s);
    QCOMPARE(foodOn({2027, 4, 1}), u"軽減1% 食品"_s);
    QCOMPARE(foodOn({2029, 4, 1}), u"軽減8% 食品"_s);
    QVERIFY(offers({2027, 4, 1}, u"経過措置 軽減8% 食品"_s));
    QVERIFY(!offers({2027, 3, 31}, u"経過措置 軽減8% 食品"_s));
    QVERIFY(offers({2029, 4, 1}, u"経過措置 軽減1% 食品"_s));
}

namespace
{

// "2160@8r 3300@10"
std::vector<book::TaxableAmount> goodsFrom(const QString &text)
{
    std::vector<book::TaxableAmount> goods;
    for (const QString &part : text.split(u' ', Qt::SkipEmptyParts)) {
        const bool isFood = part.endsWith(u'r');
        goods.push_back({part.section(u'@', 0, 0).toDouble(), part.section(u'@', 1).remove(u'r').toDouble(),
                         isFood ? GoodsTax::Food : GoodsTax::Standard});
    }
    return goods;
}

} // namespace

void TestTaxChoices::discounts_data()
{
    QTest::addColumn<QString>("goods");
    QTest::addColumn<double>("discount");
    QTest::addColumn<QString>("parts");

    QTest::newRow("two rates") << u"2160@8r 3300@10"_s << -500.0 << u"-197 軽減8%分, -303 10%分"_s;
    QTest::newRow("three rates") << u"1000@8r 1000@1r 1000@10"_s << -100.0
                                 << u"-33 軽減8%分, -33 軽減1%分, -34 10%分"_s;
    QTest::newRow("lines of one rate together")
        << u"1000@8r 1160@8r 3300@10"_s << -500.0 << u"-197 軽減8%分, -303 10%分"_s;
    QTest::newRow("what came back is not sold") << u"1000@8r -1000@8r 500@10"_s << -50.0 << u"-50 "_s;
    QTest::newRow("nothing sold") << QString() << -50.0 << u"-50 "_s;
    QTest::newRow("more than was sold") << u"100@8r 100@10"_s << -300.0 << u"-150 軽減8%分, -150 10%分"_s;
}

void TestTaxChoices::discounts()
{
    QFETCH(QString, goods);
    QFETCH(double, discount);
    book::GoodsLine line;
    line.product = u"値引"_s;
    line.quantity = 1;
    line.price = line.amount = discount;
    QStringList parts;
    for (const book::GoodsLine &part : book::dividedOverRates(line, goodsFrom(goods), 10)) {
        QCOMPARE(part.quantity * part.price, part.amount);
        parts << u"%1 %2"_s.arg(part.amount).arg(part.specification);
    }
    QTEST(parts.join(u", "_s), "parts");
}

// Whatever is divided: not a yen more or less.
void TestTaxChoices::partsMakeTheWhole()
{
    const auto goods = goodsFrom(u"777@8r 1234567@10 99@8 3@1r"_s);
    for (int yen = 1; yen < 3000; yen += 7) {
        book::GoodsLine line;
        line.product = u"値引"_s;
        line.quantity = 1;
        line.price = line.amount = -yen;
        double sum = 0;
        for (const book::GoodsLine &part : book::dividedOverRates(line, goods, 10)) {
            QVERIFY(part.amount < 0);
            QCOMPARE(part.amount, std::trunc(part.amount));
            sum += part.amount;
        }
        QCOMPARE(sum, double(-yen));
    }
}

QTEST_GUILESS_MAIN(TestTaxChoices)
#include "tst_tax_choices.moc"
