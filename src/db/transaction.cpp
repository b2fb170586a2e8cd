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
    if (m_owner && m_connection.inTransaction())
        (void)m_connection.execute(u"ROLLBACK"_s);
}

base::Status Transaction::begin()
{
    if (m_connection.inTransaction())
        return {};
    if (const auto begun = m_connection.execute(u"BEGIN IMMEDIATE"_s); !begun)
        return begun.error();
    m_owner = true;
    return {};
}

base::Status Transaction::commit()
{
    if (!m_owner)
        return {};
    const auto done = m_connection.execute(u"COMMIT"_s);
    if (!done && !m_connection.hasCommittedAllTheSame())
        return done.error();
    m_owner = false;
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
    return begun ? base::Status() : base::Status(begun.error());
}

} // namespace db
