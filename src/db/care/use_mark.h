#pragma once

#include "base/result.h"

#include <QString>

#include <memory>

namespace db
{

/// Says to the other programs of this kind that a database file is in use. SQLite holds no lock on a file
/// between two statements, so that a file could be renamed over while another program has it open; whatever
/// that one saved afterwards would be lost. The mark is a lock on a byte far beyond those that SQLite locks.
class UseMark
{
public:
    enum class Kind {
        Shared,   // the file is worked in
        Exclusive // the file is about to be replaced
    };

    UseMark();
    ~UseMark();
    UseMark(UseMark &&) noexcept;
    UseMark &operator=(UseMark &&) noexcept;

    /// Marks \a fileName; fails when another mark stands against it for more than \a patience ms. A file
    /// system without locks is no failure: there the file goes unmarked. Closing a mark drops the locks that
    /// this process's SQLite holds on the file: it is set before SQLite has the file open, and released
    /// after.
    base::Status set(const QString &fileName, Kind kind, int patience = 0);
    void release();

private:
    base::Status setNow(const QString &fileName, Kind kind);

    struct Handle;
    std::unique_ptr<Handle> m_handle;
};

} // namespace db
