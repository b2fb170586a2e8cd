#include "db/transaction.h"

#include "db/connection.h"

using namespace Qt::StringLiterals;

namespace db
{

Transaction::Transaction(Connection &connection)
    : m_connection(connection)
{}

Transaction::~Transaction()
{
    // SQLite rolls back by itself after some failures; only what is still open is ours to end.
    if (m_state == State::Closed || !m_connection.inTransaction())
        return;
    if (m_state == State::Outer) {
        (void)m_connection.execute(u"ROLLBACK"_s);
        return;
    }
    (void)m_connection.execute(u"ROLLBACK TO inner_action"_s);
    (void)m_connection.execute(u"RELEASE inner_action"_s);
}

base::Status Transaction::begin()
{
    const bool isInner = m_connection.inTransaction();
    const auto begun = m_connection.execute(isInner ? u"SAVEPOINT inner_action"_s : u"BEGIN IMMEDIATE"_s);
    if (begun)
        m_state = isInner ? State::Inner : State::Outer;
    return begun.status();
}

base::Status Transaction::commit()
{
    const auto done = m_connection.execute(m_state == State::Inner ? u"RELEASE inner_action"_s : u"COMMIT"_s);
    if (!done && !m_connection.hasCommittedAllTheSame())
        return done.error();
    m_state = State::Closed;
    return {};
}

ReadTransaction::ReadTransaction(Connection &connection)
    : m_connection(connection)
{}

ReadTransaction::~ReadTransaction()
{
    if (m_owner && m_connection.inTransaction())
        (void)m_connection.execute(u"ROLLBACK"_s);
}

base::Status ReadTransaction::begin()
{
    if (m_connection.inTransaction())
        return {};
    const auto begun = m_connection.execute(u"BEGIN"_s);
    m_owner = bool(begun);
    return begun.status();
}

} // namespace db
