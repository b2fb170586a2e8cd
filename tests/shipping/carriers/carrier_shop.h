#pragma once

#include "shipping/slips/shipment_store.h"
#include "support/fresh_shop.h"

#include <QFile>

/// A parcel as a hurried clerk enters it: widths mixed, no hyphens, all of it meant.
inline shipping::Shipment hurriedShipment(const QString &method = QStringLiteral("宅急便"))
{
    using namespace Qt::StringLiterals;
    shipping::Shipment shipment;
    shipment.accepted = QDate(2026, 4, 1);
    shipment.delivery = QDate(2026, 4, 3);
    shipment.sender = {u"有限会社かんばん堂"_s,      {}, u"３８０－０８２１"_s,
                       u"長野県長野市上千歳町1-1"_s, {}, u"026(200)0000"_s};
    shipment.consignee = {u"㈱山田商店"_s,    u"山田　太郎様"_s,
                          u"1000005"_s,       u"東京都千代田区丸の内１－１－１"_s,
                          u"丸の内ﾋﾞﾙ12階"_s, u"０３－１２３４－５６７８"_s};
    shipment.goods = u"りんご, \"ふじ\" 5kg"_s;
    shipment.price = 4320;
    shipment.category = u"通常"_s;
    shipment.method = method;
    shipment.memo1 = u"御祝"_s;
    shipment.memo2 = u"=佐藤"_s;
    shipment.timeSlot = u"14-16"_s;
    shipment.cooling = u"冷蔵"_s;
    return shipment;
}

/// Adds \a shipment to the history. \return it as its row stands
inline shipping::Shipment kept(FreshShop &shop, const shipping::Shipment &shipment)
{
    const auto id = shipping::addShipment(shop.connection, shipment);
    if (!id)
        qFatal("%s", qPrintable(id.error().text));
    return *shipping::readShipment(shop.connection, *id);
}

/// Writes \a content as it is. \return the file's name
inline QString fileOf(const FreshShop &shop, const QString &name, const QByteArray &content)
{
    QFile file(shop.path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s", qPrintable(file.errorString()));
    return file.fileName();
}
