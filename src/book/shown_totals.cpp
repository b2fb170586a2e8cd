#include "book/shown_totals.h"

#include "book/tax.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;

namespace book
{

base::Result<ShownTotals> shownTotals(double total, const std::vector<TaxableAmount> &goods,
                                      TaxClass taxClass, bool inclusive, bool isUnrounded)
{
    const auto yen = [](double amount) -> QString { return text::formatAmount(amount) + u" 円"_s; };
    if (!inclusive && !taxIsAdded(taxClass, inclusive))
        return ShownTotals{u"合計（税別）"_s, u"消費税は請求時に計算します"_s, yen(total) + u"（税別）"_s};
    const auto tax = taxOf(goods, inclusive ? Basis::Gross : Basis::Net);
    if (!tax)
        return tax.error();
    if (inclusive)
        return ShownTotals{u"合計（税込）"_s,
                           isUnrounded ? u"内税：端数処理前の額です（用紙では %1）"_s.arg(yen(*tax))
                                       : u"内税の消費税です（合計に含まれています）"_s,
                           yen(total) + u"（税込）"_s};
    return ShownTotals{u"合計（税抜）"_s, u"外税の消費税です（合計に加わります）"_s,
                       yen(total + *tax) + u"（税込）"_s};
}

} // namespace book
