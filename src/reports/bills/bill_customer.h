#pragma once

#include "base/result.h"
#include "book/counterpart_name.h"
#include "book/slip_kind.h"
#include "db/query.h"

#include <optional>
#include <vector>

namespace reports
{

/// Whom a bill is for.
struct BillCustomer
{
    book::CounterpartKey id; // none: nobody, of slips that name no customer
    bool unknown = false;    // deleted, or nobody, while slips refer to it
    QString code;
    QString name1; // of an unknown one what it is called by
    QString name2;
    QString zip;
    QString address1;
    QString address2;
    QString tel;
    QString fax;
    std::optional<QString> honorific; // an empty one for none; nothing where none was chosen
    int closingDay = 0;               // 0 the last day of the month, 1 to 30 that day
    book::TaxClass taxClass = book::TaxClass::OnDelivery;

    [[nodiscard]] QString name() const; // in one line
    bool operator==(const BillCustomer &) const = default;
};

/// The customer \a id. The error is `gone` when the register does not have it (any more).
base::Result<BillCustomer> billCustomer(db::Connection &connection, qint64 id);

/// The customers whose bills close on \a closingDay, those served last first.
base::Result<std::vector<BillCustomer>> customersOfClosingDay(db::Connection &connection, int closingDay);

/// The same as a screen lists them.
db::Query closingDayQuery(int closingDay);

/// All customers, in the order of their readings.
base::Result<std::vector<BillCustomer>> allCustomers(db::Connection &connection);

/// One whom the register does not have.
BillCustomer unknownCustomer(book::CounterpartKey id);

} // namespace reports
