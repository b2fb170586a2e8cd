#pragma once

#include <QString>
#include <QWidget>

#include <initializer_list>

class QComboBox;
class QLineEdit;

/// Works a screen as a clerk does, with real key and mouse events, by the names of its controls. A name that
/// the screen does not have ends the test program.
class ScreenDriver
{
public:
    explicit ScreenDriver(QWidget *screen)
        : m_screen(screen)
    {}

    /// Shows the screen and waits until it is the active window.
    void show();

    template <class T = QWidget>
    T &the(const char *name)
    {
        T *found = m_screen->findChild<T *>(QString::fromUtf8(name));
        if (!found)
            qFatal("no control %s", name);
        return *found;
    }
    QLineEdit &box(const char *name);
    QComboBox &list(const char *name);

    /// Clicks a button with the mouse.
    void press(const char *name);

    /// Enters \a text in place of what a box holds, as an input method does; the cursor stays.
    void type(const char *name, const QString &text);
    /// One step of an input method: \a composition is under way, \a committed goes into the box.
    void compose(const char *name, const QString &composition, const QString &committed = {});
    /// Empties a box with the Delete key.
    void clear(const char *name);
    /// Goes on to the next control with Enter.
    void leave(const char *name);
    /// Goes to an item of a drop-down with the arrow keys.
    void choose(const char *name, int index);

    /// Those of \a names that are enabled, in that order, with blanks between.
    QString enabled(std::initializer_list<const char *> names);
    /// The name of the control with the cursor.
    [[nodiscard]] QString cursor() const;

private:
    QWidget *m_screen;
};
