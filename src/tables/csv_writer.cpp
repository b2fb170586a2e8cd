#include "tables/csv_guard.h"
#include "tables/format_writer.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace tables
{

namespace
{

// UTF-8 with its mark, by which spreadsheet programs know it; RFC 4180 otherwise. NULL is written as nothing,
// an empty text as a pair of quotes.
class CsvWriter : public FormatWriter
{
public:
    explicit CsvWriter(const QString &fileName)
        : m_file(fileName)
    {}

    base::Status begin(const std::vector<base::Column> &columns) override
    {
        if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return writeError(m_file.errorString());
        m_lines = u"\ufeff"_s;
        for (const base::Column &column : columns)
            add({Cell::Kind::Text, column.heading});
        return endLine();
    }

    base::Status addRow(const std::vector<Cell> &cells) override
    {
        for (const Cell &cell : cells)
            add(cell);
        return endLine();
    }

    base::Status finish() override
    {
        const base::Status flushed = flush();
        m_file.close();
        return m_file.error() == QFileDevice::NoError ? flushed : writeError(m_file.errorString());
    }

private:
    void add(const Cell &cell)
    {
        if (cell.kind == Cell::Kind::Text)
            addText(guarded(cell.text));
        else
            m_lines += cell.text;
        m_lines += u',';
    }

    void addText(const QString &text)
    {
        const bool plain = std::none_of(text.begin(), text.end(), [](QChar c) {
            return c == u',' || c == u'"' || c == u'\r' || c == u'\n';
        });
        if (plain && !text.isEmpty()) {
            m_lines += text;
            return;
        }
        m_lines += u'"';
        m_lines += QString(text).replace(u'"', "\"\""_L1);
        m_lines += u'"';
    }

    base::Status endLine()
    {
        m_lines.chop(1);
        m_lines += "\r\n"_L1;
        return m_lines.size() < 32768 ? base::Status() : flush();
    }

    base::Status flush()
    {
        const QByteArray bytes = m_lines.toUtf8();
        m_lines.clear();
        return m_file.write(bytes) == bytes.size() && m_file.flush() ? base::Status()
                                                                     : writeError(m_file.errorString());
    }

    QFile m_file;
    QString m_lines;
};

} // namespace

std::unique_ptr<FormatWriter> csvWriter(const QString &fileName)
{
    return std::make_unique<CsvWriter>(fileName);
}

} // namespace tables
