#pragma once

#include "db/care/page_reader.h"
#include "db/care/plain_handle.h"

#include <QStringList>

namespace db
{

struct Table;

/// Writes rows as they were stored into one table of a new file.
class RowWriter
{
public:
    /// \a columns: those of the old file, by their names there. Its texts are in \a encoding.
    RowWriter(const PlainHandle &target, const Table &table, const QStringList &columns, int encoding);

    struct Written
    {
        bool isNew = false; // no row of its key is there already
        int cut = 0;        // texts of which only the beginning was there
    };
    base::Result<Written> write(const StoredRecord &record);

private:
    QByteArray statementFor(const Table &table, const QStringList &columns);
    /// \return whether it is a text that was cut
    bool bind(int parameter, const StoredRecord &record, std::size_t index);

    const PlainHandle &m_target;
    int m_encoding;
    std::vector<std::size_t> m_sources; // for each parameter after the row's number, the value of the record
    PlainStatement m_insert;            // built after m_sources, which its text fills
};

} // namespace db
