#include "registers/lists/customer_deletion.h"

#include "book/slip_counts.h"
#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"

using namespace Qt::StringLiterals;

namespace registers
{

base::Result<QHash<qint64, int>> slipsOfCustomers(db::Connection &connection)
{
    return book::slipsOfEach(connection, book::Party::Customer);
}

base::Result<qint64> slipsLeftBy(db::Connection &connection, const QString &table, qint64 id)
{
    const auto party = table == u"納品先"_s ? book::Party::Customer : book::Party::Supplier;
    return book::countSlips(connection,
                            {.kinds = book::kindsOf(party), .counterpart = book::CounterpartKey(id)});
}

base::Result<Extent> extentOf(db::Connection &connection, std::size_t chosen)
{
    const auto all = connection.select(u"SELECT count(*) FROM 納品先"_s);
    if (!all)
        return all.error();
    return Extent{static_cast<int>(chosen), all->rows.front().front().toInt()};
}

base::Result<int> deleteCustomers(db::Connection &connection, const std::vector<qint64> &ids,
                                  WithSlips withSlips, const base::Progress &progress)
{
    QString statement = u"DELETE FROM 納品先 WHERE 納品先ID = ?"_s;
    book::Condition condition;
    if (withSlips == WithSlips::Keep) {
        condition = book::slipsOf({.kinds = book::kindsOf(book::Party::Customer)});
        statement += u" AND NOT EXISTS (SELECT * FROM 入出庫マスター WHERE 相手先ID = 納品先ID AND "_s +
                     condition.sql + u')';
    }
    return db::atomically(connection, [&]() -> base::Result<int> {
        if (const auto raised = db::nextVersion(connection); !raised)
            return raised.error();
        int deleted = 0;
        qint64 done = 0;
        for (const qint64 id : ids) {
            if (!progress(done++, static_cast<qint64>(ids.size())))
                return base::cancelled();
            const auto changed = connection.execute(statement, QVariantList{id} + condition.values);
            if (!changed)
                return changed.error();
            deleted += *changed;
        }
        return deleted;
    });
}

} // namespace registers
