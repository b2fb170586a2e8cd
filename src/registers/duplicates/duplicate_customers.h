#pragma once

#include "base/progress.h"

#include <vector>

namespace db
{
class Connection;
}

// Customers that stand in the register more than once, probably.
namespace registers
{

/// A customer as a list of probable duplicates shows it.
struct ProbableDuplicate
{
    qint64 id = 0; // 納品先ID
    QString code, name, address, phone;
    QString changed; // 更新日, yyyy-MM-dd
    int slips = 0;
};

/// Customers that are probably one, the one with most slips first, of these the oldest.
struct DuplicateGroup
{
    bool samePhone = false;
    bool sameName = false; // and address
    std::vector<ProbableDuplicate> customers;
};

/// The groups of customers with a telephone number in common, or with name and address (and department, where
/// both name one), as people write them; in the order of their first keys.
base::Result<std::vector<DuplicateGroup>> duplicateCustomers(db::Connection &connection,
                                                             const base::Progress &progress);

} // namespace registers
