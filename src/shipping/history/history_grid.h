#pragma once

#include "ui/grid_rows.h"

namespace shipping
{

/// The columns in which a grid shows rows of 発送マスター.
QList<ui::GridColumn> historyColumns();

} // namespace shipping
