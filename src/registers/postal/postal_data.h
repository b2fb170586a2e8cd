#pragma once

#include "base/progress.h"
#include "registers/postal/postal_source.h"

// The postal-code files of the application's folder, made of a national list.
namespace registers
{

/// What was written.
struct PostalReport
{
    qsizetype areas = 0;   // of the list
    qsizetype offices = 0; // of the list
    qsizetype groups = 0;
    qsizetype records = 0;
    qsizetype shortened = 0; // places longer than the table's 60 bytes
    qsizetype replaced = 0;  // entries with a character that the files' code page lacks
};

/// Writes the areas of \a source as "ZIPCODE.txt", "ZIPID1.txt" and "ZipCode1.txt" into \a folder, its
/// offices as "ZIPCODE2.txt". What the source has none of stays as it is, or is made empty where it is
/// missing. All files are replaced or none.
base::Result<PostalReport> writePostalData(const PostalSource &source, const QString &folder,
                                           const base::Progress &progress);

/// What the clerk should be asked before \a source is written: a list that covers only a part of the country
/// would take the rest away. Empty when all is well.
QString postalDoubt(const PostalSource &source);

/// What was taken and what was refused, for the clerk.
QString postalSummary(const PostalSource &source, const PostalReport &report);

} // namespace registers
