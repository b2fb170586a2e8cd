// A file of version 1 brought up to date, against the same statements without a copy or a check.
#include "migration_operations.h"

#include "db/care/plain_handle.h"
#include "db/file_header.h"
#include "db/migrations.h"
#include "db/schema.h"

#include <QFile>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

constexpr int customers = 100000;
constexpr int slips = 1000000;

void runOrEnd(const QString &fileName, const QByteArray &statements)
{
    sqlite3 *file = nullptr;
    if (sqlite3_open(fileName.toUtf8().constData(), &file) != SQLITE_OK ||
        sqlite3_exec(file, statements.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("%s: %s", qPrintable(fileName), sqlite3_errmsg(file));
    sqlite3_close(file);
}

// The rows of \a shop in a file as version 1 made it; made when it is not there yet.
QString version1Of(const QString &shop)
{
    QString file = shop + u".version-1"_s;
    if (db::storedVersion(file) == 1)
        return file;
    QFile::remove(file);
    QFile schema(QStringLiteral(VERSION_1_SCHEMA));
    if (!schema.open(QIODevice::ReadOnly))
        qFatal("no schema of version 1");
    QByteArray statements = "PRAGMA synchronous = OFF; PRAGMA journal_mode = OFF; " + schema.readAll() +
                            "ATTACH '" + shop.toUtf8() + "' AS shop; BEGIN;";
    for (const db::Table &table : db::tables()) {
        if (table.firstColumns == 0)
            continue;
        const QString columns = table.columns.first(table.firstColumns).join(u", "_s);
        statements += u"INSERT INTO main.%1 (%2) SELECT %2 FROM shop.%1 ORDER BY %3;"_s
                          .arg(table.name, columns, table.key)
                          .toUtf8();
    }
    runOrEnd(file, statements + "COMMIT; PRAGMA application_id = 0x4B414E42; PRAGMA user_version = 1");
    return file;
}

QString freshCopy(const QString &file)
{
    QString copy = file + u".copy.cdb"_s;
    QFile::remove(copy);
    QFile::remove(file + u".copy 版1 2026-04-01.cdb"_s);
    if (!QFile::copy(file, copy))
        qFatal("%s cannot be copied", qPrintable(file));
    return copy;
}

double migrated(const QString &file)
{
    const QString copy = freshCopy(file);
    return secondsOf([&] {
        if (const base::Status done = db::migrate(copy, QDate(2026, 4, 1)); !done)
            qFatal("%s", qPrintable(done.error().text));
    });
}

double migratedBare(const QString &file)
{
    const QString copy = freshCopy(file);
    QByteArray statements = "BEGIN IMMEDIATE;";
    for (const db::Migration &step : db::migrations())
        statements += step.statements;
    statements += "PRAGMA user_version = " + QByteArray::number(db::schemaVersion) + "; COMMIT";
    return secondsOf([&] { runOrEnd(copy, statements); });
}

} // namespace

void registerMigration(const Shops &shops, std::vector<Row> &rows)
{
    const QString file = version1Of(shops.shop(customers, slips));
    const std::size_t row = rows.size();
    rows.push_back(
        {"file of version 1 brought up to date, bare: its statements alone", "1,000,000 slips", 1.5});
    add(row, "ours", [file] { return migrated(file); });
    add(row, "bare", [file] { return migratedBare(file); });
}

} // namespace bench
