#include "book/tax.h"
#include "reports/bills/bill_header.h"
#include "reports/bills/bill_options_of.h"
#include "reports/bills/frmOutBill.h"
#include "text/numbers.h"
#include "ui_frmOutBill.h"

using namespace Qt::StringLiterals;

// How the screen of bills shows what was computed.
namespace reports
{

namespace
{

QString percent(double rate) { return text::formatPlain(rate) + u'%'; }

QString remarkOf(const Bill &bill, const BillOptions &options)
{
    if (bill.sums.cannotTax)
        return u"消費税率のない伝票、または金額が数字でない伝票があるため、消費税を計算できません。"
               "伝票を訂正してください。"_s;
    if (const QString doubt = taxDoubt(bill); !doubt.isEmpty())
        return doubt;
    if (bill.outdatedRate && bill.sums.unbooked)
        return u"伝票の消費税率は %1 ですが、メイン画面の消費税率 %2 で計算しています。"_s.arg(
            percent(*bill.outdatedRate), percent(options.rateByHand.value_or(0)));
    return {};
}

} // namespace

void frmOutBill::showAddress()
{
    const BillCustomer customer = m_bill ? m_bill->customer : BillCustomer();
    m_ui->Text1->setText(m_customer == 0 ? QString() : QString::number(m_customer));
    m_ui->lblTaxClass->setText(m_bill ? book::nameOf(customer.taxClass) : QString());
    m_ui->txtNouhinsaki1->setText(customer.name1);
    m_ui->txtNouhinsaki2->setText(customer.name2);
    const QStringList address{customer.zip, customer.address1, customer.address2};
    m_ui->txtAddress->setText(address.join(u' ').trimmed());
    for (QLineEdit *box : {m_ui->txtNouhinsaki1, m_ui->txtNouhinsaki2, m_ui->txtAddress})
        box->setCursorPosition(0);
    m_ui->RichTextBox1->setPlainText(m_bill ? billHeaderLines(*m_bill).join(u'\n') : QString());
}

void frmOutBill::showNothing(const QString &message)
{
    showAddress();
    m_ui->MSFlexGrid1->clear();
    showFigures();
    suggestTax();
    showState();
    if (!message.isEmpty())
        m_ui->lblMessage->setText(message);
}

void frmOutBill::showFigures()
{
    const BillSums sums = m_bill ? m_bill->sums : BillSums();
    const std::pair<QLineEdit *, std::optional<double>> figures[] = {
        {m_ui->Text2, sums.previous}, {m_ui->Text3, sums.sales},
        {m_ui->Text4, sums.received}, {m_ui->Text5, sums.billed(m_ui->Check1->isChecked())},
        {m_ui->Text6, sums.unbooked}, {m_ui->Text7, sums.untaxed},
        {m_ui->Text8, sums.tax()},    {m_ui->Text9, sums.carried()},
    };
    for (const auto &[box, amount] : figures)
        box->setText(m_bill && m_bill->hasSlips && amount ? text::formatAmount(*amount) : QString());
}

void frmOutBill::showState()
{
    m_ui->cmdNext->setEnabled(m_place + 1 < m_list.size());
    m_ui->cmdPeriod->setEnabled(m_periodIsTyped);
    m_ui->cmdSlip->setEnabled(m_ui->MSFlexGrid1->currentLink().isValid());
    m_ui->lblClosing->setText(m_list.empty() ? QString()
                                             : u"%1 / %2 件"_s.arg(m_place + 1).arg(m_list.size()));
    m_ui->lblMessage->setText(m_bill ? remarkOf(*m_bill, billOptionsOf(workspace())) : QString());
}

} // namespace reports
