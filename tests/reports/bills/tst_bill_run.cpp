#include "bill_shop.h"

#include "reports/bills/bill_run.h"
#include "reports/bills/bill_ticks.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace reports;

namespace
{

const BillOptions byHand{10.0, false};

std::vector<CustomerBill> billsOfMarch(BillShop &shop)
{
    auto bills =
        billsOf(shop.connection, {{QDate(2026, 3, 1), QDate(2026, 3, 31)}, 0}, byHand, base::unwatched);
    if (!bills)
        qFatal("%s", qPrintable(bills.error().text));
    std::ranges::sort(*bills, {}, [](const CustomerBill &bill) { return bill.customer.id; });
    return std::move(*bills);
}

/// "7 8", the customers of \a bills.
QString idsOf(const std::vector<CustomerBill> &bills)
{
    QStringList ids;
    for (const CustomerBill &bill : bills)
        ids << QString::number(bill.customer.id.value_or(0));
    return ids.join(u' ');
}

QString idsOf(const std::vector<qint64> &customers)
{
    QStringList ids;
    for (const qint64 customer : customers)
        ids << QString::number(customer);
    return ids.join(u' ');
}

book::NewSlip taxPattern()
{
    book::NewSlip slip;
    slip.kind = book::sale;
    slip.date = QDate(2026, 3, 31);
    slip.employee = 1;
    slip.taxRate = 10;
    return slip;
}

} // namespace

class TestBillRun : public QObject
{
    Q_OBJECT

private slots:
    void onlyWhatIsToBePaidIsTickedByItself()
    {
        BillShop shop;
        BillTicks ticks;
        std::vector<CustomerBill> bills = billsOfMarch(shop);
        QCOMPARE(idsOf(bills), u"7 8 9 10 11"_s);
        ticks.setBills(bills, false);
        QCOMPARE(idsOf(ticks.ticked()), u"7 8 9"_s);
        QCOMPARE(idsOf(ticks.tickedUnbooked()), u"7 8"_s);
        ticks.tickAll(true); // also who has paid too much, but nobody without a slip in March
        QCOMPARE(idsOf(ticks.ticked()), u"7 8 9 11"_s);
        ticks.toggle(3);
        QVERIFY(!ticks.setData(ticks.index(3, 0), Qt::Checked, Qt::EditRole));
        (void)ticks.setData(ticks.index(3, 0), Qt::Checked, Qt::CheckStateRole);
        ticks.toggle(0);
        QCOMPARE(idsOf(ticks.ticked()), u"8 9 11"_s);
        ticks.setIssued({8}, u"印刷済"_s);
        QCOMPARE(idsOf(ticks.ticked()), u"9 11"_s);
        ticks.renewBills(bills); // after the tax was booked: the ticks stay
        QCOMPARE(idsOf(ticks.ticked()), u"9 11"_s);
        QCOMPARE(ticks.index(1, 10).data().toString(), u"印刷済"_s);
        // By the period alone 11 has nothing to pay; what the clerk left out, or is done, stays as it is.
        ticks.setSalesOnly(true);
        QCOMPARE(idsOf(ticks.ticked()), u"9 11"_s);
        bills[0].sums.sales = std::numeric_limits<double>::quiet_NaN();
        ticks.setBills(bills, false);
        ticks.tickAll(true);
        QCOMPARE(idsOf(ticks.ticked()), u"8 9 11"_s);
    }

    void aRunEndsWhereItMust_data()
    {
        QTest::addColumn<int>("failsAt");    // which bill cannot be issued
        QTest::addColumn<bool>("isOut");     // its paper is out all the same
        QTest::addColumn<int>("stopsAfter"); // so many
        QTest::addColumn<QString>("issued");
        QTest::addColumn<bool>("failed");
        QTest::addColumn<bool>("stopped");
        QTest::newRow("whole") << 99 << false << 99 << u"7 8 9"_s << false << false;
        QTest::newRow("refused at once") << 0 << false << 99 << QString() << true << false;
        QTest::newRow("refused in the middle") << 1 << false << 99 << u"7"_s << true << false;
        QTest::newRow("printed, not recorded") << 1 << true << 99 << u"7 8"_s << true << false;
        QTest::newRow("stopped") << 99 << false << 2 << u"7 8"_s << false << true;
        QTest::newRow("stopped before the first") << 99 << false << 0 << QString() << false << true;
    }

    void aRunEndsWhereItMust()
    {
        QFETCH(int, failsAt);
        QFETCH(bool, isOut);
        QFETCH(int, stopsAfter);
        BillShop shop;
        BillTicks ticks;
        ticks.setBills(billsOfMarch(shop), false);
        std::vector<qint64> out; // of the printer
        const auto issue = [&](const Bill &bill) -> base::Status {
            const bool fails = int(out.size()) == failsAt;
            if (!fails || isOut)
                out.push_back(*bill.customer.id);
            return fails ? base::Status(base::Error{.text = u"紙がありません。"_s, .gone = isOut})
                         : base::Status();
        };
        const BillRunOutcome outcome =
            issueBills(shop.connection, ticks.ticked(), byHand, issue,
                       [&](qint64 done, qint64 total) { return total == 3 && done < stopsAfter; });
        QTEST(idsOf(outcome.issued), "issued");
        QCOMPARE(outcome.issued, out);
        QTEST(outcome.failure.has_value(), "failed");
        QTEST(outcome.stopped, "stopped");
        QCOMPARE(outcome.failedFor.isEmpty(), !outcome.failure);
    }

    void aBillThatIsAnotherByNowIsNotIssued()
    {
        BillShop shop;
        BillTicks ticks;
        ticks.setBills(billsOfMarch(shop), false);
        shop.book(20, u'O', u"2026-02-01"_s, 7, 1); // of before the period
        shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 8"_s);
        std::vector<qint64> out;
        const BillRunOutcome outcome = issueBills(
            shop.connection, ticks.ticked(), byHand,
            [&](const Bill &bill) {
                out.push_back(*bill.customer.id);
                return base::Status();
            },
            base::unwatched);
        QCOMPARE(idsOf(out), u"9"_s);
        QCOMPARE(idsOf(outcome.changed), u"7 8"_s);
        QVERIFY(!outcome.failure && !outcome.stopped);
    }

    void theirTaxIsBookedAtOnceOrNotAtAll()
    {
        BillShop shop;
        BillTicks ticks;
        ticks.setBills(billsOfMarch(shop), false);
        const QStringList before = shop.slips();
        const std::vector<CustomerBill> bills = ticks.tickedUnbooked();
        shop.book(20, u'O', u"2026-03-31"_s, 8, 10); // the second of the two has changed
        const QStringList changed = shop.slips();
        const auto refused = bookBillTaxes(shop.connection, bills, byHand, taxPattern());
        QVERIFY(!refused && refused.error().changed && refused.error().text.contains(u"駒形屋"_s));
        QCOMPARE(shop.slips(), changed);
        shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 20"_s);
        shop.run(u"DELETE FROM 入出庫マスター WHERE ID = 20"_s);

        auto booked = bookBillTaxes(shop.connection, bills, byHand, taxPattern());
        QVERIFY(booked && booked->size() == 2);
        QStringList added = shop.slips();
        for (const QString &slip : before)
            added.removeOne(slip);
        QCOMPARE(added.size(), 2);
        QVERIFY(added[0].endsWith(u"|7|消費税|100"_s) && added[0].contains(u"|2026-03-31|O"_s));
        QVERIFY(added[1].endsWith(u"|8|消費税|234"_s)); // 234.5 rounded down
        ticks.setBills(billsOfMarch(shop), false);
        QVERIFY(ticks.tickedUnbooked().empty());
        // A second time there is nothing to book.
        const auto again = bookBillTaxes(shop.connection, bills, byHand, taxPattern());
        QVERIFY(!again && again.error().changed);

        const QStringList taxed = shop.slips();
        shop.run(u"UPDATE 入出庫サブ SET 金額 = 235 WHERE ID = ?"_s, {booked->back().header.id});
        QVERIFY(!cancelBillTaxes(shop.connection, *booked));
        QCOMPARE(shop.slips().size(), taxed.size());
        shop.run(u"UPDATE 入出庫サブ SET 金額 = 234 WHERE ID = ?"_s, {booked->back().header.id});
        QVERIFY(cancelBillTaxes(shop.connection, *booked));
        QCOMPARE(shop.slips(), before);
    }

    void fileNamesAreSafeAndNobodyElses_data()
    {
        QTest::addColumn<QString>("name1");
        QTest::addColumn<QString>("name2");
        QTest::addColumn<QString>("file");
        const auto row = [](const char *what, const QString &name1, const QString &name2,
                            const QString &between) {
            QTest::newRow(what) << name1 << name2 << u"請求書_7_"_s + between + u"_20260331.pdf"_s;
        };
        row("plain", u"山田商店"_s, {}, u"山田商店"_s);
        row("two names", u"山田商店"_s, u"本店"_s, u"山田商店　本店"_s);
        row("a way out", u"../../etc/passwd"_s, {}, u"..-..-etc-passwd"_s);
        row("of another system", u"C:\\CON*?\"<>|"_s, {}, u"C--CON------"_s);
        row("another's", u"山田_20260331.pdf"_s, {}, u"山田-20260331.pdf"_s);
        row("not to be seen", u"山\n田\t\u202E商\u0000店"_s, {}, u"山-田--商-店"_s);
        row("blanks", u"  山田 "_s, {}, u"山田"_s);
        row("nothing", {}, {}, u"(名称なし)"_s);
        row("beyond the first plane", u"𠮷野家"_s, {}, u"𠮷野家"_s);
        row("a novel", QString(5'000, u'茶'), {}, QString(50, u'茶'));
    }

    void fileNamesAreSafeAndNobodyElses()
    {
        QFETCH(QString, name1);
        QFETCH(QString, name2);
        CustomerBill bill;
        bill.period = {QDate(2026, 3, 1), QDate(2026, 3, 31)};
        bill.customer.id = 7;
        bill.customer.name1 = name1;
        bill.customer.name2 = name2;
        QTEST(billFileName(bill), "file");
        QVERIFY(billFileName(bill).toUtf8().size() < 255);
        CustomerBill other = bill;
        other.customer.id = 71;
        QVERIFY(billFileName(other).toCaseFolded() != billFileName(bill).toCaseFolded());
    }
};

QTEST_MAIN(TestBillRun)
#include "tst_bill_run.moc"
