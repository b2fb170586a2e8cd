#pragma once

#include "app/main_window/commands.h"
#include "app/panel_side.h"

#include <QObject>
#include <QPoint>

#include <functional>

class QAbstractButton;
class QAction;
class QMainWindow;
class QTabWidget;
class QVBoxLayout;

namespace app
{

/// Menus, tab panel and clickable labels of the main window, built from the command table. A label that the
/// window has already is wired as it stands; the others are put into the shortcut strip.
class CommandPanel : public QObject
{
    Q_OBJECT

public:
    /// What the window has already.
    struct Controls
    {
        QTabWidget *tabs;
        QWidget *before;                       // comes before the tabs in the reading order
        QWidget *shortcuts;                    // the strip
        std::vector<QAbstractButton *> labels; // clickable ones, under their commands' names
    };

    CommandPanel(QMainWindow &window, Controls controls);

    /// Enables the commands that \a possible says yes to; the others are shown greyed.
    void enable(const std::function<bool(const Command &)> &possible);

    /// The menu item of \a action.
    [[nodiscard]] QAction *menuItem(Action action) const;

    /// Where a menu belongs that opens at the button of \a action, on the desktop.
    [[nodiscard]] QPoint below(Action action) const;

    /// Turns the tab panel to the page on which the button of \a action is.
    void showPageOf(Action action);
    /// The same, with the cursor on the button of \a action, where it has one.
    void focusButtonOf(Action action);

    /// Puts \a widget above or below the buttons of a group.
    void addToGroup(Page page, const QString &group, QWidget *widget, PanelSide side);

signals:
    void triggered(const app::Command &command);

private:
    void buildMenus();
    void buildTabs();
    void makeGroups();
    void buildShortcuts();
    void orderTabStops();
    [[nodiscard]] QAbstractButton *ownLabel(const QString &name) const;
    void wire(QAbstractButton *button, const Command &command);
    QVBoxLayout *groupLayout(Page page, const QString &group);

    QMainWindow &m_window;
    Controls m_controls;
    std::vector<std::pair<QAction *, const Command *>> m_items;
    std::vector<std::pair<QAbstractButton *, const Command *>> m_buttons;
};

} // namespace app
