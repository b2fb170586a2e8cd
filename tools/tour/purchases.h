#pragma once

#include <QDir>

class QWidget;

namespace tour
{

class Walker;

/// Buys from a supplier who adds the tax to the bill, enters that tax, and prints the month's purchases as
/// purchase-list.pdf in \a folder.
void buyAndList(Walker &walker, QWidget &window, const QDir &folder);

} // namespace tour
