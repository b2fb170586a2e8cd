#include "app/files/DialogBackups.h"

#include "ui_DialogBackups.h"
#include "workspace/backup_places.h"
#include "workspace/workspace.h"

#include <QDir>
#include <QHeaderView>
#include <QLocale>
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

DialogBackups::DialogBackups(workspace::Workspace &workspace, std::vector<Backup> backups, bool mayRestore,
                             QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogBackups>())
    , m_backups(std::move(backups))
    , m_mayRestore(mayRestore)
{
    m_ui->setupUi(this);
    fill();
    m_ui->lblCopies->setText(
        u"「開く」は、フォルダ「%1」に作る写しを開きます。写しは、変更しなければ、ほかのファイルを開いたときに消えます。"_s
            .arg(QDir::toNativeSeparators(workspace::openedBackupsIn(workspace.applicationFolder()))));
    connect(m_ui->cmdOpen, &QPushButton::clicked, this, [this] { choose(Wish::Open); });
    connect(m_ui->cmdRestore, &QPushButton::clicked, this, [this] { choose(Wish::Restore); });
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &DialogBackups::close);
    connect(m_ui->dgdBackups->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &DialogBackups::enableButtons);
    m_ui->dgdBackups->selectRow(0);
    enableButtons();
    setUp();
}

DialogBackups::~DialogBackups() = default;

const Backup &DialogBackups::chosen() const { return m_backups.at(static_cast<std::size_t>(currentRow())); }

int DialogBackups::currentRow() const { return m_ui->dgdBackups->currentIndex().row(); }

void DialogBackups::fill()
{
    auto *model = new QStandardItemModel(this);
    model->setHorizontalHeaderLabels(
        {u"日時"_s, u"データベース"_s, u"サイズ"_s, u"納品先"_s, u"伝票"_s, u"検査"_s});
    const QLocale locale;
    for (const Backup &backup : m_backups) {
        const auto count = [&](qint64 of) { return number(backup.isSound ? locale.toString(of) : u"-"_s); };
        const QList<QStandardItem *> row = {
            new QStandardItem(backup.written.toString(u"yyyy/MM/dd HH:mm"_s)),
            new QStandardItem(backup.database),
            number(u"%1 KB"_s.arg(locale.toString((backup.size + 1023) / 1024))),
            count(backup.customers),
            count(backup.slips),
            new QStandardItem(backup.finding),
        };
        for (QStandardItem *item : row)
            item->setEnabled(backup.isSound);
        model->appendRow(row);
    }
    m_ui->dgdBackups->setModel(model);
    m_ui->dgdBackups->horizontalHeader()->setStretchLastSection(true);
    const int widths[] = {150, 170, 110, 90, 90, 60};
    for (int column = 0; column < int(std::size(widths)); ++column)
        m_ui->dgdBackups->setColumnWidth(column, widths[column]);
    m_ui->Label1->setText(m_backups.empty() ? u"バックアップファイルはまだありません。"_s
                                            : u"バックアップファイルを選択してください。"_s);
}

void DialogBackups::enableButtons()
{
    const int row = currentRow();
    const bool isSound = row >= 0 && m_backups.at(static_cast<std::size_t>(row)).isSound;
    m_ui->cmdOpen->setEnabled(isSound);
    m_ui->cmdRestore->setEnabled(isSound && m_mayRestore);
}

void DialogBackups::choose(Wish wish)
{
    m_wish = wish;
    accept();
}

} // namespace app
