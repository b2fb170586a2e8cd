#pragma once

#include <QStringList>

namespace workspace
{
class Settings;
}

namespace app
{

/// The database files worked in last, the latest first, at most five.
QStringList recentFiles(const workspace::Settings &settings);

/// Puts \a fileName at their head.
void rememberFile(workspace::Settings &settings, const QString &fileName);

/// Takes a file that was removed out of the list.
void forgetFile(workspace::Settings &settings, const QString &fileName);

} // namespace app
