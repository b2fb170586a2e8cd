#include "db/old_files/old_reader/confinement.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace db::old_reader
{

namespace
{

constexpr long long mebibyte = 1LL << 20;
constexpr long long memoryBound = 512 * mebibyte;
constexpr long long bytesPerSecond = 2 * mebibyte; // a slow machine reads many times as many
constexpr long long secondsAtLeast = 60;

} // namespace

#ifdef _WIN32

bool confine(long long fileSize)
{
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_PROCESS_MEMORY | JOB_OBJECT_LIMIT_PROCESS_TIME;
    limits.ProcessMemoryLimit = static_cast<SIZE_T>(memoryBound);
    limits.BasicLimitInformation.PerProcessUserTimeLimit.QuadPart =
        (secondsAtLeast + fileSize / bytesPerSecond) * 10'000'000;
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    return job && SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits) &&
           AssignProcessToJobObject(job, GetCurrentProcess());
}

std::FILE *takeOutput()
{
    const int pipe = _dup(1);
    if (pipe < 0 || _dup2(2, 1) < 0 || _setmode(pipe, _O_BINARY) < 0)
        return nullptr;
    return _fdopen(pipe, "wb");
}

#else

namespace
{

bool bound(decltype(RLIMIT_CPU) what, long long value)
{
    rlimit limit{};
    limit.rlim_cur = limit.rlim_max = static_cast<rlim_t>(value);
    return setrlimit(what, &limit) == 0;
}

bool boundMemory()
{
#ifdef __SANITIZE_ADDRESS__
    return true; // the sanitizer reserves terabytes of addresses for itself
#else
    return bound(RLIMIT_AS, memoryBound);
#endif
}

} // namespace

bool confine(long long fileSize)
{
    // A file size of 0: whatever happens, this process writes no file, not even its own memory at its end.
    return boundMemory() && bound(RLIMIT_CPU, secondsAtLeast + fileSize / bytesPerSecond) &&
           bound(RLIMIT_FSIZE, 0) && bound(RLIMIT_CORE, 0);
}

std::FILE *takeOutput()
{
    const int pipe = dup(STDOUT_FILENO);
    if (pipe < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        return nullptr;
    return fdopen(pipe, "wb");
}

#endif

} // namespace db::old_reader
