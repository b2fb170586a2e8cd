#pragma once

#include <QDir>

class QWidget;

namespace tour
{

class Walker;

/// Addresses one customer and then all of them, on paper of every kind; the pages go to \a folder.
void addressCustomers(Walker &walker, QWidget &window, const QDir &folder);

} // namespace tour
