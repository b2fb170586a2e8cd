#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace house
{

/// What the house asks of a form \a path ("slips/frmOut.ui"): class and file share their name; object names
/// are unique; children lie in layouts; the form fits a screen of 1366 × 768; every control that takes the
/// focus is among the tab stops and has a name for screen readers. \return findings as "path: what is wrong"
QStringList checkForm(const QString &path, const QByteArray &xml);

} // namespace house
