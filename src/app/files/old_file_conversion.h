#pragma once

#include "db/old_files/conversion.h"

namespace app
{

/// Carries the old file \a source over into the new file \a target as db::convertOldFile() does, with the
/// program's own values in columns that the old file lacks.
base::Result<db::ConversionSummary> convertOldFile(const QString &source, const QString &target,
                                                   const base::Progress &progress);

/// A free name beside \a source for the new file.
QString proposedName(const QString &source);

/// Writes the summary to \a fileName, for the file of papers.
base::Status saveSummary(const db::ConversionSummary &summary, const QString &fileName);

/// What a script finds in the process's exit code.
enum class ConversionExit { Complete = 0, Failed = 1, Incomplete = 3 };

/// The conversion without a screen: the summary goes to the standard output, what went wrong to the error
/// output.
ConversionExit convertAtCommandLine(const QString &source, const QString &target);

} // namespace app
