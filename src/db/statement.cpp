#include "db/statement.h"

#include <sqlite3.h>

namespace db
{

namespace
{

int bindText(sqlite3_stmt *statement, int index, const QString &text)
{
    if (text.isNull())
        return sqlite3_bind_null(statement, index);
    const QByteArray utf8 = bindable(text).toString().toUtf8();
    return sqlite3_bind_text(statement, index, utf8.constData(), static_cast<int>(utf8.size()),
                             SQLITE_TRANSIENT);
}

int bindBytes(sqlite3_stmt *statement, int index, const QByteArray &bytes)
{
    if (bytes.isNull())
        return sqlite3_bind_null(statement, index);
    return sqlite3_bind_blob(statement, index, bytes.constData(), static_cast<int>(bytes.size()),
                             SQLITE_TRANSIENT);
}

int bindValue(sqlite3_stmt *statement, int index, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Bool:
        return sqlite3_bind_int64(statement, index, value.toLongLong());
    case QMetaType::Double:
        return sqlite3_bind_double(statement, index, value.toDouble());
    case QMetaType::QByteArray:
        return bindBytes(statement, index, value.toByteArray());
    default: // a date that is none has no text
        return bindText(statement, index, value.toString());
    }
}

} // namespace

QVariant bindable(const QVariant &value)
{
    if (value.typeId() != QMetaType::QString)
        return value;
    QString text = value.toString();
    return text.contains(QChar(0)) ? text.remove(QChar(0)) : text;
}

Statement::Statement(sqlite3 *handle, const QString &sql)
{
    const QByteArray utf8 = sql.toUtf8();
    m_code =
        sqlite3_prepare_v2(handle, utf8.constData(), static_cast<int>(utf8.size()), &m_statement, nullptr);
}

Statement::~Statement() { sqlite3_finalize(m_statement); }

int Statement::parameters() const { return sqlite3_bind_parameter_count(m_statement); }

// A failure of the last run was told then.
void Statement::reset()
{
    (void)sqlite3_reset(m_statement);
    m_code = sqlite3_clear_bindings(m_statement);
    m_bound = 0;
}

void Statement::bind(const QVariant &value)
{
    if (m_code == SQLITE_OK)
        m_code = bindValue(m_statement, ++m_bound, value);
}

void Statement::bind(const QVariantList &values)
{
    for (const QVariant &value : values)
        bind(value);
}

void Statement::bind(const StoredValue &value)
{
    if (m_code == SQLITE_OK)
        m_code = sqlite3_bind_value(m_statement, ++m_bound, value.get());
}

bool Statement::next()
{
    if (m_code == SQLITE_OK || m_code == SQLITE_ROW)
        m_code = sqlite3_step(m_statement);
    return m_code == SQLITE_ROW;
}

qint64 Statement::integer(int column) const { return sqlite3_column_int64(m_statement, column); }

double Statement::real(int column) const { return sqlite3_column_double(m_statement, column); }

QVariant Statement::variant(int column) const
{
    switch (sqlite3_column_type(m_statement, column)) {
    case SQLITE_INTEGER:
        return integer(column);
    case SQLITE_FLOAT:
        return real(column);
    case SQLITE_NULL:
        return {};
    case SQLITE_BLOB:
        return text(column).toByteArray();
    default:
        return QString::fromUtf8(text(column));
    }
}

QByteArrayView Statement::text(int column) const
{
    const unsigned char *utf8 = sqlite3_column_text(m_statement, column);
    return {utf8, utf8 ? sqlite3_column_bytes(m_statement, column) : 0};
}

QVariantList Statement::row() const
{
    QVariantList row;
    const int count = sqlite3_data_count(m_statement);
    row.reserve(count);
    for (int column = 0; column < count; ++column)
        row << variant(column);
    return row;
}

QStringList Statement::columns() const
{
    QStringList columns;
    for (int column = 0; column < sqlite3_column_count(m_statement); ++column)
        columns << QString::fromUtf8(sqlite3_column_name(m_statement, column));
    return columns;
}

StoredValue Statement::value(int column) const
{
    return {sqlite3_value_dup(sqlite3_column_value(m_statement, column)), sqlite3_value_free};
}

} // namespace db
