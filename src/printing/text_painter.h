#pragma once

#include "printing/sheet.h"

#include <QFont>
#include <QFontMetricsF>
#include <QHash>

#include <map>
#include <tuple>

class QPainter;

namespace printing
{

/// Draws the texts of sheets, keeping their fonts and widths from one to the next.
class TextPainter
{
public:
    /// \a face: the font of all texts that name none.
    explicit TextPainter(QString face)
        : m_face(std::move(face))
    {}

    /// To be called for each page: \a painter counts in twips and has a font of its own again.
    void begin(QPainter &painter);
    void draw(const TextItem &item);

private:
    struct Type
    {
        explicit Type(const QFont &theFont)
            : font(theFont)
            , metrics(theFont)
        {}

        double widthOf(const QString &text);

        QFont font;
        QFontMetricsF metrics;
        QHash<QString, double> widths;
    };

    Type &typeOf(const TextItem &item);
    QString faceOf(const QString &asked);
    void drawHorizontal(Type &type, const TextItem &item);
    void drawVertical(Type &type, const TextItem &item);

    QString m_face;
    QPainter *m_painter = nullptr;
    const Type *m_current = nullptr; // the painter's font
    std::map<std::tuple<QString, int, bool>, Type> m_types;
    QHash<QString, QString> m_faces;
};

} // namespace printing
