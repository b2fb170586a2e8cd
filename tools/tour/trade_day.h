#pragma once

#include <QString>

class QDir;
class QWidget;

namespace workspace
{
class Workspace;
}

namespace tour
{

class Walker;

/// The shop's second day, after its first one: balances carried over, a purchase, a payment, a receipt, a
/// count of the stock and an estimate of two pages with its print, worked on the real screens of \a window.
/// The estimate ends in \a folder as PDF.
void tradeForADay(Walker &walker, workspace::Workspace &workspace, QWidget &window, const QDir &folder);

} // namespace tour
