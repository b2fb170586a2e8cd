#pragma once

#include <QDir>

class QWidget;

namespace tour
{

class Walker;

/// Looks into the seven daily reports, and saves two of them as PDF in \a folder, one upright and one lying.
void lookIntoDayReports(Walker &walker, QWidget &window, const QDir &folder);

} // namespace tour
