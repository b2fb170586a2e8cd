#pragma once

#include "book/period.h"
#include "reports/bills/bill_customer.h"
#include "reports/bills/bill_sums.h"
#include "slips/documents/invoice_rates.h"

#include <QStringList>

// The bill of a customer for a period, from the slips of sale, receipt and carried balance.
namespace reports
{

enum class BillRowKind {
    Carried, // what was owed before the period
    Goods,
    Tax,
    Receipt,
    CarryForward, // a carried balance that was entered within the period
};

/// A row of the statement.
struct BillRow
{
    BillRowKind kind = BillRowKind::Goods;
    QString date; // yyyy-MM-dd; empty of what was carried
    qint64 slip = 0;
    QString number; // of the slip
    QString name;   // 品名
    QString specification;
    std::optional<double> quantity;
    QString unit;
    std::optional<double> price;
    std::optional<double> delivered;        // 納品金額, yen
    std::optional<double> received;         // 入金額
    double balance = 0;                     // 残高 after it
    std::optional<book::GoodsTax> taxClass; // of the line; empty: the slip's own
    std::optional<double> taxRate;          // percent
    QString mark;                           // "※" of a line at a reduced rate

    bool operator==(const BillRow &) const = default;
};

struct Bill
{
    BillCustomer customer;
    book::Period period;
    BillSums sums;
    bool hasSlips = false;                 // of any day
    bool hasSlipsInPeriod = false;         // any line
    std::vector<BillRow> rows;             // by date, slip and entry
    std::vector<slips::InvoiceRate> rates; // of the period's sales and returns (bill_invoice.h)
    QString reducedLegend;
    QStringList noteNumbers; // of the slips of sale
    /// The slips of the period that lack the tax that is added at delivery.
    QStringList untaxedSlips;
    /// The rate, percent, that all slips of the period were saved with, where that is another than the one
    /// that the shop keeps by hand now and the bill is taxed at.
    std::optional<double> outdatedRate;
};

/// What is to be looked at before the bill goes out: "計上した消費税 286 円が、…", slips that lack their
/// tax. Empty where there is nothing.
QString taxDoubt(const Bill &bill);

/// Whether \a one and \a other say the same: nothing was changed between the two.
bool isSameBill(const Bill &one, const Bill &other);

/// The bill of \a customer. A slip without a valid day counts as one before every period. The error is `gone`
/// for a customer that the register does not have. Fails for a period that ends before it begins.
base::Result<Bill> billOf(db::Connection &connection, qint64 customer, const book::Period &period,
                          const BillOptions &options);

} // namespace reports
