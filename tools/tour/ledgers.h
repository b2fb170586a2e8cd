#pragma once

#include <QDir>

class QWidget;

namespace tour
{

class Walker;

/// Looks into the balances, from there into the first customer's ledger, prints it as ledger.pdf in \a
/// folder, and looks into the other ledgers and lists.
void lookIntoLedgers(Walker &walker, QWidget &window, const QDir &folder);

} // namespace tour
