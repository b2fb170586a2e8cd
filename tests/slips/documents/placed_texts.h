#pragma once

#include "printing/sheet.h"
#include "printing/text_fit.h"

#include <QRectF>
#include <QStringList>

#include <algorithm>

// Where the texts of a sheet stand, in millimetres.

inline QStringList textsOf(const printing::Sheet &sheet)
{
    QStringList texts;
    for (const printing::TextItem &item : sheet.texts)
        texts << item.text;
    return texts;
}

/// The first of \a sheet's items with that text, or the one that many later.
inline const printing::TextItem *itemWith(const printing::Sheet &sheet, const QString &text, int later = 0)
{
    for (const printing::TextItem &item : sheet.texts) {
        if (item.text == text && later-- == 0)
            return &item;
    }
    return nullptr;
}

/// Where it is anchored.
inline QPointF placeOf(const printing::TextItem &item)
{
    return QPointF(item.x, item.y) / printing::twipsPerMillimetre;
}

/// The rectangle that a text takes in fixed-width type.
inline QRectF areaOf(const printing::TextItem &item)
{
    double width = printing::textWidth(item.text, item.points);
    if (item.room > 0)
        width = std::min(width, item.room / printing::twipsPerMillimetre);
    const QPointF place = placeOf(item);
    return {place.x() - width * printing::shareBefore(item.align), place.y(), width,
            printing::millimetresFromPoints(item.points)};
}

/// What lies outside \a paper or on top of another text.
inline QStringList misplaced(const printing::Sheet &sheet, const QRectF &paper)
{
    constexpr double slack = 0.02; // of rounding to whole twips
    QStringList found;
    for (std::size_t i = 0; i < sheet.texts.size(); ++i) {
        const QRectF area = areaOf(sheet.texts[i]).adjusted(slack, slack, -slack, -slack);
        if (!paper.contains(area))
            found << QStringLiteral("off the paper: ") + sheet.texts[i].text;
        for (std::size_t other = i + 1; other < sheet.texts.size(); ++other) {
            if (area.intersects(areaOf(sheet.texts[other])))
                found << sheet.texts[i].text + QStringLiteral(" on ") + sheet.texts[other].text;
        }
    }
    return found;
}
