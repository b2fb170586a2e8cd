// The calls of the C library by which Qt and the program change files, with a disk that fails.
#include "support/failing_disk.h"

#include <cerrno>
#include <cstdarg>
#include <cstddef>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/types.h>
#include <unistd.h>

using failing_disk::failsAt;

namespace
{

template <class Function>
Function *next(Function *, const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

int refused()
{
    errno = failing_disk::kind() == failing_disk::Kind::Broken ? EIO : ENOSPC;
    return -1;
}

bool isThere(const char *path) { return ::access(path, F_OK) == 0; }

} // namespace

extern "C" {

ssize_t write(int file, const void *from, size_t size)
{
    static const auto real = next(&write, "write");
    if (!failsAt(file))
        return real(file, from, size);
    if (failing_disk::kind() == failing_disk::Kind::Short && size > 1)
        return real(file, from, size / 2);
    return refused();
}

ssize_t sendfile64(int to, int from, off64_t *at, size_t size) noexcept
{
    static const auto real =
        reinterpret_cast<ssize_t (*)(int, int, off64_t *, size_t)>(::dlsym(RTLD_NEXT, "sendfile64"));
    return failsAt(to) ? refused() : real(to, from, at, size);
}

int fsync(int file) { return failsAt(file) ? refused() : 0; }

int rename(const char *from, const char *to) noexcept
{
    static const auto real =
        reinterpret_cast<int (*)(const char *, const char *)>(::dlsym(RTLD_NEXT, "rename"));
    return failsAt(to) ? refused() : real(from, to);
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned flags) noexcept
{
    static const auto real = reinterpret_cast<int (*)(int, const char *, int, const char *, unsigned)>(
        ::dlsym(RTLD_NEXT, "renameat2"));
    return failsAt(to) ? refused() : real(fromFolder, from, toFolder, to, flags);
}

int link(const char *from, const char *to) noexcept
{
    static const auto real =
        reinterpret_cast<int (*)(const char *, const char *)>(::dlsym(RTLD_NEXT, "link"));
    return failsAt(to) ? refused() : real(from, to);
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    static const auto real =
        reinterpret_cast<int (*)(int, const char *, int, const char *, int)>(::dlsym(RTLD_NEXT, "linkat"));
    return failsAt(to) ? refused() : real(fromFolder, from, toFolder, to, flags);
}

int unlink(const char *path) noexcept
{
    static const auto real = reinterpret_cast<int (*)(const char *)>(::dlsym(RTLD_NEXT, "unlink"));
    // A file can be removed from a disk that is full.
    const bool hinders = failing_disk::kind() == failing_disk::Kind::Broken && isThere(path);
    return hinders && failsAt(path) ? refused() : real(path);
}

int open64(const char *path, int flags, ...)
{
    static const auto real = reinterpret_cast<int (*)(const char *, int, ...)>(::dlsym(RTLD_NEXT, "open64"));
    mode_t mode = 0;
    if ((flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE) {
        std::va_list rest;
        va_start(rest, flags);
        mode = va_arg(rest, mode_t);
        va_end(rest);
    }
    const bool changes = (flags & O_ACCMODE) != O_RDONLY;
    return changes && failsAt(path) ? refused() : real(path, flags, mode);
}

} // extern "C"
