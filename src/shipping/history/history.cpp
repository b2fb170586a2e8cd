#include "shipping/history/history.h"

#include "db/condition.h"
#include "db/recordset.h"
#include "shipping/slips/shipment_store.h"
#include "shipping/slips/tracking_number.h"
#include "text/dates.h"
#include "text/like.h"
#include "text/search_pattern.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qsizetype keyLength = 16;

enum class Names { ByKey, Whole };

// A name that was typed in full is longer than any key.
QString asInKeys(const QString &typed)
{
    QStringList words = text::searchWords(typed);
    for (QString &word : words) {
        word.truncate(keyLength);
        if (word.back().isHighSurrogate())
            word.chop(1);
    }
    return words.join(u' ');
}

db::Condition nameCondition(const QString &party, const QString &typed, Names names)
{
    if (typed.trimmed().isEmpty())
        return {};
    if (names == Names::ByKey)
        return db::keyHolds(party + u"名キー"_s, asInKeys(typed));
    return db::keyHolds(u"(coalesce(%1名1, '') || coalesce(%1名2, ''))"_s.arg(party), typed);
}

// Carriers write their numbers with and without hyphens, and so do those who type them.
db::Condition trackingCondition(const QString &typed)
{
    const QString number = storedTracking(typed);
    if (number.isEmpty())
        return {};
    return {u"replace(replace(送り状番号, '-', ''), ' ', '') LIKE ? ESCAPE '\\'"_s,
            {u'%' + text::literalPattern(QString(number).remove(u'-')) + u'%'}};
}

// Read off an index whole, rather than off the rows.
db::Condition amongAll(const db::Condition &condition)
{
    if (condition.sql.isEmpty())
        return {};
    return {u"発送ID IN (SELECT 発送ID FROM 発送マスター WHERE "_s + condition.sql + u')', condition.values};
}

db::Condition typedCondition(const HistoryQuery &query, Names names)
{
    db::Condition names1 = nameCondition(u"依頼主"_s, query.sender, names);
    names1 &= nameCondition(u"届先"_s, query.consignee, names);
    db::Condition condition = amongAll(names1);
    condition &= amongAll(trackingCondition(query.tracking));
    return condition;
}

db::Condition dayCondition(const HistoryQuery &query)
{
    QDate from = query.from;
    QDate to = query.to;
    if (from.isValid() && to.isValid() && from > to)
        std::swap(from, to);
    db::Condition condition;
    if (from.isValid())
        condition &= {u"(受付日 >= ?)"_s, {text::stored(from)}};
    if (to.isValid())
        condition &= {u"(受付日 <= ?)"_s, {text::stored(to)}};
    return condition;
}

db::Condition belonging(const HistoryQuery &query)
{
    db::Condition condition;
    if (query.customer > 0)
        condition &= {u"(納品先ID = ? OR 依頼主ID = ?)"_s, {query.customer, query.customer}};
    if (query.slip > 0)
        condition &= {u"(伝票ID = ?)"_s, {query.slip}};
    return condition;
}

db::Query finding(const HistoryQuery &query, Names names)
{
    db::Condition condition = dayCondition(query);
    const db::Condition typed = typedCondition(query, names);
    condition &= typed;
    if (!query.category.isEmpty())
        condition &= {u"(発送区分 = ?)"_s, {query.category}};
    if (!query.method.isEmpty())
        condition &= {u"(発送方法 = ?)"_s, {query.method}};
    if (query.withoutTracking)
        condition &= {u"(送り状番号 IS NULL OR 送り状番号 = '')"_s, {}};
    if (query.withoutExport)
        condition &= {u"(出力日 IS NULL OR 出力日 = '')"_s, {}};
    condition &= belonging(query);
    // Names, numbers and days that are past lie far apart in the order of the keys: they are found by their
    // own index and sorted then. All others are walked through in that order, and the last ones show at once.
    const bool isSorted = !typed.sql.isEmpty() || query.to.isValid();
    return {.table = u"発送マスター"_s,
            .where = condition.sql,
            .order = isSorted ? QStringList{u"発送ID + 0 DESC"_s, u"発送ID DESC"_s}
                              : QStringList{u"発送ID DESC"_s},
            .values = condition.values};
}

} // namespace

db::Query findingShipments(const HistoryQuery &query) { return finding(query, Names::ByKey); }

base::Status openHistory(db::Recordset &shipments, const HistoryQuery &query)
{
    const base::Status opened = shipments.open(findingShipments(query));
    const bool isByName = !query.sender.trimmed().isEmpty() || !query.consignee.trimmed().isEmpty();
    if (!opened || !shipments.isEmpty() || !isByName)
        return opened;
    return shipments.open(finding(query, Names::Whole));
}

base::Result<std::vector<Shipment>> readShipments(db::Connection &connection, const std::vector<qint64> &keys)
{
    std::vector<Shipment> shipments;
    for (const qint64 key : keys) {
        auto shipment = readShipment(connection, key);
        if (!shipment && !shipment.error().gone)
            return shipment.error();
        if (shipment)
            shipments.push_back(std::move(*shipment));
    }
    return shipments;
}

base::Result<std::vector<Shipment>> lastShipments(db::Connection &connection, const HistoryQuery &query,
                                                  int most)
{
    const db::Query found = findingShipments(query);
    const auto rows = connection.select(found.selecting(shipmentColumns()) + u" LIMIT ?"_s,
                                        found.values + QVariantList{most});
    if (!rows)
        return rows.error();
    std::vector<Shipment> shipments;
    for (const QVariantList &row : rows->rows)
        shipments.push_back(shipmentOf(row));
    return shipments;
}

QString inWords(const Shipment &shipment)
{
    const QString name = (shipment.consignee.name1 + u' ' + shipment.consignee.name2).trimmed();
    QStringList parts{QString::number(shipment.id), text::formatDate(shipment.accepted), name,
                      shipment.goods};
    parts.removeAll(QString());
    return parts.join(u'　');
}

} // namespace shipping
