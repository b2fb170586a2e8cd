#include "app/files/DialogConversion.h"

#include "app/files/old_file_conversion.h"
#include "db/schema.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui_DialogConversion.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QTableWidgetItem *numberItem(qint64 number)
{
    auto *item = new QTableWidgetItem(QLocale(QLocale::Japanese).toString(number));
    item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return item;
}

} // namespace

DialogConversion::DialogConversion(const QString &source, const QString &target,
                                   const db::ConversionSummary &summary, QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::DialogConversion>())
    , m_summary(summary)
    , m_target(target)
{
    m_ui->setupUi(this);
    m_ui->lblFiles->setText(u"「%1」を「%2」に変換しました。元のファイルはそのまま残っています。"_s.arg(
        QFileInfo(source).fileName(), QFileInfo(target).fileName()));
    m_ui->lblOutcome->setText(summary.isComplete()
                                  ? u"すべてのデータを移しました。"_s
                                  : u"移せなかったデータがあります。下の一覧を確かめてください。"_s);
    fillTables();
    QStringList findings;
    if (!summary.losses.isEmpty())
        findings << u"変換できなかったもの"_s << summary.losses << QString();
    if (!summary.notes.isEmpty())
        findings << u"変更点"_s << summary.notes;
    m_ui->txtFindings->setPlainText(findings.isEmpty() ? u"ありません。"_s : findings.join(u'\n'));
    connect(m_ui->cmdCopy, &QPushButton::clicked, this, &DialogConversion::copy);
    connect(m_ui->cmdSave, &QPushButton::clicked, this, &DialogConversion::save);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    m_ui->cmdClose->setFocus();
}

DialogConversion::~DialogConversion() = default;

void DialogConversion::fillTables()
{
    QTableWidget &grid = *m_ui->grdTables;
    grid.setRowCount(static_cast<int>(m_summary.tables.size()));
    int row = 0;
    for (const auto &table : m_summary.tables) {
        grid.setItem(row, 0, new QTableWidgetItem(table.name));
        grid.setItem(row, 1, numberItem(table.read));
        grid.setItem(row, 2, numberItem(table.written));
        ++row;
    }
    grid.horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    // All of this program's tables at a glance.
    grid.verticalHeader()->setDefaultSectionSize(grid.fontMetrics().height() + 4);
    const int shown = std::min(grid.rowCount(), static_cast<int>(db::tables().size()) + 1);
    grid.setMinimumHeight(grid.horizontalHeader()->sizeHint().height() +
                          shown * grid.verticalHeader()->defaultSectionSize() + 2 * grid.frameWidth());
}

void DialogConversion::copy() { QGuiApplication::clipboard()->setText(m_summary.text()); }

void DialogConversion::save()
{
    const QString chosen =
        ui::file_dialogs::saveFile(this, u"変換結果の保存"_s, u"テキスト (*.txt)"_s, u"txt"_s,
                                   QFileInfo(m_target).absolutePath() + u"/変換結果.txt"_s);
    if (chosen.isEmpty() || !ui::prompts::askToOverwrite(this, chosen))
        return;
    if (const base::Status saved = saveSummary(m_summary, chosen); !saved)
        ui::prompts::inform(this, saved.error().text);
}

} // namespace app
