#include "workspace/workspace.h"

namespace workspace
{

Workspace::Workspace(db::Connection &theConnection, Settings &theSettings, const QString &applicationFolder,
                     Clock clock)
    : connection(theConnection)
    , settings(theSettings)
    , m_applicationFolder(applicationFolder)
    , m_clock(clock ? std::move(clock) : [] { return QDateTime::currentDateTime(); })
{}

QString Workspace::inApplicationFolder(const QString &name) const
{
    return joinPath(m_applicationFolder, name);
}

QString joinPath(const QString &folder, const QString &name)
{
    const bool ends = folder.endsWith(u'/') || folder.endsWith(u'\\');
    return ends ? folder + name : folder + u'/' + name;
}

} // namespace workspace
