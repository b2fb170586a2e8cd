#pragma once

#include <QString>

/// A disk that fails, for tests that prove what a failure costs. Every call that changes a file counts: those
/// of SQLite, through a file system of its own that stands before the real one, and those that Qt and the
/// program make themselves, through functions that stand before the C library's. Nothing is flushed, for
/// speed.
namespace failing_disk
{

enum class Kind {
    Full,     // one write finds no room
    Broken,   // one call fails
    Short,    // one write is broken off in the middle
    StaysFull // nothing can be written from then on
};

/// Makes it SQLite's default; to be called before any database is opened.
void install();

/// From now on the \a n-th call on a file in \a folder fails; 0: none does.
void begin(const QString &folder, int n, Kind kind);

/// The disk is whole again. \return how many calls there were
int end();

/// Counts a call of SQLite or of the C library. \return whether it fails
bool fails();
bool failsAt(const char *path);
bool failsAt(int file);
Kind kind();

/// While there is one, the calls of the C library are SQLite's and are not counted again.
class InsideSqlite
{
public:
    InsideSqlite();
    ~InsideSqlite();
    InsideSqlite(const InsideSqlite &) = delete;
    InsideSqlite &operator=(const InsideSqlite &) = delete;
};

} // namespace failing_disk
