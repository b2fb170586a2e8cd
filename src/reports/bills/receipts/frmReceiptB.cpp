#include "reports/bills/receipts/frmReceiptB.h"

#include "book/taken_payments.h"
#include "registers/customer.h"
#include "reports/bills/receipts/DialogPaymentColumns.h"
#include "reports/bills/receipts/payment_taking.h"
#include "slips/tax_rates_of.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_frmReceiptB.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QHeaderView>
#include <QShortcut>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr std::size_t mostFound = 200;
constexpr int nameColumn = 2; // of the candidates
constexpr int firstAmount = 3;

QStringList candidateRow(const PayingCustomer &customer)
{
    return {QString::number(customer.id), customer.code, customer.name, text::formatAmount(customer.billed),
            text::formatAmount(customer.balance)};
}

} // namespace

frmReceiptB::frmReceiptB(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmReceiptB>())
{
    m_ui->setupUi(this);
    m_ui->Combo1->addItems(QStringList{u"すべて"_s} + registers::closingDayNames());
    for (const Difference each : {Difference::Stays, Difference::TransferFee, Difference::Fee})
        m_ui->Combo2->addItem(nameOf(each));
    m_ui->DataGrid1->setModel(&m_model);
    const int widths[] = {44, 84, 130, 56, 80, 74, 140, 78, 130, 100, 200};
    for (int column = 0; column < PaymentModel::ColumnCount; ++column)
        m_ui->DataGrid1->setColumnWidth(column, widths[column]);
    m_ui->DataGrid1->letGiveWay({{PaymentModel::Text, 60},
                                 {PaymentModel::Payer, 100},
                                 {PaymentModel::Customer, 100},
                                 {PaymentModel::Remark, 110}});
    m_ui->DataGrid2->setColumnCount(5);
    m_ui->DataGrid2->setHorizontalHeaderLabels(
        {u"納品先ID"_s, u"コード"_s, u"納品先"_s, u"請求残"_s, u"残高"_s});
    m_ui->DataGrid2->setColumnWidth(nameColumn, 240);
    m_ui->DataGrid2->verticalHeader()->hide();
    connectControls();
    setUp();
    showRow();
    showSum();
    m_ui->Command1->setFocus();
}

frmReceiptB::~frmReceiptB() = default;

void frmReceiptB::connectControls()
{
    const std::pair<QPushButton *, void (frmReceiptB::*)()> actions[] = {
        {m_ui->Command1, &frmReceiptB::chooseFile}, {m_ui->Command4, &frmReceiptB::askColumns},
        {m_ui->Command5, &frmReceiptB::search},     {m_ui->Command6, &frmReceiptB::setCustomer},
        {m_ui->Command7, &frmReceiptB::leaveOut},   {m_ui->Command8, &frmReceiptB::tickLikely}};
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->Command2, &QPushButton::clicked, this, &frmReceiptB::write);
    connect(m_ui->Command3, &QPushButton::clicked, this, &frmReceiptB::reject);
    connect(m_ui->Combo1, &QComboBox::activated, this, &frmReceiptB::closingDayChosen);
    connect(m_ui->Combo2, &QComboBox::activated, this, &frmReceiptB::setDifference);
    connect(m_ui->DataGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmReceiptB::showRow);
    connect(m_ui->DataGrid2, &QTableWidget::itemDoubleClicked, this, &frmReceiptB::setCustomer);
    connect(&m_model, &QAbstractItemModel::dataChanged, this, &frmReceiptB::showSum);
    connect(new QShortcut(Qt::Key_Space, m_ui->DataGrid1, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &frmReceiptB::toggle);
    connect(m_ui->DataGrid1, &QTableView::clicked, this, [this](const QModelIndex &cell) {
        if (cell.column() == PaymentModel::Ticked)
            toggle();
    });
}

std::optional<int> frmReceiptB::closingDay() const
{
    return m_ui->Combo1->currentIndex() > 0 ? std::optional(m_ui->Combo1->currentIndex() - 1) : std::nullopt;
}

// --- The file ---

void frmReceiptB::chooseFile()
{
    if (!mayLeaveChoices())
        return;
    const QString fileName =
        ui::file_dialogs::openFile(this, u"現金出納帳または銀行の入金明細"_s,
                                   u"現金出納帳・入金明細 (*.cdb *.mdb *.csv *.txt);;すべてのファイル (*)"_s);
    if (!fileName.isEmpty())
        readFile(fileName);
}

void frmReceiptB::readFile(const QString &fileName)
{
    auto read = ui::runWithProgress(this, u"読み込んでいます。"_s, [&](const base::Progress &progress) {
        return readPaymentFile(fileName, workspace().connection.fileName(), progress);
    });
    if (!read) {
        if (!read.error().cancelled)
            tell(read.status());
        return;
    }
    std::optional<PaymentFile> before = std::exchange(m_file, std::move(*read));
    if (!assignColumns())
        m_file = std::move(before); // what was shown stays
}

bool frmReceiptB::assignColumns()
{
    auto columns = columnsByHeadings(m_file->table);
    if (!columns)
        columns =
            columnsFromStored(workspace().settings.text(workspace::keys::paymentColumns), m_file->table);
    if (columns)
        return take(*columns);
    DialogPaymentColumns dialog(workspace(), m_file->table, {}, this);
    return dialog.exec() == QDialog::Accepted && take(dialog.columns());
}

void frmReceiptB::askColumns()
{
    if (!m_file || !mayLeaveChoices())
        return;
    DialogPaymentColumns dialog(workspace(), m_file->table, m_columns, this);
    if (dialog.exec() == QDialog::Accepted)
        take(dialog.columns());
}

// Shows the payments anew, each with whom it is probably from.
bool frmReceiptB::take(const PaymentColumns &columns)
{
    const PaymentRows rows = paymentRows(m_file->table, columns);
    if (rows.rows.empty()) {
        ui::prompts::inform(this, u"このファイルには、入金の行がありません。"_s);
        return false;
    }
    auto customers =
        ui::runWithProgress(this, u"納品先と照合しています。"_s, [&](const base::Progress &progress) {
            return PayingCustomers::read(workspace().connection, closingDay(), workspace().today(), progress);
        });
    if (!customers) {
        if (!customers.error().cancelled)
            tell(customers.status());
        return false;
    }
    const auto taken = book::takenPayments(workspace().connection);
    if (!tell(taken.status()))
        return false;
    auto matches = matchPayments(rows.rows, *customers, *taken);
    m_model.set(std::move(matches), std::move(*customers));
    m_columns = columns;
    m_closing = m_ui->Combo1->currentIndex();
    m_isEdited = false;
    workspace().settings.write(workspace::keys::paymentColumns, storedColumns(columns, m_file->table));
    m_ui->lblFile->setText(m_file->fileName);
    m_ui->DataGrid1->setCurrentIndex(m_model.index(0, PaymentModel::Payer));
    m_ui->DataGrid1->setFocus();
    showRow();
    showSum();
    return true;
}

void frmReceiptB::closingDayChosen()
{
    if (!m_file)
        return;
    if (!mayLeaveChoices() || !take(m_columns))
        m_ui->Combo1->setCurrentIndex(m_closing);
}

bool frmReceiptB::mayLeaveChoices()
{
    return !m_isEdited ||
           ui::prompts::askCautiously(
               this,
               u"選んだ納品先と印は、まだ入金伝票になっていません。選び直しになりますが、続けますか。"_s);
}

// --- A row and its customer ---

int frmReceiptB::currentRow() const
{
    const QModelIndex current = m_ui->DataGrid1->currentIndex();
    return current.isValid() && current.row() < m_model.rowCount() ? current.row() : -1;
}

void frmReceiptB::showRow()
{
    const int row = currentRow();
    const bool isUsable = row >= 0 && m_model.at(row).row.trouble.isEmpty();
    m_ui->frameRow->setEnabled(isUsable);
    m_ui->Command4->setEnabled(m_file.has_value());
    std::vector<std::size_t> places;
    if (row >= 0) {
        const PaymentMatch &match = m_model.at(row);
        m_ui->lblRow->setText(u"%1　%2　%3 円　%4"_s.arg(
            text::formatDate(match.row.date), match.row.payer, text::formatAmount(match.row.amount),
            m_model.index(row, PaymentModel::Remark).data().toString()));
        m_ui->Combo2->setCurrentIndex(int(match.difference));
        for (const qint64 id : match.candidates) {
            if (const PayingCustomer *customer = m_model.customers().with(id))
                places.push_back(std::size_t(customer - m_model.customers().all().data()));
        }
    }
    const PayingCustomer *customer = row >= 0 ? m_model.customers().with(m_model.at(row).customer) : nullptr;
    m_ui->Combo2->setEnabled(customer && missingOf(m_model.at(row), *customer) > 0);
    showCandidates(places);
}

void frmReceiptB::showCandidates(const std::vector<std::size_t> &places)
{
    m_candidates.clear();
    m_ui->DataGrid2->setRowCount(int(places.size()));
    for (int row = 0; row < int(places.size()); ++row) {
        const PayingCustomer &customer = m_model.customers().all()[places[std::size_t(row)]];
        m_candidates.push_back(customer.id);
        const QStringList cells = candidateRow(customer);
        for (int column = 0; column < int(cells.size()); ++column) {
            auto *cell = new QTableWidgetItem(cells.at(column));
            if (column >= firstAmount)
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            m_ui->DataGrid2->setItem(row, column, cell);
        }
    }
    if (!places.empty())
        m_ui->DataGrid2->setCurrentCell(0, 0);
    m_ui->Command6->setEnabled(!places.empty());
}

void frmReceiptB::search()
{
    const auto found = m_model.customers().found(m_ui->txtKey1->text(), mostFound);
    showCandidates(found);
    if (found.empty()) {
        ui::prompts::inform(this, u"検索した納品先は見つかりませんでした。"_s);
        m_ui->txtKey1->setFocus();
    } else {
        m_ui->DataGrid2->setFocus();
    }
}

void frmReceiptB::setCustomer()
{
    const int row = currentRow();
    const int chosen = m_ui->DataGrid2->currentRow();
    if (row < 0 || chosen < 0 || std::size_t(chosen) >= m_candidates.size())
        return;
    m_isEdited = true;
    m_model.setCustomer(row, m_candidates[std::size_t(chosen)]);
    m_ui->txtKey1->clear();
    const int next = std::min(row + 1, m_model.rowCount() - 1);
    m_ui->DataGrid1->setCurrentIndex(m_model.index(next, PaymentModel::Payer));
    m_ui->DataGrid1->setFocus();
    showRow();
}

void frmReceiptB::leaveOut()
{
    const int row = currentRow();
    if (row < 0)
        return;
    m_isEdited = true;
    m_model.setCustomer(row, 0);
    showRow();
}

// A row that was taken before is rather a mistake.
void frmReceiptB::toggle()
{
    const int row = currentRow();
    if (row < 0)
        return;
    const PaymentMatch &match = m_model.at(row);
    if (!match.ticked && match.customer == 0 && match.row.trouble.isEmpty()) {
        ui::prompts::inform(this, u"先に、下の欄で納品先を選んでください。"_s);
        m_ui->txtKey1->setFocus();
        return;
    }
    if (!match.ticked && !match.taken.isEmpty() &&
        !ui::prompts::askCautiously(
            this, u"この行は、もう入金伝票 %1 になっています。二重に入金しますか。"_s.arg(match.taken)))
        return;
    m_isEdited = true;
    m_model.setTicked(row, !match.ticked);
}

void frmReceiptB::setDifference(int index)
{
    const int row = currentRow();
    if (row < 0)
        return;
    m_isEdited = true;
    m_model.setDifference(row, Difference(index));
}

void frmReceiptB::tickLikely()
{
    const int count = m_model.tickLikely();
    m_isEdited = m_isEdited || count > 0;
    ui::prompts::inform(this, count > 0
                                  ? u"「有力」の %1 行に印を付けました。差額を確かめてください。"_s.arg(count)
                                  : u"印の付いていない「有力」の行はありません。"_s);
}

void frmReceiptB::showSum()
{
    const PaymentModel::Sum sum = m_model.ticked();
    m_ui->lblSum->setText(u"取り込む行：%1 件　%2 円"_s.arg(sum.count).arg(text::formatAmount(sum.amount)));
    m_ui->Command2->setEnabled(sum.count > 0);
    m_ui->Command8->setEnabled(m_model.rowCount() > 0);
}

// --- The receipts ---

bool frmReceiptB::write()
{
    const PaymentModel::Sum sum = m_model.ticked();
    if (!ui::prompts::askCautiously(
            this, u"入金伝票を %1 枚（%2 円）作ります。よろしいですか。"_s.arg(sum.count).arg(
                      text::formatAmount(sum.amount))))
        return false;
    if (!tell(checkUnchanged(*m_file)))
        return false;
    const TakingOptions options{
        .employee = workspace().panel.employeeId,
        .infix = workspace().panel.numberInfix,
        .fileName = m_file->fileName,
        .isCashBook = m_file->table.isCashBook,
        .now = workspace().now(),
        .taxRate = [this](const QDate &day) { return slips::slipRateOf(workspace(), day); }};
    const auto taken =
        ui::runWithProgress(this, u"入金伝票を作っています。"_s, [&](const base::Progress &progress) {
            return takePayments(workspace().connection, m_model.matches(), m_model.customers(), options,
                                progress);
        });
    if (!taken) {
        ui::prompts::inform(this, taken.error().cancelled
                                      ? u"中止しました。入金伝票は一枚も作っていません。"_s
                                      : taken.error().text);
        return false;
    }
    m_isEdited = false;
    ui::prompts::inform(
        this, u"入金伝票を %1 枚（%2 ～ %3）作りました。　合計 %4 円"_s.arg(taken->numbers.size())
                  .arg(taken->numbers.front(), taken->numbers.back(), text::formatAmount(taken->total)));
    take(m_columns);
    return true;
}

bool frmReceiptB::mayClose()
{
    if (!m_isEdited)
        return true;
    if (m_model.ticked().count == 0)
        return ui::prompts::askCautiously(this,
                                          u"選んだ納品先は、まだ入金伝票になっていません。閉じますか。"_s);
    switch (ui::prompts::askHowToLeave(this, u"印を付けた行は、まだ入金伝票になっていません。"_s,
                                       {u"入金伝票を作る(&S)"_s, u"作らずに閉じる(&D)"_s, true})) {
    case ui::prompts::Choice::Save:
        return write();
    case ui::prompts::Choice::Discard:
        return true;
    case ui::prompts::Choice::Cancel:
        break;
    }
    return false;
}

} // namespace reports
