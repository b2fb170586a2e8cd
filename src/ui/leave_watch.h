#pragma once

#include <QObject>
#include <QTimer>

class QWidget;

namespace ui
{

/// Notices that the clerk has left one box for another of the same screen. A button pressed with the mouse
/// still acts first, so that the screen can be closed or the entry given up; leaving for another window, a
/// menu or a message box is not leaving the box. Lives as long as the box.
class LeaveWatch : public QObject
{
    Q_OBJECT

public:
    explicit LeaveWatch(QWidget *box);

    /// Tells now of a leaving that is still to be told, as before the row that the box shows is saved.
    void settle();
    /// Never tells of it: another row stands in the box by now.
    void forget();

signals:
    /// The cursor is just going; what follows may show nothing and move nothing.
    void leaving();
    /// It has gone, and the click that took it has done what it does.
    void left();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void afterLeaving();

    QWidget *m_box;
    QTimer m_later;
};

} // namespace ui
