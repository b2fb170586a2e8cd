#include "slips/documents/estimate.h"

#include "printing/forms/form_sheets.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;
using printing::FormItemKind;
using printing::FormRecord;

namespace slips
{

namespace
{

QString yen(double amount) { return u"¥"_s + text::formatAmount(amount); }

// The tax is told even where it is no amount of its own.
void addTotals(FormRecord &items, const EstimateData &data)
{
    items[u"合計金額"_s] = data.total();
    items[u"税の扱い"_s] = taxWords(data.taxed);
    switch (data.taxed) {
    case EstimateTax::Added:
        items[u"小計"_s] = data.goods;
        items[u"消費税"_s] = yen(data.tax);
        break;
    case EstimateTax::Separate:
        items[u"小計"_s] = data.goods;
        items[u"消費税"_s] = u"別途"_s;
        break;
    case EstimateTax::Included:
        items[u"内消費税"_s] = data.tax;
        break;
    case EstimateTax::Untold:
        break;
    }
}

void addTerms(FormRecord &items, const EstimateTerms &terms)
{
    items[u"納入期日"_s] = terms.deliveryDate;
    items[u"受渡場所"_s] = terms.place;
    items[u"取引方法"_s] = terms.payment;
    items[u"有効期限"_s] = terms.validUntil;
    items[u"備考"_s] = terms.remarks;
}

} // namespace

QString taxWords(EstimateTax taxed)
{
    switch (taxed) {
    case EstimateTax::Added:
    case EstimateTax::Included:
        return u"（消費税込）"_s;
    case EstimateTax::Separate:
        return u"（消費税別途）"_s;
    case EstimateTax::Untold:
        break;
    }
    return {};
}

const printing::FormItems &estimateItems()
{
    static const printing::FormItems items = [] {
        printing::FormItems all = noteItems();
        for (const QString &name : {u"税の扱い"_s, u"消費税"_s, u"受渡場所"_s, u"取引方法"_s})
            all.items[name] = FormItemKind::Text;
        for (const QString &name : {u"納入期日"_s, u"有効期限"_s})
            all.items[name] = FormItemKind::Date;
        for (const QString &name : {u"小計"_s, u"内消費税"_s})
            all.items[name] = FormItemKind::Number;
        return all;
    }();
    return items;
}

std::vector<printing::Sheet> estimateSheets(const EstimateData &data, const printing::Form &form)
{
    printing::FormValues values = noteValues(data.slip, data.sender, data.companyName);
    addAddressee(values.items, data.slip);
    addTotals(values.items, data);
    addRates(values.items, data.rates);
    values.items[u"軽減の注記"_s] = data.reducedLegend;
    addTerms(values.items, data.terms);
    return printing::formSheets(form, values);
}

} // namespace slips
