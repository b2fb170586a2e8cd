#pragma once

#include "base/progress.h"
#include "masters/name_lists.h"
#include "registers/import/import_fields.h"
#include "registers/import/import_table.h"

#include <QDate>
#include <QVariant>

#include <functional>

namespace db
{
class Connection;
}

// Tables of other programs become customers: what each row would be, what stands against it, and the storing.
namespace registers
{

/// A field of a customer that a row changes, in stored form.
struct ImportChange
{
    int field; // by place in importFields()
    QString before, after;
};

/// A row of a table as the customer it would be.
struct ImportCandidate
{
    enum class State {
        Ready,
        Duplicate,
        Refused,
        Update, // changes a customer that is there
        Same,   // stands there with all it says
        Merged, // what it says is in an earlier row of the same customer
    };

    std::size_t row = 0; // in the table
    int line = 0;        // of the file
    State state = State::Ready;
    QString remark{};        // why it is refused, whom it repeats or changes, what was cut or filled in
    bool taken = true;       // what repeats a customer is left out until the clerk takes it
    QStringList values{};    // by place in importFields(), in stored form
    QString newCategory{};   // the category that it names, which is made with it; empty: it is there
    QString givenKey{};      // 納品先ID as the table has it, whatever customers are matched by
    int repeats = 0;         // the line of an earlier row with its key or code; 0: none has it
    bool isNumbered = false; // its code is the one after the others', and stands in no table

    // Of an update.
    qint64 customer = 0; // 納品先ID
    QVariant version{};  // its 版 when it was compared
    std::vector<ImportChange> changes{};

    /// Whether the clerk may take it.
    [[nodiscard]] bool canBeTaken() const
    {
        return state != State::Refused && state != State::Same && state != State::Merged;
    }
};

/// What an import knows besides the register.
struct ImportSources
{
    std::function<QString(const QString &address)>
        postalCodeOf; // empty text: not known; none: no code is filled
};

/// The rows of \a table, headings left out, as customers. Repeated is a customer of the register or an
/// earlier row with the same name and telephone, whatever their widths and blanks, or with the same code or,
/// in the table, the same key; what such a row says goes into the earlier one where the assignment merges
/// them. Where the assignment matches, rows of customers that are there become their updates. Empty codes,
/// readings and postal codes of new customers are filled in as far as they are plain, which their remarks
/// say.
base::Result<std::vector<ImportCandidate>>
importCandidates(db::Connection &connection, const ImportTable &table, const ImportAssignment &assignment,
                 const base::Progress &progress, const ImportSources &sources = {});

/// The names of categories that rows name and the register does not have, each once.
QStringList unknownCategories(const ImportTable &table, const ImportAssignment &assignment,
                              const std::vector<masters::Entry> &categories);

/// Stores those of \a candidates that are taken, all or none: the new ones with the next free keys, their
/// search keys and \a today as the day of the last change, and of the registration where the table gives
/// none; the changes of the others, unless another program changed one of them since; the categories that are
/// made with them. \return how many there were
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
