#include "reports/bills/receipts/PaymentModel.h"

#include "base/column.h"
#include "base/exact_sum.h"
#include "ui/column_cells.h"

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

const std::vector<base::Column> &columns()
{
    using enum base::Format;
    static const std::vector<base::Column> all{
        {u"取込"_s},           {u"日付"_s, Date}, {u"相手先"_s}, {u"摘要"_s},
        {u"入金額"_s, Amount}, {u"判定"_s},       {u"納品先"_s}, {u"未収額"_s, Amount},
        {u"差額"_s},           {u"差額の扱い"_s}, {u"備考"_s}};
    return all;
}

} // namespace

QString nameOf(Difference difference)
{
    static const QString names[] = {u"残す"_s, u"振込手数料にする"_s, u"手数料にする"_s};
    return names[std::size_t(difference)];
}

void PaymentModel::set(std::vector<PaymentMatch> matches, PayingCustomers customers)
{
    beginResetModel();
    m_matches = std::move(matches);
    m_customers = std::move(customers);
    endResetModel();
}

// What one row pays is not open for the rows behind it.
void PaymentModel::changed(int row)
{
    settleInOrder(m_matches, m_customers);
    emit dataChanged(index(row, 0), index(rowCount() - 1, ColumnCount - 1));
}

void PaymentModel::setCustomer(int row, qint64 customer)
{
    PaymentMatch &match = m_matches[std::size_t(row)];
    match.customer = customer;
    match.difference = Difference::Stays;
    match.ticked = match.canBeTaken() && match.taken.isEmpty();
    match.reason = customer == 0 ? u"納品先なし"_s : u"選択"_s;
    changed(row);
}

void PaymentModel::setDifference(int row, Difference difference)
{
    m_matches[std::size_t(row)].difference = difference;
    changed(row);
}

void PaymentModel::setTicked(int row, bool ticked)
{
    PaymentMatch &match = m_matches[std::size_t(row)];
    match.ticked = ticked && match.canBeTaken();
    changed(row);
}

int PaymentModel::tickLikely()
{
    int count = 0;
    for (PaymentMatch &match : m_matches) {
        const bool isLeft = !match.ticked && match.taken.isEmpty() && match.canBeTaken();
        if (!isLeft || match.certainty != Certainty::Likely)
            continue;
        match.ticked = true;
        ++count;
    }
    if (count > 0)
        changed(0);
    return count;
}

PaymentModel::Sum PaymentModel::ticked() const
{
    Sum sum;
    base::ExactSum amount;
    for (const PaymentMatch &match : m_matches) {
        if (!match.ticked)
            continue;
        ++sum.count;
        amount.add(match.row.amount);
    }
    sum.amount = amount.value();
    return sum;
}

int PaymentModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_matches.size());
}

int PaymentModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant PaymentModel::ofCustomer(const PaymentMatch &match, int column) const
{
    const PayingCustomer *customer = m_customers.with(match.customer);
    if (!customer)
        return {};
    const double missing = missingOf(match, *customer);
    switch (column) {
    case Customer:
        return u"%1：%2"_s.arg(customer->id).arg(customer->name);
    case Owed:
        return owedBy(*customer);
    case Missing:
        return missingInWords(missing);
    case Treatment:
        return missing > 0 ? nameOf(match.difference) : QString();
    default:
        return {};
    }
}

QVariant PaymentModel::value(const PaymentMatch &match, int column) const
{
    switch (column) {
    case Day:
        return match.row.date.toString(Qt::ISODate);
    case Payer:
        return match.row.payer;
    case Text:
        return match.row.text == match.row.payer ? QString() : match.row.text;
    case Amount:
        return match.row.trouble.isEmpty() ? QVariant(match.row.amount) : QVariant();
    case State:
        return !match.row.trouble.isEmpty() ? u"読めません"_s
               : !match.taken.isEmpty()     ? u"取込済"_s
                                            : nameOf(match.certainty);
    case Remark:
        return match.taken.isEmpty() ? match.reason : u"入金伝票 %1 になっています"_s.arg(match.taken);
    default:
        return ofCustomer(match, column);
    }
}

QVariant PaymentModel::data(const QModelIndex &index, int role) const
{
    const PaymentMatch &match = at(index.row());
    if (index.column() == Ticked) {
        if (role == Qt::CheckStateRole)
            return match.ticked ? Qt::Checked : Qt::Unchecked;
        return role == Qt::AccessibleTextRole ? QVariant(match.ticked ? u"取り込む"_s : u"取り込まない"_s)
                                              : QVariant();
    }
    const base::Column &column = columns()[std::size_t(index.column())];
    return ui::cellOf(column, value(match, index.column()), role);
}

QVariant PaymentModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    return ui::headingOf(columns()[std::size_t(section)], role);
}

} // namespace reports
