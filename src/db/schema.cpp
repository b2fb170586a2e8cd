#include "db/schema.h"

#include "db/schema_text.h"

#include <sqlite3.h>

namespace db
{

namespace
{

QString textAt(sqlite3_stmt *statement, int column)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, column)));
}

} // namespace

std::vector<Table> tablesDeclaredBy(const QByteArray &statements)
{
    std::vector<Table> found;
    sqlite3 *memory = nullptr;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_open(":memory:", &memory) == SQLITE_OK &&
        sqlite3_exec(memory, statements.constData(), nullptr, nullptr, nullptr) == SQLITE_OK &&
        sqlite3_prepare_v2(
            memory,
            "SELECT t.name, c.name, c.pk, c.type FROM sqlite_schema t, pragma_table_info(t.name) c "
            "WHERE t.type = 'table' ORDER BY t.rowid, c.cid",
            -1, &statement, nullptr) == SQLITE_OK) {
        while (sqlite3_step(statement) == SQLITE_ROW) {
            const QString table = textAt(statement, 0);
            if (found.empty() || found.back().name != table)
                found.push_back({table, {}, {}, {}});
            found.back().columns << textAt(statement, 1);
            if (textAt(statement, 3) != u"TEXT")
                found.back().numbers << textAt(statement, 1);
            if (sqlite3_column_int(statement, 2))
                found.back().key = textAt(statement, 1);
        }
    }
    sqlite3_finalize(statement);
    sqlite3_close(memory);
    return found;
}

const std::vector<Table> &tables()
{
    // SQLite itself is asked what schema.sql declares, so that the columns stand nowhere else.
    static const std::vector<Table> all = tablesDeclaredBy(schemaText);
    return all;
}

QString keyOf(const QString &table)
{
    for (const Table &t : tables()) {
        if (t.name == table)
            return t.key;
    }
    return {};
}

QString schemaSql() { return QString::fromUtf8(schemaText); }

} // namespace db
