#include "tables/report_file.h"

#include "tables/table_writer.h"

namespace tables
{

namespace
{

std::size_t lineCount(const base::Report &report)
{
    return report.rows.size() + (report.totals.isEmpty() ? 0 : 1);
}

} // namespace

base::Status checkReport(const QString &fileName, const base::Report &report)
{
    return checkTarget(fileName, static_cast<qint64>(lineCount(report)));
}

base::Status writeReport(const QString &fileName, const base::Report &report, const base::Progress &progress)
{
    const auto next = [&report, at = std::size_t(0)](QVariantList &row) mutable -> base::Result<bool> {
        if (at == lineCount(report))
            return false;
        row = at < report.rows.size() ? report.rows[at].values : report.totals;
        ++at;
        return true;
    };
    return writeTable(fileName, {report.columns, static_cast<qint64>(lineCount(report)), next}, progress);
}

} // namespace tables
