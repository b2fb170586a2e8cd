#include "support/private_cups.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace test
{

namespace
{

constexpr int patience = 20000; // milliseconds

const QString systemFolder = u"/usr/lib/cups"_s;

QString serviceProgram() { return QStandardPaths::findExecutable(u"cupsd"_s, {u"/usr/sbin"_s}); }

// The service runs its filters under this name; as root it takes a lesser one.
QByteArray userName() { return geteuid() == 0 ? "lp" : qgetenv("USER"); }

// job, user, title, copies, options, file or standard input
const char capture[] = R"(#!/bin/sh
[ $# -eq 0 ] && { echo 'direct capture "Unknown" "Capture"'; exit 0; }
printf '%s\n%s\n' "$4" "$5" > "OUT/$1.options"
if [ -n "$6" ]; then cat "$6" > "OUT/$1.part"; else cat > "OUT/$1.part"; fi
mv "OUT/$1.part" "OUT/$1.data"
)";

const char serviceSettings[] = R"(LogLevel warn
Listen FOLDER/state/cups.sock
Browsing Off
WebInterface No
DefaultAuthType None
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
    Allow all
  </Limit>
</Policy>
)";

const char fileSettings[] = R"(ServerRoot FOLDER/root
RequestRoot FOLDER/spool
CacheDir FOLDER/cache
StateDir FOLDER/state
ServerBin FOLDER/bin
DocumentRoot FOLDER/root
TempDir FOLDER/tmp
AccessLog FOLDER/access_log
ErrorLog FOLDER/error_log
PageLog FOLDER/page_log
User USER
Group GROUP
)";

} // namespace

PrivateCups::PrivateCups()
{
    if (serviceProgram().isEmpty()) {
        m_reason = u"CUPS is not installed"_s;
        return;
    }
    prepare();
    start();
}

PrivateCups::~PrivateCups()
{
    m_service.terminate();
    m_service.waitForFinished(patience);
    qunsetenv("CUPS_SERVER");
}

void PrivateCups::writeFile(const QString &name, const QByteArray &content) const
{
    QByteArray filled = content;
    filled.replace("FOLDER", m_folder.path().toUtf8()).replace("OUT", path(u"out"_s).toUtf8());
    filled.replace("USER", userName()).replace("GROUP", userName());
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(filled) != filled.size())
        qFatal("%s cannot be written", qPrintable(name));
}

void PrivateCups::prepare()
{
    for (const auto *folder : {"root/ppd", "cache", "state", "spool", "tmp", "out", "bin/backend"})
        QDir(m_folder.path()).mkpath(QLatin1StringView(folder));
    // The system's filters and helpers, with a back end of our own.
    for (const auto *folder : {"filter", "daemon", "driver", "monitor", "notifier", "cgi-bin"})
        QFile::link(systemFolder + u'/' + QLatin1StringView(folder),
                    path(u"bin/"_s + QLatin1StringView(folder)));
    writeFile(u"bin/backend/capture"_s, capture);
    writeFile(u"root/cupsd.conf"_s, serviceSettings);
    writeFile(u"root/cups-files.conf"_s, fileSettings);
    const auto everybody = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup |
                           QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    QFile::setPermissions(path(u"bin/backend/capture"_s), everybody);
    QFile::setPermissions(m_folder.path(), everybody);
    for (const auto *folder : {"tmp", "out"})
        QFile::setPermissions(path(QLatin1StringView(folder)),
                              everybody | QFile::WriteGroup | QFile::WriteOther);
}

void PrivateCups::start()
{
    m_service.setProcessChannelMode(QProcess::MergedChannels);
    m_service.start(serviceProgram(),
                    {u"-f"_s, u"-c"_s, path(u"root/cupsd.conf"_s), u"-s"_s, path(u"root/cups-files.conf"_s)});
    const QString socket = path(u"state/cups.sock"_s);
    const bool isUp = QTest::qWaitFor(
        [&] { return QFile::exists(socket) || m_service.state() == QProcess::NotRunning; }, patience);
    if (!isUp || m_service.state() == QProcess::NotRunning)
        m_reason = u"a print service of one's own cannot be started here: "_s +
                   QString::fromUtf8(m_service.readAll());
    qputenv("CUPS_SERVER", socket.toUtf8());
}

bool PrivateCups::run(const QString &command, const QStringList &arguments)
{
    QProcess process;
    process.start(QStandardPaths::findExecutable(command, {u"/usr/sbin"_s, u"/usr/bin"_s}), arguments);
    return process.waitForFinished(patience) && process.exitCode() == 0;
}

bool PrivateCups::addQueue(const QString &name, const QString &driver)
{
    const bool isFile = QFile::exists(driver);
    return run(u"lpadmin"_s,
               {u"-p"_s, name, u"-v"_s, u"capture:/"_s, isFile ? u"-P"_s : u"-m"_s, driver, u"-E"_s});
}

QByteArray PrivateCups::arrived(int number) const
{
    QFile file(path(u"out/%1.data"_s.arg(number)));
    if (!QTest::qWaitFor([&] { return file.exists(); }, patience) || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QStringList PrivateCups::options(int number) const
{
    QFile file(path(u"out/%1.options"_s.arg(number)));
    return file.open(QIODevice::ReadOnly)
               ? QString::fromUtf8(file.readAll()).split(QRegularExpression(u"\\s+"_s), Qt::SkipEmptyParts)
               : QStringList();
}

} // namespace test
