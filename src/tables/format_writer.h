#pragma once

#include "base/result.h"
#include "tables/table_writer.h"

#include <memory>
#include <vector>

// The file formats behind tables/table_writer.h.
namespace tables
{

/// Writes one table into one file, which is nobody's until finish() has succeeded. What a failed call left in
/// the file is the caller's to remove.
class FormatWriter
{
public:
    virtual ~FormatWriter() = default;

    /// Opens the file; the headings become its first row.
    virtual base::Status begin(const std::vector<base::Column> &columns) = 0;
    virtual base::Status addRow(const std::vector<Cell> &cells) = 0;
    /// Completes and closes the file.
    virtual base::Status finish() = 0;
};

std::unique_ptr<FormatWriter> csvWriter(const QString &fileName);
std::unique_ptr<FormatWriter> xlsWriter(const QString &fileName);
std::unique_ptr<FormatWriter> xlsxWriter(const QString &fileName);

/// The clerk's sentence for a file that cannot be written.
base::Error writeError(const QString &detail);

} // namespace tables
