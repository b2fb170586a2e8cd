#pragma once

#include "base/result.h"

// The calls of the operating system that QFile does not offer.
namespace base
{

/// The sentence for what the operating system refused with the error \a number: \a what was not done to
/// \a fileName. A full disk is told as such.
Error diskError(const QString &what, const QString &fileName, int number);

/// Has the contents of \a fileName flushed to disk.
Status flushFile(const QString &fileName);

/// Has the entries of \a folder flushed to disk, where its file system can.
void flushFolder(const QString &folder);

/// Renames \a from over \a to in one step, so that either the old or the new file stands there, and has
/// the folder flushed to disk.
Status replaceFile(const QString &from, const QString &to);

} // namespace base
