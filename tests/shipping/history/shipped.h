#pragma once

#include "shipping/slips/shipment_store.h"
#include "support/fresh_shop.h"

/// A parcel with what a search goes by, as a clerk in a hurry fills it in.
inline shipping::Shipment parcel(const QString &sender, const QString &consignee,
                                 const QDate &accepted = QDate(2026, 3, 1))
{
    shipping::Shipment shipment;
    shipment.accepted = accepted;
    shipment.sender.name1 = sender;
    shipment.consignee.name1 = consignee;
    shipment.consignee.zip = QStringLiteral("433-8122");
    shipment.method = QStringLiteral("宅急便");
    shipment.goods = QStringLiteral("みかん");
    return shipment;
}

/// Adds \a shipment to the history of \a shop; a failure ends the test program.
inline qint64 ship(FreshShop &shop, const shipping::Shipment &shipment)
{
    const auto key = shipping::addShipment(shop.connection, shipment);
    if (!key)
        qFatal("the shipment is not added");
    return *key;
}
