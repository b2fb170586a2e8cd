#pragma once

#include "base/progress.h"
#include "db/old_files/conversion_summary.h"

#include <QVariant>

namespace db
{

/// What a column gets that the old file lacks; invalid for NULL. \a valueOf: the row's other values.
using MissingValue = std::function<QVariant(const QString &table, const QString &column,
                                            const std::function<QVariant(const QString &column)> &valueOf)>;

struct ConversionOptions
{
    QString reader;       // the program that reads; empty: as it is installed
    int silence = 20'000; // ms after which the reader is given up
    MissingValue missing; // none: all such columns stay NULL
};

/// Carries the contents of the old file \a source over into the new file \a target, which must not exist:
/// written under a temporary name in one transaction, checked, flushed and renamed. \a source is only read.
/// After a failure, or when \a progress stopped it, there is no new file.
base::Result<ConversionSummary> convertOldFile(const QString &source, const QString &target,
                                               const base::Progress &progress,
                                               const ConversionOptions &options = {});

} // namespace db
