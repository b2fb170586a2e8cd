#include "shipping/slips/shipment_store.h"

#include "db/keys.h"
#include "db/transaction.h"
#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

QVariant amountOf(const std::optional<double> &amount) { return amount ? QVariant(*amount) : QVariant(); }

QVariant keyOf(qint64 key) { return key > 0 ? QVariant(key) : QVariant(); }

QVariant dayOf(const QDate &day) { return day.isValid() ? QVariant(text::stored(day)) : QVariant(); }

// The prescribed columns first, in the order in which they are written.
const QStringList &columns()
{
    static const QStringList all{u"受付日"_s,         u"配達日"_s,      u"依頼主名1"_s,    u"依頼主名2"_s,
                                 u"依頼主郵便番号"_s, u"依頼主住所1"_s, u"依頼主住所2"_s,  u"依頼主電話"_s,
                                 u"届先名1"_s,        u"届先名2"_s,     u"届先郵便番号"_s, u"届先住所1"_s,
                                 u"届先住所2"_s,      u"届先電話"_s,    u"品名"_s,         u"価格"_s,
                                 u"送料"_s,           u"発送区分"_s,    u"発送方法"_s,     u"備考1"_s,
                                 u"備考2"_s,          u"顧客コード"_s,  u"発店コード"_s,   u"送り状番号"_s,
                                 u"時間帯"_s,         u"クール"_s,      u"個数"_s,         u"納品先ID"_s,
                                 u"依頼主ID"_s,       u"伝票ID"_s,      u"印刷日"_s,       u"出力日"_s};
    return all;
}

QVariantList valuesOf(const Shipment &shipment)
{
    const auto party = [](const Party &of) {
        return QVariantList{of.name1, of.name2, of.zip, of.address1, of.address2, of.tel};
    };
    QVariantList values = QVariantList{dayOf(shipment.accepted), dayOf(shipment.delivery)} +
                          party(shipment.sender) + party(shipment.consignee) +
                          QVariantList{shipment.goods,
                                       amountOf(shipment.price),
                                       amountOf(shipment.carriage),
                                       shipment.category,
                                       shipment.method,
                                       shipment.memo1,
                                       shipment.memo2,
                                       shipment.customerCode,
                                       shipment.officeCode,
                                       shipment.trackingNumber,
                                       shipment.timeSlot,
                                       shipment.cooling,
                                       shipment.parcels,
                                       keyOf(shipment.consigneeId),
                                       keyOf(shipment.senderId),
                                       keyOf(shipment.slipId),
                                       dayOf(shipment.printed),
                                       dayOf(shipment.exported)};
    for (QVariant &value : values) {
        if (value.typeId() == QMetaType::QString)
            value = withBlanksForBreaks(value.toString());
    }
    return values;
}

// Takes the values of a row one after the other.
class Reader
{
public:
    explicit Reader(const QVariantList &row)
        : m_row(row)
    {}

    QVariant value() { return m_row.value(m_next++); }
    QString text() { return value().toString(); }
    qint64 key() { return qMax(0LL, value().toLongLong()); }
    QDate day() { return text::parseDate(text()).value_or(QDate()); }
    std::optional<double> amount()
    {
        bool isNumber = false;
        const double number = value().toDouble(&isNumber);
        return isNumber ? std::optional(number) : std::nullopt;
    }
    Party party() // in the order of the members
    {
        Party party;
        for (QString *part :
             {&party.name1, &party.name2, &party.zip, &party.address1, &party.address2, &party.tel})
            *part = text();
        return party;
    }

private:
    const QVariantList &m_row;
    qsizetype m_next = 0;
};

base::Error changedMeanwhile()
{
    base::Error error{
        u"この発送は、ほかのプログラムで変更されています。読み直してから、もう一度実行してください。"_s};
    error.changed = true;
    return error;
}

base::Error goneMeanwhile()
{
    base::Error error{u"この発送は、履歴からすでに削除されています。"_s};
    error.gone = true;
    return error;
}

// Inside the transaction that writes it.
base::Status checkUnchanged(db::Connection &connection, const Shipment &shipment)
{
    const auto now = connection.select(u"SELECT 版 FROM 発送マスター WHERE 発送ID = ?"_s, {shipment.id});
    if (!now)
        return now.error();
    if (now->isEmpty())
        return goneMeanwhile();
    const QVariant version = now->rows.front().front();
    const auto held = version.isNull() ? std::nullopt : std::optional(version.toLongLong());
    return held == shipment.version ? base::Status() : changedMeanwhile();
}

} // namespace

QString shipmentColumns() { return u"発送ID, 版, "_s + columns().join(u", "_s); }

Shipment shipmentOf(const QVariantList &row)
{
    Reader reader(row);
    Shipment shipment;
    shipment.id = reader.key();
    if (const QVariant version = reader.value(); !version.isNull())
        shipment.version = version.toLongLong();
    shipment.accepted = reader.day();
    shipment.delivery = reader.day();
    shipment.sender = reader.party();
    shipment.consignee = reader.party();
    shipment.goods = reader.text();
    shipment.price = reader.amount();
    shipment.carriage = reader.amount();
    for (QString *part :
         {&shipment.category, &shipment.method, &shipment.memo1, &shipment.memo2, &shipment.customerCode,
          &shipment.officeCode, &shipment.trackingNumber, &shipment.timeSlot, &shipment.cooling})
        *part = reader.text();
    shipment.parcels = qMax(1, reader.value().toInt());
    shipment.consigneeId = reader.key();
    shipment.senderId = reader.key();
    shipment.slipId = reader.key();
    shipment.printed = reader.day();
    shipment.exported = reader.day();
    return shipment;
}

QVariantList shipmentValues(const Shipment &shipment) { return valuesOf(shipment); }

base::Result<Shipment> readShipment(db::Connection &connection, qint64 id)
{
    const auto found =
        connection.select(u"SELECT "_s + shipmentColumns() + u" FROM 発送マスター WHERE 発送ID = ?"_s, {id});
    if (!found)
        return found.error();
    if (found->isEmpty())
        return goneMeanwhile();
    return shipmentOf(found->rows.front());
}

base::Status checkPrintable(db::Connection &connection, const Shipment &shipment)
{
    const auto category =
        connection.select(u"SELECT * FROM 発送区分 WHERE (発送区分.発送区分名 = ?)"_s, {shipment.category});
    if (!category)
        return category.error();
    if (category->isEmpty())
        return base::Error{u"発送区分が不正です。"_s};
    if (shipment.consignee.zip.trimmed().isEmpty())
        return base::Error{u"郵便番号が入力されていません。"_s};
    return {};
}

base::Result<qint64> addShipment(db::Connection &connection, const Shipment &shipment)
{
    return db::atomically(connection, [&]() -> base::Result<qint64> {
        const auto key = db::nextKey(connection, u"発送マスター"_s);
        if (!key)
            return key;
        const QVariantList values = QVariantList{*key} + valuesOf(shipment) +
                                    QVariantList{nameKey(shipment.sender), nameKey(shipment.consignee)};
        const auto added = connection.execute(
            u"INSERT INTO 発送マスター (発送ID, %1, 依頼主名キー, 届先名キー, 版) VALUES (%2, "
            "(SELECT 最終 FROM 版数))"_s.arg(columns().join(u", "_s),
                                             QStringList(values.size(), u"?"_s).join(u", "_s)),
            values);
        return added ? key : added.error();
    });
}

base::Status changeShipment(db::Connection &connection, const Shipment &shipment)
{
    return db::atomically(connection, [&]() -> base::Status {
        if (const base::Status unchanged = checkUnchanged(connection, shipment); !unchanged)
            return unchanged;
        const auto version = db::nextVersion(connection);
        if (!version)
            return version.error();
        return connection
            .execute(u"UPDATE 発送マスター SET %1 = ?, 依頼主名キー = ?, 届先名キー = ?, 版 = ? "
                     "WHERE 発送ID = ?"_s.arg(columns().join(u" = ?, "_s)),
                     valuesOf(shipment) + QVariantList{nameKey(shipment.sender), nameKey(shipment.consignee),
                                                       *version, shipment.id})
            .status();
    });
}

base::Status removeShipment(db::Connection &connection, const Shipment &shipment)
{
    return db::atomically(connection, [&]() -> base::Status {
        if (const base::Status unchanged = checkUnchanged(connection, shipment); !unchanged)
            return unchanged;
        return db::deleteRows(connection, u"DELETE FROM 発送マスター WHERE 発送ID = ?"_s, {shipment.id})
            .status();
    });
}

} // namespace shipping
