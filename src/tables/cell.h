#pragma once

#include "base/column.h"

#include <QVariant>

namespace tables
{

/// A value as it stands in a cell of a file.
struct Cell
{
    enum class Kind { Blank, Text, Number, Date };

    Kind kind = Kind::Blank;
    QString text;      // of every kind; dates as yyyy/MM/dd
    double number = 0; // of numbers; of dates the day number of spreadsheet programs
};

/// The cell of a database value; dates come as yyyy-MM-dd. NULL is blank, an empty text is text, and so is a
/// value that does not fit its column: none is lost or altered. What no file format can hold, halves of a
/// character and NUL among it, becomes U+FFFD.
Cell cellOf(const QVariant &value, base::Format format);

} // namespace tables
