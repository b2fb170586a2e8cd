#include "shipping/slips/shipment_entry.h"

#include "db/connection.h"
#include "db/recordset.h"
#include "masters/own_company.h"
#include "registers/counterpart.h"
#include "shipping/slips/shipment_store.h"
#include "shipping/slips/tracking_number.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "text/width.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr double mostYen = 999'999'999; // what the widest box of a slip holds
constexpr int usualDaysBack = 31;       // a slip is entered soon after its parcel was taken
constexpr int usualDaysAhead = 180;     // gifts are ordered half a year ahead at most

QString shown(const QDate &day) { return text::formatDate(day); }

std::optional<QDate> monthAndDay(const QString &typed, const QDate &today)
{
    static const QRegularExpression form(u"^([0-9]{1,2})[/.\\-月]([0-9]{1,2})日?$|^([0-9]{2})([0-9]{2})$"_s);
    const auto match = form.match(text::withPlainHyphens(text::toHalfWidthAscii(typed)).trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    const bool apart = match.hasCaptured(1);
    const int month = match.captured(apart ? 1 : 3).toInt();
    const int day = match.captured(apart ? 2 : 4).toInt();
    QDate nearest;
    for (const int year : {today.year(), today.year() - 1, today.year() + 1}) {
        const QDate candidate(year, month, day);
        if (candidate.isValid() &&
            (!nearest.isValid() || qAbs(today.daysTo(candidate)) < qAbs(today.daysTo(nearest))))
            nearest = candidate;
    }
    return nearest.isValid() ? std::optional(nearest) : std::nullopt;
}

void addDayDoubts(QStringList &doubts, const Shipment &shipment, const QDate &today)
{
    const QDate &accepted = shipment.accepted;
    const QDate &delivery = shipment.delivery;
    if (accepted.isValid() && qAbs(accepted.daysTo(today)) > usualDaysBack)
        doubts << u"受付日が %1 です。今日（%2）から離れています。"_s.arg(shown(accepted), shown(today));
    if (!delivery.isValid())
        return;
    if (accepted.isValid() && delivery < accepted)
        doubts << u"配達予定日（%1）が受付日（%2）より前です。"_s.arg(shown(delivery), shown(accepted));
    if (delivery < today)
        doubts << u"配達予定日（%1）が今日（%2）より前です。"_s.arg(shown(delivery), shown(today));
    else if (today.daysTo(delivery) > usualDaysAhead)
        doubts << u"配達予定日（%1）が半年以上先です。"_s.arg(shown(delivery));
}

} // namespace

std::optional<QDate> typedDay(const QString &typed, const QDate &today)
{
    const auto day = text::parseAnyDate(typed);
    return day ? day : monthAndDay(typed, today);
}

base::Result<std::optional<double>> typedYen(const QString &typed, const QString &name)
{
    if (typed.trimmed().isEmpty())
        return std::optional<double>();
    const auto yen = text::parseNumber(typed);
    if (!yen)
        return base::Error{name + u"には数字を入力してください。"_s};
    if (*yen < 0 || *yen > mostYen || *yen != std::floor(*yen))
        return base::Error{name + u"には０から９億９９９９万９９９９までの円単位の数を入力してください。"_s};
    return yen;
}

Party partyOf(const masters::OwnCompany &company)
{
    return {company.name1, company.name2, company.zip, company.address1, company.address2, company.tel1};
}

Party partyOf(const db::Recordset &customers)
{
    return {customers.text(u"納品先名1"_s), customers.text(u"納品先名2"_s), customers.text(u"郵便番号"_s),
            customers.text(u"住所1"_s),     customers.text(u"住所2"_s),     customers.text(u"TEL1"_s)};
}

bool isStillNamed(const Party &before, const Party &party)
{
    return registers::foldedName(before.name1) == registers::foldedName(party.name1);
}

Shipment nextOf(Shipment shipment)
{
    const Shipment fresh;
    shipment.id = fresh.id;
    shipment.version = fresh.version;
    shipment.delivery = fresh.delivery;
    shipment.consignee = fresh.consignee;
    shipment.consigneeId = fresh.consigneeId;
    shipment.carriage = fresh.carriage;
    shipment.timeSlot = fresh.timeSlot;
    shipment.cooling = fresh.cooling;
    shipment.trackingNumber = fresh.trackingNumber;
    shipment.parcels = fresh.parcels;
    if (shipment.slipId > 0) {
        shipment.goods = fresh.goods;
        shipment.price = fresh.price;
        shipment.memo1 = fresh.memo1;
        shipment.memo2 = fresh.memo2;
    }
    shipment.slipId = fresh.slipId;
    shipment.printed = fresh.printed;
    shipment.exported = fresh.exported;
    if (isCollected(shipment.method))
        shipment.price = fresh.price;
    return shipment;
}

QStringList doubtsOf(const Shipment &shipment, const QDate &today)
{
    QStringList doubts;
    if ((shipment.sender.name1 + shipment.sender.name2).trimmed().isEmpty())
        doubts << u"ご依頼主の名前が入力されていません。"_s;
    const Party &consignee = shipment.consignee;
    if ((consignee.name1 + consignee.name2).trimmed().isEmpty())
        doubts << u"お届け先の名前が入力されていません。"_s;
    if ((consignee.address1 + consignee.address2).trimmed().isEmpty())
        doubts << u"お届け先の住所が入力されていません。"_s;
    if (shipment.goods.trimmed().isEmpty())
        doubts << u"品名が入力されていません。"_s;
    addDayDoubts(doubts, shipment, today);
    if (isCollected(shipment.method) && shipment.price.value_or(0) == 0)
        doubts << u"「%1」ですが、集金する価格が入力されていません。"_s.arg(shipment.method);
    if (const QString doubt = trackingDoubt(shipment.trackingNumber); !doubt.isEmpty())
        doubts << doubt;
    return doubts;
}

base::Result<QStringList> doubtsOf(const Shipment &shipment, db::Connection &connection)
{
    QStringList doubts;
    const auto ofThatDay = connection.select(
        u"SELECT %1 FROM 発送マスター WHERE 依頼主名キー = ? AND 届先名キー = ? AND 受付日 = ? "
        "AND 発送ID <> ? ORDER BY 発送ID"_s.arg(shipmentColumns()),
        {nameKey(shipment.sender), nameKey(shipment.consignee), text::stored(shipment.accepted),
         shipment.id});
    if (!ofThatDay)
        return ofThatDay.error();
    const auto same = std::ranges::find_if(ofThatDay->rows, [&shipment](const QVariantList &row) {
        const Shipment other = shipmentOf(row);
        return other.consignee == shipment.consignee && other.goods == shipment.goods;
    });
    if (same != ofThatDay->rows.end())
        doubts << u"同じお届け先・品名の送り状が、この受付日ですでに印刷されています（発送ID %1）。"_s.arg(
            shipmentOf(*same).id);
    if (shipment.trackingNumber.isEmpty())
        return doubts;
    const auto used = connection.integers(
        u"SELECT 発送ID FROM 発送マスター WHERE 送り状番号 = ? AND 発送ID <> ? ORDER BY 発送ID LIMIT 1"_s,
        {shipment.trackingNumber, shipment.id});
    if (!used)
        return used.error();
    if (!used->empty())
        doubts << u"伝票番号「%1」は、ほかの荷物（発送ID %2）に使われています。"_s.arg(
            shipment.trackingNumber, QString::number(used->front()));
    return doubts;
}

} // namespace shipping
