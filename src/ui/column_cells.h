#pragma once

#include "base/column.h"

#include <QVariant>

namespace ui
{

/// What a grid's model answers for a cell of \a column that holds \a value: its text, its alignment.
QVariant cellOf(const base::Column &column, const QVariant &value, int role);

/// The same for the column's heading.
QVariant headingOf(const base::Column &column, int role);

} // namespace ui
