#include "tables/format_writer.h"
#include "tables/gsf_file.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tables
{

namespace
{

constexpr char contentTypes[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">)"
    R"(<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>)"
    R"(<Default Extension="xml" ContentType="application/xml"/>)"
    R"(<Override PartName="/xl/workbook.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"/>)"
    R"(<Override PartName="/xl/worksheets/sheet1.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/>)"
    R"(<Override PartName="/xl/styles.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml"/>)"
    R"(</Types>)";

constexpr char packageRelations[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
    R"(<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="xl/workbook.xml"/>)"
    R"(</Relationships>)";

constexpr char workbook[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<workbook xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main" xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
    R"(<sheets><sheet name="Sheet1" sheetId="1" r:id="rId1"/></sheets></workbook>)";

constexpr char workbookRelations[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">)"
    R"(<Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet" Target="worksheets/sheet1.xml"/>)"
    R"(<Relationship Id="rId2" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles" Target="styles.xml"/>)"
    R"(</Relationships>)";

// The looks of cells that the letters below name: 0 plain, 1 heading, 2 text, 3 date.
constexpr char styles[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<styleSheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)"
    R"(<numFmts count="1"><numFmt numFmtId="164" formatCode="yyyy/mm/dd"/></numFmts>)"
    R"(<fonts count="2"><font><sz val="11"/><name val="ＭＳ Ｐゴシック"/></font>)"
    R"(<font><b/><sz val="11"/><name val="ＭＳ Ｐゴシック"/></font></fonts>)"
    R"(<fills count="2"><fill><patternFill patternType="none"/></fill><fill><patternFill patternType="gray125"/></fill></fills>)"
    R"(<borders count="1"><border><left/><right/><top/><bottom/><diagonal/></border></borders>)"
    R"(<cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"/></cellStyleXfs>)"
    R"(<cellXfs count="4"><xf numFmtId="0" fontId="0" fillId="0" borderId="0" xfId="0"/>)"
    R"(<xf numFmtId="0" fontId="1" fillId="0" borderId="0" xfId="0" applyFont="1"/>)"
    R"(<xf numFmtId="49" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/>)"
    R"(<xf numFmtId="164" fontId="0" fillId="0" borderId="0" xfId="0" applyNumberFormat="1"/></cellXfs>)"
    R"(<cellStyles count="1"><cellStyle name="Normal" xfId="0" builtinId="0"/></cellStyles></styleSheet>)";

// A, B … Z, AA …
QByteArray columnLetters(qsizetype column)
{
    QByteArray letters;
    for (qsizetype rest = column + 1; rest > 0; rest = (rest - 1) / 26)
        letters.prepend(char('A' + (rest - 1) % 26));
    return letters;
}

bool isEscape(QByteArrayView text)
{
    static constexpr QByteArrayView digits = "0123456789ABCDEFabcdef";
    return text.size() >= 7 && text[0] == '_' && text[1] == 'x' && text[6] == '_' &&
           std::all_of(text.begin() + 2, text.begin() + 6, [](char c) { return digits.contains(c); });
}

// Characters that XML has no place for are written as _xHHHH_, and a text that looks so gets its first
// character escaped.
QByteArray escaped(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    if (std::none_of(utf8.begin(), utf8.end(), [](char c) {
            return static_cast<unsigned char>(c) < ' ' || c == '&' || c == '<' || c == '>' || c == '_';
        }))
        return utf8;
    QByteArray xml;
    for (qsizetype i = 0; i < utf8.size(); ++i) {
        const char c = utf8[i];
        if (c == '&')
            xml += "&amp;";
        else if (c == '<')
            xml += "&lt;";
        else if (c == '>')
            xml += "&gt;";
        else if (static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n')
            xml += "_x" + QByteArray::number(c, 16).toUpper().rightJustified(4, '0') + '_';
        else if (c == '_' && isEscape(QByteArrayView(utf8).sliced(i)))
            xml += "_x005F_";
        else
            xml += c;
    }
    return xml;
}

// An Office Open XML workbook, the texts within their cells, so that it is written in one go and the rows
// leave nothing behind in memory.
class XlsxWriter : public FormatWriter
{
public:
    explicit XlsxWriter(const QString &fileName)
        : m_fileName(fileName)
    {}

    base::Status begin(const std::vector<base::Column> &columns) override
    {
        if (const base::Status opened = m_file.open(m_fileName, GsfFile::Container::Zip); !opened)
            return opened;
        const std::pair<const char *, const char *> parts[] = {
            {"[Content_Types].xml", contentTypes},
            {"_rels/.rels", packageRelations},
            {"xl/workbook.xml", workbook},
            {"xl/_rels/workbook.xml.rels", workbookRelations},
            {"xl/styles.xml", styles},
        };
        for (const auto &[path, content] : parts) {
            m_file.beginStream(path);
            m_file.write(content);
        }
        m_file.beginStream("xl/worksheets/sheet1.xml");
        addSheetHead(columns);
        for (std::size_t column = 0; column < columns.size(); ++column) {
            m_letters.push_back(columnLetters(column));
            addText(std::size_t(column), columns[column].heading, '1');
        }
        return endRow();
    }

    base::Status addRow(const std::vector<Cell> &cells) override
    {
        m_pending += "<row>";
        for (std::size_t column = 0; column < cells.size(); ++column)
            addCell(column, cells[column]);
        return endRow();
    }

    base::Status finish() override
    {
        m_file.write(m_pending + "</sheetData></worksheet>");
        return m_file.close();
    }

private:
    // The headings stay in sight.
    void addSheetHead(const std::vector<base::Column> &columns)
    {
        m_pending =
            R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<worksheet xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main">)"
            R"(<sheetViews><sheetView workbookViewId="0"><pane ySplit="1" topLeftCell="A2" activePane="bottomLeft" state="frozen"/></sheetView></sheetViews><cols>)";
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const QByteArray number = QByteArray::number(i + 1);
            m_pending += "<col min=\"" + number + "\" max=\"" + number + "\" width=\"" +
                         QByteArray::number(columns[i].characters + 1) + "\" customWidth=\"1\"/>";
        }
        m_pending += "</cols><sheetData><row>";
    }

    void addCell(std::size_t column, const Cell &cell)
    {
        switch (cell.kind) {
        case Cell::Kind::Blank:
            break;
        case Cell::Kind::Text:
            // An empty text would only keep its neighbour from running over it.
            if (!cell.text.isEmpty())
                addText(column, cell.text, '2');
            break;
        case Cell::Kind::Number:
            addNumber(column, cell, '0');
            break;
        case Cell::Kind::Date:
            addNumber(column, cell, '3');
            break;
        }
    }

    void addReference(std::size_t column, char look)
    {
        m_pending += "<c r=\"";
        m_pending += m_letters[column];
        m_pending += m_rowNumber;
        m_pending += "\" s=\"";
        m_pending += look;
    }

    void addText(std::size_t column, const QString &text, char look)
    {
        addReference(column, look);
        m_pending += "\" t=\"inlineStr\"><is><t xml:space=\"preserve\">";
        m_pending += escaped(text);
        m_pending += "</t></is></c>";
    }

    void addNumber(std::size_t column, const Cell &cell, char look)
    {
        addReference(column, look);
        m_pending += "\"><v>";
        m_pending += QByteArray::number(cell.number, 'g', QLocale::FloatingPointShortest);
        m_pending += "</v></c>";
    }

    base::Status endRow()
    {
        m_pending += "</row>";
        m_rowNumber = QByteArray::number(++m_row);
        if (m_pending.size() < 65536)
            return {};
        m_file.write(m_pending);
        m_pending.resize(0);
        return m_file.state();
    }

    QString m_fileName;
    GsfFile m_file;
    std::vector<QByteArray> m_letters;
    QByteArray m_pending;
    qint64 m_row = 1;
    QByteArray m_rowNumber = "1";
};

} // namespace

std::unique_ptr<FormatWriter> xlsxWriter(const QString &fileName)
{
    return std::make_unique<XlsxWriter>(fileName);
}

} // namespace tables
