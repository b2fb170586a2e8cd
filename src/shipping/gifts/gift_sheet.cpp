#include "shipping/gifts/gift_sheet.h"

#include "base/exact_sum.h"
#include "printing/forms/form_sheets.h"
#include "shipping/slips/shipping_form.h"
#include "text/postal_code.h"

using namespace Qt::StringLiterals;
using printing::FormItemKind;
using printing::FormRecord;

namespace shipping
{

namespace
{

QString joined(const QStringList &parts, const QString &between)
{
    QStringList filled = parts;
    filled.removeAll(QString());
    return filled.join(between);
}

QString behindMark(const QString &zip)
{
    return zip.isEmpty() ? QString() : u"〒"_s + text::shownPostalCode(zip);
}

QString addressed(const Party &party)
{
    return joined({party.name1, party.name2, honorificOf(party)}, u" "_s);
}

FormRecord rowOf(const Shipment &parcel, int number)
{
    FormRecord row{{u"明細.番号"_s, double(number)},
                   {u"明細.届先名"_s, addressed(parcel.consignee)},
                   {u"明細.届先住所"_s, joined({behindMark(parcel.consignee.zip),
                                                parcel.consignee.address1 + parcel.consignee.address2},
                                               u" "_s)},
                   {u"明細.届先電話"_s, parcel.consignee.tel},
                   {u"明細.品名"_s, parcel.goods},
                   {u"明細.個数"_s, double(parcel.parcels)},
                   {u"明細.のし"_s, joined({parcel.memo1, parcel.memo2}, u" "_s)},
                   {u"明細.配達日"_s, parcel.delivery},
                   {u"明細.時間帯"_s, parcel.timeSlot},
                   {u"明細.クール"_s, parcel.cooling}};
    if (parcel.price)
        row.insert(u"明細.価格"_s, *parcel.price);
    if (parcel.carriage)
        row.insert(u"明細.送料"_s, *parcel.carriage);
    return row;
}

void addShop(FormRecord &items, const GiftSheet &sheet)
{
    const masters::OwnCompany &shop = sheet.shop;
    items[u"自社.会社名1"_s] = shop.name1;
    items[u"自社.会社名2"_s] = shop.name2;
    items[u"自社.郵便番号"_s] = behindMark(shop.zip);
    items[u"自社.住所"_s] = shop.address1 + shop.address2;
    items[u"自社.電話"_s] = joined({shop.tel1.isEmpty() ? QString() : u"TEL "_s + shop.tel1,
                                    shop.fax.isEmpty() ? QString() : u"FAX "_s + shop.fax},
                                   u"　"_s);
    items[u"担当者"_s] = sheet.employee;
}

void addSender(FormRecord &items, const Shipment &first)
{
    items[u"受付日"_s] = first.accepted;
    items[u"区分"_s] = first.category;
    items[u"依頼主.名前"_s] = addressed(first.sender);
    items[u"依頼主.郵便番号"_s] = behindMark(first.sender.zip);
    items[u"依頼主.住所1"_s] = first.sender.address1;
    items[u"依頼主.住所2"_s] = first.sender.address2;
    items[u"依頼主.電話"_s] = first.sender.tel;
}

void addSums(FormRecord &items, const std::vector<Shipment> &parcels)
{
    base::ExactSum price;
    base::ExactSum carriage;
    for (const Shipment &parcel : parcels) {
        price.add(parcel.price.value_or(0));
        carriage.add(parcel.carriage.value_or(0));
    }
    items[u"件数"_s] = double(parcels.size());
    items[u"価格合計"_s] = price.value();
    items[u"送料合計"_s] = carriage.value();
    price.add(carriage);
    items[u"合計金額"_s] = price.value();
}

} // namespace

const printing::FormItems &giftSheetItems()
{
    static const printing::FormItems items = [] {
        printing::FormItems all;
        for (const QString &name : {u"区分"_s, u"依頼主.名前"_s, u"依頼主.郵便番号"_s, u"依頼主.住所1"_s,
                                    u"依頼主.住所2"_s, u"依頼主.電話"_s, u"自社.会社名1"_s, u"自社.会社名2"_s,
                                    u"自社.郵便番号"_s, u"自社.住所"_s, u"自社.電話"_s, u"担当者"_s})
            all.items[name] = FormItemKind::Text;
        for (const QString &name : {u"件数"_s, u"価格合計"_s, u"送料合計"_s, u"合計金額"_s})
            all.items[name] = FormItemKind::Number;
        all.items[u"受付日"_s] = FormItemKind::Date;
        for (const QString &name : {u"明細.届先名"_s, u"明細.届先住所"_s, u"明細.届先電話"_s, u"明細.品名"_s,
                                    u"明細.のし"_s, u"明細.時間帯"_s, u"明細.クール"_s})
            all.columns[name] = FormItemKind::Text;
        for (const QString &name : {u"明細.番号"_s, u"明細.個数"_s, u"明細.価格"_s, u"明細.送料"_s})
            all.columns[name] = FormItemKind::Number;
        all.columns[u"明細.配達日"_s] = FormItemKind::Date;
        all.shifts = {u"stOffsetAppX"_s, u"stOffsetAppY"_s};
        return all;
    }();
    return items;
}

std::vector<printing::Sheet> giftSheetPages(const GiftSheet &sheet, const printing::Form &form,
                                            const QHash<QString, double> &shifts)
{
    printing::FormValues values;
    values.shifts = shifts;
    addShop(values.items, sheet);
    addSender(values.items, sheet.parcels.front());
    addSums(values.items, sheet.parcels);
    int number = 0;
    for (const Shipment &parcel : sheet.parcels)
        values.rows.push_back(rowOf(parcel, ++number));
    return printing::formSheets(form, values);
}

} // namespace shipping
