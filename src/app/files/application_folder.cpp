#include "app/files/application_folder.h"

#include "base/dated_name.h"
#include "base/same_file.h"
#include "db/care/backup.h"
#include "db/file_header.h"
#include "db/old_files/old_file.h"
#include "db/schema.h"
#include "registers/postal/postal_origin.h"
#include "workspace/workspace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QStringList deliveredFiles() { return {QString::fromUtf16(db::initialFileName), u"Kanbalore.chm"_s}; }

bool holdsInitialFile(const QString &folder)
{
    return QFileInfo(workspace::joinPath(folder, QString::fromUtf16(db::initialFileName))).isFile();
}

// A database file of somebody's, or the mark of a copy that is carried about with its data. The delivered
// initial file is neither: it lies in every build, and a shop's backups do not belong there.
bool holdsShop(const QString &folder)
{
    const QString initial = QString::fromUtf16(db::initialFileName);
    QStringList found =
        QDir(folder).entryList({u"*.cdb"_s, QString::fromUtf16(portableMark)}, QDir::Files, QDir::NoSort);
    found.removeAll(initial);
    return !found.isEmpty();
}

// An initial file of an older version of this program, which a new one comes to replace.
base::Status putOlderAside(const QString &initial, const QString &source)
{
    const int version = db::storedVersion(initial);
    if (version <= 0 || version >= db::schemaVersion || !holdsInitialFile(source) ||
        base::isSameFile(initial, workspace::joinPath(source, QString::fromUtf16(db::initialFileName))))
        return {};
    const QDate written = QFileInfo(initial).lastModified().date();
    if (QFile::rename(initial, base::datedName(initial, u"版%1"_s.arg(version), written)))
        return {};
    return base::Error{u"以前の版の初期設定用のファイルの名前を変更できませんでした。("_s + initial + u")"_s};
}

constexpr int longestFilling = 20000; // ms

ApplicationFolder filled(const QString &folder, const FolderPlaces &places)
{
    if (!QDir().mkpath(folder))
        return {folder, u"フォルダ「"_s + folder + u"」を作成できませんでした。"_s};
    // Two programs that are started at once fill it one after the other. Where it cannot be locked, nothing
    // can be written either.
    QLockFile lock(workspace::joinPath(folder, u"Kanbalore.lock"_s));
    (void)lock.tryLock(longestFilling);
    const QString source = holdsInitialFile(places.executable) ? places.executable : places.installed;
    const QStringList files = deliveredFiles();
    // The earlier program's own initial file is no use here, but may hold someone's data.
    const QString initial = workspace::joinPath(folder, QString::fromUtf16(db::initialFileName));
    if (const base::Status aside = db::putOldFileAside(initial); !aside)
        return {folder, aside.error().text};
    if (const base::Status aside = putOlderAside(initial, source); !aside)
        return {folder, aside.error().text};
    for (const QString &name : files) {
        const QString from = workspace::joinPath(source, name);
        const QString to = workspace::joinPath(folder, name);
        if (QFileInfo::exists(to) || !QFileInfo(from).isFile())
            continue;
        if (const base::Status copied = db::copyFile(from, to); !copied)
            return {folder, copied.error().text};
    }
    if (const base::Status brought = registers::bringPostalData(source, folder); !brought)
        return {folder, brought.error().text};
    if (!holdsInitialFile(folder))
        return {folder, u"初期設定用のファイル Kanbalore.cdb がフォルダ「"_s + folder +
                            u"」にありません。もう一度インストールしてください。"_s};
    return {folder, {}};
}

} // namespace

FolderPlaces FolderPlaces::ofThisMachine(const QString &option)
{
    const QString executable = QCoreApplication::applicationDirPath();
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return {option.isEmpty() ? qEnvironmentVariable("KANBALORE_FOLDER") : option, executable,
            workspace::joinPath(data, u"Kanbalore"_s),
            QDir::cleanPath(executable + u'/' + QStringLiteral(KANBALORE_DATA))};
}

ApplicationFolder settleApplicationFolder(const FolderPlaces &places)
{
    if (!places.wanted.isEmpty())
        return filled(QDir::cleanPath(QFileInfo(places.wanted).absoluteFilePath()), places);
    if (holdsInitialFile(places.executable) && holdsShop(places.executable) &&
        QFileInfo(places.executable).isWritable())
        return {places.executable, {}};
    return filled(places.user, places);
}

} // namespace app
