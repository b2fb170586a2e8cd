#include "shipping/carriers/DialogTrackingImport.h"

#include "shipping/carriers/DialogTrackingColumns.h"
#include "shipping/carriers/carrier_file.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogTrackingImport.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QDir>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace shipping
{

DialogTrackingImport::DialogTrackingImport(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogTrackingImport>())
{
    m_ui->setupUi(this);
    m_ui->DataGrid1->setModel(&m_model);
    const int widths[] = {44, 100, 120, 180, 90, 120, 120, 280};
    for (int column = 0; column < TrackingModel::ColumnCount; ++column)
        m_ui->DataGrid1->setColumnWidth(column, widths[column]);
    m_ui->DataGrid1->letGiveWay({{TrackingModel::Remark, 160}, {TrackingModel::Consignee, 110}});
    connectControls();
    setUp();
    showState();
    m_ui->Command1->setFocus();
}

DialogTrackingImport::~DialogTrackingImport() = default;

void DialogTrackingImport::connectControls()
{
    connect(m_ui->Command1, &QPushButton::clicked, this, &DialogTrackingImport::chooseFile);
    connect(m_ui->Command2, &QPushButton::clicked, this, &DialogTrackingImport::write);
    connect(m_ui->Command3, &QPushButton::clicked, this, &DialogTrackingImport::reject);
    connect(m_ui->Command4, &QPushButton::clicked, this, &DialogTrackingImport::askColumns);
    connect(&m_model, &QAbstractItemModel::dataChanged, this, &DialogTrackingImport::showState);
    connect(new QShortcut(Qt::Key_Space, m_ui->DataGrid1, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &DialogTrackingImport::toggle);
    connect(m_ui->DataGrid1, &QTableView::clicked, this, [this](const QModelIndex &cell) {
        if (cell.column() == TrackingModel::Ticked)
            toggle();
    });
}

// --- The file ---

void DialogTrackingImport::chooseFile()
{
    if (!mayLeaveChoices())
        return;
    const QString fileName = ui::file_dialogs::openFile(
        this, u"運送会社の発行済みデータ"_s, u"CSV ファイル (*.csv *.txt);;すべてのファイル (*)"_s);
    if (!fileName.isEmpty())
        readFile(fileName);
}

void DialogTrackingImport::readFile(const QString &fileName)
{
    auto read = ui::runWithProgress(this, u"読み込んでいます。"_s, [&](const base::Progress &progress) {
        return readTrackingFile(fileName, workspace().connection.fileName(), progress);
    });
    if (!read) {
        if (!read.error().cancelled)
            tell(read.status());
        return;
    }
    std::optional<registers::ImportTable> before = std::exchange(m_table, std::move(*read));
    if (assignColumns())
        m_ui->lblFile->setText(QDir::toNativeSeparators(fileName));
    else
        m_table = std::move(before); // what was shown stays
}

bool DialogTrackingImport::assignColumns()
{
    auto columns = trackingColumnsByHeadings(*m_table);
    if (!columns)
        columns = columnsFromStored(workspace().settings.text(workspace::keys::trackingColumns), *m_table);
    if (columns)
        return show(*columns);
    DialogTrackingColumns dialog(workspace(), *m_table, {}, this);
    return dialog.exec() == QDialog::Accepted && show(dialog.columns());
}

void DialogTrackingImport::askColumns()
{
    if (!m_table || !mayLeaveChoices())
        return;
    DialogTrackingColumns dialog(workspace(), *m_table, m_columns, this);
    if (dialog.exec() == QDialog::Accepted)
        show(dialog.columns());
}

// Of the programs that the shop has set up: a bare number is somebody else's where all of them have one.
QStringList DialogTrackingImport::prefixes() const
{
    QStringList all;
    for (const CarrierProgram program : carrierPrograms) {
        const CarrierSettings settings = CarrierSettings::read(workspace().settings, program);
        if (settingsFindings(program, settings).empty())
            all << settings.value(prefixSetting);
    }
    all.removeDuplicates();
    return all.isEmpty() ? QStringList{QString()} : all;
}

// The rows, each with the shipment that is meant. What was shown stays where that fails.
bool DialogTrackingImport::show(const TrackingColumns &columns)
{
    auto matches =
        ui::runWithProgress(this, u"発送履歴と照合しています。"_s, [&](const base::Progress &progress) {
            return matchTracking(workspace().connection, *m_table, columns, prefixes(), progress);
        });
    if (!matches) {
        if (!matches.error().cancelled)
            tell(matches.status());
        return false;
    }
    if (matches->empty()) {
        ui::prompts::inform(this, u"このファイルには、荷物の行がありません。"_s);
        return false;
    }
    m_model.set(std::move(*matches));
    m_columns = columns;
    m_isEdited = false;
    workspace::Settings &settings = workspace().settings;
    settings.write(workspace::keys::trackingColumns,
                   withStoredColumns(settings.text(workspace::keys::trackingColumns), columns, *m_table));
    m_ui->DataGrid1->setCurrentIndex(m_model.index(0, TrackingModel::Management));
    m_ui->DataGrid1->setFocus();
    showState();
    if (m_model.countOf(TrackingState::Unusable) == m_model.rowCount())
        ui::prompts::inform(
            this, u"このファイルには、送り状番号がありません。運送会社へ書き出したファイルではなく、"
                  "運送会社のプログラムが送り状を発行した後のファイルを選んでください。"_s);
    return true;
}

bool DialogTrackingImport::mayLeaveChoices()
{
    return !m_isEdited ||
           ui::prompts::askCautiously(
               this, u"付けた印は、まだ発送履歴に書き込んでいません。選び直しになりますが、続けますか。"_s);
}

// --- The rows ---

void DialogTrackingImport::toggle()
{
    const QModelIndex current = m_ui->DataGrid1->currentIndex();
    if (!current.isValid() || current.row() >= m_model.rowCount())
        return;
    const TrackingMatch &match = m_model.at(current.row());
    if (!match.canBeTaken())
        return;
    if (!match.ticked && match.state == TrackingState::Differs &&
        !ui::prompts::askCautiously(
            this,
            u"発送ID %1 には、送り状番号 %2 が入っています。%3 に書き換えますか。"_s.arg(match.shipment->id)
                .arg(match.shipment->trackingNumber, match.number)))
        return;
    if (!match.ticked && match.state == TrackingState::New && !match.remark.isEmpty() &&
        !ui::prompts::askCautiously(this, u"%1。この番号を取り込みますか。"_s.arg(match.remark)))
        return;
    m_isEdited = true;
    m_model.setTicked(current.row(), !match.ticked);
}

void DialogTrackingImport::showState()
{
    const int ticked = m_model.tickedCount();
    QStringList parts{u"取り込む番号：%1 件"_s.arg(ticked)};
    for (const TrackingState state :
         {TrackingState::Same, TrackingState::Differs, TrackingState::Unknown, TrackingState::Unusable}) {
        if (const int count = m_model.countOf(state); count > 0)
            parts << u"%1 %2 件"_s.arg(nameOf(state)).arg(count);
    }
    m_ui->lblSum->setText(parts.join(u'　'));
    m_ui->Command2->setEnabled(ticked > 0);
    m_ui->Command4->setEnabled(m_table.has_value());
}

// --- The numbers ---

bool DialogTrackingImport::write()
{
    if (!ui::prompts::askCautiously(
            this,
            u"送り状番号を %1 件、発送履歴に書き込みます。よろしいですか。"_s.arg(m_model.tickedCount())))
        return false;
    const auto stored =
        ui::runWithProgress(this, u"書き込んでいます。"_s, [&](const base::Progress &progress) {
            return storeTracking(workspace().connection, m_model.matches(), progress);
        });
    if (!stored) {
        ui::prompts::inform(this, stored.error().cancelled
                                      ? u"中止しました。送り状番号は一件も書き込んでいません。"_s
                                      : stored.error().text);
        if (stored.error().changed || stored.error().gone)
            show(m_columns); // beside what the history says now
        return false;
    }
    m_isEdited = false;
    ui::prompts::inform(this, u"送り状番号を %1 件、書き込みました。"_s.arg(*stored));
    show(m_columns);
    return true;
}

bool DialogTrackingImport::mayClose()
{
    if (m_model.tickedCount() == 0)
        return true;
    switch (ui::prompts::askHowToLeave(this, u"印を付けた送り状番号は、まだ発送履歴に書き込んでいません。"_s,
                                       {u"書き込む(&S)"_s, u"書き込まずに閉じる(&D)"_s, true})) {
    case ui::prompts::Choice::Save:
        return write();
    case ui::prompts::Choice::Discard:
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

} // namespace shipping
