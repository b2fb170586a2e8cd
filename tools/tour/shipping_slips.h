#pragma once

#include <QDir>

namespace workspace
{
class Workspace;
}

namespace tour
{

class Walker;

/// Looks at a parcel's slip on each of the forms, ready to be laid beside the paper.
void lookAtSlips(Walker &walker, workspace::Workspace &workspace, const QDir &folder);

} // namespace tour
