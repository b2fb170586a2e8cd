#pragma once

#include "base/result.h"
#include "masters/name_lists.h"

#include <QDate>
#include <QStringList>
#include <QUrl>

#include <optional>

namespace db
{
class Connection;
class Recordset;
} // namespace db

// The rules of a customer's row (納品先): what its fields hold, and what making and saving one means.
namespace registers
{

/// The text that one search finds a customer by: both names without full-width blanks, the code, the first
/// telephone number and the reading, at most 150 characters.
QString customerKey(const QString &name1, const QString &name2, const QString &code, const QString &tel1,
                    const QString &reading);

/// A telephone or fax number as it is stored: half-width, at most 15 characters.
QString normalisedPhone(const QString &typed);

/// A mail address as it is stored: without a leading "mailto:", half-width, at most 50 characters.
QString normalisedMail(const QString &typed);

/// Whether \a typed is written as a day that the calendar does not have.
bool isImpossibleDay(const QString &typed);

/// What opens the mail program on \a address. Nothing when it is not one plain address: headers and several
/// addresses could be smuggled in behind "?" and ",".
std::optional<QUrl> mailLink(const QString &address);

/// By the stored number 締め日: 0 the last day of the month, 1 to 30 that day.
QStringList closingDayNames();

/// What a customer may be addressed with, as 敬称 holds it.
QStringList honorifics();

/// Every customer, the last changed first.
base::Status openEveryCustomer(db::Recordset &customers);

/// The customers whose key contains \a text; "%" and "_" in it stand for any characters.
/// Finding none leaves the record set as it was. \return whether there are any
base::Result<bool> openCustomersLike(db::Recordset &customers, const QString &text);

/// The one customer \a id; the record set is empty when there is no such customer.
base::Status openCustomer(db::Recordset &customers, qint64 id);

/// Stores a new customer that has its key, its dates and the two numbers that are never empty.
/// \return its key
base::Result<qint64> addCustomer(db::Connection &connection, const QDate &today);

/// All customers in the order of their keys, with the new one \a id as the current one.
base::Status openForEntry(db::Recordset &customers, qint64 id);

/// Why a customer cannot be saved.
struct Refusal
{
    QString text;
    QString column; // the field to fill in
};

/// What keeps the current customer from being saved; nothing when it may be.
std::optional<Refusal> customerRefusal(const db::Recordset &customers,
                                       const std::vector<masters::Entry> &categories);

/// As customerRefusal(), for a customer of the roster: its postal code is needed too.
std::optional<Refusal> rosterRefusal(const db::Recordset &customers,
                                     const std::vector<masters::Entry> &categories);

/// Saves the current customer with its edited fields in their stored form, a new key and \a today as the day
/// of its last change. After a failure its dates and key are as before, and the edits are still there.
base::Status saveCustomer(db::Recordset &customers, const QDate &today);

/// The same for a new one: without a closing day it gets the month's end, on which it is billed anyway.
base::Status saveNewCustomer(db::Recordset &customers, const QDate &today);

/// Stores the category alone, at once; other edits of the current customer stay held back.
base::Status saveCategory(db::Connection &connection, db::Recordset &customers, qint64 category);

/// Whether two customers have the code of the current one; its own counts as it is typed.
base::Result<bool> codeIsShared(db::Connection &connection, const db::Recordset &customers);

} // namespace registers
