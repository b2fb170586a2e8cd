#include "app/files/shop_documents.h"

#include "base/same_file.h"
#include "db/connection.h"
#include "slips/issued/document_copies.h"
#include "workspace/backup_places.h"
#include "workspace/document_places.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QString notCopied(const base::Error &error, const QString &from, const QString &to)
{
    const QString what =
        error.cancelled
            ? u"発行控えの PDF のコピーを中止しました。残りはまだコピーされていません。"_s
            : u"データベースはコピーしましたが、発行控えの PDF をコピーできませんでした。"_s + error.text;
    return what + u"\n次のフォルダの中身を、後でコピーしてください。\n%1\n→ %2"_s.arg(
                      QDir::toNativeSeparators(from), QDir::toNativeSeparators(to));
}

QString lacking(int count)
{
    return u"発行控えの PDF のうち %1 件は、元のフォルダにないか壊れているため、コピーできませんでした。\n"
           "「帳票」「発行控え」の「すべて検査」で確かめられます。"_s.arg(count);
}

} // namespace

QString takeDocumentsAlong(db::Connection &connection, const QString &source, const QString &target,
                           const QString &applicationFolder, const base::Progress &progress)
{
    const QStringList from = workspace::documentFoldersOf(source, applicationFolder);
    const QString to = workspace::documentFolderOf(target);
    const auto copies = slips::copyDocuments(connection, from, {to}, progress);
    if (!copies)
        return notCopied(copies.error(), from.front(), to);
    return copies->lacking > 0 ? lacking(copies->lacking) : QString();
}

// One copy does for all backups: that of the last exit finds its documents among those of the days.
QString backUpDocuments(db::Connection &connection, const QString &applicationFolder,
                        const base::Progress &progress)
{
    const QString file = connection.fileName();
    if (!connection.isOpen() || workspace::isStoredBackup(file, applicationFolder))
        return {};
    const QDir backups(workspace::backupFolderIn(applicationFolder));
    const QString own =
        workspace::documentFolderOf(backups.filePath(workspace::datedPrefix(file) + u".cdb"_s));
    QStringList to{own};
    to << workspace::documentFoldersOf(workspace::backupFileIn(applicationFolder), applicationFolder);
    QStringList from = workspace::documentFoldersOf(file, applicationFolder);
    const auto copies = slips::copyDocuments(connection, from, to, progress);
    return copies || copies.error().cancelled ? QString() : notCopied(copies.error(), from.front(), own);
}

} // namespace app
