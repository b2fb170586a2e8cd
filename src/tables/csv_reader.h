#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <limits>

namespace tables
{

/// Takes records out of separated text (RFC 4180): a field in double quotes may hold separators, line ends
/// and doubled quotes; blanks belong to the field; lines end with CR, LF or both. Empty lines are passed
/// over.
class CsvReader
{
public:
    /// Puts the text's next piece in place of \a piece. \return false after the last one
    using Source = std::function<bool(QString &piece)>;

    /// \a separator: a comma in files, a tab in what spreadsheet programs put on the clipboard. \a text must
    /// outlive the reader.
    explicit CsvReader(QStringView text, QChar separator = u',')
        : m_rest(text)
        , m_separator(separator)
    {}

    /// The same for a text that comes piece by piece, of which only one is in memory.
    explicit CsvReader(Source source, QChar separator = u',')
        : m_source(std::move(source))
        , m_separator(separator)
    {}

    /// From the next record on, fields beyond \a highest are passed over, which bounds what a record costs.
    void limitFields(qsizetype highest) { m_highestFields = highest; }

    /// Whether the last record had more fields than the limit.
    [[nodiscard]] bool isCut() const { return m_isCut; }

    /// Reads the next record. \return false at the end
    bool next(QStringList &record);

    /// The line, counted from 1, in which the last record began.
    [[nodiscard]] int line() const { return m_recordLine; }

    /// Whether the text ended inside of quotes; the last record then holds all the rest.
    [[nodiscard]] bool endsInQuotes() const { return m_endsInQuotes; }

private:
    // What comes next may stand in the next piece.
    bool isAtEnd();
    bool isAt(QChar c) { return !isAtEnd() && m_rest.front() == c; }
    bool isAtLineEnd() { return isAt(u'\r') || isAt(u'\n'); }
    void skip() { m_rest = m_rest.sliced(1); }
    void skipLineEnd();
    QString field();
    QString quotedField();
    QString plainField();
    QStringView take(qsizetype length);

    Source m_source;
    QString m_piece; // that m_rest is the end of
    QStringView m_rest;
    QChar m_separator;
    qsizetype m_highestFields = std::numeric_limits<qsizetype>::max();
    int m_line = 1;
    int m_recordLine = 0;
    bool m_isCut = false;
    bool m_endsInQuotes = false;
};

} // namespace tables
