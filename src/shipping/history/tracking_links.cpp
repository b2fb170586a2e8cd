#include "shipping/history/tracking_links.h"

#include "shipping/slips/tracking_number.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

// The addresses that the carriers' own search pages lead to, over https; "%1" is the number.
struct Page
{
    const char16_t *carrier;
    const char16_t *address;
};

constexpr Page pages[] = {
    {u"ヤマト運輸", u"https://jizen.kuronekoyamato.co.jp/jizen/servlet/crjz.b.NQ0010?id=%1"},
    {u"佐川急便", u"https://k2k.sagawa-exp.co.jp/p/web/okurijosearch.do?okurijoNo=%1"},
    {u"日本郵便", u"https://trackings.post.japanpost.jp/services/srv/search/"
                  u"direct?reqCodeNo1=%1&searchKind=S002&locale=ja"},
};

const Page &pageOf(Carrier carrier) { return pages[static_cast<std::size_t>(carrier)]; }

// Older files have the carrier's own name or product there.
const struct
{
    const char16_t *part;
    Carrier carrier;
} formParts[] = {
    {u"宅急便", Carrier::Yamato},
    {u"ヤマト", Carrier::Yamato},
    {u"クロネコ", Carrier::Yamato},
    {u"佐川", Carrier::Sagawa},
    {u"飛脚", Carrier::Sagawa},
    {u"ゆうパック", Carrier::JapanPost},
    {u"ゆうパケット", Carrier::JapanPost},
    {u"郵便", Carrier::JapanPost},
};

constexpr qsizetype mostDigits = 20; // no carrier has longer numbers

} // namespace

QString nameOf(Carrier carrier) { return QString::fromUtf16(pageOf(carrier).carrier); }

std::optional<Carrier> carrierOf(const QString &form)
{
    for (const auto &[part, carrier] : formParts) {
        if (form.contains(QString::fromUtf16(part)))
            return carrier;
    }
    return std::nullopt;
}

std::optional<QUrl> trackingPage(Carrier carrier, const QString &number)
{
    QString digits = storedTracking(number);
    digits.removeIf([](QChar c) { return c < u'0' || c > u'9'; });
    if (digits.isEmpty() || digits.size() > mostDigits)
        return std::nullopt;
    return QUrl(QString::fromUtf16(pageOf(carrier).address).arg(digits));
}

} // namespace shipping
