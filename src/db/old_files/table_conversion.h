#pragma once

#include "db/old_files/conversion.h"
#include "db/old_files/old_values.h"

#include <memory>
#include <optional>
#include <unordered_set>

struct sqlite3;
struct sqlite3_stmt;

namespace db
{

struct Table;

/// Sentences that are collected; past some thousands of the same sort they are only counted.
class Findings
{
public:
    void add(const QString &sentence);
    [[nodiscard]] QStringList sentences() const;

private:
    QStringList m_sentences;
    qint64 m_more = 0;
};

/// A row that got a new key, since another one had its own.
struct Renumbered
{
    QVariant from; // invalid: it had none
    qint64 to = 0;
};

/// Carries the rows of one table over.
class TableConversion
{
public:
    TableConversion(sqlite3 *handle, const Table &table, const OldTable &old, const MissingValue &missing,
                    Findings &losses, Findings &notes);
    ~TableConversion();
    TableConversion(const TableConversion &) = delete;
    TableConversion &operator=(const TableConversion &) = delete;

    /// Prepares the statement.
    base::Status begin();
    /// Takes one row of the old table. One that the new table refuses is noted as lost.
    base::Status take(const std::vector<OldCell> &row);
    /// Writes the rows that need a new key, and notes what was left over.
    base::Status end();

    [[nodiscard]] qint64 read() const { return m_read; }
    [[nodiscard]] qint64 written() const { return m_written; }
    [[nodiscard]] const std::vector<Renumbered> &renumbered() const { return m_renumbered; }

private:
    struct Column
    {
        QString name;
        ColumnKind kind;
        std::optional<std::size_t> source; // in the old table
    };

    base::Status readColumns();
    QVariantList valuesOf(const std::vector<OldCell> &row);
    void fillMissing(QVariantList &values) const;
    base::Status write(const QVariantList &values);
    base::Status writeRenumbered();
    void noteColumns();
    [[nodiscard]] QString rowName(const QVariantList &values) const;

    sqlite3 *m_handle;
    const Table &m_table;
    const OldTable &m_old;
    const MissingValue &m_missing;
    Findings &m_losses;
    Findings &m_notes;
    sqlite3_stmt *m_insert = nullptr;
    std::vector<Column> m_columns;
    std::optional<qsizetype> m_key;      // which column it is
    std::vector<qint64> m_unknownValues; // how many each column has that this program does not know
    std::vector<bool> m_isKnown;         // by column of the old table
    std::unordered_set<qint64> m_keys;
    qint64 m_highest = 0;
    std::vector<QVariantList> m_withoutKey; // rows to be renumbered
    std::vector<Renumbered> m_renumbered;
    qint64 m_droppedTimes = 0;
    qint64 m_read = 0;
    qint64 m_written = 0;
};

/// Which of \a names is meant by \a name: itself, else the one that differs in case or width alone.
std::optional<std::size_t> foundIn(const QStringList &names, const QString &name);

} // namespace db
