#pragma once

#include <QByteArrayView>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace book
{

/// Whom a slip is about: 相手先ID is a 納品先ID or a 仕入先ID.
enum class Party { Customer, Supplier };

/// What the first letter of a slip number means. The letter is the only mark of a slip's kind.
struct SlipKind
{
    char16_t letter;
    Party party;
    int sign; // of its amounts in the party's balance; 0: the kind never enters one

    bool operator==(const SlipKind &other) const { return letter == other.letter; }
};

inline constexpr SlipKind sale{u'O', Party::Customer, +1};
inline constexpr SlipKind receipt{u'R', Party::Customer, -1};
inline constexpr SlipKind receivableCarried{u'B', Party::Customer, +1};
inline constexpr SlipKind estimate{u'M', Party::Customer, 0};
inline constexpr SlipKind purchase{u'I', Party::Supplier, +1};
inline constexpr SlipKind payment{u'P', Party::Supplier, -1};
inline constexpr SlipKind payableCarried{u'A', Party::Supplier, +1};
inline constexpr SlipKind stocktake{u'T', Party::Supplier, 0};

inline constexpr std::array allKinds{sale,     receipt, receivableCarried, estimate,
                                     purchase, payment, payableCarried,    stocktake};

/// The kinds whose counterpart is of \a party.
std::vector<SlipKind> kindsOf(Party party);

/// Those of them that enter its balance: carried over, charged, settled.
std::vector<SlipKind> balanceKindsOf(Party party);

/// The kind that \a letter, as the column 種別 holds it, stands for.
std::optional<SlipKind> kindWith(QByteArrayView letter);

/// What pages with slips of several kinds call it.
QString nameOf(const SlipKind &kind);

/// Consumption-tax class of a counterpart, as 消費税区分 holds it.
enum class TaxClass {
    OnDelivery = 0, // 外税 （納品時）: added to each slip
    OnBill = 1,     // 外税 （請求時）: added to the bill
    Included = 2,   // 内税: prices include it
};

/// The name under which a slip's tax is kept as a line.
inline constexpr const char16_t *taxLineName = u"消費税";

} // namespace book
