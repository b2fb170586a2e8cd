#include "registers/import/customer_import.h"
#include "tables/table_writer.h"

using namespace Qt::StringLiterals;

namespace registers
{

base::Status writeImportReport(const QString &fileName, const ImportTable &table,
                               const ImportAssignment &assignment,
                               const std::vector<const ImportCandidate *> &candidates,
                               const base::Progress &progress)
{
    std::vector<base::Column> columns{{u"行"_s, base::Format::Number}, {u"理由"_s}};
    for (qsizetype column = 0; column < table.columns; ++column) {
        const QString heading = assignment.hasHeadings ? table.firstRow().value(column) : QString();
        columns.push_back({heading.isEmpty() ? u"列%1"_s.arg(column + 1) : heading});
    }
    auto next = candidates.begin();
    const auto nextRow = [&](QVariantList &row) -> base::Result<bool> {
        if (next == candidates.end())
            return false;
        const ImportTable::Row &source = table.rows[(*next)->row];
        row = {source.line, (*next)->remark};
        for (qsizetype column = 0; column < table.columns; ++column)
            row << source.cells.value(column);
        ++next;
        return true;
    };
    return tables::writeTable(fileName, {columns, static_cast<qint64>(candidates.size()), nextRow}, progress);
}

} // namespace registers
