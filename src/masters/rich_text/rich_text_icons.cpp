#include "masters/rich_text/rich_text_icons.h"

#include <QFont>
#include <QHash>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include <functional>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

// All within a square of 24 units.
constexpr double side = 24;
constexpr int pixels = 96; // drawn larger than shown, for dense screens

using Draw = std::function<void(QPainter &)>;

void drawLetter(QPainter &painter, const QString &letter, const std::function<void(QFont &)> &shape)
{
    QFont font(u"DejaVu Serif"_s);
    font.setPixelSize(19);
    shape(font);
    painter.setFont(font);
    painter.drawText(QRectF(0, 0, side, side), Qt::AlignCenter, letter);
}

// Four lines of text, pushed to one side or kept in the middle.
void drawLines(QPainter &painter, Qt::Alignment alignment)
{
    const double widths[] = {18, 11, 16, 8};
    for (int i = 0; i < 4; ++i) {
        const double room = 18 - widths[i];
        const double left = 3 + (alignment == Qt::AlignRight     ? room
                                 : alignment == Qt::AlignHCenter ? room / 2
                                                                 : 0);
        painter.drawLine(QPointF(left, 5 + 5 * i), QPointF(left + widths[i], 5 + 5 * i));
    }
}

void drawSheet(QPainter &painter)
{
    painter.drawPolygon(QPolygonF({{6, 3}, {14, 3}, {19, 8}, {19, 21}, {6, 21}}));
    painter.drawPolyline(QPolygonF({{14, 3}, {14, 8}, {19, 8}}));
}

void drawFolder(QPainter &painter)
{
    painter.drawPolyline(QPolygonF({{3, 19}, {3, 5}, {9, 5}, {11, 7.5}, {19, 7.5}, {19, 10.5}}));
    painter.drawPolygon(QPolygonF({{3, 19}, {6.5, 10.5}, {22, 10.5}, {18.5, 19}}));
}

void drawDisk(QPainter &painter)
{
    painter.drawPolygon(QPolygonF({{4, 4}, {17, 4}, {20, 7}, {20, 20}, {4, 20}}));
    painter.drawRect(QRectF(8, 4, 7, 5));
    painter.drawRect(QRectF(7, 13, 10, 7));
}

const QHash<QString, Draw> &drawings()
{
    static const QHash<QString, Draw> all{
        {u"新規作成"_s, drawSheet},
        {u"保存"_s, drawDisk},
        {u"開く"_s, drawFolder},
        {u"フォント"_s, [](QPainter &p) { drawLetter(p, u"Aa"_s, [](QFont &f) { f.setPixelSize(16); }); }},
        {u"文字色"_s,
         [](QPainter &p) {
             p.fillRect(QRectF(3, 19, 18, 4), QColor(0x4169e1)); // a blue seen on light and dark
             p.translate(0, -3);
             drawLetter(p, u"A"_s, [](QFont &f) { f.setPixelSize(17); });
         }},
        {u"太字"_s, [](QPainter &p) { drawLetter(p, u"B"_s, [](QFont &f) { f.setBold(true); }); }},
        {u"斜体"_s, [](QPainter &p) { drawLetter(p, u"I"_s, [](QFont &f) { f.setItalic(true); }); }},
        {u"下線"_s, [](QPainter &p) { drawLetter(p, u"U"_s, [](QFont &f) { f.setUnderline(true); }); }},
        {u"取消線"_s, [](QPainter &p) { drawLetter(p, u"S"_s, [](QFont &f) { f.setStrikeOut(true); }); }},
        {u"左揃え"_s, [](QPainter &p) { drawLines(p, Qt::AlignLeft); }},
        {u"中央揃え"_s, [](QPainter &p) { drawLines(p, Qt::AlignHCenter); }},
        {u"右揃え"_s, [](QPainter &p) { drawLines(p, Qt::AlignRight); }},
    };
    return all;
}

} // namespace

QIcon richTextIcon(const QString &key, const QPalette &palette)
{
    const auto draw = drawings().constFind(key);
    if (draw == drawings().constEnd())
        return {};
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / side, pixels / side);
    painter.setPen(
        QPen(palette.color(QPalette::ButtonText), 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    (*draw)(painter);
    return QIcon(pixmap);
}

} // namespace masters
