#include "book/slip_remarks.h"

#include "db/statement.h"

using namespace Qt::StringLiterals;

namespace book
{

base::Result<std::unordered_map<qint64, QString>> slipRemarks(db::Connection &connection,
                                                              const Selection &selection)
{
    const Condition condition = slipsOf(selection);
    std::unordered_map<qint64, QString> remarks;
    const base::Status read =
        connection.visit(u"SELECT 入出庫マスター.ID, 備考 FROM 入出庫マスター WHERE "_s + condition.sql +
                             u" AND 備考 <> '' ORDER BY 入出庫マスター.ID"_s,
                         condition.values, [&remarks](const db::Statement &row) {
                             remarks.emplace(row.integer(0), QString::fromUtf8(row.text(1)));
                         });
    return read ? base::Result<std::unordered_map<qint64, QString>>(std::move(remarks)) : read.error();
}

} // namespace book
