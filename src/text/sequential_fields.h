#pragma once

#include <QByteArray>

namespace text
{

/// Takes one field after another out of sequential text, as the postal-code files were written: blanks before
/// a field are passed over; a quoted field runs to the next quote, line ends included; any other to the comma
/// or line end. No character of the file is both: CP932's second bytes hold neither comma nor quote.
class SequentialFields
{
public:
    /// \a content must outlive the reader.
    explicit SequentialFields(QByteArrayView content)
        : m_rest(content)
    {}

    [[nodiscard]] bool atEnd()
    {
        skip(" \t\r\n");
        // Control-Z ends a text file of old.
        return m_rest.isEmpty() || m_rest.front() == '\x1a';
    }

    /// The next field; empty at the end.
    QByteArrayView next()
    {
        skip(" \t\r\n");
        const bool quoted = m_rest.startsWith('"');
        if (quoted)
            m_rest = m_rest.sliced(1);
        const QByteArrayView field = upTo(quoted ? "\"" : ",\r\n");
        if (quoted) {
            take();
            upTo(",\r\n");
        }
        skipEnd();
        return quoted ? field : field.trimmed();
    }

    /// Bytes that are still to be read.
    [[nodiscard]] qsizetype left() const { return m_rest.size(); }

private:
    void take()
    {
        if (!m_rest.isEmpty())
            m_rest = m_rest.sliced(1);
    }

    void skip(QByteArrayView characters)
    {
        while (!m_rest.isEmpty() && characters.contains(m_rest.front()))
            take();
    }

    // The comma or line end after a field.
    void skipEnd()
    {
        if (m_rest.startsWith("\r\n"))
            take();
        take();
    }

    QByteArrayView upTo(QByteArrayView ends)
    {
        qsizetype length = 0;
        while (length < m_rest.size() && !ends.contains(m_rest[length]))
            ++length;
        const QByteArrayView field = m_rest.first(length);
        m_rest = m_rest.sliced(length);
        return field;
    }

    QByteArrayView m_rest;
};

} // namespace text
