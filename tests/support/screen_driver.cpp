#include "support/screen_driver.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

void ScreenDriver::lost(const QString &what) const
{
    qFatal("%s: %s", qPrintable(m_screen->objectName()), qPrintable(what));
}

void turnWheelOver(QWidget &box)
{
    const QPointF place = QRectF(box.rect()).center();
    QWheelEvent turn(place, box.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&turn);
    qApp->notify(&box, &turn);
}

void ScreenDriver::show()
{
    m_screen->show();
    m_screen->activateWindow();
    if (!QTest::qWaitForWindowActive(m_screen))
        lost(u"does not become active"_s);
}

QLineEdit &ScreenDriver::box(QAnyStringView name) { return the<QLineEdit>(name); }

QComboBox &ScreenDriver::list(QAnyStringView name) { return the<QComboBox>(name); }

QAbstractButton &ScreenDriver::button(QAnyStringView name)
{
    auto &button = the<QAbstractButton>(name);
    if (!button.isEnabled())
        lost(name.toString() + u" cannot be pressed"_s);
    return button;
}

void ScreenDriver::press(QAnyStringView name)
{
    QAbstractButton &pressed = button(name);
    // A check box takes clicks on its mark and its text alone, at the left of what may be a wide control.
    const bool isWhole = qobject_cast<QPushButton *>(&pressed);
    const QPoint point = isWhole ? pressed.rect().center() : QPoint(8, pressed.height() / 2);
    QTest::mouseClick(&pressed, Qt::LeftButton, {}, point);
}

void ScreenDriver::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QWidget *focus = m_screen->focusWidget();
    QTest::keyClick(focus ? focus : m_screen, key, modifiers);
}

// Puts the cursor into the box, with all of its text selected.
void ScreenDriver::select(QAnyStringView name)
{
    auto &control = the(name);
    if (!control.isEnabled())
        lost(name.toString() + u" takes no text"_s);
    control.setFocus();
    auto *list = qobject_cast<QComboBox *>(&control);
    if (QLineEdit *line = list ? list->lineEdit() : qobject_cast<QLineEdit *>(&control))
        line->selectAll();
}

void ScreenDriver::type(QAnyStringView name, const QString &text)
{
    select(name);
    compose(name, {}, text);
}

void ScreenDriver::compose(QAnyStringView name, const QString &composition, const QString &committed)
{
    QInputMethodEvent event(composition, {});
    event.setCommitString(committed);
    QCoreApplication::sendEvent(&the(name), &event);
}

void ScreenDriver::enter(QAnyStringView name, const QString &text, const QString &reading)
{
    select(name);
    if (!reading.isEmpty())
        compose(name, reading);
    compose(name, {}, text);
    key(Qt::Key_Tab);
}

void ScreenDriver::clear(QAnyStringView name)
{
    box(name).setFocus();
    box(name).selectAll();
    QTest::keyClick(&box(name), Qt::Key_Delete);
}

void ScreenDriver::leave(QAnyStringView name)
{
    QTest::keyClick(&box(name), Qt::Key_Return);
    QTest::qWait(1); // what follows on leaving comes with the next turn of the event loop
}

void ScreenDriver::choose(QAnyStringView name, int index)
{
    QComboBox &items = list(name);
    items.setFocus();
    for (int steps = items.count(); steps > 0 && items.currentIndex() != index; --steps)
        QTest::keyClick(&items, index < items.currentIndex() ? Qt::Key_Up : Qt::Key_Down);
}

void ScreenDriver::choose(QAnyStringView name, const QString &item)
{
    const int index = list(name).findText(item);
    if (index < 0 || !list(name).isEnabled())
        lost(name.toString() + u" does not offer "_s + item);
    choose(name, index);
    if (list(name).currentIndex() != index)
        lost(name.toString() + u" does not go to "_s + item);
}

QString ScreenDriver::enabled(std::initializer_list<const char *> names)
{
    QStringList found;
    for (const char *name : names) {
        if (the(name).isEnabled())
            found << QString::fromUtf8(name);
    }
    return found.join(u' ');
}

QString ScreenDriver::cursor() const
{
    const QWidget *focus = m_screen->focusWidget();
    return focus ? focus->objectName() : QString();
}
