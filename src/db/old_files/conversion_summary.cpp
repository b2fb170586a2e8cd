#include "db/old_files/conversion_summary.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace db
{

bool ConversionSummary::isComplete() const
{
    return losses.isEmpty() &&
           std::all_of(tables.begin(), tables.end(), [](const Table &t) { return t.read == t.written; });
}

QString ConversionSummary::text() const
{
    QString text;
    for (const Table &table : tables)
        text +=
            table.name + u'\t' + QString::number(table.read) + u'\t' + QString::number(table.written) + u'\n';
    if (!losses.isEmpty())
        text += u"\n変換できなかったもの:\n"_s + losses.join(u'\n') + u'\n';
    if (!notes.isEmpty())
        text += u"\n変更点:\n"_s + notes.join(u'\n') + u'\n';
    return text;
}

} // namespace db
