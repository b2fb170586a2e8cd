#pragma once

#include <QString>
#include <QStringList>

#include <limits>

namespace tables
{

/// Takes records out of separated text (RFC 4180): a field in double quotes may hold separators, line ends
/// and doubled quotes; blanks belong to the field; lines end with CR, LF or both. Empty lines are passed
/// over. The text must outlive the reader.
class CsvReader
{
public:
    /// \a separator: a comma in files, a tab in what spreadsheet programs put on the clipboard.
    explicit CsvReader(QStringView text, QChar separator = u',')
        : m_rest(text)
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
    [[nodiscard]] bool atLineEnd() const;
    void skipLineEnd();
    QString field();
    QString quotedField();
    QString plainField();
    QStringView take(qsizetype length);

    QStringView m_rest;
    QChar m_separator;
    qsizetype m_highestFields = std::numeric_limits<qsizetype>::max();
    int m_line = 1;
    int m_recordLine = 0;
    bool m_isCut = false;
    bool m_endsInQuotes = false;
};

} // namespace tables
