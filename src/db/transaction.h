#pragma once

#include "base/result.h"

#include <type_traits>

namespace db
{

class Connection;

/// What atomically() works with: takes back what is not committed when it ends.
class Transaction
{
public:
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

private:
    explicit Transaction(Connection &connection);
    ~Transaction();

    base::Status begin();
    base::Status commit();

    template <class Action>
    friend auto atomically(Connection &connection, const Action &action)
        -> std::invoke_result_t<const Action &>;

    enum class State { Closed, Outer, Inner };

    Connection &m_connection;
    State m_state = State::Closed;
};

/// One action of the user, wholly or not at all: what \a action writes is kept when the Status or Result that
/// it returns is good, and taken back when that is an error, which comes back then. Takes the write lock at
/// once, so that a key read inside is still free when it is used, and waits up to the connection's timeout
/// for another program's write. Inside another action it is part of that one: its own failure takes back
/// only what it wrote itself, and what it wrote is kept when the outer one is.
template <class Action>
auto atomically(Connection &connection, const Action &action) -> std::invoke_result_t<const Action &>
{
    Transaction transaction(connection);
    if (const base::Status begun = transaction.begin(); !begun)
        return begun.error();
    auto outcome = action();
    if (!outcome)
        return outcome;
    if (const base::Status kept = transaction.commit(); !kept)
        return kept.error();
    return outcome;
}

/// One state of the file for several statements that only read: what other programs write meanwhile waits
/// until the guard ends, so it is for seconds, not for minutes. Within an action that writes it is part of
/// that one.
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
