#include "db/backup.h"

#include "db/connection.h"
#include "db/errors.h"
#include "db/flush.h"
#include "db/plain_handle.h"
#include "db/use_mark.h"

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

Status copyPages(sqlite3 *from, sqlite3 *to, const Progress &progress)
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
    return goesOn ? errorFromCode(code, QString::fromUtf8(sqlite3_errstr(code))) : cancelled();
}

Status writeCopy(sqlite3 *from, const QString &fileName, const Progress &progress)
{
    PlainHandle to;
    if (const Status opened = to.open(fileName, PlainHandle::Mode::Create); !opened)
        return opened;
    // The copy is flushed as a whole below and is nobody's until then.
    const Status ready = to.run("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF");
    return ready ? copyPages(from, to.get(), progress) : ready;
}

constexpr qint64 bytesAtOnce = 4 << 20;

// \a target: the name in the sentence for the user
Status copyBytes(const QString &source, const QString &copy, const QString &target, const Progress &progress)
{
    QFile from(source);
    QFile to(copy);
    bool good = from.open(QIODevice::ReadOnly) && to.open(QIODevice::WriteOnly);
    while (good && !from.atEnd()) {
        const QByteArray bytes = from.read(bytesAtOnce);
        good = !bytes.isEmpty() && to.write(bytes) == bytes.size() && to.flush();
        if (good && !progress(from.pos(), from.size()))
            return cancelled();
    }
    if (!good)
        return Error{u"ファイルをコピーできませんでした。空き容量と、書き込みのできる場所かどうかを"
                     "確かめてください。("_s +
                     target + u")"_s};
    // A copy of an installed read-only file is there to be worked in.
    to.setPermissions(from.permissions() | QFile::ReadOwner | QFile::WriteOwner);
    return {};
}

Status finish(Status written, const QString &temporary, const QString &target)
{
    if (written)
        written = flushFile(temporary);
    if (written)
        written = replaceDatabase(temporary, target);
    if (!written)
        QFile::remove(temporary);
    return written;
}

Status copyThrough(sqlite3 *from, const QString &target, const Progress &progress)
{
    const QString temporary = temporaryNameFor(target);
    QFile::remove(temporary);
    return finish(writeCopy(from, temporary, progress), temporary, target);
}

} // namespace

Status copyDatabase(Connection &connection, const QString &target, const Progress &progress)
{
    return copyThrough(connection.handle(), target, progress);
}

Status copyDatabase(const PlainHandle &source, const QString &target, const Progress &progress)
{
    return copyThrough(source.get(), target, progress);
}

Status copyDatabase(const QString &source, const QString &target, const Progress &progress)
{
    PlainHandle handle;
    if (!QFileInfo(source).isFile())
        return Error{u"ファイルが見つからないため、コピーできませんでした。("_s + source + u")"_s};
    const Status opened = handle.open(source);
    return opened ? copyThrough(handle.get(), target, progress) : opened;
}

Status replaceDatabase(const QString &from, const QString &target)
{
    UseMark mark;
    const Status alone = mark.set(target, UseMark::Kind::Exclusive);
    return alone ? replaceDatabase(from, target, mark) : alone;
}

Status replaceDatabase(const QString &from, const QString &target, const UseMark &)
{
    for (const QString &suffix : {u"-journal"_s, u"-wal"_s, u"-shm"_s})
        QFile::remove(target + suffix);
    return replaceFile(from, target);
}

Status copyFile(const QString &source, const QString &target, const Progress &progress)
{
    if (QFileInfo::exists(target))
        return Error{u"同じ名前のファイルがあるため、コピーできませんでした。("_s + target + u")"_s};
    const QString temporary = temporaryNameFor(target);
    QFile::remove(temporary);
    return finish(copyBytes(source, temporary, target, progress), temporary, target);
}

} // namespace db
