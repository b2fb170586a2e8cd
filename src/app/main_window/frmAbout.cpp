#include "app/main_window/frmAbout.h"

#include "app/main_window/frmSplash.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace app
{

frmAbout::frmAbout(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(u"frmAbout"_s);
    setWindowTitle(u"バージョン情報"_s);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 12);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto *picture = new QLabel(this);
    picture->setPixmap(titlePicture(devicePixelRatioF()));
    picture->setAccessibleName(u"Kanbalore Database"_s);
    layout->addWidget(picture);

    auto *text = new QLabel(u"小さなお店の伝票発行と顧客管理のためのプログラムです。\n"
                            "Qt %1 と SQLite %2 を使用しています。"_s.arg(
                                QString::fromLatin1(qVersion()), QString::fromLatin1(sqlite3_libversion())),
                            this);
    text->setObjectName(u"lblText"_s);
    text->setContentsMargins(24, 6, 24, 0);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(text);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->setContentsMargins(24, 0, 24, 0);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
}

} // namespace app
