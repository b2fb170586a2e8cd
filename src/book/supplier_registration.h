#pragma once

#include "base/result.h"

#include <QDate>
#include <QVariant>

#include <map>

namespace db
{
class Connection;
}

// Whether a supplier issues qualified invoices (適格請求書).
namespace book
{

/// The numbers of 登録; an empty one is not known either.
enum class Registered {
    Unknown = 0,
    Yes = 1,
    No = 2,
};

/// "不明", "登録あり" or "登録なし".
QString nameOf(Registered registered);

/// What is known of a supplier's registration.
struct SupplierRegistration
{
    Registered registered = Registered::Unknown;
    QDate from{}; // the first day; an invalid one: since ever
    QDate to{};   // the last one; an invalid one: without end

    /// Whether the supplier is known to have had none on \a day. Of one about whom nothing is known nobody is
    /// bothered; the days tell of a registered one alone.
    [[nodiscard]] bool isMissingOn(const QDate &day) const;
};

/// What a row of 仕入先 says: 登録, 登録開始日 and 登録終了日 as they are stored. What is no day sets no
/// bound.
SupplierRegistration registrationFrom(const QVariant &registered, const QString &from, const QString &to);

/// That of the supplier \a id; nothing is known of one who is not in the register.
base::Result<SupplierRegistration> registrationOf(db::Connection &connection, qint64 id);

/// Those of the suppliers who are known to lack a registration on some day, by their keys.
base::Result<std::map<qint64, SupplierRegistration>> suppliersLackingRegistration(db::Connection &connection);

} // namespace book
