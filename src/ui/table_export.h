#pragma once

#include "base/progress.h"

#include <QString>

class QWidget;

namespace ui
{

/// A table that a screen writes for spreadsheets.
struct TableExport
{
    /// Whether it can be written under that name, asked before anything else happens.
    std::function<base::Status(const QString &fileName)> check;
    std::function<base::Status(const QString &fileName, const base::Progress &progress)> write;
    /// What it is called: the file's name is proposed from it. Empty: none is proposed.
    QString title = {};
};

/// Lets the clerk choose a file, asks before one is replaced, writes the table and opens it with its
/// associated program. A file that no program opens is told with its place, and a failure in its words.
void exportTable(QWidget *parent, const TableExport &table);

} // namespace ui
