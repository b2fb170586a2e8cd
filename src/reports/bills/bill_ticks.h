#pragma once

#include "reports/bills/issued_bills.h"

#include <QAbstractTableModel>
#include <QSet>

namespace reports
{

/// Bills that were computed at once, each with a tick that has it issued. One without a slip in its period,
/// or with an amount that is no number, cannot be ticked; one with nothing to pay is not ticked by itself.
class BillTicks : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// The columns that may give way to the amounts.
    static constexpr int codeColumn = 2;
    static constexpr int nameColumn = 3;

    explicit BillTicks(QObject *parent = nullptr);

    /// Lists \a bills and ticks those that are to be paid, but for \a issued ones, which say so.
    void setBills(std::vector<CustomerBill> bills, bool salesOnly, const IssuedBills &issued = {});
    /// Computes the amounts that stand in the list anew, from the same slips: the ticks stay where they can.
    void renewBills(std::vector<CustomerBill> bills, const IssuedBills &issued = {});
    /// Whether billed is the period's sales alone. Who has something to pay only by that, or no longer, is
    /// ticked anew.
    void setSalesOnly(bool salesOnly);

    void tickAll(bool ticked);
    void toggle(int row);
    /// Says of the bills of \a customers what became of them ("印刷済"), and takes their ticks away.
    void setIssued(const std::vector<qint64> &customers, const QString &state);

    [[nodiscard]] const CustomerBill *at(int row) const;
    /// The ticked ones, in the list's order.
    [[nodiscard]] std::vector<CustomerBill> ticked() const;
    /// Those of them whose tax is not booked.
    [[nodiscard]] std::vector<CustomerBill> tickedUnbooked() const;
    /// How many of the bills are out.
    [[nodiscard]] qsizetype issuedCount() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The width of a column in half-width characters.
    static int width(int column);

signals:
    /// Others are ticked, or listed, than before.
    void choiceChanged();

private:
    struct Row
    {
        CustomerBill bill;
        bool ticked = false;
        QString state;                            // what became of it since it was listed
        std::optional<slips::LastIssue> issued{}; // before
    };

    [[nodiscard]] static bool mayTick(const Row &row);
    [[nodiscard]] static bool isDue(const Row &row, bool salesOnly);
    [[nodiscard]] static bool isIssued(const Row &row);
    [[nodiscard]] QString stateOf(const Row &row) const;
    [[nodiscard]] QVariant shown(const Row &row, int column) const;
    void changed();

    std::vector<Row> m_rows;
    bool m_salesOnly = false;
};

} // namespace reports
