#pragma once

#include <QString>

#include <optional>

// お客様管理番号: by what a carrier's program and its answer know a parcel.
namespace shipping
{

/// That of the shipment \a id: its key behind the shop's \a prefix.
inline QString managementNumber(const QString &prefix, qint64 id) { return prefix + QString::number(id); }

/// The shipment that \a number means, in any width and case, whichever of \a prefixes it begins with; none
/// for a number of somebody else's.
std::optional<qint64> shipmentOfNumber(const QString &number, const QStringList &prefixes);

} // namespace shipping
