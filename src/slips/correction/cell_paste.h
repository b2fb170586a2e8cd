#pragma once

#include "base/result.h"

#include <QString>

namespace db
{
class Recordset;
}

namespace ui
{
class Grid;
}

namespace slips
{

/// Types \a text, the cells of one row as a spreadsheet copies them, into the current row of \a rows, which
/// \a grid shows: from the current cell to the right, all of it or nothing. It is taken back as what is typed
/// is. Several rows are refused: on the way from one to the next each would be saved, past taking back.
/// \return why nothing was typed; what a cell does not take is told by \a rows
base::Status pasteCells(const ui::Grid &grid, db::Recordset &rows, const QString &text);

} // namespace slips
