#include "shipping/slips/kept_window.h"

#include "workspace/settings.h"

#include <QWidget>

namespace shipping
{

namespace
{

// As the settings store has always held it.
enum StoredWindowState { Normal = 0, Minimised = 1, Maximised = 2 };

} // namespace

void restoreWindow(QWidget &window, const workspace::Settings &settings, const workspace::SettingKey &key)
{
    if (settings.integer(key) == Maximised)
        window.setWindowState(Qt::WindowMaximized);
}

void keepWindow(const QWidget &window, workspace::Settings &settings, const workspace::SettingKey &key)
{
    settings.write(key, window.isMaximized() ? Maximised : window.isMinimized() ? Minimised : Normal);
}

} // namespace shipping
