#pragma once

#include "base/result.h"

namespace db
{

class Connection;

/// One action of the user, wholly or not at all: what is not committed is rolled back when the guard ends.
/// Begun inside another one it becomes part of that one. Takes the write lock at once, so that a key read
/// inside is still free when it is used.
class Transaction
{
public:
    explicit Transaction(Connection &connection);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    /// Waits up to the connection's timeout for another program's write.
    base::Status begin();

    /// After a failure nothing of the action is stored.
    base::Status commit();

private:
    Connection &m_connection;
    bool m_owner = false;
};

/// One state of the file for several statements that only read: what other programs write meanwhile waits
/// until the guard ends, so it is for seconds, not for minutes. Within a Transaction it is part of that one.
class ReadTransaction
{
public:
    explicit ReadTransaction(Connection &connection);
    ~ReadTransaction();
    ReadTransaction(const ReadTransaction &) = delete;
    ReadTransaction &operator=(const ReadTransaction &) = delete;

    base::Status begin();

private:
    Connection &m_connection;
    bool m_owner = false;
};

} // namespace db
