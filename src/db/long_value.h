#pragma once

#include <QVariantList>

// Values far longer than any that a clerk enters, as damage or ill will put them into a file: a box or a grid
// that lays out megabytes of text stands still.
namespace db
{

/// Whether \a value is longer than a screen takes.
bool isTooLong(const QVariant &value);

/// Puts the beginnings of those of \a values that are too long, with their lengths, in their places.
/// \return which they were
QList<int> shorten(QVariantList &values);

} // namespace db
