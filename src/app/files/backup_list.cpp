#include "app/files/backup_list.h"

#include "db/care/file_repair.h"
#include "db/file_header.h"
#include "db/old_files/old_file.h"
#include "db/schema.h"
#include "workspace/backup_places.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

Backup described(const QString &fileName, const QString &database)
{
    const QFileInfo info(fileName);
    return {fileName, database, info.lastModified(), info.size(), false, u"破損"_s};
}

std::vector<Backup> foundBackups(const QString &applicationFolder)
{
    std::vector<Backup> found;
    const QDir top(applicationFolder);
    const QStringList last =
        top.entryList({u"BackupKanbalore.cdb"_s, u"BackupKanbalore *.cdb"_s}, QDir::Files);
    for (const QString &name : last)
        found.push_back(described(top.filePath(name), u"（終了時）"_s));
    const QDir folder(workspace::backupFolderIn(applicationFolder));
    const QStringList names = folder.entryList(QDir::Files);
    for (const QString &name : names) {
        if (const QString database = workspace::readDatedName(name).database; !database.isEmpty())
            found.push_back(described(folder.filePath(name), database));
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const Backup &one, const Backup &other) { return one.written > other.written; });
    return found;
}

// A damaged one is no failure: it is listed as such.
base::Status look(Backup &backup, const base::Progress &progress)
{
    const int version = db::storedVersion(backup.fileName);
    if (version <= 0 || version > db::schemaVersion) {
        if (db::oldFormatOf(backup.fileName) != db::OldFormat::None)
            backup.finding = u"以前の形式"_s;
        else if (version > 0)
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

} // namespace app
