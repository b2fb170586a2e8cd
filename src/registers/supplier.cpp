#include "registers/supplier.h"

#include "book/slip_counts.h"
#include "book/supplier_registration.h"
#include "db/connection.h"
#include "db/recordset.h"
#include "masters/registration_number.h"
#include "registers/counterpart.h"
#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

QString keyOf(const db::Recordset &supplier)
{
    return supplierKey(supplier.text(u"仕入先名1"_s), supplier.text(u"仕入先名2"_s),
                       supplier.text(u"コード"_s), supplier.text(u"TEL1"_s));
}

const QString numberColumn = u"登録番号"_s;
const QString stateColumn = u"登録"_s;
const QString fromColumn = u"登録開始日"_s;
const QString toColumn = u"登録終了日"_s;

book::SupplierRegistration registrationIn(const db::Recordset &supplier)
{
    return book::registrationFrom(supplier.value(stateColumn), supplier.text(fromColumn),
                                  supplier.text(toColumn));
}

bool isTypedDay(const db::Recordset &supplier, const QString &column)
{
    return supplier.isEdited(column) && text::parseDate(supplier.text(column));
}

} // namespace

QString supplierKey(const QString &name1, const QString &name2, const QString &code, const QString &tel1)
{
    return counterpartKey(name1, name2, {code, tel1});
}

base::Status openEverySupplier(db::Recordset &suppliers) { return suppliers.open({.table = u"仕入先"_s}); }

base::Status openSupplier(db::Recordset &suppliers, qint64 id)
{
    return suppliers.open({.table = u"仕入先"_s, .where = u"(仕入先ID = ?)"_s, .values = {id}});
}

base::Result<qint64> addSupplier(db::Connection &connection, db::Recordset &suppliers)
{
    return suppliers.add({{u"消費税区分"_s, 0}}, [&connection](qint64 next) {
        return book::keyWithoutSlips(connection, book::Party::Supplier, next);
    });
}

base::Status saveSupplier(db::Recordset &suppliers)
{
    settleRegistration(suppliers);
    return saveCounterpart(suppliers, u"仕入先名キー"_s, keyOf);
}

void settleRegistration(db::Recordset &suppliers)
{
    if (suppliers.isEdited(numberColumn))
        suppliers.setValue(numberColumn, masters::registrationNumber(suppliers.text(numberColumn)));
    const bool isTold =
        (suppliers.isEdited(numberColumn) && masters::isRegistrationNumber(suppliers.text(numberColumn))) ||
        isTypedDay(suppliers, fromColumn) || isTypedDay(suppliers, toColumn);
    if (isTold && !suppliers.isEdited(stateColumn) &&
        registrationIn(suppliers).registered == book::Registered::Unknown)
        suppliers.setValue(stateColumn, int(book::Registered::Yes));
}

QString registrationRemark(const db::Recordset &suppliers)
{
    const QString number = suppliers.text(numberColumn);
    if (const QString remark = masters::registrationRemark(number); !remark.isEmpty())
        return remark;
    const book::SupplierRegistration registration = registrationIn(suppliers);
    if (registration.registered != book::Registered::No)
        return {};
    if (registration.from.isValid() || registration.to.isValid())
        return u"登録の期間がある仕入先は「登録あり」にしてください。「登録なし」では期間を見ません。"_s;
    return number.isEmpty() ? QString() : u"登録番号があるのに「登録なし」になっています。"_s;
}

std::optional<RegistrationFault> registrationFault(const db::Recordset &suppliers)
{
    for (const QString &column : {fromColumn, toColumn}) {
        const QString day = suppliers.text(column);
        if (suppliers.isEdited(column) && !day.isEmpty() && !text::parseDate(day))
            return RegistrationFault{
                u"%1「%2」は日付ではありません。2023/10/01 のように入力し直してください。"_s.arg(column, day),
                column};
    }
    const book::SupplierRegistration registration = registrationIn(suppliers);
    const bool isBackwards =
        registration.from.isValid() && registration.to.isValid() && registration.to < registration.from;
    if (isBackwards && (suppliers.isEdited(fromColumn) || suppliers.isEdited(toColumn)))
        return RegistrationFault{
            u"登録終了日が登録開始日より前になっています。日付を入力し直してください。"_s, toColumn};
    return std::nullopt;
}

base::Result<bool> supplierCodeExists(db::Connection &connection, const db::Recordset &suppliers)
{
    const QString code = suppliers.text(u"コード"_s);
    if (code.isEmpty())
        return false;
    const auto keys = connection.integers(u"SELECT * FROM 仕入先 WHERE コード = ?"_s, {code});
    if (!keys)
        return keys.error();
    return !keys->empty();
}

} // namespace registers
