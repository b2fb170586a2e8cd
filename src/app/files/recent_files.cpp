#include "app/files/recent_files.h"

#include "workspace/settings.h"

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

const QString layout = u"frmAMain/recentFiles"_s;
constexpr qsizetype filesKept = 5;

} // namespace

QStringList recentFiles(const workspace::Settings &settings)
{
    return settings.layout(layout).split(u'\n', Qt::SkipEmptyParts).mid(0, filesKept);
}

void rememberFile(workspace::Settings &settings, const QString &fileName)
{
    QStringList files = recentFiles(settings);
    files.removeAll(fileName);
    files.prepend(fileName);
    settings.writeLayout(layout, files.mid(0, filesKept).join(u'\n'));
}

void forgetFile(workspace::Settings &settings, const QString &fileName)
{
    QStringList files = recentFiles(settings);
    files.removeAll(fileName);
    settings.writeLayout(layout, files.join(u'\n'));
}

} // namespace app
