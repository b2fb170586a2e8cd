#include "db/schema.h"

#include "db/schema_text.h"

#include <QHash>

#include <algorithm>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

QString textAt(sqlite3_stmt *statement, int column)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, column)));
}

// How many columns each table had in the versions before this one, from the first on. Rows that were written
// then end there.
const QHash<QString, QList<qsizetype>> &earlierColumns()
{
    static const QHash<QString, QList<qsizetype>> counts{
        {u"単位"_s, {2, 3, 3}},
        {u"規格"_s, {2, 3, 3}},
        {u"社員"_s, {3, 4, 4}},
        {u"登録区分"_s, {2, 3, 3}},
        {u"発送区分"_s, {2, 3, 3}},
        {u"仕入商品"_s, {2, 9, 9}},
        {u"納品商品"_s, {2, 9, 9}},
        {u"自社情報"_s, {12, 14, 14}},
        {u"納品先"_s, {23, 25, 25}},
        {u"仕入先"_s, {17, 22, 22}},
        {u"入出庫マスター"_s, {7, 12, 12}},
        {u"入出庫サブ"_s, {7, 11, 11}},
        {u"発送マスター"_s, {23, 30, 30}},
        {u"税率"_s, {0, 7, 7}},
        {u"発行控"_s, {0, 14, 14}},
        {u"版数"_s, {0, 2, 2}},
        {u"入金取込"_s, {0, 0, 11}},
        {u"宛名印刷"_s, {0, 0, 0}},
    };
    return counts;
}

// A file's own statements could write to other files, or go on for ever.
void allowDeclarationsAlone(sqlite3 *memory)
{
    constexpr int mostSteps = 1'000'000;
    constexpr int longestValue = 1'000'000; // bytes
    sqlite3_limit(memory, SQLITE_LIMIT_LENGTH, longestValue);
    sqlite3_progress_handler(
        memory, mostSteps, [](void *) { return 1; }, nullptr);
    sqlite3_set_authorizer(
        memory,
        [](void *, int action, const char *, const char *, const char *, const char *) {
            static constexpr int allowed[] = {SQLITE_CREATE_TABLE, SQLITE_CREATE_INDEX, SQLITE_REINDEX,
                                              SQLITE_INSERT,       SQLITE_UPDATE,       SQLITE_READ,
                                              SQLITE_SELECT,       SQLITE_FUNCTION};
            return std::ranges::find(allowed, action) != std::end(allowed) ? SQLITE_OK : SQLITE_DENY;
        },
        nullptr);
}

bool carryOut(sqlite3 *memory, const QByteArray &statements)
{
    allowDeclarationsAlone(memory);
    const bool done = sqlite3_exec(memory, statements.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_set_authorizer(memory, nullptr, nullptr);
    return done;
}

// The generated column as schema.sql declares it, from its name to its end.
QString generatedDeclaration()
{
    const QString all = schemaSql();
    const qsizetype from =
        all.indexOf(u"    "_s + QString::fromUtf16(generatedColumn) + u" TEXT GENERATED"_s) + 4;
    return all.mid(from, all.indexOf(u'\n', from) - from);
}

} // namespace

bool Table::isFirst(const QString &column) const
{
    const qsizetype index = columns.indexOf(column);
    return index >= 0 && index < firstColumns;
}

int Table::versionOf(const QString &column) const
{
    const qsizetype index = columns.indexOf(column);
    if (index < 0)
        return 0;
    const QList<qsizetype> counts = earlierColumns().value(name);
    const auto had = std::ranges::find_if(counts, [index](qsizetype count) { return index < count; });
    return static_cast<int>(had - counts.begin()) + 1;
}

std::vector<Table> tablesDeclaredBy(const QByteArray &statements)
{
    std::vector<Table> found;
    sqlite3 *memory = nullptr;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_open(":memory:", &memory) == SQLITE_OK && carryOut(memory, statements) &&
        sqlite3_prepare_v2(
            memory,
            "SELECT t.name, c.name, c.pk, c.type FROM sqlite_schema t, pragma_table_info(t.name) c "
            "WHERE t.type = 'table' ORDER BY t.rowid, c.cid",
            -1, &statement, nullptr) == SQLITE_OK) {
        while (sqlite3_step(statement) == SQLITE_ROW) {
            const QString table = textAt(statement, 0);
            if (found.empty() || found.back().name != table)
                found.push_back({table, {}, {}, {}, earlierColumns().value(table).value(0)});
            found.back().columns << textAt(statement, 1);
            if (const QString type = textAt(statement, 3); type == u"INTEGER" || type == u"REAL")
                found.back().numbers << textAt(statement, 1);
            if (sqlite3_column_int(statement, 2))
                found.back().key = textAt(statement, 1);
        }
    }
    sqlite3_finalize(statement);
    sqlite3_close(memory);
    return found;
}

const std::vector<Table> &declaredTables()
{
    // SQLite itself is asked what schema.sql declares, so that the columns stand nowhere else.
    static const std::vector<Table> all = tablesDeclaredBy(schemaText);
    return all;
}

const std::vector<Table> &tables()
{
    static const std::vector<Table> all = [] {
        std::vector<Table> shops = declaredTables();
        std::erase_if(shops, [](const Table &table) { return table.name == counterTable; });
        return shops;
    }();
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

bool bearsVersion(const QString &table)
{
    return std::ranges::any_of(tables(), [&table](const Table &candidate) {
        return candidate.name == table && candidate.columns.contains(versionColumn);
    });
}

// Where the name stands once, no comment and no quotation can hide another column of that name.
bool declaresOwnGeneratedColumn(const QString &statement)
{
    const QString own = generatedDeclaration();
    const QString name = QString::fromUtf16(generatedColumn);
    const qsizetype at = statement.indexOf(name);
    const QString after = statement.mid(at + own.size()).trimmed();
    return at >= 0 && statement.indexOf(name, at + 1) < 0 && QStringView(statement).mid(at).startsWith(own) &&
           (after.startsWith(u',') || after.startsWith(u')'));
}

QString schemaSql() { return QString::fromUtf8(schemaText); }

const QMap<QString, QString> &declaredIndexes()
{
    static const QMap<QString, QString> all = [] {
        QMap<QString, QString> statements;
        for (const QString &line : schemaSql().split(u'\n')) {
            if (line.startsWith(u"CREATE INDEX "))
                statements.insert(line.section(u' ', 2, 2), line);
        }
        return statements;
    }();
    return all;
}

} // namespace db
