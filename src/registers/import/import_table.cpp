#include "registers/import/import_table.h"

#include "tables/csv_guard.h"
#include "tables/csv_reader.h"
#include "tables/text_file.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qint64 highestFileSize = 64 * 1024 * 1024;
// More than any register of customers has; a table of the clerk's with more is no such register.
constexpr qsizetype highestColumns = 256;
// Of what is kept in memory until it is imported: some hundred megabytes.
constexpr qsizetype highestRows = 200'000;
constexpr qsizetype highestCells = 3'000'000;

bool isBlank(const QString &cell) { return cell.trimmed().isEmpty(); }

// Empty cells at the end cost memory and say nothing.
void dropBlankEnd(QStringList &cells)
{
    while (!cells.isEmpty() && isBlank(cells.constLast()))
        cells.removeLast();
}

base::Error tooMuch(const QString &what, qsizetype most)
{
    return {u"%1が多すぎるため（%2 まで）、読み込みませんでした。いくつかに分けて取り込んでください。"_s.arg(
        what, QLocale(QLocale::Japanese).toString(most))};
}

base::Result<ImportTable> tableFrom(tables::CsvReader reader, QString (*plain)(const QString &),
                                    const base::Progress &progress)
{
    ImportTable table;
    reader.limitFields(highestColumns);
    qsizetype cellsRead = 0;
    QStringList cells;
    while (reader.next(cells)) {
        if (reader.isCut())
            return base::Error{u"%1 行目の列が多すぎるため（%2 列まで）、読み込みませんでした。"_s.arg(
                QString::number(reader.line()), QString::number(highestColumns))};
        dropBlankEnd(cells);
        if (cells.isEmpty())
            continue;
        for (QString &cell : cells)
            cell = plain(cell);
        cellsRead += cells.size();
        table.columns = std::max(table.columns, cells.size());
        table.rows.push_back({reader.line(), std::move(cells)});
        if (table.rows.size() > std::size_t(highestRows))
            return tooMuch(u"行"_s, highestRows);
        if (cellsRead > highestCells)
            return tooMuch(u"セル"_s, highestCells);
        if (!progress(static_cast<qint64>(table.rows.size()), 0))
            return base::cancelled();
    }
    if (reader.endsInQuotes())
        return base::Error{u"%1 行目の引用符「\"」が閉じられていないため、読み込みませんでした。"_s.arg(
            QString::number(reader.line()))};
    if (table.rows.empty())
        return base::Error{u"取り込むデータがありません。"_s};
    return table;
}

base::Error noTable() { return {u"表の形をしたテキストではないため、読み込みませんでした。"_s}; }

// The pieces of a file up to one that is no text.
struct Pieces
{
    tables::TextFile file;
    bool isText = true;

    tables::CsvReader::Source source()
    {
        file.rewind();
        return [this](QString &piece) {
            const bool goesOn = file.next(piece);
            isText = isText && !(goesOn && piece.contains(QChar(u'\0')));
            return goesOn && isText;
        };
    }
};

QString asItStands(const QString &cell) { return cell; }

qsizetype fieldsOfFirstRecord(Pieces &pieces, QChar separator)
{
    tables::CsvReader reader(pieces.source(), separator);
    reader.limitFields(highestColumns);
    QStringList cells;
    reader.next(cells);
    return cells.size();
}

// What parts the cells, and whether the file's first line does nothing but say so.
struct Separator
{
    QChar sign;
    bool isNamed = false;
};

// "sep=;" as spreadsheet programs write and heed it before a table.
std::optional<QChar> namedSeparator(Pieces &pieces)
{
    static const QRegularExpression line(uR"re(\A"?sep=(.)"?\z)re"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    tables::CsvReader reader(pieces.source(), QChar(QChar::Null)); // whole lines
    QStringList first;
    reader.next(first);
    const auto match = line.match(first.value(0).left(8));
    return match.hasMatch() ? std::optional(match.captured(1).front()) : std::nullopt;
}

// Other programs call tables with tabs or semicolons CSV, too; the first record shows it. A semicolon is the
// weakest sign, as it may be part of a text; a text with a tab stands in quotes.
Separator separatorOf(Pieces &pieces)
{
    if (const auto named = namedSeparator(pieces))
        return {*named, true};
    const qsizetype byComma = fieldsOfFirstRecord(pieces, u',');
    const qsizetype byTab = fieldsOfFirstRecord(pieces, u'\t');
    if (byTab > 1 && byTab >= byComma)
        return {u'\t'};
    return {byComma <= 1 && fieldsOfFirstRecord(pieces, u';') > 1 ? u';' : u','};
}

} // namespace

base::Result<ImportTable> readImportFile(const QString &fileName, const base::Progress &progress)
{
    Pieces pieces;
    if (const base::Status opened = pieces.file.open(fileName, highestFileSize); !opened)
        return opened.error();
    const Separator separator = separatorOf(pieces);
    tables::CsvReader reader(pieces.source(), separator.sign);
    if (QStringList line; separator.isNamed)
        reader.next(line);
    auto table = tableFrom(std::move(reader), tables::unguarded, progress);
    if (!pieces.isText)
        return noTable();
    return pieces.file.state() ? table : pieces.file.state().error();
}

base::Result<ImportTable> tableFromClipboard(const QString &text)
{
    if (text.contains(QChar(u'\0')))
        return noTable();
    return tableFrom(tables::CsvReader(text, u'\t'), asItStands, base::unwatched);
}

} // namespace registers
