#pragma once

#include "base/progress.h"
#include "registers/postal/postal_source.h"

namespace registers
{

/// The two dictionaries of an input method that list the whole country, which every machine has:
/// "SKK-JISYO.zipcode" (areas) and "SKK-JISYO.office.zipcode" in \a folder. Fails when one is missing or is
/// no such dictionary.
base::Result<PostalSource> readPostalDictionaries(const QString &folder, const base::Progress &progress);

/// The areas of the first dictionary: lines "0600001 /address/address/", the city's own entry
/// ("札幌市中央区") telling where cities end.
PostalSource areasOfDictionary(const QString &text);

/// The offices of the second one: lines "1008994 /name @ address/".
PostalSource officesOfDictionary(const QString &text);

} // namespace registers
