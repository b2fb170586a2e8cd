#include "slips/documents/delivery_note.h"

#include "book/printed_slip.h"
#include "book/tax_terms.h"
#include "masters/registration_number.h"
#include "printing/forms/form_sheets.h"
#include "text/numbers.h"

#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;
using printing::FormItemKind;

namespace slips
{

namespace
{

// Millimetres a step.
constexpr double verticalStep = 1.41;
constexpr double horizontalStep = 1.75;
constexpr double halfWidthCharacter = 1.75; // of the addressee's 10-point type

constexpr double printedLine = 25.4 / 6; // by which the totals of the receipt are raised

// "（10%）¥800（軽減8%）¥400", one for each rate.
QString taxesWords(const book::Slip &slip)
{
    QString words;
    for (const book::SlipLine &line : slip.lines) {
        if (line.isTax())
            words += u"（%1）¥%2"_s.arg(book::rateName(line.taxClass.value_or(book::GoodsTax::Standard),
                                                       line.taxRate.value_or(slip.taxRate)),
                                        text::formatAmount(line.amount));
    }
    return words;
}

double taxOn(const book::Slip &slip)
{
    double tax = 0;
    for (const book::SlipLine &line : slip.lines)
        tax += line.isTax() ? line.amount : 0;
    return tax;
}

// Of a slip that was left without its tax line nobody knows what the total says.
void addTotals(printing::FormRecord &items, const DeliveryNoteData &data)
{
    items[u"合計金額"_s] = data.total;
    if (book::hasTaxLine(data.slip)) {
        items[u"小計"_s] = data.total - taxOn(data.slip);
        items[u"消費税"_s] = taxesWords(data.slip);
    } else if (data.includedTax) {
        items[u"内税額"_s] = std::trunc(*data.includedTax);
        items[u"内税率"_s] = data.includedRates;
    } else if (data.slip.taxClass == book::TaxClass::OnBill) {
        items[u"消費税"_s] = u"ご請求時に加算"_s;
    }
}

// Without a registration number nothing may look like a qualified invoice.
void addInvoice(printing::FormRecord &items, const DeliveryNoteData &data)
{
    items[u"軽減の注記"_s] = data.reducedLegend;
    if (!masters::isRegistrationNumber(data.sender.registrationNumber))
        return;
    items[u"自社.登録番号"_s] = data.sender.registrationNumber;
    addRates(items, data.rates);
}

} // namespace

const printing::FormItems &deliveryNoteItems()
{
    static const printing::FormItems items = [] {
        printing::FormItems all = noteItems();
        for (const QString &name : {u"小計"_s, u"内税額"_s})
            all.items[name] = FormItemKind::Number;
        for (const QString &name : {u"消費税"_s, u"内税率"_s, u"注文番号"_s, u"備考.注文番号なし"_s})
            all.items[name] = FormItemKind::Text;
        all.shifts = QStringList{u"OffsetB"_s, u"OffsetC"_s, u"OffsetD"_s, u"OffsetL"_s, u"OffsetF"_s};
        return all;
    }();
    return items;
}

NoteOffsets noteOffsets(const printing::NoteSteps &steps)
{
    return {.down = steps.noteDown,
            .right = steps.right,
            .addresseeRight = steps.addresseeRight,
            .receiptDown = steps.receiptDown,
            .receiptTotalsHigher = steps.totalsHigher};
}

QHash<QString, double> noteShifts(const NoteOffsets &offsets)
{
    return {{u"OffsetB"_s, offsets.down * verticalStep},
            {u"OffsetC"_s, offsets.receiptDown * verticalStep},
            {u"OffsetD"_s, offsets.receiptTotalsHigher ? -printedLine : 0},
            {u"OffsetL"_s, offsets.right * horizontalStep},
            {u"OffsetF"_s, offsets.addresseeRight * halfWidthCharacter}};
}

std::vector<printing::Sheet> deliveryNote(const DeliveryNoteData &data, const printing::Form &form)
{
    printing::FormValues values = noteValues(data.slip, data.sender, data.companyName);
    addAddressee(values.items, data.slip);
    addTotals(values.items, data);
    addInvoice(values.items, data);
    for (const QString &notice : data.returned)
        values.rows.push_back({{u"明細.商品名"_s, notice}});
    QString rest = data.memo;
    values.items[u"注文番号"_s] = takeOrderNumber(rest);
    values.items[u"備考"_s] = data.memo;
    values.items[u"備考.注文番号なし"_s] = rest;
    values.shifts = noteShifts(data.offsets);
    return printing::formSheets(form, values);
}

QString deliveryNoteLayout(const QString &paper, bool designated)
{
    const char16_t *layout = plainDeliveryNoteLayout;
    if (designated)
        layout = designatedDeliveryNoteLayout;
    else if (paper == u"HISAGO 1149"_s)
        layout = continuousDeliveryNoteLayout;
    else if (paper == u"HISAGO BP0201"_s)
        layout = receiptDeliveryNoteLayout;
    return QString::fromUtf16(layout);
}

QString takeOrderNumber(QString &memo)
{
    static const QRegularExpression number(
        u"(?:ご)?(?:注文|発注)番号[\\s:：]*"
        "([0-9A-Za-z０-９Ａ-Ｚａ-ｚ][-0-9A-Za-z０-９Ａ-Ｚａ-ｚ－‐−_./／#＃]*)([\\s、。]*)"_s,
        QRegularExpression::UseUnicodePropertiesOption);
    const auto match = number.match(memo);
    if (!match.hasMatch())
        return {};
    if (match.capturedLength(2) > 0 || match.capturedEnd() == memo.size())
        memo = (memo.first(match.capturedStart()) + memo.sliced(match.capturedEnd())).trimmed();
    return match.captured(1);
}

} // namespace slips
