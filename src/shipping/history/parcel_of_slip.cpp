#include "shipping/history/parcel_of_slip.h"

#include "book/counterpart_name.h"
#include "book/slip_store.h"
#include "shipping/history/history.h"
#include "text/cp932.h"
#include "text/dates.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const QString andOthers = u"　ほか"_s;

bool isSent(const book::SlipLine &line)
{
    return !line.isTax() && !line.product.trimmed().isEmpty() && line.amount >= 0 &&
           line.quantity.value_or(1) > 0;
}

// An older file keeps the remark in 備考 alone.
base::Result<QString> remarkOf(db::Connection &connection, const book::Slip &slip)
{
    const auto found = connection.select(u"SELECT 摘要 FROM 入出庫マスター WHERE ID = ?"_s, {slip.id});
    if (!found)
        return found.error();
    const QString remark = found->isEmpty() ? QString() : found->rows.front().front().toString();
    return remark.isEmpty() ? slip.memo : remark;
}

// Nothing where the slip does not say what is to be paid.
base::Result<std::optional<double>> priceOf(db::Connection &connection, const book::Slip &slip)
{
    const auto sums = book::slipSums(connection, slip.id, slip.taxRate);
    if (!sums)
        return sums.error();
    const auto found =
        connection.select(u"SELECT coalesce(内税, 0) FROM 入出庫マスター WHERE ID = ?"_s, {slip.id});
    if (!found)
        return found.error();
    const bool isInclusive = !found->isEmpty() && found->rows.front().front().toInt() == 1;
    const bool isKnown = sums->hasTaxLine || isInclusive || slip.taxClass == book::TaxClass::Included;
    return isKnown && sums->total > 0 ? std::optional(sums->total) : std::nullopt;
}

Party customerOf(const book::Slip &slip)
{
    if (book::isUnknownCounterpartName(slip.name1))
        return {};
    return {slip.name1, slip.name2, slip.zip, slip.address1, slip.address2, slip.tel};
}

} // namespace

QString goodsInWords(const std::vector<book::SlipLine> &lines)
{
    QStringList products;
    for (const book::SlipLine &line : lines) {
        if (isSent(line) && !products.contains(line.product.trimmed()))
            products << line.product.trimmed();
    }
    if (products.isEmpty())
        return {};
    const QString ending = products.size() > 1 ? andOthers : QString();
    return text::leftCp932(products.front(), goodsWidth - text::cp932Bytes(ending)).trimmed() + ending;
}

base::Result<Shipment> parcelOfSlip(db::Connection &connection, qint64 slip, const QDate &today)
{
    const auto sale = book::readSlip(connection, slip, book::Party::Customer);
    if (!sale)
        return sale.error();
    const auto remark = remarkOf(connection, *sale);
    const auto price = priceOf(connection, *sale);
    if (!remark || !price)
        return remark ? price.error() : remark.error();
    Shipment parcel;
    parcel.accepted = today;
    parcel.consignee = customerOf(*sale);
    parcel.consigneeId = sale->counterpart;
    parcel.slipId = slip;
    parcel.goods = goodsInWords(sale->lines);
    parcel.price = *price;
    parcel.memo1 = *remark;
    parcel.memo2 = sale->number.isEmpty() ? QString() : u"伝票番号 "_s + sale->number;
    return parcel;
}

base::Result<QString> parcelsInWords(db::Connection &connection, qint64 slip)
{
    constexpr int mostNamed = 3;
    const auto parcels = lastShipments(connection, {.slip = slip}, mostNamed + 1);
    if (!parcels)
        return parcels.error();
    QStringList lines;
    for (const Shipment &parcel : *parcels) {
        QStringList parts{u"発送"_s, text::formatDate(parcel.accepted), parcel.method,
                          parcel.trackingNumber.isEmpty() ? u"送り状番号なし"_s : parcel.trackingNumber};
        parts.removeAll(QString());
        lines << parts.join(u'　');
    }
    if (lines.size() > mostNamed)
        lines = lines.first(mostNamed) << u"ほかにも発送があります。"_s;
    return lines.join(u'\n');
}

} // namespace shipping
