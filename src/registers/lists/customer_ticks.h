#pragma once

#include "db/recordset.h"
#include "registers/lists/customer_search.h"

#include <QHash>

#include <vector>

namespace registers
{

/// The customers found by a search, each with a tick that puts it into the choice or takes it out. Contents
/// are read when they are looked at, so that a list of all customers comes at once.
class CustomerTicks : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// Whether customers that have slips are kept out of the choice until setSlipsAllowed().
    enum class Guard { None, Slips };

    /// The columns before this one, which tell what is chosen, always show.
    static constexpr int firstChoosable = 2;

    CustomerTicks(db::Connection &connection, Guard guard);

    /// Finds the customers of a query that lacks nothing, and ticks all that can be. After a failure the list
    /// is as it was.
    base::Status find(const CustomerQuery &query);

    /// Whether the list can be ordered by \a column.
    [[nodiscard]] bool isSortable(int column) const;
    /// Orders the list by \a column; below 0 as the search ordered it. The ticks stay with their customers;
    /// one that was not listed before is not ticked. After a failure the list is as it was.
    base::Status sortBy(int column, Qt::SortOrder direction);

    /// Whether customers with slips can be ticked too. They are not ticked by that; taken back, it unticks
    /// them.
    void setSlipsAllowed(bool allowed);

    /// Ticks all that can be, or none.
    void tickAll(bool ticked);
    void toggle(int row);

    [[nodiscard]] int count() const { return m_customers.count(); }
    [[nodiscard]] int tickedCount() const;
    /// How many of the customers found, and of the ticked ones, have slips; 0 without the guard.
    [[nodiscard]] int withSlips() const;
    [[nodiscard]] int tickedWithSlips() const;
    /// 納品先ID of the ticked ones, in the list's order.
    [[nodiscard]] std::vector<qint64> ticked() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The width that a column has until the clerk sets another one, in half-width characters.
    [[nodiscard]] int width(int column) const;

signals:
    /// Other customers are ticked, or listed, than before.
    void choiceChanged();

private:
    [[nodiscard]] bool mayTick(int row) const;
    [[nodiscard]] int slipsAt(int row) const { return m_slips.value(m_customers.keyAt(row)); }
    template <class Condition>
    [[nodiscard]] int countRows(Condition condition) const;
    void ticksChanged();

    db::Connection &m_connection;
    Guard m_guard;
    db::Recordset m_customers;
    QHash<qint64, int> m_slips; // by customer
    std::vector<bool> m_ticked; // by row
    bool m_slipsAllowed = false;
};

} // namespace registers
