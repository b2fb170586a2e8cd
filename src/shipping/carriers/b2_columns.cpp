// B2クラウド: 97 columns in this order, dates yyyy/MM/dd.
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

const QString program = u"B2クラウド"_s;
constexpr char16_t day[] = u"yyyy/MM/dd";
constexpr bool needed = true;
constexpr auto to = &Shipment::consignee;
constexpr auto from = &Shipment::sender;

// 0 発払い, 2 コレクト, 5 着払い.
Value kind(const Parcel &parcel, const Settings &settings)
{
    if (const base::Status own = checkOwn(parcel, CarrierProgram::B2Cloud); !own)
        return own.error();
    return parcel.collected ? u"2"_s : settings.value(u"payment"_s);
}

Value cooling(const Parcel &parcel, const Settings &)
{
    return code(parcel.shipment.cooling, {{u""_s, u"0"_s}, {u"冷凍"_s, u"1"_s}, {u"冷蔵"_s, u"2"_s}},
                program);
}

Value timeSlot(const Parcel &parcel, const Settings &)
{
    return code(parcel.shipment.timeSlot,
                {{u""_s, u""_s},
                 {u"午前中"_s, u"0812"_s},
                 {u"14-16"_s, u"1416"_s},
                 {u"16-18"_s, u"1618"_s},
                 {u"18-20"_s, u"1820"_s},
                 {u"19-21"_s, u"1921"_s}},
                program);
}

// Prefecture, city and town have 4, 12 and 16 characters of one field, the building those of the next.
template <Party Shipment::*party, int field>
Value address(const Parcel &parcel, const Settings &)
{
    const Party &of = parcel.shipment.*party;
    return part({of.address1, of.address2}, {32, 16}, field);
}

// A name of one line is the person's or the company's own; of two lines the first is the company. What is
// too long for a name goes to the fields of company and department before it.
QStringList consigneeFields(const Parcel &parcel)
{
    const QStringList lines = nameParts(parcel.shipment.consignee).lines;
    const QList<int> bytes[] = {{32}, {50, 32}, {50, 50, 32}};
    for (qsizetype count = qMax(1, lines.size()); count <= 3; ++count) {
        const auto fields = divided(lines, bytes[count - 1], Borders::Blanks);
        if (fields && !fields->last().isEmpty())
            return QStringList(3 - count, QString()) + *fields;
    }
    return {{}, lines.size() > 1 ? lines.first() : QString(), lines.value(lines.size() - 1)};
}

// With two fields used, the company is the first one's.
Value company1(const Parcel &parcel, const Settings &)
{
    const QStringList fields = consigneeFields(parcel);
    return fields.at(0).isEmpty() ? fields.at(1) : fields.at(0);
}

Value company2(const Parcel &parcel, const Settings &)
{
    const QStringList fields = consigneeFields(parcel);
    return fields.at(0).isEmpty() ? QString() : fields.at(1);
}

Value consignee(const Parcel &parcel, const Settings &) { return consigneeFields(parcel).at(2); }

Value honorific(const Parcel &parcel, const Settings &settings)
{
    const QString typed = nameParts(parcel.shipment.consignee).honorific;
    return typed.isEmpty() ? settings.value(u"honorific"_s) : typed;
}

Value sender(const Parcel &parcel, const Settings &)
{
    return onOneLine({parcel.shipment.sender.name1, parcel.shipment.sender.name2});
}

template <int field>
Value goods(const Parcel &parcel, const Settings &)
{
    return part({parcel.shipment.goods}, {25, 25}, field);
}

Value remark(const Parcel &parcel, const Settings &)
{
    return onOneLine({parcel.shipment.memo1, parcel.shipment.memo2});
}

// Several slips of one shipment say which of how many they are.
Value countsParcels(const Parcel &parcel, const Settings &)
{
    return parcel.shipment.parcels > 1 ? u"1"_s : QString();
}

constexpr char16_t customer[] = u"customer";
constexpr char16_t billing[] = u"class";
constexpr char16_t freight[] = u"freight";
constexpr char16_t handling1[] = u"handling1";
constexpr char16_t handling2[] = u"handling2";

} // namespace

const std::vector<CarrierColumn> &b2Columns()
{
    static const std::vector<CarrierColumn> columns{
        {u"お客様管理番号", number, 50, HalfWidth},
        {u"送り状種類", kind, 1, HalfWidth, From::Method, needed},
        {u"クール区分", cooling, 1, Digits, From::Cooling},
        {u"伝票番号"}, // the program gives it
        {u"出荷予定日", shipDay<day>, 10, HalfWidth, From::None, needed},
        {u"お届け予定日", deliveryDay<day>, 10, HalfWidth, From::Delivery},
        {u"配達時間帯", timeSlot, 4, Digits, From::TimeSlot},
        {u"お届け先コード"},
        {u"お届け先電話番号", telOf<to>, 15, Phone, From::ConsigneeTel, needed},
        {u"お届け先電話番号枝番"},
        {u"お届け先郵便番号", zipOf<to>, 8, PostalCode, From::ConsigneeZip, needed},
        {u"お届け先住所", address<to, 0>, 32, FullWidth, From::ConsigneeAddress, needed},
        {u"お届け先アパートマンション名", address<to, 1>, 16, FullWidth, From::ConsigneeAddress},
        {u"お届け先会社・部門1", company1, 25, FullWidth, From::ConsigneeName},
        {u"お届け先会社・部門2", company2, 25, FullWidth, From::ConsigneeName},
        {u"お届け先名", consignee, 16, FullWidth, From::ConsigneeName, needed},
        {u"お届け先名(ｶﾅ)"},
        {u"敬称", honorific, 2, FullWidth, From::ConsigneeName},
        {u"ご依頼主コード"},
        {u"ご依頼主電話番号", telOf<from>, 15, Phone, From::SenderTel, needed},
        {u"ご依頼主電話番号枝番"},
        {u"ご依頼主郵便番号", zipOf<from>, 8, PostalCode, From::SenderZip, needed},
        {u"ご依頼主住所", address<from, 0>, 32, FullWidth, From::SenderAddress, needed},
        {u"ご依頼主アパートマンション", address<from, 1>, 16, FullWidth, From::SenderAddress},
        {u"ご依頼主名", sender, 16, FullWidth, From::SenderName, needed},
        {u"ご依頼主名(ｶﾅ)"},
        {u"品名コード1"},
        {u"品名1", goods<0>, 25, FullWidth, From::Goods, needed},
        {u"品名コード2"},
        {u"品名2", goods<1>, 25, FullWidth, From::Goods},
        {u"荷扱い1", setting<handling1>, 10, FullWidth, From::Settings},
        {u"荷扱い2", setting<handling2>, 10, FullWidth, From::Settings},
        {u"記事", remark, 22, FullWidth, From::Memo},
        {u"コレクト代金引換額(税込)", collected, 7, Digits, From::Price},
        {u"内消費税額等", collectedTax, 7, Digits, From::Price},
        {u"止置き"},
        {u"営業所コード"},
        {u"発行枚数", parcels, 2, Digits, From::Parcels},
        {u"個数口表示フラグ", countsParcels, 1, Digits, From::Parcels},
        {u"請求先顧客コード", setting<customer>, 12, Digits, From::Settings, needed},
        {u"請求先分類コード", setting<billing>, 3, Digits, From::Settings},
        {u"運賃管理番号", setting<freight>, 2, Digits, From::Settings, needed},
        {u"webコレクト1"},
        {u"webコレクト2"},
        {u"webコレクト3"},
        {u"webコレクト4"},
        {u"webコレクト5"},
        {u"お届け予定eメール1"},
        {u"お届け予定eメール2"},
        {u"お届け予定eメール3"},
        {u"お届け予定eメール4"},
        {u"お届け完了eメール1"},
        {u"お届け完了eメール2"},
        {u"お届け完了eメール3"},
        {u"収納代行1"},
        {u"収納代行2"},
        {u"収納代行3"},
        {u"収納代行4"},
        {u"収納代行5"},
        {u"収納代行6"},
        {u"収納代行7"},
        {u"収納代行8"},
        {u"収納代行9"},
        {u"収納代行10"},
        {u"収納代行11"},
        {u"収納代行12"},
        {u"収納代行13"},
        {u"収納代行14"},
        {u"収納代行15"},
        {u"収納代行16"},
        {u"収納代行17"},
        {u"収納代行18"},
        {u"収納代行19"},
        {u"複数口くくりキー"},
        {u"検索キー1"},
        {u"検索キー2"},
        {u"検索キー3"},
        {u"検索キー4"},
        {u"検索キー5"},
        {u"検索キー6"},
        {u"検索キー7"},
        {u"検索キー8"},
        {u"検索キー9"},
        {u"検索キー10"},
        {u"予備1"},
        {u"予備2"},
        {u"投函予定メール1"},
        {u"投函予定メール2"},
        {u"投函予定メール3"},
        {u"投函予定メール4"},
        {u"投函予定メール5"},
        {u"投函予定メール6"},
        {u"投函予定メール7"},
        {u"投函予定メール8"},
        {u"投函予定メール9"},
        {u"連携管理番号"},
        {u"通知メールアドレス"},
    };
    return columns;
}

} // namespace shipping
