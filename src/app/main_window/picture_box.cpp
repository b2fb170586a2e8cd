#include "app/main_window/picture_box.h"

#include "app/main_window/pictures.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

constexpr int highestSide = 30000; // pixels; more is no picture for a window
constexpr int keptSide = 2000;     // pixels that are kept of a large one
constexpr int corner = 8;          // pixels

// The part of \a size that fills \a room without distortion.
QRectF filling(const QSizeF &size, const QRectF &room)
{
    const QSizeF scaled = size.scaled(room.size(), Qt::KeepAspectRatioByExpanding);
    return {room.center().x() - scaled.width() / 2, room.center().y() - scaled.height() / 2, scaled.width(),
            scaled.height()};
}

} // namespace

PictureBox::PictureBox(QWidget *parent)
    : QAbstractButton(parent)
{
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::NoFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QString PictureBox::load(const QString &fileName)
{
    // Opening a pipe would wait for its writer.
    if (!QFileInfo(fileName).isFile())
        return u"画像ファイルが見つからないため、表示できませんでした。("_s + fileName + u")"_s;
    QImageReader reader(fileName);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.width() > highestSide || size.height() > highestSide)
        return u"画像が大きすぎるため、表示できませんでした。"_s;
    if (size.width() > keptSide || size.height() > keptSide)
        reader.setScaledSize(size.scaled(keptSide, keptSide, Qt::KeepAspectRatio));
    const QImage picture = reader.read();
    if (picture.isNull())
        return u"画像として読み込めないため、表示できませんでした。("_s + fileName + u")"_s;
    m_picture = picture;
    update();
    return {};
}

void PictureBox::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath frame;
    frame.addRoundedRect(rect(), corner, corner);
    painter.setClipPath(frame);
    if (m_picture.isNull()) {
        QSvgRenderer shop(shopPicture());
        shop.render(&painter, filling(shop.defaultSize(), rect()));
        // Between dark windows it would be the one bright thing on the display.
        if (palette().color(QPalette::Window).lightness() < palette().color(QPalette::WindowText).lightness())
            painter.fillRect(rect(), QColor(0, 0, 0, 120));
    } else {
        painter.fillRect(rect(), palette().window());
        painter.drawImage(filling(m_picture.size(), rect()), m_picture);
    }
}

} // namespace app
