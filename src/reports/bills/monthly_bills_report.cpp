#include "reports/bills/monthly_bills.h"
#include "reports/purchases/purchase_report.h"
#include "text/dates.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

using base::Format;

base::Column amount(const QString &heading, int characters = 11)
{
    base::Column column{heading, Format::Amount, characters, 19};
    column.summed = true;
    return column;
}

std::vector<base::Column> columnsFor(const MonthlyBillsQuery &query)
{
    std::vector<base::Column> columns{{u"コード"_s, Format::Text, 8, 12},
                                      {u"納品先"_s, Format::Text, 22, 30, true}};
    columns.insert(columns.end(), {amount(u"前回請求額"_s), amount(u"入金額"_s), amount(u"繰越金額"_s),
                                   amount(u"売上金額（税別)"_s, 14), amount(u"消費税"_s, 9),
                                   amount(u"売上金額（税込)"_s, 14), amount(u"今回請求額"_s),
                                   amount(u"未計上（消費税）"_s, 15), amount(u"未収 今回分"_s),
                                   amount(u"未収 前月分"_s), amount(u"未収 それ以前"_s, 13)});
    columns.push_back({u"最終入金日"_s, Format::Date, 10, 17});
    if (query.ownPeriods) // each says its own
        columns.push_back({u"締め日"_s, Format::Date, 10, 17});
    return columns;
}

QVariant unbooked(const BillSums &sums)
{
    if (sums.cannotTax) // which shows as such, and so does the total
        return std::numeric_limits<double>::quiet_NaN();
    return sums.unbooked ? QVariant(*sums.unbooked) : QVariant();
}

QVariantList valuesOf(const CustomerBill &bill, const MonthlyBillsQuery &query)
{
    const BillSums &sums = bill.sums;
    QVariantList values{bill.customer.code,
                        bill.customer.name(),
                        sums.previous,
                        sums.received,
                        sums.carried(),
                        sums.untaxed,
                        sums.tax(),
                        sums.sales,
                        sums.balance(),
                        unbooked(sums),
                        bill.unpaid.thisPeriod,
                        bill.unpaid.lastPeriod,
                        bill.unpaid.older,
                        bill.lastReceipt};
    return query.ownPeriods ? values << text::stored(bill.period.to) : values;
}

// Those that a shopkeeper asks for: what came in, what went out, what is owed, and since when.
void addSums(base::Report &report)
{
    for (const QString &wanted : {u"入金額"_s, u"売上金額（税込)"_s, u"今回請求額"_s, u"未収 今回分"_s,
                                  u"未収 前月分"_s, u"未収 それ以前"_s}) {
        for (std::size_t column = 0; column < report.columns.size(); ++column) {
            if (report.columns[column].heading == wanted)
                report.sums.push_back(
                    {wanted, report.totals.value(static_cast<qsizetype>(column)).toDouble()});
        }
    }
}

} // namespace

base::Report monthlyBillsReport(const std::vector<CustomerBill> &bills, const MonthlyBillsQuery &query)
{
    const QString days =
        query.ownPeriods ? text::formatDate(query.period.to) + u" まで"_s : shownPeriod(query.period);
    base::Report report{u"月別請求一覧"_s,
                        (query.ownPeriods ? u"納品先ごとの締め日　"_s : u"期間　"_s) + days,
                        u"月別請求一覧 "_s + QString(days).replace(u'/', u'-'), columnsFor(query)};
    report.rows.reserve(bills.size());
    for (const CustomerBill &bill : bills)
        report.rows.push_back(
            {valuesOf(bill, query),
             QVariant::fromValue(BillTarget{bill.customer.id, bill.customer.unknown, bill.period})});
    addTotals(report, u"合計"_s);
    addSums(report);
    return report;
}

} // namespace reports
