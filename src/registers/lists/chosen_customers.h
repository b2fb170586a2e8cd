#pragma once

#include "db/recordset.h"

#include <optional>
#include <vector>

class QWidget;

namespace ui
{
class Grid;
}

namespace registers
{

/// Which customers of a list an action is about.
struct ChosenCustomers
{
    bool all = false;         // of the register, whatever the list shows
    std::vector<qint64> keys; // 納品先ID, in the list's order
};

/// Asks, where it is not plain, whether \a verb ("書き出し") is about the rows that are selected in \a grid
/// or about all of \a customers, which it shows; \a mayBeAll: about all of the register instead, of which the
/// list is a part. Nothing when the clerk goes back, or when the rows cannot be read, which is told.
std::optional<ChosenCustomers> askWhichCustomers(QWidget *parent, const ui::Grid &grid,
                                                 db::Recordset &customers, const QString &verb,
                                                 bool mayBeAll);

/// Leaves of several selected rows the one that is shown.
void selectShownRow(ui::Grid &grid, const db::Recordset &customers);

} // namespace registers
