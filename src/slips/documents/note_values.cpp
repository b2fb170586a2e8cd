#include "slips/documents/note_values.h"

#include "book/counterpart_name.h"
#include "text/postal_code.h"
#include "text/width.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using printing::FormItemKind;
using printing::FormRecord;

namespace slips
{

namespace
{

/// "TEL …　FAX …", of those there are.
QString telephones(const QString &tel, const QString &fax)
{
    QStringList both;
    if (!tel.isEmpty())
        both << u"TEL "_s + tel;
    if (!fax.isEmpty())
        both << u"FAX "_s + fax;
    return both.join(u"　"_s);
}

FormRecord lineValues(const book::SlipLine &line, const book::Slip &slip)
{
    FormRecord record{{u"明細.商品名"_s, line.product},
                      {u"明細.規格"_s, line.specification},
                      {u"明細.単位"_s, line.unit},
                      {u"明細.金額"_s, line.amount},
                      {u"明細.軽減"_s, reducedMark(line, slip)}};
    if (line.quantity)
        record.insert(u"明細.数量"_s, *line.quantity);
    if (line.price)
        record.insert(u"明細.単価"_s, *line.price);
    return record;
}

void addSender(FormRecord &record, const masters::OwnCompany &sender, CompanyName name)
{
    if (name == CompanyName::Plain) {
        record.insert(u"自社.会社名1"_s, sender.name1);
        record.insert(u"自社.会社名2"_s, sender.name2);
    } else if (name == CompanyName::Extended) {
        record.insert(u"自社.拡張会社名"_s, QString::fromUtf16(companyNameSlot));
    }
    record.insert(u"自社.郵便番号"_s, text::shownPostalCode(sender.zip));
    record.insert(u"自社.住所1"_s, sender.address1);
    record.insert(u"自社.住所2"_s, sender.address2);
    record.insert(u"自社.電話"_s, telephones(sender.tel1, sender.fax));
}

/// What makes a note a qualified invoice: number, totals and tax of each rate, the mark of reduced ones. As
/// long as they have no value the layouts leave them out.
void addInvoiceItems(printing::FormItems &items)
{
    for (const QString &name : {u"自社.登録番号"_s, u"軽減の注記"_s})
        items.items[name] = FormItemKind::Text;
    for (int rate = 1; rate <= mostInvoiceRates; ++rate) {
        const QString name = u"税率%1"_s.arg(rate);
        items.items[name] = FormItemKind::Text;
        items.items[name + u".対象額"_s] = FormItemKind::Number;
        items.items[name + u".消費税"_s] = FormItemKind::Number;
    }
    items.columns[u"明細.軽減"_s] = FormItemKind::Text;
}

QString honoured(const QString &name, const QString &honorific)
{
    if (name.isEmpty() || honorific.isEmpty() || book::isUnknownCounterpartName(name))
        return name;
    return name + u'　' + honorific;
}

} // namespace

QString honorificOf(const book::Slip &slip)
{
    const QString addressed = (slip.name2.isEmpty() ? slip.name1 : slip.name2).trimmed();
    const bool hasOne = std::ranges::any_of(std::array<QStringView, 4>{u"様", u"御中", u"殿", u"先生"},
                                            [&](QStringView end) { return addressed.endsWith(end); });
    return addressed.isEmpty() || hasOne ? QString() : slip.honorific.value_or(u"様"_s);
}

void addAddressee(FormRecord &items, const book::Slip &slip)
{
    const bool alone = slip.name2.isEmpty();
    const QString last = honoured(alone ? slip.name1 : slip.name2, honorificOf(slip));
    items[u"宛先.名称1"_s] = alone ? last : slip.name1;
    items[u"宛先.名称2"_s] = alone ? QString() : last;
    items[u"宛先.名称"_s] = alone ? last : slip.name1 + u'　' + last;
}

void addRates(FormRecord &items, const std::vector<InvoiceRate> &rates)
{
    int number = 0;
    for (const InvoiceRate &rate : rates) {
        const QString name = u"税率%1"_s.arg(++number);
        items[name] = rate.name;
        items[name + u".対象額"_s] = rate.amount;
        items[name + u".消費税"_s] = rate.tax;
    }
}

printing::FormItems noteItems()
{
    printing::FormItems items;
    for (const QString &name :
         {u"伝票番号"_s, u"担当者"_s, u"備考"_s, u"宛先.郵便番号"_s, u"宛先.住所1"_s, u"宛先.住所2"_s,
          u"宛先.名称1"_s, u"宛先.名称2"_s, u"宛先.名称"_s, u"宛先.電話"_s, u"自社.会社名1"_s,
          u"自社.会社名2"_s, u"自社.郵便番号"_s, u"自社.住所1"_s, u"自社.住所2"_s, u"自社.電話"_s})
        items.items[name] = FormItemKind::Text;
    items.items[u"日付"_s] = FormItemKind::Date;
    items.items[u"合計金額"_s] = FormItemKind::Number;
    items.items[u"自社.拡張会社名"_s] = FormItemKind::RichText;
    for (const QString &name : {u"宛先.郵便番号全角"_s, u"宛先.コード"_s})
        items.items[name] = FormItemKind::Text;
    addInvoiceItems(items);
    for (const QString &name : {u"明細.商品名"_s, u"明細.規格"_s, u"明細.単位"_s})
        items.columns[name] = FormItemKind::Text;
    for (const QString &name : {u"明細.数量"_s, u"明細.単価"_s, u"明細.金額"_s})
        items.columns[name] = FormItemKind::Number;
    items.summed = u"明細.金額"_s;
    return items;
}

printing::FormValues noteValues(const book::Slip &slip, const masters::OwnCompany &sender, CompanyName name)
{
    printing::FormValues values;
    values.summed = u"明細.金額"_s;
    values.items = {{u"伝票番号"_s, slip.number},
                    {u"日付"_s, slip.date},
                    {u"担当者"_s, slip.employeeName},
                    {u"宛先.郵便番号"_s, text::shownPostalCode(slip.zip)},
                    {u"宛先.郵便番号全角"_s, text::toFullWidth(text::shownPostalCode(slip.zip))},
                    {u"宛先.コード"_s, slip.code},
                    {u"宛先.住所1"_s, slip.address1},
                    {u"宛先.住所2"_s, slip.address2},
                    {u"宛先.電話"_s, telephones(slip.tel, slip.fax)}};
    addSender(values.items, sender, name);
    for (const book::SlipLine &line : slip.lines)
        values.rows.push_back(lineValues(line, slip));
    return values;
}

} // namespace slips
