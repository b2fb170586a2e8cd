#include "shipping/gifts/earlier_gifts.h"

#include "registers/duplicates/person_folding.h"
#include "shipping/gifts/gift_order.h"
#include "shipping/slips/shipment_store.h"
#include "text/dates.h"

#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr std::size_t blockSize = 500; // keys in one statement
constexpr int halfSeason = 3;          // months

// Tells the rows of a sender from those of others. His department may stand there or not. Names are folded
// once each: few people send a lot.
class SenderTest
{
public:
    explicit SenderTest(const EarlierGifts &wanted)
        : m_id(wanted.senderId)
        , m_name(registers::foldedPerson(wanted.sender.name1))
        , m_whole(registers::foldedPerson(wanted.sender.name1 + wanted.sender.name2))
    {}

    bool isHis(qint64 id, const QString &name1, const QString &name2)
    {
        if (m_id > 0 && id > 0)
            return id == m_id;
        const QString name = name1 + u'\n' + name2;
        const auto known = m_known.constFind(name);
        if (known != m_known.constEnd())
            return *known;
        const bool isCalledSo = !m_name.isEmpty() && (registers::foldedPerson(name1) == m_name ||
                                                      registers::foldedPerson(name1 + name2) == m_whole);
        return *m_known.insert(name, isCalledSo);
    }

private:
    const qint64 m_id;
    const QString m_name;
    const QString m_whole; // of both lines
    QHash<QString, bool> m_known;
};

struct Where
{
    QString sql = u"WHERE 受付日 >= ? AND 受付日 <= ?"_s;
    QVariantList values;
};

Where whereOf(const QString &category, const QDate &from, const QDate &to)
{
    Where where;
    where.values = {text::stored(from), text::stored(to)};
    if (!category.isEmpty()) {
        where.sql += u" AND 発送区分 = ?"_s;
        where.values << category;
    }
    return where;
}

base::Result<std::vector<qint64>> keysOf(db::Connection &connection, const EarlierGifts &wanted)
{
    const Where where = whereOf(wanted.category, wanted.from, wanted.to);
    const auto rows =
        connection.select(u"SELECT 発送ID, 依頼主ID, 依頼主名1, 依頼主名2 FROM 発送マスター "_s + where.sql +
                              u" ORDER BY 受付日 DESC, 発送ID DESC"_s,
                          where.values);
    if (!rows)
        return rows.error();
    SenderTest sender(wanted);
    std::vector<qint64> keys;
    for (const QVariantList &row : rows->rows) {
        if (sender.isHis(row.at(1).toLongLong(), row.at(2).toString(), row.at(3).toString()))
            keys.push_back(row.front().toLongLong());
    }
    return keys;
}

// In the order of \a keys.
base::Result<std::vector<Shipment>> shipmentsOf(db::Connection &connection, const std::vector<qint64> &keys)
{
    std::vector<Shipment> shipments;
    for (std::size_t first = 0; first < keys.size(); first += blockSize) {
        const std::size_t end = std::min(first + blockSize, keys.size());
        const QVariantList block(keys.begin() + std::ptrdiff_t(first), keys.begin() + std::ptrdiff_t(end));
        const auto rows = connection.select(
            u"SELECT "_s + shipmentColumns() + u" FROM 発送マスター WHERE 発送ID IN ("_s +
                QStringList(block.size(), u"?"_s).join(u',') + u") ORDER BY 受付日 DESC, 発送ID DESC"_s,
            block);
        if (!rows)
            return rows.error();
        for (const QVariantList &row : rows->rows)
            shipments.push_back(shipmentOf(row));
    }
    return shipments;
}

} // namespace

base::Result<std::vector<Shipment>> giftsOf(db::Connection &connection, const EarlierGifts &wanted)
{
    const auto keys = keysOf(connection, wanted);
    if (!keys)
        return keys.error();
    return shipmentsOf(connection, *keys);
}

base::Result<std::vector<Shipment>> lastGiftsOf(db::Connection &connection, const EarlierGifts &wanted)
{
    auto gifts = giftsOf(connection, wanted);
    if (!gifts)
        return gifts;
    QSet<qint64> customers;
    QSet<QString> consignees;
    std::erase_if(*gifts, [&](const Shipment &gift) {
        const QString key = consigneeKey(gift.consignee);
        const bool isKnown =
            (gift.consigneeId > 0 && customers.contains(gift.consigneeId)) || consignees.contains(key);
        if (gift.consigneeId > 0)
            customers.insert(gift.consigneeId);
        consignees.insert(key);
        return isKnown;
    });
    return gifts;
}

Season seasonBefore(const QDate &today, int years)
{
    const QDate then = today.addYears(-years);
    return {then.addMonths(-halfSeason), then.addMonths(halfSeason)};
}

base::Result<std::vector<Shipment>> shipmentsBetween(db::Connection &connection, const QString &category,
                                                     const QDate &from, const QDate &to)
{
    const Where where = whereOf(category, from, to);
    const auto rows = connection.select(u"SELECT "_s + shipmentColumns() + u" FROM 発送マスター "_s +
                                            where.sql + u" ORDER BY 受付日, 発送ID"_s,
                                        where.values);
    if (!rows)
        return rows.error();
    std::vector<Shipment> shipments;
    for (const QVariantList &row : rows->rows)
        shipments.push_back(shipmentOf(row));
    return shipments;
}

base::Result<Party> registeredParty(db::Connection &connection, qint64 id)
{
    const auto rows = connection.select(
        u"SELECT 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1 FROM 納品先 WHERE 納品先ID = ?"_s, {id});
    if (!rows)
        return rows.error();
    if (rows->isEmpty())
        return base::Error{.text = u"この納品先は登録されていません。"_s, .gone = true};
    const QVariantList &row = rows->rows.front();
    return Party{row.at(0).toString(), row.at(1).toString(), row.at(2).toString(),
                 row.at(3).toString(), row.at(4).toString(), row.at(5).toString()};
}

} // namespace shipping
