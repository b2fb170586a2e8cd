#pragma once

class QWidget;

namespace workspace
{
class Settings;
struct SettingKey;
} // namespace workspace

namespace shipping
{

/// Lets \a window open maximised where it was closed so. To be called before it is set up.
void restoreWindow(QWidget &window, const workspace::Settings &settings, const workspace::SettingKey &key);

/// Keeps whether \a window is maximised.
void keepWindow(const QWidget &window, workspace::Settings &settings, const workspace::SettingKey &key);

} // namespace shipping
