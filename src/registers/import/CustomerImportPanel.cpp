#include "registers/import/CustomerImportPanel.h"

#include "registers/import/DialogCSV.h"
#include "registers/import/ImportModel.h"
#include "registers/import/import_mapping.h"
#include "text/numbers.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_CustomerImportPanel.h"
#include "workspace/workspace.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

const QString csvFilters = u"カンマ区切りのテキストファイル (*.csv);;すべてのファイル (*.*)"_s;

QString rowCount(std::size_t count) { return text::formatAmount(static_cast<double>(count)) + u" 件"_s; }

// Widths in half-width characters.
int widthOf(int column, const QString &heading)
{
    switch (column) {
    case ImportModel::Taken:
    case ImportModel::Line:
        return 6;
    case ImportModel::Remark:
        return 44;
    default:
        return heading.startsWith(u"納品先名"_s) || heading.startsWith(u"住所"_s) ? 26 : 14;
    }
}

} // namespace

CustomerImportPanel::CustomerImportPanel(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::CustomerImportPanel>())
    , m_model(new ImportModel(this))
{
    m_ui->setupUi(this);
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->MSFlexGrid1);
    m_ui->comboFilter->addItems({u"すべての行"_s, u"取り込める行"_s, u"重複する行"_s, u"取り込めない行"_s});
    m_ui->MSFlexGrid1->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_ui->MSFlexGrid1->setModel(m_model);
    connectControls();
    showCounts();
}

CustomerImportPanel::~CustomerImportPanel() = default;

void CustomerImportPanel::bind(workspace::Workspace &workspace) { m_workspace = &workspace; }

void CustomerImportPanel::connectControls()
{
    const std::pair<QPushButton *, void (CustomerImportPanel::*)()> actions[] = {
        {m_ui->Command5, &CustomerImportPanel::importAll},
        {m_ui->cmdImportSelected, &CustomerImportPanel::importSelected},
        {m_ui->Command4, &CustomerImportPanel::changeSettings},
        {m_ui->cmdSaveReport, &CustomerImportPanel::saveReport},
        {m_ui->cmdBack, &CustomerImportPanel::finished},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->comboFilter, &QComboBox::currentIndexChanged, this, [this](int filter) {
        m_model->show(static_cast<ImportModel::Filter>(filter));
        showCounts();
    });
    connect(new QShortcut(QKeySequence::Paste, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
            &QShortcut::activated, this, &CustomerImportPanel::paste);
    connect(new QShortcut(Qt::Key_Space, m_ui->MSFlexGrid1, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &CustomerImportPanel::toggleSelected);
}

// Esc leaves the import alone, not the whole register.
void CustomerImportPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel))
        emit finished();
    else
        QWidget::keyPressEvent(event);
}

bool CustomerImportPanel::tell(const base::Status &status)
{
    if (!status && !status.error().cancelled)
        ui::prompts::inform(window(), status.error().text);
    return bool(status);
}

// --- The table ---

bool CustomerImportPanel::openFile()
{
    const QString fileName = ui::file_dialogs::openFile(window(), u"開く"_s, csvFilters);
    if (fileName.isEmpty())
        return false;
    auto table =
        ui::runWithProgress(window(), u"ファイルを読み込んでいます。"_s, [&](const base::Progress &progress) {
            return readImportFile(fileName, progress);
        });
    return tell(table.status()) && load(std::move(*table), Source::File, QFileInfo(fileName).fileName());
}

bool CustomerImportPanel::paste()
{
    const QString text = QGuiApplication::clipboard()->text();
    if (text.trimmed().isEmpty()) {
        ui::prompts::inform(window(),
                            u"クリップボードに表がありません。\n表計算ソフトなどで表をコピーしてから"
                            "実行してください。"_s);
        return false;
    }
    auto table = tableFromClipboard(text);
    if (!table) {
        ui::prompts::inform(window(), table.error().text);
        return false;
    }
    return load(std::move(*table), Source::Clipboard, u"クリップボードの表"_s);
}

bool CustomerImportPanel::load(ImportTable table, Source source, const QString &name)
{
    const auto assignment = assignmentFor(table, source);
    if (!assignment || !judge(table, *assignment))
        return false;
    m_table = std::move(table);
    m_ui->labelSource->setText(name + u'：');
    showCounts();
    return true;
}

std::optional<ImportAssignment> CustomerImportPanel::assignmentFor(const ImportTable &table, Source source)
{
    const auto mapping =
        readImportMapping(m_workspace->inApplicationFolder(QString::fromUtf16(importMappingFileName)));
    const bool isThere = mapping && *mapping;
    ImportAssignment byHeadings = assignmentByHeadings(table.firstRow(), table.columns);
    byHeadings.defaultCategory = isThere ? (*mapping)->defaultCategory : 0;
    // Pasted tables speak by their headings; a file goes by the mapping made for it.
    if (source == Source::Clipboard && byHeadings.hasName())
        return byHeadings;
    if (isThere) {
        if (auto mapped = assignmentByMapping(**mapping, table.firstRow(), table.columns))
            return mapped;
        if (byHeadings.hasName())
            return byHeadings;
    } else if (!mapping) {
        ui::prompts::inform(window(), mapping.error().text + u"\nインポートの設定を行います。"_s);
    } else {
        ui::prompts::inform(window(), u"設定ファイルが見つかりませんでした。インポートの設定を行います。"_s);
    }
    return askAssignment(table, byHeadings);
}

std::optional<ImportAssignment> CustomerImportPanel::askAssignment(const ImportTable &table,
                                                                   const ImportAssignment &proposal)
{
    const auto categories = masters::customerCategories(m_workspace->connection);
    if (!categories) {
        ui::prompts::inform(window(), categories.error().text);
        return std::nullopt;
    }
    DialogCSV dialog(*m_workspace, table, proposal, *categories, window());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const ImportAssignment assignment = dialog.assignment();
    // The import goes on without it; the clerk is asked again next time.
    tell(writeImportMapping(m_workspace->inApplicationFolder(QString::fromUtf16(importMappingFileName)),
                            mappingOf(assignment, table.firstRow())));
    return assignment;
}

bool CustomerImportPanel::judge(const ImportTable &table, const ImportAssignment &assignment)
{
    auto candidates =
        ui::runWithProgress(window(), u"データを確認しています。"_s, [&](const base::Progress &progress) {
            return importCandidates(m_workspace->connection, table, assignment, progress);
        });
    if (!tell(candidates.status()))
        return false;
    m_assignment = assignment;
    m_ui->comboFilter->setCurrentIndex(ImportModel::All);
    m_model->set(table, assignment, std::move(*candidates));
    const int character = fontMetrics().horizontalAdvance(u'0');
    for (int column = 0; column < m_model->columnCount(); ++column) {
        const QString heading = m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        m_ui->MSFlexGrid1->setColumnWidth(column, (widthOf(column, heading) + 2) * character);
    }
    if (m_model->rowCount() > 0)
        m_ui->MSFlexGrid1->selectRow(0);
    showCounts();
    return true;
}

void CustomerImportPanel::changeSettings()
{
    if (const auto assignment = askAssignment(m_table, m_assignment))
        judge(m_table, *assignment);
    m_ui->MSFlexGrid1->setFocus();
}

// --- The rows ---

void CustomerImportPanel::toggleSelected()
{
    m_model->toggle(m_ui->MSFlexGrid1->selectionModel()->selectedRows());
}

void CustomerImportPanel::showCounts()
{
    using State = ImportCandidate::State;
    QString summary = u"取り込める行 %1　重複 %2　取り込めない行 %3"_s.arg(
        rowCount(m_model->count(State::Ready)), rowCount(m_model->count(State::Duplicate)),
        rowCount(m_model->count(State::Refused)));
    const QStringList headings = m_table.rows.empty() ? QStringList() : m_table.firstRow();
    const QString leftOut = leftOutHeadings(m_assignment, headings).join(u"、"_s);
    if (!leftOut.isEmpty())
        summary += u"　取り込まない列：%1"_s.arg(leftOut);
    m_ui->labelSummary->setText(summary);
    m_ui->labelSummary->setToolTip(leftOut);
    const bool any = m_model->rowCount() > 0;
    for (QPushButton *button : {m_ui->Command5, m_ui->cmdImportSelected, m_ui->cmdSaveReport})
        button->setEnabled(any);
    m_ui->Command4->setEnabled(!m_table.rows.empty() || any);
}

void CustomerImportPanel::importAll()
{
    if (ui::prompts::ask(window(), u"表示中のデータをすべてインポートします。よろしいですか。"_s))
        import(m_model->shown());
}

void CustomerImportPanel::importSelected()
{
    std::vector<const ImportCandidate *> selected;
    const QModelIndexList rows = m_ui->MSFlexGrid1->selectionModel()->selectedRows();
    for (const QModelIndex &index : rows)
        selected.push_back(&m_model->candidate(index.row()));
    std::sort(selected.begin(), selected.end(),
              [](const ImportCandidate *a, const ImportCandidate *b) { return a->row < b->row; });
    if (selected.empty())
        ui::prompts::inform(window(), u"取り込む行を選んで、反転表示にしてください。"_s);
    else if (ui::prompts::ask(window(), u"反転表示の行（%1）だけをインポートします。よろしいですか。"_s.arg(
                                            rowCount(selected.size()))))
        import(selected);
}

void CustomerImportPanel::import(const std::vector<const ImportCandidate *> &candidates)
{
    const auto count =
        ui::runWithProgress(window(), u"納品先を登録しています。"_s, [&](const base::Progress &progress) {
            return importCustomers(m_workspace->connection, candidates, m_workspace->today(), progress);
        });
    if (!tell(count.status()))
        return;
    m_model->removeTaken(candidates);
    showCounts();
    if (*count > 0)
        emit imported();
    tellImported(*count);
    if (m_model->candidates().empty())
        emit finished();
    else
        m_ui->MSFlexGrid1->setFocus();
}

// The rows that stay in the grid are those that were not stored, each with its reason.
void CustomerImportPanel::tellImported(int count)
{
    if (count == 0) {
        ui::prompts::inform(window(),
                            u"取り込む行がありません。取り込む行の「取込」の欄に印を付けてください。"_s);
        return;
    }
    QString said = u"%1の納品先を登録しました。"_s.arg(rowCount(static_cast<std::size_t>(count)));
    using State = ImportCandidate::State;
    if (const std::size_t waiting = m_model->count(State::Ready); waiting > 0)
        said += u"\nまだ取り込んでいない行が %1残っています。"_s.arg(rowCount(waiting));
    if (const std::size_t left = m_model->count(State::Duplicate) + m_model->count(State::Refused); left > 0)
        said += u"\n取り込まなかった行が %1あります。「確認」の欄で理由を確かめてください。"_s.arg(
            rowCount(left));
    ui::prompts::inform(window(), said);
}

void CustomerImportPanel::saveReport()
{
    const QString fileName =
        ui::file_dialogs::saveFile(window(), u"名前を付けて保存"_s,
                                   u"カンマ区切りのテキストファイル (*.csv)"_s, u"csv"_s, u"取込結果.csv"_s);
    if (fileName.isEmpty() || !ui::prompts::askToOverwrite(window(), fileName))
        return;
    tell(ui::runWithProgress(window(), u"書き出しています。"_s, [&](const base::Progress &progress) {
        return writeImportReport(fileName, m_table, m_assignment, m_model->shown(), progress);
    }));
}

} // namespace registers
