#pragma once

#include <QString>

// Spreadsheet programs run a field of a CSV file that begins with =, +, - or @ (also in full width, or after
// a tab or line end) as a formula. Such a text is written with an apostrophe before it, which keeps it text,
// and is read back without. A text that looks so already, apostrophes and then such a character, gets one
// more: what was written is what is read.
namespace tables
{

/// \a text as it goes into a field of a CSV file.
QString guarded(const QString &text);

/// The text that a field of a CSV file stands for; one that guarded() would not have written stays as it is.
QString unguarded(const QString &field);

} // namespace tables
