#include "slips/ledger_screen.h"

#include "app/workspace.h"
#include "printing/frmPreview.h"
#include "slips/correction_screens.h"
#include "slips/ledger_output.h"
#include "slips/slip_screen.h"
#include "text/numbers.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui/table_export.h"
#include "ui_LedgerForm.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

bool isNumber(Content content) { return content == Content::Amount || content == Content::Quantity; }

db::Format formatOf(Content content)
{
    if (!isNumber(content))
        return db::Format::Plain;
    return content == Content::Amount ? db::Format::Amount : db::Format::Quantity;
}

std::vector<SlipGridModel::Column> gridColumns(LedgerView view)
{
    std::vector<SlipGridModel::Column> columns;
    for (const LedgerColumn &column : columnsOf(view))
        columns.push_back({column.heading, formatOf(column.content), isNumber(column.content)});
    return columns;
}

// The grid's values, dates as they are read.
std::vector<QVariantList> shownRows(const LedgerTable &table)
{
    std::vector<QVariantList> rows = table.rows;
    for (QVariantList &row : rows) {
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            if (table.columns[column].content == Content::Date) {
                QVariant &value = row[static_cast<qsizetype>(column)];
                value = shownText(Content::Date, value);
            }
        }
    }
    return rows;
}

QDate firstOfMonth(const QDate &day) { return {day.year(), day.month(), 1}; }

} // namespace

LedgerScreen::LedgerScreen(app::Workspace &workspace, QWidget *parent, const LedgerDescription &description)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::LedgerForm>())
    , m_description(description)
    , m_found(workspace.connection)
    , m_rows(gridColumns(description.view), nullptr)
{
    m_ui->setupUi(this);
    m_sums = {{m_ui->lblSum1, m_ui->txtSum1},
              {m_ui->lblSum2, m_ui->txtSum2},
              {m_ui->lblSum3, m_ui->txtSum3},
              {m_ui->lblSum4, m_ui->txtSum4},
              {m_ui->lblSum5, m_ui->txtSum5}};
    fitForm();
    clear({});
    connectControls();
    setUp();
}

LedgerScreen::~LedgerScreen() = default;

void LedgerScreen::fitForm()
{
    setObjectName(QString::fromUtf16(m_description.screen));
    setWindowTitle(QString::fromUtf16(m_description.title));
    m_ui->Frame2->setVisible(m_description.search);
    if (m_description.search)
        fitSearch();
    fitPeriod();
    fitGrid();
    const QString zeros = QString::fromUtf16(m_description.zeros);
    m_ui->Check1->setText(zeros);
    m_ui->Check1->setHidden(zeros.isEmpty());
    m_ui->Check1->setChecked(!zeros.isEmpty());
    const QString opens = QString::fromUtf16(m_description.opens);
    m_ui->Command4->setText(opens);
    m_ui->Command4->setHidden(opens.isEmpty());
}

void LedgerScreen::fitSearch()
{
    const QString party = m_description.search->party == Party::Customer ? u"納品先"_s : u"仕入先"_s;
    m_ui->Frame2->setTitle(party);
    m_ui->lblKey1->setText(party + u"名キー(&K)"_s);
    m_ui->lblName1->setText(party + u"名"_s);
    tell(openCounterpart(m_found, *m_description.search, 0));
    m_ui->DataGrid1->bind(m_found, [this](const QString &refusal) { ui::prompts::inform(this, refusal); });
    setWidths(m_ui->DataGrid1, m_description.foundWidths);
}

void LedgerScreen::fitPeriod()
{
    m_ui->DTPicker1->setDate(firstOfMonth(workspace().today()));
    m_ui->DTPicker2->setDate(workspace().today());
    if (m_description.hasStart)
        return;
    m_ui->DTPicker1->hide();
    m_ui->lblTo->hide();
    m_ui->lblPeriod->setText(u"日付(&D)"_s);
    m_ui->lblPeriod->setBuddy(m_ui->DTPicker2);
}

void LedgerScreen::fitGrid()
{
    m_ui->MSFlexGrid1->setModel(&m_rows);
    m_ui->MSFlexGrid1->setAccessibleName(windowTitle());
    std::vector<int> widths;
    const int character = fontMetrics().horizontalAdvance(u'0');
    for (const LedgerColumn &column : columnsOf(m_description.view))
        widths.push_back((column.characters + 1) * character);
    setWidths(m_ui->MSFlexGrid1, widths);
}

void LedgerScreen::connectControls()
{
    const std::pair<QPushButton *, void (LedgerScreen::*)()> actions[] = {
        {m_ui->Command1, &LedgerScreen::search},  {m_ui->cmdMasterUpdate, &LedgerScreen::refresh},
        {m_ui->Command2, &LedgerScreen::print},   {m_ui->Command3, &LedgerScreen::exportTable},
        {m_ui->Command4, &LedgerScreen::openRow},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->Check1, &QCheckBox::clicked, this, &LedgerScreen::refresh);
    connect(m_ui->MSFlexGrid1, &QTableView::doubleClicked, m_ui->Command4, &QPushButton::click);
    connect(&m_found, &db::Recordset::currentRowChanged, this, &LedgerScreen::chooseFound);
}

// A list that nobody has to be chosen for is read as soon as it can be seen, progress over it.
void LedgerScreen::becameActive()
{
    if (!m_hasRead && !m_description.search)
        refresh();
}

// --- Whose ledger ---

void LedgerScreen::search()
{
    if (m_ui->txtKey1->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_ui->txtKey1->setFocus();
        return;
    }
    if (!tell(searchCounterparts(m_found, *m_description.search, m_ui->txtKey1->text())))
        return;
    if (m_found.isEmpty()) {
        m_ui->txtKey1->setFocus();
        ui::prompts::inform(this, u"検索した%1は見つかりませんでした。"_s.arg(m_ui->Frame2->title()));
    } else if (m_found.count() == 1) { // needs no choosing
        m_ui->MSFlexGrid1->setFocus();
    } else {
        m_ui->DataGrid1->setFocus();
    }
}

void LedgerScreen::chooseFound() { choose(m_found.currentRow() >= 0 ? m_found.currentKey() : 0); }

void LedgerScreen::choose(qint64 counterpart)
{
    m_counterpart = counterpart;
    m_ui->txtNouhinsaki1->clear();
    if (counterpart == 0) {
        clear({});
        return;
    }
    const auto name = nameOfCounterpart(workspace().connection, m_description.search->party, counterpart);
    if (name)
        m_ui->txtNouhinsaki1->setText(*name);
    m_ui->txtNouhinsaki1->setCursorPosition(0);
    refresh();
}

void LedgerScreen::openLedger(qint64 counterpart, const QDate &to)
{
    m_ui->DTPicker1->setDate(firstOfMonth(to));
    m_ui->DTPicker2->setDate(to);
    tell(openCounterpart(m_found, *m_description.search, counterpart));
    if (m_counterpart != counterpart) // nobody is found by the key of a deleted one
        choose(counterpart);
    m_ui->MSFlexGrid1->setFocus();
}

// --- The rows ---

LedgerQuery LedgerScreen::query() const
{
    const QDate to = m_ui->DTPicker2->date();
    return {m_counterpart,
            {m_description.hasStart ? m_ui->DTPicker1->date() : to, to},
            m_ui->Check1->isChecked()};
}

void LedgerScreen::refresh()
{
    m_hasRead = true;
    LedgerTable table;
    const db::Status read =
        ui::runWithProgress(this, u"集計しています。"_s, [&](const db::Progress &progress) -> db::Status {
            auto result = readView(workspace().connection, m_description.view, query(), progress);
            if (!result)
                return result.error();
            table = std::move(*result);
            return {};
        });
    if (read) {
        showTable(std::move(table));
        return;
    }
    // What was shown no longer stands for what the boxes above it say.
    clear(read.error().cancelled ? read.error().text : QString());
    if (!read.error().cancelled)
        tell(read);
    if (m_description.search && m_counterpart == 0)
        m_ui->txtKey1->setFocus();
}

void LedgerScreen::clear(const QString &message)
{
    showTable({});
    m_ui->lblMessage->setText(message);
}

void LedgerScreen::showTable(LedgerTable table)
{
    const int row = m_ui->MSFlexGrid1->currentIndex().row();
    m_table = std::move(table);
    m_rows.setRows(shownRows(m_table));
    m_ui->MSFlexGrid1->setCurrentIndex(
        m_rows.index(std::clamp(row, 0, std::max(m_rows.rowCount() - 1, 0)), 0));
    const bool any = m_rows.rowCount() > 0;
    for (QPushButton *button : {m_ui->Command2, m_ui->Command3, m_ui->Command4})
        button->setEnabled(any);
    m_ui->lblMessage->setText(any ? u"%1 行"_s.arg(m_rows.rowCount())
                                  : u"該当するデータが見つかりませんでした。"_s);
    showSums();
}

void LedgerScreen::showSums()
{
    for (std::size_t i = 0; i < m_sums.size(); ++i) {
        const auto &[label, box] = m_sums[i];
        const bool used = i < m_table.sums.size();
        label->setVisible(used);
        box->setVisible(used);
        if (used) {
            label->setText(m_table.sums[i].name);
            box->setText(text::formatAmount(m_table.sums[i].yen));
        }
    }
}

// --- What the rows lead to ---

void LedgerScreen::openRow()
{
    const int row = m_ui->MSFlexGrid1->currentIndex().row();
    if (row < 0 || row >= m_rows.rowCount())
        return;
    const RowTarget target = m_table.targets[static_cast<std::size_t>(row)];
    if (target.id == 0 || m_ui->Command4->isHidden())
        return;
    if (m_description.view == LedgerView::ReceivableBalances ||
        m_description.view == LedgerView::PayableBalances)
        openLedgerOf(target.id);
    else
        openCorrection(workspace(), this, target.kind, target.id);
    refresh();
}

void LedgerScreen::openLedgerOf(qint64 counterpart)
{
    LedgerScreen ledger(workspace(), this,
                        descriptionOf(m_description.view == LedgerView::ReceivableBalances
                                          ? LedgerView::Receivable
                                          : LedgerView::Payable));
    ledger.openLedger(counterpart, m_ui->DTPicker2->date());
    ledger.exec();
}

// --- Paper and files ---

void LedgerScreen::print()
{
    printing::Document document;
    document.title = m_table.title;
    document.purpose = printing::Purpose::Rosters;
    document.sheets = printing::listSheets(printedList(m_table, workspace().today()));
    printing::showPreview(workspace(), this, std::move(document));
}

void LedgerScreen::exportTable()
{
    ui::exportTable(this, {[this](const QString &fileName) { return checkLedgerExport(m_table, fileName); },
                           [this](const QString &fileName, const db::Progress &progress) {
                               return exportLedger(m_table, fileName, progress);
                           }});
}

} // namespace slips
