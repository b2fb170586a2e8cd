#pragma once

#include "base/result.h"
#include "db/query.h"
#include "shipping/slips/shipment.h"

#include <vector>

namespace db
{
class Connection;
class Recordset;
} // namespace db

// Finding shipments in the history.
namespace shipping
{

/// Which shipments are looked for; what is left empty is no condition, all others must be met together.
struct HistoryQuery
{
    QDate from{}; // 受付日
    QDate to{};
    QString sender{}; // words of the search key, as a clerk types them
    QString consignee{};
    QString category{}; // 発送区分, by its name
    QString method{};   // 発送方法
    QString tracking{}; // part of 送り状番号, with or without the blanks and hyphens between its groups
    bool withoutTracking = false; // whose number is not known yet
    bool withoutExport = false;   // that are in no carrier's file yet
    qint64 customer = 0;          // whose consignee or sender he is
    qint64 slip = 0;              // 伝票ID
};

/// The shipments of \a query, the last one first. Days the wrong way round are turned.
db::Query findingShipments(const HistoryQuery &query);

/// Opens the shipments of \a query, the last one first. Search keys end after 16 characters: where none is
/// found by them, the whole names are searched, which takes longer.
base::Status openHistory(db::Recordset &shipments, const HistoryQuery &query);

/// The shipments \a keys, in their order; one that is gone is left out.
base::Result<std::vector<Shipment>> readShipments(db::Connection &connection,
                                                  const std::vector<qint64> &keys);

/// The last shipments of \a query, the last one first, at most \a most of them.
base::Result<std::vector<Shipment>> lastShipments(db::Connection &connection, const HistoryQuery &query,
                                                  int most);

/// What tells one parcel from another in a line: "12　2026/04/01　山田 花子　みかん".
QString inWords(const Shipment &shipment);

} // namespace shipping
