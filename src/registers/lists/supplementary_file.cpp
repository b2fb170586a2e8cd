#include "registers/lists/supplementary_file.h"

#include "base/replacement.h"
#include "base/same_file.h"
#include "db/care/backup.h"
#include "db/connection.h"
#include "db/create.h"
#include "db/schema.h"
#include "db/transaction.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

const QString customerTable = u"納品先"_s;

// What a list of customers is worked with beside them.
const QStringList mastersTaken{u"単位"_s,     u"規格"_s,     u"社員"_s,     u"登録区分"_s,
                               u"発送区分"_s, u"仕入商品"_s, u"納品商品"_s, u"自社情報"_s};

constexpr std::size_t rowsAtOnce = 500;

QString questionMarks(qsizetype count) { return u'(' + QStringList(count, u"?"_s).join(u", "_s) + u')'; }

// The counter behind 版 is each file's own.
QStringList columnsTaken(const db::Table &table)
{
    QStringList columns = table.columns;
    columns.removeAll(QString::fromUtf16(db::versionColumn));
    return columns;
}

base::Status insertRows(db::Connection &into, const db::Table &table, const db::Rows &rows)
{
    const QStringList columns = columnsTaken(table);
    const QString statement = u"INSERT INTO "_s + table.name + u" ("_s + columns.join(u", "_s) +
                              u") VALUES "_s + questionMarks(columns.size());
    for (const QVariantList &row : rows.rows) {
        if (const auto added = into.execute(statement, row); !added)
            return added.error();
    }
    return {};
}

base::Result<db::Rows> readRows(db::Connection &from, const db::Table &table, const QString &where = {},
                                const QVariantList &values = {})
{
    return from.select(u"SELECT "_s + columnsTaken(table).join(u", "_s) + u" FROM "_s + table.name + where,
                       values);
}

base::Status copyMasters(db::Connection &from, db::Connection &into)
{
    for (const db::Table &table : db::tables()) {
        if (!mastersTaken.contains(table.name))
            continue;
        const auto rows = readRows(from, table);
        if (!rows)
            return rows.error();
        if (const base::Status inserted = insertRows(into, table, *rows); !inserted)
            return inserted;
    }
    return {};
}

base::Result<int> copyCustomers(db::Connection &from, db::Connection &into, const std::vector<qint64> &ids,
                                const base::Progress &progress)
{
    const auto &all = db::tables();
    const auto table = std::find_if(
        all.cbegin(), all.cend(), [](const db::Table &candidate) { return candidate.name == customerTable; });
    int copied = 0;
    for (std::size_t first = 0; first < ids.size(); first += rowsAtOnce) {
        if (!progress(static_cast<qint64>(first), static_cast<qint64>(ids.size())))
            return base::cancelled();
        QVariantList keys;
        for (std::size_t i = first; i < std::min(first + rowsAtOnce, ids.size()); ++i)
            keys << ids[i];
        const auto rows = readRows(from, *table, u" WHERE 納品先ID IN "_s + questionMarks(keys.size()), keys);
        if (!rows)
            return rows.error();
        if (const base::Status inserted = insertRows(into, *table, *rows); !inserted)
            return inserted.error();
        copied += rows->count();
    }
    return copied;
}

// Reads through the open connection alone: no second handle on its file.
base::Result<int> fill(const QString &fileName, db::Connection &from, const std::vector<qint64> &ids,
                       const base::Progress &progress)
{
    db::Connection into;
    if (const base::Status opened = into.open(fileName); !opened)
        return opened.error();
    return db::atomically(into, [&]() -> base::Result<int> {
        if (const base::Status copied = copyMasters(from, into); !copied)
            return copied.error();
        return copyCustomers(from, into, ids, progress);
    });
}

} // namespace

base::Result<int> writeSupplementaryFile(db::Connection &connection, const std::vector<qint64> &ids,
                                         const QString &target, const base::Progress &progress,
                                         const QString &kept)
{
    if (base::isSameFile(target, connection.fileName()))
        return base::Error{u"使用中のファイルには書き出せません。別の名前を指定してください。"_s};
    base::Replacement file(target);
    if (const base::Status begun = file.begin(); !begun)
        return begun.error();
    if (const base::Status created = db::createDatabase(file.name()); !created)
        return created.error();
    const auto filled = fill(file.name(), connection, ids, progress);
    const base::Status done = filled ? db::replaceDatabase(file, db::keptAs(kept)) : filled.status();
    return done ? filled : done.error();
}

} // namespace registers
