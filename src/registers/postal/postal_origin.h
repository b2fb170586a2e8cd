#pragma once

#include "base/result.h"
#include "registers/postal/postal_file_set.h"

#include <QString>

namespace registers
{

/// Where the postal-code files of a folder come from, kept beside them in "ZIPORIGIN.txt" as lines
/// "areas=ORIGIN" and "offices=ORIGIN". An origin is "dictionary:" or "postal-service:" and a checksum of
/// what was written; empty when nobody noted it, as with files that somebody put there by hand.
struct PostalOrigin
{
    QString areas;   // ZIPCODE.txt, ZIPID1.txt, ZipCode1.txt
    QString offices; // ZIPCODE2.txt
};

PostalOrigin postalOriginOf(const QString &folder);

/// Replaces files in \a folder, all or none, and notes \a origin. A program that breaks off in between leaves
/// a note that has the delivered files brought in again, so that no half-replaced table is ever used for
/// long.
base::Status replacePostalFiles(const QString &folder, const std::vector<PostalFile> &files,
                                const PostalOrigin &origin);

/// Brings the delivered postal-code files from \a source into \a folder: where it has none or lacks a part
/// without which the others are of no use, and where it has those of an older delivery. What the user made of
/// the postal service's own lists, or put there, stays.
base::Status bringPostalData(const QString &source, const QString &folder);

} // namespace registers
