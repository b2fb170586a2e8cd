#pragma once

#include "base/result.h"
#include "shipping/slips/shipment.h"

#include <QStringList>

namespace db
{
class Connection;
class Recordset;
} // namespace db

namespace masters
{
struct OwnCompany;
}

// What is typed on the screens of shipping slips, and what is asked before a slip of it is printed.
namespace shipping
{

/// A day as everywhere, or its month and day alone ("12/24", "1224", "１２月２４日"), which is then the one
/// nearest to \a today. None for anything else.
std::optional<QDate> typedDay(const QString &typed, const QDate &today);

/// Whole yen; nothing typed is none. \a name ("価格") is the box that the error speaks of.
base::Result<std::optional<double>> typedYen(const QString &typed, const QString &name);

/// The one who sends, as the own company is registered.
Party partyOf(const masters::OwnCompany &company);

/// The current one of \a customers, a row of 納品先.
Party partyOf(const db::Recordset &customers);

/// Whether \a party still bears the first name of \a before, however it is written: a department more or less
/// is no other customer.
bool isStillNamed(const Party &before, const Party &party);

/// What the next slip begins with after \a shipment, which was printed: all but the consignee and what is his
/// own, the day, the time and the cooling, the number, the carriage and the amount that is collected; of the
/// parcel of a sale the goods, the price and the remarks, too.
Shipment nextOf(Shipment shipment);

/// What a clerk should say yes to before the slip is printed, a sentence each: days that cannot be meant, an
/// address that lacks something, a collected parcel without its amount, a number that no carrier gives.
QStringList doubtsOf(const Shipment &shipment, const QDate &today);

/// The same of what the history has already: the same slip of that day, a parcel of that number. The
/// shipment's own row does not count.
base::Result<QStringList> doubtsOf(const Shipment &shipment, db::Connection &connection);

} // namespace shipping
