#include "shipping/slips/shipping_form.h"

#include "shipping/slips/firm_names.h"
#include "text/postal_code.h"
#include "text/width.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using printing::FormItemKind;
using printing::FormRecord;

namespace shipping
{

namespace
{

struct FormRow
{
    const char16_t *form;
    const char16_t *layout;
    bool isCarriers;
};

constexpr FormRow forms[] = {
    {u"宅急便", u"slip-takkyubin.toml", true},        {u"宅急便　コレクト", u"slip-takkyubin.toml", true},
    {u"佐川急便", u"slip-sagawa.toml", true},         {u"ゆうパック", u"slip-yupack.toml", true},
    {u"宛名ラベル", u"slip-label.toml", false},       {u"オリジナル荷札１", u"slip-tag-1.toml", false},
    {u"オリジナル荷札２", u"slip-tag-2.toml", false}, {u"オリジナル荷札３", u"slip-tag-3.toml", false},
    {u"オリジナル伝票", u"slip-original.toml", false}};

const FormRow *rowOf(const QString &form)
{
    const auto *row =
        std::ranges::find_if(forms, [&form](const FormRow &each) { return form == QStringView(each.form); });
    return row == std::end(forms) ? nullptr : row;
}

// Of each of both parties, behind its name and a point.
constexpr const char16_t *partyItems[] = {u"郵便番号", u"郵便番号表示", u"住所1", u"住所2", u"名称", u"名称1",
                                          u"名称2",    u"電話",         u"宛名",  u"宛名1", u"宛名2"};

const QString consignee = u"届先"_s;
const QString sender = u"依頼主"_s;

QString itemOf(const QString &party, QStringView item) { return party + u'.' + item.toString(); }

// A name of one line stands elsewhere than one of two; the same with the honorific behind its last line.
void addNames(FormRecord &record, const QString &name, const Party &party)
{
    const QString first = party.name1.trimmed();
    const QString second = party.name2.trimmed();
    const QString honorific = honorificOf(party);
    const QString behind = honorific.isEmpty() ? QString() : u'　' + honorific;
    if (first.isEmpty() || second.isEmpty()) {
        const QString only = first + second;
        record[itemOf(name, u"名称")] = only;
        record[itemOf(name, u"宛名")] = only.isEmpty() ? only : only + behind;
        return;
    }
    record[itemOf(name, u"名称1")] = record[itemOf(name, u"宛名1")] = first;
    record[itemOf(name, u"名称2")] = second;
    record[itemOf(name, u"宛名2")] = second + behind;
}

// The forms have 〒 themselves.
QString behindMark(const QString &zip)
{
    const QString shown = text::shownPostalCode(zip.trimmed());
    return shown.startsWith(u'〒') ? shown.mid(1).trimmed() : shown;
}

void addParty(FormRecord &record, const QString &name, const Party &party)
{
    record[itemOf(name, u"郵便番号")] = spreadPostalCode(party.zip);
    record[itemOf(name, u"郵便番号表示")] = behindMark(party.zip);
    record[itemOf(name, u"住所1")] = party.address1.trimmed();
    record[itemOf(name, u"住所2")] = party.address2.trimmed();
    record[itemOf(name, u"電話")] = party.tel.trimmed();
    addNames(record, name, party);
}

void addAmounts(FormRecord &record, const Shipment &shipment)
{
    if (shipment.price)
        record[u"価格"_s] = *shipment.price;
    if (shipment.price && isCollected(shipment.method))
        record[u"集金額"_s] = *shipment.price;
    if (shipment.carriage)
        record[u"送料"_s] = *shipment.carriage;
    if (shipment.price && shipment.carriage)
        record[u"合計"_s] = *shipment.price + *shipment.carriage;
}

// "14-16時", "午前中"
QString shownTimeSlot(const QString &slot) { return slot.contains(u'-') ? slot + u'時' : slot; }

bool isUnreadable(const QString &zip) { return !zip.trimmed().isEmpty() && !text::completePostalCode(zip); }

bool endsInAny(const QString &name, std::initializer_list<const char16_t *> words)
{
    return std::ranges::any_of(words,
                               [&name](const char16_t *word) { return name.endsWith(QStringView(word)); });
}

// "山田商店 佐藤花子", and not "株式会社 山田" or "㈱山田 東京支店".
bool namesPersonBehind(const QString &firm)
{
    const qsizetype blank = std::max(firm.lastIndexOf(u'　'), firm.lastIndexOf(u' '));
    const QString head = firm.left(blank).trimmed();
    const QString tail = firm.mid(blank + 1);
    const bool isBareKind =
        head.size() <= 3 || (head.size() == 4 && head.endsWith(u"会社"_s)) || head.endsWith(u"法人"_s);
    return blank > 0 && !isBareKind && isFirm(head) && !isFirm(tail) && !isSection(tail);
}

} // namespace

QString slipLayout(const QString &form)
{
    const FormRow *row = rowOf(form);
    return row ? QString::fromUtf16(row->layout) : QString();
}

bool isCarriersForm(const QString &form)
{
    const FormRow *row = rowOf(form);
    return row && row->isCarriers;
}

const printing::FormItems &slipItems()
{
    static const printing::FormItems items = [] {
        printing::FormItems all;
        for (const QString &party : {consignee, sender}) {
            for (const char16_t *item : partyItems)
                all.items[itemOf(party, item)] = FormItemKind::Text;
        }
        for (const char16_t *item :
             {u"配達月日", u"品名", u"備考1", u"備考2", u"顧客コード", u"発店コード", u"発送区分",
              u"発送方法", u"送り状番号", u"時間帯", u"クール", u"配達通知"})
            all.items[QString::fromUtf16(item)] = FormItemKind::Text;
        for (const char16_t *item : {u"受付日", u"配達日"})
            all.items[QString::fromUtf16(item)] = FormItemKind::Date;
        for (const char16_t *item : {u"価格", u"集金額", u"送料", u"合計", u"個数"})
            all.items[QString::fromUtf16(item)] = FormItemKind::Number;
        all.shifts = QStringList{u"kuOffsetX"_s, u"kuOffsetY"_s};
        return all;
    }();
    return items;
}

QStringList slipItemsOfOtherCases()
{
    QStringList items;
    for (const QString &party : {consignee, sender})
        items << itemOf(party, u"名称") << itemOf(party, u"宛名");
    return items;
}

printing::FormValues slipValues(const Shipment &shipment, bool deliveryNotice)
{
    printing::FormValues values;
    FormRecord &record = values.items;
    addParty(record, consignee, shipment.consignee);
    addParty(record, sender, shipment.sender);
    addAmounts(record, shipment);
    record[u"受付日"_s] = shipment.accepted;
    record[u"配達日"_s] = shipment.delivery;
    record[u"配達月日"_s] = spreadMonthAndDay(shipment.delivery);
    record[u"品名"_s] = shipment.goods;
    record[u"備考1"_s] = shipment.memo1;
    record[u"備考2"_s] = shipment.memo2;
    record[u"顧客コード"_s] = shipment.customerCode;
    record[u"発店コード"_s] = shipment.officeCode;
    record[u"発送区分"_s] = shipment.category;
    record[u"発送方法"_s] = shipment.method;
    record[u"送り状番号"_s] = shipment.trackingNumber;
    record[u"時間帯"_s] = shownTimeSlot(shipment.timeSlot);
    record[u"クール"_s] = shipment.cooling;
    record[u"個数"_s] = double(shipment.parcels);
    if (deliveryNotice)
        record[u"配達通知"_s] = u"レ"_s;
    return values;
}

QString spreadPostalCode(const QString &typed)
{
    const auto code = text::completePostalCode(typed);
    if (!code)
        return typed;
    QStringList digits;
    for (const QChar digit : *code) {
        if (digit != u'-')
            digits << digit;
    }
    return digits.join(u' ');
}

QString spreadMonthAndDay(const QDate &day)
{
    if (!day.isValid())
        return {};
    const auto twoDigits = [](int number) {
        return (u"００"_s + text::toFullWidth(QString::number(number))).right(2);
    };
    return twoDigits(day.month()) + u"  "_s + twoDigits(day.day());
}

QString honorificOf(const Party &party)
{
    const QString first = party.name1.trimmed();
    const QString second = party.name2.trimmed();
    const QString last = second.isEmpty() ? first : second;
    if (last.isEmpty() || endsInAny(last, {u"様", u"御中", u"先生", u"殿", u"各位"}))
        return {};
    // A section is one only below a firm: 服部 is a name, too.
    const bool isOfFirm = isFirm(last) ? !namesPersonBehind(last) : isFirm(first) && isSection(second);
    return isOfFirm ? u"御中"_s : u"様"_s;
}

QStringList slipRemarks(const Shipment &shipment)
{
    QStringList remarks;
    const auto look = [&remarks](const QString &whose, const Party &party) {
        if (isUnreadable(party.zip))
            remarks << u"%1の郵便番号「%2」は 7 桁ではないため、入力されたまま印刷します。"_s.arg(whose,
                                                                                                  party.zip);
    };
    look(u"お届け先"_s, shipment.consignee);
    look(u"ご依頼主"_s, shipment.sender);
    return remarks;
}

} // namespace shipping
