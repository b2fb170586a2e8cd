#include "support/screen_driver.h"

#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

void ScreenDriver::show()
{
    m_screen->show();
    m_screen->activateWindow();
    if (!QTest::qWaitForWindowActive(m_screen))
        qFatal("the screen does not become active");
}

QLineEdit &ScreenDriver::box(const char *name) { return the<QLineEdit>(name); }

QComboBox &ScreenDriver::list(const char *name) { return the<QComboBox>(name); }

void ScreenDriver::press(const char *name)
{
    auto &button = the<QPushButton>(name);
    if (!button.isEnabled())
        QFAIL(name);
    QTest::mouseClick(&button, Qt::LeftButton);
}

void ScreenDriver::type(const char *name, const QString &text)
{
    box(name).setFocus();
    box(name).selectAll();
    compose(name, {}, text);
}

void ScreenDriver::compose(const char *name, const QString &composition, const QString &committed)
{
    QInputMethodEvent event(composition, {});
    event.setCommitString(committed);
    QCoreApplication::sendEvent(&box(name), &event);
}

void ScreenDriver::clear(const char *name)
{
    box(name).setFocus();
    box(name).selectAll();
    QTest::keyClick(&box(name), Qt::Key_Delete);
}

void ScreenDriver::leave(const char *name)
{
    QTest::keyClick(&box(name), Qt::Key_Return);
    QTest::qWait(1); // what follows on leaving comes with the next turn of the event loop
}

void ScreenDriver::choose(const char *name, int index)
{
    QComboBox &items = list(name);
    items.setFocus();
    for (int steps = items.count(); steps > 0 && items.currentIndex() != index; --steps)
        QTest::keyClick(&items, index < items.currentIndex() ? Qt::Key_Up : Qt::Key_Down);
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
