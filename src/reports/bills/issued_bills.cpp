#include "reports/bills/issued_bills.h"

#include "reports/bills/bill_header.h"
#include "slips/issued/issued_documents.h"
#include "text/dates.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;

namespace reports
{

base::Result<IssuedBills> issuedOf(db::Connection &connection, const std::vector<CustomerBill> &bills)
{
    IssuedBills issued;
    for (const CustomerBill &bill : bills) {
        const qint64 customer = bill.customer.id.value_or(0);
        if (customer == 0)
            continue;
        const auto last =
            slips::lastIssue(connection, QString::fromUtf16(slips::billKind), billNumber(bill), customer);
        if (!last)
            return last.error();
        if (*last)
            issued.insert(customer, **last);
    }
    return issued;
}

// Amounts are compared as they are printed: what reads the same is the same.
QString issueWords(const slips::LastIssue &issue, double billed)
{
    constexpr qsizetype dayLength = 10; // of yyyy-MM-dd HH:mm:ss
    const QString words = u"発行済 "_s + text::shownDay(issue.issuedAt.left(dayLength));
    const QString amount = text::formatAmount(issue.amount);
    return amount == text::formatAmount(billed) ? words : words + u"（請求額 %1 円）"_s.arg(amount);
}

} // namespace reports
