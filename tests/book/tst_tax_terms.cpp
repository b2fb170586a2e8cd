#include "book/tax_terms.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;
using book::GoodsTax;
using book::TaxTerm;

namespace
{

// "4: 0 2019-10-01 - 10", with a "x" behind one that is not in force.
QString shown(const TaxTerm &term)
{
    return u"%1: %2 %3 %4 %5%6"_s.arg(
        QString::number(term.id), QString::number(static_cast<int>(term.taxClass)),
        term.from.toString(Qt::ISODate), term.to.isValid() ? term.to.toString(Qt::ISODate) : u"-"_s,
        QString::number(term.percent), term.inForce ? QString() : u" x"_s);
}

QStringList shown(const std::vector<TaxTerm> &terms)
{
    QStringList lines;
    for (const TaxTerm &term : terms)
        lines << shown(term);
    return lines;
}

TaxTerm termFrom(const QString &line)
{
    const QStringList parts = line.split(u' ');
    return {parts.at(0).chopped(1).toLongLong(),
            static_cast<GoodsTax>(parts.at(1).toInt()),
            QDate::fromString(parts.at(2), Qt::ISODate),
            QDate::fromString(parts.at(3), Qt::ISODate),
            parts.at(4).toDouble(),
            parts.size() == 5};
}

std::vector<TaxTerm> termsFrom(const QStringList &lines)
{
    std::vector<TaxTerm> terms;
    for (const QString &line : lines)
        terms.push_back(termFrom(line));
    return terms;
}

} // namespace

class TestTaxTerms : public QObject
{
    Q_OBJECT

private slots:
    void refusedTerms_data();
    void refusedTerms();
    void roomIsMade_data();
    void roomIsMade();
    void gaps_data();
    void gaps();
    void announcedRateIsSwitchedOnAndFollowed();
    void storedWhollyOrNotAtAll();
};

void TestTaxTerms::refusedTerms_data()
{
    QTest::addColumn<QString>("term");
    QTest::addColumn<bool>("good");

    QTest::newRow("nothing is a rate") << u"0: 0 2030-01-01 - 0"_s << true;
    QTest::newRow("all of it") << u"0: 1 2030-01-01 2030-01-01 100"_s << true;
    QTest::newRow("below nothing") << u"0: 0 2030-01-01 - -1"_s << false;
    QTest::newRow("over all of it") << u"0: 0 2030-01-01 - 100.5"_s << false;
    QTest::newRow("no number") << u"0: 0 2030-01-01 - nan"_s << false;
    QTest::newRow("no first day") << u"0: 0 - 2030-01-01 10"_s << false;
    QTest::newRow("ends before it begins") << u"0: 0 2030-01-02 2030-01-01 10"_s << false;
    QTest::newRow("not taxed") << u"0: 3 2030-01-01 - 10"_s << false;
}

void TestTaxTerms::refusedTerms()
{
    QFETCH(QString, term);
    QTEST(bool(book::checkTerm(termFrom(term))), "good");
}

void TestTaxTerms::roomIsMade_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QString>("term");
    QTest::addColumn<QStringList>("after");

    const QString food = u"5: 1 2019-10-01 - 8"_s;
    QTest::newRow("in the midst of an endless one")
        << QStringList{food} << u"7: 1 2027-04-01 2029-03-31 1"_s
        << QStringList{u"5: 1 2019-10-01 2027-03-31 8"_s, u"7: 1 2027-04-01 2029-03-31 1"_s,
                       u"0: 1 2029-04-01 - 8"_s};
    QTest::newRow("for good") << QStringList{food} << u"0: 1 2030-04-01 - 9"_s
                              << QStringList{u"5: 1 2019-10-01 2030-03-31 8"_s, u"0: 1 2030-04-01 - 9"_s};
    QTest::newRow("over its beginning")
        << QStringList{food} << u"0: 1 2019-01-01 2019-12-31 5"_s
        << QStringList{u"0: 1 2019-01-01 2019-12-31 5"_s, u"5: 1 2020-01-01 - 8"_s};
    QTest::newRow("over all of it") << QStringList{u"1: 0 1989-04-01 1997-03-31 3"_s}
                                    << u"0: 0 1989-04-01 - 4"_s
                                    << QStringList{u"1: 0 1989-04-01 1997-03-31 3 x"_s,
                                                   u"0: 0 1989-04-01 - 4"_s};
    QTest::newRow("of another class")
        << QStringList{food} << u"0: 2 2020-01-01 - 8"_s << QStringList{food, u"0: 2 2020-01-01 - 8"_s};
    QTest::newRow("begins the day after")
        << QStringList{u"1: 0 1989-04-01 1997-03-31 3"_s} << u"0: 0 1997-04-01 - 5"_s
        << QStringList{u"1: 0 1989-04-01 1997-03-31 3"_s, u"0: 0 1997-04-01 - 5"_s};
    QTest::newRow("not in force") << QStringList{food} << u"7: 1 2027-04-01 2029-03-31 1 x"_s
                                  << QStringList{food, u"7: 1 2027-04-01 2029-03-31 1 x"_s};
    QTest::newRow("one day of it is moved")
        << QStringList{food, u"7: 1 2027-04-01 2029-03-31 1 x"_s} << u"5: 1 2019-10-02 - 8"_s
        << QStringList{u"5: 1 2019-10-02 - 8"_s, u"7: 1 2027-04-01 2029-03-31 1 x"_s};
}

void TestTaxTerms::roomIsMade()
{
    QFETCH(QStringList, before);
    QFETCH(QString, term);
    QTEST(shown(book::withRoomFor(termsFrom(before), termFrom(term))), "after");
}

void TestTaxTerms::gaps_data()
{
    QTest::addColumn<QStringList>("terms");
    QTest::addColumn<QDate>("gap");

    const QDate today(2026, 4, 1);
    QTest::newRow("none") << QStringList{u"1: 0 1989-04-01 1997-03-31 3"_s, u"2: 0 1997-04-01 - 5"_s}
                          << QDate();
    QTest::newRow("a day between two")
        << QStringList{u"1: 0 1989-04-01 1997-03-30 3"_s, u"2: 0 1997-04-01 - 5"_s} << QDate(1997, 3, 31);
    QTest::newRow("the last one has ended")
        << QStringList{u"1: 0 1989-04-01 1997-03-31 3"_s, u"5: 1 2019-10-01 - 8"_s} << QDate(1997, 4, 1);
    QTest::newRow("the old ones are gone") << QStringList{u"4: 0 2019-10-01 - 10"_s} << QDate();
    QTest::newRow("today's was made the next one") << QStringList{u"4: 0 2027-04-01 - 12"_s} << today;
    QTest::newRow("not in force") << QStringList{u"4: 0 2019-10-01 - 10 x"_s} << today;
    QTest::newRow("nothing") << QStringList() << today;
}

void TestTaxTerms::gaps()
{
    QFETCH(QStringList, terms);
    QTEST(book::firstGap(termsFrom(terms), QDate(2026, 4, 1)), "gap");
}

// The law as it is announced: two years at 1 percent, and the old rate again. The shop has it before and
// behind, newspapers and the rest have theirs throughout.
void TestTaxTerms::announcedRateIsSwitchedOnAndFollowed()
{
    FreshShop shop;
    const auto before = book::taxTerms(shop.connection);
    QVERIFY(before);
    auto announced = std::ranges::find(*before, 1.0, &TaxTerm::percent);
    QVERIFY(announced != before->end() && !announced->inForce);
    TaxTerm term = *announced;
    term.inForce = true;
    QCOMPARE(shown(book::overlapping(*before, term)), (QStringList{u"5: 1 2019-10-01 - 8"_s}));
    const base::Status stored =
        book::storeTaxTerms(shop.connection, *before, book::withRoomFor(*before, term));
    QVERIFY2(stored, qPrintable(stored ? QString() : stored.error().text));

    const auto rates = book::TaxRates::read(shop.connection);
    QVERIFY(rates);
    const auto food = [&](int year, int month, int day) {
        return rates->on(QDate(year, month, day), GoodsTax::Food).value_or(-1);
    };
    QCOMPARE(food(2027, 3, 31), 8.0);
    QCOMPARE(food(2027, 4, 1), 1.0);
    QCOMPARE(food(2029, 3, 31), 1.0);
    QCOMPARE(food(2029, 4, 1), 8.0);
    QCOMPARE(*rates->on(QDate(2028, 1, 1)), 10.0);
    QCOMPARE(*rates->on(QDate(2028, 1, 1), GoodsTax::Newspapers), 8.0);
    QCOMPARE(shop.rows(u"SELECT 税率ID, 開始日, 終了日 FROM 税率 WHERE 税区分 = 1 ORDER BY 開始日"_s),
             (QStringList{u"5|2019-10-01|2027-03-31"_s, u"7|2027-04-01|2029-03-31"_s, u"8|2029-04-01|-"_s}));
}

void TestTaxTerms::storedWhollyOrNotAtAll()
{
    FreshShop shop;
    const auto before = book::taxTerms(shop.connection);
    QVERIFY(before);
    const QString all = u"SELECT 税率ID, 税区分, 開始日, 終了日, 税率, 有効 FROM 税率 ORDER BY 税率ID"_s;
    const QStringList untouched = shop.rows(all);

    auto overlapped = *before;
    overlapped.push_back({0, GoodsTax::Standard, QDate(2030, 1, 1), {}, 12, true});
    QVERIFY(!book::storeTaxTerms(shop.connection, *before, overlapped));
    QCOMPARE(shop.rows(all), untouched);

    // A row is changed, one goes, one comes; the last of them fails.
    auto after = *before;
    std::erase_if(after, [](const TaxTerm &term) { return term.id == 1; });
    after.front().percent = 4;
    after.push_back({0, GoodsTax::Food, QDate(2015, 1, 1), QDate(2015, 1, 31), 6, true});
    shop.fireTriggers();
    shop.run(u"CREATE TRIGGER 税率_停止 BEFORE INSERT ON 税率 BEGIN SELECT RAISE(ABORT, 'disk'); END"_s);
    QVERIFY(!book::storeTaxTerms(shop.connection, *before, after));
    QCOMPARE(shop.rows(all), untouched);

    shop.run(u"DROP TRIGGER 税率_停止"_s);
    shop.run(u"UPDATE 税率 SET 税率 = 11 WHERE 税率ID = 4"_s); // by another program
    const base::Status late = book::storeTaxTerms(shop.connection, *before, after);
    QVERIFY(!late);
    QVERIFY(late.error().text.contains(u"別のプログラム"_s));
    QCOMPARE(shop.value(u"SELECT 税率 FROM 税率 WHERE 税率ID = 4"_s).toInt(), 11);
    QCOMPARE(shop.rows(all).size(), untouched.size());
}

QTEST_GUILESS_MAIN(TestTaxTerms)

#include "tst_tax_terms.moc"
