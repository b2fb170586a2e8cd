#pragma once

#include <QDir>

class QWidget;

namespace tour
{

class Walker;

/// Looks customers up by their address, and prints the roster of all of them as roster.pdf in \a folder.
void printRoster(Walker &walker, QWidget &window, const QDir &folder);

} // namespace tour
