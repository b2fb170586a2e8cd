#pragma once

#include "reports/bills/receipts/payment_file.h"

#include <array>
#include <optional>

namespace reports
{

/// What of a payment is taken from a table.
enum class PaymentField { Date, Amount, Payer, Text, Account };

inline constexpr int paymentFieldCount = 5;

/// "日付", "入金額", "相手先", "摘要", "口座".
QString nameOf(PaymentField field);

/// Which column each comes from; -1 for none.
struct PaymentColumns
{
    std::array<qsizetype, paymentFieldCount> columns{-1, -1, -1, -1, -1};
    std::size_t firstRow = 0; // of the payments, below preamble and headings

    [[nodiscard]] qsizetype of(PaymentField field) const { return columns[std::size_t(field)]; }
    qsizetype &operator[](PaymentField field) { return columns[std::size_t(field)]; }
    /// What is missing to take payments by them, in words; empty when nothing is.
    [[nodiscard]] QString lack() const;

    friend bool operator==(const PaymentColumns &, const PaymentColumns &) = default;
};

/// The columns of \a table by the names of a database's or by the first row that has a date's and an amount's
/// heading. Nothing where a person has to say which they are.
std::optional<PaymentColumns> columnsByHeadings(const PaymentTable &table);

/// \a columns to be kept for the next file of the same bank, and what was kept, where it fits \a table.
QString storedColumns(const PaymentColumns &columns, const PaymentTable &table);
std::optional<PaymentColumns> columnsFromStored(const QString &stored, const PaymentTable &table);

} // namespace reports
