#include "registers/postal/postal_source.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <iterator>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr auto prefectures = std::to_array<QStringView>(
    {u"北海道", u"青森県", u"岩手県", u"宮城県", u"秋田県", u"山形県",   u"福島県", u"茨城県",
     u"栃木県", u"群馬県", u"埼玉県", u"千葉県", u"東京都", u"神奈川県", u"新潟県", u"富山県",
     u"石川県", u"福井県", u"山梨県", u"長野県", u"岐阜県", u"静岡県",   u"愛知県", u"三重県",
     u"滋賀県", u"京都府", u"大阪府", u"兵庫県", u"奈良県", u"和歌山県", u"鳥取県", u"島根県",
     u"岡山県", u"広島県", u"山口県", u"徳島県", u"香川県", u"愛媛県",   u"高知県", u"福岡県",
     u"佐賀県", u"長崎県", u"熊本県", u"大分県", u"宮崎県", u"鹿児島県", u"沖縄県"});

} // namespace

void PostalRefusals::add(const QString &reason, int line)
{
    Lines &lines = m_byReason.try_emplace(reason, Lines{0, line}).first->second;
    ++lines.count;
}

void PostalRefusals::add(const PostalRefusals &others)
{
    for (const auto &[reason, lines] : others.m_byReason)
        m_byReason.try_emplace(reason, Lines{0, lines.first}).first->second.count += lines.count;
}

int PostalRefusals::count() const
{
    int sum = 0;
    for (const auto &[reason, lines] : m_byReason)
        sum += lines.count;
    return sum;
}

QStringList PostalRefusals::summary() const
{
    QStringList texts;
    for (const auto &[reason, lines] : m_byReason)
        texts += u"%1: %2行（最初は%3行目）"_s.arg(reason).arg(lines.count).arg(lines.first);
    return texts;
}

void PostalSource::add(PostalSource other)
{
    std::move(other.areas.begin(), other.areas.end(), std::back_inserter(areas));
    std::move(other.offices.begin(), other.offices.end(), std::back_inserter(offices));
    refused.add(other.refused);
    areasFrom = other.areasFrom;
    officesFrom = other.officesFrom;
}

void PostalSource::fillFrom(PostalSource other)
{
    if (areas.empty()) {
        areas = std::move(other.areas);
        areasFrom = other.areasFrom;
    }
    if (offices.empty()) {
        offices = std::move(other.offices);
        officesFrom = other.officesFrom;
    }
}

int PostalSource::prefectureCount() const
{
    QSet<QStringView> found;
    for (const PostalArea &area : areas)
        found.insert(area.prefecture);
    return static_cast<int>(found.size());
}

QStringView prefectureOf(QStringView address)
{
    const auto *const found = std::find_if(prefectures.begin(), prefectures.end(),
                                           [&](QStringView name) { return address.startsWith(name); });
    return found == prefectures.end() ? QStringView() : address.first(found->size());
}

bool isPostalCode(QStringView code)
{
    return code.size() == 7 &&
           std::all_of(code.begin(), code.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

QString withHyphen(const QString &code) { return code.first(3) + u'-' + code.sliced(3); }

} // namespace registers
