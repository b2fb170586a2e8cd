// ゆうプリ: the 17 columns of a filter that the shop defines there, dates yyyyMMdd. Address and name have one
// field each, which the program divides over the lines of its label.
#include "shipping/carriers/carrier_values.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

using enum FieldKind;
using Parcel = CarrierParcel;
using Settings = CarrierSettings;
using From = ShipmentField;
using namespace values;

const QString program = u"ゆうプリ"_s;
constexpr char16_t day[] = u"yyyyMMdd";
constexpr bool needed = true;
constexpr auto to = &Shipment::consignee;
constexpr auto from = &Shipment::sender;
constexpr int addressLength = 75; // three lines of the label
constexpr int nameLength = 25;

// The label says what kind of parcel it is; a cooled one and one that is paid on delivery have kinds of
// their own, which these columns cannot tell.
Value product(const Parcel &parcel, const Settings &settings)
{
    if (const base::Status own = checkOwn(parcel, CarrierProgram::Yupri); !own)
        return own.error();
    if (parcel.collected)
        return base::Error{u"代金引換の荷物は、ゆうプリの形式では書き出せません。"_s};
    if (!parcel.shipment.cooling.isEmpty())
        return base::Error{
            u"クール（%1）の荷物は、ゆうプリの形式では書き出せません。"_s.arg(parcel.shipment.cooling)};
    return settings.value(u"product"_s);
}

Value timeSlot(const Parcel &parcel, const Settings &)
{
    return code(parcel.shipment.timeSlot,
                {{u""_s, u"00"_s},
                 {u"午前中"_s, u"51"_s},
                 {u"12-14"_s, u"52"_s},
                 {u"14-16"_s, u"53"_s},
                 {u"16-18"_s, u"54"_s},
                 {u"18-20"_s, u"55"_s},
                 {u"19-21"_s, u"57"_s}},
                program);
}

template <Party Shipment::*party>
Value address(const Parcel &parcel, const Settings &)
{
    const Party &of = parcel.shipment.*party;
    return part({of.address1, of.address2}, {addressLength}, 0);
}

template <Party Shipment::*party>
Value name(const Parcel &parcel, const Settings &)
{
    const Party &of = parcel.shipment.*party;
    return onOneLine({of.name1, of.name2});
}

Value goods(const Parcel &parcel, const Settings &) { return parcel.shipment.goods.trimmed(); }
constexpr char16_t labelKind[] = u"kind";
constexpr char16_t size[] = u"size";

} // namespace

const std::vector<CarrierColumn> &yupriColumns()
{
    static const std::vector<CarrierColumn> columns{
        {u"送り状種別", setting<labelKind>, 20, HalfWidth, From::Settings, needed},
        {u"荷物商品名", product, 25, FullWidth, From::Method},
        {u"個口数", parcels, 3, Digits, From::Parcels, needed},
        {u"お客さま管理番号", number, 15, HalfWidth},
        {u"品名1", goods, 25, FullWidth, From::Goods, needed},
        {u"サイズ", setting<size>, 4, HalfWidth, From::Settings},
        {u"お届け先郵便番号", zipOf<to>, 8, PostalCode, From::ConsigneeZip, needed},
        {u"お届け先住所1", address<to>, addressLength, FullWidth, From::ConsigneeAddress, needed},
        {u"お届け先氏名1", name<to>, nameLength, FullWidth, From::ConsigneeName, needed},
        {u"お届け先電話番号", telOf<to>, 15, Phone, From::ConsigneeTel, needed},
        {u"ご依頼主郵便番号", zipOf<from>, 8, PostalCode, From::SenderZip, needed},
        {u"ご依頼主住所1", address<from>, addressLength, FullWidth, From::SenderAddress, needed},
        {u"ご依頼主氏名1", name<from>, nameLength, FullWidth, From::SenderName, needed},
        {u"ご依頼主電話番号", telOf<from>, 15, Phone, From::SenderTel, needed},
        {u"発送予定日", shipDay<day>, 8, Digits, From::None, needed},
        {u"配達希望日", deliveryDay<day>, 8, Digits, From::Delivery},
        {u"配達希望時間帯", timeSlot, 2, Digits, From::TimeSlot},
    };
    return columns;
}

} // namespace shipping
