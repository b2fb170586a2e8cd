#include "registers/lists/customer_deletion.h"

#include "book/slip_kind.h"
#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// "(伝票番号 LIKE ? OR …)", and what is bound to it.
struct IsCustomerSlip
{
    QString sql;
    QVariantList patterns;
};

IsCustomerSlip isCustomerSlip()
{
    QStringList alternatives;
    QVariantList patterns;
    for (const book::SlipKind &kind : book::allKinds) {
        if (kind.party != book::Party::Customer)
            continue;
        alternatives << u"伝票番号 LIKE ?"_s;
        patterns << book::patternOf(kind);
    }
    return {u'(' + alternatives.join(u" OR "_s) + u')', patterns};
}

} // namespace

base::Result<QHash<qint64, int>> slipsOfCustomers(db::Connection &connection)
{
    const IsCustomerSlip condition = isCustomerSlip();
    const auto found = connection.keys(
        u"SELECT 相手先ID FROM 入出庫マスター WHERE 相手先ID IS NOT NULL AND "_s + condition.sql,
        condition.patterns);
    if (!found)
        return found.error();
    QHash<qint64, int> slips;
    for (const qint64 customer : *found)
        ++slips[customer];
    return slips;
}

base::Result<SlipsLeft> slipsLeftBy(db::Connection &connection, const QString &table, qint64 id)
{
    const IsCustomerSlip condition = isCustomerSlip();
    const QString isOfTable = (table == u"納品先"_s ? QString() : u"NOT "_s) + condition.sql;
    const auto count =
        connection.keys(u"SELECT COUNT(*) FROM 入出庫マスター WHERE 相手先ID = ? AND "_s + isOfTable,
                        QVariantList{id} + condition.patterns);
    if (!count)
        return count.error();
    const auto next = db::nextKey(connection, table);
    return SlipsLeft{static_cast<int>(count->front()), next && *next == id + 1};
}

base::Result<int> deleteCustomers(db::Connection &connection, const std::vector<qint64> &ids,
                                  WithSlips withSlips, const base::Progress &progress)
{
    QString statement = u"DELETE FROM 納品先 WHERE 納品先ID = ?"_s;
    QVariantList patterns;
    if (withSlips == WithSlips::Keep) {
        const IsCustomerSlip condition = isCustomerSlip();
        statement += u" AND NOT EXISTS (SELECT * FROM 入出庫マスター WHERE 相手先ID = 納品先ID AND "_s +
                     condition.sql + u')';
        patterns = condition.patterns;
    }
    return db::atomically(connection, [&]() -> base::Result<int> {
        int deleted = 0;
        qint64 done = 0;
        for (const qint64 id : ids) {
            if (!progress(done++, static_cast<qint64>(ids.size())))
                return base::cancelled();
            const auto changed = connection.execute(statement, QVariantList{id} + patterns);
            if (!changed)
                return changed.error();
            deleted += *changed;
        }
        return deleted;
    });
}

} // namespace registers
