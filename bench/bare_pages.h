#pragma once

#include "printing/renderer.h"

#include <QFont>

#include <map>
#include <vector>

namespace bench
{

/// The face that both sides print with.
inline constexpr const char16_t *bareFace = u"IPAMincho";

/// The texts of a document at their places, drawn with nothing but QPainter and QPdfWriter.
class BarePages
{
public:
    explicit BarePages(const printing::Document &document);

    void write(const QString &fileName) const;

private:
    /// A text as a program that draws nothing else would hold it: its font is made, its start known.
    struct Text
    {
        QPointF at;
        const QFont *font;
        QString text;
    };

    const QFont *fontOf(const printing::TextItem &item);

    std::map<std::pair<int, bool>, QFont> m_fonts;
    std::vector<std::vector<Text>> m_pages;
};

} // namespace bench
