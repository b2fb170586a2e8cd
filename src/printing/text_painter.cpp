#include "printing/text_painter.h"

#include "printing/font_names.h"
#include "printing/print_frame.h"
#include "printing/vertical.h"

#include <QFontDatabase>
#include <QPainter>

#include <cmath>

namespace printing
{

namespace
{

// The part of the em square above the baseline in Japanese type.
constexpr double baselineShare = 0.88;

constexpr qsizetype mostWidths = 20'000; // kept of one type; most texts of a long run are alike

double squeezeInto(double room, double natural) { return room > 0 && natural > room ? room / natural : 1.0; }

/// Turns the axes about the square's centre, where the painter stands, as \a form asks for.
void placeForm(QPainter &painter, VerticalForm form, double em)
{
    const double shift = verticalShift(form) * em;
    painter.translate(shift, -shift);
    if (form == VerticalForm::Mirrored)
        painter.scale(-1, 1);
    if (form == VerticalForm::Mirrored || form == VerticalForm::Turned)
        painter.rotate(90);
}

} // namespace

double TextPainter::Type::widthOf(const QString &text)
{
    if (const auto known = widths.constFind(text); known != widths.constEnd())
        return *known;
    if (widths.size() >= mostWidths)
        widths.clear();
    return *widths.insert(text, metrics.horizontalAdvance(text));
}

void TextPainter::begin(QPainter &painter)
{
    m_painter = &painter;
    m_current = nullptr;
}

void TextPainter::draw(const TextItem &item)
{
    Type &type = typeOf(item);
    if (m_current != &type)
        m_painter->setFont(type.font);
    m_current = &type;
    if (item.vertical)
        drawVertical(type, item);
    else
        drawHorizontal(type, item);
}

QString TextPainter::faceOf(const QString &asked)
{
    if (asked.isEmpty())
        return m_face;
    auto found = m_faces.find(asked);
    if (found == m_faces.end())
        found = m_faces.insert(asked, installedFace(asked, QFontDatabase::families()));
    return *found;
}

TextPainter::Type &TextPainter::typeOf(const TextItem &item)
{
    const QString face = faceOf(item.face);
    const auto key = std::tuple(face, typePixels(item.points), item.bold);
    auto found = m_types.find(key);
    if (found == m_types.end())
        found = m_types.emplace(key, typeFont(face, item.points, item.bold)).first;
    return found->second;
}

void TextPainter::drawHorizontal(Type &type, const TextItem &item)
{
    const double baseline = item.y + baselineShare * item.points * twipsPerPoint;
    const bool isPlain = item.align == Align::Left && item.room <= 0;
    const double natural = isPlain ? 0 : type.widthOf(item.text);
    const double squeeze = squeezeInto(item.room, natural);
    const double left = item.x - natural * squeeze * shareBefore(item.align);
    if (squeeze >= 1) {
        m_painter->drawText(QPointF(left, baseline), item.text);
        return;
    }
    m_painter->save();
    m_painter->translate(left, baseline);
    m_painter->scale(squeeze, 1);
    m_painter->drawText(QPointF(0, 0), item.text);
    m_painter->restore();
}

void TextPainter::drawVertical(Type &type, const TextItem &item)
{
    const std::vector<VerticalSquare> squares = verticalSquares(item.text, item.pairedDigits);
    const double em = item.points * twipsPerPoint;
    const double natural = em * static_cast<double>(squares.size());
    const double squeeze = squeezeInto(item.room, natural);
    double middle = item.y - natural * squeeze * shareBefore(item.align) + em * squeeze / 2;
    for (const VerticalSquare &square : squares) {
        m_painter->save();
        m_painter->translate(item.x, middle);
        m_painter->scale(1, squeeze);
        placeForm(*m_painter, square.form, em);
        const double width = type.widthOf(square.text);
        if (width > em)
            m_painter->scale(em / width, 1);
        m_painter->drawText(QPointF(-width / 2, (baselineShare - 0.5) * em), square.text);
        m_painter->restore();
        middle += em * squeeze;
    }
}

} // namespace printing
