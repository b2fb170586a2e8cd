#pragma once

#include "db/query.h"

#include <QHash>

namespace db
{

class Connection;

/// The contents of the rows that were looked at last, by their keys.
class RowCache
{
public:
    static constexpr int blockSize = 64; // rows that are read together

    /// A row as it was read. One that could not be read, or that is gone, is without values. Of values that
    /// are too long for a screen only the beginning is there.
    struct Row
    {
        QVariantList values;
        bool isRead = false;
        QList<int> cut = {}; // the places of those
    };

    explicit RowCache(Connection &connection)
        : m_connection(&connection)
    {}

    /// Forgets the rows; from now on they are those of \a query.
    void reset(const Query &query);

    [[nodiscard]] bool has(qint64 key) const { return m_rows.contains(key); }
    [[nodiscard]] const Row &at(qint64 key) const { return *m_rows.constFind(key); }

    /// Reads those of \a keys, blockSize at most, that are not there yet. Too many others are forgotten for
    /// them, but not \a kept.
    void read(const QVariantList &keys, qint64 kept);
    /// A row that is gone; its key may be given again.
    void forget(qint64 key) { m_rows.remove(key); }
    /// Reads the row \a key anew; it stays as it was where it cannot be read now.
    void refresh(qint64 key);

private:
    Connection *m_connection;
    Query m_query;
    QHash<qint64, Row> m_rows;
};

} // namespace db
