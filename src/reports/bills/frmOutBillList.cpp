#include "reports/bills/frmOutBillList.h"

#include "reports/bills/bill_options_of.h"
#include "reports/bills/frmOutBill.h"
#include "reports/charts/DialogCharts.h"
#include "reports/ledgers/ledger_screen.h"
#include "reports/purchases/purchase_report.h"
#include "reports/report_actions.h"
#include "text/dates.h"
#include "text/format_value.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_frmOutBillList.h"

#include <QHeaderView>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr int nameColumn = 1;

QString nothingFound() { return u"該当するデータが見つかりませんでした。"_s; }

// None where the row leads nowhere.
std::optional<BillTarget> targetIn(const QVariant &link)
{
    if (link.metaType() != QMetaType::fromType<BillTarget>())
        return std::nullopt;
    return link.value<BillTarget>();
}

} // namespace

frmOutBillList::frmOutBillList(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmOutBillList>())
{
    m_ui->setupUi(this);
    m_sums = {{m_ui->lblSum1, m_ui->txtSum1}, {m_ui->lblSum2, m_ui->txtSum2}, {m_ui->lblSum3, m_ui->txtSum3},
              {m_ui->lblSum4, m_ui->txtSum4}, {m_ui->lblSum5, m_ui->txtSum5}, {m_ui->lblSum6, m_ui->txtSum6}};
    const QDate today = workspace.today();
    m_ui->DTPicker1->setDate({today.year(), today.month(), 1});
    m_ui->DTPicker2->setDate({today.year(), today.month(), today.daysInMonth()});
    m_shown = query();
    m_ui->MSFlexGrid1->showColumns(monthlyBillsReport({}, m_shown).columns);
    m_ui->MSFlexGrid1->letSortRows();
    // There are more columns than a window has room for: names keep theirs, and the rest scrolls.
    m_ui->MSFlexGrid1->horizontalHeader()->setSectionResizeMode(nameColumn, QHeaderView::Interactive);
    showList(monthlyBillsReport({}, m_shown));
    connectControls();
    setUp();
}

frmOutBillList::~frmOutBillList() = default;

void frmOutBillList::connectControls()
{
    const std::pair<QPushButton *, void (frmOutBillList::*)()> actions[] = {
        {m_ui->cmdMasterUpdate, &frmOutBillList::recompute},
        {m_ui->Command4, &frmOutBillList::openBill},
        {m_ui->cmdLedger, &frmOutBillList::openLedger},
        {m_ui->cmdCharts, &frmOutBillList::openCharts},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    connect(m_ui->Check1, &QCheckBox::clicked, this, &frmOutBillList::recompute);
    connect(m_ui->Check2, &QCheckBox::clicked, this, &frmOutBillList::showMode);
    connect(m_ui->Command2, &QPushButton::clicked, this,
            [this] { printReport(workspace(), this, m_ui->MSFlexGrid1->report()); });
    connect(m_ui->Command3, &QPushButton::clicked, this,
            [this] { exportReport(this, m_ui->MSFlexGrid1->report()); });
    for (const ui::DateBox *box : {m_ui->DTPicker1, m_ui->DTPicker2})
        connect(box, &QDateEdit::dateChanged, this, &frmOutBillList::showState);
    connect(m_ui->MSFlexGrid1, &QTableView::doubleClicked, m_ui->Command4, &QPushButton::click);
    connect(m_ui->MSFlexGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmOutBillList::showOpening);
}

// Of customers' own periods the last day alone is asked for.
void frmOutBillList::showMode()
{
    const bool own = m_ui->Check2->isChecked();
    m_ui->DTPicker1->setEnabled(!own);
    m_ui->lblPeriod->setBuddy(own ? m_ui->DTPicker2 : m_ui->DTPicker1);
    recompute();
}

MonthlyBillsQuery frmOutBillList::query() const
{
    return {{m_ui->DTPicker1->date(), m_ui->DTPicker2->date()},
            m_ui->Check2->isChecked(),
            m_ui->Check1->isChecked()};
}

// --- The list ---

// The list is read when the screen opens. That the month has no slips yet is then no news worth a box.
void frmOutBillList::becameActive()
{
    if (m_hasRead)
        return;
    m_hasRead = true;
    if (const base::Status done = read(); !done && !done.error().cancelled)
        tell(done);
}

void frmOutBillList::recompute()
{
    const base::Status done = read();
    if (!done) {
        if (!done.error().cancelled)
            tell(done);
    } else if (m_ui->MSFlexGrid1->rowCount() == 0) {
        ui::prompts::inform(this, nothingFound());
    } else {
        m_ui->MSFlexGrid1->setFocus();
    }
}

base::Status frmOutBillList::read()
{
    const MonthlyBillsQuery asked = query();
    const auto bills = ui::runWithProgress(this, u"集計しています。"_s, [&](const base::Progress &progress) {
        return monthlyBills(workspace().connection, asked, billOptionsOf(workspace()), progress);
    });
    // After a failure the rows no longer stand for what the boxes above them say.
    m_shown = asked;
    showList(monthlyBillsReport(bills ? *bills : std::vector<CustomerBill>(), asked));
    if (!bills)
        m_ui->lblMessage->setText(bills.error().cancelled ? bills.error().text : QString());
    return bills.status();
}

void frmOutBillList::showList(base::Report report)
{
    m_ui->MSFlexGrid1->setReport(std::move(report));
    const bool any = m_ui->MSFlexGrid1->rowCount() > 0;
    m_ui->Command2->setEnabled(any);
    m_ui->Command3->setEnabled(any);
    showState();
    showSums();
    showOpening();
}

// Figures of one period under the dates of another would be taken for what they are not.
void frmOutBillList::showState()
{
    const int count = m_ui->MSFlexGrid1->rowCount();
    const MonthlyBillsQuery asked = query();
    const bool isShown = asked.period.to == m_shown.period.to &&
                         (asked.ownPeriods || asked.period.from == m_shown.period.from);
    if (!isShown)
        m_ui->lblMessage->setText(u"期間が変わりました。再集計を押してください。"_s);
    else
        m_ui->lblMessage->setText(count > 0 ? u"納品先　%1 件"_s.arg(count) : nothingFound());
}

void frmOutBillList::showSums()
{
    const std::vector<base::NamedSum> &sums = m_ui->MSFlexGrid1->report().sums;
    for (std::size_t i = 0; i < m_sums.size() && i < sums.size(); ++i) {
        m_sums[i].first->setText(sums[i].name);
        m_sums[i].second->setText(text::formatValue(sums[i].format, sums[i].value));
    }
}

// --- What the rows lead to ---

void frmOutBillList::showOpening()
{
    const auto target = targetIn(m_ui->MSFlexGrid1->currentLink());
    m_ui->Command4->setEnabled(target && target->customer && !target->unknown);
    m_ui->cmdLedger->setEnabled(target.has_value());
}

void frmOutBillList::setPrinterSettings(std::function<void(QWidget *)> open)
{
    m_openPrinterSettings = std::move(open);
}

void frmOutBillList::openBill()
{
    const auto target = targetIn(m_ui->MSFlexGrid1->currentLink());
    if (!target || !target->customer || target->unknown)
        return;
    frmOutBill bill(workspace(), this);
    if (m_openPrinterSettings)
        bill.setPrinterSettings(m_openPrinterSettings);
    bill.openBill(*target->customer, target->period);
    bill.exec();
    tell(read());
}

void frmOutBillList::openLedger()
{
    const auto target = targetIn(m_ui->MSFlexGrid1->currentLink());
    if (!target)
        return;
    frmOutMoto ledger(workspace(), this);
    ledger.openLedger(LedgerTarget{target->customer}, target->period.to);
    ledger.exec();
    tell(read());
}

void frmOutBillList::openCharts()
{
    const auto target = targetIn(m_ui->MSFlexGrid1->currentLink());
    DialogCharts charts(workspace(), this);
    charts.openCharts(book::Party::Customer, m_ui->DTPicker2->date(),
                      target ? std::optional(target->customer) : std::nullopt, false);
    charts.exec();
}

} // namespace reports
