#pragma once

#include <QString>

namespace base
{

/// Whether both names mean the same file; upper and lower case count as equal. An empty name means none.
bool isSameFile(const QString &one, const QString &other);

} // namespace base
