#pragma once

#include <QDir>

class QWidget;

namespace workspace
{
class Workspace;
}

namespace tour
{

class Walker;

/// Loads what a customer sent last year onto a gift order sheet, has it signed, and lists the season.
void sendGifts(Walker &walker, workspace::Workspace &workspace, QWidget &window, const QDir &folder);

} // namespace tour
