#include "shipping/addresses/address_marks.h"

#include "db/connection.h"
#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace shipping
{

base::Status markAddressed(db::Connection &connection, const std::vector<qint64> &customers,
                           const QString &paper, const QDate &today)
{
    for (const qint64 customer : customers) {
        if (customer <= 0)
            continue;
        const auto added = connection.execute(
            u"INSERT INTO 宛名印刷 (納品先ID, 印刷日, 用紙, 版) VALUES (?, ?, ?, (SELECT 最終 FROM 版数))"_s,
            {customer, text::stored(today), paper});
        if (!added)
            return added.error();
    }
    return {};
}

base::Result<QHash<qint64, QDate>> lastAddressed(db::Connection &connection)
{
    const auto rows = connection.select(
        u"SELECT 納品先ID, MAX(印刷日) FROM 宛名印刷 GROUP BY 納品先ID ORDER BY 納品先ID"_s);
    if (!rows)
        return rows.error();
    QHash<qint64, QDate> days;
    for (const QVariantList &row : rows->rows) {
        if (const auto day = text::parseDate(row.at(1).toString()))
            days.insert(row.at(0).toLongLong(), *day);
    }
    return days;
}

} // namespace shipping
