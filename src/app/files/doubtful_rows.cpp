#include "app/files/doubtful_rows.h"

#include "base/dated_name.h"
#include "db/care/salvage.h"
#include "tables/table_writer.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

tables::Table tableOf(const std::vector<db::DoubtfulRow> &rows)
{
    qsizetype most = 0;
    for (const db::DoubtfulRow &row : rows)
        most = std::max(most, row.values.size());
    tables::Table table;
    table.rowCount = static_cast<qint64>(rows.size());
    table.columns = {{u"見つかった場所"_s}, {u"キー"_s}};
    for (qsizetype i = 1; i <= most; ++i)
        table.columns.push_back({u"値%1"_s.arg(i)});
    table.next = [&rows, most, next = std::size_t(0)](QVariantList &row) mutable -> base::Result<bool> {
        if (next == rows.size())
            return false;
        const db::DoubtfulRow &doubtful = rows[next++];
        row = {doubtful.table, QString::number(doubtful.key)};
        for (qsizetype i = 0; i < most; ++i)
            row << doubtful.values.value(i);
        return true;
    };
    return table;
}

} // namespace

base::Result<QString> listDoubtfulRows(const db::Salvage &salvage, const QString &database,
                                       const QDate &today)
{
    if (salvage.strayRows == 0)
        return QString();
    const QFileInfo info(database);
    const QString list =
        base::datedName(info.path() + u'/' + info.completeBaseName() + u".csv"_s, u"判断できない行"_s, today);
    if (const base::Status written = tables::writeTable(list, tableOf(salvage.doubtful), base::unwatched);
        !written)
        return written.error();
    const QString said = u"どのテーブルのものか分からない行：%1\n内容は「%2」に書き出しました。"_s.arg(
        QString::number(salvage.strayRows), QFileInfo(list).fileName());
    const auto kept = static_cast<qint64>(salvage.doubtful.size());
    return kept < salvage.strayRows ? said + u"（最初の %1 行）"_s.arg(kept) : said;
}

} // namespace app
