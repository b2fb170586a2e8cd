#pragma once

#include <QStringList>

// The faces the settings name are those of a Windows machine; elsewhere others stand in for them.
namespace printing
{

/// A face as it is stored and used: without the "@" that marks one for vertical writing.
QString withoutVerticalMark(const QString &face);

/// The face of \a installed to print with: the stored one where it is installed under one of its names, else
/// the first installed stand-in of its style (mincho or gothic, fixed or proportional), else of any Japanese
/// style. Empty when nothing suits: the system then chooses.
QString installedFace(const QString &stored, const QStringList &installed);

} // namespace printing
