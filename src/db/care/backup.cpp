#include "db/care/backup.h"

#include "base/file_rights.h"
#include "base/replacement.h"
#include "db/care/plain_handle.h"
#include "db/care/use_mark.h"
#include "db/connection.h"
#include "db/errors.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <sqlite3.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// Pages a step; between the steps another program can write.
constexpr int pagesAtOnce = 4096;

base::Status copyPages(sqlite3 *from, sqlite3 *to, const base::Progress &progress)
{
    sqlite3_backup *backup = sqlite3_backup_init(to, "main", from, "main");
    if (!backup)
        return errorFrom(to);
    bool goesOn = true;
    int code = SQLITE_OK;
    while (code == SQLITE_OK && goesOn) {
        code = sqlite3_backup_step(backup, pagesAtOnce);
        const int total = sqlite3_backup_pagecount(backup);
        goesOn = progress(total - sqlite3_backup_remaining(backup), total);
    }
    sqlite3_backup_finish(backup);
    if (!goesOn)
        return base::cancelled();
    return code == SQLITE_DONE ? base::Status()
                               : errorFromCode(code, QString::fromUtf8(sqlite3_errstr(code)));
}

base::Status writeCopy(sqlite3 *from, const QString &fileName, const base::Progress &progress)
{
    PlainHandle to;
    if (const base::Status opened = to.open(fileName); !opened)
        return opened;
    // The copy is flushed as a whole below and is nobody's until then.
    const base::Status ready = to.run("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF");
    return ready ? copyPages(from, to.get(), progress) : ready;
}

constexpr qint64 bytesAtOnce = 4 << 20;

// \a target: the name in the sentence for the user
base::Status copyBytes(const QString &source, const QString &copy, const QString &target,
                       const base::Progress &progress)
{
    QFile from(source);
    QFile to(copy);
    bool good = from.open(QIODevice::ReadOnly) && to.open(QIODevice::WriteOnly);
    while (good && !from.atEnd()) {
        const QByteArray bytes = from.read(bytesAtOnce);
        good = !bytes.isEmpty() && to.write(bytes) == bytes.size() && to.flush();
        if (good && !progress(from.pos(), from.size()))
            return base::cancelled();
    }
    if (!good)
        return base::Error{u"ファイルをコピーできませんでした。空き容量と、書き込みのできる場所かどうかを"
                           "確かめてください。("_s +
                           target + u")"_s};
    return {};
}

base::Status copyThrough(sqlite3 *from, const QString &target, const base::Progress &progress,
                         const std::function<base::Status(base::Replacement &)> &finish)
{
    base::Replacement copy(target);
    base::Status done = copy.begin();
    if (done)
        done = writeCopy(from, copy.name(), progress);
    return done ? finish(copy) : done;
}

const QStringList companions = {u"-journal"_s, u"-wal"_s, u"-shm"_s};

bool hasCompanion(const QString &fileName)
{
    return std::any_of(companions.begin(), companions.end(),
                       [&](const QString &suffix) { return QFileInfo::exists(fileName + suffix); });
}

// Has SQLite play back what a program left that broke off, where the file is sound enough for it.
void settle(const QString &fileName)
{
    PlainHandle file;
    if (hasCompanion(fileName) && file.open(fileName))
        (void)file.number("PRAGMA schema_version");
}

// A second name costs no room; not every file system has them.
base::Status keep(const QString &fileName, const QString &name)
{
    return base::linkFile(fileName, name) ? base::Status() : copyFile(fileName, name);
}

void moveCompanions(const QString &from, const QString &to)
{
    for (const QString &suffix : companions) {
        if (to.isEmpty())
            QFile::remove(from + suffix);
        else
            QFile::rename(from + suffix, to + suffix);
    }
}

base::Status openSource(PlainHandle &handle, const QString &source)
{
    if (!QFileInfo(source).isFile())
        return base::Error{u"ファイルが見つからないため、コピーできませんでした。("_s + source + u")"_s};
    return handle.open(source);
}

// A copy of an installed read-only file is there to be worked in.
void takeRights(const QString &source, const QString &target)
{
    base::giveRightsOf(source, target);
    QFile::setPermissions(target, QFile::permissions(target) | QFile::ReadOwner | QFile::WriteOwner);
}

} // namespace

Replacing keptAs(const QString &name)
{
    return {[name](const QString &) { return name; }};
}

base::Status copyDatabase(Connection &connection, const QString &target, const base::Progress &progress,
                          const Replacing &how)
{
    return copyThrough(connection.handle(), target, progress,
                       [&](base::Replacement &copy) { return replaceDatabase(copy, how); });
}

base::Status copyDatabase(const PlainHandle &source, const QString &target, const base::Progress &progress)
{
    return copyThrough(source.get(), target, progress,
                       [](base::Replacement &copy) { return replaceDatabase(copy); });
}

base::Status copyDatabase(const QString &source, const QString &target, const base::Progress &progress,
                          const Replacing &how)
{
    PlainHandle handle;
    const base::Status opened = openSource(handle, source);
    return opened ? copyThrough(handle.get(), target, progress,
                                [&](base::Replacement &copy) { return replaceDatabase(copy, how); })
                  : opened;
}

base::Status copyDatabase(const QString &source, const QString &target, const UseMark &mark,
                          const Replacing &how, const base::Progress &progress)
{
    PlainHandle handle;
    const base::Status opened = openSource(handle, source);
    return opened ? copyThrough(handle.get(), target, progress,
                                [&](base::Replacement &copy) { return replaceDatabase(copy, mark, how); })
                  : opened;
}

base::Status replaceDatabase(base::Replacement &from, const Replacing &how)
{
    UseMark mark;
    const base::Status alone = mark.set(from.target(), UseMark::Kind::Exclusive, how.patience);
    return alone ? replaceDatabase(from, mark, how) : alone;
}

base::Status replaceDatabase(base::Replacement &from, const UseMark &, const Replacing &how)
{
    const QString &target = from.target();
    QString kept;
    if (QFileInfo::exists(target)) {
        settle(target);
        kept = how.keepAs ? how.keepAs(from.name()) : QString();
    } else if (how.keepAs) {
        how.keepAs(from.name());
    }
    if (!kept.isEmpty()) {
        if (const base::Status done = keep(target, kept); !done)
            return done;
    }
    moveCompanions(target, kept);
    const base::Status replaced = from.finish();
    if (!replaced && !kept.isEmpty()) {
        moveCompanions(kept, target);
        QFile::remove(kept);
    }
    return replaced;
}

base::Status copyFile(const QString &source, const QString &target, const base::Progress &progress)
{
    if (QFileInfo::exists(target))
        return base::Error{u"同じ名前のファイルがあるため、コピーできませんでした。("_s + target + u")"_s};
    base::Replacement copy(target);
    if (const base::Status begun = copy.begin(); !begun)
        return begun;
    if (const base::Status written = copyBytes(source, copy.name(), target, progress); !written)
        return written;
    const base::Status finished = copy.finish();
    if (finished)
        takeRights(source, target);
    return finished;
}

} // namespace db
