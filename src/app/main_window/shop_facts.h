#pragma once

#include "base/result.h"

#include <QDate>
#include <QString>

#include <array>
#include <optional>

// What the main window asks the database beside the masters' lists.
namespace db
{
class Connection;
}

namespace app
{

struct SupplierNames
{
    QString name1; // 仕入先名1
    QString name2;
};

/// Empty names when there is no such supplier.
base::Result<SupplierNames> supplierNames(db::Connection &connection, qint64 id);

/// What a new shop registers before its first delivery note, in this order.
enum class FirstStep { Company, Employees, TaxRate, Categories, Customers, DeliveryNote };
inline constexpr std::size_t firstStepCount = 6;
using StepsDone = std::array<bool, firstStepCount>;

/// Which steps are done in the open file. \a taxRateSet: whether that of the tax rate is, which no file
/// holds.
base::Result<StepsDone> firstStepsDone(db::Connection &connection, bool taxRateSet);

/// The rate of everyday goods on \a today, percent, where a shop that keeps \a byHand percent is to be told
/// of it before its first sale: it has written none, has no registration number, and the table of the open
/// file says otherwise. Nothing elsewhere.
base::Result<std::optional<double>> rateToOffer(db::Connection &connection, double byHand,
                                                const QDate &today);

} // namespace app
