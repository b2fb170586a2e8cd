#include "app/files/old_file_opening.h"

#include "app/files/DialogConversion.h"
#include "app/files/database_files.h"
#include "app/files/old_file_conversion.h"
#include "db/old_files/old_file.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/backup_places.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

// Asks until the name is one that a new file can have; empty when the user gave up.
QString askForTarget(QWidget *parent, const QString &source, const QString &applicationFolder)
{
    for (;;) {
        const QString chosen = ui::file_dialogs::saveFile(parent, u"新しい形式のファイル名"_s,
                                                          u"cdb ﾌｧｲﾙ (*.cdb);;すべてのファイル (*.*)"_s,
                                                          u"cdb"_s, proposedName(source));
        if (chosen.isEmpty())
            return {};
        if (isInitialFile(chosen, applicationFolder) || workspace::isBackupFile(chosen, applicationFolder))
            ui::prompts::inform(parent, u"ファイル名が不正です。"_s);
        else if (QFileInfo::exists(chosen))
            ui::prompts::inform(parent,
                                u"指定した名前のファイルが存在します。\n別の名前を指定してください。"_s);
        else
            return QFileInfo(chosen).absoluteFilePath();
    }
}

} // namespace

QString openableFile(QWidget *parent, const QString &fileName, const QString &applicationFolder)
{
    if (db::oldFormatOf(fileName) == db::OldFormat::None)
        return fileName;
    // What cannot be converted is told before a name is asked for.
    if (const base::Status readable = db::checkOldFile(fileName); !readable) {
        ui::prompts::inform(parent, readable.error().text);
        return {};
    }
    if (!ui::prompts::ask(parent, u"「%1」は以前の形式のデータベースファイルです。\n"
                                  "新しい形式のファイルに変換して開きます。\n元のファイルは変更しません。\n\n"
                                  "変換しますか？"_s.arg(QFileInfo(fileName).fileName())))
        return {};
    const QString target = askForTarget(parent, fileName, applicationFolder);
    if (target.isEmpty())
        return {};
    const auto summary = ui::runWithProgress(
        parent, u"以前の形式のファイルを変換しています。"_s,
        [&](const base::Progress &progress) { return convertOldFile(fileName, target, progress); });
    if (!summary) {
        if (!summary.error().cancelled)
            ui::prompts::inform(parent, summary.error().text);
        return {};
    }
    DialogConversion(fileName, target, *summary, parent).exec();
    return target;
}

} // namespace app
