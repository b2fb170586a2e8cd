#include "book/tax.h"
#include "support/fresh_shop.h"

#include <QLocale>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using book::Basis;
using book::GoodsTax;

namespace
{

// "1980@8r 458@10 109@10g": amounts with their rates; r: reduced, n, g: a basis of their own.
std::vector<book::TaxableAmount> amountsFrom(const QString &text)
{
    std::vector<book::TaxableAmount> amounts;
    for (QString part : text.split(u' ', Qt::SkipEmptyParts)) {
        book::TaxableAmount &amount = amounts.emplace_back();
        for (; part.back().isLetter(); part.chop(1)) {
            if (part.back() == u'r')
                amount.taxClass = GoodsTax::Food;
            else
                amount.basis = part.back() == u'g' ? Basis::Gross : Basis::Net;
        }
        amount.amount = part.section(u'@', 0, 0).toDouble();
        amount.rate = part.section(u'@', 1).toDouble();
    }
    return amounts;
}

// "8r: 3211+256=3467"
QString plain(double value) { return QString::number(value, 'f', QLocale::FloatingPointShortest); }

QString shown(const std::vector<book::RateTax> &taxes)
{
    QStringList parts;
    for (const book::RateTax &tax : taxes) {
        parts << u"%1%2: %3+%4=%5"_s.arg(tax.rate)
                     .arg(tax.taxClass == GoodsTax::Food ? u"r"_s : QString())
                     .arg(plain(tax.net))
                     .arg(plain(tax.tax))
                     .arg(plain(tax.gross));
    }
    return parts.join(u", "_s);
}

} // namespace

class TestTaxesByRate : public QObject
{
    Q_OBJECT

private slots:
    void workedExamples_data();
    void workedExamples();
    void exactToTheYen_data();
    void exactToTheYen();
    void netAndGrossTogether();
    void whatCannotBeTaxedIsRefused();
    void ratesOnTheDaysOfChange_data();
    void ratesOnTheDaysOfChange();
    void rateKeptByHand();
};

// Documents of a small shop, worked out by hand from the rules of the invoice system.
void TestTaxesByRate::workedExamples_data()
{
    QTest::addColumn<QString>("amounts");
    QTest::addColumn<Basis>("basis");
    QTest::addColumn<QString>("taxes");
    const auto net = [](const char *name, const QString &amounts, const QString &taxes) {
        QTest::newRow(name) << amounts << Basis::Net << taxes;
    };
    const auto gross = [](const char *name, const QString &amounts, const QString &taxes) {
        QTest::newRow(name) << amounts << Basis::Gross << taxes;
    };
    net("three lines, one rounding", u"105@10 105@10 105@10"_s, u"10: 315+31=346"_s);
    net("food and other goods", u"1980@8r 458@8r 1234@10 458@8r 315@8r 770@10"_s,
        u"10: 2004+200=2204, 8r: 3211+256=3467"_s);
    gross("prices with tax", u"5400@8r 3300@10"_s, u"10: 3000+300=3300, 8r: 5000+400=5400"_s);
    gross("thousand with tax at 10", u"1000@10"_s, u"10: 910+90=1000"_s);
    gross("thousand with tax at 8", u"1000@8r"_s, u"8r: 926+74=1000"_s);
    net("note of the first delivery", u"1999@8r"_s, u"8r: 1999+159=2158"_s);
    net("note of the second", u"2345@8r"_s, u"8r: 2345+187=2532"_s);
    net("note of the third", u"678@8r"_s, u"8r: 678+54=732"_s);
    net("the same on one bill", u"1999@8r 2345@8r 678@8r"_s, u"8r: 5022+401=5423"_s);
    net("a month's bill", u"12345@8r 3000@10"_s, u"10: 3000+300=3300, 8r: 12345+987=13332"_s);
    net("sale apart from its return", u"20000@8r"_s, u"8r: 20000+1600=21600"_s);
    net("sale and return in one", u"20000@8r -3333@8r"_s, u"8r: 16667+1333=18000"_s);
    net("return: toward zero", u"-3333@8r"_s, u"8r: -3333-266=-3599"_s);
    net("return just below 10,000 with tax", u"9259@8r"_s, u"8r: 9259+740=9999"_s);
    net("return of 10,000 with tax", u"9260@8r"_s, u"8r: 9260+740=10000"_s);
    net("return of two rates", u"4630@8r 4546@10"_s, u"10: 4546+454=5000, 8r: 4630+370=5000"_s);
    gross("after a coupon was split", u"1963@8r 2997@10"_s, u"10: 2725+272=2997, 8r: 1818+145=1963"_s);
    net("net and gross of a rate", u"109@10 109@10g"_s, u"10: 208+20=228"_s);
    gross("gross and net of a rate", u"109@10n 109@10"_s, u"10: 208+20=228"_s);
    net("food and freight", u"5000@8r 800@10"_s, u"10: 800+80=880, 8r: 5000+400=5400"_s);
    net("food at 1 and freight", u"5000@1r 800@10"_s, u"10: 800+80=880, 1r: 5000+50=5050"_s);
    net("12,345 at all rates", u"12345@3 12345@5 12345@8 12345@10 12345@1r"_s,
        u"3: 12345+370=12715, 5: 12345+617=12962, 8: 12345+987=13332, 10: 12345+1234=13579, "
        "1r: 12345+123=12468"_s);
    const struct
    {
        int rate;
        int below;
        int reached;
    } firstYens[] = {{8, 12, 13}, {10, 9, 10}, {1, 99, 100}};
    for (const auto &yen : firstYens) {
        net(qPrintable(u"below a yen at %1"_s.arg(yen.rate)), u"%1@%2"_s.arg(yen.below).arg(yen.rate),
            u"%1: %2+0=%2"_s.arg(yen.rate).arg(yen.below));
        net(qPrintable(u"a yen at %1"_s.arg(yen.rate)), u"%1@%2"_s.arg(yen.reached).arg(yen.rate),
            u"%1: %2+1=%3"_s.arg(yen.rate).arg(yen.reached).arg(yen.reached + 1));
    }
    net("sold at 8, returned at the rate of its sale", u"-1000@8r 500@1r"_s,
        u"1r: 500+5=505, 8r: -1000-80=-1080"_s);
    net("old 8 apart from reduced 8", u"1999@8 1999@8r"_s, u"8: 1999+159=2158, 8r: 1999+159=2158"_s);
    net("1,999 at 5", u"1999@5"_s, u"5: 1999+99=2098"_s);
    net("19 at 5 is below one yen", u"19@5"_s, u"5: 19+0=19"_s);
    net("broken rate", u"1000@7.8"_s, u"7.8: 1000+78=1078"_s);
    net("no rate", u"1000@0"_s, u"0: 1000+0=1000"_s);
    net("tenths that make a yen", u"0.1@10 "_s.repeated(100), u"10: 10+1=11"_s);
    net("nothing", QString(), QString());
}

void TestTaxesByRate::workedExamples()
{
    QFETCH(QString, amounts);
    QFETCH(Basis, basis);
    const auto taxes = book::taxesByRate(amountsFrom(amounts), basis);
    QVERIFY(taxes);
    QTEST(shown(*taxes).replace(u"+-"_s, u"-"_s), "taxes");
}

void TestTaxesByRate::exactToTheYen_data()
{
    QTest::addColumn<int>("rate"); // hundredths of a percent
    for (const int rate : {0, 100, 500, 800, 1000, 780, 624})
        QTest::addRow("%d.%02d percent", rate / 100, rate % 100) << rate;
}

// Against whole-number arithmetic, sales and returns.
void TestTaxesByRate::exactToTheYen()
{
    QFETCH(int, rate);
    QRandomGenerator dice(20260401);
    const auto below = [&dice](qint64 limit) { return static_cast<qint64>(dice.generate64() >> 2) % limit; };
    for (int round = 0; round < 50'000; ++round) {
        // A round total is where an included tax comes out whole.
        const qint64 total = round % 2 ? below(100'000'000'000) - 1'000 : below(1'000'000) * (10'000 + rate);
        const auto onTop = book::taxOf({{double(total), rate / 100.0}}, Basis::Net);
        const auto within = book::taxOf({{double(total), rate / 100.0}}, Basis::Gross);
        const auto unrounded = book::unroundedTaxIn({{double(total), rate / 100.0}});
        QVERIFY(onTop && within && unrounded);
        QVERIFY2(qint64(*onTop) == total * rate / 10'000, qPrintable(QString::number(total)));
        QVERIFY2(qint64(*within) == total * rate / (10'000 + rate), qPrintable(QString::number(total)));
        QVERIFY2(qint64(*unrounded) == total * rate / (10'000 + rate), qPrintable(QString::number(total)));
    }
}

// Both bases come to the same tax as whole-number arithmetic, and to totals that it makes.
void TestTaxesByRate::netAndGrossTogether()
{
    QRandomGenerator dice(20261001);
    for (int round = 0; round < 20'000; ++round) {
        const int sign = round % 4 ? 1 : -1;
        const qint64 rate = (round % 3 == 0) ? 8 : 10;
        const qint64 net = sign * dice.bounded(1, 3'000'000);
        const qint64 gross = sign * dice.bounded(1, 3'000'000);
        const qint64 exact = net * rate * (100 + rate) + gross * rate * 100; // of 100 × (100 + rate)
        const qint64 parts = 100 * (100 + rate);
        const std::vector<book::TaxableAmount> amounts{
            {double(net), double(rate), GoodsTax::Standard, Basis::Net},
            {double(gross), double(rate), GoodsTax::Standard, Basis::Gross}};
        const auto asNet = book::taxesByRate(amounts, Basis::Net);
        const auto asGross = book::taxesByRate(amounts, Basis::Gross);
        QVERIFY(asNet && asGross);
        QCOMPARE(qint64(asNet->front().tax), exact / parts);
        QCOMPARE(qint64(asGross->front().tax), exact / parts);
        QCOMPARE(qint64(asNet->front().net),
                 ((net + gross) * parts - exact + net * rate * (100 + rate)) / parts);
        QCOMPARE(qint64(asGross->front().gross), (net * (100 + rate) + gross * 100) / 100);
        QCOMPARE(asNet->front().net + asNet->front().tax, asNet->front().gross);
        QCOMPARE(asGross->front().net + asGross->front().tax, asGross->front().gross);
    }
}

void TestTaxesByRate::whatCannotBeTaxedIsRefused()
{
    for (const double rate : {-100.0, -1.0, 101.0, 1e308, std::nan("")}) {
        QVERIFY(!book::taxOf({{1000, rate}}, Basis::Net));
        QVERIFY(!book::shownTax({{1000, rate}}, book::TaxClass::Included, true, true));
    }
    for (const double amount : {9e11 + 1, -1e308, std::nan("")}) {
        QVERIFY(!book::taxOf({{amount, 10}}, Basis::Gross));
        QVERIFY(!book::unroundedTaxIn({{amount, 10}}));
    }
    QVERIFY(!book::taxOf({{9e11, 10}, {9e11, 10}}, Basis::Net)); // only their sum is too great
    QCOMPARE(*book::shownTax({{1000, 8}}, book::TaxClass::Included, true, true), u"74.0740740741"_s);
}

void TestTaxesByRate::ratesOnTheDaysOfChange_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("rates"); // standard, food, newspapers
    const auto on = [](const char *date, const QString &rates) {
        QTest::newRow(date) << QDate::fromString(QString::fromLatin1(date), Qt::ISODate) << rates;
    };
    on("1989-03-31", u"0 0 0"_s);
    on("1989-04-01", u"3 3 3"_s);
    on("1997-03-31", u"3 3 3"_s);
    on("1997-04-01", u"5 5 5"_s);
    on("2014-03-31", u"5 5 5"_s);
    on("2014-04-01", u"8 8 8"_s);
    on("2019-09-30", u"8 8 8"_s);
    on("2019-10-01", u"10 8 8"_s);
    on("2027-03-31", u"10 8 8"_s);
    on("2027-04-01", u"10 1 8"_s);
    on("2029-03-31", u"10 1 8"_s);
    on("2029-04-01", u"10 8 8"_s);
}

void TestTaxesByRate::ratesOnTheDaysOfChange()
{
    QFETCH(QDate, date);
    QFETCH(QString, rates);
    const auto shownRates = [&](const book::TaxRates &table) {
        QStringList found;
        for (const GoodsTax taxClass : {GoodsTax::Standard, GoodsTax::Food, GoodsTax::Newspapers})
            found << QString::number(table.on(date, taxClass).value_or(-1));
        return found.join(u' ');
    };
    FreshShop shop;
    // The announced rate waits until somebody switches it on.
    QCOMPARE(shownRates(*book::TaxRates::read(shop.connection)), QString(rates).replace(u" 1 "_s, u" 8 "_s));
    shop.run(u"UPDATE 税率 SET 有効 = 1"_s);
    shop.run(u"INSERT INTO 税率 (税率ID, 税区分, 開始日, 税率, 有効) VALUES (90, 0, '2026/4/1', 99, 1), "
             "(91, 7, '2020-01-01', 99, 1), (92, NULL, '2020-01-01', 99, 1)"_s); // by other hands
    const auto table = book::TaxRates::read(shop.connection);
    QCOMPARE(shownRates(*table), rates);
    QCOMPARE(table->on(date, GoodsTax::Exempt).value_or(-1), 0.0);
    QVERIFY(!table->on({}, GoodsTax::Standard));
}

void TestTaxesByRate::rateKeptByHand()
{
    const auto rates = book::TaxRates::keptByHand(7.8);
    for (const QDate &date : {QDate(1980, 1, 1), QDate(2027, 4, 1), QDate()}) {
        QCOMPARE(rates.on(date).value_or(-1), 7.8);
        QCOMPARE(rates.on(date, GoodsTax::Food).value_or(-1), 7.8);
        QCOMPARE(rates.on(date, GoodsTax::OutOfScope).value_or(-1), 0.0);
    }
}

QTEST_GUILESS_MAIN(TestTaxesByRate)
#include "tst_taxes_by_rate.moc"
