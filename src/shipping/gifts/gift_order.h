#pragma once

#include "db/connection.h"
#include "shipping/slips/shipment.h"

#include <QVariant>

#include <bitset>
#include <vector>

// A gift order sheet: one who sends, and many consignees who each get a parcel.
namespace shipping
{

/// What a sheet says once for all its parcels, or otherwise of a single one.
enum class GiftTerm { Goods, Price, Carriage, Delivery, TimeSlot, Cooling, Memo1, Memo2 };
inline constexpr std::size_t giftTermCount = 8;

struct GiftTerms
{
    QString goods;
    std::optional<double> price;    // yen
    std::optional<double> carriage; // yen
    QDate delivery;                 // none: as soon as it comes
    QString timeSlot;
    QString cooling;
    QString memo1; // what the のし says
    QString memo2; // the name on it

    friend bool operator==(const GiftTerms &, const GiftTerms &) = default;
};

/// The value of a term; null where it says nothing.
QVariant termOf(const GiftTerms &terms, GiftTerm term);
void setTerm(GiftTerms &terms, GiftTerm term, const QVariant &value);

/// One line of the sheet.
struct GiftRow
{
    bool ticked = true;
    Party consignee;
    qint64 consigneeId = 0; // as Shipment's
    GiftTerms own;          // of which those count that it has of its own
    std::bitset<giftTermCount> hasOwn;
    QString pricedGoods{}; // what its own price was asked for last time; empty once it is typed
    bool issued = false;
    QString state; // what became of it, or what is wrong with it

    [[nodiscard]] bool has(GiftTerm term) const { return hasOwn[std::size_t(term)]; }
    void setOwn(GiftTerm term, const QVariant &value);
    /// From now on it goes by the sheet in this.
    void dropOwn(GiftTerm term);

    friend bool operator==(const GiftRow &, const GiftRow &) = default;
};

struct GiftOrder
{
    Party sender;
    qint64 senderId = 0;
    QDate accepted;
    QString category;
    QString method;
    QString customerCode;
    QString officeCode;
    GiftTerms common;
    std::vector<GiftRow> rows;

    friend bool operator==(const GiftOrder &, const GiftOrder &) = default;
};

/// What counts for \a row: its own, else the sheet's.
GiftTerms termsOf(const GiftOrder &order, const GiftRow &row);

/// The parcel of \a row, as it is to be printed and kept.
Shipment shipmentOf(const GiftOrder &order, const GiftRow &row);

/// The line for the consignee of \a shipment, as it was sent before: but for the day, which is over.
GiftRow rowLike(const Shipment &shipment);

/// What two lines for the same consignee share, however they were typed: name and address.
QString consigneeKey(const Party &consignee);

/// The places of the ticked lines.
std::vector<std::size_t> tickedRows(const GiftOrder &order);

/// How many lines are ticked, and what they cost, yen.
struct GiftSums
{
    int count = 0;
    double price = 0;
    double carriage = 0;
};
GiftSums sumsOf(const GiftOrder &order);

} // namespace shipping
