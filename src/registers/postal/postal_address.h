#pragma once

#include "registers/postal/postal_lookup.h"

namespace registers
{

/// An address on the two lines that it has on paper.
struct AddressLines
{
    QString first;
    QString second; // empty where the first has room for all of it
};

/// \a address on lines of \a bytes (CP932: a full-width character takes 2), divided where a person would:
/// behind its city, else where kana and kanji meet. Only an address that is too wide even for two lines does
/// not fit afterwards.
AddressLines dividedAddress(const PostalData &data, const QString &address, int bytes);

} // namespace registers
