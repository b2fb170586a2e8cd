#include "tables/csv_reader.h"

namespace tables
{

bool CsvReader::isAtEnd()
{
    while (m_rest.isEmpty() && m_source) {
        if (m_source(m_piece))
            m_rest = m_piece;
        else
            m_source = {};
    }
    return m_rest.isEmpty();
}

void CsvReader::skipLineEnd()
{
    const bool isReturn = m_rest.front() == u'\r';
    skip();
    if (isReturn && isAt(u'\n'))
        skip();
    ++m_line;
}

bool CsvReader::next(QStringList &record)
{
    record.clear();
    m_isCut = false;
    while (isAtLineEnd())
        skipLineEnd();
    if (isAtEnd())
        return false;
    m_recordLine = m_line;
    record += field();
    while (isAt(m_separator)) {
        skip();
        const QString next = field();
        m_isCut = m_isCut || record.size() >= m_highestFields;
        if (!m_isCut)
            record += next;
    }
    if (!isAtEnd())
        skipLineEnd();
    return true;
}

QString CsvReader::field()
{
    if (!isAt(u'"'))
        return plainField();
    // What stands between the closing quote and the separator is kept: a stray quote must cost no text.
    const QString quoted = quotedField();
    return quoted + plainField();
}

QString CsvReader::plainField()
{
    QString field;
    while (!isAtEnd()) {
        qsizetype length = 0;
        while (length < m_rest.size() && m_rest[length] != m_separator && m_rest[length] != u'\r' &&
               m_rest[length] != u'\n')
            ++length;
        field += take(length);
        if (!m_rest.isEmpty())
            break;
    }
    return field;
}

QString CsvReader::quotedField()
{
    skip();
    QString field;
    while (true) {
        const qsizetype quote = m_rest.indexOf(u'"');
        const QStringView piece = take(quote < 0 ? m_rest.size() : quote);
        // A CR LF counts once, by its LF.
        m_line += static_cast<int>(piece.count(u'\n'));
        field += piece;
        m_endsInQuotes = isAtEnd();
        if (m_endsInQuotes)
            return field;
        if (quote < 0)
            continue;
        skip();
        if (!isAt(u'"'))
            return field;
        field += u'"';
        skip();
    }
}

QStringView CsvReader::take(qsizetype length)
{
    const QStringView taken = m_rest.first(length);
    m_rest = m_rest.sliced(length);
    return taken;
}

} // namespace tables
