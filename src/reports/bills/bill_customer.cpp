#include "reports/bills/bill_customer.h"

#include "book/slip_reader.h"
#include "book/tax.h"
#include "db/connection.h"
#include "reports/bills/closing_period.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

// Those served last first.
const QStringList orderOfIssue{u"更新日 DESC"_s, u"フリガナ"_s};

db::Query customersWhere(const db::Condition &condition, const QStringList &order)
{
    return {.columns = u"納品先ID, コード, 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1, FAX, 敬称, "
                       "締め日, 消費税区分"_s,
            .table = u"納品先"_s,
            .where = condition.sql,
            .order = order,
            .values = condition.values,
            .fromAllOver = true};
}

BillCustomer customerFrom(const QVariantList &row)
{
    BillCustomer customer;
    customer.id = row.at(0).toLongLong();
    QString *const texts[] = {&customer.code,     &customer.name1,    &customer.name2, &customer.zip,
                              &customer.address1, &customer.address2, &customer.tel,   &customer.fax};
    qsizetype column = 1;
    for (QString *text : texts)
        *text = row.at(column++).toString();
    if (const QString chosen = row.at(column++).toString(); !chosen.isEmpty())
        customer.honorific = chosen == QStringView(book::noHonorific) ? QString() : chosen;
    customer.closingDay = closingDayFrom(row.at(column++).toInt());
    customer.taxClass = book::taxClassFrom(row.at(column).toString());
    return customer;
}

base::Result<std::vector<BillCustomer>> read(db::Connection &connection, const db::Query &query)
{
    const auto found = connection.select(query.statement(), query.values);
    if (!found)
        return found.error();
    std::vector<BillCustomer> customers;
    customers.reserve(found->rows.size());
    for (const QVariantList &row : found->rows)
        customers.push_back(customerFrom(row));
    return customers;
}

} // namespace

QString BillCustomer::name() const { return book::counterpartName(name1, name2); }

base::Result<BillCustomer> billCustomer(db::Connection &connection, qint64 id)
{
    const auto found = read(connection, customersWhere({u"(納品先ID = ?)"_s, {id}}, {}));
    if (!found)
        return found.error();
    if (found->empty())
        return base::Error{.text = u"納品先ID %1 の納品先は登録されていないか、ほかのプログラムで"
                                   "削除されました。納品先を選び直してください。"_s.arg(id),
                           .gone = true};
    return found->front();
}

base::Result<std::vector<BillCustomer>> customersOfClosingDay(db::Connection &connection, int closingDay)
{
    return read(connection, customersWhere(customersClosingOn(closingDay), orderOfIssue));
}

db::Query closingDayQuery(int closingDay)
{
    const db::Condition condition = customersClosingOn(closingDay);
    return {.columns = u"納品先ID, 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1, 納品先名キー, 更新日, "
                       "消費税区分, 締め日, フリガナ, コード"_s,
            .table = u"納品先"_s,
            .where = condition.sql,
            .order = orderOfIssue,
            .values = condition.values,
            .fromAllOver = true};
}

base::Result<std::vector<BillCustomer>> allCustomers(db::Connection &connection)
{
    return read(connection, customersWhere({}, {db::inJapaneseOrder(u"フリガナ"_s)}));
}

BillCustomer unknownCustomer(book::CounterpartKey id)
{
    BillCustomer customer;
    customer.id = id;
    customer.unknown = true;
    customer.name1 = book::unknownCounterpartName(id);
    return customer;
}

} // namespace reports
