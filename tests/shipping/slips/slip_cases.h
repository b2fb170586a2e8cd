#pragma once

#include "shipping/slips/shipment.h"

/// Shipments as they are entered in a hurry.
namespace slip_cases
{

inline shipping::Shipment parcel(const QString &method = QStringLiteral("宅急便"))
{
    shipping::Shipment shipment;
    shipment.accepted = QDate(2026, 4, 1);
    shipment.delivery = QDate(2026, 4, 3);
    shipment.sender = {QStringLiteral("信州りんご園"), {},
                       QStringLiteral("3800821"),      QStringLiteral("長野県長野市上千歳町1137"),
                       QStringLiteral("千歳ﾋﾞﾙ2F"),    QStringLiteral("026-224-1137")};
    shipment.consignee = {QStringLiteral("佐藤花子"),         {},
                          QStringLiteral("１００－０００１"), QStringLiteral("東京都千代田区千代田１－１"),
                          QStringLiteral("宮前コーポ402号"),  QStringLiteral("090-1234-5678")};
    shipment.goods = QStringLiteral("ふじ10kg");
    shipment.price = 3980;
    shipment.carriage = 850;
    shipment.category = QStringLiteral("お歳暮");
    shipment.method = method;
    shipment.memo1 = QStringLiteral("御歳暮");
    shipment.memo2 = QStringLiteral("山田");
    shipment.customerCode = QStringLiteral("0262241137");
    shipment.officeCode = QStringLiteral("038-021");
    shipment.timeSlot = QStringLiteral("午前中");
    return shipment;
}

/// Every line longer than any form is wide.
inline shipping::Shipment longest(const QString &method)
{
    const auto wide = [](int characters) { return QString(characters, u'鷹'); };
    shipping::Shipment shipment = parcel(method);
    for (shipping::Party *party : {&shipment.sender, &shipment.consignee})
        *party = {wide(40), wide(40), QStringLiteral("100-0001"), wide(40), wide(40), wide(20)};
    shipment.goods = wide(60);
    shipment.memo1 = wide(60);
    shipment.memo2 = wide(60);
    shipment.customerCode = wide(20);
    shipment.officeCode = wide(20);
    shipment.trackingNumber = wide(20);
    shipment.price = 123'456'789;
    shipment.carriage = 1'234'567;
    shipment.cooling = QStringLiteral("冷凍");
    shipment.parcels = 99;
    return shipment;
}

} // namespace slip_cases
