#pragma once

#include "base/column.h"

#include <QVariant>

namespace text
{

/// A value, as it is stored, as it is shown in a column: "2026/04/01", "1,234"; NULL as nothing. A text in a
/// column of numbers is shown as it stands, not as 0.
QString formatValue(base::Format format, const QVariant &value);

} // namespace text
