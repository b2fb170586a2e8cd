#include "app/files/opened_backups.h"

#include "app/files/backup_origin.h"
#include "base/same_file.h"
#include "db/care/use_mark.h"
#include "db/connection.h"
#include "db/migrations.h"
#include "workspace/backup_places.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QString stateNoteOf(const QString &copy)
{
    const QFileInfo info(copy);
    return info.path() + u'/' + info.completeBaseName() + u".state"_s;
}

bool isUntouched(const QString &copy)
{
    QFile note(stateNoteOf(copy));
    const QByteArray noted = note.open(QIODevice::ReadOnly) ? note.readAll() : QByteArray();
    return !noted.isEmpty() && noted == stateOf(copy);
}

// A pattern made of \a beginning would take the signs in a file's name for wildcards.
void removeAll(const QDir &folder, const QString &beginning)
{
    const QStringList names = folder.entryList(QDir::Files);
    for (const QString &name : names) {
        if (name.startsWith(beginning) && name.endsWith(u".cdb"_s))
            QFile::remove(folder.filePath(name));
    }
}

} // namespace

base::Status readyToBeOpened(const QString &copy, const QDate &today)
{
    const base::Status upToDate = db::migrate(copy, today);
    // What the copy was like in an older version, the backup itself still is.
    const QFileInfo info(copy);
    removeAll(info.dir(), info.completeBaseName() + u" 版"_s);
    if (!upToDate) {
        QFile::remove(copy);
        return upToDate;
    }
    // Opening adds the indexes that were declared since: no work of the clerk's.
    (void)db::Connection().open(copy);
    QFile note(stateNoteOf(copy));
    if (note.open(QIODevice::WriteOnly))
        note.write(stateOf(copy)); // without it the copy stays
    return {};
}

LeftCopy leaveCopy(const QString &fileName, const QString &applicationFolder)
{
    const QFileInfo info(fileName);
    if (!info.isFile() ||
        !base::isSameFile(info.absolutePath(), workspace::openedBackupsIn(applicationFolder)))
        return LeftCopy::None;
    db::UseMark mark;
    if (!mark.set(fileName, db::UseMark::Kind::Exclusive) || !isUntouched(fileName))
        return LeftCopy::Kept;
    const QString backups = workspace::datedPrefix(fileName);
    if (!QFile::remove(fileName))
        return LeftCopy::Kept;
    QFile::remove(stateNoteOf(fileName));
    removeAll(QDir(workspace::backupFolderIn(applicationFolder)), backups);
    return LeftCopy::Cleared;
}

} // namespace app
