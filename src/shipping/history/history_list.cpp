#include "shipping/history/history_list.h"

#include "db/connection.h"
#include "db/transaction.h"
#include "shipping/slips/shipment_store.h"
#include "tables/table_writer.h"
#include "text/dates.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

using enum base::Format;

// Shipments one after the other, read in blocks.
class ShipmentReader
{
public:
    ShipmentReader(db::Connection &connection, const std::vector<qint64> &keys)
        : m_connection(connection)
        , m_keys(keys)
    {}

    /// The next one that is still there; nullptr after the last one.
    base::Result<const Shipment *> next()
    {
        while (m_at < m_keys.size()) {
            if (m_at % blockSize == 0) {
                if (const base::Status read = readBlock(); !read)
                    return read.error();
            }
            const auto found = m_block.constFind(m_keys[m_at++]);
            if (found != m_block.cend())
                return &*found;
        }
        return nullptr;
    }

    [[nodiscard]] qint64 done() const { return static_cast<qint64>(m_at); }

private:
    static constexpr std::size_t blockSize = 500;

    base::Status readBlock()
    {
        QVariantList keys;
        for (std::size_t i = m_at; i < std::min(m_at + blockSize, m_keys.size()); ++i)
            keys << m_keys[i];
        const auto rows =
            m_connection.select(u"SELECT %1 FROM 発送マスター WHERE 発送ID IN (%2) ORDER BY 発送ID"_s.arg(
                                    shipmentColumns(), QStringList(keys.size(), u"?"_s).join(u", "_s)),
                                keys);
        if (!rows)
            return rows.error();
        m_block.clear();
        for (const QVariantList &row : rows->rows) {
            const Shipment shipment = shipmentOf(row);
            m_block.insert(shipment.id, shipment);
        }
        return {};
    }

    db::Connection &m_connection;
    const std::vector<qint64> &m_keys;
    QHash<qint64, Shipment> m_block;
    std::size_t m_at = 0;
};

QVariant dayOf(const QDate &day) { return day.isValid() ? QVariant(text::stored(day)) : QVariant(); }

QString lines(const QString &first, const QString &second)
{
    return second.isEmpty() ? first : first + u'\n' + second;
}

std::vector<base::Column> paperColumns()
{
    return {{u"受付日"_s, Date, 11, 20},
            {u"配達予定"_s, Date, 11, 20},
            {u"ご依頼主"_s, Text, 20, 38, true},
            {u"お届け先"_s, Text, 20, 38, true},
            {u"住所"_s, Text, 28, 48, true},
            {u"品名"_s, Text, 18, 34, true},
            {u"発送方法"_s, Text, 12, 22},
            {u"送り状番号"_s, Text, 14, 27},
            {u"個数"_s, Number, 5, 10, false, true}};
}

base::ReportRow paperRow(const Shipment &shipment)
{
    const Party &to = shipment.consignee;
    return {{dayOf(shipment.accepted), dayOf(shipment.delivery),
             lines(shipment.sender.name1, shipment.sender.name2), lines(to.name1, to.name2),
             lines(to.address1, to.address2), shipment.goods, shipment.method, shipment.trackingNumber,
             shipment.parcels},
            shipment.id};
}

void addPartyColumns(std::vector<base::Column> &columns, const QString &party)
{
    for (const QString &field : {u"名1"_s, u"名2"_s, u"郵便番号"_s, u"住所1"_s, u"住所2"_s, u"電話"_s})
        columns.push_back({party + field, Text, field.startsWith(u"住所"_s) ? 30 : 16});
}

std::vector<base::Column> tableColumns()
{
    std::vector<base::Column> columns{
        {u"発送ID"_s, Number}, {u"受付日"_s, Date, 11}, {u"配達予定日"_s, Date, 11}};
    addPartyColumns(columns, u"依頼主"_s);
    addPartyColumns(columns, u"届先"_s);
    for (const auto &[heading, format] : {std::pair(u"品名"_s, Text),
                                          {u"価格"_s, Amount},
                                          {u"送料"_s, Amount},
                                          {u"発送区分"_s, Text},
                                          {u"発送方法"_s, Text},
                                          {u"備考１"_s, Text},
                                          {u"備考２"_s, Text},
                                          {u"顧客コード"_s, Text},
                                          {u"発店コード"_s, Text},
                                          {u"送り状番号"_s, Text},
                                          {u"時間帯"_s, Text},
                                          {u"クール"_s, Text},
                                          {u"個数"_s, Number},
                                          {u"納品先ID"_s, Number},
                                          {u"依頼主ID"_s, Number},
                                          {u"伝票ID"_s, Number},
                                          {u"印刷日"_s, Date},
                                          {u"出力日"_s, Date}})
        columns.push_back({heading, format, 12});
    return columns;
}

QVariantList tableRow(const Shipment &shipment)
{
    return QVariantList{shipment.id} + shipmentValues(shipment);
}

} // namespace

base::Result<base::Report> historyReport(db::Connection &connection, const std::vector<qint64> &keys,
                                         const QString &remark, const base::Progress &progress)
{
    if (keys.size() > mostOnPaper)
        return base::Error{
            u"一度に印刷できる発送は %1 件までです。条件を加えて絞り込んでください。"_s.arg(mostOnPaper)};
    base::Report report{
        .title = u"発送履歴"_s, .remark = remark, .documentName = u"発送履歴"_s, .columns = paperColumns()};
    ShipmentReader reader(connection, keys);
    for (;;) {
        const auto shipment = reader.next();
        if (!shipment)
            return shipment.error();
        if (!*shipment)
            break;
        if (!progress(reader.done(), static_cast<qint64>(keys.size())))
            return base::cancelled();
        report.rows.push_back(paperRow(**shipment));
    }
    base::addTotals(report, u"合計　%1 件"_s.arg(report.rows.size()));
    return report;
}

base::Status checkHistoryExport(std::size_t shipments, const QString &fileName)
{
    return tables::checkTarget(fileName, static_cast<qint64>(shipments));
}

base::Status exportHistory(db::Connection &connection, const std::vector<qint64> &keys,
                           const QString &fileName, const base::Progress &progress)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun;
    ShipmentReader reader(connection, keys);
    const auto next = [&reader](QVariantList &row) -> base::Result<bool> {
        const auto shipment = reader.next();
        if (!shipment)
            return shipment.error();
        if (*shipment)
            row = tableRow(**shipment);
        return *shipment != nullptr;
    };
    return tables::writeTable(fileName, {tableColumns(), static_cast<qint64>(keys.size()), next}, progress);
}

} // namespace shipping
