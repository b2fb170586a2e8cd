#pragma once

#include "base/progress.h"
#include "base/result.h"

#include <QString>

struct sqlite3;
struct sqlite3_stmt;

namespace db
{

/// SQLite's own handle on a file beside the program's connection, for work on files as a whole: copies,
/// checks, compaction, migration. Takes nothing from the file for granted.
class PlainHandle
{
public:
    PlainHandle() = default;
    ~PlainHandle();
    PlainHandle(const PlainHandle &) = delete;
    PlainHandle &operator=(const PlainHandle &) = delete;

    /// Opens a file that is there; an empty one becomes a database. Its name is taken as it is: neither
    /// ":memory:" nor "file:" means anything else.
    base::Status open(const QString &fileName);
    void close();

    /// Runs statements without values and without rows.
    base::Status run(const QByteArray &sql);
    /// The first column of the first row as an integer.
    base::Result<qint64> number(const QByteArray &sql);

    /// Reports to \a progress while statements run, which end as cancelled() when it says so. The total is
    /// 0 unless \a measure tells how far the work is.
    void watch(const base::Progress &progress, std::function<std::pair<qint64, qint64>()> measure = {});

    /// What the last failed call on this handle means; cancelled() after it was told to stop.
    [[nodiscard]] base::Error error() const;

    [[nodiscard]] sqlite3 *get() const { return m_handle; }

private:
    static int report(void *self);

    sqlite3 *m_handle = nullptr;
    base::Progress m_progress;
    std::function<std::pair<qint64, qint64>()> m_measure;
    bool m_stopped = false;
};

/// A prepared statement that is finished at the end of its scope.
class PlainStatement
{
public:
    /// A statement that cannot be prepared is empty; PlainHandle::error() tells why.
    PlainStatement(const PlainHandle &handle, const QByteArray &sql);
    ~PlainStatement();
    PlainStatement(PlainStatement &&other) noexcept
        : m_statement(std::exchange(other.m_statement, nullptr))
    {}
    PlainStatement &operator=(PlainStatement &&) = delete;

    [[nodiscard]] sqlite3_stmt *get() const { return m_statement; }
    explicit operator bool() const { return m_statement != nullptr; }
    /// \return SQLite's result code
    int step();
    [[nodiscard]] QString text(int column) const;

private:
    sqlite3_stmt *m_statement = nullptr;
};

} // namespace db
