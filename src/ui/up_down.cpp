#include "ui/up_down.h"

#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace ui
{

UpDown::UpDown(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const struct
    {
        Qt::ArrowType arrow;
        int direction;
        QString name;
    } arrows[] = {{Qt::UpArrow, 1, u"増やす"_s}, {Qt::DownArrow, -1, u"減らす"_s}};
    for (const auto &arrow : arrows) {
        auto *button = new QToolButton(this);
        button->setArrowType(arrow.arrow);
        button->setAutoRepeat(true);
        button->setFocusPolicy(Qt::NoFocus);
        button->setFixedSize(22, 13);
        button->setAccessibleName(arrow.name);
        connect(button, &QToolButton::clicked, this,
                [this, direction = arrow.direction] { emit stepped(direction); });
        layout->addWidget(button);
    }
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

} // namespace ui
