#pragma once

class QDir;
class QWidget;

namespace workspace
{
class Workspace;
}

namespace tour
{

class Walker;

/// A day of a shop that sells food and is registered: a product gets its class, a slip of two rates with a
/// discount its note, and goods come back of it. The notes end in \a folder as PDF.
void sellFood(Walker &walker, workspace::Workspace &workspace, QWidget &window, const QDir &folder);

} // namespace tour
