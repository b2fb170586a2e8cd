#include "registers/customer_deletion.h"

#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"
#include "registers/slip_letters.h"

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
    for (const char16_t letter : customerSlipLetters) {
        alternatives << u"伝票番号 LIKE ?"_s;
        patterns << QString(QChar(letter)) + u'%';
    }
    return {u'(' + alternatives.join(u" OR "_s) + u')', patterns};
}

} // namespace

db::Result<QHash<qint64, int>> slipsOfCustomers(db::Connection &connection)
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

db::Result<SlipsLeft> slipsLeftBy(db::Connection &connection, const QString &table, qint64 id)
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

db::Result<int> deleteCustomers(db::Connection &connection, const std::vector<qint64> &ids,
                                WithSlips withSlips, const db::Progress &progress)
{
    QString statement = u"DELETE FROM 納品先 WHERE 納品先ID = ?"_s;
    QVariantList patterns;
    if (withSlips == WithSlips::Keep) {
        const IsCustomerSlip condition = isCustomerSlip();
        statement += u" AND NOT EXISTS (SELECT * FROM 入出庫マスター WHERE 相手先ID = 納品先ID AND "_s +
                     condition.sql + u')';
        patterns = condition.patterns;
    }
    db::Transaction transaction(connection);
    if (const db::Status begun = transaction.begin(); !begun)
        return begun.error();
    int deleted = 0;
    qint64 done = 0;
    for (const qint64 id : ids) {
        if (!progress(done++, static_cast<qint64>(ids.size())))
            return db::cancelled();
        const auto changed = connection.execute(statement, QVariantList{id} + patterns);
        if (!changed)
            return changed.error();
        deleted += *changed;
    }
    const db::Status committed = transaction.commit();
    return committed ? db::Result<int>(deleted) : committed.error();
}

} // namespace registers
