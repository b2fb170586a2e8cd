#include "registers/postal/postal_wards.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

struct NewWard
{
    QString former;
    QString today;
    QStringList towns{}; // that went there; empty: whatever no line above names
};

const QList<NewWard> &newWards()
{
    static const QList<NewWard> wards = {
        {u"浜松市中区"_s, u"浜松市中央区"_s},
        {u"浜松市東区"_s, u"浜松市中央区"_s},
        {u"浜松市西区"_s, u"浜松市中央区"_s},
        {u"浜松市南区"_s, u"浜松市中央区"_s},
        {u"浜松市北区"_s,
         u"浜松市中央区"_s,
         {u"初生町"_s, u"三方原町"_s, u"東三方町"_s, u"豊岡町"_s, u"三幸町"_s, u"大原町"_s, u"根洗町"_s}},
        {u"浜松市北区"_s, u"浜松市浜名区"_s},
        {u"浜松市浜北区"_s, u"浜松市浜名区"_s},
    };
    return wards;
}

} // namespace

QString withWardOfToday(const QString &address)
{
    for (const NewWard &ward : newWards()) {
        const qsizetype at = address.indexOf(ward.former);
        if (at < 0)
            continue;
        const QStringView behind = QStringView(address).sliced(at + ward.former.size()).trimmed();
        const bool isItsTown =
            ward.towns.isEmpty() || std::any_of(ward.towns.cbegin(), ward.towns.cend(),
                                                [&](const QString &town) { return behind.startsWith(town); });
        if (isItsTown)
            return QString(address).replace(at, ward.former.size(), ward.today);
    }
    return address;
}

bool isDividedWard(const QString &city)
{
    return std::any_of(newWards().cbegin(), newWards().cend(),
                       [&](const NewWard &ward) { return ward.former == city && !ward.towns.isEmpty(); });
}

} // namespace registers
