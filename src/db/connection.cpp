#include "db/connection.h"

#include "db/errors.h"
#include "db/file_header.h"
#include "db/like_function.h"
#include "db/no_waiting.h"
#include "db/schema.h"
#include "db/statement.h"
#include "db/valid_day.h"

#include <QFileInfo>
#include <QSet>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QUuid>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// A statement that begins so means the same whenever it is run; a PRAGMA may be carried out while it is
// prepared.
bool isKept(const QString &sql)
{
    static constexpr QLatin1StringView beginnings[] = {"SELECT"_L1,   "INSERT"_L1,    "UPDATE"_L1,
                                                       "DELETE"_L1,   "BEGIN"_L1,     "COMMIT"_L1,
                                                       "ROLLBACK"_L1, "SAVEPOINT"_L1, "RELEASE"_L1};
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [&sql](QLatin1StringView beginning) { return sql.startsWith(beginning); });
}

constexpr std::size_t statementsKept = 100;

// Bytes of a value or a row. No row of a shop comes near it; a file made with ill will asks for more.
constexpr int longestValue = 100'000'000;

const QString rebuilding = u"「環境設定」の「データベースの再作成」で、新しいファイルに移せます。"_s;

base::Error columnMissing(const QString &table, const QString &column)
{
    return {u"テーブル「"_s + table + u"」の項目「"_s + column +
            u"」がないため、データベースを開けませんでした。"_s + rebuilding};
}

} // namespace

base::Status sameLibrary(const QString &ofQt, const QString &ours)
{
    return ofQt == ours
               ? base::Status()
               : base::Error{
                     u"Qt のデータベース部品（%1）とこのプログラム（%2）が別の SQLite を使っているため、"
                     "データベースを開けませんでした。プログラムを入れ直してください。"_s.arg(ofQt.left(19),
                                                                                              ours.left(19))};
}

QVariant Rows::value(int row, const QString &column) const
{
    const auto index = columns.indexOf(column);
    if (row < 0 || row >= count() || index < 0)
        return {};
    return rows[static_cast<std::size_t>(row)].at(index);
}

Connection::Connection()
    : m_name(QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    QSqlDatabase::addDatabase(u"QSQLITE"_s, m_name);
}

Connection::~Connection()
{
    close();
    QSqlDatabase::removeDatabase(m_name);
}

base::Status Connection::open(const QString &fileName)
{
    close();
    // The header is looked at before SQLite has the file: closing a second handle would drop its locks.
    if (const base::Status header = checkHeader(fileName); !header)
        return header;
    if (const base::Status marked = m_mark.set(fileName, UseMark::Kind::Shared); !marked)
        return marked;
    QSqlDatabase database = QSqlDatabase::database(m_name, false);
    database.setDatabaseName(QFileInfo(fileName).absoluteFilePath()); // never ":memory:"
    database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=5000"_s);
    if (!database.open()) {
        m_mark.release();
        return errorFrom(database.lastError());
    }
    m_open = true;
    m_fileName = QFileInfo(fileName).absoluteFilePath();
    base::Status ready = checkLibrary();
    for (const auto check : {&Connection::configure, &Connection::checkVersion, &Connection::checkTables,
                             &Connection::checkCounter, &Connection::checkEdges}) {
        if (ready)
            ready = (this->*check)();
    }
    if (ready)
        addMissingIndexes();
    else
        close();
    return ready;
}

void Connection::close()
{
    m_statements.clear();
    QSqlDatabase database = QSqlDatabase::database(m_name, false);
    if (database.isOpen())
        database.close();
    m_mark.release();
    m_open = false;
    m_fileName.clear();
}

sqlite3 *Connection::handle() const
{
    const QVariant handle = QSqlDatabase::database(m_name, false).driver()->handle();
    return handle.isValid() ? *static_cast<sqlite3 *const *>(handle.constData()) : nullptr;
}

bool Connection::inTransaction() const { return m_open && sqlite3_get_autocommit(handle()) == 0; }

bool Connection::hasCommittedAllTheSame() const
{
    return m_open && sqlite3_extended_errcode(handle()) == SQLITE_IOERR_DIR_FSYNC && !inTransaction();
}

// QtSql and this program work on one handle. Two libraries would each keep their own book of the file's
// locks, and the closing of a file in the one would drop those of the other.
base::Status Connection::checkLibrary()
{
    QSqlQuery used(QSqlDatabase::database(m_name, false));
    if (!used.exec(u"SELECT sqlite_source_id()"_s) || !used.next())
        return errorFrom(used.lastError());
    return sameLibrary(used.value(0).toString(), QString::fromLatin1(sqlite3_sourceid()));
}

// Each setting is read back: SQLite passes over one that it cannot carry out.
base::Status Connection::configure()
{
    int defensive = 0;
    sqlite3_db_config(handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, &defensive);
    if (defensive != 1)
        return base::Error{u"データベースの動作を設定できないため、開けませんでした。（保護）"_s};
    // What passes the check of foreign definitions under another name is not carried out either.
    sqlite3_db_config(handle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle(), SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_limit(handle(), SQLITE_LIMIT_LENGTH, longestValue);
    if (const int code = installLike(handle()); code != SQLITE_OK)
        return errorFromCode(code, u"LIKE"_s);
    if (const int code = installJapaneseOrder(handle()); code != SQLITE_OK)
        return errorFromCode(code, u"COLLATE"_s);
    if (const int code = installValidDay(handle()); code != SQLITE_OK)
        return errorFromCode(code, u"valid_day"_s);
    const QString cacheSize = u"-65536"_s; // KiB; the pages of a day's work stay in memory
    const struct
    {
        const char16_t *name;
        QString set;
        QString read;
    } settings[] = {
        {u"journal_mode", u"DELETE"_s, u"delete"_s}, {u"synchronous", u"EXTRA"_s, u"3"_s},
        {u"trusted_schema", u"OFF"_s, u"0"_s},       {u"cell_size_check", u"ON"_s, u"1"_s},
        {u"busy_timeout", u"5000"_s, u"5000"_s},     {u"temp_store", u"MEMORY"_s, u"2"_s},
        {u"cache_size", cacheSize, cacheSize},
    };
    for (const auto &setting : settings) {
        const QString pragma = u"PRAGMA "_s + QString::fromUtf16(setting.name);
        if (const auto set = select(pragma + u" = "_s + setting.set); !set)
            return set.error();
        const auto read = select(pragma);
        if (!read)
            return read.error();
        if (read->isEmpty() || read->rows.front().front().toString() != setting.read)
            return base::Error{u"データベースの動作を設定できないため、開けませんでした。("_s + pragma +
                               u")"_s};
    }
    // A file that cannot be written to is of no use to a program that saves every line at once.
    if (const auto begun = execute(u"BEGIN IMMEDIATE"_s); !begun)
        return begun.error();
    if (const auto ended = execute(u"ROLLBACK"_s); !ended)
        return ended.error();
    return sqlite3_db_readonly(handle(), "main") == 0 ? base::Status() : errorFromCode(SQLITE_READONLY, {});
}

// The header that was looked at may have been one of a change that never ended, which SQLite has taken back.
base::Status Connection::checkVersion()
{
    const auto version = select(u"PRAGMA user_version"_s);
    if (!version)
        return version.error();
    return !version->isEmpty() && version->rows.front().front().toInt() == schemaVersion
               ? base::Status()
               : base::Error{u"データベースの版が正しくないため、開けませんでした。"_s};
}

// The first and the last row of each table, and the first entry of each index: most of the damage that comes
// of a file cut short, overwritten at its beginning or put together of two is seen there.
base::Status Connection::checkEdges()
{
    for (const Table &table : tables()) {
        for (const QString &order : {u"rowid"_s, u"rowid DESC"_s}) {
            const auto edge = select(u"SELECT * FROM %1 ORDER BY %2 LIMIT 1"_s.arg(table.name, order));
            if (!edge)
                return edge.error();
        }
    }
    // A partial one would need its own condition; ours holds a few slips.
    const auto indexes = select(u"SELECT l.name, t.name FROM sqlite_schema t, pragma_index_list(t.name) l "
                                "WHERE t.type = 'table' AND l.partial = 0"_s);
    if (!indexes)
        return indexes.error();
    for (const QVariantList &index : indexes->rows) {
        const auto quoted = [](QString name) { return u'"' + name.replace(u'"', u"\"\""_s) + u'"'; };
        const auto edge = select(u"SELECT 1 FROM %1 INDEXED BY %2 LIMIT 1"_s.arg(
            quoted(index.at(1).toString()), quoted(index.at(0).toString())));
        if (!edge)
            return edge.error();
    }
    return {};
}

// Those that were declared after the file was made, or that another program has dropped. They only make
// reading quicker: a file that has no room for them, or that others read just now, is worked in without.
void Connection::addMissingIndexes()
{
    const auto there = select(u"SELECT name FROM sqlite_schema WHERE type = 'index'"_s);
    if (!there)
        return;
    QMap<QString, QString> missing = declaredIndexes();
    for (const QVariantList &index : there->rows)
        missing.remove(index.front().toString());
    const NoWaiting now(*this);
    for (const QString &statement : std::as_const(missing))
        (void)execute(statement);
}

// What would be carried out, or worked out, while the program only reads and writes rows: triggers, views,
// virtual tables, generated columns other than our own.
base::Status Connection::checkDefinitions()
{
    const QString table = QString::fromUtf16(generatedTable);
    const QString column = QString::fromUtf16(generatedColumn);
    const auto generated = select(u"SELECT t.sql FROM sqlite_schema t, pragma_table_xinfo(t.name) c "
                                  "WHERE t.type = 'table' AND t.name = ? AND c.name = ? AND c.hidden = 2"_s,
                                  {table, column});
    if (!generated)
        return generated.error();
    const bool isOwn =
        generated->count() == 1 && declaresOwnGeneratedColumn(generated->rows.front().front().toString());
    const auto foreign =
        select(u"SELECT name FROM sqlite_schema WHERE type NOT IN ('table', 'index') OR rootpage = 0 "
               "UNION ALL SELECT c.name FROM sqlite_schema t, pragma_table_xinfo(t.name) c "
               "WHERE t.type = 'table' AND c.hidden <> 0 AND NOT (? AND t.name = ? AND c.name = ?)"_s,
               {isOwn ? 1 : 0, table, column});
    if (!foreign)
        return foreign.error();
    if (!foreign->isEmpty())
        return base::Error{u"このプログラムのものではない定義（"_s +
                           foreign->rows.front().front().toString() +
                           u"）が含まれているため、データベースを開けませんでした。"_s + rebuilding};
    return isOwn ? base::Status() : columnMissing(table, column);
}

// Without it no row could be told from what another program made of it.
base::Status Connection::checkCounter()
{
    const auto counter = select(u"SELECT count(*), count(CASE WHEN typeof(最終) = 'integer' "
                                "AND 最終 BETWEEN 0 AND 9007199254740992 THEN 1 END) FROM 版数"_s);
    if (!counter)
        return counter.error();
    return counter->rows.front() == QVariantList{1, 1}
               ? base::Status()
               : base::Error{u"テーブル「版数」の内容が正しくないため、データベースを開けませんでした。"_s +
                             rebuilding};
}

base::Status Connection::checkTables()
{
    const auto columns = select(u"SELECT t.name, c.name FROM sqlite_schema t, pragma_table_info(t.name) c "
                                "WHERE t.type = 'table'"_s);
    if (!columns)
        return columns.error();
    QSet<std::pair<QString, QString>> present;
    for (const QVariantList &row : columns->rows)
        present.insert({row.at(0).toString(), row.at(1).toString()});
    for (const Table &table : declaredTables()) {
        for (const QString &column : table.columns) {
            if (!present.contains({table.name, column}))
                return columnMissing(table.name, column);
        }
    }
    return checkDefinitions();
}

base::Status Connection::run(const QString &sql, const QVariantList &values,
                             const std::function<void(Statement &)> &read)
{
    if (!m_open)
        return errorFromCode(SQLITE_CANTOPEN, {});
    if (m_statements.size() > statementsKept)
        m_statements.clear();
    std::unique_ptr<Statement> &statement = m_statements[isKept(sql) ? sql : QString()];
    if (!statement || !isKept(sql))
        statement = std::make_unique<Statement>(handle(), sql);
    if (statement->code() == SQLITE_OK && statement->parameters() != values.size())
        return errorFromCode(SQLITE_RANGE, sql);
    statement->bind(values);
    read(*statement);
    const base::Status done = statement->code() == SQLITE_DONE ? base::Status() : errorFrom(handle());
    if (done && isKept(sql))
        statement->reset();
    else
        statement.reset();
    return done;
}

base::Result<Rows> Connection::select(const QString &sql, const QVariantList &values)
{
    Rows result;
    const base::Status read = run(sql, values, [&result](Statement &statement) {
        result.columns = statement.columns();
        while (statement.next())
            result.rows.push_back(statement.row());
    });
    return read ? base::Result<Rows>(std::move(result)) : read.error();
}

base::Result<int> Connection::execute(const QString &sql, const QVariantList &values)
{
    const base::Status done = run(sql, values, [](Statement &statement) {
        while (statement.next()) {
        }
    });
    return done ? base::Result<int>(sqlite3_changes(handle())) : done.error();
}

base::Result<std::vector<qint64>> Connection::integers(const QString &sql, const QVariantList &values)
{
    std::vector<qint64> found;
    const base::Status read =
        visit(sql, values, [&found](const Statement &row) { found.push_back(row.integer(0)); });
    return read ? base::Result<std::vector<qint64>>(std::move(found)) : read.error();
}

base::Status Connection::visit(const QString &sql, const QVariantList &values,
                               const std::function<void(const Statement &row)> &visit)
{
    return run(sql, values, [&visit](Statement &statement) {
        while (statement.next())
            visit(statement);
    });
}

} // namespace db
