#pragma once

#include "base/result.h"
#include "book/slip_kind.h"

#include <optional>

namespace db
{
class Connection;
}

namespace book
{

/// An automatic number: letter, infix as typed, key in decimal. Unique, as the key is.
QString automaticNumber(const SlipKind &kind, const QString &infix, qint64 id);

/// The kind that a slip numbered \a number is in the books, as the column 種別 tells it: by the first letter,
/// in full or half width, capital or small. None where it is no kind's.
std::optional<SlipKind> kindOf(const QString &number);

/// What is told of a number that does not begin as it must.
QString wrongNumber();
/// And why, beside it: with which \a letter it must begin.
QString letterRemark(char16_t letter);

/// Whether the typed \a number can be a new slip's, or that of the slip with the key \a own: it begins with
/// \a letter and no other slip has it, width and case apart: people read I-a1 and Ｉ－Ａ１ as one number. The
/// error is the sentence to tell.
base::Status checkManualNumber(db::Connection &connection, const QString &number, char16_t letter,
                               qint64 own = 0);

} // namespace book
