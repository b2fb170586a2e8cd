#include "reports/purchases/frmInList.h"

#include "reports/purchases/purchase_report.h"
#include "reports/report_actions.h"
#include "slips/entry/slip_screen.h"
#include "text/numbers.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_frmInList.h"
#include "workspace/workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

// Pixels.
constexpr int amountWidth = 130;
constexpr int sharesWidth = 90;
constexpr int deductibleWidth = 110;

void showAmount(QLineEdit *box, std::optional<double> amount)
{
    box->setText(amount ? text::formatAmount(*amount) : QString());
}

QString nothingFound() { return u"該当するデータが見つかりませんでした。"_s; }

} // namespace

frmInList::frmInList(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmInList>())
{
    m_ui->setupUi(this);
    m_ui->Text1->hide();
    const QDate today = workspace.today();
    m_ui->DTPicker1->setDate({today.year(), today.month(), 1});
    m_ui->DTPicker2->setDate({today.year(), today.month(), today.daysInMonth()});
    m_ui->MSFlexGrid1->showColumns(shownPurchases({}).columns);
    slips::setWidths(m_ui->MSFlexGrid1,
                     {320, amountWidth, amountWidth, amountWidth, amountWidth, amountWidth});
    m_shown = period();
    show({});
    connectControls();
    setUp();
}

frmInList::~frmInList() = default;

void frmInList::connectControls()
{
    connect(m_ui->cmdMasterUpdate, &QPushButton::clicked, this, &frmInList::recompute);
    connect(m_ui->Check1, &QCheckBox::clicked, this, &frmInList::recompute);
    connect(m_ui->Command2, &QPushButton::clicked, this,
            [this] { printReport(workspace(), this, purchaseReport(m_list, m_shown)); });
    connect(m_ui->Command3, &QPushButton::clicked, this,
            [this] { exportReport(this, purchaseReport(m_list, m_shown)); });
    for (QDateEdit *box :
         {static_cast<QDateEdit *>(m_ui->DTPicker1), static_cast<QDateEdit *>(m_ui->DTPicker2)})
        connect(box, &QDateEdit::dateChanged, this, &frmInList::showState);
    connect(m_ui->MSFlexGrid1->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmInList::showChosen);
}

// The list is read when the screen opens. That the month has no slips yet is then no news worth a box.
void frmInList::becameActive()
{
    if (m_hasRead)
        return;
    m_hasRead = true;
    if (const base::Status done = read(); !done && !done.error().cancelled)
        tell(done);
}

book::Period frmInList::period() const { return {m_ui->DTPicker1->date(), m_ui->DTPicker2->date()}; }

void frmInList::recompute()
{
    const base::Status done = read();
    if (!done) {
        if (!done.error().cancelled)
            tell(done);
        return;
    }
    // Suppliers without movement are no data.
    const bool any = std::ranges::any_of(
        m_list.suppliers, [](const SupplierPurchases &purchases) { return !purchases.sums.isEmpty(); });
    if (any)
        m_ui->MSFlexGrid1->setFocus();
    else
        ui::prompts::inform(this, nothingFound());
}

base::Status frmInList::read()
{
    const book::Period asked = period();
    auto done = ui::runWithProgress(this, u"集計しています。"_s, [&](const base::Progress &progress) {
        return purchaseList(workspace().connection, asked, m_ui->Check1->isChecked(), progress);
    });
    // After a failure the rows no longer stand for what the boxes above them say.
    m_shown = asked;
    show(done ? std::move(*done) : PurchaseList());
    if (!done)
        m_ui->lblMessage->setText(done.error().cancelled ? done.error().text : QString());
    return done.status();
}

void frmInList::show(PurchaseList list)
{
    m_list = std::move(list);
    showRows();
    const int count = m_ui->MSFlexGrid1->rowCount();
    m_ui->Command2->setEnabled(count > 0);
    m_ui->Command3->setEnabled(count > 0);
    showState();
    showTotals();
    showChosen();
}

// The columns of what may be deducted come with the first supplier who is not registered, at their width.
void frmInList::showRows()
{
    const int before = m_ui->MSFlexGrid1->model()->columnCount();
    m_ui->MSFlexGrid1->setReport(shownPurchases(m_list));
    for (int column = before; column < m_ui->MSFlexGrid1->model()->columnCount(); ++column)
        m_ui->MSFlexGrid1->setColumnWidth(column, column == before ? sharesWidth : deductibleWidth);
}

// Figures of one period under the dates of another would be taken for what they are not.
void frmInList::showState()
{
    const int count = m_ui->MSFlexGrid1->rowCount();
    QString state = count > 0 ? u"仕入先　%1 件"_s.arg(count) : nothingFound();
    if (period().from != m_shown.from || period().to != m_shown.to)
        state = u"表示中の集計は %1 のものです。再集計を押してください。"_s.arg(shownPeriod(m_shown));
    m_ui->lblMessage->setText(state);
}

void frmInList::showTotals()
{
    const PurchaseSums &totals = m_list.totals;
    showAmount(m_ui->txtTotalPrevious, totals.previous);
    showAmount(m_ui->txtTotalPayments, totals.payments);
    showAmount(m_ui->txtTotalCarried, totals.carried());
    showAmount(m_ui->txtTotalPurchases, totals.purchases);
    showAmount(m_ui->txtTotalBalance, totals.balance());
    const std::optional<PurchaseDeduction> &deduction = m_list.deduction;
    m_ui->lblTotalDeductible->setVisible(deduction.has_value());
    m_ui->txtTotalDeductible->setVisible(deduction.has_value());
    showAmount(m_ui->txtTotalDeductible, deduction ? deduction->tax : std::nullopt);
}

void frmInList::showChosen()
{
    const int row = m_ui->MSFlexGrid1->currentIndex().row();
    const bool chosen = row >= 0 && row < m_ui->MSFlexGrid1->rowCount();
    const SupplierPurchases purchases =
        chosen ? m_list.suppliers[static_cast<std::size_t>(row)] : SupplierPurchases();
    const auto shown = [chosen](std::optional<double> amount) { return chosen ? amount : std::nullopt; };
    const PurchaseSums &sums = purchases.sums;
    m_ui->Text1->setText(purchases.supplier ? QString::number(*purchases.supplier) : QString());
    m_ui->txtNouhinsaki1->setText(purchases.name1);
    m_ui->txtNouhinsaki2->setText(purchases.name2);
    for (QLineEdit *name : {m_ui->txtNouhinsaki1, m_ui->txtNouhinsaki2})
        name->setCursorPosition(0);
    showAmount(m_ui->txtPrevious, shown(sums.previous));
    showAmount(m_ui->txtPurchases, shown(sums.purchases));
    showAmount(m_ui->txtPayments, shown(sums.payments));
    showAmount(m_ui->txtBalance, shown(sums.balance()));
    showAmount(m_ui->txtUnbooked, shown(sums.unbooked));
    showAmount(m_ui->txtUntaxed, shown(sums.untaxed()));
    showAmount(m_ui->txtTax, shown(sums.tax));
    showAmount(m_ui->txtCarried, shown(sums.carried()));
}

} // namespace reports
