#include "workspace/settings.h"

#include "text/numbers.h"

#include <QSettings>
#include <QStandardPaths>

#include <limits>

using namespace Qt::StringLiterals;

namespace workspace
{

namespace
{

std::unique_ptr<QSettings> openStore(const QString &fileName)
{
    if (!fileName.isEmpty())
        return std::make_unique<QSettings>(fileName, QSettings::IniFormat);
#ifdef Q_OS_WIN
    return std::make_unique<QSettings>(
        u"HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\KanbaloreDatabase"_s,
        QSettings::NativeFormat);
#else
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_unique<QSettings>(folder + u"/KanbaloreDatabase.ini"_s, QSettings::IniFormat);
#endif
}

QString pathOf(const SettingKey &key)
{
    return QLatin1StringView(key.section) + u'/' + QLatin1StringView(key.name);
}

} // namespace

Settings::Settings(const QString &fileName)
    : m_fileName(fileName)
    , m_store(openStore(fileName))
{}

Settings::~Settings() = default;

QString Settings::text(const SettingKey &key) const
{
    const QVariant stored = m_store->value(pathOf(key));
    // A list is what an INI file with unquoted commas reads as; somebody edited it by hand.
    if (stored.typeId() == QMetaType::QStringList)
        return stored.toStringList().join(u',');
    return stored.isValid() ? stored.toString() : QString::fromUtf16(key.fallback);
}

double Settings::number(const SettingKey &key) const { return text::numberOrZero(text(key)); }

int Settings::integer(const SettingKey &key) const
{
    const double value = number(key);
    if (value >= std::numeric_limits<int>::max() || value <= std::numeric_limits<int>::min())
        return 0;
    return static_cast<int>(value);
}

void Settings::write(const SettingKey &key, const QString &text) { m_store->setValue(pathOf(key), text); }

void Settings::write(const SettingKey &key, double number) { write(key, text::formatPlain(number)); }

QString Settings::layout(const QString &control) const
{
    return m_store->value(QLatin1StringView(layoutSection) + u'/' + control).toString();
}

void Settings::writeLayout(const QString &control, const QString &text)
{
    m_store->setValue(QLatin1StringView(layoutSection) + u'/' + control, text);
}

bool Settings::flush()
{
    m_store->sync();
    // What was not understood of a damaged file, or could not be written once, stays in the status for good
    // and covers how writing went. A second store takes over what the first one holds, still unwritten or
    // not, but not its status.
    if (m_store->status() != QSettings::NoError) {
        m_store = openStore(m_fileName);
        m_store->sync();
    }
    return m_store->status() == QSettings::NoError;
}

} // namespace workspace
