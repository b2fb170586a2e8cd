#include "registers/import/CustomerImportPanel.h"

#include "registers/import/DialogCSV.h"
#include "registers/import/import_mapping.h"
#include "registers/import/import_matches.h"
#include "registers/import/import_words.h"
#include "registers/postal/postal_lookup.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_CustomerImportPanel.h"
#include "workspace/workspace.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QShortcut>
#include <QStandardItemModel>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

const QString csvFilters = u"カンマ区切りのテキストファイル (*.csv);;すべてのファイル (*.*)"_s;

// Of each list of changes; widths in half-width characters.
const QStringList changeHeadings{u"項目"_s, u"いまの内容"_s, u"取り込み後"_s};
constexpr int changeWidths[] = {14, 44, 44};
constexpr int nameWidth = 24;
constexpr int sourceWidth = 36;

// Only what the address alone says for certain: the code of a whole city is little more than none.
QString plainPostalCodeOf(const PostalData &data, const QString &address)
{
    const QString code = postalCodeOf(data, address);
    return code.isEmpty() || isOfWholeCity(data, code) ? QString() : code;
}

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
    , m_changes(new QStandardItemModel(this))
{
    m_ui->setupUi(this);
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_ui->MSFlexGrid1);
    m_ui->comboFilter->addItems({u"すべての行"_s, u"取り込める行"_s, u"重複する行"_s, u"取り込めない行"_s,
                                 u"更新する行"_s, u"変わらない行"_s});
    setUpGrids();
    connectControls();
    showCounts();
}

// The names stay in sight when the other fields are scrolled.
void CustomerImportPanel::setUpGrids()
{
    const int character = fontMetrics().horizontalAdvance(u'0');
    ui::Grid *grid = m_ui->MSFlexGrid1;
    grid->setSelectionMode(QAbstractItemView::ExtendedSelection);
    grid->setModel(m_model);
    grid->setCornerButtonEnabled(false);
    grid->verticalHeader()->setFixedWidth(nameWidth * character);
    grid->verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    grid->verticalHeader()->setTextElideMode(Qt::ElideRight);
    grid->verticalHeader()->setHighlightSections(false);
    grid->verticalHeader()->show();
    m_changes->setHorizontalHeaderLabels(changeHeadings);
    m_ui->gridChanges->setModel(m_changes);
    for (int column = 0; column < changeHeadings.size(); ++column)
        m_ui->gridChanges->setColumnWidth(column, changeWidths[column] * character);
    m_ui->gridChanges->hide();
    m_ui->checkNewCategories->hide();
    m_ui->checkMergeRepeats->hide();
}

CustomerImportPanel::~CustomerImportPanel() = default;

void CustomerImportPanel::bind(workspace::Workspace &workspace) { m_workspace = &workspace; }

void CustomerImportPanel::connectControls()
{
    const std::pair<QPushButton *, void (CustomerImportPanel::*)()> actions[] = {
        {m_ui->Command5, &CustomerImportPanel::importAll},
        {m_ui->cmdTickSelected, &CustomerImportPanel::takeSelected},
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
    connect(m_ui->checkNewCategories, &QCheckBox::clicked, this, &CustomerImportPanel::makeCategories);
    connect(m_ui->checkMergeRepeats, &QCheckBox::clicked, this, &CustomerImportPanel::mergeRepeats);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &CustomerImportPanel::showTaken);
    connect(m_model, &QAbstractItemModel::modelReset, this, &CustomerImportPanel::showTaken);
    connect(m_model, &QAbstractItemModel::modelReset, this, &CustomerImportPanel::showChanges);
    connect(m_ui->MSFlexGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &CustomerImportPanel::showChanges);
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
    m_postalCodes.clear();
    const auto assignment = assignmentFor(table, source);
    if (!assignment || !judge(table, *assignment))
        return false;
    m_table = std::move(table);
    m_ui->labelSource->setText(
        fontMetrics().elidedText(name, Qt::ElideMiddle, sourceWidth * fontMetrics().horizontalAdvance(u'0')) +
        u'：');
    m_ui->labelSource->setToolTip(name.toHtmlEscaped());
    offerCategories();
    offerMerging();
    showCounts();
    return true;
}

std::optional<ImportAssignment> CustomerImportPanel::assignmentFor(const ImportTable &table, Source source)
{
    const auto mapping =
        readImportMapping(m_workspace->inApplicationFolder(QString::fromUtf16(importMappingFileName)));
    const bool isThere = mapping && *mapping;
    ImportAssignment byHeadings = assignmentByHeadings(table.firstRow(), table.columns);
    if (isThere) {
        byHeadings.defaultCategory = (*mapping)->defaultCategory;
        byHeadings.match = (*mapping)->match;
        byHeadings.numbersCodes = (*mapping)->numbersCodes;
    }
    // Pasted tables speak by their headings; a file goes by the mapping made for it.
    if (source == Source::Clipboard && byHeadings.namesCustomers())
        return byHeadings;
    if (isThere) {
        if (auto mapped = assignmentByMapping(**mapping, table.firstRow(), table.columns))
            return mapped;
        if (byHeadings.namesCustomers())
            return byHeadings;
    } else if (!mapping) {
        ui::prompts::inform(window(), mapping.error().text + u"\n取り込みの設定を行います。"_s);
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
    const PostalData postal{m_workspace->applicationFolder(), m_workspace->kept<PostalIndex>()};
    const ImportSources sources{[&](const QString &address) {
        if (!m_postalCodes.contains(address))
            m_postalCodes.insert(address, plainPostalCodeOf(postal, address));
        return m_postalCodes.value(address);
    }};
    auto candidates =
        ui::runWithProgress(window(), u"データを確認しています。"_s, [&](const base::Progress &progress) {
            return importCandidates(m_workspace->connection, table, assignment, progress, sources);
        });
    if (!tell(candidates.status()))
        return false;
    m_assignment = assignment;
    m_ui->comboFilter->setCurrentIndex(ImportModel::All);
    m_model->set(assignment, std::move(*candidates));
    m_ui->gridChanges->setVisible(assignment.match != ImportMatch::None);
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
    if (const auto assignment = askAssignment(m_table, m_assignment);
        assignment && judge(m_table, *assignment)) {
        offerCategories();
        offerMerging();
    }
    m_ui->MSFlexGrid1->setFocus();
}

// --- Categories that are not registered ---

void CustomerImportPanel::offerCategories()
{
    const auto categories = masters::customerCategories(m_workspace->connection);
    m_categories = categories ? *categories : std::vector<masters::Entry>();
    const QStringList unknown = unknownCategories(m_table, m_assignment, m_categories);
    m_ui->checkNewCategories->setVisible(!unknown.isEmpty());
    m_ui->checkNewCategories->setChecked(m_assignment.makesCategories);
    const QString names = QStringList(unknown.first(std::min<qsizetype>(unknown.size(), 3))).join(u"、"_s);
    m_ui->checkNewCategories->setText(u"登録されていない区分（%1%2）を新しく登録する(&C)"_s.arg(
        QString(names).replace(u'&', u"&&"_s), unknown.size() > 3 ? u" など"_s : QString()));
    m_ui->checkNewCategories->setToolTip(unknown.join(u"、"_s).toHtmlEscaped());
    showChanges();
}

void CustomerImportPanel::makeCategories(bool wanted)
{
    ImportAssignment assignment = m_assignment;
    assignment.makesCategories = wanted;
    judgeAgain(assignment);
    m_ui->checkNewCategories->setChecked(m_assignment.makesCategories);
}

// --- Rows of one customer ---

void CustomerImportPanel::offerMerging()
{
    const QList<int> lines = m_model->repeatingLines();
    m_ui->checkMergeRepeats->setVisible(!lines.isEmpty());
    m_ui->checkMergeRepeats->setChecked(m_assignment.mergesRepeats);
    m_ui->checkMergeRepeats->setText(
        u"同じコードか納品先IDの行（%1）を前の行にまとめ、後の内容に直す(&M)"_s.arg(linesInWords(lines)));
}

void CustomerImportPanel::mergeRepeats(bool wanted)
{
    ImportAssignment assignment = m_assignment;
    assignment.mergesRepeats = wanted;
    judgeAgain(assignment);
    offerMerging();
}

// What the clerk ticked stays ticked.
void CustomerImportPanel::judgeAgain(const ImportAssignment &assignment)
{
    const std::vector<ImportCandidate> before = m_model->candidates();
    if (judge(m_table, assignment))
        m_model->takeAsIn(before);
    showTaken();
}

// --- The rows ---

void CustomerImportPanel::toggleSelected()
{
    m_model->toggle(m_ui->MSFlexGrid1->selectionModel()->selectedRows());
}

void CustomerImportPanel::takeSelected()
{
    m_model->takeOnly(m_ui->MSFlexGrid1->selectionModel()->selectedRows());
    m_ui->MSFlexGrid1->setFocus();
}

void CustomerImportPanel::showCounts()
{
    const QStringList headings = m_table.rows.empty() ? QStringList() : m_table.firstRow();
    const QString leftOut = leftOutHeadings(m_assignment, headings).join(u"、"_s);
    QString summary = countsInWords(*m_model, m_assignment);
    if (!leftOut.isEmpty())
        summary += u"　取り込まない列：%1"_s.arg(leftOut);
    m_ui->labelSummary->setText(summary);
    m_ui->labelSummary->setToolTip(leftOut.toHtmlEscaped());
    const bool any = m_model->rowCount() > 0;
    for (QPushButton *button : {m_ui->Command5, m_ui->cmdTickSelected, m_ui->cmdSaveReport})
        button->setEnabled(any);
    m_ui->Command4->setEnabled(!m_table.rows.empty() || any);
}

void CustomerImportPanel::showTaken() { m_ui->labelTaken->setText(u"← "_s + takenInWords(m_model->taken())); }

void CustomerImportPanel::showChanges()
{
    m_changes->setRowCount(0);
    const QModelIndex current = m_ui->MSFlexGrid1->currentIndex();
    if (!current.isValid() || current.row() >= m_model->rowCount())
        return;
    const ImportCandidate &candidate = m_model->candidate(current.row());
    for (const ImportChange &change : candidate.changes)
        m_changes->appendRow({new QStandardItem(importFields().at(change.field).column),
                              new QStandardItem(shownImportValue(change.field, change.before, m_categories)),
                              new QStandardItem(shownAfter(candidate, change, m_categories))});
}

void CustomerImportPanel::importAll()
{
    const ImportModel::TakenRows rows = m_model->taken();
    if (rows.added + rows.updated == 0) {
        ui::prompts::inform(window(),
                            u"取り込む行がありません。取り込む行の「取込」の欄に印を付けてください。"_s);
        return;
    }
    const QString question = u"表示中のデータをすべてインポートします。よろしいですか。"_s;
    const QString remark = takenInWords(rows) + u"。"_s + repeatsInWords(*m_model);
    // A new customer can be deleted again; what a changed one was before cannot be had back.
    const bool wanted =
        rows.updated > 0
            ? ui::prompts::askCautiously(window(), question, remark)
            : ui::prompts::ask(window(), question, QString::fromUtf16(ui::prompts::question), remark);
    if (wanted)
        import();
}

void CustomerImportPanel::import()
{
    const ImportModel::TakenRows rows = m_model->taken();
    const std::vector<const ImportCandidate *> shown = m_model->shown();
    const auto count =
        ui::runWithProgress(window(), u"納品先を登録しています。"_s, [&](const base::Progress &progress) {
            return importCustomers(m_workspace->connection, shown, m_workspace->today(), progress);
        });
    if (!tell(count.status())) {
        if (count.error().changed)
            judgeAgain(m_assignment);
        return;
    }
    m_model->removeTaken(shown);
    offerMerging();
    showCounts();
    emit imported();
    ui::prompts::inform(window(), importedInWords(rows, *m_model));
    if (m_model->candidates().empty())
        emit finished();
    else
        m_ui->MSFlexGrid1->setFocus();
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
