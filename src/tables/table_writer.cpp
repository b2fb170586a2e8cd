#include "tables/table_writer.h"

#include "base/replacement.h"
#include "tables/format_writer.h"

#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <iterator>
#include <limits>

using namespace Qt::StringLiterals;

namespace tables
{

namespace
{

// The row of headings counts into the rows that a sheet can hold.
struct Format
{
    QLatin1StringView suffix;
    qint64 highestRowCount;
    qsizetype longestText; // in UTF-16 units
    std::unique_ptr<FormatWriter> (*make)(const QString &fileName);
};

constexpr qsizetype longestInSheet = 32767;
const Format formats[] = {
    {"xls"_L1, 65535, longestInSheet, xlsWriter},
    {"xlsx"_L1, 1048575, longestInSheet, xlsxWriter},
    {"csv"_L1, std::numeric_limits<qint64>::max(), std::numeric_limits<qsizetype>::max(), csvWriter},
};

const Format *formatOf(const QString &fileName)
{
    const QString suffix = QFileInfo(fileName).suffix();
    const auto *found = std::find_if(std::begin(formats), std::end(formats), [&](const Format &format) {
        return suffix.compare(format.suffix, Qt::CaseInsensitive) == 0;
    });
    return found == std::end(formats) ? nullptr : found;
}

QString grouped(qint64 number) { return QLocale(QLocale::Japanese).toString(number); }

base::Error tooLong(const base::Column &column, qint64 row)
{
    return {
        u"%1 件目の「%2」が長すぎるため（%3 文字まで）、書き出しませんでした。csv 形式を選んでください。"_s
            .arg(grouped(row), column.heading, grouped(longestInSheet))};
}

// The rows of \a table go into \a writer, and every hundredth one reports.
base::Status writeRows(FormatWriter &writer, const Format &format, const Table &table,
                       const base::Progress &progress)
{
    QVariantList values;
    std::vector<Cell> cells(static_cast<std::size_t>(table.columns.size()));
    for (qint64 row = 0;; ++row) {
        if (row % 100 == 0 && !progress(row, table.rowCount))
            return base::cancelled();
        const auto more = table.next(values);
        if (!more)
            return more.error();
        if (!*more)
            return {};
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            Cell &cell = cells[i];
            cell = cellOf(values.value(static_cast<qsizetype>(i)), table.columns[i].format);
            if (cell.text.size() > format.longestText)
                return tooLong(table.columns[i], row + 1);
        }
        if (const base::Status added = writer.addRow(cells); !added)
            return added;
    }
}

base::Status writeFile(const QString &fileName, const Format &format, const Table &table,
                       const base::Progress &progress)
{
    const auto writer = format.make(fileName);
    base::Status written = writer->begin(table.columns);
    if (written)
        written = writeRows(*writer, format, table, progress);
    return written ? writer->finish() : written;
}

} // namespace

base::Error writeError(const QString &detail)
{
    return {u"ファイルに書き込めませんでした。空き容量と、書き込みのできる場所かどうかを"
            "確かめてください。(%1)"_s.arg(detail)};
}

base::Status checkTarget(const QString &fileName, qint64 rowCount)
{
    const Format *format = formatOf(fileName);
    if (!format)
        return base::Error{u"この拡張子のファイルには書き出せません。拡張子を .xls、.xlsx または .csv に"
                           "してください。(%1)"_s.arg(QFileInfo(fileName).fileName())};
    if (rowCount > format->highestRowCount)
        return base::Error{
            u"%1 件あるため、%2 形式（%3 件まで）では書き出せません。%4 形式を選んでください。"_s.arg(
                grouped(rowCount), format->suffix, grouped(format->highestRowCount),
                rowCount > formats[1].highestRowCount ? u"csv"_s : u"xlsx"_s)};
    const QFileInfo target(fileName);
    if (target.exists() && !target.isFile())
        return base::Error{
            u"ファイルではないため、書き出せません。別の名前を選んでください。(%1)"_s.arg(target.fileName())};
    return {};
}

base::Status writeTable(const QString &fileName, const Table &table, const base::Progress &progress)
{
    if (const base::Status possible = checkTarget(fileName, table.rowCount); !possible)
        return possible;
    base::Replacement file(fileName);
    base::Status done = file.begin();
    if (done)
        done = writeFile(file.name(), *formatOf(fileName), table, progress);
    return done ? file.finish() : done;
}

} // namespace tables
