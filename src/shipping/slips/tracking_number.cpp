#include "shipping/slips/tracking_number.h"

#include "db/transaction.h"
#include "shipping/slips/shipment_store.h"
#include "text/width.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace shipping
{

QString storedTracking(const QString &typed)
{
    static const QRegularExpression blanks(uR"(\s+)"_s);
    static const QRegularExpression code(u"\\A[A-D]?([0-9-]*[0-9][0-9-]*)[A-D]?\\z"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    const QString plain = text::toHalfWidthAscii(text::withPlainHyphens(typed)).remove(blanks);
    const auto number = code.match(plain);
    return number.hasMatch() ? number.captured(1).remove(u'-') : plain;
}

QString trackingDoubt(const QString &number)
{
    static const QRegularExpression twelve(u"\\A[0-9]{12}\\z"_s);
    if (!twelve.match(number).hasMatch() || number.first(11).toLongLong() % 7 == number.back().digitValue())
        return {};
    return u"送り状番号の最後の数字がほかの数字と合いません。打ち間違いがないか確かめてください。"_s;
}

base::Result<qint64> otherOfNumber(db::Connection &connection, const QString &number, qint64 id)
{
    const auto others = connection.integers(
        u"SELECT 発送ID FROM 発送マスター WHERE 送り状番号 = ? AND 発送ID <> ? ORDER BY 発送ID LIMIT 1"_s,
        {number, id});
    if (!others)
        return others.error();
    return others->empty() ? 0 : others->front();
}

base::Status saveTracking(db::Connection &connection, qint64 id, const QString &before, const QString &number)
{
    return db::atomically(connection, [&]() -> base::Status {
        auto shipment = readShipment(connection, id);
        if (!shipment)
            return shipment.error();
        if (shipment->trackingNumber == number)
            return {};
        if (shipment->trackingNumber != before)
            return base::Error{
                .text = u"この発送の送り状番号は、ほかのプログラムで「%1」に変更されています。"_s.arg(
                    shipment->trackingNumber.left(40)),
                .changed = true};
        shipment->trackingNumber = number;
        return changeShipment(connection, *shipment);
    });
}

} // namespace shipping
