#include "ui/wheel_guard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>

namespace ui
{

namespace
{

class WheelGuard : public QObject
{
public:
    explicit WheelGuard(QWidget *box)
        : QObject(box)
        , m_box(box)
    {
        // A wheel that gives the focus would give it before anybody can ask for it.
        if (box->focusPolicy() == Qt::WheelFocus)
            box->setFocusPolicy(Qt::StrongFocus);
        box->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Wheel || m_box->hasFocus())
            return QObject::eventFilter(watched, event);
        event->ignore();
        return true;
    }

private:
    QWidget *m_box;
};

} // namespace

void ignoreWheelInPassing(QWidget *window)
{
    const auto boxes = window->findChildren<QWidget *>();
    for (QWidget *box : boxes) {
        if (qobject_cast<QComboBox *>(box) || qobject_cast<QAbstractSpinBox *>(box))
            new WheelGuard(box);
    }
}

} // namespace ui
