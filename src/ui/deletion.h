#pragma once

#include <QString>

class QWidget;

namespace workspace
{
class Workspace;
}

namespace ui
{

/// Asks \a question before a table or a great part of it is deleted. Below it stand \a what goes, with its
/// numbers of rows, and the dated name under which the whole file is kept. After Yes that copy is made; a
/// failure of it is told. \return whether to delete: Yes was said and the copy is complete
bool askToDeleteMany(QWidget *parent, workspace::Workspace &workspace, const QString &question,
                     const QString &what);

} // namespace ui
