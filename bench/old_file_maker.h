#pragma once

#include <QString>

namespace bench
{

/// Makes \a target of the old file \a sample: the same, but with the pages of the slip lines \a times over
/// and entered in the table's map and count. Ends the program when it cannot. \return the lines it has
int enlargeOldFile(const QString &sample, const QString &target, int times);

} // namespace bench
