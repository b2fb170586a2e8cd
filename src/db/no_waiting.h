#pragma once

struct sqlite3;

namespace db
{

class Connection;

/// While one lives, a locked file is told at once: nobody waits for what is read in the background.
class NoWaiting
{
public:
    explicit NoWaiting(Connection &connection);
    ~NoWaiting();
    NoWaiting(const NoWaiting &) = delete;
    NoWaiting &operator=(const NoWaiting &) = delete;

private:
    sqlite3 *m_handle;
    int m_timeout = 5000; // milliseconds
};

} // namespace db
