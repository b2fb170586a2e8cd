#include "app/main_window/frmSplash.h"

#include "app/main_window/pictures.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

// In pixels at scale 1.
constexpr QSize pictureSize(560, 320);
constexpr QRectF shopArea(0, 0, 560, 196);
constexpr QRectF iconArea(28, 214, 80, 80);
constexpr int textLeft = 128;
const QColor ground(0xfbfbf9);
const QColor ink(0x22282b);
const QColor faint(0x6b7578);
const QColor accent(0x2b6577);

void writeLine(QPainter &painter, double baseline, double points, bool bold, const QColor &colour,
               const QString &text)
{
    QFont type = QApplication::font();
    type.setPixelSize(static_cast<int>(points));
    type.setBold(bold);
    painter.setFont(type);
    painter.setPen(colour);
    painter.drawText(QPointF(textLeft, baseline), text);
}

} // namespace

QPixmap titlePicture(double scale)
{
    QPixmap picture(pictureSize * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(ground);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer shop(shopPicture());
    shop.render(&painter, shopArea);
    painter.fillRect(QRectF(0, shopArea.bottom(), pictureSize.width(), 4), accent);
    QSvgRenderer icon(programIcon());
    icon.render(&painter, iconArea);
    writeLine(painter, 248, 30, true, ink, u"Kanbalore Database"_s);
    writeLine(painter, 274, 15, false, faint,
              u"販売・仕入・顧客管理　　Version "_s + QApplication::applicationVersion());
    writeLine(painter, 298, 12, false, faint, u"© Kanbalore"_s);
    painter.setPen(QPen(ink.lighter(250), 1));
    painter.drawRect(QRectF(0.5, 0.5, pictureSize.width() - 1, pictureSize.height() - 1));
    return picture;
}

frmSplash::frmSplash()
    : QSplashScreen(titlePicture(qApp->devicePixelRatio()))
{
    setObjectName(u"frmSplash"_s);
}

} // namespace app
