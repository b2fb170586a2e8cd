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

/// What \a column, a text that anybody wrote, says of a day: yyyy-MM-dd, NULL where it says none.
QString dayIn(const QString &column);

} // namespace db
