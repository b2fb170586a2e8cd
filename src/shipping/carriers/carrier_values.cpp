#include "shipping/carriers/carrier_values.h"

#include "shipping/carriers/management_number.h"
#include "text/numbers.h"
#include "text/postal_code.h"
#include "text/width.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace shipping::values
{

Value deliveryDayAs(const QString &format, const CarrierParcel &parcel)
{
    const QDate day = parcel.shipment.delivery;
    if (day.isValid() && day < parcel.shipDay)
        return base::Error{u"配達予定日（%1）が、出荷日より前です。"_s.arg(day.toString(u"yyyy/MM/dd"_s))};
    return day.toString(format);
}

QString phone(const QString &typed)
{
    QString number = text::withPlainHyphens(text::toHalfWidthAscii(typed)).simplified().remove(u' ');
    number.replace(u'(', u'-').replace(u')', u'-').replace("--"_L1, "-"_L1);
    while (number.startsWith(u'-'))
        number.remove(0, 1);
    return number;
}

QString zip(const QString &typed)
{
    return text::completePostalCode(typed).value_or(text::toHalfWidthAscii(typed).trimmed());
}

Value number(const CarrierParcel &parcel, const CarrierSettings &settings)
{
    return managementNumber(settings.value(prefixSetting), parcel.shipment.id);
}

Value parcels(const CarrierParcel &parcel, const CarrierSettings &)
{
    return QString::number(parcel.shipment.parcels);
}

QString onOneLine(const QStringList &lines)
{
    QStringList filled;
    for (const QString &line : lines) {
        if (!line.trimmed().isEmpty())
            filled << line.trimmed();
    }
    return filled.join(u'　');
}

QString part(const QStringList &lines, const QList<int> &widths, int index, Borders borders)
{
    QList<int> bytes;
    for (const int characters : widths)
        bytes << 2 * characters;
    const auto fields = divided(lines, bytes, borders);
    if (fields)
        return fields->value(index);
    return index == 0 ? onOneLine(lines) : QString();
}

Value code(const QString &wish, const QMap<QString, QString> &codes, const QString &program)
{
    const auto found = codes.constFind(wish);
    return found == codes.constEnd()
               ? Value(base::Error{u"「%1」は、%2では指定できません。"_s.arg(wish, program)})
               : Value(*found);
}

Value collected(const CarrierParcel &parcel, const CarrierSettings &)
{
    if (!parcel.collected)
        return QString();
    const double price = parcel.shipment.price.value_or(0);
    if (!(price >= 1) || price != std::floor(price))
        return base::Error{u"代金引換の金額になる価格が、1 円以上の円の金額ではありません。"_s};
    if (parcel.shipment.parcels > 1)
        return base::Error{
            u"代金引換は 1 個口にしてください。2 個口以上では、個数の分だけ代金が引き換えられます。"_s};
    return text::formatPlain(price);
}

Value collectedTax(const CarrierParcel &parcel, const CarrierSettings &)
{
    return parcel.collected && parcel.includedTax ? text::formatPlain(*parcel.includedTax) : QString();
}

base::Status checkOwn(const CarrierParcel &parcel, CarrierProgram program)
{
    const QString &form = parcel.shipment.method;
    if (formsOf(program).contains(form) || formsOfAnyCarrier().contains(form))
        return {};
    return base::Error{u"発送方法が「%1」です。%2の荷物ではありません。"_s.arg(form, carrierName(program))};
}

NameParts nameParts(const Party &party)
{
    static const QStringList honorifics{u"様"_s, u"御中"_s, u"殿"_s, u"先生"_s};
    NameParts parts;
    for (const QString &line : {party.name1.trimmed(), party.name2.trimmed()}) {
        if (!line.isEmpty())
            parts.lines << line;
    }
    if (parts.lines.isEmpty())
        return parts;
    QString &last = parts.lines.last();
    for (const QString &honorific : honorifics) {
        if (last.size() > honorific.size() && last.endsWith(honorific)) {
            parts.honorific = honorific;
            last = last.chopped(honorific.size()).trimmed();
            break;
        }
    }
    return parts;
}

} // namespace shipping::values
