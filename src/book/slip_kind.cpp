#include "book/slip_kind.h"

using namespace Qt::StringLiterals;

namespace book
{

std::vector<SlipKind> kindsOf(Party party)
{
    std::vector<SlipKind> kinds;
    for (const SlipKind &kind : allKinds) {
        if (kind.party == party)
            kinds.push_back(kind);
    }
    return kinds;
}

std::vector<SlipKind> balanceKindsOf(Party party)
{
    return party == Party::Customer ? std::vector{receivableCarried, sale, receipt}
                                    : std::vector{payableCarried, purchase, payment};
}

std::optional<SlipKind> kindWith(QByteArrayView letter)
{
    for (const SlipKind &kind : allKinds) {
        if (letter.size() == 1 && letter.front() == static_cast<char>(kind.letter))
            return kind;
    }
    return std::nullopt;
}

QString nameOf(const SlipKind &kind)
{
    switch (kind.letter) {
    case sale.letter:
        return u"納品"_s;
    case receipt.letter:
        return u"入金"_s;
    case estimate.letter:
        return u"見積"_s;
    case purchase.letter:
        return u"仕入"_s;
    case payment.letter:
        return u"支払"_s;
    case stocktake.letter:
        return u"棚卸"_s;
    default:
        return u"繰越"_s;
    }
}

} // namespace book
