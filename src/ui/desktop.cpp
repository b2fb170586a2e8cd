#include "ui/desktop.h"

#include <QDesktopServices>
#include <QStringList>

#include <utility>

namespace ui::desktop
{

namespace
{

struct Script
{
    bool active = false;
    bool knowsProgram = true;
    QStringList opened;
};

Script &script()
{
    static Script theScript;
    return theScript;
}

} // namespace

bool open(const QUrl &address)
{
    if (!script().active)
        return QDesktopServices::openUrl(address);
    script().opened += address.toString();
    return std::exchange(script().knowsProgram, true);
}

bool openFile(const QString &fileName) { return open(QUrl::fromLocalFile(fileName)); }

void beginScript() { script().active = true; }

void expectNoProgram() { script().knowsProgram = false; }

QString takeOpened()
{
    const QString opened = script().opened.join(u'\n');
    script().opened.clear();
    return opened;
}

} // namespace ui::desktop
