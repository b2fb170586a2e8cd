#include "reports/bills/bill_print.h"

#include "printing/forms/form_files.h"
#include "printing/forms/form_sheets.h"
#include "printing/forms/specimen.h"
#include "printing/text_fit.h"
#include "reports/bills/bill_header.h"
#include "reports/bills/bill_paper.h"
#include "slips/documents/note_document.h"
#include "slips/issued/issued_documents.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

slips::IssuedDocument issuedAs(const Bill &bill, bool salesOnly)
{
    return {.kind = QString::fromUtf16(slips::billKind),
            .number = billNumber(bill),
            .date = bill.period.to,
            .slipKind = book::sale,
            .counterpart = bill.customer.id,
            .counterpartName = bill.customer.name(),
            .amount = bill.sums.billed(salesOnly)};
}

QString remarksOn(const Bill &bill, const QString &complaint)
{
    const std::size_t rates = bill.rates.size();
    QStringList remarks{complaint};
    if (rates > slips::mostInvoiceRates)
        remarks.prepend(
            u"税率が %1 種類あり、税率別の欄に入りきりません。期間を分けて発行してください。"_s.arg(rates));
    remarks.removeAll(QString());
    return remarks.join(u'\n');
}

// As the print jobs and the windows call it.
QString titleOf(const slips::IssuedDocument &issued)
{
    constexpr qsizetype longestName = 40;
    return issued.kind + u' ' + issued.number + u'　' +
           printing::singleLine(issued.counterpartName).left(longestName);
}

} // namespace

base::Result<printing::Document> billDocument(workspace::Workspace &workspace, const Bill &bill,
                                              const BillChoice &choice)
{
    const workspace::Settings &settings = workspace.settings;
    const BillPaperOptions options{
        slips::companyNameOf(workspace), billOffsets(printing::noteSteps(settings)), choice.salesOnly,
        settings.checked(workspace::keys::includedOnBill), settings.text(workspace::keys::billMessage)};
    auto paper = readBillPaper(workspace.connection, bill, options);
    if (!paper)
        return paper.error();
    printing::Document document;
    const slips::IssuedDocument issued = issuedAs(bill, choice.salesOnly);
    document.title = titleOf(issued);
    document.purpose = printing::Purpose::DeliveryNotesAndBills;
    const printing::FormFile layout =
        printing::loadForm(workspace.applicationFolder(), billLayout(workspace.panel.billPaper), billItems());
    document.remark = remarksOn(bill, layout.complaint);
    paper->companyName = slips::addCompanyName(document, workspace, options.companyName);
    document.sheets = billSheets(*paper, layout.form);
    document.keep = slips::keeperOf(workspace, issued);
    return document;
}

std::vector<printing::AdjustableForm> adjustableBills(const workspace::Settings &settings)
{
    const QHash<QString, double> moved = billShifts(billOffsets(printing::noteSteps(settings)), false);
    const auto form = [&moved](const QString &caption, const char16_t *layout) {
        return printing::AdjustableForm{caption, QString::fromUtf16(layout), &billItems(), {}, moved};
    };
    return {form(u"請求書　A4 無地"_s, plainBillLayout),
            form(u"請求書　HISAGO 1148"_s, continuousBillLayout)};
}

base::Result<printing::Document> billCalibration(workspace::Workspace &workspace,
                                                 const printing::NoteSteps &steps)
{
    const printing::FormItems &items = billItems();
    const printing::FormFile layout =
        printing::loadForm(workspace.applicationFolder(), billLayout(workspace.panel.billPaper), items);
    const int rows = layout.form.body ? layout.form.body->first.count : 0;
    printing::FormValues values = printing::specimenValues(items, rows);
    values.shifts = billShifts(billOffsets(steps), workspace.panel.omitCompanyName);
    printing::Document document;
    document.title = u"位置合わせ "_s + layout.form.name;
    document.purpose = printing::Purpose::DeliveryNotesAndBills;
    document.remark = layout.complaint;
    document.sheets = printing::formSheets(layout.form, values);
    return document;
}

} // namespace reports
