#pragma once

#include "shipping/slips/shipment_store.h"
#include "support/fresh_shop.h"

/// A shop that has sent gifts, as clerks typed them.
class GiftSeason : public FreshShop
{
public:
    GiftSeason()
    {
        using namespace Qt::StringLiterals;
        run(u"INSERT INTO 発送区分 (発送区分ID, 発送区分名) VALUES (1, 'お歳暮'), (2, 'お中元')"_s);
        run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, 郵便番号, 住所1, TEL1, 更新日) VALUES "
            "(7, '髙橋商店', '髙橋商店', '100-0001', '東京都千代田区千代田1-1', '03-1234-5678', "
            "'2020-01-01'), "
            "(8, '井上　誠', '井上誠', '430-0926', '静岡県浜松市中央区砂山町6', '', '2020-01-01')"_s);
    }

    /// Sends \a goods for \a price yen, \a carriage more, on \a day. \return 発送ID
    qint64 send(const QDate &day, const shipping::Party &sender, qint64 senderId,
                const shipping::Party &consignee, const QString &goods, double price, double carriage,
                const QString &category = QStringLiteral("お歳暮"))
    {
        shipping::Shipment gift;
        gift.accepted = day;
        gift.delivery = day.addDays(10);
        gift.sender = sender;
        gift.senderId = senderId;
        gift.consignee = consignee;
        gift.goods = goods;
        gift.price = price;
        gift.carriage = carriage;
        gift.category = category;
        gift.method = QStringLiteral("宅急便");
        gift.memo1 = QStringLiteral("御歳暮");
        gift.memo2 = sender.name1.left(2);
        gift.printed = day;
        const auto added = shipping::addShipment(connection, gift);
        if (!added)
            qFatal("no shipment");
        return *added;
    }
};

inline shipping::Party person(const QString &name, const QString &zip, const QString &address)
{
    return {name, {}, zip, address, {}, {}};
}
