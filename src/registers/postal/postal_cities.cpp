#include "registers/postal/postal_cities.h"

#include "registers/postal/postal_spellings.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

PostalCity namedCity(const PostalArea &area)
{
    // Two islands stand where other villages have their county.
    static const QRegularExpression parts(u"^(.+?郡|.+?市|三宅島|八丈島)(.+)$"_s);
    const QRegularExpressionMatch match = parts.match(area.city);
    const QString outer = match.captured(1);
    const QString name = match.captured(2);
    // 大和郡山市 and 四日市市 have neither a county nor a ward.
    const bool isWard = outer.endsWith(u'市') && name.endsWith(u'区');
    const bool isVillage = !outer.endsWith(u'市') && (name.endsWith(u'町') || name.endsWith(u'村'));
    if (isWard || isVillage)
        return {area.prefecture, outer, name, {}};
    return {area.prefecture, {}, area.city, {}};
}

// Where the parts of a city are written 字 without a 大字 before it, while the list leaves the 字 out.
bool writesAza(const PostalCity &city)
{
    static const QStringList prefectures = {u"北海道"_s, u"青森県"_s, u"岩手県"_s, u"宮城県"_s,
                                            u"秋田県"_s, u"山形県"_s, u"福島県"_s, u"沖縄県"_s};
    return !city.isWard() && (city.outer.endsWith(u'郡') || prefectures.contains(city.prefecture));
}

PostalTown spelledTown(const PostalArea &area, const PostalCity &city)
{
    PostalTown town{area.town, area.code, {}, {}};
    if (town.name.isEmpty())
        return town;
    town.otherSpellings = townSpellings(town.name).sliced(1);
    if (writesAza(city))
        town.otherSpellings += u'字' + town.name;
    // Addresses in Kyoto name the crossing before the town: 寺町通御池上る上本能寺前町.
    if (city.outer == u"京都市"_s)
        for (const QChar ending : QStringView(u"るル入"))
            town.anywhere += ending + town.name;
    return town;
}

} // namespace

std::vector<PostalCity> postalCities(const std::vector<PostalArea> &areas)
{
    std::vector<PostalCity> cities;
    QHash<QString, std::size_t> numbers;
    QSet<QString> known;
    for (const PostalArea &area : areas) {
        const QString name = area.prefecture + area.city;
        const QString key = area.code + name + u' ' + area.town;
        if (known.contains(key))
            continue;
        known.insert(key);
        if (!numbers.contains(name)) {
            numbers.insert(name, cities.size());
            cities.push_back(namedCity(area));
        }
        PostalCity &city = cities[numbers.value(name)];
        city.towns.push_back(spelledTown(area, city));
    }
    return cities;
}

} // namespace registers
