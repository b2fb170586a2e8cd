#pragma once

class QWidget;

namespace workspace
{
class Workspace;
}

namespace tour
{

class Walker;

/// What went out is found again, numbered, and seen beside its slip; a slip of the shop is sent.
void lookIntoParcels(Walker &walker, workspace::Workspace &workspace, QWidget &window);

} // namespace tour
