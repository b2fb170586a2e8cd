#include "reports/bills/bill_ticks.h"

#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

enum Column {
    TickColumn,
    IdColumn,
    CodeColumn = BillTicks::codeColumn,
    NameColumn = BillTicks::nameColumn,
    PreviousColumn,
    ReceivedColumn,
    SalesColumn,
    TaxColumn,
    BilledColumn,
    UnbookedColumn,
    StateColumn,
};

struct Look
{
    const char16_t *heading;
    int width; // half-width characters
};

constexpr std::array<Look, 11> looks{{
    {u"発行", 4},
    {u"ID", 5},
    {u"コード", 8},
    {u"納品先名", 26},
    {u"前回請求額", 9},
    {u"入金額", 9},
    {u"売上（税込）", 10},
    {u"消費税", 8},
    {u"今回請求額", 10},
    {u"未計上", 7},
    {u"状態", 18},
}};

bool isNumber(int column)
{
    return column == IdColumn || (column >= PreviousColumn && column <= UnbookedColumn);
}

QString unbookedWords(const BillSums &sums)
{
    if (sums.cannotTax)
        return u"計算不能"_s;
    if (sums.due)
        return u"要確認"_s;
    return sums.unbooked.value_or(0) == 0 ? QString() : text::formatAmount(*sums.unbooked);
}

} // namespace

BillTicks::BillTicks(QObject *parent)
    : QAbstractTableModel(parent)
{}

void BillTicks::setBills(std::vector<CustomerBill> bills, bool salesOnly, const IssuedBills &issued)
{
    beginResetModel();
    m_salesOnly = salesOnly;
    m_rows.clear();
    for (CustomerBill &bill : bills) {
        Row row{std::move(bill), false, {}};
        if (const auto last = issued.constFind(row.bill.customer.id.value_or(0)); last != issued.constEnd())
            row.issued = *last;
        row.ticked = isDue(row, salesOnly) && !isIssued(row);
        m_rows.push_back(std::move(row));
    }
    endResetModel();
    emit choiceChanged();
}

void BillTicks::renewBills(std::vector<CustomerBill> bills, const IssuedBills &issued)
{
    std::vector<Row> before = std::move(m_rows);
    setBills(std::move(bills), m_salesOnly, issued);
    for (Row &row : m_rows) {
        const auto same = std::ranges::find_if(
            before, [&row](const Row &old) { return old.bill.customer.id == row.bill.customer.id; });
        if (same == before.end())
            continue;
        row.state = same->state;
        row.ticked = same->ticked && mayTick(row);
    }
    changed();
}

void BillTicks::setSalesOnly(bool salesOnly)
{
    for (Row &row : m_rows) {
        const bool isDueNow = isDue(row, salesOnly);
        if (isDueNow != isDue(row, m_salesOnly))
            row.ticked = isDueNow && !isIssued(row);
    }
    m_salesOnly = salesOnly;
    changed();
}

void BillTicks::tickAll(bool ticked)
{
    for (Row &row : m_rows)
        row.ticked = ticked && mayTick(row);
    changed();
}

void BillTicks::toggle(int row)
{
    if (!at(row) || !mayTick(m_rows[std::size_t(row)]))
        return;
    m_rows[std::size_t(row)].ticked = !m_rows[std::size_t(row)].ticked;
    changed();
}

void BillTicks::setIssued(const std::vector<qint64> &customers, const QString &state)
{
    const QSet<qint64> issued(customers.begin(), customers.end());
    for (Row &row : m_rows) {
        if (!row.bill.customer.id || !issued.contains(*row.bill.customer.id))
            continue;
        row.state = state;
        row.ticked = false;
    }
    changed();
}

bool BillTicks::mayTick(const Row &row)
{
    return row.bill.hasSlipsInPeriod && !row.bill.customer.unknown && row.bill.customer.id.value_or(0) != 0 &&
           std::isfinite(row.bill.sums.balance());
}

bool BillTicks::isDue(const Row &row, bool salesOnly)
{
    return mayTick(row) && row.bill.sums.billed(salesOnly) > 0;
}

bool BillTicks::isIssued(const Row &row) { return row.issued || !row.state.isEmpty(); }

// One whose slips were taken back after it was issued says both.
QString BillTicks::stateOf(const Row &row) const
{
    QStringList words;
    if (!row.bill.hasSlipsInPeriod)
        words << u"伝票なし"_s;
    if (!row.state.isEmpty())
        words << row.state;
    else if (row.issued)
        words << issueWords(*row.issued, row.bill.sums.billed(m_salesOnly));
    return words.join(u'　');
}

void BillTicks::changed()
{
    if (!m_rows.empty())
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    emit choiceChanged();
}

const CustomerBill *BillTicks::at(int row) const
{
    return row >= 0 && row < rowCount() ? &m_rows[std::size_t(row)].bill : nullptr;
}

std::vector<CustomerBill> BillTicks::ticked() const
{
    std::vector<CustomerBill> bills;
    for (const Row &row : m_rows) {
        if (row.ticked)
            bills.push_back(row.bill);
    }
    return bills;
}

std::vector<CustomerBill> BillTicks::tickedUnbooked() const
{
    std::vector<CustomerBill> bills = ticked();
    std::erase_if(bills, [](const CustomerBill &bill) { return bill.sums.unbooked.value_or(0) == 0; });
    return bills;
}

qsizetype BillTicks::issuedCount() const { return std::ranges::count_if(m_rows, &BillTicks::isIssued); }

// --- As a table ---

int BillTicks::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int BillTicks::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(looks.size());
}

QVariant BillTicks::shown(const Row &row, int column) const
{
    const BillSums &sums = row.bill.sums;
    switch (column) {
    case IdColumn:
        return row.bill.customer.id.value_or(0);
    case CodeColumn:
        return row.bill.customer.code;
    case NameColumn:
        return row.bill.customer.name();
    case PreviousColumn:
        return text::formatAmount(sums.previous);
    case ReceivedColumn:
        return text::formatAmount(sums.received);
    case SalesColumn:
        return text::formatAmount(sums.sales);
    case TaxColumn:
        return text::formatAmount(sums.tax());
    case BilledColumn:
        return text::formatAmount(sums.billed(m_salesOnly));
    case UnbookedColumn:
        return unbookedWords(sums);
    case StateColumn:
        return stateOf(row);
    default:
        return {};
    }
}

QVariant BillTicks::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Row &row = m_rows[std::size_t(index.row())];
    if (role == Qt::CheckStateRole && index.column() == TickColumn && mayTick(row))
        return int(row.ticked ? Qt::Checked : Qt::Unchecked);
    if (role == Qt::TextAlignmentRole && isNumber(index.column()))
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && index.column() == StateColumn)
        return stateOf(row); // may be longer than its column
    return role == Qt::DisplayRole ? shown(row, index.column()) : QVariant();
}

bool BillTicks::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || index.column() != TickColumn || !at(index.row()))
        return false;
    if (m_rows[std::size_t(index.row())].ticked != (value.toInt() == Qt::Checked))
        toggle(index.row());
    return true;
}

// What cannot be ticked can be looked at all the same.
Qt::ItemFlags BillTicks::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags row = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const bool isTick = index.column() == TickColumn && mayTick(m_rows[std::size_t(index.row())]);
    return isTick ? row | Qt::ItemIsUserCheckable : row;
}

QVariant BillTicks::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole && isNumber(section))
        return int(Qt::AlignRight | Qt::AlignVCenter);
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return QString::fromUtf16(looks[std::size_t(section)].heading);
}

int BillTicks::width(int column) { return looks[std::size_t(column)].width; }

} // namespace reports
