#include "db/care/backup.h"

#include "base/flush.h"
#include "db/care/plain_handle.h"
#include "db/care/use_mark.h"
#include "db/connection.h"
#include "db/errors.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

QString temporaryNameFor(const QString &target) { return target + u".tmp"_s; }

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
    if (code == SQLITE_DONE)
        return {};
    return goesOn ? errorFromCode(code, QString::fromUtf8(sqlite3_errstr(code))) : base::cancelled();
}

base::Status writeCopy(sqlite3 *from, const QString &fileName, const base::Progress &progress)
{
    PlainHandle to;
    if (const base::Status opened = to.open(fileName, PlainHandle::Mode::Create); !opened)
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
    // A copy of an installed read-only file is there to be worked in.
    to.setPermissions(from.permissions() | QFile::ReadOwner | QFile::WriteOwner);
    return {};
}

base::Status finish(base::Status written, const QString &temporary, const QString &target)
{
    if (written)
        written = base::flushFile(temporary);
    if (written)
        written = replaceDatabase(temporary, target);
    if (!written)
        QFile::remove(temporary);
    return written;
}

base::Status copyThrough(sqlite3 *from, const QString &target, const base::Progress &progress)
{
    const QString temporary = temporaryNameFor(target);
    QFile::remove(temporary);
    return finish(writeCopy(from, temporary, progress), temporary, target);
}

} // namespace

base::Status copyDatabase(Connection &connection, const QString &target, const base::Progress &progress)
{
    return copyThrough(connection.handle(), target, progress);
}

base::Status copyDatabase(const PlainHandle &source, const QString &target, const base::Progress &progress)
{
    return copyThrough(source.get(), target, progress);
}

base::Status copyDatabase(const QString &source, const QString &target, const base::Progress &progress)
{
    PlainHandle handle;
    if (!QFileInfo(source).isFile())
        return base::Error{u"ファイルが見つからないため、コピーできませんでした。("_s + source + u")"_s};
    const base::Status opened = handle.open(source);
    return opened ? copyThrough(handle.get(), target, progress) : opened;
}

base::Status replaceDatabase(const QString &from, const QString &target)
{
    UseMark mark;
    const base::Status alone = mark.set(target, UseMark::Kind::Exclusive);
    return alone ? replaceDatabase(from, target, mark) : alone;
}

base::Status replaceDatabase(const QString &from, const QString &target, const UseMark &)
{
    for (const QString &suffix : {u"-journal"_s, u"-wal"_s, u"-shm"_s})
        QFile::remove(target + suffix);
    return base::replaceFile(from, target);
}

base::Status copyFile(const QString &source, const QString &target, const base::Progress &progress)
{
    if (QFileInfo::exists(target))
        return base::Error{u"同じ名前のファイルがあるため、コピーできませんでした。("_s + target + u")"_s};
    const QString temporary = temporaryNameFor(target);
    QFile::remove(temporary);
    return finish(copyBytes(source, temporary, target, progress), temporary, target);
}

} // namespace db
