#include "reports/bills/bill_paper.h"

#include "masters/registration_number.h"
#include "printing/forms/form_sheets.h"
#include "printing/lead_lines.h"
#include "reports/bills/bill_header.h"
#include "reports/bills/bill_invoice_words.h"

using namespace Qt::StringLiterals;
using printing::FormItemKind;
using printing::FormRecord;

namespace reports
{

namespace
{

// Millimetres a step.
constexpr double verticalStep = 1.41;
constexpr double horizontalStep = 1.75;
constexpr double halfWidthCharacter = 1.75; // of the addressee's 10-point type

constexpr int mostHeaderLines = 9;

void addPeriod(FormRecord &items, const book::Period &period)
{
    const QString format = u"yyyy年M月d日"_s;
    items[u"期間"_s] = period.from.toString(format) + u"～"_s + period.to.toString(format);
    items[u"日付"_s] = period.to;
}

void addSums(FormRecord &items, const BillPaper &paper)
{
    const BillSums &sums = paper.bill.sums;
    const bool inclusive = paper.bill.customer.taxClass == book::TaxClass::Included;
    items[u"前回請求額"_s] = sums.previous;
    items[u"入金額"_s] = sums.received;
    items[u"繰越金額（請求）"_s] = sums.carried();
    items[u"当月御買上額"_s] = sums.sales;
    items[u"売上金額"_s] = sums.untaxed;
    items[u"売上金額.名称"_s] = inclusive ? u"売上金額（税込）"_s : u"売上金額（税別）"_s;
    items[u"消費税"_s] = taxWords(paper);
    items[u"今回請求額"_s] = sums.billed(paper.salesOnly);
    if (paper.salesOnly)
        items[u"請求の範囲"_s] = u"今回請求額は当月の売上金額のみです。"_s;
}

void addHeaderLines(FormRecord &items, const Bill &bill)
{
    int number = 0;
    for (const QString &line : billHeaderLines(bill))
        items[u"宛先欄%1"_s.arg(++number)] = line;
}

// Without a registration number nothing may look like a qualified invoice.
void addInvoice(FormRecord &items, const BillPaper &paper)
{
    items[u"軽減の注記"_s] = paper.bill.reducedLegend;
    if (!masters::isRegistrationNumber(paper.sender.registrationNumber))
        return;
    items[u"自社.登録番号"_s] = paper.sender.registrationNumber;
    if (!bearsRates(paper))
        return;
    slips::addRates(items, paper.bill.rates);
    if (isInvoice(paper))
        items[u"納品書番号"_s] = noteNumberWords(paper.bill.noteNumbers);
}

FormRecord valuesOf(const BillRow &row, double before)
{
    FormRecord record{{u"明細.日付"_s, QDate::fromString(row.date, Qt::ISODate)},
                      {u"明細.伝票番号"_s, row.number},
                      {u"明細.品名"_s, row.name},
                      {u"明細.規格"_s, row.specification},
                      {u"明細.単位"_s, row.unit},
                      {u"明細.軽減"_s, row.mark},
                      {u"明細.残高"_s, row.balance},
                      {u"明細.増減"_s, row.balance - before}};
    const std::pair<const char16_t *, std::optional<double>> numbers[] = {{u"明細.数量", row.quantity},
                                                                          {u"明細.単価", row.price},
                                                                          {u"明細.納品金額", row.delivered},
                                                                          {u"明細.入金額", row.received}};
    for (const auto &[name, number] : numbers) {
        if (number)
            record.insert(QString::fromUtf16(name), *number);
    }
    return record;
}

std::vector<FormRecord> rowsOf(const BillPaper &paper)
{
    const std::vector<BillRow> &statement = paper.bill.rows;
    std::vector<FormRecord> rows;
    double balance = 0;
    for (std::size_t i = 0; i < statement.size(); ++i) {
        rows.push_back(valuesOf(statement[i], balance));
        balance = statement[i].balance;
        const auto returned = paper.returned.find(statement[i].slip);
        const bool isLast = i + 1 == statement.size() || statement[i + 1].slip != statement[i].slip;
        if (!isLast || returned == paper.returned.end())
            continue;
        for (const QString &notice : returned->second)
            rows.push_back({{u"明細.品名"_s, notice}});
    }
    return rows;
}

printing::FormItems itemsOfBills()
{
    printing::FormItems all = slips::noteItems();
    for (const QString &slipsOwn : {u"伝票番号"_s, u"合計金額"_s, u"担当者"_s, u"備考"_s})
        all.items.erase(slipsOwn);
    for (const QString &name : {u"請求番号"_s, u"期間"_s, u"売上金額.名称"_s, u"消費税"_s, u"請求の範囲"_s,
                                u"納品書番号"_s, u"自社.取引銀行1"_s, u"自社.取引銀行2"_s, u"お知らせ"_s})
        all.items[name] = FormItemKind::Text;
    for (int line = 1; line <= mostHeaderLines; ++line)
        all.items[u"宛先欄%1"_s.arg(line)] = FormItemKind::Text;
    for (const QString &name : {u"前回請求額"_s, u"入金額"_s, u"繰越金額（請求）"_s, u"当月御買上額"_s,
                                u"売上金額"_s, u"今回請求額"_s})
        all.items[name] = FormItemKind::Number;
    all.columns.clear();
    for (const QString &name :
         {u"明細.伝票番号"_s, u"明細.品名"_s, u"明細.規格"_s, u"明細.単位"_s, u"明細.軽減"_s})
        all.columns[name] = FormItemKind::Text;
    for (const QString &name : {u"明細.数量"_s, u"明細.単価"_s, u"明細.納品金額"_s, u"明細.入金額"_s,
                                u"明細.残高"_s, u"明細.増減"_s})
        all.columns[name] = FormItemKind::Number;
    all.columns[u"明細.日付"_s] = FormItemKind::Date;
    all.summed = u"明細.増減"_s; // what the rows so far come to is the balance
    all.shifts = QStringList{u"OffsetA"_s, u"OffsetL"_s, u"OffsetF"_s, u"社名なし"_s};
    return all;
}

} // namespace

BillOffsets billOffsets(const printing::NoteSteps &steps)
{
    return {.down = steps.billDown, .right = steps.right, .addresseeRight = steps.addresseeRight};
}

QString billLayout(const QString &paper)
{
    return QString::fromUtf16(paper == u"HISAGO 1148" ? continuousBillLayout : plainBillLayout);
}

const printing::FormItems &billItems()
{
    static const printing::FormItems items = itemsOfBills();
    return items;
}

QHash<QString, double> billShifts(const BillOffsets &offsets, bool isNameOmitted)
{
    return {{u"OffsetA"_s, offsets.down * verticalStep},
            {u"OffsetL"_s, offsets.right * horizontalStep},
            {u"OffsetF"_s, offsets.addresseeRight * halfWidthCharacter},
            {u"社名なし"_s, isNameOmitted ? -printing::leadLineHeight() : 0}};
}

std::vector<printing::Sheet> billSheets(const BillPaper &paper, const printing::Form &form)
{
    const book::Slip addressee = addresseeOf(paper.bill.customer);
    printing::FormValues values = slips::noteValues(addressee, paper.sender, paper.companyName);
    slips::addAddressee(values.items, addressee);
    addHeaderLines(values.items, paper.bill);
    addPeriod(values.items, paper.bill.period);
    addSums(values.items, paper);
    addInvoice(values.items, paper);
    values.items[u"請求番号"_s] = billNumber(paper.bill);
    values.items[u"自社.取引銀行1"_s] = paper.sender.bank1;
    values.items[u"自社.取引銀行2"_s] = paper.sender.bank2;
    values.items[u"お知らせ"_s] = paper.message;
    values.rows = rowsOf(paper);
    values.summed = u"明細.増減"_s;
    values.shifts = billShifts(paper.offsets, paper.companyName == slips::CompanyName::Omitted);
    return printing::formSheets(form, values);
}

} // namespace reports
