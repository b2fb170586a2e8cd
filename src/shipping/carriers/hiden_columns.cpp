// e飛伝Ⅲ, template 標準_飛脚宅配便_CSV_ヘッダ有: 74 columns in this order.
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

const QString program = u"e飛伝Ⅲ"_s;
constexpr char16_t day[] = u"yyyy/MM/dd";
constexpr bool needed = true;
constexpr auto to = &Shipment::consignee;
constexpr auto from = &Shipment::sender;
constexpr int line = 16; // full-width characters

Value speed(const Parcel &parcel, const Settings &)
{
    const base::Status own = checkOwn(parcel, CarrierProgram::Hiden3);
    return own ? Value(u"000"_s) : Value(own.error());
}

Value cooling(const Parcel &parcel, const Settings &)
{
    return code(parcel.shipment.cooling, {{u""_s, u"001"_s}, {u"冷蔵"_s, u"002"_s}, {u"冷凍"_s, u"003"_s}},
                program);
}

Value timeSlot(const Parcel &parcel, const Settings &)
{
    return code(parcel.shipment.timeSlot,
                {{u""_s, u""_s},
                 {u"午前中"_s, u"01"_s},
                 {u"12-14"_s, u"12"_s},
                 {u"14-16"_s, u"14"_s},
                 {u"16-18"_s, u"16"_s},
                 {u"18-20"_s, u"18"_s},
                 {u"18-21"_s, u"04"_s},
                 {u"19-21"_s, u"19"_s}},
                program);
}

template <int field>
Value consigneeAddress(const Parcel &parcel, const Settings &)
{
    const Party &of = parcel.shipment.consignee;
    return part({of.address1, of.address2}, {line, line, line}, field, Borders::Any);
}

template <int field>
Value senderAddress(const Parcel &parcel, const Settings &)
{
    const Party &of = parcel.shipment.sender;
    return part({of.address1, of.address2}, {line, line}, field, Borders::Any);
}

template <Party Shipment::*party, int field>
Value name(const Parcel &parcel, const Settings &)
{
    const Party &of = parcel.shipment.*party;
    return part({of.name1, of.name2}, {line, line}, field, Borders::Any);
}

// The remarks stand below the goods.
template <int field>
Value goods(const Parcel &parcel, const Settings &)
{
    const Shipment &of = parcel.shipment;
    return part({of.goods, of.memo1, of.memo2}, {line, line, line, line, line}, field, Borders::Any);
}

constexpr char16_t customer[] = u"customer";
constexpr char16_t payment[] = u"payment";
constexpr char16_t packaging[] = u"packaging";
constexpr char16_t seal[] = u"seal";

} // namespace

const std::vector<CarrierColumn> &hidenColumns()
{
    static const std::vector<CarrierColumn> columns{
        {u"お届け先コード取得区分"},
        {u"お届け先コード"},
        {u"お届け先電話番号", telOf<to>, 14, Phone, From::ConsigneeTel, needed},
        {u"お届け先郵便番号", zipOf<to>, 8, PostalCode, From::ConsigneeZip, needed},
        {u"お届け先住所1", consigneeAddress<0>, line, FullWidth, From::ConsigneeAddress, needed},
        {u"お届け先住所2", consigneeAddress<1>, line, FullWidth, From::ConsigneeAddress},
        {u"お届け先住所3", consigneeAddress<2>, line, FullWidth, From::ConsigneeAddress},
        {u"お届け先名称1", name<to, 0>, line, FullWidth, From::ConsigneeName, needed},
        {u"お届け先名称2", name<to, 1>, line, FullWidth, From::ConsigneeName},
        {u"お客様管理番号", number, 16, HalfWidth},
        {u"お客様コード", setting<customer>, 12, Digits, From::Settings, needed},
        {u"部署ご担当者コード取得区分"},
        {u"部署ご担当者コード"},
        {u"部署ご担当者名称"},
        {u"荷送人電話番号"},
        {u"ご依頼主コード取得区分"},
        {u"ご依頼主コード"},
        {u"ご依頼主電話番号", telOf<from>, 14, Phone, From::SenderTel, needed},
        {u"ご依頼主郵便番号", zipOf<from>, 8, PostalCode, From::SenderZip, needed},
        {u"ご依頼主住所1", senderAddress<0>, line, FullWidth, From::SenderAddress, needed},
        {u"ご依頼主住所2", senderAddress<1>, line, FullWidth, From::SenderAddress},
        {u"ご依頼主名称1", name<from, 0>, line, FullWidth, From::SenderName, needed},
        {u"ご依頼主名称2", name<from, 1>, line, FullWidth, From::SenderName},
        {u"荷姿", setting<packaging>, 3, Digits, From::Settings},
        {u"品名1", goods<0>, line, FullWidth, From::Goods, needed},
        {u"品名2", goods<1>, line, FullWidth, From::Goods},
        {u"品名3", goods<2>, line, FullWidth, From::Goods},
        {u"品名4", goods<3>, line, FullWidth, From::Goods},
        {u"品名5", goods<4>, line, FullWidth, From::Goods},
        {u"荷札荷姿"},
        {u"荷札品名1"},
        {u"荷札品名2"},
        {u"荷札品名3"},
        {u"荷札品名4"},
        {u"荷札品名5"},
        {u"荷札品名6"},
        {u"荷札品名7"},
        {u"荷札品名8"},
        {u"荷札品名9"},
        {u"荷札品名10"},
        {u"荷札品名11"},
        {u"出荷個数", parcels, 3, Digits, From::Parcels, needed},
        {u"スピード指定", speed, 3, Digits, From::Method, needed},
        {u"クール便指定", cooling, 3, Digits, From::Cooling},
        {u"配達日", deliveryDay<day>, 10, HalfWidth, From::Delivery},
        {u"配達指定時間帯", timeSlot, 2, Digits, From::TimeSlot},
        {u"配達指定時間(時分)"},
        {u"代引金額", collected, 7, Digits, From::Price},
        {u"消費税", collectedTax, 7, Digits, From::Price},
        {u"決済種別"},
        {u"保険金額"},
        {u"指定シール1", setting<seal>, 3, Digits, From::Settings},
        {u"指定シール2"},
        {u"指定シール3"},
        {u"営業所受取"},
        {u"SRC区分"},
        {u"営業所受取営業所コード"},
        {u"元着区分", setting<payment>, 1, Digits, From::Settings, needed},
        {u"メールアドレス"},
        {u"ご不在時連絡先"},
        {u"出荷日", shipDay<day>, 10, HalfWidth, From::None, needed},
        {u"お問い合せ送り状No."}, // the program gives it
        {u"出荷場印字区分"},
        {u"集約解除指定"},
        {u"編集01"},
        {u"編集02"},
        {u"編集03"},
        {u"編集04"},
        {u"編集05"},
        {u"編集06"},
        {u"編集07"},
        {u"編集08"},
        {u"編集09"},
        {u"編集10"},
    };
    return columns;
}

} // namespace shipping
