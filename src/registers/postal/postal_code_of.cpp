#include "registers/postal/postal_lookup.h"

#include "registers/postal/postal_folding.h"
#include "registers/postal/postal_search.h"
#include "registers/postal/postal_wards.h"
#include "registers/postal/prefectures.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

// The silent lookup. Beside the search that the window makes as well, it knows how addresses are written that
// the tables do not have word for word.
namespace registers
{

namespace
{

// The prefecture written first in \a text (東京都 in 東京都府中市, in which 京都府 stands too); empty: none.
QStringView prefectureIn(const QString &text)
{
    QStringView first;
    qsizetype firstAt = text.size();
    for (const QStringView prefecture : prefectures) {
        const qsizetype at = text.indexOf(prefecture);
        if (at >= 0 && at < firstAt) {
            firstAt = at;
            first = prefecture;
        }
    }
    return first;
}

// What the area that is written \a before another one must be a part of: its prefecture, and its county or
// city where that stands right before it (筑紫郡 in 筑紫郡那珂川町).
QStringList regionsIn(const QString &before)
{
    static const QRegularExpression last(u"([^都道府県郡市区]+[郡市])$"_s);
    QStringList regions;
    const QString written = withoutBlanks(before);
    const QStringView prefecture = prefectureIn(written);
    if (!prefecture.isEmpty())
        regions += prefecture.toString();
    const QString region =
        last.match(written.sliced(written.indexOf(prefecture) + prefecture.size())).captured(1);
    if (!region.isEmpty())
        regions += region;
    return regions;
}

// Whether the area that was found lies elsewhere than in what is written before it.
bool liesElsewhere(const PostalData &data, const PostalSearch &found)
{
    QStringList regions = regionsIn(found.before);
    if (regions.isEmpty())
        return false;
    const auto areas = addressesOf(data, found.finds.code);
    if (!areas || areas->isEmpty())
        return false;
    for (QString &region : regions)
        region = foldedPlace(region);
    return std::none_of(areas->cbegin(), areas->cend(), [&](const QString &area) {
        const QString folded = foldedPlace(area);
        return std::all_of(regions.cbegin(), regions.cend(),
                           [&](const QString &region) { return folded.contains(region); });
    });
}

// A ward as an address has it, and what the list says of it.
struct WrittenWard
{
    QString city; // empty: none is written
    QString ward; // with its city
    bool isKnown = false;
    bool isOfWards = false; // its city has others
};

WrittenWard wardIn(const PostalData &data, const QString &text)
{
    static const QRegularExpression wards(u"(?=([^都道府県郡市区]+市)([^都道府県郡市区町村]{1,4}区))"_s);
    const QRegularExpressionMatch match = wards.match(text);
    if (!match.hasMatch())
        return {};
    WrittenWard written{match.captured(1), match.captured(1) + match.captured(2)};
    for (const PostalGroup &group : postalGroups(data).groups()) {
        written.isKnown =
            written.isKnown || group.name.endsWith(written.ward) || group.shortName.endsWith(written.ward);
        const qsizetype at = group.name.indexOf(written.city);
        written.isOfWards = written.isOfWards || (at >= 0 && at + written.city.size() < group.name.size() &&
                                                  group.name.endsWith(u'区'));
    }
    return written;
}

struct Found
{
    QString code;
    bool isTown = false; // says more than the city
};

Found resultOf(const PostalData &data, const PostalSearch &search)
{
    if (search.finds.code.isEmpty() || search.isDoubtful || liesElsewhere(data, search))
        return {};
    return {search.finds.code, !search.isCityAlone};
}

Found foundAsWritten(const PostalData &data, const QString &text)
{
    const base::Progress unwatched = base::unwatched;
    PostalSearch typed(data, unwatched);
    if (!typed.run(text))
        return {};
    // Few of the table's addresses hold blanks; typed ones may, between their parts. As it is typed such an
    // address often names no more than its city.
    const QString compact = withoutBlanks(text);
    PostalSearch joined(data, unwatched);
    const bool reachesFurther = compact != text && joined.run(compact) && joined.reach > typed.reach;
    return resultOf(data, reachesFurther ? joined : typed);
}

Found foundFolded(const PostalData &data, const QString &text)
{
    const base::Progress unwatched = base::unwatched;
    PostalSearch search(data, unwatched, PostalSearch::Names::Folded);
    return search.run(text) ? resultOf(data, search) : Found();
}

} // namespace

QString postalSearchText(const QString &typed)
{
    const QString oaza = u"大字"_s;
    const qsizetype at = typed.indexOf(oaza);
    return at < 0 ? typed : typed.first(at) + typed.sliced(at + oaza.size());
}

// Wards are divided anew, and neither an old nor a new one is in every list. One that is in none reads as a
// town otherwise (中央 in 浜松市中央区) and is left out.
QString inWardsOfTheList(const PostalData &data, const QString &text)
{
    const QString compact = withoutBlanks(text);
    const WrittenWard written = wardIn(data, compact);
    if (written.city.isEmpty() || written.isKnown)
        return text;
    const QString today = withWardOfToday(compact);
    if (today != compact && wardIn(data, today).isKnown)
        return today;
    return written.isOfWards ? QString(compact).replace(written.ward, written.city) : text;
}

QString postalCodeOf(const PostalData &data, const QString &address)
{
    const QString text = inWardsOfTheList(data, postalSearchText(address));
    const Found written = foundAsWritten(data, text);
    if (written.isTown)
        return written.code;
    const Found folded = foundFolded(data, text);
    return folded.isTown || written.code.isEmpty() ? folded.code : written.code;
}

} // namespace registers
