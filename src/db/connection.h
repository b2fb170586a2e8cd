#pragma once

#include "base/result.h"
#include "db/care/use_mark.h"

#include <QSqlDatabase>
#include <QVariant>

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

struct sqlite3;

namespace db
{

class Statement;

/// The rows of a small result, read whole, so that no statement stays open and holds a lock on the file.
struct Rows
{
    QStringList columns;
    std::vector<QVariantList> rows;

    [[nodiscard]] bool isEmpty() const { return rows.empty(); }
    [[nodiscard]] int count() const { return static_cast<int>(rows.size()); }
    /// The value in \a row under the heading \a column; invalid when there is none.
    [[nodiscard]] QVariant value(int row, const QString &column) const;
};

/// Whether QtSql and this program use one and the same SQLite, told by their source ids.
base::Status sameLibrary(const QString &ofQt, const QString &ours);

/// The one connection of the program to its database file. Screens and logic work on it with literal SQL;
/// values are bound to "?". Nothing else opens a handle on the file while it is open.
class Connection
{
public:
    Connection();
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    /// Closes the present file and opens \a fileName. Accepted is only a writable database of this
    /// program with all its tables and columns, of this schema version, without foreign triggers or views.
    /// Damage is found as far as a few pages of each table show it, whatever the size of the file.
    base::Status open(const QString &fileName);

    /// Closes the file. Statements and record sets on it must be gone or closed before.
    void close();

    [[nodiscard]] bool isOpen() const { return m_open; }

    /// Full path of the open file; empty when none is open.
    [[nodiscard]] QString fileName() const { return m_fileName; }

    /// Runs a statement and reads its whole result.
    base::Result<Rows> select(const QString &sql, const QVariantList &values = {});

    /// Runs a statement that returns no rows. \return the number of rows changed
    base::Result<int> execute(const QString &sql, const QVariantList &values = {});

    /// The first column of every row as integers; made for hundreds of thousands of them.
    base::Result<std::vector<qint64>> integers(const QString &sql, const QVariantList &values = {});

    /// Shows \a visit each row of a statement while it is read; made for millions of them. \a visit leaves
    /// the connection alone.
    base::Status visit(const QString &sql, const QVariantList &values,
                       const std::function<void(const Statement &row)> &visit);

    /// Whether a transaction is under way.
    [[nodiscard]] bool inTransaction() const;

    /// Whether the transaction whose COMMIT has just failed is in the file nevertheless: its journal is gone,
    /// and only the flushing of the folder failed. Told as a failure, it would be entered twice.
    [[nodiscard]] bool hasCommittedAllTheSame() const;

    /// SQLite's own handle, for what QtSql does not offer (backup).
    [[nodiscard]] sqlite3 *handle() const;

private:
    /// Runs a statement, prepared anew or kept from its last run: \a read takes its rows, to the last one.
    base::Status run(const QString &sql, const QVariantList &values,
                     const std::function<void(Statement &)> &read);

    base::Status checkLibrary();
    base::Status configure();
    base::Status checkVersion();
    base::Status checkTables();
    base::Status checkDefinitions();
    base::Status checkCounter();
    base::Status checkEdges();
    void addMissingIndexes();

    QString m_name; // of the QtSql connection
    QString m_fileName;
    UseMark m_mark;
    bool m_open = false;
    std::unordered_map<QString, std::unique_ptr<Statement>> m_statements; // prepared, by their text
};

} // namespace db
