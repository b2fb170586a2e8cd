#pragma once

#include "base/progress.h"
#include "registers/postal/postal_index.h"
#include "text/postal_code.h"

#include <QStringList>

#include <memory>
#include <optional>

// Japanese postal codes from addresses and back, out of the data files of the application's folder.
namespace registers
{

/// The folder of the data files and what was loaded of them at the start.
struct PostalData
{
    QString folder;
    std::shared_ptr<const PostalIndex> index; // none: as an empty one
    /// "ZipCode1.txt", once it was read for this lookup.
    mutable std::optional<QByteArray> nationwide{};
};

/// What a search found.
struct PostalFinds
{
    QString code;         // "NNN-NNNN" of the area that the text names; empty: it names none
    QStringList lines;    // one a match, its first eight characters the code
    bool stopped = false; // before the search was through
};

/// \a typed without its first "大字", which the table's addresses do not have.
QString postalSearchText(const QString &typed);

/// The silent lookup: the code of \a address, or an empty text when there is none or a file cannot be read.
/// Blanks between the parts of an address do not matter. A place of that name in another prefecture than the
/// one that is written is none.
QString postalCodeOf(const PostalData &data, const QString &address);

/// Every area that \a text names or is part of: one group of the index, else the nationwide table
/// "ZipCode1.txt" as a whole. \a progress is asked between the records whether to go on.
base::Result<PostalFinds> searchAreas(const PostalData &data, const QString &text,
                                      const base::Progress &progress);

/// The same among the business offices of "ZIPCODE2.txt".
base::Result<PostalFinds> searchOffices(const PostalData &data, const QString &text,
                                        const base::Progress &progress);

using text::completePostalCode;

/// The addresses of the areas that have the code \a code ("NNN-NNNN"), each once, as "ZipCode1.txt" has them.
base::Result<QStringList> addressesOf(const PostalData &data, const QString &code);

/// Whether an area has both codes; a large town has several, and the address alone does not tell which.
bool shareAnArea(const PostalData &data, const QString &code, const QString &otherCode);

/// Whether an area that has \a code is a whole city: the code of all that has none of its own there.
bool isOfWholeCity(const PostalData &data, const QString &code);

/// Whether \a code stands for the rest of a city in which \a standing lies: it says less then. A code that
/// no area has, as an office has one of its own, may lie anywhere.
bool isGeneralFor(const PostalData &data, const QString &code, const QString &standing);

} // namespace registers
