#include "db/foreign_table.h"

#include "db/care/plain_handle.h"
#include "db/old_files/old_file.h"
#include "db/old_files/old_file_reader.h"
#include "db/old_files/old_values.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace db
{

namespace
{

constexpr qint64 mostRows = 200'000;
constexpr int mostColumns = 64;
constexpr int longestValue = 10'000; // characters of one that is kept
constexpr int silence = 20'000;      // ms after which the reader is given up

bool isSqlite(const QString &fileName)
{
    QFile file(fileName);
    return QFileInfo(fileName).isFile() && file.open(QIODevice::ReadOnly) &&
           file.read(16) == QByteArrayView("SQLite format 3\0", 16);
}

base::Error noTable(const QString &name)
{
    return {u"このファイルには、テーブル「%1」がありません。ほかのファイルを選んでください。"_s.arg(name)};
}

base::Error tooManyRows()
{
    return {
        u"行が多すぎるため（200,000 行まで）、読み込みませんでした。古い年の行を除いたファイルを選んでください。"_s};
}

QString quoted(const QString &name) { return u'"' + QString(name).replace(u'"', u"\"\""_s) + u'"'; }

// A view could compute anything, and a virtual table read other files.
base::Result<QStringList> columnsIn(const PlainHandle &file, const QString &name)
{
    const QByteArray literal = "'" + QString(name).replace(u'\'', u"''"_s).toUtf8() + "'";
    PlainStatement found(file, "SELECT c.name FROM sqlite_schema t, pragma_table_xinfo(t.name) c "
                               "WHERE t.type = 'table' AND t.name = " +
                                   literal + " AND t.sql NOT LIKE 'CREATE VIRTUAL%' AND c.hidden = 0");
    if (!found)
        return file.error();
    QStringList columns;
    while (columns.size() < mostColumns && found.step() == SQLITE_ROW)
        columns << found.text(0);
    return columns.isEmpty() ? base::Result<QStringList>(noTable(name)) : columns;
}

base::Result<ForeignTable> readSqlite(const QString &fileName, const QString &name,
                                      const base::Progress &progress)
{
    PlainHandle file;
    if (const base::Status opened = file.open(fileName); !opened)
        return opened.error();
    if (const base::Status careful = file.run("PRAGMA query_only = ON"); !careful)
        return careful.error();
    file.watch(progress);
    const auto columns = columnsIn(file, name);
    if (!columns)
        return columns.error();
    QStringList quotedColumns;
    for (const QString &column : *columns)
        quotedColumns << quoted(column);
    PlainStatement rows(file,
                        (u"SELECT "_s + quotedColumns.join(u", "_s) + u" FROM "_s + quoted(name)).toUtf8());
    ForeignTable table{*columns, {}};
    int state = rows ? rows.step() : SQLITE_ERROR;
    for (; state == SQLITE_ROW; state = rows.step()) {
        QStringList cells;
        for (int column = 0; column < int(columns->size()); ++column)
            cells << rows.text(column).left(longestValue);
        table.rows.push_back(std::move(cells));
        if (qint64(table.rows.size()) > mostRows)
            return tooManyRows();
    }
    return state == SQLITE_DONE ? base::Result<ForeignTable>(std::move(table)) : file.error();
}

ColumnKind kindFor(const OldCell &cell)
{
    using old_reader::Cell;
    switch (cell.kind) {
    case Cell::Date:
        return ColumnKind::Date;
    case Cell::Boolean:
    case Cell::Integer:
        return ColumnKind::Integer;
    case Cell::Money:
    case Cell::Single:
    case Cell::Double:
    case Cell::Digits:
        return ColumnKind::Real;
    default:
        return ColumnKind::Text;
    }
}

// A number with all its digits: QVariant writes a double's first six.
QString textOf(const OldCell &cell)
{
    const QVariant value = carriedOver(cell, kindFor(cell)).value;
    return value.typeId() == QMetaType::Double
               ? QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest)
               : value.toString().left(longestValue);
}

base::Result<ForeignTable> readOld(const QString &fileName, const QString &name,
                                   const base::Progress &progress)
{
    if (const base::Status usable = checkOldFile(fileName); !usable)
        return usable.error();
    OldFileReader reader(oldFileReaderProgram(), silence);
    if (const base::Status opened = reader.open(fileName, [&] { return progress(0, 0); }); !opened)
        return opened.error();
    const auto found = std::ranges::find(reader.tables(), name, &OldTable::name);
    if (found == reader.tables().end())
        return noTable(name);
    const std::size_t wanted = std::size_t(found - reader.tables().begin());
    ForeignTable table{found->columns, {}};
    for (;;) {
        const auto step = reader.next();
        if (!step)
            return step.error();
        const bool isWanted = reader.tableIndex() == wanted;
        if (*step == OldFileReader::Step::Finished || (*step == OldFileReader::Step::TableEnds && isWanted))
            return table;
        if (*step != OldFileReader::Step::Row || !isWanted)
            continue;
        QStringList cells;
        for (const OldCell &cell : reader.row())
            cells << textOf(cell);
        table.rows.push_back(std::move(cells));
        if (qint64(table.rows.size()) > mostRows)
            return tooManyRows();
        if (!progress(qint64(table.rows.size()), found->rows))
            return base::cancelled();
    }
}

} // namespace

bool isForeignDatabase(const QString &fileName)
{
    return isSqlite(fileName) || oldFormatOf(fileName) != OldFormat::None;
}

base::Result<ForeignTable> readForeignTable(const QString &fileName, const QString &name,
                                            const base::Progress &progress)
{
    return isSqlite(fileName) ? readSqlite(fileName, name, progress) : readOld(fileName, name, progress);
}

} // namespace db
