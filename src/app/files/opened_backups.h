#pragma once

#include "base/result.h"

#include <QDate>
#include <QString>

// Copies of backups that were opened: those that somebody worked in stay, the others go when they are left.
namespace app
{

/// Brings the closed copy \a copy of a backup up to date, and writes down beside it what it is like now. A
/// copy that cannot be brought up to date is removed.
base::Status readyToBeOpened(const QString &copy, const QDate &today);

enum class LeftCopy { None, Cleared, Kept };

/// Removes \a fileName, and the backups made of it, when it is such a copy and nothing was changed in it. It
/// is not open any more here; where another program has it open, or its state was not written down, it stays.
/// \return None when it is no such copy
LeftCopy leaveCopy(const QString &fileName, const QString &applicationFolder);

} // namespace app
