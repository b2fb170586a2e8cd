#pragma once

#include "reports/bills/receipts/payment_matches.h"

#include <QAbstractTableModel>

namespace reports
{

/// The payments of a file as rows of a grid, each with a tick: whose they are, how sure that is, and what is
/// missing.
class PaymentModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column {
        Ticked,
        Day,
        Payer,
        Text,
        Amount,
        State,
        Customer,
        Owed,
        Missing,
        Treatment,
        Remark,
        ColumnCount
    };

    using QAbstractTableModel::QAbstractTableModel;

    void set(std::vector<PaymentMatch> matches, PayingCustomers customers);
    [[nodiscard]] const std::vector<PaymentMatch> &matches() const { return m_matches; }
    [[nodiscard]] const PayingCustomers &customers() const { return m_customers; }
    [[nodiscard]] const PaymentMatch &at(int row) const { return m_matches[std::size_t(row)]; }

    /// The row is \a customer's, by a person's word, and ticked; 0: nobody's.
    void setCustomer(int row, qint64 customer);
    void setDifference(int row, Difference difference);
    void setTicked(int row, bool ticked);
    /// Ticks the rows whose customer is likely and that were not taken. \return how many
    int tickLikely();

    /// How many rows are ticked, and what they come to, yen.
    struct Sum
    {
        int count = 0;
        double amount = 0;
    };
    [[nodiscard]] Sum ticked() const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    [[nodiscard]] QVariant value(const PaymentMatch &match, int column) const;
    [[nodiscard]] QVariant ofCustomer(const PaymentMatch &match, int column) const;
    void changed(int row);

    std::vector<PaymentMatch> m_matches;
    PayingCustomers m_customers;
};

/// What a row's difference is to become, in words: "残す", "振込手数料にする", "手数料にする".
QString nameOf(Difference difference);

} // namespace reports
