#pragma once

#include <QDir>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>

class QDialog;
class QTableView;

namespace tour
{

/// Works the screens as a clerk does, by the names of their controls, and takes their pictures. What is not
/// as it should be is noted, and the walk goes on.
class Walker
{
public:
    /// Pictures go to \a folder as NN-name.png.
    explicit Walker(const QDir &folder);

    /// Sets off \a trigger, which opens a modal screen, does \a work in it, and closes it.
    void visit(const QString &what, const std::function<void()> &trigger,
               const std::function<void(QDialog &)> &work);

    /// The control \a name of \a screen. A missing one ends the visit.
    template <class Control>
    Control &find(QWidget &screen, const QString &name)
    {
        auto *control = screen.findChild<Control *>(name);
        if (!control)
            lost(screen, name);
        return *control;
    }

    /// Presses a button that can be pressed.
    void click(QWidget &screen, const QString &button);
    /// Sends a key to the control that has the focus.
    void key(QWidget &screen, Qt::Key key);
    /// Replaces the text of a box, as an input method commits it, and leaves the box.
    void type(QWidget &screen, const QString &box, const QString &text);
    /// The same, with the kana that were converted into \a text.
    void typeConverted(QWidget &screen, const QString &box, const QString &kana, const QString &text);
    /// Chooses \a item of a list.
    void choose(QWidget &screen, const QString &list, const QString &item);

    /// Saves the picture of \a screen.
    void picture(QWidget &screen, const QString &name);

    /// Notes \a what unless \a good.
    void check(bool good, const QString &what);
    void checkText(QWidget &screen, const QString &box, const QString &expected);

    /// What was not as it should be, boxes nobody expected included; empty after a good walk.
    QStringList troubles();

private:
    [[noreturn]] void lost(QWidget &screen, const QString &name);
    void send(QWidget &screen, const QString &box, const QString &preedit, const QString &commit);

    QDir m_folder;
    int m_pictures = 0;
    QString m_where;
    QStringList m_troubles;
};

} // namespace tour
