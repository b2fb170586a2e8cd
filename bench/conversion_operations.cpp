#include "conversion_operations.h"

#include "measuring.h"
#include "old_file_maker.h"

#include "db/old_files/conversion.h"
#include "db/schema.h"

#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

constexpr int timesOver = 25; // makes some 50,000 slip lines of the sample's
constexpr double allowed = 3;

void convert(const QString &source, const QString &target)
{
    const auto converted = db::convertOldFile(source, target, base::unwatched);
    if (!converted || !converted->isComplete())
        qFatal("the old file was not carried over");
}

void printTables(const QString &source)
{
    for (const db::Table &table : db::tables()) {
        if (table.firstColumns == 0)
            continue;
        QProcess reader;
        reader.setStandardOutputFile(QProcess::nullDevice());
        reader.start(QStringLiteral(MDB_EXPORT), {source, table.name});
        if (!reader.waitForFinished() || reader.exitCode() != 0)
            qFatal("mdb-export does not run");
    }
}

} // namespace

void registerConversion(const QDir &folder, std::vector<Row> &rows)
{
    folder.mkpath(u"."_s);
    const QString source = folder.filePath(u"old.cdb"_s);
    const QString target = folder.filePath(u"converted.cdb"_s);
    const int lines = enlargeOldFile(QStringLiteral(LEGACY_FILE), source, timesOver);
    rows.push_back({"conversion of an old file", std::to_string(lines) + " slip lines", allowed});
    add(rows.size() - 1, "ours", [source, target] {
        QFile::remove(target);
        return secondsOf([&] { convert(source, target); });
    });
    add(rows.size() - 1, "bare", [source] { return secondsOf([&] { printTables(source); }); });
}

} // namespace bench
