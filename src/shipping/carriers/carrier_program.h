#pragma once

#include <QStringList>

#include <array>

namespace shipping
{

/// The carriers' own programs, which print the slips of a file of parcels and give one of tracking numbers
/// back.
enum class CarrierProgram { B2Cloud, Hiden3, Yupri };

inline constexpr std::array carrierPrograms{CarrierProgram::B2Cloud, CarrierProgram::Hiden3,
                                            CarrierProgram::Yupri};

/// "B2クラウド", "e飛伝Ⅲ", "ゆうプリ".
QString programName(CarrierProgram program);

/// "ヤマト運輸", "佐川急便", "日本郵便".
QString carrierName(CarrierProgram program);

/// Those of shippingForms() on which only this carrier takes a parcel.
const QStringList &formsOf(CarrierProgram program);

/// Those of shippingForms() that are no carrier's: labels and tags.
const QStringList &formsOfAnyCarrier();

} // namespace shipping
