#include "shipping/gifts/gift_draft.h"

#include "base/dated_name.h"
#include "base/replacement.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qint64 largestDraft = 20'000'000; // bytes

const std::array<const char16_t *, giftTermCount> termNames{u"品名",   u"価格",   u"送料",       u"配達日",
                                                            u"時間帯", u"クール", u"のし上書き", u"名入れ"};

struct PartName
{
    const char16_t *name;
    QString Party::*part;
};
constexpr std::array<PartName, 6> partNames{{{u"名1", &Party::name1},
                                             {u"名2", &Party::name2},
                                             {u"郵便番号", &Party::zip},
                                             {u"住所1", &Party::address1},
                                             {u"住所2", &Party::address2},
                                             {u"電話", &Party::tel}}};

QJsonObject jsonOf(const Party &party, qint64 id)
{
    QJsonObject object;
    for (const PartName &each : partNames)
        object.insert(QString::fromUtf16(each.name), party.*each.part);
    object.insert(u"ID"_s, id);
    return object;
}

Party partyFrom(const QJsonObject &object)
{
    Party party;
    for (const PartName &each : partNames)
        party.*each.part = object.value(QString::fromUtf16(each.name)).toString();
    return party;
}

qint64 idFrom(const QJsonObject &object) { return qMax(0LL, object.value(u"ID"_s).toInteger()); }

QJsonValue jsonOf(const QVariant &term)
{
    if (term.isNull())
        return QJsonValue::Null;
    return term.typeId() == QMetaType::QDate ? QJsonValue(term.toDate().toString(Qt::ISODate))
                                             : QJsonValue::fromVariant(term);
}

QVariant termFrom(GiftTerm term, const QJsonValue &value)
{
    if (value.isNull())
        return {};
    if (term == GiftTerm::Delivery)
        return QDate::fromString(value.toString(), Qt::ISODate);
    const bool isAmount = term == GiftTerm::Price || term == GiftTerm::Carriage;
    return isAmount ? (value.isDouble() ? QVariant(value.toDouble()) : QVariant())
                    : QVariant(value.toString());
}

QJsonObject jsonOf(const GiftRow &row)
{
    QJsonObject terms;
    for (std::size_t i = 0; i < giftTermCount; ++i) {
        if (row.hasOwn[i])
            terms.insert(QString::fromUtf16(termNames[i]), jsonOf(termOf(row.own, static_cast<GiftTerm>(i))));
    }
    return {{u"印"_s, row.ticked},
            {u"発行済"_s, row.issued},
            {u"状態"_s, row.state},
            {u"届先"_s, jsonOf(row.consignee, row.consigneeId)},
            {u"価格の品名"_s, row.pricedGoods},
            {u"内容"_s, terms}};
}

GiftRow rowFrom(const QJsonObject &object)
{
    GiftRow row;
    row.ticked = object.value(u"印"_s).toBool();
    row.issued = object.value(u"発行済"_s).toBool();
    row.state = object.value(u"状態"_s).toString();
    row.pricedGoods = object.value(u"価格の品名"_s).toString();
    const QJsonObject consignee = object.value(u"届先"_s).toObject();
    row.consignee = partyFrom(consignee);
    row.consigneeId = idFrom(consignee);
    const QJsonObject terms = object.value(u"内容"_s).toObject();
    for (std::size_t i = 0; i < giftTermCount; ++i) {
        const QString name = QString::fromUtf16(termNames[i]);
        const auto term = static_cast<GiftTerm>(i);
        if (terms.contains(name))
            row.setOwn(term, termFrom(term, terms.value(name)));
    }
    return row;
}

QJsonObject jsonOf(const GiftOrder &order)
{
    QJsonObject common;
    for (std::size_t i = 0; i < giftTermCount; ++i)
        common.insert(QString::fromUtf16(termNames[i]),
                      jsonOf(termOf(order.common, static_cast<GiftTerm>(i))));
    QJsonArray rows;
    for (const GiftRow &row : order.rows)
        rows.append(jsonOf(row));
    return {{u"依頼主"_s, jsonOf(order.sender, order.senderId)},
            {u"受付日"_s, order.accepted.toString(Qt::ISODate)},
            {u"区分"_s, order.category},
            {u"発送方法"_s, order.method},
            {u"顧客コード"_s, order.customerCode},
            {u"発店コード"_s, order.officeCode},
            {u"共通"_s, common},
            {u"届先"_s, rows}};
}

GiftOrder orderFrom(const QJsonObject &object)
{
    GiftOrder order;
    const QJsonObject sender = object.value(u"依頼主"_s).toObject();
    order.sender = partyFrom(sender);
    order.senderId = idFrom(sender);
    order.accepted = QDate::fromString(object.value(u"受付日"_s).toString(), Qt::ISODate);
    order.category = object.value(u"区分"_s).toString();
    order.method = object.value(u"発送方法"_s).toString();
    order.customerCode = object.value(u"顧客コード"_s).toString();
    order.officeCode = object.value(u"発店コード"_s).toString();
    const QJsonObject common = object.value(u"共通"_s).toObject();
    for (std::size_t i = 0; i < giftTermCount; ++i) {
        const auto term = static_cast<GiftTerm>(i);
        setTerm(order.common, term, termFrom(term, common.value(QString::fromUtf16(termNames[i]))));
    }
    const QJsonArray rows = object.value(u"届先"_s).toArray();
    for (const QJsonValue &row : rows)
        order.rows.push_back(rowFrom(row.toObject()));
    return order;
}

// The next draft takes its place.
base::Error unusable(const QString &fileName, const QDate &today)
{
    const QString kept = base::datedName(fileName, u"破損"_s, today);
    const bool isKept = QFile::rename(fileName, kept);
    return {u"一括発送伝票の下書きを読み取れません。下書きは使わずに始めます。\n"_s +
            QDir::toNativeSeparators(isKept ? kept : fileName)};
}

} // namespace

QString draftFile(const QString &applicationFolder)
{
    return QDir(applicationFolder).filePath(u"一括発送伝票 下書き.json"_s);
}

base::Status saveDraft(const QString &fileName, const GiftOrder &order)
{
    base::Replacement replacement(fileName);
    if (const base::Status begun = replacement.begin(); !begun)
        return begun;
    QFile file(replacement.name());
    const QByteArray json = QJsonDocument(jsonOf(order)).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size() || !file.flush())
        return base::Error{u"入力中の内容を下書きに残せませんでした。ディスクの空きを確かめてください。"_s};
    file.close();
    return replacement.finish();
}

base::Result<std::optional<GiftOrder>> readDraft(const QString &fileName, const QDate &today)
{
    QFile file(fileName);
    if (!file.exists())
        return std::optional<GiftOrder>();
    if (file.size() > largestDraft || !file.open(QIODevice::ReadOnly))
        return unusable(fileName, today);
    const QJsonDocument json = QJsonDocument::fromJson(file.readAll());
    if (!json.isObject() || !json.object().contains(u"届先"_s))
        return unusable(fileName, today);
    return std::optional(orderFrom(json.object()));
}

base::Status dropDraft(const QString &fileName)
{
    if (!QFile::exists(fileName) || QFile::remove(fileName))
        return {};
    return base::Error{
        u"使い終わった下書き「%1」を消せませんでした。"_s.arg(QDir::toNativeSeparators(fileName))};
}

} // namespace shipping
