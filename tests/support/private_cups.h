#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace test
{

/// A print service of our own, beside the machine's: what its queues are given is kept instead of printed.
/// While it is there, this process and its children see it alone (CUPS_SERVER).
class PrivateCups
{
public:
    PrivateCups();
    ~PrivateCups();
    PrivateCups(const PrivateCups &) = delete;
    PrivateCups &operator=(const PrivateCups &) = delete;

    /// Why it could not be started: no CUPS on this machine, or not allowed to; empty when it runs.
    [[nodiscard]] QString reasonNotToRun() const { return m_reason; }

    /// Sets a queue up. \a driver: a PPD file of tests/data, or the name of one of CUPS' own drivers.
    /// \return whether it was done
    bool addQueue(const QString &name, const QString &driver);
    /// Runs one of CUPS' commands (cupsreject, cupsdisable). \return whether it was done
    static bool run(const QString &command, const QStringList &arguments);

    /// What arrived as job \a number, waiting for it; empty when nothing came.
    QByteArray arrived(int number) const;
    /// The copies and the options, one after the other, that came with it.
    QStringList options(int number) const;

private:
    void prepare();
    void start();
    void writeFile(const QString &name, const QByteArray &content) const;
    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    QProcess m_service;
    QString m_reason;
};

} // namespace test
