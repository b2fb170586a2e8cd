#include "ui/drop_down.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace ui
{

void bindDropDown(QComboBox *shown, QLineEdit *stored, QLabel *unset)
{
    unset->setVisible(stored->text().isEmpty());
    QObject::connect(stored, &QLineEdit::textChanged, unset,
                     [unset](const QString &number) { unset->setVisible(number.isEmpty()); });
    QObject::connect(stored, &QLineEdit::textChanged, shown, [shown](const QString &number) {
        if (!number.isEmpty())
            shown->setCurrentIndex(number.toInt());
    });
    QObject::connect(shown, &QComboBox::activated, stored,
                     [stored](int index) { stored->setText(QString::number(index)); });
}

} // namespace ui
