#include "shipping/addresses/house_numbers.h"

#include "printing/text_fit.h"
#include "text/width.h"

#include <string_view>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr std::u16string_view kanjiDigits = u"〇一二三四五六七八九";
// All that input methods deliver for a dash, once it is full width.
constexpr QStringView dashes = u"－−‐‑‒–—―ー─━";
// Shorter than －: turned, it keeps a quarter of its square free at both ends, so that it is no 一.
constexpr QChar columnDash = u'‐';

bool isDigit(QChar c) { return c >= u'０' && c <= u'９'; }
bool isLetter(QChar c) { return (c >= u'Ａ' && c <= u'Ｚ') || (c >= u'ａ' && c <= u'ｚ'); }
bool isKanjiDigit(QChar c) { return c == u'十' || kanjiDigits.find(c.unicode()) != kanjiDigits.npos; }
bool isFigure(QChar c) { return isDigit(c) || isLetter(c) || isKanjiDigit(c); }
bool isDash(QChar c) { return dashes.contains(c); }

/// The first place from \a at on that holds no blank.
qsizetype behindBlanks(QStringView text, qsizetype at)
{
    while (at < text.size() && text[at].isSpace())
        ++at;
    return at;
}

/// Writes a full-width address into a column, from its beginning to its end.
class ColumnWriter
{
public:
    ColumnWriter(QStringView text, Figures figures, Between between)
        : m_text(text)
        , m_figures(figures)
        , m_between(between)
    {}

    QString write()
    {
        while (m_at < m_text.size()) {
            if (isDigit(m_text[m_at]))
                writeNumber();
            else if (!writeDash())
                m_written += m_text[m_at++];
        }
        return m_written;
    }

private:
    void writeNumber()
    {
        qsizetype end = m_at;
        while (end < m_text.size() && isDigit(m_text[end]))
            ++end;
        const bool besideLetter =
            (m_at > 0 && isLetter(m_text[m_at - 1])) || (end < m_text.size() && isLetter(m_text[end]));
        const QStringView number = m_text.mid(m_at, end - m_at);
        if (m_figures == Figures::Kanji && !besideLetter) {
            for (const QChar digit : number)
                m_written += kanjiDigits[static_cast<std::size_t>(digit.unicode() - u'０')];
        } else {
            m_written += number.size() == 2 ? text::toHalfWidthAscii(number) : number.toString();
        }
        m_at = end;
    }

    /// A dash between two figures, with the blanks around it. \return whether there is one
    bool writeDash()
    {
        const qsizetype dash = behindBlanks(m_text, m_at);
        if (m_at == 0 || dash >= m_text.size() || !isDash(m_text[dash]))
            return false;
        const qsizetype next = behindBlanks(m_text, dash + 1);
        const QChar before = m_text[m_at - 1];
        if (next >= m_text.size() || !isFigure(before) || !isFigure(m_text[next]))
            return false;
        const bool letter = isLetter(before) || isLetter(m_text[next]);
        m_written += m_between == Between::No && !letter ? QChar(u'の') : columnDash;
        m_at = next;
        return true;
    }

    QStringView m_text;
    Figures m_figures;
    Between m_between;
    qsizetype m_at = 0;
    QString m_written;
};

bool isHalfWidthKana(QChar c) { return c >= u'｡' && c <= u'ﾟ'; }

} // namespace

QString columnAddress(const QString &typed, Figures figures, Between between)
{
    const QString full = text::toFullWidth(printing::singleLine(typed).trimmed());
    return ColumnWriter(full, figures, between).write();
}

QString lineAddress(const QString &typed)
{
    const QString line = printing::singleLine(typed).trimmed();
    QString written;
    for (qsizetype at = 0; at < line.size();) {
        qsizetype end = at;
        while (end < line.size() && isHalfWidthKana(line[end]))
            ++end;
        const bool isKana = end > at;
        end = isKana ? end : at + 1;
        const QStringView part = QStringView(line).mid(at, end - at);
        written += isKana ? text::toFullWidth(part) : part.toString();
        at = end;
    }
    return written;
}

} // namespace shipping
