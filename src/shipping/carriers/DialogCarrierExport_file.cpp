// The file itself: what is checked before, and what is noted once it is complete.
#include "base/dated_name.h"
#include "shipping/carriers/DialogCarrierExport.h"
#include "shipping/carriers/DialogCarrierSettings.h"
#include "shipping/carriers/DialogTrackingImport.h"
#include "text/dates.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogCarrierExport.h"
#include "workspace/workspace.h"
#include "workspace/workspace_targets.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qsizetype mostNamed = 10; // in one message

} // namespace

void DialogCarrierExport::exportTicked()
{
    if (!mayLeaveMending() || !checkSettings())
        return;
    const std::vector<CarrierParcel> parcels = m_model.ticked();
    if (!checkRows(parcels))
        return;
    const QString fileName = chooseFile();
    if (!fileName.isEmpty())
        write(fileName, parcels);
}

// The page of the settings opens where something is missing; the export goes on once nothing is.
bool DialogCarrierExport::checkSettings()
{
    const auto missing = settingsFindings(program(), settings());
    if (missing.empty())
        return true;
    ui::prompts::inform(this, missing.front().what + u"\n「運送会社の設定」で入力してください。"_s);
    openSettings();
    return settingsFindings(program(), settings()).empty();
}

bool DialogCarrierExport::checkRows(const std::vector<CarrierParcel> &parcels)
{
    const auto changed = changedSince(workspace().connection, parcels);
    if (!tell(changed.status()))
        return false;
    if (!changed->empty()) {
        ui::prompts::inform(
            this, u"発送ID %1 など %2 件が、ほかのプログラムで変更されています。一覧を読み直しました。"
                  "確かめてから、もう一度書き出してください。"_s.arg(changed->front())
                      .arg(changed->size()));
        renew();
        return false;
    }
    if (!m_findings.empty()) {
        ui::prompts::inform(
            this, u"直すところが %1 か所あるため、書き出しませんでした。下の一覧で直してください。"_s.arg(
                      m_findings.size()));
        m_ui->DataGrid2->setFocus();
        return false;
    }
    if (m_ui->DTPicker3->date() < workspace().today() &&
        !ui::prompts::askCautiously(this, u"出荷日が今日より前です。このまま書き出しますか。"_s)) {
        m_ui->DTPicker3->setFocus();
        return false;
    }
    return settleOldOnes(parcels) && settleRepeats(parcels);
}

// Whoever ticks all of a long list may have meant the new ones.
bool DialogCarrierExport::settleOldOnes(const std::vector<CarrierParcel> &parcels)
{
    QStringList old;
    for (const CarrierParcel &parcel : parcels) {
        if (!exportDoubt(program(), parcel).isEmpty())
            old << u"発送ID %1　受付日 %2　%3"_s.arg(parcel.shipment.id)
                       .arg(text::formatDate(parcel.shipment.accepted), parcel.shipment.consignee.name1);
    }
    const QString more = old.size() > mostNamed ? u"\nほか %1 件"_s.arg(old.size() - mostNamed) : QString();
    return old.isEmpty() ||
           ui::prompts::askCautiously(this,
                                      u"60 日以上前の発送が %1 件あります。すでに発送していませんか。"
                                      "このまま書き出しますか。"_s.arg(old.size()),
                                      old.mid(0, mostNamed).join(u'\n') + more);
}

bool DialogCarrierExport::settleRepeats(const std::vector<CarrierParcel> &parcels)
{
    const auto again = std::count_if(parcels.begin(), parcels.end(), [](const CarrierParcel &parcel) {
        return parcel.shipment.exported.isValid();
    });
    return again == 0 ||
           ui::prompts::askCautiously(
               this,
               u"%1 件は、すでに書き出しています。二重に発送することになりませんか。もう一度書き出しますか。"_s
                   .arg(again));
}

QString DialogCarrierExport::chooseFile()
{
    const QString title = programName(program()) + u' ' + base::isoDay(workspace().today());
    const QString fileName =
        ui::file_dialogs::saveFile(this, u"%1へ渡すファイル"_s.arg(programName(program())),
                                   u"CSV ファイル (*.csv);;すべてのファイル (*)"_s, u"csv"_s,
                                   ui::file_dialogs::proposedFile(title, u"csv"_s));
    if (fileName.isEmpty())
        return {};
    if (workspace::isDatabase(workspace(), fileName)) {
        ui::prompts::inform(this, ui::messages::databaseTarget());
        return {};
    }
    if (const QFileInfo target(fileName); target.exists() && !target.isFile()) {
        ui::prompts::inform(
            this,
            u"ファイルではないため、書き出せません。別の名前を選んでください。(%1)"_s.arg(target.fileName()));
        return {};
    }
    return ui::prompts::askToOverwrite(this, fileName) ? fileName : QString();
}

void DialogCarrierExport::write(const QString &fileName, const std::vector<CarrierParcel> &parcels)
{
    const base::Status written =
        ui::runWithProgress(this, u"書き出しています。"_s, [&](const base::Progress &progress) {
            return writeCarrierFile(fileName, program(), parcels, settings(), progress);
        });
    if (!written) {
        if (!written.error().cancelled)
            tell(written);
        return;
    }
    const base::Status marked = markExported(workspace().connection, parcels, workspace().today());
    const QString told =
        u"%1 件を書き出しました。\n%2"_s.arg(parcels.size()).arg(QDir::toNativeSeparators(fileName));
    if (marked) {
        m_model.tickAll(false);
        ui::prompts::inform(
            this, told, QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Information,
            u"表計算ソフトで開いて保存すると、電話番号などの先頭の 0 が失われます。そのまま%1に"
            "取り込んでください。"_s.arg(programName(program())));
    } else {
        ui::prompts::inform(this,
                            told +
                                u"\nしかし、出力日を記録できませんでした。二重に書き出さないように注意して"
                                "ください。\n"_s +
                                marked.error().text);
    }
    renew();
}

void DialogCarrierExport::openSettings()
{
    if (!mayLeaveMending())
        return;
    DialogCarrierSettings dialog(workspace(), this);
    dialog.openPage(program());
    if (dialog.exec() == QDialog::Accepted)
        renew();
}

void DialogCarrierExport::importNumbers()
{
    if (!mayLeaveMending())
        return;
    DialogTrackingImport dialog(workspace(), this);
    dialog.exec();
    renew();
}

} // namespace shipping
