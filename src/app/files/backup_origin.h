#pragma once

#include <QString>

namespace db
{
class Connection;
}

// Whether a backup may be replaced by another one without being kept.
namespace app
{

/// What the closed file \a fileName is like: another text as soon as somebody saved something in it. Empty
/// when it cannot be read.
QByteArray stateOf(const QString &fileName);

/// Writes down beside \a backup that it is about to be replaced by the complete \a copy of \a database. Where
/// that fails, the backup counts as one of another file the next time, and is kept.
void noteOrigin(const QString &backup, const QString &database, const QString &copy);

/// Why the backup of the last exit is to be kept when a copy of \a connection's file takes its place, for its
/// new name: it is of another file, someone worked in it, or it has more in it. Empty: there is no reason.
QString reasonToKeepLast(const QString &backup, db::Connection &connection);

/// The same for the backup of a day, which is always of the same file.
QString reasonToKeepDated(const QString &backup, db::Connection &connection);

/// The word in the names of those that were kept because they are of another file.
extern const QString ofAnotherFile;

} // namespace app
