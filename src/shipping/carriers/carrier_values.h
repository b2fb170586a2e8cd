#pragma once

#include "shipping/carriers/carrier_file.h"
#include "shipping/carriers/field_division.h"

// What the formats' fields have in common. An error says why a program would not know what to do with it.
namespace shipping::values
{

using Value = base::Result<QString>;

/// Digits with hyphens, whatever widths and brackets were typed.
QString phone(const QString &typed);

/// "NNN-NNNN"; what is no complete code as it stands.
QString zip(const QString &typed);

/// \a lines as the \a index th of fields of \a widths full-width characters each. Where they do not fit, the
/// first field has all of it, so that it is told.
QString part(const QStringList &lines, const QList<int> &widths, int index,
             Borders borders = Borders::Sensible);

/// \a lines in one field, a blank between them.
QString onOneLine(const QStringList &lines);

/// The code that \a codes has for what is wished; fails where it has none.
Value code(const QString &wish, const QMap<QString, QString> &codes, const QString &program);

/// What is collected on delivery, whole yen; empty where nothing is. Fails without a price, and for several
/// parcels, each of which would be paid.
Value collected(const CarrierParcel &parcel, const CarrierSettings &settings);
/// The tax in it; empty where nothing is collected, and where it is not known.
Value collectedTax(const CarrierParcel &parcel, const CarrierSettings &settings);

/// お客様管理番号.
Value number(const CarrierParcel &parcel, const CarrierSettings &settings);
Value parcels(const CarrierParcel &parcel, const CarrierSettings &settings);

/// The day on which the carrier gets the parcel.
template <const char16_t *format>
Value shipDay(const CarrierParcel &parcel, const CarrierSettings &)
{
    return parcel.shipDay.toString(QString::fromUtf16(format));
}

/// The day wished for; empty where there is none. Fails for one before the carrier gets the parcel.
Value deliveryDayAs(const QString &format, const CarrierParcel &parcel);
template <const char16_t *format>
Value deliveryDay(const CarrierParcel &parcel, const CarrierSettings &)
{
    return deliveryDayAs(QString::fromUtf16(format), parcel);
}

template <Party Shipment::*party>
Value telOf(const CarrierParcel &parcel, const CarrierSettings &)
{
    return phone((parcel.shipment.*party).tel);
}

template <Party Shipment::*party>
Value zipOf(const CarrierParcel &parcel, const CarrierSettings &)
{
    return zip((parcel.shipment.*party).zip);
}

template <const char16_t *name>
Value setting(const CarrierParcel &, const CarrierSettings &settings)
{
    return settings.value(QString::fromUtf16(name));
}

/// Whether \a program's carrier takes the parcel; fails where it is another one's.
base::Status checkOwn(const CarrierParcel &parcel, CarrierProgram program);

/// Name lines without what follows a name in an address, and that: 様, 御中.
struct NameParts
{
    QStringList lines;
    QString honorific; // empty: none was typed
};
NameParts nameParts(const Party &party);

} // namespace shipping::values
