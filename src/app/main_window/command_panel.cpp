#include "app/main_window/command_panel.h"

#include "app/main_window/menu_letters.h"

#include <QAction>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

QString string(const char16_t *text) { return QString::fromUtf16(text); }

constexpr int buttonHeight = 38; // pixels
constexpr int groupWidth = 330;  // pixels, at most

} // namespace

CommandPanel::CommandPanel(QMainWindow &window, Controls controls)
    : QObject(&window)
    , m_window(window)
    , m_controls(std::move(controls))
{
    buildMenus();
    buildTabs();
    buildShortcuts();
    orderTabStops();
}

// The reading order: person in charge, commands, shortcuts, then what the form has.
void CommandPanel::orderTabStops()
{
    QList<QWidget *> stops = {m_controls.before, m_controls.tabs->tabBar()};
    for (int page = 0; page < m_controls.tabs->count(); ++page) {
        const auto buttons = m_controls.tabs->widget(page)->findChildren<QPushButton *>();
        for (QPushButton *button : buttons)
            stops << button;
    }
    const auto links = m_controls.shortcuts->findChildren<QPushButton *>();
    for (QPushButton *link : links)
        stops << link;
    for (qsizetype i = 1; i < stops.size(); ++i)
        QWidget::setTabOrder(stops.at(i - 1), stops.at(i));
}

void CommandPanel::buildMenus()
{
    QMenuBar *bar = m_window.menuBar();
    for (const Command &command : commands()) {
        if (*command.menu == 0)
            continue;
        QMenu *parent = *command.parent == 0 ? nullptr : bar->findChild<QMenu *>(string(command.parent));
        if (command.action == Action::None) {
            // Owned by the menu it stands in, so that it is found by its name below the bar.
            QMenu *menu =
                parent ? parent->addMenu(string(command.caption)) : bar->addMenu(string(command.caption));
            menu->setObjectName(string(command.menu));
            heedUnmarkedLetters(*menu);
            continue;
        }
        QAction *item = parent->addAction(string(command.caption));
        item->setObjectName(string(command.menu));
        item->setShortcut(QKeySequence(QLatin1StringView(command.keys)));
        item->setCheckable(command.action == Action::ShowCalendar);
        connect(item, &QAction::triggered, this, [this, &command] { emit triggered(command); });
        m_items.emplace_back(item, &command);
    }
}

void CommandPanel::buildTabs()
{
    for (const char16_t *caption : pageCaptions) {
        auto *page = new QWidget(m_controls.tabs);
        auto *row = new QHBoxLayout(page);
        row->setSpacing(10);
        row->addStretch(1);
        m_controls.tabs->addTab(page, string(caption));
    }
    makeGroups();
    for (const Command &command : commands()) {
        for (const ButtonPlace &place : command.buttons) {
            auto *button = new QPushButton(string(place.caption), m_controls.tabs);
            button->setObjectName(string(place.name));
            button->setToolTip(string(place.tip));
            button->setMinimumHeight(buttonHeight);
            groupLayout(place.page, string(place.group))->addWidget(button);
            wire(button, command);
        }
    }
    m_controls.tabs->setCurrentIndex(static_cast<int>(Page::Sales));
}

void CommandPanel::makeGroups()
{
    for (const char16_t *group : groupOrder) {
        for (const Command &command : commands()) {
            for (const ButtonPlace &place : command.buttons) {
                if (string(place.group) == string(group))
                    groupLayout(place.page, string(group));
            }
        }
    }
}

QVBoxLayout *CommandPanel::groupLayout(Page page, const QString &group)
{
    QWidget *tab = m_controls.tabs->widget(static_cast<int>(page));
    const auto boxes = tab->findChildren<QGroupBox *>();
    for (QGroupBox *box : boxes) {
        if (box->title() == group)
            return static_cast<QVBoxLayout *>(box->layout()->itemAt(0)->layout());
    }
    auto *box = new QGroupBox(group, tab);
    box->setMaximumWidth(groupWidth);
    auto *frame = new QVBoxLayout(box);
    auto *buttons = new QVBoxLayout;
    frame->addLayout(buttons);
    frame->addStretch(1);
    auto *row = static_cast<QHBoxLayout *>(tab->layout());
    // Before the stretch that keeps the groups to the left.
    row->insertWidget(row->count() - 1, box, 100);
    return buttons;
}

void CommandPanel::addToGroup(Page page, const QString &group, QWidget *widget, PanelSide side)
{
    groupLayout(page, group)->insertWidget(side == PanelSide::Above ? 0 : -1, widget);
}

QAbstractButton *CommandPanel::ownLabel(const QString &name) const
{
    const auto found = std::ranges::find_if(
        m_controls.labels, [&](const QAbstractButton *label) { return label->objectName() == name; });
    return found == m_controls.labels.end() ? nullptr : *found;
}

void CommandPanel::buildShortcuts()
{
    auto *strip = m_controls.shortcuts;
    std::map<QString, QPushButton *> links; // in the order of their names
    for (const Command &command : commands()) {
        for (const Shortcut &shortcut : command.shortcuts) {
            QAbstractButton *label = ownLabel(string(shortcut.name));
            if (!label) {
                auto *link = new QPushButton(string(shortcut.caption), strip);
                link->setObjectName(string(shortcut.name));
                link->setFlat(true);
                links.emplace(link->objectName(), link);
                label = link;
            }
            label->setCursor(Qt::PointingHandCursor);
            wire(label, command);
        }
    }
    auto *row = static_cast<QHBoxLayout *>(strip->layout());
    for (const auto &[name, link] : links)
        row->addWidget(link);
    row->addStretch(1);
}

void CommandPanel::wire(QAbstractButton *button, const Command &command)
{
    connect(button, &QAbstractButton::clicked, this, [this, &command] { emit triggered(command); });
    m_buttons.emplace_back(button, &command);
}

void CommandPanel::enable(const std::function<bool(const Command &)> &possible)
{
    for (const auto &[item, command] : m_items)
        item->setEnabled(possible(*command));
    for (const auto &[button, command] : m_buttons)
        button->setEnabled(possible(*command));
}

QAction *CommandPanel::menuItem(Action action) const
{
    for (const auto &[item, command] : m_items) {
        if (command->action == action)
            return item;
    }
    return nullptr;
}

QPoint CommandPanel::below(Action action) const
{
    for (const auto &[button, command] : m_buttons) {
        if (command->action == action)
            return button->mapToGlobal(QPoint(0, button->height()));
    }
    return {};
}

void CommandPanel::showPageOf(Action action)
{
    for (const Command &command : commands()) {
        if (command.action == action && !command.buttons.empty()) {
            m_controls.tabs->setCurrentIndex(static_cast<int>(command.buttons.front().page));
            return;
        }
    }
}

void CommandPanel::focusButtonOf(Action action)
{
    showPageOf(action);
    for (const Command &command : commands()) {
        if (command.action != action || command.buttons.empty())
            continue;
        const QString name = QString::fromUtf16(command.buttons.front().name);
        if (auto *button = m_controls.tabs->findChild<QPushButton *>(name))
            button->setFocus();
        return;
    }
}

} // namespace app
