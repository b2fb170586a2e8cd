#include "reports/ledgers/ledger_output.h"

#include "tables/table_writer.h"
#include "text/dates.h"
#include "text/format_value.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr std::size_t mostUpright = 6; // columns that an upright page has room for

QStringList shownRow(const LedgerTable &table, const QVariantList &values)
{
    QStringList cells;
    for (qsizetype i = 0; i < values.size(); ++i)
        cells << text::formatValue(table.columns[static_cast<std::size_t>(i)].format, values.at(i));
    return cells;
}

qint64 rowCount(const LedgerTable &table)
{
    return static_cast<qint64>(table.rows.size()) + (table.totals.isEmpty() ? 0 : 1);
}

} // namespace

printing::List printedList(const LedgerTable &table, const QDate &today)
{
    printing::List list;
    list.title = table.title;
    list.remark = table.remark;
    list.date = text::formatDate(today);
    list.columns = table.columns;
    for (const QVariantList &row : table.rows)
        list.rows.push_back(shownRow(table, row));
    if (!table.totals.isEmpty())
        list.totals = shownRow(table, table.totals);
    if (table.columns.size() > mostUpright)
        std::swap(list.paperWidth, list.paperHeight);
    return list;
}

QString fileTitle(const LedgerTable &table)
{
    QString title = table.title + u' ' + table.remark;
    return title.replace(u'/', u'-').replace(u"　　"_s, u" "_s);
}

base::Status checkLedgerExport(const LedgerTable &table, const QString &fileName)
{
    return tables::checkTarget(fileName, rowCount(table));
}

base::Status exportLedger(const LedgerTable &table, const QString &fileName, const base::Progress &progress)
{
    tables::Table file;
    file.columns = table.columns;
    file.rowCount = rowCount(table);
    std::size_t at = 0;
    file.next = [&table, at](QVariantList &row) mutable -> base::Result<bool> {
        if (at < table.rows.size())
            row = table.rows[at];
        else if (at == table.rows.size() && !table.totals.isEmpty())
            row = table.totals;
        else
            return false;
        ++at;
        return true;
    };
    return tables::writeTable(fileName, file, progress);
}

} // namespace reports
