#include "support/failing_disk.h"

#include <cstring>
#include <string>

#include <unistd.h>

namespace failing_disk
{

namespace
{

struct State
{
    std::string folder;
    int calls = 0;
    int failing = 0;
    Kind kind = Kind::Full;
    bool counts = false;
    int insideSqlite = 0;
};

State &state()
{
    static State theState;
    return theState;
}

} // namespace

void begin(const QString &folder, int n, Kind kind) { state() = {folder.toStdString(), 0, n, kind, true, 0}; }

int end()
{
    state().counts = false;
    return state().calls;
}

bool fails()
{
    State &s = state();
    if (!s.counts)
        return false;
    ++s.calls;
    return s.failing > 0 && (s.kind == Kind::StaysFull ? s.calls >= s.failing : s.calls == s.failing);
}

bool failsAt(const char *path)
{
    const State &s = state();
    return s.counts && s.insideSqlite == 0 && std::strncmp(path, s.folder.c_str(), s.folder.size()) == 0 &&
           fails();
}

bool failsAt(int file)
{
    if (!state().counts || state().insideSqlite > 0)
        return false;
    char path[4096] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    return ::readlink(link.c_str(), path, sizeof path - 1) > 0 && failsAt(path);
}

Kind kind() { return state().kind; }

InsideSqlite::InsideSqlite() { ++state().insideSqlite; }
InsideSqlite::~InsideSqlite() { --state().insideSqlite; }

} // namespace failing_disk
