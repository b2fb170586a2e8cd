#pragma once

#include <QString>
#include <QWidget>

#include <initializer_list>

class QAbstractButton;
class QComboBox;
class QLineEdit;

/// Turns the mouse wheel by one step over \a box, as the desktop delivers it: a box may take the focus by it.
void turnWheelOver(QWidget &box);

/// Works a screen as a clerk does, with real key and mouse events, by the names of its controls: in the
/// tests, on the tour and for the measurements. What cannot be done ends the program, unless a class made of
/// this one takes it otherwise.
class ScreenDriver
{
public:
    explicit ScreenDriver(QWidget *screen)
        : m_screen(screen)
    {}
    virtual ~ScreenDriver() = default;

    /// Shows the screen and waits until it is the active window.
    void show();

    /// The control, action or model \a name of the screen.
    template <class T = QWidget>
    T &the(QAnyStringView name)
    {
        T *found = m_screen->findChild<T *>(name.toString());
        if (!found)
            lost(QStringLiteral("no control ") + name.toString());
        return *found;
    }
    QLineEdit &box(QAnyStringView name);
    QComboBox &list(QAnyStringView name);
    /// A button that can be pressed.
    QAbstractButton &button(QAnyStringView name);

    /// Clicks a button with the mouse.
    void press(QAnyStringView name);
    /// Sends a key to the control with the cursor.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {});

    /// Enters \a text in place of what a box or the line of a drop-down holds, as an input method does; the
    /// cursor stays.
    void type(QAnyStringView name, const QString &text);
    /// One step of an input method: \a composition is under way, \a committed goes into the box.
    void compose(QAnyStringView name, const QString &composition, const QString &committed = {});
    /// Types \a text, converted out of \a reading if there is one, and goes on to the next control with Tab.
    void enter(QAnyStringView name, const QString &text, const QString &reading = {});
    /// Empties a box with the Delete key.
    void clear(QAnyStringView name);
    /// Goes on to the next control with Enter.
    void leave(QAnyStringView name);
    /// Goes to an item of a drop-down with the arrow keys.
    void choose(QAnyStringView name, int index);
    void choose(QAnyStringView name, const QString &item);

    /// Those of \a names that are enabled, in that order, with blanks between.
    QString enabled(std::initializer_list<const char *> names);
    /// The name of the control with the cursor.
    [[nodiscard]] QString cursor() const;

protected:
    /// Does not return: what is wanted is not to be had.
    [[noreturn]] virtual void lost(const QString &what) const;

private:
    void select(QAnyStringView name);

    QWidget *m_screen;
};
