#include "db/migrations.h"

#include "base/dated_name.h"
#include "db/care/backup.h"
#include "db/care/plain_handle.h"
#include "db/file_header.h"
#include "db/schema.h"
#include "db/schema_text.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

base::Error notMigrated(const base::Error &why)
{
    return {u"古い版のデータベースを新しい版に移せませんでした。"_s + why.text};
}

// The file's own version once a journal is played back; 0 when it is not ours.
base::Result<qint64> versionIn(PlainHandle &file)
{
    const auto id = file.number("PRAGMA application_id");
    if (!id)
        return id;
    return *id == qint64(applicationId) ? file.number("PRAGMA user_version") : 0;
}

base::Status runSteps(PlainHandle &file, qint64 version, const Migrations &steps)
{
    for (const Migration &step : steps) {
        if (step.version <= version)
            continue;
        if (step.version != version + 1)
            return base::Error{u"途中の版（%1）への手順がありません。"_s.arg(version + 1)};
        if (const base::Status done = file.run(step.statements); !done)
            return done;
        if (const base::Status numbered =
                file.run("PRAGMA user_version = " + QByteArray::number(step.version));
            !numbered)
            return numbered;
        version = step.version;
    }
    return {};
}

base::Status migrateInTransaction(PlainHandle &file, const Migrations &steps)
{
    if (const base::Status begun = file.run("BEGIN IMMEDIATE"); !begun)
        return begun;
    // Read again under the lock: another program may have been quicker.
    const auto version = versionIn(file);
    base::Status done = version ? runSteps(file, *version, steps) : version.status();
    if (done)
        done = file.run("COMMIT");
    if (!done)
        (void)file.run("ROLLBACK");
    return done;
}

} // namespace

const Migrations &migrations()
{
    static const Migrations all{{2, migration2Text}, {3, migration3Text}, {4, migration4Text}};
    return all;
}

base::Status migrate(const QString &fileName, const QDate &today, const Migrations &steps)
{
    const int target = steps.empty() ? schemaVersion : steps.back().version;
    const int stored = storedVersion(fileName);
    // With a journal the header may be ahead of what holds.
    if (stored <= 0 || (stored >= target && !QFileInfo::exists(fileName + u"-journal"_s)))
        return {};
    PlainHandle file;
    if (const base::Status opened = file.open(fileName); !opened)
        return notMigrated(opened.error());
    const auto version = versionIn(file);
    if (!version)
        return notMigrated(version.error());
    if (*version <= 0 || *version >= target)
        return {};
    const auto foreign =
        file.number("SELECT count(*) FROM sqlite_schema WHERE type NOT IN ('table', 'index')");
    if (!foreign || *foreign > 0)
        return foreign ? base::Status(base::Error{u"このプログラムのものではない定義が含まれているため、"
                                                  "データベースを開けませんでした。"_s})
                       : base::Status(notMigrated(foreign.error()));
    const QString kept = base::datedName(fileName, u"版%1"_s.arg(*version), today);
    if (const base::Status copied = copyDatabase(file, kept); !copied)
        return notMigrated(copied.error());
    const base::Status done = migrateInTransaction(file, steps);
    if (!done) {
        QFile::remove(kept);
        return notMigrated(done.error());
    }
    return {};
}

} // namespace db
