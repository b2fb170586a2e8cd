#pragma once

struct sqlite3;

namespace db
{

/// Replaces LIKE on \a handle by the one that treats case, width and the two kana as equal.
/// \return an SQLite result code
int installLike(sqlite3 *handle);

/// Gives \a handle the order that inJapaneseOrder() names.
/// \return an SQLite result code
int installJapaneseOrder(sqlite3 *handle);

} // namespace db
