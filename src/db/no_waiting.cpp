#include "db/no_waiting.h"

#include "db/connection.h"

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

NoWaiting::NoWaiting(Connection &connection)
    : m_handle(connection.handle())
{
    if (const auto timeout = connection.integers(u"PRAGMA busy_timeout"_s); timeout && !timeout->empty())
        m_timeout = static_cast<int>(timeout->front());
    sqlite3_busy_timeout(m_handle, 0);
}

NoWaiting::~NoWaiting() { sqlite3_busy_timeout(m_handle, m_timeout); }

} // namespace db
