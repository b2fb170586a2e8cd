#include "db/care/use_mark.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

// SQLite locks the 512 bytes from 0x40000000 on; a lock may lie beyond the end of the file.
constexpr qint64 markedByte = 0x40000000 + 0x1000;

base::Error inUse(UseMark::Kind kind)
{
    if (kind == UseMark::Kind::Shared)
        return {u"ほかのプログラムがデータベースを整理しているため、開けませんでした。"
                "しばらく待ってから、もう一度実行してください。"_s};
    return {u"ほかのプログラムがデータベースファイルを開いているため、置き換えられませんでした。"
            "そのプログラムを終了してから、もう一度実行してください。"_s};
}

} // namespace

#ifdef Q_OS_WIN

struct UseMark::Handle
{
    HANDLE file = INVALID_HANDLE_VALUE;
    ~Handle()
    {
        if (file != INVALID_HANDLE_VALUE)
            CloseHandle(file);
    }
};

base::Status UseMark::setNow(const QString &fileName, Kind kind)
{
    m_handle = std::make_unique<Handle>();
    m_handle->file = CreateFileW(reinterpret_cast<const wchar_t *>(fileName.utf16()), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, 0, nullptr);
    if (m_handle->file == INVALID_HANDLE_VALUE)
        return {};
    OVERLAPPED place = {};
    place.Offset = static_cast<DWORD>(markedByte);
    const DWORD flags =
        LOCKFILE_FAIL_IMMEDIATELY | (kind == Kind::Exclusive ? DWORD(LOCKFILE_EXCLUSIVE_LOCK) : 0);
    if (LockFileEx(m_handle->file, flags, 0, 1, 0, &place) || GetLastError() != ERROR_LOCK_VIOLATION)
        return {};
    m_handle.reset();
    return inUse(kind);
}

#else

struct UseMark::Handle
{
    int file = -1;
    ~Handle()
    {
        if (file >= 0)
            ::close(file);
    }
};

namespace
{

// Locks of the open file, not of the process: the one kind is not dropped when something else in the
// process closes the file.
bool isRefused(int file, UseMark::Kind kind)
{
#ifdef F_OFD_SETLK
    struct flock lock = {};
    lock.l_type = kind == UseMark::Kind::Exclusive ? F_WRLCK : F_RDLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = markedByte;
    lock.l_len = 1;
    return ::fcntl(file, F_OFD_SETLK, &lock) != 0 && (errno == EAGAIN || errno == EACCES);
#else
    (void)file;
    (void)kind;
    return false;
#endif
}

// The file may have been replaced between opening and locking it.
bool isStillThere(int file, const QByteArray &path)
{
    struct stat opened = {};
    struct stat named = {};
    return ::fstat(file, &opened) == 0 && ::stat(path.constData(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

base::Status UseMark::setNow(const QString &fileName, Kind kind)
{
    const QByteArray path = QFile::encodeName(fileName);
    for (int attempt = 0; attempt < 10; ++attempt) {
        m_handle = std::make_unique<Handle>();
        m_handle->file = ::open(path.constData(), O_RDWR | O_CLOEXEC);
        if (m_handle->file < 0) {
            // What keeps the file from being opened is told by whoever opens it next.
            m_handle.reset();
            return {};
        }
        if (isRefused(m_handle->file, kind)) {
            m_handle.reset();
            return inUse(kind);
        }
        if (isStillThere(m_handle->file, path))
            return {};
    }
    m_handle.reset();
    return inUse(kind);
}

#endif

base::Status UseMark::set(const QString &fileName, Kind kind, int patience)
{
    constexpr unsigned long between = 20; // ms
    QElapsedTimer waiting;
    waiting.start();
    base::Status done = setNow(fileName, kind);
    while (!done && waiting.elapsed() < patience) {
        QThread::msleep(between);
        done = setNow(fileName, kind);
    }
    return done;
}

UseMark::UseMark() = default;
UseMark::~UseMark() = default;
UseMark::UseMark(UseMark &&) noexcept = default;
UseMark &UseMark::operator=(UseMark &&) noexcept = default;

void UseMark::release() { m_handle.reset(); }

} // namespace db
