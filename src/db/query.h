#pragma once

#include <QStringList>
#include <QVariantList>

namespace db
{

/// The term of an order in which the texts of \a column stand as a person looks for them
/// (text/japanese_order.h).
QString inJapaneseOrder(const QString &column);

/// Rows of one table in an order, in the pieces that SQL words them in; values are bound to "?".
struct Query
{
    QString columns = QStringLiteral("*"); // of the table
    QString table;
    QString where = {}; // empty: every row
    /// The terms of the order, each with its DESC where it has one. Rows that are alike in all of them are in
    /// the order of their keys, as all rows are without a term.
    QStringList order = {};
    QVariantList values = {}; // of `where`
    /// Further tables that only narrow the rows, joined in `where`.
    QString alongside = {};
    /// Rows all over the table are wanted, in an order that has to be sorted anyway: reading the whole table
    /// is then ten times faster than following an index to one row after the other.
    bool fromAllOver = false;

    /// The table's key column.
    [[nodiscard]] QString key() const;
    /// What follows FROM before the conditions.
    [[nodiscard]] QString from() const;
    /// Without a term of its own: the table's key.
    [[nodiscard]] QStringList fullOrder() const;
    /// The whole statement over \a selected in place of the columns.
    [[nodiscard]] QString selecting(const QString &selected) const;
    [[nodiscard]] QString statement() const { return selecting(columns); }
};

} // namespace db
