#pragma once

#include <QFile>
#include <QStringList>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

/// Takes the superuser's rights away for a while, to whom every file is writable; the files become the
/// user's.
class OrdinaryUser
{
public:
    explicit OrdinaryUser(const QStringList &files)
    {
#ifdef Q_OS_UNIX
        constexpr uid_t nobody = 65534;
        if (::geteuid() != 0)
            return;
        for (const QString &file : files) {
            if (::chown(QFile::encodeName(file).constData(), nobody, nobody) != 0)
                qFatal("%s cannot be given away", qPrintable(file));
        }
        m_changed = ::seteuid(nobody) == 0;
#endif
    }
    ~OrdinaryUser()
    {
#ifdef Q_OS_UNIX
        if (m_changed && ::seteuid(0) != 0)
            qFatal("the superuser's rights do not come back");
#endif
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

private:
    bool m_changed = false;
};
