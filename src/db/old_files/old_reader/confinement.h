#pragma once

#include <cstdio>

namespace db::old_reader
{

/// Bounds what this process may take of the machine's memory and time while it reads a file of \a fileSize
/// bytes; a damaged file leads the library into endless loops and absurd allocations. \return false when the
/// bounds cannot be set
bool confine(long long fileSize);

/// The pipe to the program. What the library itself prints goes to the error output from now on.
std::FILE *takeOutput();

} // namespace db::old_reader
