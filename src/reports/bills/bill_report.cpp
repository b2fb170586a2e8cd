#include "reports/bills/bill_report.h"

#include "reports/ledgers/ledger_report.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

std::vector<base::Column> columns()
{
    return {{u"日付"_s, base::Format::Date, 10, 20},     {u"品名"_s, base::Format::Text, 30, 16, true},
            {u"規格"_s, base::Format::Text, 16, 16},     {u"数量"_s, base::Format::Quantity, 10, 16},
            {u"単価"_s, base::Format::Quantity, 12, 18}, {u"納品金額"_s, base::Format::Amount, 14, 24},
            {u"入金額"_s, base::Format::Amount, 14, 24}, {u"残高"_s, base::Format::Amount, 14, 24}};
}

QVariant valueOf(const std::optional<double> &number) { return number ? QVariant(*number) : QVariant(); }

book::SlipKind kindOf(BillRowKind kind)
{
    if (kind == BillRowKind::Receipt)
        return book::receipt;
    return kind == BillRowKind::CarryForward ? book::receivableCarried : book::sale;
}

base::ReportRow shown(const BillRow &row)
{
    base::ReportRow shown{{row.date, row.mark + row.name, row.specification, valueOf(row.quantity),
                           valueOf(row.price), valueOf(row.delivered), valueOf(row.received), row.balance}};
    if (row.kind != BillRowKind::Carried)
        shown.link = QVariant::fromValue(SlipTarget{row.slip, kindOf(row.kind)});
    return shown;
}

} // namespace

base::Report billStatement(const Bill &bill)
{
    base::Report report;
    report.columns = columns();
    report.rows.reserve(bill.rows.size());
    for (const BillRow &row : bill.rows)
        report.rows.push_back(shown(row));
    return report;
}

} // namespace reports
