#include "db/backup.h"

#include "db/connection.h"
#include "db/errors.h"
#include "db/flush.h"

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

Status copyPages(sqlite3 *from, sqlite3 *to)
{
    sqlite3_backup *backup = sqlite3_backup_init(to, "main", from, "main");
    if (!backup)
        return errorFrom(to);
    int code = SQLITE_OK;
    while (code == SQLITE_OK)
        code = sqlite3_backup_step(backup, pagesAtOnce);
    sqlite3_backup_finish(backup);
    return code == SQLITE_DONE ? Status() : errorFromCode(code, QString::fromUtf8(sqlite3_errstr(code)));
}

Status writeCopy(sqlite3 *from, const QString &fileName)
{
    sqlite3 *to = nullptr;
    const QByteArray utf8 = fileName.toUtf8();
    int code = sqlite3_open_v2(utf8.constData(), &to, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    // The copy is flushed as a whole below and is nobody's until then.
    if (code == SQLITE_OK)
        code = sqlite3_exec(to, "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF", nullptr, nullptr,
                            nullptr);
    const Status copied = code == SQLITE_OK ? copyPages(from, to) : Status(errorFrom(to));
    sqlite3_close(to);
    return copied;
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

} // namespace

Status copyDatabase(Connection &connection, const QString &target)
{
    const QString temporary = temporaryNameFor(target);
    QFile::remove(temporary);
    return finish(writeCopy(connection.handle(), temporary), temporary, target);
}

Status replaceDatabase(const QString &from, const QString &target)
{
    for (const QString &suffix : {u"-journal"_s, u"-wal"_s, u"-shm"_s})
        QFile::remove(target + suffix);
    return replaceFile(from, target);
}

Status copyFile(const QString &source, const QString &target)
{
    if (QFileInfo::exists(target))
        return Error{u"同じ名前のファイルがあるため、コピーできませんでした。("_s + target + u")"_s};
    const QString temporary = temporaryNameFor(target);
    QFile::remove(temporary);
    Status written;
    if (!QFile::copy(source, temporary))
        written = Error{u"ファイルをコピーできませんでした。空き容量と、書き込みのできる場所かどうかを"
                        "確かめてください。("_s +
                        target + u")"_s};
    else
        // A copy of an installed read-only file is there to be worked in.
        QFile::setPermissions(temporary,
                              QFile::permissions(temporary) | QFile::ReadOwner | QFile::WriteOwner);
    return finish(written, temporary, target);
}

} // namespace db
