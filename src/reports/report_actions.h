#pragma once

#include "base/report.h"

class QWidget;

namespace workspace
{
class Workspace;
}

// What every screen does with its report.
namespace reports
{

/// Shows \a report as it is printed today.
void printReport(workspace::Workspace &workspace, QWidget *parent, const base::Report &report);

/// Lets the clerk choose a file and writes \a report into it; see ui::exportTable().
void exportReport(QWidget *parent, const base::Report &report);

} // namespace reports
