#pragma once

#include "db/old_files/old_file_reader.h"

#include <QVariant>

namespace db
{

/// What a column of this program holds.
enum class ColumnKind { Text, Date, Integer, Real };

/// The kind of \a column, declared as \a type in schema.sql.
ColumnKind columnKind(const QString &column, const QString &type);

/// A value of an old file in the form of this program.
struct CarriedValue
{
    QVariant value;           // QString, qint64, double, or invalid for NULL
    QString trouble;          // why the value could not be carried over exactly; empty when it could
    bool droppedTime = false; // a date came with a time of day, which no column of this program has
};

CarriedValue carriedOver(const OldCell &cell, ColumnKind kind);

} // namespace db
