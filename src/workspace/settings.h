#pragma once

#include "workspace/settings_keys.h"

#include <QString>

#include <memory>

class QSettings;

namespace workspace
{

/// The user's preferences, kept outside the database as text under the application's name: the registry on
/// Windows, KanbaloreDatabase.ini in the user's configuration folder elsewhere.
class Settings
{
public:
    /// \a fileName: another INI file in place of the user's own.
    explicit Settings(const QString &fileName = {});
    ~Settings();

    /// What is stored, or the key's fallback.
    [[nodiscard]] QString text(const SettingKey &key) const;
    /// The text as a number; what does not parse counts as 0.
    [[nodiscard]] double number(const SettingKey &key) const;
    [[nodiscard]] int integer(const SettingKey &key) const;
    [[nodiscard]] bool checked(const SettingKey &key) const { return integer(key) == 1; }

    void write(const SettingKey &key, const QString &text);
    void write(const SettingKey &key, int number) { write(key, QString::number(number)); }
    void write(const SettingKey &key, double number);
    void write(const SettingKey &key, bool checked) { write(key, checked ? 1 : 0); }

    /// Layout of a control ("frmOut/dgdSub/columns"): column widths, sizes. Empty when nothing is stored.
    [[nodiscard]] QString layout(const QString &control) const;
    void writeLayout(const QString &control, const QString &text);

    /// Writes what is pending to the store. \return false when the store cannot be written
    bool flush();

private:
    QString m_fileName;
    std::unique_ptr<QSettings> m_store;
};

} // namespace workspace
