#pragma once

#include <QByteArrayView>
#include <QStringList>
#include <QVariantList>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;
struct sqlite3_value;

namespace db
{

/// A value as SQLite holds it, type and all.
using StoredValue = std::shared_ptr<sqlite3_value>;

/// A statement of the C interface, for what has to be read a million times or in parts.
class Statement
{
public:
    Statement(sqlite3 *handle, const QString &sql);
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    /// How many "?" it has.
    [[nodiscard]] int parameters() const;
    /// To be run again: nothing is bound, and no lock on the file is held.
    void reset();

    /// Binds to the next "?": an invalid value, a null text, and a date that is none as NULL, a date as
    /// yyyy-MM-dd.
    void bind(const QVariant &value);
    void bind(const QVariantList &values);
    void bind(const StoredValue &value);

    /// \return whether there is a further row; no also after a failure
    bool next();
    /// SQLITE_DONE when the rows have all been read, and what went wrong after a failure.
    [[nodiscard]] int code() const { return m_code; }

    [[nodiscard]] qint64 integer(int column) const;
    [[nodiscard]] double real(int column) const;
    /// A qint64, a double, a QString, a QByteArray, or an invalid one for NULL.
    [[nodiscard]] QVariant variant(int column) const;
    /// UTF-8, valid until the next row; null for NULL.
    [[nodiscard]] QByteArrayView text(int column) const;
    [[nodiscard]] StoredValue value(int column) const;
    /// All of the row.
    [[nodiscard]] QVariantList row() const;
    /// The headings of the columns.
    [[nodiscard]] QStringList columns() const;

private:
    sqlite3_stmt *m_statement = nullptr;
    int m_code;
    int m_bound = 0;
};

/// Text as it is stored: without the NUL that would end it in every other program that reads the file.
QVariant bindable(const QVariant &value);

} // namespace db
