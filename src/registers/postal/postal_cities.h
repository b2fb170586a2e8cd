#pragma once

#include "registers/postal/postal_source.h"

namespace registers
{

/// A town as addresses write it.
struct PostalTown
{
    QString name; // empty: the rest of the city
    QString code;
    QStringList otherSpellings; // as they stand after the city's name
    QStringList anywhere;       // as they stand wherever in an address
};

/// A city, village or ward with its towns, in the list's order.
struct PostalCity
{
    QString prefecture;
    QString outer; // county or designated city: 虻田郡, 札幌市; may be empty
    QString name;  // ニセコ町, 中央区
    std::vector<PostalTown> towns;

    [[nodiscard]] bool isWard() const { return name.endsWith(u'区'); }
    [[nodiscard]] QString withoutPrefecture() const { return outer + name; }
    [[nodiscard]] QString full() const { return prefecture + outer + name; }
};

/// The cities of a list; an area that stands there twice is taken once.
std::vector<PostalCity> postalCities(const std::vector<PostalArea> &areas);

} // namespace registers
