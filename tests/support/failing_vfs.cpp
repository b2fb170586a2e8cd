// SQLite's file system with a disk that fails.
#include "support/failing_disk.h"

#include <QtGlobal>

#include <sqlite3.h>

using failing_disk::InsideSqlite;

namespace
{

sqlite3_vfs *realVfs = nullptr;

struct File
{
    sqlite3_file base; // the real file follows
};

sqlite3_file *realFile(sqlite3_file *file)
{
    return reinterpret_cast<sqlite3_file *>(reinterpret_cast<File *>(file) + 1);
}

int close(sqlite3_file *file)
{
    const InsideSqlite inside;
    return realFile(file)->pMethods->xClose(realFile(file));
}

int read(sqlite3_file *file, void *to, int size, sqlite3_int64 at)
{
    return realFile(file)->pMethods->xRead(realFile(file), to, size, at);
}

int write(sqlite3_file *file, const void *from, int size, sqlite3_int64 at)
{
    const InsideSqlite inside;
    const auto *methods = realFile(file)->pMethods;
    if (!failing_disk::fails())
        return methods->xWrite(realFile(file), from, size, at);
    if (failing_disk::kind() == failing_disk::Kind::Broken)
        return SQLITE_IOERR_WRITE;
    if (failing_disk::kind() == failing_disk::Kind::Short)
        methods->xWrite(realFile(file), from, size / 2, at);
    return SQLITE_FULL;
}

int truncate(sqlite3_file *file, sqlite3_int64 size)
{
    const InsideSqlite inside;
    return failing_disk::fails() ? SQLITE_IOERR_TRUNCATE
                                 : realFile(file)->pMethods->xTruncate(realFile(file), size);
}

int sync(sqlite3_file *, int) { return failing_disk::fails() ? SQLITE_IOERR_FSYNC : SQLITE_OK; }

int fileSize(sqlite3_file *file, sqlite3_int64 *size)
{
    return realFile(file)->pMethods->xFileSize(realFile(file), size);
}

int lock(sqlite3_file *file, int level) { return realFile(file)->pMethods->xLock(realFile(file), level); }

int unlock(sqlite3_file *file, int level) { return realFile(file)->pMethods->xUnlock(realFile(file), level); }

int isReserved(sqlite3_file *file, int *is)
{
    return realFile(file)->pMethods->xCheckReservedLock(realFile(file), is);
}

int control(sqlite3_file *file, int what, void *value)
{
    const InsideSqlite inside;
    return realFile(file)->pMethods->xFileControl(realFile(file), what, value);
}

int sectorSize(sqlite3_file *file) { return realFile(file)->pMethods->xSectorSize(realFile(file)); }

int characteristics(sqlite3_file *file)
{
    return realFile(file)->pMethods->xDeviceCharacteristics(realFile(file));
}

// Of version 1: without shared memory and mapped pages, so that every change comes by here.
const sqlite3_io_methods methods = {
    1,       close,      read,    write,      truncate,        sync,    fileSize, lock,
    unlock,  isReserved, control, sectorSize, characteristics, nullptr, nullptr,  nullptr,
    nullptr, nullptr,    nullptr};

int open(sqlite3_vfs *, sqlite3_filename name, sqlite3_file *file, int flags, int *outFlags)
{
    const InsideSqlite inside;
    file->pMethods = nullptr;
    if ((flags & SQLITE_OPEN_READWRITE) && failing_disk::fails())
        return SQLITE_CANTOPEN;
    const int code = realVfs->xOpen(realVfs, name, realFile(file), flags, outFlags);
    if (realFile(file)->pMethods)
        file->pMethods = &methods;
    return code;
}

// The folder's flushing is a call of its own: when it fails, the file is gone all the same.
int remove(sqlite3_vfs *, const char *name, int flushed)
{
    const InsideSqlite inside;
    if (failing_disk::fails())
        return SQLITE_IOERR_DELETE;
    const int code = realVfs->xDelete(realVfs, name, 0);
    return code == SQLITE_OK && flushed && failing_disk::fails() ? SQLITE_IOERR_DIR_FSYNC : code;
}

} // namespace

void failing_disk::install()
{
    static sqlite3_vfs vfs;
    if (realVfs)
        return;
    realVfs = sqlite3_vfs_find(nullptr);
    vfs = *realVfs; // what is not replaced below needs nothing of the file
    vfs.pNext = nullptr;
    vfs.zName = "failing";
    vfs.szOsFile = static_cast<int>(sizeof(File)) + realVfs->szOsFile;
    vfs.xOpen = open;
    vfs.xDelete = remove;
    if (sqlite3_vfs_register(&vfs, 1) != SQLITE_OK)
        qFatal("SQLite does not take the file system");
}
