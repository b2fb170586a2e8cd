#include "book/deduction.h"
#include "support/fresh_shop.h"

#include <QtTest>

using namespace Qt::StringLiterals;

class TestSupplierRegistration : public QObject
{
    Q_OBJECT

private slots:
    // The day before each change, and the day of it.
    void theShareFollowsTheDay_data()
    {
        QTest::addColumn<QDate>("day");
        QTest::addColumn<int>("percent");
        const auto row = [](const char *day, int percent) {
            QTest::newRow(day) << QDate::fromString(QLatin1String(day), Qt::ISODate) << percent;
        };
        row("1989-04-01", 100);
        row("2023-09-30", 100);
        row("2023-10-01", 80);
        row("2026-09-30", 80);
        row("2026-10-01", 70);
        row("2028-09-30", 70);
        row("2028-10-01", 50);
        row("2030-09-30", 50);
        row("2030-10-01", 30);
        row("2031-09-30", 30);
        row("2031-10-01", 0);
        row("2999-12-31", 0);
    }

    void theShareFollowsTheDay()
    {
        QFETCH(QDate, day);
        QFETCH(int, percent);
        QCOMPARE(book::deductiblePercent(day), percent);
        const book::SupplierRegistration none{book::Registered::No};
        const QString remark = book::deductionRemark(none, day);
        QCOMPARE(remark.isEmpty(), percent == 100);
        QCOMPARE(remark.contains(u"経過措置 %1%"_s.arg(percent)), percent != 100 && percent != 0);
        QCOMPARE(remark.contains(u"控除なし"_s), percent == 0);
        QCOMPARE(book::deductionRemark({}, day), QString());
    }

    void theTaxIsTruncatedOnce_data()
    {
        QTest::addColumn<QString>("amount");
        QTest::addColumn<bool>("isGross");
        QTest::addColumn<double>("rate");
        QTest::addColumn<QList<int>>(
            "deductible"); // 80, 70, 50, 30 and 0 percent of it; none: not to be told
        const auto row = [](const char *name, const QString &amount, bool isGross, double rate,
                            const QList<int> &deductible) {
            QTest::newRow(name) << amount << isGross << rate << deductible;
        };
        row("11,000 with the tax", u"11000"_s, true, 10, {800, 700, 500, 300, 0});
        row("10,000 without", u"10000"_s, false, 10, {800, 700, 500, 300, 0});
        row("1,080 of food", u"1080"_s, true, 8, {64, 56, 40, 24, 0});
        row("food of one percent", u"1010"_s, true, 1, {8, 7, 5, 3, 0});
        row("a yen short", u"10999"_s, true, 10, {799, 699, 499, 299, 0});
        row("taken back", u"-10999"_s, true, 10, {-799, -699, -499, -299, 0});
        row("tenths", u"1100.5"_s, true, 10, {80, 70, 50, 30, 0});
        row("just below a yen", u"13.7499"_s, true, 10, {0, 0, 0, 0, 0});
        row("just a yen", u"13.75"_s, true, 10, {1, 0, 0, 0, 0});
        row("a rate with decimals", u"10750"_s, true, 7.5, {600, 525, 375, 225, 0});
        row("no tax", u"5000"_s, true, 0, {0, 0, 0, 0, 0});
        row("all of it", u"200"_s, true, 100, {80, 70, 50, 30, 0});
        row("over all", u"100"_s, true, 100.5, {});
        row("below none", u"100"_s, true, -1, {});
        row("a rate like a slip of the hand", u"100"_s, true, 8.125, {});
        row("no amount", u"nan"_s, true, 10, {});
    }

    void theTaxIsTruncatedOnce()
    {
        QFETCH(QString, amount);
        QFETCH(bool, isGross);
        QFETCH(double, rate);
        QFETCH(QList<int>, deductible);
        base::ExactSum sum;
        sum.add(amount == u"nan" ? qQNaN() : amount.toDouble());
        const int percents[] = {80, 70, 50, 30, 0};
        for (int i = 0; i < 5; ++i) {
            const auto tax =
                book::deductibleTax(sum, isGross ? book::Basis::Gross : book::Basis::Net, rate, percents[i]);
            QCOMPARE(tax.has_value(), !deductible.isEmpty());
            if (tax)
                QCOMPARE(*tax, double(deductible.at(i)));
        }
    }

    // The greatest amounts there are, against the remainders of a division done by hand.
    void greatAmountsStayExact()
    {
        base::ExactSum sum;
        sum.add(899'999'999'999.0);
        // 899,999,999,999 × 10 × 80 / (110 × 100) = 65,454,545,454.47…
        QCOMPARE(*book::deductibleTax(sum, book::Basis::Gross, 10, 80), 65'454'545'454.0);
        // 899,999,999,999 × 7.77 × 70 / (107.77 × 100) = 45,421,731,465.1…
        QCOMPARE(*book::deductibleTax(sum, book::Basis::Gross, 7.77, 70), 45'421'731'465.0);
    }

    // A row of the register, and the days of 2026-11 on which it is known to lack a registration.
    void whoIsKnownToLackIt_data()
    {
        QTest::addColumn<QString>("row");
        QTest::addColumn<QString>("missing");
        const auto row = [](const char *name, const QString &stored, const QString &missing) {
            QTest::newRow(name) << stored << missing;
        };
        row("nothing known", u"NULL, NULL, NULL"_s, u"none"_s);
        row("said to be unknown, with days", u"0, '2026-11-10', '2026-11-20'"_s, u"none"_s);
        row("registered", u"1, NULL, ''"_s, u"none"_s);
        row("from a day on", u"1, '2026-11-10', NULL"_s, u"1-9"_s);
        row("to a day", u"1, NULL, '2026-11-20'"_s, u"21-30"_s);
        row("for some days", u"1, '2026-11-10', '2026-11-20'"_s, u"1-9 21-30"_s);
        row("before", u"1, '2024-01-01', '2026-10-31'"_s, u"1-30"_s);
        row("not registered", u"2, NULL, NULL"_s, u"1-30"_s);
        row("not registered, whatever the days", u"2, '2026-11-10', '2026-11-20'"_s, u"1-30"_s);
        row("days that are none", u"1, '2026/11', '来年'"_s, u"none"_s);
        row("a number from elsewhere", u"7, NULL, NULL"_s, u"none"_s);
    }

    void whoIsKnownToLackIt()
    {
        QFETCH(QString, row);
        QFETCH(QString, missing);
        FreshShop shop;
        shop.run(u"INSERT INTO 仕入先 (仕入先ID, 登録, 登録開始日, 登録終了日) VALUES (3, %1)"_s.arg(row));
        const auto registration = book::registrationOf(shop.connection, 3);
        QVERIFY(registration);
        QStringList runs;
        int first = 0;
        for (int day = 1; day <= 31; ++day) {
            const bool isMissing = day <= 30 && registration->isMissingOn({2026, 11, day});
            if (isMissing && first == 0)
                first = day;
            if (!isMissing && first != 0)
                runs << u"%1-%2"_s.arg(std::exchange(first, 0)).arg(day - 1);
        }
        QCOMPARE(runs.isEmpty() ? u"none"_s : runs.join(u' '), missing);
        QVERIFY(!book::registrationOf(shop.connection, 4)->isMissingOn({2026, 11, 1}));
    }
};

QTEST_GUILESS_MAIN(TestSupplierRegistration)
#include "tst_supplier_registration.moc"
