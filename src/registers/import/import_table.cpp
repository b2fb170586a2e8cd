#include "registers/import/import_table.h"

#include "tables/csv_guard.h"
#include "tables/csv_reader.h"
#include "tables/text_file.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qint64 highestFileSize = 64 * 1024 * 1024;
// More than any register of customers has; a table of the clerk's with more is no such register.
constexpr qsizetype highestColumns = 256;

bool isBlank(const QString &cell) { return cell.trimmed().isEmpty(); }

// Empty cells at the end cost memory and say nothing.
void dropBlankEnd(QStringList &cells)
{
    while (!cells.isEmpty() && isBlank(cells.constLast()))
        cells.removeLast();
}

base::Result<ImportTable> tableFrom(const QString &text, QChar separator, QString (*plain)(const QString &),
                                    const base::Progress &progress)
{
    if (text.contains(QChar(u'\0')))
        return base::Error{u"表の形をしたテキストではないため、読み込みませんでした。"_s};
    ImportTable table;
    tables::CsvReader reader(text, separator);
    reader.limitFields(highestColumns);
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
        table.columns = std::max(table.columns, cells.size());
        table.rows.push_back({reader.line(), std::move(cells)});
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

QString asItStands(const QString &cell) { return cell; }

qsizetype fieldsOfFirstRecord(const QString &text, QChar separator)
{
    tables::CsvReader reader(text, separator);
    reader.limitFields(highestColumns);
    QStringList cells;
    reader.next(cells);
    return cells.size();
}

// Other programs call tables with tabs or semicolons CSV, too; the first record shows it. A semicolon is the
// weakest sign, as it may be part of a text; a text with a tab stands in quotes.
QChar separatorOf(const QString &text)
{
    const qsizetype byComma = fieldsOfFirstRecord(text, u',');
    const qsizetype byTab = fieldsOfFirstRecord(text, u'\t');
    if (byTab > 1 && byTab >= byComma)
        return u'\t';
    return byComma <= 1 && fieldsOfFirstRecord(text, u';') > 1 ? u';' : u',';
}

} // namespace

base::Result<ImportTable> readImportFile(const QString &fileName, const base::Progress &progress)
{
    const auto text = tables::readTextFile(fileName, highestFileSize);
    return text ? tableFrom(*text, separatorOf(*text), tables::unguarded, progress) : text.error();
}

base::Result<ImportTable> tableFromClipboard(const QString &text)
{
    return tableFrom(text, u'\t', asItStands, base::unwatched);
}

} // namespace registers
