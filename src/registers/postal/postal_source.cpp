#include "registers/postal/postal_source.h"

#include "registers/postal/prefectures.h"

#include <QSet>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace registers
{

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
