#include "slips/tax.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;
using slips::TaxClass;

class TestTax : public QObject
{
    Q_OBJECT

private slots:
    void amountsAreTruncated_data();
    void amountsAreTruncated();
    void impossibleNumbersAreRefused_data();
    void impossibleNumbersAreRefused();
    void taxOnTop_data();
    void taxOnTop();
    void classAndBoxDecide_data();
    void classAndBoxDecide();
    void impossibleRatesAreRefused();
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
    QTest::newRow("fifth decimal rounds up") << 0.99996 << 1.0 << 1.0;
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
    const auto computed = slips::lineAmount(quantity, price);
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
    const auto computed = slips::lineAmount(quantity, price);
    QVERIFY(!computed);
    QVERIFY(!computed.error().text.isEmpty());
}

void TestTax::taxOnTop_data()
{
    QTest::addColumn<double>("total");
    QTest::addColumn<double>("rate");
    QTest::addColumn<double>("tax");
    QTest::newRow("1,999 at 5") << 1999.0 << 5.0 << 99.0;
    QTest::newRow("2,000 at 5") << 2000.0 << 5.0 << 100.0;
    QTest::newRow("19 at 5: below one yen") << 19.0 << 5.0 << 0.0;
    QTest::newRow("20 at 5: one yen") << 20.0 << 5.0 << 1.0;
    QTest::newRow("10 percent") << 1099.0 << 10.0 << 109.0;
    QTest::newRow("broken rate") << 1000.0 << 7.8 << 78.0;
    QTest::newRow("no rate") << 1000.0 << 0.0 << 0.0;
    QTest::newRow("return") << -1999.0 << 5.0 << -99.0;
}

void TestTax::taxOnTop()
{
    QFETCH(double, total);
    QFETCH(double, rate);
    QFETCH(double, tax);
    const auto computed = slips::exclusiveTax(total, rate);
    QVERIFY(computed);
    QCOMPARE(*computed, tax);
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
    QTest::newRow("included, made exclusive") << TaxClass::Included << false << true << u"525"_s << u"525"_s;
}

void TestTax::classAndBoxDecide()
{
    QFETCH(TaxClass, taxClass);
    QFETCH(bool, inclusive);
    QFETCH(bool, added);
    QFETCH(QString, shown);
    QFETCH(QString, shownWithout);
    QCOMPARE(slips::taxIsAdded(taxClass, inclusive), added);
    QCOMPARE(*slips::shownTax(10500, 5, taxClass, inclusive, true), shown);
    QCOMPARE(*slips::shownTax(10500, 5, taxClass, inclusive, false), shownWithout);
}

void TestTax::impossibleRatesAreRefused()
{
    for (const double rate : {-100.0, -1.0, 101.0, 1e308, std::nan("")}) {
        QVERIFY(!slips::exclusiveTax(1000, rate));
        QVERIFY(!slips::includedTax(1000, rate));
        QVERIFY(!slips::shownTax(1000, rate, TaxClass::Included, true, true));
    }
    QCOMPARE(*slips::shownTax(1000, 8, TaxClass::Included, true, true), u"74.0740740741"_s);
}

QTEST_GUILESS_MAIN(TestTax)
#include "tst_tax.moc"
