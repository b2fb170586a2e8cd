#pragma once

#include "registers/import/customer_import.h"

#include <QHash>

// Rows of a table that stand for one customer, and those whose customer the register has.
namespace registers
{

/// What an earlier row took over from later ones of the same key or code.
struct ImportMerge
{
    std::size_t into; // place among the candidates
    QString remark;
    bool isOtherName = false; // which waits to be taken by hand
};

/// Puts what rows say into the first one of their key (納品先ID) or code; an empty cell says nothing. Before
/// the rows are judged.
std::vector<ImportMerge> mergeRepeatedRows(std::vector<ImportCandidate> &candidates);

/// Says in the remarks of the rows what they took over.
void tellMerges(std::vector<ImportCandidate> &candidates, const std::vector<ImportMerge> &merges);

/// Leaves out, until they are taken by hand, the new rows that repeat an earlier one, by key, code, or name
/// and telephone. Refuses a second update of one customer: nobody could tell which is the newer one.
void markRepeatedRows(std::vector<ImportCandidate> &candidates);

/// Shows key, name, telephone number and code of each customer; stopped when \a goOn says so.
base::Status visitCustomers(db::Connection &connection, const std::function<bool()> &goOn,
                            const std::function<void(const QVariantList &)> &visit);

/// Finds the new rows that a customer of the register stands behind.
class KnownRows
{
public:
    explicit KnownRows(const std::vector<ImportCandidate> &candidates);

    /// Leaves out the rows with name and telephone, with the code or, where they are matched by it, with the
    /// key of \a customer: key, name, telephone, code.
    void mark(std::vector<ImportCandidate> &candidates, const QVariantList &customer) const;

private:
    using Places = QHash<QString, std::vector<std::size_t>>;
    Places m_byName;
    Places m_byCode;
    Places m_byKey;
};

} // namespace registers
