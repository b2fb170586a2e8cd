#pragma once

#include "base/result.h"

// Who may read and write a file, and where a link leads: what the operating systems do differently.
namespace base
{

/// What \a fileName leads to when it is a link, also when nothing stands there; else \a fileName itself.
QString linkedFile(const QString &fileName);

/// Makes the empty file \a fileName, which must not exist, for its owner alone, or for those for whom the
/// folder has a rule of its own.
Status makePrivateFile(const QString &fileName);

/// Gives \a fileName the owner, group and mode of \a model as far as this user may.
void giveRightsOf(const QString &model, const QString &fileName);

/// Gives the new file \a fileName the rights of a file with customers' data: for its owner alone, or for the
/// group too that shares the folder.
void giveRightsOfNewFile(const QString &fileName);

/// Whether only people who may do so anyway can have put the program \a fileName there, or changed it: it and
/// \a folder are this user's, root's, or of the group that shares \a folder with this user, and nobody else
/// can write them.
bool isTrusted(const QString &fileName, const QString &folder);

/// Makes \a folder, when it is not there, with the rights of the folder above it: who shares that shares
/// this.
bool makeSharedFolder(const QString &folder);

/// Gives the file \a from the second name \a to without copying it. False where that is not possible, and
/// when \a to exists.
bool linkFile(const QString &from, const QString &to);

} // namespace base
