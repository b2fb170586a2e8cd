// Work on whole files, against what SQLite's own interface needs for the same.
#include "file_operations.h"

#include "db/care/file_repair.h"
#include "db/create.h"

#include <QFile>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

// About 500 MB.
constexpr int manyCustomers = 100000;
constexpr int manySlips = 2300000;

QString compacted(const QString &fileName)
{
    const QString target = fileName + u".compact"_s;
    QFile::remove(target);
    return target;
}

// The whole command as the main window runs it, but for its boxes: the check, the compaction, the renaming.
void repairWholly(const QString &fileName)
{
    db::FileRepair repair(fileName);
    if (!repair.begin() || !repair.check(base::unwatched) || !repair.compact(base::unwatched) ||
        !repair.finish({}))
        qFatal("not repaired");
}

void compact(const QString &fileName)
{
    db::PlainHandle file;
    if (!file.open(fileName) || !db::compactInto(file, compacted(fileName), base::unwatched))
        qFatal("not compacted");
}

void vacuumInto(const QString &fileName)
{
    sqlite3 *file = nullptr;
    const QByteArray statement = "VACUUM INTO '" + compacted(fileName).toUtf8() + '\'';
    if (sqlite3_open(fileName.toUtf8().constData(), &file) != SQLITE_OK ||
        sqlite3_exec(file, statement.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        qFatal("not compacted");
    sqlite3_close(file);
}

void open(const QString &fileName)
{
    db::Connection connection;
    if (const base::Status opened = connection.open(fileName); !opened)
        qFatal("%s", qPrintable(opened.error().text));
}

} // namespace

void registerFileOperations(const Shops &shops, std::vector<Row> &rows)
{
    const QString shop = shops.copy(1000, 100000, u"compacted"_s);
    const std::size_t compaction = rows.size();
    rows.push_back({"compaction, bare: VACUUM INTO", "100,000 slips", 1.3});
    add(compaction, "ours", [shop] { return secondsOf([&] { compact(shop); }); });
    add(compaction, "bare", [shop] { return secondsOf([&] { vacuumInto(shop); }); });

    const std::size_t command = rows.size();
    rows.push_back({"repair and compaction with its check, bare: VACUUM INTO", "100,000 slips", 0});
    add(command, "ours", [shop] { return secondsOf([&] { repairWholly(shop); }); });
    add(command, "bare", [shop] { return secondsOf([&] { vacuumInto(shop); }); });

    const QString large = shops.shop(manyCustomers, manySlips);
    const QString empty = large + u".empty"_s;
    QFile::remove(empty);
    if (!db::createDatabase(empty))
        qFatal("%s cannot be written", qPrintable(empty));
    const std::size_t opening = rows.size();
    rows.push_back(
        {"file opened, bare: an empty one", std::to_string(QFile(large).size() / 1000000) + " MB", 1.5});
    add(opening, "ours", [large] { return secondsOf([&] { open(large); }); });
    add(opening, "bare", [empty] { return secondsOf([&] { open(empty); }); });
}

} // namespace bench
