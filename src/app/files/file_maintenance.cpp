#include "app/files/file_maintenance.h"

#include "app/files/DialogBackups.h"
#include "app/files/DialogCompile.h"
#include "app/files/backups.h"
#include "app/files/database_files.h"
#include "app/files/database_session.h"
#include "app/files/doubtful_rows.h"
#include "app/files/repair_report.h"
#include "app/files/shop_documents.h"
#include "app/files/table_emptying.h"
#include "base/dated_name.h"
#include "db/care/file_repair.h"
#include "ui/deletion.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

#include <QComboBox>
#include <QFileInfo>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QLabel *addLabel(const PlaceInPanel &place, QWidget &window, const QString &name)
{
    auto *label = new QLabel(&window);
    label->setObjectName(name);
    place(u"データベース"_s, label, PanelSide::Below);
    return label;
}

} // namespace

FileMaintenance::FileMaintenance(workspace::Workspace &workspace, DatabaseSession &session,
                                 const PlaceInPanel &place, QWidget &window)
    : QObject(&window)
    , m_workspace(workspace)
    , m_session(session)
    , m_window(window)
    , m_oldSize(addLabel(place, window, u"Label5"_s))
    , m_newSize(addLabel(place, window, u"Label7"_s))
    , m_tables(new QComboBox(&window))
{
    m_tables->setObjectName(u"Combo3"_s);
    m_tables->setAccessibleName(u"データを削除するテーブル"_s);
    m_tables->addItems(emptyingItems());
    m_tables->setPlaceholderText(u"選択してください"_s);
    m_tables->setCurrentIndex(-1); // so that nothing is deleted by pressing Enter twice
    place(u"テーブルのデータ削除"_s, m_tables, PanelSide::Above);
}

void FileMaintenance::repair()
{
    const QString fileName = m_session.fileName();
    m_session.close();
    m_oldSize->setText(u"Old FileSize %1 byte"_s.arg(QFileInfo(fileName).size()));
    m_newSize->clear();
    const bool repaired = repairFile();
    // Whatever came of it: the file under this name is whole, the old one or the new one.
    m_session.reopen();
    if (!repaired)
        return;
    m_newSize->setText(u"New FileSize %1 byte"_s.arg(QFileInfo(fileName).size()));
    tellDone(u"データベースを最適化しました"_s);
}

bool FileMaintenance::repairFile()
{
    const QString fileName = m_session.fileName();
    db::FileRepair repair(fileName);
    if (const base::Status begun = repair.begin(); !begun)
        return tell(begun.error().text);
    const auto faults =
        ui::runWithProgress(&m_window, u"データベースを検査しています。"_s,
                            [&](const base::Progress &progress) { return repair.check(progress); });
    if (!faults)
        return tell(faults.error().text);
    std::optional<db::Salvage> outcome;
    QString kept;
    if (*faults > 0) {
        outcome = salvaged(repair, *faults);
        if (!outcome)
            return false;
        kept = base::datedName(fileName, u"破損"_s, m_workspace.today());
    } else if (const base::Status compacted = ui::runWithProgress(
                   &m_window, u"データベースを最適化しています。"_s,
                   [&](const base::Progress &progress) { return repair.compact(progress); });
               !compacted) {
        return tell(compacted.error().text);
    }
    if (const base::Status finished = repair.finish(kept); !finished)
        return tell(finished.error().text);
    if (outcome)
        tell(repairReport(*outcome) + doubtfulText(*outcome) +
             u"\n壊れていたファイルは「%1」に残しました。"_s.arg(kept));
    return true;
}

QString FileMaintenance::doubtfulText(const db::Salvage &outcome) const
{
    const auto listed = listDoubtfulRows(outcome, m_session.fileName(), m_workspace.today());
    const QString text = listed ? *listed : listed.error().text;
    return text.isEmpty() ? text : u'\n' + text;
}

// Nothing when it failed, which is told then.
std::optional<db::Salvage> FileMaintenance::salvaged(db::FileRepair &repair, int faults)
{
    tell(u"検査の結果、データベースに破損が %1 か所見つかりました。"
         "読み取れる行を新しいファイルに移して修復します。"_s.arg(faults < 100 ? QString::number(faults)
                                                                               : u"100 以上"_s));
    auto outcome =
        ui::runWithProgress(&m_window, u"データベースを修復しています。"_s,
                            [&](const base::Progress &progress) { return repair.salvage(progress); });
    if (outcome)
        return std::move(*outcome);
    tell(outcome.error().text);
    return std::nullopt;
}

void FileMaintenance::buildAnew()
{
    DialogCompile dialog(m_workspace, m_session.fileName(), &m_window);
    dialog.exec();
    if (dialog.chosenFile().isEmpty())
        return;
    m_session.switchTo(dialog.chosenFile());
}

void FileMaintenance::emptyTable()
{
    const QString item = m_tables->currentText();
    if (item.isEmpty()) {
        tell(u"削除するテーブルを選択してください。"_s);
        return;
    }
    const auto rows = rowsToDelete(m_workspace.connection, item);
    if (!rows) {
        tell(rows.error().text);
        return;
    }
    if (!ui::askToDeleteMany(&m_window, m_workspace, item + u" を削除します。よろしいですか？"_s, *rows))
        return;
    const auto done = emptyTables(m_workspace.connection, item);
    if (done)
        emit emptied();
    tell(done ? *done : done.error().text);
}

void FileMaintenance::listBackups()
{
    auto backups = ui::runWithProgress(&m_window, u"バックアップを検査しています。"_s,
                                       [&](const base::Progress &progress) {
                                           return checkedBackups(m_workspace.applicationFolder(), progress);
                                       });
    if (!backups) {
        tell(backups.error().text);
        return;
    }
    DialogBackups dialog(m_workspace, std::move(*backups), m_session.hasFile(), &m_window);
    dialog.exec();
    if (dialog.wish() == DialogBackups::Wish::Open) {
        m_session.openCopyOfBackup(dialog.chosen().fileName);
    } else if (dialog.wish() == DialogBackups::Wish::Restore) {
        restore(dialog.chosen().fileName, dialog.chosen().written.toString(u"yyyy/MM/dd HH:mm"_s));
    }
}

void FileMaintenance::restore(const QString &backup, const QString &described)
{
    const QString target = m_session.fileName();
    if (isSameFile(backup, target)) {
        tell(
            u"現在のファイルがこのバックアップです。復元するファイルを開いてから、もう一度実行してください。"_s);
        return;
    }
    const QString kept = base::datedName(target, u"復元前"_s, m_workspace.today());
    if (!ui::prompts::askCautiously(&m_window,
                                    u"「%1」を %2 のバックアップに戻します。\n"
                                    "現在の内容は「%3」に残します。よろしいですか？"_s.arg(
                                        QFileInfo(target).fileName(), described, QFileInfo(kept).fileName())))
        return;
    const auto issued = slips::allIssuedRows(m_workspace.connection);
    m_session.close();
    const base::Status restored = ui::runWithProgress(
        &m_window, u"バックアップを復元しています。"_s,
        [&](const base::Progress &progress) { return restoreBackup(backup, target, kept, progress); });
    m_session.reopen();
    if (!restored) {
        tell(restored.error().text);
        return;
    }
    const QString carried = carryIssuedOver(issued);
    bringDocuments(backup);
    tellDone(u"バックアップを復元しました"_s + carried);
}

// What was issued after the backup is out in the world.
QString FileMaintenance::carryIssuedOver(const base::Result<slips::IssuedRows> &issued)
{
    if (!m_session.isOpen())
        return {};
    const auto carried =
        issued ? slips::carryOver(m_workspace.connection, *issued) : base::Result<int>(issued.error());
    if (!carried)
        return u"が、バックアップの後に発行した書類の控えを引き継げませんでした（%1）"_s.arg(
            carried.error().text);
    return *carried > 0
               ? u"（バックアップの後に発行した書類 %1 件の控えは、発行控えに残しました）"_s.arg(*carried)
               : QString();
}

// Those that the file of before did not know any more, or that went with it.
void FileMaintenance::bringDocuments(const QString &backup)
{
    if (!m_session.isOpen())
        return;
    const QString untold = ui::runWithProgress(
        &m_window, u"発行控えをコピーしています。"_s, [&](const base::Progress &progress) {
            return takeDocumentsAlong(m_workspace.connection, backup, m_session.fileName(),
                                      m_workspace.applicationFolder(), progress);
        });
    if (!untold.isEmpty())
        tell(untold);
}

// The work on the file is one thing, whether it could be opened again another.
void FileMaintenance::tellDone(const QString &done)
{
    tell(m_session.isOpen() ? done + u"。"_s : done + u"が、開けませんでした。\n"_s + m_session.reason());
}

// \return false, for what ends with it
bool FileMaintenance::tell(const QString &text)
{
    ui::prompts::inform(&m_window, text);
    return false;
}

} // namespace app
