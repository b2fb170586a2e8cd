#include "shipping/slips/sent_consignees.h"

#include "db/connection.h"
#include "shipping/slips/shipment_store.h"
#include "text/dates.h"
#include "text/width.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr int mostRead = 3000;

using Shipments = std::vector<Shipment>;

QString digitsOf(const QString &number)
{
    QString digits = text::toHalfWidthAscii(number);
    digits.removeIf([](QChar c) { return !c.isDigit(); });
    return digits;
}

base::Result<Shipments> shipmentsWhere(db::Connection &connection, const QString &condition,
                                       const QVariant &value)
{
    const auto found =
        connection.select(u"SELECT %1 FROM 発送マスター WHERE %2 ORDER BY 発送ID DESC LIMIT ?"_s.arg(
                              shipmentColumns(), condition),
                          {value, mostRead});
    if (!found)
        return found.error();
    Shipments shipments;
    for (const QVariantList &row : found->rows)
        shipments.push_back(shipmentOf(row));
    return shipments;
}

QString placeOf(const Party &party)
{
    return QStringList{nameKey(party), digitsOf(party.zip), party.address1.trimmed()}.join(u'\n');
}

} // namespace

base::Result<std::vector<Shipment>> sentConsignees(db::Connection &connection, qint64 id, const Party &sender)
{
    auto sent = shipmentsWhere(connection, u"依頼主ID = ?"_s, id);
    auto unnumbered = shipmentsWhere(connection, u"依頼主ID IS NULL AND 依頼主名キー = ?"_s, nameKey(sender));
    if (!sent || !unnumbered)
        return sent ? unnumbered : sent;
    std::erase_if(*unnumbered, [&sender](const Shipment &shipment) {
        return digitsOf(shipment.sender.tel) != digitsOf(sender.tel);
    });
    sent->insert(sent->end(), unnumbered->begin(), unnumbered->end());
    std::ranges::stable_sort(*sent, std::greater(), &Shipment::id);
    QSet<QString> known;
    std::erase_if(*sent, [&known](const Shipment &shipment) {
        const QString place = placeOf(shipment.consignee);
        const bool isKnown = known.contains(place);
        known.insert(place);
        return isKnown;
    });
    return sent;
}

base::Report sentReport(const std::vector<Shipment> &sent)
{
    base::Report report;
    report.columns = {{.heading = u"お届け先"_s, .characters = 22, .stretches = true},
                      {.heading = u"住所"_s, .characters = 20, .stretches = true},
                      {.heading = u"品名"_s, .characters = 10, .stretches = true},
                      {.heading = u"受付日"_s, .format = base::Format::Date, .characters = 11}};
    for (const Shipment &shipment : sent) {
        const Party &to = shipment.consignee;
        const QVariant day =
            shipment.accepted.isValid() ? QVariant(text::stored(shipment.accepted)) : QVariant();
        report.rows.push_back({{(to.name1 + u' ' + to.name2).trimmed(), to.address1, shipment.goods, day},
                               qint64(report.rows.size())});
    }
    return report;
}

} // namespace shipping
