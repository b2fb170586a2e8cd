#include "ui/drop_down.h"

#include <QComboBox>
#include <QEvent>
#include <QLineEdit>

namespace ui
{

namespace
{

class WheelGuard : public QObject
{
public:
    explicit WheelGuard(QComboBox *box)
        : QObject(box)
        , m_box(box)
    {
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
    QComboBox *m_box;
};

} // namespace

void bindDropDown(QComboBox *shown, QLineEdit *stored)
{
    QObject::connect(stored, &QLineEdit::textChanged, shown, [shown](const QString &number) {
        if (!number.isEmpty())
            shown->setCurrentIndex(number.toInt());
    });
    QObject::connect(shown, &QComboBox::activated, stored,
                     [stored](int index) { stored->setText(QString::number(index)); });
}

void ignoreWheelInPassing(QComboBox *box) { new WheelGuard(box); }

} // namespace ui
