#pragma once

#include "registers/import/ImportModel.h"

// What the screen of the import says about its rows.
namespace registers
{

/// Which rows are taken and how many: as new customers, as updates.
QString takenInWords(const ImportModel::TakenRows &rows);

/// How many rows of each kind there are.
QString countsInWords(const ImportModel &rows, const ImportAssignment &assignment);

/// What was stored and what is left.
QString importedInWords(const ImportModel::TakenRows &stored, const ImportModel &left);

/// The rows with the key or code of an earlier one, which stay out unless they are ticked; nothing when there
/// is none.
QString repeatsInWords(const ImportModel &rows);

/// "3、5 行目", the first few.
QString linesInWords(const QList<int> &lines);

} // namespace registers
