#pragma once

#include "base/replacement.h"
#include "db/care/plain_handle.h"
#include "db/care/salvage.h"
#include "db/care/use_mark.h"

namespace db
{

/// The repair and compaction of a closed database file, step by step, so that a screen can say what was
/// found. Until the last step the file is only read; what is written stands under another name, and goes
/// when the repair ends early.
class FileRepair
{
public:
    explicit FileRepair(const QString &fileName);
    FileRepair(const FileRepair &) = delete;
    FileRepair &operator=(const FileRepair &) = delete;

    /// Takes the file for this program alone; fails when another one has it open, or when it is of a newer
    /// version.
    base::Status begin();

    /// SQLite's integrity check. \return how many faults were found, at most 100
    base::Result<int> check(const base::Progress &progress);

    /// Builds the new file of a sound one.
    base::Status compact(const base::Progress &progress);

    /// Builds the new file of the rows that can be read in a damaged one; fails when there are none.
    base::Result<Salvage> salvage(const base::Progress &progress);

    /// Puts the new file in the place of the old one, which stays as \a kept unless that is empty.
    base::Status finish(const QString &kept);

private:
    QString m_fileName;
    base::Replacement m_new;
    bool m_isOurs = false; // by its header
    UseMark m_mark;
    PlainHandle m_file;
};

/// Writes a compacted copy of the file open in \a source to \a target, which is empty or does not exist.
base::Status compactInto(PlainHandle &source, const QString &target, const base::Progress &progress);

/// SQLite's integrity check of the file open in \a file. \return how many faults were found, at most 100
base::Result<int> countFaults(PlainHandle &file, const base::Progress &progress);

} // namespace db
