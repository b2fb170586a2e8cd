#include "ui/reading_line_edit.h"

#include "text/width.h"

#include <QInputMethodEvent>

namespace ui
{

namespace
{

bool isHalfWidthKana(QChar c) { return c >= QChar(0xFF66) && c <= QChar(0xFF9F); }

bool hasKana(const QString &halfWidth)
{
    return std::any_of(halfWidth.cbegin(), halfWidth.cend(), isHalfWidthKana);
}

// What reads as it is written, in half width; empty for a text with kanji.
QString asReading(const QString &text)
{
    QString half = text::toHalfWidth(text);
    const bool readable = std::all_of(half.cbegin(), half.cend(), [](QChar c) {
        return (c >= u' ' && c <= u'~') || (c >= QChar(0xFF61) && c <= QChar(0xFF9F));
    });
    if (!readable)
        return {};
    // The input method turns an "n" at the end of the kana into ん only when it converts them.
    if (half.endsWith(u'n', Qt::CaseInsensitive) && half.size() > 1 &&
        isHalfWidthKana(half.at(half.size() - 2)))
        half.back() = QChar(0xFF9D);
    return half;
}

} // namespace

ReadingLineEdit::ReadingLineEdit(QWidget *parent)
    : QLineEdit(parent)
{}

void ReadingLineEdit::inputMethodEvent(QInputMethodEvent *event)
{
    const QString committed = event->commitString();
    const QString composition = event->preeditString();
    QLineEdit::inputMethodEvent(event);

    QString confirmed;
    if (!committed.isEmpty()) {
        confirmed = readingOf(committed);
        // A composition confirmed piece by piece: the rest of it, and of its reading, is still under way.
        const bool isPiece = m_composition.size() > committed.size() && m_composition.startsWith(committed);
        const QString rest = asReading(composition);
        if (isPiece && confirmed == m_reading && confirmed.endsWith(rest))
            confirmed.chop(rest.size());
        m_reading.clear();
    }
    remember(composition);
    if (!confirmed.trimmed().isEmpty())
        emit readingConfirmed(confirmed);
}

QString ReadingLineEdit::readingOf(const QString &committed) const
{
    const QString own = asReading(committed);
    return hasKana(own) || m_reading.isEmpty() ? own : m_reading;
}

void ReadingLineEdit::remember(const QString &composition)
{
    m_composition = composition;
    if (composition.isEmpty()) {
        m_reading.clear();
        return;
    }
    // Candidates with kanji leave the reading as it is; so do those in letters, once it has kana.
    const QString reading = asReading(composition);
    if (!reading.isEmpty() && (hasKana(reading) || !hasKana(m_reading)))
        m_reading = reading;
}

} // namespace ui
