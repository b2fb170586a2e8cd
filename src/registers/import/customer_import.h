#pragma once

#include "base/progress.h"
#include "registers/import/import_fields.h"
#include "registers/import/import_table.h"

#include <QDate>

namespace db
{
class Connection;
}

// Tables of other programs become customers: what each row would be, what stands against it, and the storing.
namespace registers
{

/// A row of a table as the customer it would be.
struct ImportCandidate
{
    enum class State { Ready, Duplicate, Refused };

    std::size_t row = 0; // in the table
    State state = State::Ready;
    QString remark;     // why it is refused, whom it repeats, what was cut; empty: nothing to say
    bool taken = true;  // what repeats a customer is left out until the clerk takes it
    QStringList values; // by place in importFields(), in stored form
};

/// The rows of \a table, headings left out, as customers. Repeated is a customer of the register or an
/// earlier row with the same name and telephone, whatever their widths and blanks.
base::Result<std::vector<ImportCandidate>> importCandidates(db::Connection &connection,
                                                            const ImportTable &table,
                                                            const ImportAssignment &assignment,
                                                            const base::Progress &progress);

/// Stores those of \a candidates that are taken, all or none, with the next free keys, their search keys
/// and \a today as the day of the last change, and of the registration where the table gives none.
/// \return how many there were
base::Result<int> importCustomers(db::Connection &connection,
                                  const std::vector<const ImportCandidate *> &candidates, const QDate &today,
                                  const base::Progress &progress);

/// Writes the rows of \a candidates as \a fileName, a CSV file: the line and the remark of each, then its
/// cells as they came, so that they can be mended there and imported again.
base::Status writeImportReport(const QString &fileName, const ImportTable &table,
                               const ImportAssignment &assignment,
                               const std::vector<const ImportCandidate *> &candidates,
                               const base::Progress &progress);

} // namespace registers
