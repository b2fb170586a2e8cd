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

/// Opens the slip that a row's \a link leads to in its correction screen. \return whether it leads to one
bool openSlipOf(workspace::Workspace &workspace, QWidget *parent, const QVariant &link);

} // namespace reports
