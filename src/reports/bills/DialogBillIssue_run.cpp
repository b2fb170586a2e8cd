#include "printing/DialogPrint.h"
#include "printing/frmPreview.h"
#include "printing/pdf.h"
#include "reports/bills/DialogBillIssue.h"
#include "reports/bills/bill_options_of.h"
#include "reports/bills/bill_print.h"
#include "slips/documents/transfer_form_print.h"
#include "ui/file_dialogs.h"
#include "ui/progress.h"
#include "ui/prompts.h"
#include "ui_DialogBillIssue.h"

#include <QDir>
#include <QFile>

#include <algorithm>

using namespace Qt::StringLiterals;

// The bills of the list as papers and files.
namespace reports
{

namespace
{

constexpr qsizetype mostNamed = 10; // in one message

base::Error notKept(const QString &done, const base::Error &why)
{
    return {.text = done +
                    u"が、発行控えに残せませんでした。原因を取り除いてから、この請求書を"
                    "もう一度発行してください。\n"_s +
                    why.text,
            .gone = true};
}

// What a queue took is recorded before anything else can stop the run.
base::Status printBill(workspace::Workspace &workspace, const Bill &bill, const BillChoice &choice,
                       const printing::JobSettings &settings)
{
    const auto document = billDocument(workspace, bill, choice);
    if (!document)
        return document.error();
    const printing::Look look{printing::fontFace(workspace.settings, document->purpose)};
    printing::PrintSystem &system = printing::printSystem(workspace);
    const auto job = system.print(*document, look, settings, base::unwatched);
    base::Result<QByteArray> pdf = system.takeHandedOver();
    if (!job)
        return job.error();
    if (pdf->isEmpty())
        pdf = printing::pdfOf(*document, printing::lookOn(settings, look));
    const base::Status kept = pdf ? document->keep(*pdf) : pdf.status();
    return kept ? base::Status() : notKept(u"印刷は済みました"_s, kept.error());
}

base::Status saveBill(workspace::Workspace &workspace, const Bill &bill, const BillChoice &choice,
                      const QString &fileName)
{
    const auto document = billDocument(workspace, bill, choice);
    if (!document)
        return document.error();
    const auto pdf =
        printing::pdfOf(*document, printing::Look{printing::fontFace(workspace.settings, document->purpose)});
    if (!pdf)
        return pdf.error();
    if (const base::Status written = printing::writePdf(*pdf, fileName); !written)
        return written;
    const base::Status kept = document->keep(*pdf);
    return kept ? base::Status() : notKept(u"PDF は保存しました"_s, kept.error());
}

const CustomerBill &billFor(const std::vector<CustomerBill> &bills, qint64 customer)
{
    return *std::ranges::find_if(
        bills, [customer](const CustomerBill &bill) { return bill.customer.id == customer; });
}

QString namesOf(const std::vector<CustomerBill> &bills, const std::vector<qint64> &customers)
{
    QStringList names;
    for (const qint64 customer : customers)
        names << billFor(bills, customer).customer.name();
    return names.mid(0, mostNamed).join(u'、') + (names.size() > mostNamed ? u" ほか"_s : QString());
}

qsizetype existing(const QDir &folder, const std::vector<CustomerBill> &bills)
{
    return std::ranges::count_if(
        bills, [&](const CustomerBill &bill) { return QFile::exists(folder.filePath(billFileName(bill))); });
}

} // namespace

// Those whose bills may be issued now, the tax among them settled. None where the clerk thought better of it.
std::vector<CustomerBill> DialogBillIssue::chosen()
{
    return settleTax(m_bills.ticked()) ? m_bills.ticked() : std::vector<CustomerBill>();
}

void DialogBillIssue::preview()
{
    const CustomerBill *row = m_bills.at(m_ui->grdBills->currentIndex().row());
    if (!row)
        return;
    const CustomerBill listed = *row; // booking its tax renews the rows
    if (!settleTax({listed}))
        return;
    const qint64 customer = listed.customer.id.value_or(0);
    const auto bill = billOf(workspace().connection, customer, listed.period, billOptionsOf(workspace()));
    if (!tell(bill.status()))
        return;
    auto document = billDocument(workspace(), *bill, {m_ui->Check1->isChecked()});
    if (tell(document.status()) && printing::showPreview(workspace(), this, std::move(*document)))
        m_bills.setIssued({customer}, u"発行済"_s);
}

void DialogBillIssue::print()
{
    const std::vector<CustomerBill> bills = chosen();
    if (bills.empty())
        return;
    const BillChoice choice{m_ui->Check1->isChecked()};
    const auto first = billOf(workspace().connection, bills.front().customer.id.value_or(0),
                              bills.front().period, billOptionsOf(workspace()));
    const auto sample =
        first ? billDocument(workspace(), *first, choice) : base::Result<printing::Document>(first.error());
    const auto printer = printing::selectPrinter(printing::printSystem(workspace()), workspace().settings,
                                                 printing::Purpose::DeliveryNotesAndBills);
    if (!tell(sample.status()) || !tell(printer.status()))
        return;
    if (printer->installed.isEmpty()) {
        ui::prompts::inform(this, u"プリンタが見つかりません。「PDF保存」で保存できます。"_s);
        return;
    }
    printing::DialogPrint dialog(workspace(), *sample, *printer, this);
    dialog.keepTogether(u"請求書 %1 件"_s.arg(bills.size()));
    dialog.exec();
    if (!dialog.choice())
        return;
    run(bills, u"印刷"_s,
        [&](const Bill &bill) { return printBill(workspace(), bill, choice, dialog.choice()->settings); });
}

void DialogBillIssue::savePdf()
{
    const std::vector<CustomerBill> bills = chosen();
    if (bills.empty())
        return;
    const QString folder =
        ui::file_dialogs::chooseFolder(this, u"%1 件の請求書を保存するフォルダ"_s.arg(bills.size()));
    if (folder.isEmpty())
        return;
    const QDir target(folder);
    const qsizetype there = existing(target, bills);
    if (there > 0 && !ui::prompts::askCautiously(
                         this, u"同じ名前のファイルが %1 件あります。上書きしますか。"_s.arg(there)))
        return;
    run(bills, u"保存"_s, [&](const Bill &bill) {
        const CustomerBill &listed = billFor(bills, bill.customer.id.value_or(0));
        return saveBill(workspace(), bill, {m_ui->Check1->isChecked()},
                        target.filePath(billFileName(listed)));
    });
}

void DialogBillIssue::run(const std::vector<CustomerBill> &bills, const QString &what, const IssueBill &issue)
{
    const BillRunOutcome outcome =
        ui::runWithProgress(this, u"請求書を%1しています。"_s.arg(what), [&](const base::Progress &progress) {
            return issueBills(workspace().connection, bills, billOptionsOf(workspace()), issue, progress);
        });
    m_bills.setIssued(outcome.issued, what + u"済"_s);
    if (!outcome.changed.empty())
        renew();
    tellOutcome(outcome, bills, what);
    printTransferForms(bills, outcome.issued);
}

void DialogBillIssue::tellOutcome(const BillRunOutcome &outcome, const std::vector<CustomerBill> &bills,
                                  const QString &what)
{
    const bool isWhole = outcome.issued.size() == bills.size() && !outcome.failure;
    QStringList remarks{
        u"%1 件のうち %2 件の請求書を%3しました。"_s.arg(bills.size()).arg(outcome.issued.size()).arg(what)};
    if (!outcome.changed.empty())
        remarks << u"次の納品先は、一覧を作った後に伝票が変わったため発行していません。"
                   "金額を確かめて、もう一度発行してください。\n"_s +
                       namesOf(bills, outcome.changed);
    if (!outcome.doubtful.empty())
        remarks << u"次の納品先は、消費税の行のない伝票があるか、計上した消費税が売上から計算した額と違うため"
                   "発行していません。「表示」で確かめてください。\n"_s +
                       namesOf(bills, outcome.doubtful);
    if (!isWhole && outcome.issued.size() + outcome.changed.size() + outcome.doubtful.size() < bills.size())
        remarks << u"残りには印が付いています。もう一度押すと、続きから%1します。"_s.arg(what);
    QString text = u"すべてのデータを排出しました。"_s;
    if (outcome.failure)
        text = u"「%1」の請求書で止まりました。\n"_s.arg(outcome.failedFor) + outcome.failure->text;
    else if (!isWhole)
        text = outcome.stopped ? u"中止しました。"_s : u"発行していない請求書があります。"_s;
    ui::prompts::inform(this, text, QString::fromUtf16(ui::prompts::information),
                        outcome.failure ? ui::prompts::Icon::Exclamation : ui::prompts::Icon::Information,
                        remarks.join(u'\n'));
}

// Whoever has nothing to pay gets none.
void DialogBillIssue::printTransferForms(const std::vector<CustomerBill> &bills,
                                         const std::vector<qint64> &issued)
{
    std::vector<slips::TransferRequest> requests;
    for (const qint64 customer : issued) {
        const double billed = billFor(bills, customer).sums.billed(m_ui->Check1->isChecked());
        if (billed > 0)
            requests.push_back({customer, billed});
    }
    if (!m_ui->Check2->isChecked() || requests.empty())
        return;
    const auto jobs = slips::printTransferForms(workspace(), this, requests);
    QStringList missing;
    for (std::size_t i = 0; i < jobs.size(); ++i) {
        if (!jobs[i])
            missing << billFor(bills, requests[i].customer).customer.name() + u"　"_s + jobs[i].error().text;
    }
    if (!missing.isEmpty())
        ui::prompts::inform(this, u"郵便振替用紙を印刷していない納品先があります。"_s,
                            QString::fromUtf16(ui::prompts::information), ui::prompts::Icon::Exclamation,
                            missing.mid(0, mostNamed).join(u'\n'));
}

} // namespace reports
