#pragma once

#include "registers/postal/postal_cities.h"

#include <functional>

namespace registers
{

/// An area as one group of the table has it.
struct PostalRunRecord
{
    QString code;
    QString place;  // what is compared with an address
    QString remark; // shown after it
};

/// A group's name and its cities.
struct PostalRunCities
{
    QString lead;                                      // what stands before the town in an address
    std::vector<const PostalCity *> cities;            // several when they share the name
    std::function<QString(const PostalCity &)> remark; // what the lead does not say of a city
    bool listsCityOnly = false;                        // the name alone is too little to tell the city by
};

/// The records of a group from general to specific: of those that occur in an address, the last is the right
/// one. A town that several of the cities have stands with its city's full name, so that a search lists it
/// and never takes it for the only one. A town in another spelling stands after the last character of the
/// group's name alone ("区霞ヶ関"): it is found in a whole address, and not listed beside the town itself.
std::vector<PostalRunRecord> postalRun(const PostalRunCities &group);

} // namespace registers
