#pragma once

#include "base/report.h"
#include "base/result.h"
#include "db/connection.h"
#include "shipping/slips/shipment.h"

#include <vector>

// The gift lists (贈答品承り票): what was sent, by sender or parcel by parcel.
namespace shipping
{

/// What a list is of.
struct GiftListQuery
{
    QDate from; // days of acceptance, both included
    QDate to;
    QString category{}; // empty: all
    QString sender{};   // a part of the sender's name as it is typed; empty: all
};

/// Those shipments, in the order of their days and keys. Fails for a period that ends before it begins.
base::Result<std::vector<Shipment>> listedShipments(db::Connection &connection, const GiftListQuery &query);

/// All that one sender sent.
struct SenderGifts
{
    QString name;
    std::vector<Shipment> shipments;
};

/// The senders of \a shipments in the order of their names, each once however he was written; two of the
/// same name who are two in the register stay two.
std::vector<SenderGifts> bySender(const std::vector<Shipment> &shipments);

/// ご依頼主リスト: the parcels under their sender, each with the number of them, the sums of prices and of
/// carriage; \a hidesAmounts leaves both off. Rows and headings lead to 発送ID.
base::Report senderList(const std::vector<Shipment> &shipments, const GiftListQuery &query,
                        bool hidesAmounts = false);

/// 発送済みリスト: one line a parcel, with its tracking number. Rows lead to 発送ID.
base::Report shipmentList(const std::vector<Shipment> &shipments, const GiftListQuery &query,
                          bool hidesAmounts = false);

/// What the columns of the lists are called, in their order.
QStringList senderListColumns();
QStringList shipmentListColumns();

/// Leaves the columns \a leftOut off \a report, but for the one that names groups and totals.
void leaveColumnsOut(base::Report &report, const QStringList &leftOut);

/// "2025/11/01 〜 2025/12/31　お歳暮　ご依頼主「山田」": what \a query asks for.
QString queryInWords(const GiftListQuery &query);

} // namespace shipping
