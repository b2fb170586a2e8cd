#include "bare_pages.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPdfWriter>

#include <cmath>

namespace bench
{

BarePages::BarePages(const printing::Document &document)
{
    for (const printing::Sheet &sheet : document.sheets) {
        std::vector<Text> &page = m_pages.emplace_back();
        for (const printing::TextItem &item : sheet.texts) {
            const QFont *font = fontOf(item);
            const double before =
                printing::shareBefore(item.align) * QFontMetricsF(*font).horizontalAdvance(item.text);
            page.push_back(
                {{item.x - before, item.y + 0.88 * item.points * printing::twipsPerPoint}, font, item.text});
        }
    }
}

void BarePages::write(const QString &fileName) const
{
    QPdfWriter writer(fileName);
    writer.setResolution(1440);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    for (std::size_t page = 0; page < m_pages.size(); ++page) {
        if (page > 0)
            writer.newPage();
        for (const Text &text : m_pages[page]) {
            painter.setFont(*text.font);
            painter.drawText(text.at, text.text);
        }
    }
}

const QFont *BarePages::fontOf(const printing::TextItem &item)
{
    const int pixels = static_cast<int>(std::lround(item.points * printing::twipsPerPoint));
    QFont font(QString::fromUtf16(bareFace));
    font.setPixelSize(pixels);
    font.setBold(item.bold);
    return &m_fonts.try_emplace({pixels, item.bold}, font).first->second;
}

} // namespace bench
