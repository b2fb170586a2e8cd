#include "registers/lists/customer_export.h"

#include "db/connection.h"
#include "db/transaction.h"
#include "tables/table_writer.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

using enum base::Format;

struct ExportColumn
{
    const char16_t *field;
    const char16_t *heading;
    base::Format format;
    int characters; // its width
};

// Spreadsheets made from this program's exports know the columns by place and heading.
constexpr ExportColumn exportColumns[] = {
    {u"納品先ID", u"納品先ID", Number, 9},
    {u"コード", u"コード", Text, 12},
    {u"納品先名1", u"納品先名1", Text, 36},
    {u"納品先名2", u"納品先名2", Text, 24},
    {u"フリガナ", u"ﾌﾘｶﾞﾅ", Text, 24},
    {u"郵便番号", u"郵便番号", Text, 10},
    {u"住所1", u"住所1", Text, 40},
    {u"住所2", u"住所2", Text, 30},
    {u"TEL1", u"TEL1", Text, 15},
    {u"TEL2", u"TEL2", Text, 15},
    {u"FAX", u"FAX", Text, 15},
    {u"メール", u"ﾒｰﾙｱﾄﾞﾚｽ", Text, 28},
    {u"メモ", u"備考", Text, 40},
    {u"登録日", u"登録日", Date, 11},
    {u"更新日", u"更新日", Date, 11},
    {u"誕生日", u"誕生日", Text, 11},
    {u"区分ID", u"区分ID", Number, 7},
    {u"納品先名キー", u"納品先名キー", Text, 50},
    {u"納品先名3", u"納品先名3", Text, 24},
    {u"担当者名", u"担当者名", Text, 16},
    {u"締め日", u"締め日", Number, 7},
    {u"元帳出力", u"元帳出力", Number, 9},
    {u"消費税区分", u"消費税区分", Number, 11},
    {u"敬称", u"敬称", Text, 7},
};

constexpr std::size_t blockSize = 500; // rows

QString exportStatement(const QString &which)
{
    QStringList columns;
    for (const ExportColumn &column : exportColumns)
        columns << QString::fromUtf16(column.field) + u" AS "_s + QString::fromUtf16(column.heading);
    return u"SELECT "_s + columns.join(u", "_s) + u" FROM 納品先 WHERE "_s + which + u" ORDER BY 納品先ID"_s;
}

std::vector<base::Column> columnsOfTable()
{
    std::vector<base::Column> columns;
    for (const ExportColumn &column : exportColumns)
        columns.push_back({QString::fromUtf16(column.heading), column.format, column.characters});
    return columns;
}

// Gives the customers one by one, and reads a block whenever the last one is used up.
class CustomerRows
{
public:
    explicit CustomerRows(db::Connection &connection)
        : m_connection(connection)
    {}

    base::Result<bool> next(QVariantList &row)
    {
        if (m_at == m_block.rows.size()) {
            auto block = m_connection.select(m_statement, {m_lastKey, static_cast<int>(blockSize)});
            if (!block)
                return block.error();
            m_block = std::move(*block);
            m_at = 0;
        }
        if (m_block.isEmpty())
            return false;
        row.swap(m_block.rows[m_at++]);
        m_lastKey = row.front().toLongLong();
        return true;
    }

private:
    db::Connection &m_connection;
    const QString m_statement = exportStatement(u"納品先ID > ?"_s) + u" LIMIT ?"_s;
    db::Rows m_block;
    std::size_t m_at = 0;
    qint64 m_lastKey = std::numeric_limits<qint64>::min();
};

// The same in the order of their keys as they are given.
class ChosenRows
{
public:
    ChosenRows(db::Connection &connection, const std::vector<qint64> &keys)
        : m_connection(connection)
        , m_keys(keys)
    {}

    base::Result<bool> next(QVariantList &row)
    {
        for (; m_at < m_keys.size(); ++m_at) {
            if (m_at % blockSize == 0) {
                if (const base::Status read = readBlock(); !read)
                    return read.error();
            }
            const auto found = m_block.constFind(m_keys[m_at]);
            if (found == m_block.cend())
                continue;
            row = *found;
            ++m_at;
            return true;
        }
        return false;
    }

private:
    base::Status readBlock()
    {
        QVariantList keys;
        for (std::size_t i = m_at; i < std::min(m_at + blockSize, m_keys.size()); ++i)
            keys << m_keys[i];
        const QString places = QStringList(keys.size(), u"?"_s).join(u", "_s);
        const auto block = m_connection.select(exportStatement(u"納品先ID IN ("_s + places + u')'), keys);
        if (!block)
            return block.error();
        m_block.clear();
        for (const QVariantList &row : block->rows)
            m_block.insert(row.front().toLongLong(), row);
        return {};
    }

    db::Connection &m_connection;
    const std::vector<qint64> &m_keys;
    QHash<qint64, QVariantList> m_block;
    std::size_t m_at = 0;
};

base::Result<qint64> customerCount(db::Connection &connection)
{
    const auto count = connection.integers(u"SELECT COUNT(*) FROM 納品先"_s);
    return count ? base::Result<qint64>(count->front()) : count.error();
}

} // namespace

base::Status checkCustomerExport(db::Connection &connection, const QString &fileName)
{
    const auto count = customerCount(connection);
    return count ? tables::checkTarget(fileName, *count) : count.status();
}

base::Status exportCustomers(db::Connection &connection, const QString &fileName,
                             const base::Progress &progress)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun;
    const auto count = customerCount(connection);
    if (!count)
        return count.error();
    CustomerRows rows(connection);
    return tables::writeTable(
        fileName, {columnsOfTable(), *count, [&rows](QVariantList &row) { return rows.next(row); }},
        progress);
}

base::Status checkCustomerExport(std::size_t customers, const QString &fileName)
{
    return tables::checkTarget(fileName, static_cast<qint64>(customers));
}

base::Status exportCustomers(db::Connection &connection, const std::vector<qint64> &keys,
                             const QString &fileName, const base::Progress &progress)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun;
    ChosenRows rows(connection, keys);
    return tables::writeTable(fileName,
                              {columnsOfTable(), static_cast<qint64>(keys.size()),
                               [&rows](QVariantList &row) { return rows.next(row); }},
                              progress);
}

} // namespace registers
