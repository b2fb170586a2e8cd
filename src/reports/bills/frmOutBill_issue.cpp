#include "book/numbering.h"
#include "book/printed_slip.h"
#include "book/tax.h"
#include "book/tax_terms.h"
#include "printing/frmPreview.h"
#include "reports/bills/bill_options_of.h"
#include "reports/bills/bill_print.h"
#include "reports/bills/frmOutBill.h"
#include "reports/purchases/purchase_tax.h"
#include "slips/documents/transfer_form_print.h"
#include "slips/entry/amount_entry.h"
#include "slips/tax_rates_of.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "ui/messages.h"
#include "ui/prompts.h"
#include "ui_frmOutBill.h"

#include <cmath>

using namespace Qt::StringLiterals;

// What the screen of bills does with one: books its tax and prints it.
namespace reports
{

namespace
{

// "10% 1,000 円、軽減8% 80 円"
QString byRates(const std::vector<book::RateTax> &taxes)
{
    QStringList words;
    for (const book::RateTax &tax : taxes)
        words << u"%1 %2 円"_s.arg(book::rateName(tax.taxClass, tax.rate), text::formatAmount(tax.tax));
    return words.join(u'、');
}

// Where its letter was typed as well, it is not doubled.
QString numberWith(char16_t letter, const QString &typed)
{
    const QString number = typed.trimmed();
    return book::kindOf(number) == book::sale ? number : QChar(letter) + number;
}

QString inWords(const BillTaxSlip &slip)
{
    double tax = 0;
    for (const book::SlipLine &line : slip.written.lines)
        tax += line.amount;
    return u"伝票 %1　%2\n納品先「%3」\n消費税 %4 円"_s.arg(slip.written.number,
                                                            text::formatDate(slip.written.date),
                                                            slip.written.name1, text::formatQuantity(tax));
}

} // namespace

// --- The tax ---

// What the clerk has typed is not replaced.
void frmOutBill::suggestTax()
{
    if (m_entered || taxIsTyped())
        return;
    const double unbooked = m_bill && m_bill->hasSlips ? m_bill->sums.unbooked.value_or(0) : 0;
    m_suggestion = unbooked != 0 ? text::formatAmount(unbooked) : QString();
    m_ui->txtTanka->setText(m_suggestion);
}

void frmOutBill::suggestDate() { m_ui->DTPicker3->setDate(taxDate(period(), workspace().today())); }

bool frmOutBill::taxIsTyped() const { return !m_entered && m_ui->txtTanka->text() != m_suggestion; }

void frmOutBill::checkNumber()
{
    if (m_entered || m_ui->txtDenNo->text().trimmed().isEmpty())
        return;
    const auto checked = book::checkManualNumber(
        workspace().connection, numberWith(book::sale.letter, m_ui->txtDenNo->text()), book::sale.letter);
    if (!checked) {
        m_ui->txtDenNo->setFocus();
        tell(checked);
    }
}

book::NewSlip frmOutBill::newTaxSlip(double taxRate) const
{
    const workspace::Panel &panel = workspace().panel;
    book::NewSlip slip;
    slip.kind = book::sale;
    slip.date = m_ui->DTPicker3->date();
    slip.counterpart = m_customer;
    slip.employee = panel.employeeId;
    slip.taxRate = taxRate;
    slip.infix = panel.numberInfix;
    if (!panel.automaticNumbers)
        slip.manualNumber = numberWith(book::sale.letter, m_ui->txtDenNo->text());
    slip.manualLetter = book::sale.letter;
    return slip;
}

// Asks about what would make the period's tax come out twice, not at all, or as no rate's.
bool frmOutBill::mayBook(const Bill &present, const book::NewSlip &slip, double tax)
{
    const bool outside = slip.date < period().from || slip.date > period().to;
    if (outside &&
        !ui::prompts::askCautiously(this, u"日付が期間の外にあります。この日付で入力しますか。"_s)) {
        m_ui->DTPicker3->setFocus();
        return false;
    }
    QString doubt;
    if (present.customer.taxClass != book::TaxClass::OnBill)
        doubt = u"この納品先の消費税は「%1」で、請求時には計算しません。消費税の伝票を入力しますか。"_s.arg(
            book::nameOf(present.customer.taxClass));
    else if (present.sums.tax() != 0)
        doubt = u"この期間の消費税はすでに計上されています。さらに入力しますか。"_s;
    else if (present.sums.unbooked.value_or(tax) != tax && present.sums.unbookedRates.size() <= 1)
        doubt = u"期間の売上から計算した消費税 %1 円と違います。%2 円で入力しますか。"_s.arg(
            text::formatAmount(*present.sums.unbooked), text::formatAmount(tax));
    else if (present.sums.unbookedRates.size() > 1 && present.sums.unbooked != tax)
        doubt = u"税率ごとの消費税（%1）の合計と違うため、税率に分けずに入力します。よろしいですか。"_s.arg(
            byRates(present.sums.unbookedRates));
    return doubt.isEmpty() || ui::prompts::askCautiously(this, doubt);
}

bool frmOutBill::bookTax()
{
    const auto tax = slips::readAmount(this, m_ui->txtTanka, u"消費税が入力されていません。"_s);
    if (!tax)
        return false;
    const auto rate = slips::slipRateOf(workspace(), m_ui->DTPicker3->date());
    if (m_customer == 0) {
        compute(Telling::InBox); // tells it
        return false;
    }
    if (!tell(rate.status()))
        return false;
    const auto present = billOf(workspace().connection, m_customer, period(), billOptionsOf(workspace()));
    const book::NewSlip slip = newTaxSlip(*rate);
    if (!tell(present.status()) || !mayBook(*present, slip, *tax))
        return false;
    auto entered = enterBillTax(workspace().connection, slip, *tax, billTaxes(*tax, present->sums));
    if (!entered) {
        if (slip.manualNumber)
            m_ui->txtDenNo->setFocus();
        tell(entered.error());
        return false;
    }
    const QString number = entered->header.number;
    setEntered(std::move(*entered));
    m_ui->txtTanka->setText(text::formatQuantity(*tax));
    compute(Telling::InLine);
    m_ui->lblMessage->setText(
        u"伝票 %1 を保存しました。　消費税 %2 円"_s.arg(number, text::formatQuantity(*tax)));
    m_ui->Command2->setFocus();
    return true;
}

void frmOutBill::cancelTax()
{
    if (!m_entered || !ui::prompts::askCautiously(this, ui::messages::deleteQuestion(), inWords(*m_entered)))
        return;
    const BillTaxSlip slip = *m_entered;
    if (!tell(cancelBillTax(workspace().connection, slip)))
        return;
    setEntered(std::nullopt);
    compute(Telling::InLine);
    m_ui->lblMessage->setText(u"伝票 %1 を取り消しました。"_s.arg(slip.header.number));
    m_ui->txtTanka->setFocus();
}

// A stored slip is done: it can be taken back as long as its customer is shown.
void frmOutBill::setEntered(std::optional<BillTaxSlip> slip)
{
    m_entered = std::move(slip);
    m_ui->txtDenNo->setText(m_entered ? m_entered->header.number.mid(1) : QString());
    if (!m_entered) {
        m_suggestion.clear();
        m_ui->txtTanka->clear();
    }
    for (QWidget *part :
         std::initializer_list<QWidget *>{m_ui->txtDenNo, m_ui->DTPicker3, m_ui->txtTanka, m_ui->Command4})
        part->setEnabled(!m_entered);
    m_ui->cmdMasterCancel->setEnabled(m_entered.has_value());
}

bool frmOutBill::mayClose()
{
    return !taxIsTyped() ||
           ui::prompts::askCautiously(this, u"入力途中の消費税は、まだ保存されていません。閉じますか。"_s);
}

// --- The paper ---

// What is printed is what was shown: where a slip, the customer or the company's rate was changed since, the
// clerk looks at it first.
bool frmOutBill::isReadyToPrint()
{
    const auto shown = m_bill;
    const bool computed = compute(Telling::ErrorsInBox);
    if (!m_bill)
        return false;
    if (!computed || !m_bill->hasSlipsInPeriod) {
        ui::prompts::inform(this, u"該当するデータがありません。"_s);
        return false;
    }
    if (!std::isfinite(m_bill->sums.balance())) {
        ui::prompts::inform(
            this, u"金額が数字でない伝票があるため、請求書を印刷できません。伝票を訂正してください。"_s);
        return false;
    }
    if (shown && isSameBill(*shown, *m_bill))
        return true;
    ui::prompts::inform(this, u"表示した後に伝票か納品先が変更されたため、計算し直しました。\n"
                              "請求額を確かめてから、もう一度印刷してください。"_s);
    return false;
}

// A bill without the tax that is due is asked about. \return whether to print it now
bool frmOutBill::settleTax()
{
    const double unbooked = m_bill->sums.unbooked.value_or(0);
    if (const QString doubt = taxDoubt(*m_bill); !doubt.isEmpty())
        return ui::prompts::askCautiously(
            this, doubt + u"\nこのまま印刷しますか。"_s,
            u"このまま印刷すると、税率ごとの金額と消費税の欄は印刷されません。"_s);
    if (unbooked == 0)
        return !m_bill->sums.cannotTax ||
               ui::prompts::askCautiously(
                   this, u"消費税を計算できないため、消費税のない請求書になります。このまま印刷しますか。"_s);
    const auto way = ui::prompts::askWhichWay(
        this, u"消費税 %1 円がまだ計上されていません。"_s.arg(text::formatAmount(unbooked)),
        {u"計上して印刷"_s, u"このまま印刷"_s});
    if (!way)
        return false;
    if (*way == 0 && m_ui->txtTanka->text().trimmed().isEmpty())
        m_ui->txtTanka->setText(text::formatAmount(unbooked));
    return *way == 1 || bookTax();
}

void frmOutBill::print()
{
    if (!isReadyToPrint() || !settleTax())
        return;
    const bool salesOnly = m_ui->Check1->isChecked();
    const double billed = m_bill->sums.billed(salesOnly);
    auto document = billDocument(workspace(), *m_bill, {salesOnly});
    if (!tell(document.status()))
        return;
    if (!printing::showPreview(workspace(), this, std::move(*document)))
        return;
    ui::prompts::inform(this, u"すべてのデータを排出しました。"_s);
    if (m_ui->Check2->isChecked())
        slips::printTransferForm(workspace(), this, {m_customer, billed});
    if (m_ui->cmdNext->isEnabled())
        m_ui->cmdNext->setFocus();
}

} // namespace reports
