#include "app/files/DialogCompile.h"

#include "app/files/database_files.h"
#include "app/files/doubtful_rows.h"
#include "app/files/repair_report.h"
#include "app/files/shop_documents.h"
#include "base/dated_name.h"
#include "base/replacement.h"
#include "db/care/backup.h"
#include "db/connection.h"
#include "db/schema.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogCompile.h"
#include "workspace/workspace.h"
#include "workspace/workspace_targets.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QStandardItemModel>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QStandardItem *number(const QString &text)
{
    auto *item = new QStandardItem(text);
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return item;
}

} // namespace

DialogCompile::DialogCompile(workspace::Workspace &workspace, const QString &source, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogCompile>())
    , m_tables(new QStandardItemModel(this))
    , m_source(source)
{
    m_ui->setupUi(this);
    m_ui->lblSource->setText(source);
    m_tables->setHorizontalHeaderLabels({u"テーブル"_s, u"移した行"_s, u"読めなかった行"_s});
    for (const db::Table &table : db::tables())
        m_tables->appendRow({new QStandardItem(table.name), number({}), number({})});
    m_ui->dgdTables->setModel(m_tables);
    m_ui->dgdTables->horizontalHeader()->setStretchLastSection(true);
    m_ui->dgdTables->setColumnWidth(0, 200);
    m_ui->dgdTables->setColumnWidth(1, 120);
    m_ui->dgdTables->setColumnWidth(2, 140);
    connect(m_ui->Command1, &QPushButton::clicked, this, &DialogCompile::compile);
    connect(m_ui->Command2, &QPushButton::clicked, this, &DialogCompile::close);
    setUp();
}

DialogCompile::~DialogCompile() = default;

void DialogCompile::compile()
{
    const QString target = askForTarget();
    if (target.isEmpty())
        return;
    const auto outcome = build(target);
    if (!tell(outcome.status()))
        return;
    showOutcome(*outcome, target);
    bringDocuments(target);
    const QString whole = outcome->isComplete() ? u"すべての行を新しいファイルに移しました。"_s
                                                : u"読み取れる行を新しいファイルに移しました。"_s;
    if (!ui::prompts::ask(this, whole + u"\n新しいファイルで作業を続けますか？"_s))
        return;
    m_chosen = target;
    accept();
}

QString DialogCompile::askForTarget()
{
    const QString chosen = ui::file_dialogs::saveFile(this, u"新しいファイル名"_s, databaseFileFilters(),
                                                      u"cdb"_s, QFileInfo(m_source).absolutePath());
    if (chosen.isEmpty())
        return {};
    if (!workspace::isPossibleTarget(workspace(), chosen, m_source)) {
        ui::prompts::inform(this, u"ファイル名が不正です。"_s);
        return {};
    }
    return ui::prompts::askToOverwrite(this, chosen, keptNameOf(chosen))
               ? QFileInfo(chosen).absoluteFilePath()
               : QString();
}

QString DialogCompile::keptNameOf(const QString &fileName) const
{
    return base::datedName(fileName, u"上書き前"_s, workspace().today());
}

// Beside the target first: a file of that name is lost only when the new one is complete.
base::Result<db::Salvage> DialogCompile::build(const QString &target)
{
    base::Replacement file(target);
    return ui::runWithProgress(this, u"新しいファイルに移しています。"_s,
                               [&](const base::Progress &progress) -> base::Result<db::Salvage> {
                                   if (const base::Status begun = file.begin(); !begun)
                                       return begun.error();
                                   const auto outcome = db::rebuild(m_source, file.name(), progress);
                                   const base::Status done =
                                       outcome ? db::replaceDatabase(file, db::keptAs(keptNameOf(target)))
                                               : outcome.status();
                                   return done ? outcome : done.error();
                               });
}

void DialogCompile::bringDocuments(const QString &target)
{
    db::Connection connection;
    if (!connection.open(target))
        return; // who goes on in it is told why
    const QString untold =
        ui::runWithProgress(this, u"発行控えをコピーしています。"_s, [&](const base::Progress &progress) {
            return takeDocumentsAlong(connection, m_source, target, workspace().applicationFolder(),
                                      progress);
        });
    if (!untold.isEmpty())
        ui::prompts::inform(this, untold);
}

void DialogCompile::showOutcome(const db::Salvage &outcome, const QString &target)
{
    int row = 0;
    for (const db::SalvagedTable &table : outcome.tables) {
        m_tables->item(row, 1)->setText(QString::number(table.carried));
        m_tables->item(row, 2)->setText(db::unreadText(table));
        ++row;
    }
    const auto listed = listDoubtfulRows(outcome, target, workspace().today());
    QStringList said{repairRemarks(outcome), listed ? *listed : listed.error().text};
    said.removeAll(QString());
    m_ui->lblStray->setText(said.join(u'\n'));
}

} // namespace app
