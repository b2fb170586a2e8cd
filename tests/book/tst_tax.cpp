#include "book/tax.h"

#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;
using book::TaxClass;

class TestTax : public QObject
{
    Q_OBJECT

private slots:
    void amountsAreTruncated_data();
    void amountsAreTruncated();
    void impossibleNumbersAreRefused_data();
    void impossibleNumbersAreRefused();
    void exactToTheYen();
    void classAndBoxDecide_data();
    void classAndBoxDecide();
};

void TestTax::amountsAreTruncated_data()
{
    QTest::addColumn<double>("quantity");
    QTest::addColumn<double>("price");
    QTest::addColumn<double>("amount");
    QTest::newRow("half yen falls") << 2.5 << 101.0 << 252.0;
    QTest::newRow("noise below a whole yen") << 0.29 << 100.0 << 29.0;
    QTest::newRow("noise 1.15 x 100") << 1.15 << 100.0 << 115.0;
    QTest::newRow("noise 4.35 x 100") << 4.35 << 100.0 << 435.0;
    QTest::newRow("just below") << 0.9999 << 1.0 << 0.0;
    QTest::newRow("just below, six decimals") << 0.0003 << 3333.33 << 0.0;
    QTest::newRow("fractions that make a whole yen") << 0.0625 << 16.0 << 1.0;
    QTest::newRow("return: toward zero") << -2.5 << 101.0 << -252.0;
    QTest::newRow("return: noise") << -0.29 << 100.0 << -29.0;
    QTest::newRow("nothing") << 0.0 << 100.0 << 0.0;
    QTest::newRow("nothing, negative") << -0.001 << 1.0 << 0.0;
    QTest::newRow("great with noise") << 0.29 << 1e12 / 10 << 29e9;
    QTest::newRow("greatest") << 9e11 << 1.0 << 9e11;
    QTest::newRow("great odd yen") << 1.0 << 899'999'999'999.0 << 899'999'999'999.0;
}

void TestTax::amountsAreTruncated()
{
    QFETCH(double, quantity);
    QFETCH(double, price);
    QFETCH(double, amount);
    const auto computed = book::lineAmount(quantity, price);
    QVERIFY(computed);
    QCOMPARE(*computed, amount);
    QVERIFY2(!std::signbit(*computed) || *computed < 0, "-0 would be shown and stored");
}

void TestTax::impossibleNumbersAreRefused_data()
{
    QTest::addColumn<double>("quantity");
    QTest::addColumn<double>("price");
    QTest::newRow("overflow") << 1e308 << 1e308;
    QTest::newRow("great quantity") << 1e308 << 0.0;
    QTest::newRow("great price") << 0.0 << -1e308;
    QTest::newRow("beyond by one") << 1.0 << 9e11 + 1;
    QTest::newRow("product beyond") << 1e6 << 1e6;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 1.0;
    QTest::newRow("infinite x 0") << std::numeric_limits<double>::infinity() << 0.0;
    QTest::newRow("not a number") << 1.0 << std::nan("");
}

void TestTax::impossibleNumbersAreRefused()
{
    QFETCH(double, quantity);
    QFETCH(double, price);
    const auto computed = book::lineAmount(quantity, price);
    QVERIFY(!computed);
    QVERIFY(!computed.error().text.isEmpty());
}

// Against whole-number arithmetic on quantities of four decimals and prices of two, goods and returns.
void TestTax::exactToTheYen()
{
    QRandomGenerator dice(20260401);
    const auto below = [&dice](qint64 limit) { return static_cast<qint64>(dice.generate64() >> 2) % limit; };
    for (int round = 0; round < 50'000; ++round) {
        // Up to 10,000,000.0000 pieces, small ones more often; a price that keeps the sum in 64 bits.
        const qint64 quantity = below(std::array{100LL, 100'000LL, 100'000'000LL}[round % 3]) - 50;
        const qint64 price = (round % 2 ? below(1'000'000) : below(10'000) * 100) * (round % 5 ? 1 : -1);
        const qint64 amount = quantity * price / 1'000'000;
        const auto computed = book::lineAmount(double(quantity) / 1e4, double(price) / 1e2);
        QVERIFY(computed);
        QVERIFY2(qint64(*computed) == amount && std::trunc(*computed) == *computed,
                 qPrintable(u"%1 x %2 / 1000000 = %3"_s.arg(quantity).arg(price).arg(*computed, 0, 'f')));
    }
}

void TestTax::classAndBoxDecide_data()
{
    QTest::addColumn<TaxClass>("taxClass");
    QTest::addColumn<bool>("inclusive");
    QTest::addColumn<bool>("added");
    QTest::addColumn<QString>("shown");        // 10,500 yen at 5 percent
    QTest::addColumn<QString>("shownWithout"); // on a screen that shows no included tax
    QTest::newRow("on delivery") << TaxClass::OnDelivery << false << true << u"525"_s << u"525"_s;
    QTest::newRow("on delivery, included") << TaxClass::OnDelivery << true << false << u"500"_s << QString();
    QTest::newRow("on bill") << TaxClass::OnBill << false << false << QString() << QString();
    QTest::newRow("on bill, included") << TaxClass::OnBill << true << false << u"500"_s << QString();
    QTest::newRow("included") << TaxClass::Included << true << false << u"500"_s << QString();
    // Added when the slip is closed; the box shows it of the first class alone.
    QTest::newRow("included, made exclusive")
        << TaxClass::Included << false << true << QString() << QString();
}

void TestTax::classAndBoxDecide()
{
    QFETCH(TaxClass, taxClass);
    QFETCH(bool, inclusive);
    QFETCH(bool, added);
    QFETCH(QString, shown);
    QFETCH(QString, shownWithout);
    QCOMPARE(book::taxIsAdded(taxClass, inclusive), added);
    QCOMPARE(*book::shownTax({{10500, 5}}, taxClass, inclusive, true), shown);
    QCOMPARE(*book::shownTax({{10500, 5}}, taxClass, inclusive, false), shownWithout);
}

QTEST_GUILESS_MAIN(TestTax)
#include "tst_tax.moc"
