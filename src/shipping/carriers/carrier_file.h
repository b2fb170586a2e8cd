#pragma once

#include "base/progress.h"
#include "shipping/carriers/carrier_parcel.h"

// Files of parcels as the carriers' programs read them. A program takes what stands between the separators
// as it is, and runs nothing: values that begin with "=" or "-" are written unchanged, and only quoted where
// the separators demand it.
namespace shipping
{

/// What a field may hold, and what its length counts.
enum class FieldKind {
    FullWidth,  // any text; full-width characters, of which half-width ones are halves
    HalfWidth,  // printable ASCII
    Digits,     // and nothing else
    Phone,      // digits with hyphens
    PostalCode, // "NNN-NNNN"
};

/// What a parcel has for a field, or why it has nothing that the program knows.
using FieldValue = base::Result<QString> (*)(const CarrierParcel &, const CarrierSettings &);

/// A column of a carrier's file.
struct CarrierColumn
{
    const char16_t *heading;
    FieldValue value = nullptr; // none: always empty
    int longest = 0;            // 0: any
    FieldKind kind = FieldKind::FullWidth;
    ShipmentField source = ShipmentField::None;
    bool needed = false;
};

struct CarrierFormat
{
    CarrierProgram program;
    bool isCp932;       // else UTF-8 with its mark
    bool alwaysHeading; // else as the setting "heading" has it
    const std::vector<CarrierColumn> &columns;
};

const CarrierFormat &formatOf(CarrierProgram program);

/// The formats' tables. A correction of one is a line of it.
const std::vector<CarrierColumn> &b2Columns();
const std::vector<CarrierColumn> &hidenColumns();
const std::vector<CarrierColumn> &yupriColumns();

/// What keeps a parcel, or the shop's settings, out of the file.
struct CarrierFinding
{
    qint64 shipment = 0; // 発送ID; 0: the settings
    QString heading;     // of the file's column
    QString value;
    QString what; // is wrong, in words
    ShipmentField source = ShipmentField::None;

    friend bool operator==(const CarrierFinding &, const CarrierFinding &) = default;
};

/// What is wrong with \a parcel for \a program; with the settings see settingsFindings().
std::vector<CarrierFinding> findingsOf(CarrierProgram program, const CarrierParcel &parcel,
                                       const CarrierSettings &settings);

std::vector<CarrierFinding> settingsFindings(CarrierProgram program, const CarrierSettings &settings);

/// Writes \a parcels as \a fileName, a private file that replaces what stands there once it is complete. A
/// parcel of which there are findings is refused, and no file is written.
base::Status writeCarrierFile(const QString &fileName, CarrierProgram program,
                              const std::vector<CarrierParcel> &parcels, const CarrierSettings &settings,
                              const base::Progress &progress);

} // namespace shipping
