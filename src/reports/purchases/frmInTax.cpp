#include "reports/purchases/frmInTax.h"

#include "book/numbering.h"
#include "book/tax.h"
#include "slips/entry/amount_entry.h"
#include "slips/entry/slip_screen.h"
#include "slips/tax_rates_of.h"
#include "text/numbers.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_frmInTax.h"
#include "workspace/workspace.h"

#include <QHeaderView>

using namespace Qt::StringLiterals;

namespace reports
{

frmInTax::frmInTax(workspace::Workspace &workspace, QWidget *parent)
    : Screen(workspace, parent)
    , m_ui(std::make_unique<Ui::frmInTax>())
    , m_found(workspace.connection)
{
    m_ui->setupUi(this);
    m_ui->Text1->hide();
    m_ui->Check1->setChecked(true);
    const QDate today = workspace.today();
    m_ui->DTPicker1->setDate({today.year(), today.month(), 1});
    m_ui->DTPicker2->setDate({today.year(), today.month(), today.daysInMonth()});
    suggestDate();
    if (workspace.panel.automaticNumbers) {
        m_ui->txtDenNo->setReadOnly(true);
        m_ui->txtDenNo->setFocusPolicy(Qt::NoFocus);
    }
    tell(book::openCounterpart(m_found, suppliersTaxedOnBill, 0));
    m_ui->DataGrid1->bind(m_found, [this](const QString &refusal) { ui::prompts::inform(this, refusal); });
    slips::setWidths(m_ui->DataGrid1, {60, 260, 190, 360, 120, 0, 0});
    m_ui->DataGrid1->horizontalHeader()->setStretchLastSection(true);
    connectControls();
    setEntered(std::nullopt);
    showFigures(false);
    setUp();
}

frmInTax::~frmInTax() = default;

void frmInTax::connectControls()
{
    const std::pair<QPushButton *, void (frmInTax::*)()> actions[] = {
        {m_ui->Command1, &frmInTax::search},
        {m_ui->cmdSubAdd, &frmInTax::enterTax},
        {m_ui->cmdNext, &frmInTax::next},
        {m_ui->cmdMasterCancel, &frmInTax::cancelSlip},
        {m_ui->cmdMasterUpdate, &frmInTax::goOnWithEntry},
    };
    for (const auto &[button, action] : actions)
        connect(button, &QPushButton::clicked, this, action);
    for (QDateEdit *box :
         {static_cast<QDateEdit *>(m_ui->DTPicker1), static_cast<QDateEdit *>(m_ui->DTPicker2)})
        connect(box, &QDateEdit::dateChanged, this, &frmInTax::followPeriod);
    connect(&m_found, &db::Recordset::currentRowChanged, this, &frmInTax::showSupplier);
    if (!workspace().panel.automaticNumbers)
        connect(new ui::LeaveWatch(m_ui->txtDenNo), &ui::LeaveWatch::left, this, &frmInTax::checkNumber);
}

book::Period frmInTax::period() const { return {m_ui->DTPicker1->date(), m_ui->DTPicker2->date()}; }

// --- The supplier and its figures ---

void frmInTax::search()
{
    if (m_ui->txtKey1->text().trimmed().isEmpty()) {
        ui::prompts::inform(this, ui::messages::searchEmpty());
        m_ui->txtKey1->setFocus();
        return;
    }
    const book::CounterpartSearch &among =
        m_ui->Check1->isChecked() ? suppliersTaxedOnBill : suppliersTaxedOnDelivery;
    if (!tell(book::searchCounterparts(m_found, among, m_ui->txtKey1->text())))
        return;
    if (m_found.isEmpty()) {
        m_ui->txtKey1->setFocus();
        ui::prompts::inform(this, u"検索した仕入先は見つかりませんでした。"_s);
    } else if (m_found.count() == 1) { // needs no choosing
        goOnWithEntry();
    } else {
        m_ui->DataGrid1->setFocus();
    }
}

void frmInTax::showSupplier()
{
    const bool chosen = m_found.currentRow() >= 0;
    m_ui->Text1->setText(chosen ? QString::number(m_found.currentKey()) : QString());
    m_ui->txtNouhinsaki1->setText(m_found.text(u"仕入先名1"_s));
    m_ui->txtNouhinsaki2->setText(m_found.text(u"仕入先名2"_s));
    for (QLineEdit *name : {m_ui->txtNouhinsaki1, m_ui->txtNouhinsaki2})
        name->setCursorPosition(0);
    const QString taxClass = m_found.text(u"消費税区分"_s);
    m_ui->txtTaxK->setText(chosen && taxClass.isEmpty() ? u"0"_s : taxClass);
    m_ui->lblTaxClass->setText(chosen ? nameOf(book::taxClassFrom(m_ui->txtTaxK->text())) : QString());
    m_ui->lblMessage->clear();
    m_ui->txtKingaku->clear(); // was another supplier's
    m_suggestion.clear();
    refresh();
}

// The figures, and the tax proposed from them, are always those of the period that is shown.
void frmInTax::followPeriod()
{
    suggestDate();
    if (period().from <= period().to) {
        refresh();
        return;
    }
    m_purchases = {}; // half of the period is typed
    showFigures(false);
    suggestTax();
}

void frmInTax::suggestDate() { m_ui->DTPicker3->setDate(taxDate(period(), workspace().today())); }

bool frmInTax::refresh()
{
    const qint64 id = m_ui->Text1->text().toLongLong();
    m_purchases = {};
    base::Status done;
    if (id != 0) {
        if (const auto found = purchasesOf(workspace().connection, id, period()))
            m_purchases = *found;
        else
            done = found.error();
    }
    showFigures(m_purchases.supplier.has_value());
    suggestTax();
    return tell(done);
}

void frmInTax::showFigures(bool chosen)
{
    const PurchaseSums &sums = m_purchases.sums;
    const std::pair<QLineEdit *, std::optional<double>> figures[] = {
        {m_ui->txtCarried, sums.previous},  {m_ui->txtPurchases, sums.purchases},
        {m_ui->txtPayments, sums.payments}, {m_ui->txtBalance, sums.balance()},
        {m_ui->txtTax, sums.tax},           {m_ui->txtUntaxed, sums.untaxed()},
        {m_ui->txtUnbooked, sums.unbooked},
    };
    for (const auto &[box, amount] : figures)
        box->setText(chosen && amount ? text::formatAmount(*amount) : QString());
}

// What the clerk has typed is not replaced.
void frmInTax::suggestTax()
{
    if (m_ui->txtKingaku->text() != m_suggestion)
        return;
    const auto unbooked = m_purchases.sums.unbooked;
    m_suggestion = unbooked && *unbooked != 0 ? text::formatAmount(*unbooked) : QString();
    m_ui->txtKingaku->setText(m_suggestion);
}

void frmInTax::goOnWithEntry()
{
    if (!refresh())
        return;
    if (!m_purchases.supplier) {
        m_ui->txtKey1->setFocus();
    } else if (!m_ui->txtDenNo->isReadOnly()) {
        m_ui->txtDenNo->setFocus();
    } else {
        m_ui->txtKingaku->setFocus();
        m_ui->txtKingaku->selectAll();
    }
}

// --- The slip ---

void frmInTax::checkNumber()
{
    if (m_entered)
        return;
    const auto checked =
        book::checkManualNumber(workspace().connection, m_ui->txtDenNo->text(), book::purchase.letter);
    if (checked)
        return;
    m_ui->txtDenNo->setFocus();
    const bool isWrong = checked.error().text == book::wrongNumber();
    ui::prompts::inform(this, checked.error().text, QString::fromUtf16(ui::prompts::information),
                        ui::prompts::Icon::Information,
                        isWrong ? book::letterRemark(book::purchase.letter) : QString());
}

book::NewSlip frmInTax::newSlip(double taxRate) const
{
    const workspace::Panel &panel = workspace().panel;
    book::NewSlip slip;
    slip.kind = book::purchase;
    slip.date = m_ui->DTPicker3->date();
    slip.counterpart = m_ui->Text1->text().toLongLong();
    slip.employee = panel.employeeId;
    slip.taxRate = taxRate;
    slip.infix = panel.numberInfix;
    if (!panel.automaticNumbers)
        slip.manualNumber = m_ui->txtDenNo->text();
    slip.manualLetter = book::purchase.letter;
    return slip;
}

// Asks about what would make the period's tax come out twice, or not at all.
bool frmInTax::mayEnter(const book::NewSlip &slip)
{
    const auto present = purchasesOf(workspace().connection, slip.counterpart, period());
    if (!present)
        return tell(present.error());
    const bool outside = slip.date < period().from || slip.date > period().to;
    if (outside &&
        !ui::prompts::askCautiously(this, u"日付が期間の外にあります。この日付で入力しますか。"_s)) {
        m_ui->DTPicker3->setFocus();
        return false;
    }
    return !present->isTaxBooked ||
           ui::prompts::askCautiously(this,
                                      u"この期間の消費税はすでに計上されています。さらに入力しますか。"_s);
}

void frmInTax::enterTax()
{
    const auto rate = slips::slipRateOf(workspace(), m_ui->DTPicker3->date());
    if (!tell(rate.status()))
        return;
    const book::NewSlip slip = newSlip(*rate);
    if (slip.counterpart == 0) {
        ui::prompts::inform(this, u"仕入先が選択されていません。"_s);
        m_ui->txtKey1->setFocus();
        return;
    }
    const auto tax = slips::readAmount(this, m_ui->txtKingaku, u"消費税が入力されていません。"_s);
    if (!tax || !mayEnter(slip))
        return;
    const auto entered = enterPurchaseTax(workspace().connection, slip, *tax);
    if (!entered) {
        if (slip.manualNumber)
            m_ui->txtDenNo->setFocus();
        tell(entered.error());
        return;
    }
    setEntered(*entered);
    refresh();
    m_ui->txtDenNo->setText(entered->header.number);
    m_ui->txtKingaku->setText(text::formatQuantity(*tax));
    m_ui->lblMessage->setText(
        u"伝票 %1 を保存しました。　消費税 %2 円"_s.arg(entered->header.number, text::formatQuantity(*tax)));
    m_ui->cmdNext->setFocus();
}

void frmInTax::next()
{
    setEntered(std::nullopt);
    tell(book::openCounterpart(m_found, suppliersTaxedOnBill, 0));
    m_ui->txtKey1->clear();
    m_ui->txtKey1->setFocus();
}

void frmInTax::cancelSlip()
{
    if (!m_entered)
        return;
    const QString inWords =
        u"伝票 %1　消費税 %2 円"_s.arg(m_entered->header.number, text::formatQuantity(m_entered->tax));
    if (!ui::prompts::askCautiously(this, ui::messages::deleteQuestion(), inWords))
        return;
    const TaxSlip slip = *m_entered;
    const base::Status cancelled = cancelPurchaseTax(workspace().connection, slip);
    if (!tell(cancelled))
        return;
    setEntered(std::nullopt);
    m_ui->lblMessage->setText(u"伝票 %1 を取り消しました。"_s.arg(slip.header.number));
    goOnWithEntry();
}

// A stored slip is done: what follows is the next one, or its cancellation.
void frmInTax::setEntered(std::optional<TaxSlip> slip)
{
    m_entered = std::move(slip);
    if (!m_entered) {
        m_ui->txtDenNo->setText(workspace().panel.automaticNumbers ? QString(QChar(book::purchase.letter))
                                                                   : QString());
        m_ui->txtKingaku->clear();
        m_suggestion.clear();
    }
    for (QWidget *part : {m_ui->Frame1, m_ui->Frame2, m_ui->Frame3})
        part->setEnabled(!m_entered);
    m_ui->cmdNext->setEnabled(m_entered.has_value());
    m_ui->cmdMasterCancel->setEnabled(m_entered.has_value());
}

bool frmInTax::mayClose()
{
    const bool typed = !m_entered && m_ui->txtKingaku->text() != m_suggestion;
    return !typed ||
           ui::prompts::askCautiously(this, u"入力途中の消費税は、まだ保存されていません。閉じますか。"_s);
}

} // namespace reports
