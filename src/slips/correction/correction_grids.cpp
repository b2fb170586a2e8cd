#include "slips/correction/correction_grids.h"

#include "book/counterpart_name.h"
#include "slips/correction/correction_cells.h"
#include "slips/correction/correction_remarks.h"
#include "slips/correction/slip_correction.h"
#include "ui/grid.h"

#include <QBrush>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

using enum base::Format;

const QList<ui::GridColumn> goodsColumns{{u"商品名"_s, 40},
                                         {u"規格"_s, 20},
                                         {u"数量"_s, 10, {}, Quantity},
                                         {u"単位"_s, 8},
                                         {u"単価"_s, 12, {}, Quantity},
                                         {u"金額"_s, 14, {}, Quantity}};
const QList<ui::GridColumn> moneyColumns{
    {u"商品名"_s, 30, u"適用"_s}, {u"規格"_s, 24}, {u"金額"_s, 16, {}, Quantity}};

QList<ui::GridColumn> headerColumns(const book::SlipKind &kind, const ui::NameOf &counterparts,
                                    const ui::NameOf &employees)
{
    const QString party = kind.party == book::Party::Customer ? u"納品先"_s : u"仕入先"_s;
    QList<ui::GridColumn> columns{{u"日付"_s, 10, {}, Date},
                                  {u"伝票番号"_s, 14},
                                  {u"相手先ID"_s, 36, party, Text, counterparts},
                                  {u"社員ID"_s, 14, u"担当者"_s, Text, employees},
                                  {u"消費税率"_s, 8, u"税率 %"_s}};
    if (isTaxed(kind))
        columns << ui::GridColumn{u"内税"_s, 6, {}, Text, ui::namesFrom({{0, u"外税"_s}, {1, u"内税"_s}})};
    columns << ui::GridColumn{u"備考"_s, 36} << ui::GridColumn{u"摘要"_s, 36};
    return columns;
}

QList<ui::GridColumn> taxColumns()
{
    QHash<qint64, QString> names;
    for (const QString &name : shortTaxNames())
        names.insert(names.size(), name);
    return {{u"税区分"_s, 8, {}, Text, ui::namesFrom(names)}, {u"税率"_s, 6, u"税率 %"_s, Quantity}};
}

// The names of counterparts, each read once for as long as a list stands.
class CounterpartNames : public QObject
{
public:
    CounterpartNames(db::Recordset &headers, db::Connection &connection, book::Party party)
        : QObject(&headers)
        , m_connection(connection)
        , m_party(party)
    {
        m_pause.setSingleShot(true);
        connect(&headers, &QAbstractItemModel::modelReset, this, [this] { m_names.clear(); });
    }

    /// Empty while the file cannot be read: each try may wait for seconds on another program's lock, and a
    /// painting asks for a name in every row.
    QString nameOf(qint64 id)
    {
        if (const auto known = m_names.constFind(id); known != m_names.constEnd())
            return *known;
        if (m_pause.isActive())
            return {};
        const auto name = book::nameOfCounterpart(m_connection, m_party, id);
        if (!name) {
            m_pause.start(std::chrono::seconds(2));
            return {};
        }
        return *m_names.insert(id, *name);
    }

private:
    db::Connection &m_connection;
    const book::Party m_party;
    QHash<qint64, QString> m_names;
    QTimer m_pause;
};

// Of a line whose figures disagree; readable in the light and in the dark appearance.
const QColor markBack(0xff, 0xe0, 0x8a);

QVariant lineLook(const db::Recordset &lines, int row, int role)
{
    if (role != Qt::BackgroundRole && role != Qt::ForegroundRole && role != Qt::ToolTipRole)
        return {};
    const QString remark = amountRemark(lineIn(lines, row));
    if (remark.isEmpty())
        return {};
    if (role == Qt::ToolTipRole)
        return remark;
    return role == Qt::BackgroundRole ? QBrush(markBack) : QBrush(Qt::black);
}

} // namespace

void showHeadersIn(ui::Grid &grid, db::Recordset &headers, db::Connection &connection,
                   const book::SlipKind &kind, const QHash<qint64, QString> &employees,
                   std::function<void(const QString &)> refused)
{
    auto *names = new CounterpartNames(headers, connection, kind.party);
    grid.setColumns(headerColumns(
        kind, [names](qint64 id) { return names->nameOf(id); },
        [employees](qint64 id) { return employees.value(id, book::deletedEmployeeName(id)); }));
    grid.bind(headers, std::move(refused));
}

void showLinesIn(ui::Grid &grid, db::Recordset &lines, const book::SlipKind &kind, bool tellsTax,
                 std::function<void(const QString &)> refused)
{
    lines.setDecorator([&lines](int row, int, int role) { return lineLook(lines, row, role); });
    QList<ui::GridColumn> columns = holdsGoods(kind) ? goodsColumns : moneyColumns;
    if (tellsTax)
        columns << taxColumns();
    grid.setColumns(columns);
    grid.bind(lines, std::move(refused));
}

} // namespace slips
