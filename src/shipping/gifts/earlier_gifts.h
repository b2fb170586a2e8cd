#pragma once

#include "base/result.h"
#include "db/connection.h"
#include "shipping/slips/shipment.h"

#include <vector>

// What senders have sent before, out of the history.
namespace shipping
{

/// The shipments of one sender.
struct EarlierGifts
{
    qint64 senderId = 0; // 0: known by the name alone
    Party sender;
    QString category{}; // empty: of all
    QDate from{};       // the days of acceptance, both included
    QDate to{};
};

/// Those shipments, the newest first. The sender is known by the key of the register, and by the name,
/// however it was written, where the history has no key.
base::Result<std::vector<Shipment>> giftsOf(db::Connection &connection, const EarlierGifts &wanted);

/// The same, of each consignee the newest alone: who was written in two ways counts once.
base::Result<std::vector<Shipment>> lastGiftsOf(db::Connection &connection, const EarlierGifts &wanted);

/// The days around \a today so many \a years ago, in which the same season lies.
struct Season
{
    QDate from;
    QDate to;
};
Season seasonBefore(const QDate &today, int years);

/// All shipments of a time, in the order of their days and keys. \a category: empty for all.
base::Result<std::vector<Shipment>> shipmentsBetween(db::Connection &connection, const QString &category,
                                                     const QDate &from, const QDate &to);

/// The customer \a id as the register has him. The error is `gone` where it does not.
base::Result<Party> registeredParty(db::Connection &connection, qint64 id);

} // namespace shipping
