#pragma once

#include <QString>

// What a name is the name of, as shops write their customers.
namespace shipping
{

/// Whether \a name is one of a firm, a shop, an office, a club: not of a person.
bool isFirm(const QString &name);

/// Whether \a name is one of a part of a firm; 阿部 is a family's.
bool isSection(const QString &name);

/// Whether \a name is what somebody is in a firm.
bool isTitle(const QString &name);

} // namespace shipping
