#pragma once

struct sqlite3;

namespace db
{

/// Gives \a handle the functions `day_in(text)`, the day that a text is in any of the ways that people write
/// one as yyyy-MM-dd, NULL for anything else; and `valid_day(text)`: 1 for a day of the calendar written
/// yyyy-MM-dd, 0 for anything else, also for NULL. Columns of days are texts, and other hands may have
/// written any text into them. \return an SQLite result code
int installValidDay(sqlite3 *handle);

} // namespace db
