#include "masters/rich_text/attachment.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

namespace masters
{

namespace
{
// All in pixels at 96 dpi.
constexpr double sheetWidth = 30;
constexpr double sheetHeight = 38;
constexpr double fold = 9;
constexpr double margin = 4;
constexpr double widestName = 160;

void drawSheet(QPainter &painter, QPointF corner)
{
    QPainterPath sheet(corner);
    sheet.lineTo(corner + QPointF(sheetWidth - fold, 0));
    sheet.lineTo(corner + QPointF(sheetWidth, fold));
    sheet.lineTo(corner + QPointF(sheetWidth, sheetHeight));
    sheet.lineTo(corner + QPointF(0, sheetHeight));
    sheet.closeSubpath();
    painter.setPen(QPen(QColor(0x5f, 0x6b, 0x7a), 1.2));
    painter.setBrush(QColor(0xf4, 0xf7, 0xfb));
    painter.drawPath(sheet);
    painter.drawPolyline(
        QPolygonF({corner + QPointF(sheetWidth - fold, 0), corner + QPointF(sheetWidth - fold, fold),
                   corner + QPointF(sheetWidth, fold)}));
    painter.setPen(QPen(QColor(0xa9, 0xb4, 0xc2), 1.5));
    for (double y = 16; y < sheetHeight - 4; y += 5)
        painter.drawLine(corner + QPointF(5, y), corner + QPointF(sheetWidth - 5, y));
}
} // namespace

QImage attachmentIcon(const QString &fileName)
{
    QFont font;
    font.setPixelSize(12);
    const QFontMetricsF metrics(font);
    const QString name = metrics.elidedText(fileName, Qt::ElideMiddle, widestName);
    const QSizeF size(std::max(metrics.horizontalAdvance(name), sheetWidth) + 2 * margin,
                      sheetHeight + metrics.height() + 3 * margin);

    QImage image((size * attachmentIconScale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(attachmentIconScale, attachmentIconScale);
    drawSheet(painter, {(size.width() - sheetWidth) / 2, margin});
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(0, sheetHeight + 2 * margin, size.width(), metrics.height()),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine, name);
    return image;
}

} // namespace masters
