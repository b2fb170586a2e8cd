#include "reports/bills/DialogBillIssue.h"

#include "reports/bills/bill_options_of.h"
#include "reports/bills/closing_period.h"
#include "reports/purchases/purchase_tax.h"
#include "slips/tax_rates_of.h"
#include "text/numbers.h"
#include "ui/messages.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogBillIssue.h"
#include "workspace/settings.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>

#include <utility>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr int lastClosingDay = 30;

QString unbookedWords(const std::vector<CustomerBill> &bills)
{
    if (bills.empty())
        return {};
    double tax = 0;
    for (const CustomerBill &bill : bills)
        tax += bill.sums.unbooked.value_or(0);
    return u"計上していない消費税　%1 件　%2 円"_s.arg(bills.size()).arg(text::formatAmount(tax));
}

} // namespace

DialogBillIssue::DialogBillIssue(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::DialogBillIssue>())
{
    m_ui->setupUi(this);
    m_ui->cmbClosing->addItem(u"末日"_s, 0);
    for (int day = 1; day <= lastClosingDay; ++day)
        m_ui->cmbClosing->addItem(u"%1 日"_s.arg(day), day);
    m_ui->txtMessage->setText(workspace.settings.text(workspace::keys::billMessage));
    m_ui->Check2->setChecked(workspace.panel.transferFormAfterBill);
    setUpGrid();
    presetPeriod();
    connectControls();
    connectActions();
    setUp();
    showState();
}

DialogBillIssue::~DialogBillIssue() = default;

void DialogBillIssue::setUpGrid()
{
    m_ui->grdBills->setModel(&m_bills);
    for (int column = 0; column < m_bills.columnCount(); ++column)
        m_ui->grdBills->setColumnWidth(column, (BillTicks::width(column) + 2) *
                                                   fontMetrics().horizontalAdvance(u'0'));
    m_ui->grdBills->horizontalHeader()->setStretchLastSection(true);
    m_ui->grdBills->letGiveWay({{BillTicks::nameColumn, fontMetrics().horizontalAdvance(u'0') * 14},
                                {BillTicks::codeColumn, fontMetrics().horizontalAdvance(u'0') * 6}});
    m_ui->grdBills->installEventFilter(this);
    connect(&m_bills, &BillTicks::choiceChanged, this, &DialogBillIssue::showState);
    connect(m_ui->grdBills, &QTableView::doubleClicked, this, &DialogBillIssue::preview);
}

void DialogBillIssue::connectControls()
{
    connect(m_ui->cmbClosing, &QComboBox::currentIndexChanged, this, &DialogBillIssue::presetPeriod);
    for (QDateEdit *box :
         {static_cast<QDateEdit *>(m_ui->DTPicker1), static_cast<QDateEdit *>(m_ui->DTPicker2)})
        connect(box, &QDateEdit::dateChanged, this, &DialogBillIssue::takeTypedPeriod);
    connect(m_ui->Check1, &QCheckBox::toggled, &m_bills, &BillTicks::setSalesOnly);
    connect(m_ui->txtMessage, &QLineEdit::editingFinished, this, [this] {
        workspace().settings.write(workspace::keys::billMessage, m_ui->txtMessage->text().trimmed());
    });
    connect(m_ui->cmdTickAll, &QPushButton::clicked, &m_bills, [this] { m_bills.tickAll(true); });
    connect(m_ui->cmdTickNone, &QPushButton::clicked, &m_bills, [this] { m_bills.tickAll(false); });
}

void DialogBillIssue::connectActions()
{
    const std::pair<QPushButton *, void (DialogBillIssue::*)()> actions[] = {
        {m_ui->cmdList, &DialogBillIssue::list},       {m_ui->cmdPreview, &DialogBillIssue::preview},
        {m_ui->cmdUndoTax, &DialogBillIssue::undoTax}, {m_ui->cmdPrint, &DialogBillIssue::print},
        {m_ui->cmdPdf, &DialogBillIssue::savePdf},     {m_ui->cmdClose, &DialogBillIssue::reject},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->cmdBookTax, &QPushButton::clicked, this, [this] { bookTax(m_bills.tickedUnbooked()); });
}

// The blank bar ticks the bill whichever of its fields the cursor is in.
bool DialogBillIssue::eventFilter(QObject *watched, QEvent *event)
{
    const bool isBlankBar = watched == m_ui->grdBills && event->type() == QEvent::KeyPress &&
                            static_cast<QKeyEvent *>(event)->key() == Qt::Key_Space;
    if (isBlankBar)
        m_bills.toggle(m_ui->grdBills->currentIndex().row());
    return isBlankBar || Screen::eventFilter(watched, event);
}

// --- The list ---

book::Period DialogBillIssue::period() const { return {m_ui->DTPicker1->date(), m_ui->DTPicker2->date()}; }

void DialogBillIssue::openClosingDay(int closingDay)
{
    m_ui->cmbClosing->setCurrentIndex(std::max(0, m_ui->cmbClosing->findData(closingDay)));
    m_listsWhenShown = !isVisible();
    if (!m_listsWhenShown)
        list();
}

void DialogBillIssue::becameActive()
{
    if (std::exchange(m_listsWhenShown, false))
        list();
}

// Dates that were set by hand stay. What is listed is of the boxes over it, or nothing is.
void DialogBillIssue::presetPeriod()
{
    if (!m_periodIsTyped) {
        const QScopedValueRollback filling(m_presets, true);
        const book::Period last = closingPeriod(m_ui->cmbClosing->currentData().toInt(), workspace().today());
        m_ui->DTPicker1->setDate(last.from);
        m_ui->DTPicker2->setDate(last.to);
    }
    followPeriod();
}

void DialogBillIssue::takeTypedPeriod()
{
    if (m_presets)
        return;
    m_periodIsTyped = true;
    followPeriod();
}

void DialogBillIssue::followPeriod()
{
    m_ui->DTPicker3->setDate(taxDate(period(), workspace().today()));
    if (m_bills.rowCount() > 0)
        m_bills.setBills({}, m_ui->Check1->isChecked());
}

base::Result<DialogBillIssue::Listed> DialogBillIssue::compute()
{
    const BillRun run{.period = period(), .closingDay = m_ui->cmbClosing->currentData().toInt()};
    auto bills =
        ui::runWithProgress(this, u"請求額を計算しています。"_s, [&](const base::Progress &progress) {
            return billsOf(workspace().connection, run, billOptionsOf(workspace()), progress);
        });
    if (!bills)
        return bills.error();
    auto issued = issuedOf(workspace().connection, *bills);
    if (!issued)
        return issued.error();
    return Listed{std::move(*bills), std::move(*issued)};
}

void DialogBillIssue::list()
{
    auto listed = compute();
    if (!listed) {
        if (!listed.error().cancelled)
            tell(listed.status());
        return;
    }
    m_booked.clear();
    m_bills.setBills(std::move(listed->bills), m_ui->Check1->isChecked(), listed->issued);
    if (m_bills.rowCount() == 0) {
        ui::prompts::inform(this, ui::messages::nothingFound());
        m_ui->cmbClosing->setFocus();
        return;
    }
    m_ui->grdBills->selectRow(0);
    m_ui->grdBills->setFocus();
}

void DialogBillIssue::renew()
{
    const int row = m_ui->grdBills->currentIndex().row();
    auto listed = compute();
    if (!listed) {
        tell(listed.status());
        return;
    }
    m_bills.renewBills(std::move(listed->bills), listed->issued);
    m_ui->grdBills->selectRow(row);
}

void DialogBillIssue::showState()
{
    const std::vector<CustomerBill> ticked = m_bills.ticked();
    const std::vector<CustomerBill> unbooked = m_bills.tickedUnbooked();
    const qsizetype issued = m_bills.issuedCount();
    double billed = 0;
    for (const CustomerBill &bill : ticked)
        billed += bill.sums.billed(m_ui->Check1->isChecked());
    m_ui->lblCount->setText(u"%1 件のうち %2 件　今回請求額 %3 円"_s.arg(m_bills.rowCount())
                                .arg(ticked.size())
                                .arg(text::formatAmount(billed)) +
                            (issued > 0 ? u"　発行済 %1 件"_s.arg(issued) : QString()));
    m_ui->lblUnbooked->setText(unbookedWords(unbooked));
    m_ui->cmdBookTax->setEnabled(!unbooked.empty());
    m_ui->cmdUndoTax->setEnabled(!m_booked.empty());
    for (QPushButton *button : {m_ui->cmdTickAll, m_ui->cmdTickNone, m_ui->cmdPreview})
        button->setEnabled(m_bills.rowCount() > 0);
    for (QPushButton *button : {m_ui->cmdPrint, m_ui->cmdPdf})
        button->setEnabled(!ticked.empty());
}

// --- The tax ---

bool DialogBillIssue::bookTax(const std::vector<CustomerBill> &bills)
{
    const QDate date = m_ui->DTPicker3->date();
    const bool outside = date < period().from || date > period().to;
    if (outside &&
        !ui::prompts::askCautiously(this, u"日付が期間の外にあります。この日付で入力しますか。"_s)) {
        m_ui->DTPicker3->setFocus();
        return false;
    }
    const auto rate = slips::slipRateOf(workspace(), date);
    if (!tell(rate.status()))
        return false;
    book::NewSlip pattern;
    pattern.kind = book::sale;
    pattern.date = date;
    pattern.employee = workspace().panel.employeeId;
    pattern.taxRate = *rate;
    pattern.infix = workspace().panel.numberInfix;
    auto booked = bookBillTaxes(workspace().connection, bills, billOptionsOf(workspace()), pattern);
    if (!tell(booked.status()))
        return false;
    m_booked = std::move(*booked);
    renew();
    m_ui->lblUnbooked->setText(u"%1 件の消費税を計上しました。"_s.arg(m_booked.size()));
    return true;
}

void DialogBillIssue::undoTax()
{
    if (!ui::prompts::askCautiously(
            this, u"計上した %1 件の消費税の伝票を取り消します。よろしいですか。"_s.arg(m_booked.size())) ||
        !tell(cancelBillTaxes(workspace().connection, m_booked)))
        return;
    m_booked.clear();
    renew();
}

bool DialogBillIssue::settleTax(const std::vector<CustomerBill> &bills)
{
    std::vector<CustomerBill> unbooked = bills;
    std::erase_if(unbooked, [](const CustomerBill &bill) { return bill.sums.unbooked.value_or(0) == 0; });
    if (unbooked.empty())
        return true;
    const auto way = ui::prompts::askWhichWay(
        this, u"%1 件の請求書に、まだ計上されていない消費税があります。"_s.arg(unbooked.size()),
        {u"計上して発行"_s, u"このまま発行"_s});
    return way && (*way == 1 || bookTax(unbooked));
}

} // namespace reports
