#include "reports/purchases/purchase_report.h"

#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr double narrowAmount = 23; // millimetres; 999,999,999 and its minus

base::Column amount(const QString &heading) { return {heading, base::Format::Amount, 16, 26}; }

std::vector<base::Column> columns()
{
    return {{u"コード"_s, base::Format::Text, 16, 16},
            {u"仕入先"_s, base::Format::Text, 36, 16, true},
            amount(u"前回仕入額"_s),
            amount(u"支払額"_s),
            amount(u"繰越金額"_s),
            amount(u"仕入金額（税別)"_s),
            amount(u"消費税"_s),
            amount(u"仕入金額（税込)"_s),
            amount(u"残高"_s),
            amount(u"未計上（消費税）"_s)};
}

// Where a supplier of the list is not registered.
std::vector<base::Column> deductionColumns()
{
    base::Column shares{u"経過措置"_s, base::Format::Text, 10, 16};
    shares.centred = true;
    return {shares, {u"控除できる税額"_s, base::Format::Amount, 16, narrowAmount}};
}

// In the order of the columns.
QVariantList values(const QString &code, const QString &name, const PurchaseSums &sums)
{
    return {code,           name,
            sums.previous,  sums.payments,
            sums.carried(), sums.untaxed(),
            sums.tax,       sums.purchases,
            sums.balance(), sums.unbooked ? QVariant(*sums.unbooked) : QVariant()};
}

QVariantList values(const std::optional<PurchaseDeduction> &deduction)
{
    if (!deduction)
        return {QVariant(), QVariant()};
    return {deduction->shares(), deduction->tax ? QVariant(*deduction->tax) : QVariant()};
}

// A shop of which no supplier is known to be without a registration sees nothing of it.
void addDeductions(base::Report &report, const PurchaseList &list)
{
    if (!list.deduction)
        return;
    // So narrow that the names keep their room on paper.
    for (base::Column &column : report.columns)
        column.millimetres = column.format == base::Format::Amount ? narrowAmount : column.millimetres;
    for (const base::Column &column : deductionColumns())
        report.columns.push_back(column);
    for (std::size_t row = 0; row < list.suppliers.size(); ++row)
        report.rows[row].values << values(list.suppliers[row].deduction);
    if (!report.totals.isEmpty())
        report.totals << QVariantList{QVariant(), values(list.deduction).back()};
}

} // namespace

QString shownPeriod(const book::Period &period)
{
    return text::formatDate(period.from) + u"～"_s + text::formatDate(period.to);
}

base::Report purchaseReport(const PurchaseList &list, const book::Period &period)
{
    const QString days = shownPeriod(period);
    base::Report report{u"月別仕入一覧"_s, u"期間　"_s + days,
                        u"月別仕入一覧 "_s + QString(days).replace(u'/', u'-'), columns()};
    report.rows.reserve(list.suppliers.size());
    for (const SupplierPurchases &purchases : list.suppliers)
        report.rows.push_back({values(purchases.code, purchases.name(), purchases.sums)});
    report.totals = values({}, u"合計"_s, list.totals);
    addDeductions(report, list);
    return report;
}

base::Report shownPurchases(const PurchaseList &list)
{
    base::Report report;
    report.columns = {{u"仕入先"_s, base::Format::Text, 36, 36, true},
                      amount(u"前回仕入額"_s),
                      amount(u"支払額"_s),
                      amount(u"繰越金額"_s),
                      amount(u"仕入金額"_s),
                      amount(u"残高"_s)};
    report.rows.reserve(list.suppliers.size());
    for (const SupplierPurchases &purchases : list.suppliers) {
        const PurchaseSums &sums = purchases.sums;
        report.rows.push_back({{purchases.name(), sums.previous, sums.payments, sums.carried(),
                                sums.purchases, sums.balance()}});
    }
    addDeductions(report, list);
    return report;
}

} // namespace reports
