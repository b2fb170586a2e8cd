#include "ui/screen.h"

#include "ui/grid.h"
#include "ui/prompts.h"
#include "ui/twips.h"
#include "ui/wheel_guard.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace ui
{

namespace
{

// That on which \a screen is, or will be, with its opener.
const QScreen &displayOf(const QWidget &screen)
{
    const QWidget *opener = screen.parentWidget() ? screen.parentWidget()->window() : &screen;
    return *(screen.isVisible() ? &screen : opener)->screen();
}

} // namespace

Screen::Screen(workspace::Workspace &workspace, QWidget *parent)
    : QDialog(parent)
    , m_workspace(workspace)
{
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                   Qt::WindowCloseButtonHint);
    QFont type = font();
    type.setPointSize(workspace.panel.textSize + workspace.panel.desktopSurplus);
    setFont(type);
}

void Screen::setUp()
{
    // Enter belongs to moving on; a preset button would take it.
    const auto buttons = findChildren<QPushButton *>();
    for (QPushButton *button : buttons)
        button->setAutoDefault(false);
    const auto boxes = findChildren<QLineEdit *>();
    for (QLineEdit *box : boxes) {
        box->installEventFilter(this);
        // Each letter typed would draw the frames beneath the box anew, which takes longer than the box.
        box->setBackgroundRole(QPalette::Window);
        box->setAutoFillBackground(true);
        if (box->isReadOnly())
            setReadOnly(box, true);
    }
    ignoreWheelInPassing(this);
    const auto grids = findChildren<Grid *>();
    for (Grid *grid : grids)
        grid->setUp(m_workspace, layoutName() + u'/' + grid->objectName());
}

// What only shows does not look like a box to type in, and stays legible in a frame that is switched off.
void Screen::setReadOnly(QLineEdit *box, bool readOnly)
{
    box->setReadOnly(readOnly);
    box->setPalette({});
    if (!readOnly)
        return;
    QPalette colours = box->palette();
    colours.setColor(QPalette::Base, colours.color(QPalette::Window));
    colours.setColor(QPalette::Disabled, QPalette::Text, colours.color(QPalette::Active, QPalette::Text));
    box->setPalette(colours);
}

bool Screen::tell(const base::Status &status)
{
    if (!status && !status.error().text.isEmpty())
        prompts::inform(this, status.error().text);
    return bool(status);
}

// With large type or on a small display. The cursor takes what it comes to into sight.
void Screen::scrollWhatDoesNotFit()
{
    const QSize room = roomOn(displayOf(*this)).size();
    const QSize least = minimumSizeHint();
    if (!layout() || (least.width() <= room.width() && least.height() <= room.height()))
        return;
    // In this window from the beginning: controls that come from another one lose their tab order.
    auto *page = new QWidget(this);
    page->setLayout(layout());
    auto *view = new QScrollArea(this);
    view->setObjectName(u"pageView"_s);
    view->setFrameShape(QFrame::NoFrame);
    view->setWidgetResizable(true);
    view->setFocusPolicy(Qt::NoFocus);
    view->setWidget(page);
    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins({});
    whole->addWidget(view);
    connect(qApp, &QApplication::focusChanged, view, [view](const QWidget *, QWidget *now) {
        if (now && view->isAncestorOf(now))
            view->ensureWidgetVisible(now);
    });
    if (!isMaximized())
        resize(size().expandedTo(least).boundedTo(room));
}

// "width height", and those of the display: the size for a small one is not the one for a large one.
void Screen::restoreSize()
{
    const QStringList size = m_workspace.settings.layout(layoutName() + u"/size"_s).split(u' ');
    const QSize display = displayOf(*this).availableGeometry().size();
    const bool isForThis = size.size() == 2 || (size.size() == 4 && size.at(2).toInt() >= display.width() &&
                                                size.at(3).toInt() >= display.height());
    if (isForThis && size.at(0).toInt() > 0 && size.at(1).toInt() > 0)
        resize(QSize(size.at(0).toInt(), size.at(1).toInt()).expandedTo(minimumSizeHint()));
}

void Screen::restorePlace()
{
    // A place of its own would take a screen out of its full size again.
    if (isMaximized())
        return;
    restoreSize();
    const workspace::Settings &settings = m_workspace.settings;
    const QStringList place = settings.layout(layoutName() + u"/place"_s).split(u' ');
    if (place.size() == 2) {
        moveOnto(this, {place.at(0).toInt(), place.at(1).toInt()});
        return;
    }
    if (settings.text(workspace::keys::frmLeft).isEmpty()) {
        // The first day: over the window that opened it.
        const QWidget *opener = parentWidget() ? parentWidget()->window() : nullptr;
        moveOnto(this, opener ? opener->frameGeometry().center() - rect().center() : pos());
        return;
    }
    const QPoint wanted(pixelsFromTwips(settings.number(workspace::keys::frmLeft)),
                        pixelsFromTwips(settings.number(workspace::keys::frmTop)));
    moveOnto(this, wanted);
}

// Some desktops put the frame where the contents were to be, others the contents: a screen that was not moved
// would open a little higher each time.
QPoint Screen::placeToRemember() const { return m_cameOut ? m_asked + pos() - *m_cameOut : pos(); }

void Screen::saveLayout()
{
    if (!isMaximized()) {
        const QSize display = displayOf(*this).availableGeometry().size();
        m_workspace.settings.writeLayout(
            layoutName() + u"/size"_s,
            u"%1 %2 %3 %4"_s.arg(width()).arg(height()).arg(display.width()).arg(display.height()));
        const QPoint place = placeToRemember();
        m_workspace.settings.writeLayout(layoutName() + u"/place"_s,
                                         u"%1 %2"_s.arg(place.x()).arg(place.y()));
    }
    const auto grids = findChildren<Grid *>();
    for (const Grid *grid : grids)
        grid->saveLayout(m_workspace);
}

void Screen::reject()
{
    // The window's close button comes here too.
    if (mayClose()) {
        saveLayout();
        QDialog::reject();
        // Closed from its own question, the screen goes in the same moment as the box, and a window manager
        // that looks for who is next finds neither: the keys would go nowhere.
        if (QWidget *opener = parentWidget(); opener && opener->isVisible())
            opener->window()->activateWindow();
    }
}

void Screen::setVisible(bool visible)
{
    if (visible && !m_placed)
        scrollWhatDoesNotFit();
    QDialog::setVisible(visible);
}

void Screen::showEvent(QShowEvent *event)
{
    if (!m_placed) {
        m_placed = true;
        restorePlace();
        m_asked = pos();
    }
    QDialog::showEvent(event);
}

bool Screen::event(QEvent *event)
{
    const bool done = QDialog::event(event);
    if (event->type() == QEvent::WindowDeactivate) {
        const QWidget *modal = QApplication::activeModalWidget();
        m_underDialog = modal && modal != this && !qobject_cast<const Screen *>(modal);
    } else if (event->type() == QEvent::WindowActivate && isVisible()) {
        if (!m_cameOut)
            m_cameOut = pos();
        if (!std::exchange(m_underDialog, false))
            becameActive();
    }
    return done;
}

// Alt and a letter whose button is switched off just now is a command that does nothing, not a letter typed.
bool Screen::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->modifiers().testFlag(Qt::AltModifier) && !key->text().isEmpty())
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void Screen::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || event->modifiers() & ~Qt::KeypadModifier) {
        QDialog::keyPressEvent(event);
        return;
    }
    QWidget *focus = focusWidget();
    if (auto *button = qobject_cast<QPushButton *>(focus)) {
        button->click();
        return;
    }
    const QString clicks = focus ? focus->property("enterClicks").toString() : QString();
    if (auto *button = clicks.isEmpty() ? nullptr : findChild<QPushButton *>(clicks))
        button->click();
    else
        focusNextPrevChild(true);
}

} // namespace ui
