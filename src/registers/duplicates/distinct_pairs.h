#pragma once

#include "registers/duplicates/duplicate_customers.h"

#include <QStringList>

// Customers that look like one and are two, as a clerk has said.
namespace registers
{

/// The pairs that were marked so. The book has no place for it, so that the settings keep it; a mark is made
/// of the keys and of what both rows say of name, address and telephone: in another book, or once one of the
/// two is changed, it holds no more.
class DistinctPairs
{
public:
    explicit DistinctPairs(const QString &stored = {});

    [[nodiscard]] bool has(const ProbableDuplicate &one, const ProbableDuplicate &other) const;
    void mark(const ProbableDuplicate &one, const ProbableDuplicate &other, bool isDistinct);

    /// As the constructor takes it; of very many marks the last ones.
    [[nodiscard]] QString stored() const;

private:
    QStringList m_marks;
};

/// \a groups without the customers that are marked as another one than each of their group.
std::vector<DuplicateGroup> withoutDistinct(const std::vector<DuplicateGroup> &groups,
                                            const DistinctPairs &distinct);

} // namespace registers
