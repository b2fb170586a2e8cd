#include "registers/postal/postal_address.h"

#include "registers/postal/postal_search.h"
#include "text/cp932.h"

#include <algorithm>

namespace registers
{

namespace
{

bool isKatakana(QChar c) { return (c >= u'ァ' && c <= u'ヺ') || c == u'ー'; }

// How much of \a address its city takes; 0 where it names none.
qsizetype cityLength(const PostalData &data, const QString &address)
{
    qsizetype length = 0;
    for (const PostalGroup &group : postalGroups(data).groups()) {
        if (address.startsWith(group.name))
            length = std::max(length, group.name.size());
    }
    return length;
}

} // namespace

AddressLines dividedAddress(const PostalData &data, const QString &address, int bytes)
{
    const qsizetype most = text::leftCp932(address, bytes).size();
    if (most == address.size())
        return {address, {}};
    const auto leavesRoom = [&](qsizetype at) {
        return at > 0 && at <= most && text::cp932Bytes(address.sliced(at)) <= bytes;
    };
    qsizetype place = cityLength(data, address);
    for (qsizetype at = most; at > 0 && !leavesRoom(place); --at) {
        if (leavesRoom(at) && isKatakana(address[at]) != isKatakana(address[at - 1]))
            place = at;
    }
    if (!leavesRoom(place))
        place = most;
    return {address.first(place), address.sliced(place)};
}

} // namespace registers
