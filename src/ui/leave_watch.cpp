#include "ui/leave_watch.h"

#include <QApplication>
#include <QFocusEvent>
#include <QWidget>

namespace ui
{

namespace
{

constexpr int busyInterval = 30; // milliseconds

// The cursor taken away by the program, by another window or by a menu is not the clerk's leaving; a box
// left that way may well be the one that the cursor was just put back from, and the two would never end.
bool leavesByUser(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
}

} // namespace

LeaveWatch::LeaveWatch(QWidget *box)
    : QObject(box)
    , m_box(box)
{
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &LeaveWatch::afterLeaving);
    box->installEventFilter(this);
}

bool LeaveWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && leavesByUser(static_cast<QFocusEvent *>(event)->reason())) {
        m_later.start(0);
        emit leaving();
    }
    return QObject::eventFilter(watched, event);
}

// Not within the change of focus itself: a message box there would swallow the click that caused it.
void LeaveWatch::afterLeaving()
{
    if (QGuiApplication::mouseButtons() != Qt::NoButton || QApplication::activePopupWidget()) {
        m_later.start(busyInterval);
        return;
    }
    // The click may have closed the screen, opened another one or put the cursor back.
    if (m_box->isVisible() && m_box->isEnabled() && !m_box->hasFocus() && m_box->isActiveWindow())
        emit left();
}

void LeaveWatch::settle()
{
    if (!m_later.isActive())
        return;
    m_later.stop();
    emit left();
}

void LeaveWatch::forget() { m_later.stop(); }

} // namespace ui
