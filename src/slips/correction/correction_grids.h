#pragma once

#include "book/slip_kind.h"
#include "db/recordset.h"

namespace ui
{
class Grid;
}

// How the correction screens show stored slips and their lines in grids: columns, captions, names and marks.
namespace slips
{

/// Shows the slips of \a kind in \a grid, under names in place of keys; a row whose edits cannot be saved
/// stays, and \a refused gets the reason. \a employees are the names of 社員ID.
void showHeadersIn(ui::Grid &grid, db::Recordset &headers, db::Connection &connection,
                   const book::SlipKind &kind, const QHash<qint64, QString> &employees,
                   std::function<void(const QString &)> refused);

/// The same for the lines of one slip; those whose figures disagree are marked. \a tellsTax: with class and
/// rate of each line's tax, where they are not the slip's own.
void showLinesIn(ui::Grid &grid, db::Recordset &lines, const book::SlipKind &kind, bool tellsTax,
                 std::function<void(const QString &)> refused);

} // namespace slips
