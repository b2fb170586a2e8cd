#include "reports/daily/day_report_kinds.h"

#include <array>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr const char16_t *customer = u"納品先名";
constexpr const char16_t *supplier = u"仕入先名";

constexpr const char16_t *goodsSold =
    u"品　名                            数量        単価         売上額　　備考";
constexpr const char16_t *goodsBought =
    u"品　名                            数量        単価         仕入額　　備考";

// In the order of DayReportKind. Two headings look like slips of the pen and are wanted: the receipts' "提要"
// beside the others' "摘要", and the purchases' "仕入額" over lying stocktakes.
constexpr std::array<DayReportDescription, dayReportKinds> descriptions{{
    {book::sale, u"納品日報", true, true, customer, u"売上額", u"商品名", u"売上額　　      備考", goodsSold,
     u"売上額"},
    {book::receipt, u"入金日報", false, false, u"入金先名", u"入金額", u"提要", u"入金額　　      備考",
     u"提要                             入金額　　   備考", u"入金額"},
    {book::purchase, u"仕入日報", true, true, supplier, u"仕入額", u"商品名", u"仕入額　　      備考",
     goodsBought, u"仕入額"},
    {book::payment, u"支払日報", false, false, u"支払先名", u"支払額", u"摘要", u"支払額　　      備考",
     u"摘要                             支払額　　   備考", u"支払額"},
    {book::stocktake, u"棚卸日報", true, false, supplier, u"棚卸額", u"商品名", u"棚卸額　　      備考",
     goodsBought, u"仕入額"},
    {book::receivableCarried, u"売掛金繰越日報", false, false, customer, u"売上額", u"摘要",
     u"売上額　　      備考", u"摘要                             売上額　　   備考", u"売上額"},
    {book::payableCarried, u"買掛金繰越日報", false, false, supplier, u"仕入額", u"摘要",
     u"仕入額　　      備考", u"摘要                             仕入額　　   備考", u"仕入額"},
}};

} // namespace

const DayReportDescription &descriptionOf(DayReportKind kind)
{
    return descriptions.at(static_cast<std::size_t>(kind));
}

QString firstHeading(DayReportKind kind)
{
    return u"日  付    　    "_s + QString::fromUtf16(descriptionOf(kind).counterpart);
}

} // namespace reports
