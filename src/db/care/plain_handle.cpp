#include "db/care/plain_handle.h"

#include "db/errors.h"

#include <QFileInfo>

#include <sqlite3.h>

namespace db
{

namespace
{

// Steps of SQLite's machine between two reports: some milliseconds.
constexpr int stepsBetweenReports = 20000;

} // namespace

PlainHandle::~PlainHandle() { close(); }

base::Status PlainHandle::open(const QString &fileName)
{
    close();
    const QByteArray utf8 = QFileInfo(fileName).absoluteFilePath().toUtf8();
    if (sqlite3_open_v2(utf8.constData(), &m_handle, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        const base::Error failed = errorFrom(m_handle);
        close();
        return failed;
    }
    sqlite3_busy_timeout(m_handle, 5000);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    return run("PRAGMA trusted_schema = OFF; PRAGMA cell_size_check = ON");
}

void PlainHandle::close()
{
    sqlite3_close(m_handle);
    m_handle = nullptr;
    m_stopped = false;
}

base::Status PlainHandle::run(const QByteArray &sql)
{
    return sqlite3_exec(m_handle, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK
               ? base::Status()
               : base::Status(error());
}

base::Result<qint64> PlainHandle::number(const QByteArray &sql)
{
    PlainStatement statement(*this, sql);
    if (!statement || statement.step() != SQLITE_ROW)
        return error();
    return sqlite3_column_int64(statement.get(), 0);
}

void PlainHandle::watch(const base::Progress &progress, std::function<std::pair<qint64, qint64>()> measure)
{
    m_progress = progress;
    m_measure = std::move(measure);
    sqlite3_progress_handler(m_handle, stepsBetweenReports, &PlainHandle::report, this);
}

int PlainHandle::report(void *self)
{
    auto *handle = static_cast<PlainHandle *>(self);
    const auto [done, total] = handle->m_measure ? handle->m_measure() : std::pair<qint64, qint64>();
    handle->m_stopped = !handle->m_progress(done, total);
    return handle->m_stopped ? 1 : 0;
}

base::Error PlainHandle::error() const { return m_stopped ? base::cancelled() : errorFrom(m_handle); }

PlainStatement::PlainStatement(const PlainHandle &handle, const QByteArray &sql)
{
    sqlite3_prepare_v2(handle.get(), sql.constData(), static_cast<int>(sql.size()), &m_statement, nullptr);
}

PlainStatement::~PlainStatement() { sqlite3_finalize(m_statement); }

int PlainStatement::step() { return sqlite3_step(m_statement); }

QString PlainStatement::text(int column) const
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(m_statement, column)),
                             sqlite3_column_bytes(m_statement, column));
}

} // namespace db
