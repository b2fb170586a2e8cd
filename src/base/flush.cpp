#include "base/flush.h"

#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace base
{

#ifdef Q_OS_WIN

Error diskError(const QString &what, const QString &fileName, int)
{
    return {what + u"("_s + fileName + u")"_s};
}

Status flushFile(const QString &fileName)
{
    const HANDLE file = CreateFileW(reinterpret_cast<const wchar_t *>(fileName.utf16()), GENERIC_WRITE, 0,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    const bool done = file != INVALID_HANDLE_VALUE && FlushFileBuffers(file);
    if (file != INVALID_HANDLE_VALUE)
        CloseHandle(file);
    return done ? Status() : Error{u"ファイルをディスクに書き込めませんでした。("_s + fileName + u")"_s};
}

void flushFolder(const QString &) {} // the rename below writes through

Status replaceFile(const QString &from, const QString &to)
{
    if (MoveFileExW(reinterpret_cast<const wchar_t *>(from.utf16()),
                    reinterpret_cast<const wchar_t *>(to.utf16()),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return {};
    return Error{u"ファイルの名前を変更できませんでした。("_s + to + u")"_s};
}

#else

Error diskError(const QString &what, const QString &fileName, int number)
{
    if (number == ENOSPC || number == EDQUOT)
        return {u"ディスクの空き容量が足りません。"_s + what +
                u"不要なファイルを削除してから、もう一度実行してください。("_s + fileName + u")"_s};
    return {what + u"("_s + fileName + u": "_s + QString::fromLocal8Bit(std::strerror(number)) + u")"_s};
}

namespace
{

bool flushPath(const QString &path, int flags)
{
    const int file = ::open(QFile::encodeName(path).constData(), flags | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool done = ::fsync(file) == 0;
    ::close(file);
    return done;
}

} // namespace

Status flushFile(const QString &fileName)
{
    return flushPath(fileName, O_RDWR)
               ? Status()
               : diskError(u"ファイルをディスクに書き込めませんでした。"_s, fileName, errno);
}

void flushFolder(const QString &folder) { (void)flushPath(folder, O_RDONLY | O_DIRECTORY); }

Status replaceFile(const QString &from, const QString &to)
{
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        return diskError(u"ファイルの名前を変更できませんでした。"_s, to, errno);
    // Some file systems cannot flush a folder; the rename itself is done all the same.
    flushFolder(QFileInfo(to).absolutePath());
    return {};
}

#endif

} // namespace base
