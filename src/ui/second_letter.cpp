#include "ui/second_letter.h"

#include <QPushButton>
#include <QShortcut>

namespace ui
{

void pressAlsoBy(QPushButton &button, Qt::Key letter)
{
    auto *shortcut = new QShortcut(QKeySequence(Qt::ALT | letter), &button);
    QObject::connect(shortcut, &QShortcut::activated, &button, &QPushButton::click);
}

} // namespace ui
