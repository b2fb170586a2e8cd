#pragma once

#include <QString>

// What a name is the name of, as shops write their customers.
namespace shipping
{

/// Whether \a name is one of a firm, a shop, an office, a club: not of a person.
bool isFirm(const QString &name);

/// Whether \a name is one of a part of a firm.
bool isSection(const QString &name);

} // namespace shipping
