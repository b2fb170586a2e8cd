#pragma once

#include "base/result.h"
#include "book/slip_kind.h"

#include <QString>

#include <limits>
#include <vector>

namespace db
{
class Connection;
}

// Rows of a register without a name: a new one is stored before it is filled in, and stays as it is when the
// screen is closed or the program ends then.
namespace registers
{

struct NamelessRow
{
    qint64 id = 0;
    QString code, address, phone;
    QString date; // 更新日, yyyy-MM-dd; suppliers have none
    qint64 slips = 0;
};

/// The newest ones, at most \a most, in the order of their keys.
base::Result<std::vector<NamelessRow>> namelessRows(db::Connection &connection, book::Party party, int most);

/// Deletes those of \a ids that still have neither a name nor slips, and customers no shipments either, in
/// one transaction. \return how many were deleted
base::Result<int> deleteNameless(db::Connection &connection, book::Party party,
                                 const std::vector<qint64> &ids);

/// Counts them piece by piece, each of which takes some milliseconds whatever the register's size.
class NamelessCount
{
public:
    NamelessCount(db::Connection &connection, book::Party party)
        : m_connection(&connection)
        , m_party(party)
    {}

    [[nodiscard]] bool isComplete() const { return m_isComplete; }
    [[nodiscard]] qint64 count() const { return m_count; } // so far

    /// Reads the next piece, which is tried again when it failed.
    base::Status readOn();

private:
    db::Connection *m_connection;
    book::Party m_party;
    qint64 m_before = std::numeric_limits<qint64>::max(); // keys below are still to be read
    qint64 m_count = 0;
    bool m_isComplete = false;
};

} // namespace registers
