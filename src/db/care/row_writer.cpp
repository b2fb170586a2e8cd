#include "db/care/row_writer.h"

#include "db/schema.h"

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

RowWriter::RowWriter(const PlainHandle &target, const Table &table, const QStringList &columns, int encoding)
    : m_target(target)
    , m_encoding(encoding)
    , m_insert(target, statementFor(table, columns))
{}

base::Result<RowWriter::Written> RowWriter::write(const StoredRecord &record)
{
    sqlite3_stmt *insert = m_insert.get();
    if (!insert)
        return m_target.error();
    sqlite3_reset(insert);
    sqlite3_clear_bindings(insert);
    sqlite3_bind_int64(insert, 1, record.rowid);
    Written written;
    for (std::size_t i = 0; i < m_sources.size() && int(i) < sqlite3_bind_parameter_count(insert) - 1; ++i) {
        if (m_sources[i] < record.values.size())
            written.cut += bind(static_cast<int>(i) + 2, record, m_sources[i]) ? 1 : 0;
    }
    if (sqlite3_step(insert) != SQLITE_DONE)
        return m_target.error();
    written.isNew = sqlite3_changes(m_target.get()) == 1;
    return written;
}

// The columns' names are our own; one that the file calls otherwise stays empty.
QByteArray RowWriter::statementFor(const Table &table, const QStringList &columns)
{
    QStringList names = {u"rowid"_s};
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const QString &column = columns.at(i);
        if (column == table.key || !table.columns.contains(column))
            continue;
        names << column;
        m_sources.push_back(std::size_t(i));
    }
    const QString marks = QStringList(names.size(), u"?"_s).join(u", "_s);
    return u"INSERT OR IGNORE INTO %1 (%2) VALUES (%3)"_s.arg(table.name, names.join(u", "_s), marks)
        .toUtf8();
}

bool RowWriter::bind(int parameter, const StoredRecord &record, std::size_t index)
{
    sqlite3_stmt *insert = m_insert.get();
    bool isCut = false;
    if (record.isInteger(index)) {
        sqlite3_bind_int64(insert, parameter, record.integer(index));
    } else if (record.isReal(index)) {
        sqlite3_bind_double(insert, parameter, record.real(index));
    } else if (!record.isNull(index)) {
        QByteArray bytes = record.bytes(index);
        // No text of ours holds a NUL: from there on it stood on an emptied page.
        isCut = record.isText(index) && m_encoding == SQLITE_UTF8 && bytes.contains('\0');
        if (isCut)
            bytes.truncate(bytes.indexOf('\0'));
        const auto size = static_cast<sqlite3_uint64>(bytes.size());
        if (record.isText(index))
            sqlite3_bind_text64(insert, parameter, bytes.constData(), size, SQLITE_TRANSIENT,
                                static_cast<unsigned char>(m_encoding));
        else
            sqlite3_bind_blob64(insert, parameter, bytes.constData(), size, SQLITE_TRANSIENT);
    }
    return isCut;
}

} // namespace db
