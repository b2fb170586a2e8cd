#pragma once

#include <QString>
#include <QVariantList>

namespace db
{

/// A piece of a WHERE with the values bound to its "?".
struct Condition
{
    QString sql;
    QVariantList values;

    /// Both.
    Condition &operator&=(const Condition &other);
};

/// Holds of rows of which \a column, a search key or a name, has every word that was \a typed, wherever it
/// stands, as text::keyPatterns() tells; of all that have a text there when none was.
Condition keyHolds(const QString &column, const QString &typed);

} // namespace db
