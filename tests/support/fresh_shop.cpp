#include "support/fresh_shop.h"

#include "db/create.h"

#include <sqlite3.h>

using namespace Qt::StringLiterals;

FreshShop::FreshShop()
    : now(QDate(2026, 4, 1), QTime(10, 0))
    , settings(settingsFolder.filePath(u"settings.ini"_s))
    , workspace(connection, settings, folder.path(), [this] { return now; })
{
    if (const auto created = db::createDatabase(path(u"shop.cdb"_s)); !created)
        qFatal("%s", qPrintable(created.error().text));
    if (const auto opened = connection.open(path(u"shop.cdb"_s)); !opened)
        qFatal("%s", qPrintable(opened.error().text));
}

void FreshShop::run(const QString &sql, const QVariantList &values)
{
    if (const auto done = connection.execute(sql, values); !done)
        qFatal("%s: %s", qPrintable(sql), qPrintable(done.error().text));
}

void FreshShop::fireTriggers()
{
    sqlite3_db_config(connection.handle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 1, nullptr);
}

QVariant FreshShop::value(const QString &sql, const QVariantList &values)
{
    const auto found = connection.select(sql, values);
    if (!found)
        qFatal("%s: %s", qPrintable(sql), qPrintable(found.error().text));
    return found->isEmpty() ? QVariant() : found->rows.front().front();
}

QStringList FreshShop::rows(const QString &sql, const QVariantList &values)
{
    const auto found = connection.select(sql, values);
    if (!found)
        qFatal("%s: %s", qPrintable(sql), qPrintable(found.error().text));
    QStringList lines;
    for (const QVariantList &row : found->rows) {
        QStringList cells;
        for (const QVariant &cell : row)
            cells << (cell.isNull() ? u"-"_s : cell.toString());
        lines << cells.join(u'|');
    }
    return lines;
}
