#include "shipping/history/shipment_merge.h"

#include "shipping/slips/shipment_store.h"
#include "text/dates.h"
#include "text/numbers.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr qsizetype ownColumns = 2; // 発送ID and 版, ahead of the others
constexpr qsizetype mostCharacters = 40;

QString quoted(const QVariant &value)
{
    QString words = value.typeId() == QMetaType::Double ? text::formatPlain(value.toDouble())
                                                        : text::shownDay(value.toString());
    if (words.size() > mostCharacters)
        words = words.left(mostCharacters) + u'…';
    return u"「%1」"_s.arg(words);
}

bool isSame(const QVariant &one, const QVariant &other)
{
    return one == other || (one.toString().isEmpty() && other.toString().isEmpty());
}

} // namespace

MergedShipment mergeShipments(const Shipment &before, const Shipment &typed, const Shipment &theirs)
{
    const QStringList columns = shipmentColumns().split(u", "_s).mid(ownColumns);
    const QVariantList old = shipmentValues(before);
    const QVariantList mine = shipmentValues(typed);
    QVariantList merged = shipmentValues(theirs);
    MergedShipment result;
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const QVariant now = merged.at(i);
        const bool isTyped = !isSame(mine.at(i), old.at(i));
        if (isTyped && !isSame(mine.at(i), now))
            result.sentences << u"%1：自分の入力は%2、ほかの変更は%3"_s.arg(columns.at(i), quoted(mine.at(i)),
                                                                            quoted(now));
        else if (!isTyped && !isSame(old.at(i), now))
            result.sentences << u"%1：%2がほかで%3に変更（どちらを選んでも残ります）"_s.arg(
                columns.at(i), quoted(old.at(i)), quoted(now));
        if (isTyped)
            merged[i] = mine.at(i);
    }
    const QVariant version = theirs.version ? QVariant(*theirs.version) : QVariant();
    result.mine = shipmentOf(QVariantList{theirs.id, version} + merged);
    return result;
}

} // namespace shipping
