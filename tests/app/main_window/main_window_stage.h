#pragma once

#include "app/main_window/commands.h"
#include "app/main_window/frmAMain.h"
#include "support/fresh_shop.h"

#include <QAbstractButton>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace app;

/// A window on a shop, with openers that only write down what was opened.
struct MainWindowStage
{
    explicit MainWindowStage(const std::function<void(FreshShop &)> &prepare = {}, QSet<Action> missing = {})
    {
        if (prepare)
            prepare(shop);
        shop.connection.close();
        Openers openers;
        for (const Command &command : commands()) {
            if (command.action != Action::None && !missing.contains(command.action))
                openers[command.action] = [this, action = command.action](QWidget *, workspace::Workspace &) {
                    opened << action;
                    if (whenOpened)
                        whenOpened(action);
                };
        }
        window = std::make_unique<frmAMain>(shop.workspace, openers);
        window->load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
        window->show();
    }

    void click(const char *name)
    {
        auto *button = find<QAbstractButton>(name);
        if (!button->isEnabled())
            qFatal("%s is disabled", name);
        button->click();
    }

    template <class Widget>
    Widget *find(const char *name)
    {
        auto *found = window->findChild<Widget *>(QLatin1StringView(name));
        if (!found)
            qFatal("no %s", name);
        return found;
    }

    FreshShop shop;
    QList<Action> opened;
    std::function<void(Action)> whenOpened;
    std::unique_ptr<frmAMain> window;
};

/// Makes 山田 the only employee, and the one in charge.
inline void employOne(FreshShop &shop)
{
    shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (7, '山田')"_s);
    shop.settings.write(workspace::keys::employee, 7);
}
