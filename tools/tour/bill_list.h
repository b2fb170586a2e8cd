#pragma once

#include <QDir>

class QWidget;

namespace tour
{

class Walker;

/// Looks into the monthly list of bills and the charts that it leads to, and saves the list and a chart as
/// PDF in \a folder.
void lookIntoBillList(Walker &walker, QWidget &window, const QDir &folder);

} // namespace tour
