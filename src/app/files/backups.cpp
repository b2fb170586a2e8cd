#include "app/files/backups.h"

#include "app/files/database_files.h"
#include "db/care/backup.h"
#include "db/care/file_repair.h"
#include "db/care/use_mark.h"
#include "db/connection.h"
#include "db/file_header.h"
#include "db/old_files/old_file.h"
#include "db/schema.h"
#include "workspace/workspace.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QString backupFolder(const QString &applicationFolder)
{
    return workspace::joinPath(applicationFolder, u"Backup"_s);
}

// "shop~1a2b3c ": two files of one name in two folders are two databases.
QString prefixFor(const QString &fileName)
{
    const QFileInfo info(fileName);
    const QString path =
        info.canonicalFilePath().isEmpty() ? info.absoluteFilePath() : info.canonicalFilePath();
    const QByteArray hash =
        QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex().first(6);
    return info.completeBaseName() + u'~' + QString::fromLatin1(hash) + u' ';
}

const QRegularExpression &datedPattern()
{
    static const QRegularExpression pattern(uR"(^(?<database>.+)~[0-9a-f]{6} \d{4}-\d\d-\d\d\.cdb$)"_s);
    return pattern;
}

// Their dates are part of the names, so that their order is that of the names.
void removeOld(const QDir &folder, const QString &prefix)
{
    QStringList own;
    const QStringList all = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &name : all) {
        if (name.startsWith(prefix) && datedPattern().match(name).hasMatch())
            own << name;
    }
    while (own.size() > daysKept)
        QFile::remove(folder.filePath(own.takeFirst()));
}

Backup described(const QString &fileName, const QString &database)
{
    const QFileInfo info(fileName);
    return {fileName, database, info.lastModified(), info.size(), false, u"破損"_s};
}

std::vector<Backup> foundBackups(const QString &applicationFolder)
{
    std::vector<Backup> found;
    const QString last = workspace::joinPath(applicationFolder, QString::fromUtf16(db::backupFileName));
    if (QFileInfo(last).isFile())
        found.push_back(described(last, u"（終了時）"_s));
    const QDir folder(backupFolder(applicationFolder));
    const QStringList names = folder.entryList(QDir::Files);
    for (const QString &name : names) {
        if (const auto match = datedPattern().match(name); match.hasMatch())
            found.push_back(described(folder.filePath(name), match.captured(u"database"_s)));
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const Backup &one, const Backup &other) { return one.written > other.written; });
    return found;
}

// A damaged one is no failure: it is listed as such.
base::Status look(Backup &backup, const base::Progress &progress)
{
    if (!db::checkHeader(backup.fileName)) {
        if (db::oldFormatOf(backup.fileName) != db::OldFormat::None)
            backup.finding = u"以前の形式"_s;
        else if (db::storedVersion(backup.fileName) > db::schemaVersion)
            backup.finding = u"新しい版"_s;
        return {};
    }
    db::PlainHandle file;
    if (!file.open(backup.fileName))
        return {};
    const auto faults = db::countFaults(file, progress);
    if (!faults)
        return faults.error().cancelled ? base::Status(faults.error()) : base::Status();
    const auto customers = file.number("SELECT count(*) FROM 納品先");
    const auto slips = file.number("SELECT count(*) FROM 入出庫マスター");
    backup.isSound = *faults == 0 && customers && slips;
    if (backup.isSound) {
        backup.finding = u"正常"_s;
        backup.customers = *customers;
        backup.slips = *slips;
    }
    return {};
}

} // namespace

base::Status backUpDated(db::Connection &connection, const QString &applicationFolder, const QDate &today,
                         const base::Progress &progress)
{
    const QDir folder(backupFolder(applicationFolder));
    const QString fileName = connection.fileName();
    if (isBackupFile(fileName, applicationFolder) ||
        isSameFile(QFileInfo(fileName).absolutePath(), folder.absolutePath()))
        return {};
    if (!folder.mkpath(u"."_s))
        return base::Error{u"フォルダ「"_s + folder.path() + u"」を作成できませんでした。"_s};
    const QString prefix = prefixFor(fileName);
    const QString target = folder.filePath(prefix + today.toString(Qt::ISODate) + u".cdb"_s);
    if (const base::Status copied = db::copyDatabase(connection, target, progress); !copied)
        return copied;
    removeOld(folder, prefix);
    return {};
}

base::Result<std::vector<Backup>> checkedBackups(const QString &applicationFolder,
                                                 const base::Progress &progress)
{
    std::vector<Backup> backups = foundBackups(applicationFolder);
    qint64 total = 0;
    for (const Backup &backup : backups)
        total += backup.size;
    qint64 done = 0;
    for (Backup &backup : backups) {
        const auto checking = [&](qint64, qint64) { return progress(done, total); };
        if (const base::Status looked = look(backup, checking); !looked)
            return looked.error();
        done += backup.size;
        if (!progress(done, total))
            return base::cancelled();
    }
    return backups;
}

base::Status restoreBackup(const QString &from, const QString &target, const QString &kept,
                           const base::Progress &progress)
{
    db::UseMark mark;
    const base::Status alone = mark.set(target, db::UseMark::Kind::Exclusive);
    return alone ? db::copyDatabase(from, target, mark, db::keptAs(kept), progress) : alone;
}

} // namespace app
