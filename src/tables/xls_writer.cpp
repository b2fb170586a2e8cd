#include "tables/biff.h"
#include "tables/format_writer.h"
#include "tables/gsf_file.h"
#include "tables/shared_strings.h"

using namespace Qt::StringLiterals;

namespace tables
{

namespace
{

// A BIFF8 workbook in an OLE container. The texts of the cells stand before the cells, so both wait in
// temporary files until the last row is known.
class XlsWriter : public FormatWriter
{
public:
    explicit XlsWriter(const QString &fileName)
        : m_fileName(fileName)
    {}

    base::Status begin(const std::vector<base::Column> &columns) override
    {
        if (const base::Status opened = m_file.open(m_fileName, GsfFile::Container::Ole); !opened)
            return opened;
        if (!m_cells.open())
            return writeError(m_cells.errorString());
        m_columns = columns;
        if (const base::Status opened = m_strings.open(); !opened)
            return opened;
        for (std::size_t column = 0; column < columns.size(); ++column)
            addText(quint16(column), columns[column].heading, biff::HeadingLook);
        return endRow();
    }

    base::Status addRow(const std::vector<Cell> &cells) override
    {
        for (std::size_t column = 0; column < cells.size(); ++column)
            addCell(quint16(column), cells[column]);
        return endRow();
    }

    base::Status finish() override
    {
        const auto strings = m_strings.finish();
        if (!strings)
            return strings.error();
        if (!m_cells.flush() || !m_cells.seek(0))
            return writeError(m_cells.errorString());
        m_file.beginStream("Workbook");
        m_file.write(biff::workbookHead((*strings)->size()));
        if (const base::Status copied = copy(**strings); !copied)
            return copied;
        m_file.write(biff::record(biff::Eof, {}));
        m_file.write(sheetHead());
        if (const base::Status copied = copy(m_cells); !copied)
            return copied;
        m_file.write(sheetEnd());
        return m_file.close();
    }

private:
    void addCell(quint16 column, const Cell &cell)
    {
        switch (cell.kind) {
        case Cell::Kind::Blank:
            break;
        case Cell::Kind::Text:
            // An empty text would only keep its neighbour from running over it.
            if (!cell.text.isEmpty())
                addText(column, cell.text, biff::TextLook);
            break;
        case Cell::Kind::Number:
            addNumber(column, cell.number, biff::PlainLook);
            break;
        case Cell::Kind::Date:
            addNumber(column, cell.number, biff::DateLook);
            break;
        }
    }

    void addText(quint16 column, const QString &text, biff::Look look)
    {
        biff::Bytes content;
        content.add({quint16(m_row), column, look}).add(m_strings.add(text));
        m_pending += biff::record(biff::LabelSst, content);
    }

    void addNumber(quint16 column, double number, biff::Look look)
    {
        biff::Bytes content;
        content.add({quint16(m_row), column, look}).add(number);
        m_pending += biff::record(biff::Number, content);
    }

    base::Status endRow()
    {
        ++m_row;
        const bool written = m_cells.write(m_pending) == m_pending.size();
        m_pending.resize(0);
        return written ? base::Status() : writeError(m_cells.errorString());
    }

    [[nodiscard]] QByteArray sheetHead() const
    {
        QByteArray head = biff::record(biff::Bof, biff::beginning(0x0010));
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            const auto column = quint16(i);
            const auto width = quint16((m_columns[i].characters + 1) * 256);
            head += biff::record(biff::ColInfo,
                                 biff::Bytes().add({column, column, width, biff::PlainLook, 0, 0}));
        }
        biff::Bytes dimensions;
        dimensions.add(quint32(0)).add(m_row).add({0, quint16(m_columns.size()), 0});
        return head + biff::record(biff::Dimensions, dimensions);
    }

    // The headings stay in sight; the cursor stands below the first one.
    [[nodiscard]] static QByteArray sheetEnd()
    {
        constexpr quint16 shownAndFrozen = 0x07BE;
        constexpr quint16 below = 2;
        QByteArray end =
            biff::record(biff::Window2, biff::Bytes().add({shownAndFrozen, 0, 0, 64, 0, 0, 0, 0, 0}));
        end += biff::record(biff::Pane, biff::Bytes().add({0, 1, 1, 0, below}));
        end += biff::record(biff::Selection,
                            biff::Bytes().add(quint8(below)).add({1, 0, 0, 1, 1, 1}).add(quint16(0)));
        return end + biff::record(biff::Eof, {});
    }

    base::Status copy(QFile &from)
    {
        while (!from.atEnd()) {
            const QByteArray piece = from.read(qint64(1) << 16);
            if (piece.isEmpty())
                return writeError(from.errorString());
            m_file.write(piece);
        }
        return {};
    }

    QString m_fileName;
    GsfFile m_file;
    QTemporaryFile m_cells;
    SharedStrings m_strings;
    std::vector<base::Column> m_columns;
    QByteArray m_pending; // the records of the row
    quint32 m_row = 0;
};

} // namespace

std::unique_ptr<FormatWriter> xlsWriter(const QString &fileName)
{
    return std::make_unique<XlsWriter>(fileName);
}

} // namespace tables
