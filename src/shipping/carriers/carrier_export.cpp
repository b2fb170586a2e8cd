#include "shipping/carriers/carrier_export.h"

#include "book/taxes_by_rate.h"
#include "db/keys.h"
#include "db/transaction.h"
#include "shipping/slips/shipment_store.h"
#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

base::Error tooMany()
{
    return {
        u"該当する発送が %1 件を超えるため、表示しませんでした。期間を短くしてください。"_s.arg(mostListed)};
}

// The class that the goods are taxed at; nothing where they are no product of the register.
base::Result<std::optional<book::GoodsTax>> goodsTaxOf(db::Connection &connection, const QString &goods)
{
    const auto found = connection.select(
        u"SELECT 税区分 FROM 納品商品 WHERE 商品名 = ? ORDER BY 商品ID LIMIT 1"_s, {goods.trimmed()});
    if (!found)
        return found.error();
    if (found->isEmpty())
        return std::optional<book::GoodsTax>();
    return std::optional(book::goodsTaxFrom(found->rows.front().front()).value_or(book::GoodsTax::Standard));
}

base::Result<std::optional<double>> includedTax(db::Connection &connection, const Shipment &shipment,
                                                const QDate &day, const TaxSource &taxes)
{
    const auto goods = taxes.byTable ? goodsTaxOf(connection, shipment.goods)
                                     : base::Result<std::optional<book::GoodsTax>>(book::GoodsTax::Standard);
    if (!goods)
        return goods.error();
    const auto rate = *goods && shipment.price ? taxes.rates.on(day, **goods) : std::nullopt;
    if (!rate)
        return std::optional<double>();
    const auto tax = book::taxOf({{*shipment.price, *rate, **goods}}, book::Basis::Gross);
    return tax ? std::optional(*tax) : std::optional<double>();
}

} // namespace

base::Result<std::vector<Shipment>> shipmentsFor(db::Connection &connection, const CarrierQuery &query)
{
    QStringList forms = formsOf(query.program);
    if (query.withOtherForms)
        forms += formsOfAnyCarrier();
    QVariantList values{text::stored(query.from), text::stored(query.to)};
    for (const QString &form : std::as_const(forms))
        values << form;
    const auto found =
        connection.select(u"SELECT "_s + shipmentColumns() +
                              u" FROM 発送マスター WHERE 受付日 >= ? AND 受付日 <= ? AND 発送方法 IN (%1)%2 "
                              "ORDER BY 発送ID LIMIT %3"_s
                                  .arg(QStringList(forms.size(), u"?"_s).join(u", "_s),
                                       query.withExported ? QString() : u" AND 出力日 IS NULL"_s)
                                  .arg(mostListed + 1),
                          values);
    if (!found)
        return found.error();
    if (found->count() > mostListed)
        return tooMany();
    std::vector<Shipment> shipments;
    for (const QVariantList &row : found->rows)
        shipments.push_back(shipmentOf(row));
    return shipments;
}

base::Result<std::vector<Shipment>> shipmentsOf(db::Connection &connection, const std::vector<qint64> &ids)
{
    if (ids.size() > std::size_t(mostListed))
        return tooMany();
    std::vector<Shipment> shipments;
    for (const qint64 id : ids) {
        auto shipment = readShipment(connection, id);
        if (!shipment && !shipment.error().gone)
            return shipment.error();
        if (shipment)
            shipments.push_back(std::move(*shipment));
    }
    return shipments;
}

base::Result<CarrierParcel> parcelOf(db::Connection &connection, const Shipment &shipment,
                                     const QDate &shipDay, const TaxSource &taxes)
{
    CarrierParcel parcel{.shipment = shipment, .shipDay = shipDay, .collected = isCollected(shipment.method)};
    const auto tax = includedTax(connection, shipment, shipDay, taxes);
    if (!tax)
        return tax.error();
    parcel.includedTax = *tax;
    return parcel;
}

base::Status markExported(db::Connection &connection, const std::vector<CarrierParcel> &parcels,
                          const QDate &day)
{
    return db::atomically(connection, [&]() -> base::Status {
        const auto version = db::nextVersion(connection);
        if (!version)
            return version.error();
        for (const CarrierParcel &parcel : parcels) {
            const auto marked =
                connection.execute(u"UPDATE 発送マスター SET 出力日 = ?, 版 = ? WHERE 発送ID = ?"_s,
                                   {text::stored(day), *version, parcel.shipment.id});
            if (!marked)
                return marked.error();
        }
        return {};
    });
}

base::Status changeShipments(db::Connection &connection, const std::vector<Shipment> &shipments)
{
    return db::atomically(connection, [&]() -> base::Status {
        for (const Shipment &shipment : shipments) {
            if (const base::Status changed = changeShipment(connection, shipment); !changed)
                return changed;
        }
        return {};
    });
}

base::Result<std::vector<qint64>> changedSince(db::Connection &connection,
                                               const std::vector<CarrierParcel> &parcels)
{
    std::vector<qint64> changed;
    for (const CarrierParcel &parcel : parcels) {
        const auto now = readShipment(connection, parcel.shipment.id);
        if (!now && !now.error().gone)
            return now.error();
        if (!now || now->version != parcel.shipment.version)
            changed.push_back(parcel.shipment.id);
    }
    return changed;
}

} // namespace shipping
