#pragma once

#include <QString>

class QWidget;

namespace workspace
{
class Workspace;
}

namespace registers
{

/// Whether there are categories of customers. Where there are none, \a sentence is told, their editor opens
/// over \a screen, and they are looked for again.
bool hasCategories(workspace::Workspace &workspace, QWidget *screen, const QString &sentence);

} // namespace registers
