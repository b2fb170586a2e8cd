#pragma once

#include "base/result.h"

#include <QStringList>
#include <QVariantMap>

namespace db
{
class Connection;
class Recordset;
} // namespace db

// What customers and suppliers have in common.
namespace registers
{

/// The text that one search finds a counterpart by: both names without full-width blanks, then \a others
/// (code, telephone number …) with a blank before each, at most 150 characters.
QString counterpartKey(const QString &name1, const QString &name2, const QStringList &others);

/// The first \a count characters of \a text; never ends in half a surrogate pair, which no database can
/// store.
QString firstCharacters(const QString &text, int count);

/// What names are found and doubted by: widths, kana, upper and lower case, blanks and the forms of a kanji
/// do not count.
QString foldedName(const QString &name);

/// What tells names apart where one is put in the place of the other: as foldedName(), but 髙 is not 高.
QString nameAsWritten(const QString &name);

/// By the stored number 消費税区分.
QStringList taxClassNames();

/// The other row that has the name and the telephone number of the current one of \a rows, however both are
/// written ("ID 12　高橋　花子　03-1234-5678"); empty when there is none, or no number to tell by.
base::Result<QString> twinOf(db::Connection &connection, const db::Recordset &rows);

/// Saves the current row with \a values and with what \a keyOf makes of its fields in \a keyColumn, whether
/// anything was edited or not. After a failure these columns are as before, and the edits are still there.
base::Status saveCounterpart(db::Recordset &rows, const QString &keyColumn,
                             QString (*keyOf)(const db::Recordset &), QVariantMap values = {});

} // namespace registers
