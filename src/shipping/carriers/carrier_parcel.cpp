#include "shipping/carriers/carrier_parcel.h"

#include "shipping/carriers/carrier_values.h"
#include "text/dates.h"
#include "text/numbers.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

using Texts = std::vector<QString Shipment::*>;

QString amountText(const std::optional<double> &amount)
{
    return amount ? text::formatPlain(*amount) : QString();
}

constexpr int oldAfter = 60; // days; gifts are ordered weeks ahead

// The lines of a party's field: pointers to the members of either party.
std::vector<QString Party::*> partyLines(ShipmentField field)
{
    switch (field) {
    case ShipmentField::ConsigneeName:
    case ShipmentField::SenderName:
        return {&Party::name1, &Party::name2};
    case ShipmentField::ConsigneeAddress:
    case ShipmentField::SenderAddress:
        return {&Party::address1, &Party::address2};
    case ShipmentField::ConsigneeZip:
    case ShipmentField::SenderZip:
        return {&Party::zip};
    case ShipmentField::ConsigneeTel:
    case ShipmentField::SenderTel:
        return {&Party::tel};
    default:
        return {};
    }
}

Texts textLines(ShipmentField field)
{
    switch (field) {
    case ShipmentField::Method:
        return {&Shipment::method};
    case ShipmentField::TimeSlot:
        return {&Shipment::timeSlot};
    case ShipmentField::Cooling:
        return {&Shipment::cooling};
    case ShipmentField::Goods:
        return {&Shipment::goods};
    case ShipmentField::Memo:
        return {&Shipment::memo1, &Shipment::memo2};
    default:
        return {};
    }
}

Party Shipment::*partyOf(ShipmentField field)
{
    return field >= ShipmentField::SenderName ? &Shipment::sender : &Shipment::consignee;
}

QString captionOf(ShipmentField field)
{
    static const QHash<ShipmentField, QString> captions{
        {ShipmentField::Method, u"発送方法"_s},
        {ShipmentField::Delivery, u"配達予定日"_s},
        {ShipmentField::TimeSlot, u"時間帯"_s},
        {ShipmentField::Cooling, u"クール"_s},
        {ShipmentField::Parcels, u"個数"_s},
        {ShipmentField::ConsigneeName, u"お届け先の名前"_s},
        {ShipmentField::ConsigneeZip, u"お届け先の郵便番号"_s},
        {ShipmentField::ConsigneeAddress, u"お届け先の住所"_s},
        {ShipmentField::ConsigneeTel, u"お届け先の電話"_s},
        {ShipmentField::SenderName, u"ご依頼主の名前"_s},
        {ShipmentField::SenderZip, u"ご依頼主の郵便番号"_s},
        {ShipmentField::SenderAddress, u"ご依頼主の住所"_s},
        {ShipmentField::SenderTel, u"ご依頼主の電話"_s},
        {ShipmentField::Goods, u"品名"_s},
        {ShipmentField::Price, u"価格"_s},
        {ShipmentField::Memo, u"備考"_s}};
    return captions.value(field);
}

QStringList choicesOf(ShipmentField field)
{
    switch (field) {
    case ShipmentField::Method:
        return shippingForms();
    case ShipmentField::TimeSlot:
        return timeSlots();
    case ShipmentField::Cooling:
        return coolings();
    default:
        return {};
    }
}

base::Result<Shipment> withDelivery(Shipment shipment, const QString &typed)
{
    const auto day = text::parseAnyDate(typed);
    if (!typed.isEmpty() && !day)
        return base::Error{u"配達予定日が日付ではありません。2026/4/1 のように入力してください。"_s};
    shipment.delivery = day.value_or(QDate());
    return shipment;
}

base::Result<Shipment> withPrice(Shipment shipment, const QString &typed)
{
    const auto price = text::parseNumber(typed);
    if (!typed.isEmpty() && !price)
        return base::Error{u"価格が数字ではありません。"_s};
    shipment.price = price;
    return shipment;
}

base::Result<Shipment> withParcels(Shipment shipment, const QString &typed)
{
    constexpr qint64 most = 999;
    const auto count = text::parseInteger(typed);
    if (!count || *count < 1 || *count > most)
        return base::Error{u"個数は 1 から %1 までの数字です。"_s.arg(most)};
    shipment.parcels = int(*count);
    return shipment;
}

// A line break that was pasted into a field; its box shows it as a blank.
QString plainLine(QString typed)
{
    for (QChar &c : typed) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return typed.trimmed();
}

} // namespace

QString exportDoubt(CarrierProgram program, const CarrierParcel &parcel)
{
    const Shipment &shipment = parcel.shipment;
    if (!values::checkOwn(parcel, program))
        return u"他社"_s;
    const QDate last = std::max(shipment.accepted, shipment.delivery);
    return last.isValid() && last.daysTo(parcel.shipDay) >= oldAfter ? u"古い"_s : QString();
}

MendableField mendable(const Shipment &shipment, ShipmentField field)
{
    MendableField found{captionOf(field), {}, choicesOf(field)};
    for (const auto line : partyLines(field))
        found.lines << shipment.*partyOf(field).*line;
    for (const auto line : textLines(field))
        found.lines << shipment.*line;
    if (field == ShipmentField::Delivery)
        found.lines << text::formatDate(shipment.delivery);
    if (field == ShipmentField::Price)
        found.lines << amountText(shipment.price);
    if (field == ShipmentField::Parcels)
        found.lines << QString::number(shipment.parcels);
    return found;
}

base::Result<Shipment> mended(const Shipment &shipment, ShipmentField field, const QStringList &lines)
{
    Shipment now = shipment;
    const QString first = lines.value(0).trimmed();
    if (field == ShipmentField::Delivery)
        return withDelivery(now, first);
    if (field == ShipmentField::Price)
        return withPrice(now, first);
    if (field == ShipmentField::Parcels)
        return withParcels(now, first);
    qsizetype at = 0;
    for (const auto line : partyLines(field))
        now.*partyOf(field).*line = plainLine(lines.value(at++));
    for (const auto line : textLines(field))
        now.*line = plainLine(lines.value(at++));
    return now;
}

} // namespace shipping
