#include "book/supplier_registration.h"

#include "db/connection.h"
#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

QDate dayIn(const QString &stored) { return text::parseDate(stored).value_or(QDate()); }

} // namespace

QString nameOf(Registered registered)
{
    switch (registered) {
    case Registered::Yes:
        return u"登録あり"_s;
    case Registered::No:
        return u"登録なし"_s;
    case Registered::Unknown:
        break;
    }
    return u"不明"_s;
}

bool SupplierRegistration::isMissingOn(const QDate &day) const
{
    if (registered != Registered::Yes)
        return registered == Registered::No;
    return (from.isValid() && day < from) || (to.isValid() && to < day);
}

SupplierRegistration registrationFrom(const QVariant &registered, const QString &from, const QString &to)
{
    const int number = registered.toInt();
    const bool isKnown = number == int(Registered::Yes) || number == int(Registered::No);
    return {isKnown ? Registered(number) : Registered::Unknown, dayIn(from), dayIn(to)};
}

base::Result<SupplierRegistration> registrationOf(db::Connection &connection, qint64 id)
{
    const auto found =
        connection.select(u"SELECT 登録, 登録開始日, 登録終了日 FROM 仕入先 WHERE 仕入先ID = ?"_s, {id});
    if (!found)
        return found.error();
    if (found->isEmpty())
        return SupplierRegistration();
    const QVariantList &row = found->rows.front();
    return registrationFrom(row.at(0), row.at(1).toString(), row.at(2).toString());
}

base::Result<std::map<qint64, SupplierRegistration>> suppliersLackingRegistration(db::Connection &connection)
{
    const auto found =
        connection.select(u"SELECT 仕入先ID, 登録, 登録開始日, 登録終了日 FROM 仕入先 "
                          "WHERE 登録 = 2 OR (登録 = 1 AND (登録開始日 <> '' OR 登録終了日 <> '')) "
                          "ORDER BY 仕入先ID"_s);
    if (!found)
        return found.error();
    std::map<qint64, SupplierRegistration> suppliers;
    for (const QVariantList &row : found->rows)
        suppliers.emplace(row.at(0).toLongLong(),
                          registrationFrom(row.at(1), row.at(2).toString(), row.at(3).toString()));
    return suppliers;
}

} // namespace book
