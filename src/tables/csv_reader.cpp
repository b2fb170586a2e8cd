#include "tables/csv_reader.h"

namespace tables
{

bool CsvReader::atLineEnd() const { return m_rest.front() == u'\r' || m_rest.front() == u'\n'; }

void CsvReader::skipLineEnd()
{
    m_rest = m_rest.sliced(m_rest.startsWith(u"\r\n") ? 2 : 1);
    ++m_line;
}

bool CsvReader::next(QStringList &record)
{
    record.clear();
    m_isCut = false;
    while (!m_rest.isEmpty() && atLineEnd())
        skipLineEnd();
    if (m_rest.isEmpty())
        return false;
    m_recordLine = m_line;
    record += field();
    while (!m_rest.isEmpty() && m_rest.front() == m_separator) {
        m_rest = m_rest.sliced(1);
        const QString next = field();
        m_isCut = m_isCut || record.size() >= m_highestFields;
        if (!m_isCut)
            record += next;
    }
    if (!m_rest.isEmpty())
        skipLineEnd();
    return true;
}

QString CsvReader::field()
{
    if (!m_rest.startsWith(u'"'))
        return plainField();
    // What stands between the closing quote and the separator is kept: a stray quote must cost no text.
    const QString quoted = quotedField();
    return quoted + plainField();
}

QString CsvReader::plainField()
{
    qsizetype length = 0;
    while (length < m_rest.size() && m_rest[length] != m_separator && m_rest[length] != u'\r' &&
           m_rest[length] != u'\n')
        ++length;
    return take(length).toString();
}

QString CsvReader::quotedField()
{
    m_rest = m_rest.sliced(1);
    QString field;
    while (true) {
        const qsizetype quote = m_rest.indexOf(u'"');
        m_endsInQuotes = quote < 0;
        const QStringView piece = take(m_endsInQuotes ? m_rest.size() : quote);
        // A CR LF counts once, by its LF.
        m_line += static_cast<int>(piece.count(u'\n'));
        field += piece;
        if (m_endsInQuotes)
            return field;
        m_rest = m_rest.sliced(1);
        if (!m_rest.startsWith(u'"'))
            return field;
        field += u'"';
        m_rest = m_rest.sliced(1);
    }
}

QStringView CsvReader::take(qsizetype length)
{
    const QStringView taken = m_rest.first(length);
    m_rest = m_rest.sliced(length);
    return taken;
}

} // namespace tables
