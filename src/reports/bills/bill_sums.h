#pragma once

#include "book/movement_sums.h"
#include "book/taxes_by_rate.h"

#include <map>
#include <optional>
#include <vector>

// What a bill comes to. Amounts are yen, exact to four decimals.
namespace reports
{

/// What the shop decides of all its bills.
struct BillOptions
{
    std::optional<double> rateByHand; // percent, of a shop that keeps one rate by hand
    bool includedOnBill = false;      // of prices that include the tax the bill is the invoice, not the note
};

struct BillSums
{
    double previous = 0; // 前回請求額: brought into the period, and carried balances entered within it
    double sales = 0;    // 売上金額（税込)
    double received = 0; // 入金額
    double untaxed = 0;  // 売上金額（税別): without tax lines
    /// 未計上（消費税）: what the bill of a customer taxed on the bill adds, while the tax lines of the
    /// period come to nothing. Empty for any other customer, once it is booked, and where it cannot be
    /// computed.
    std::optional<double> unbooked{};
    std::vector<book::RateTax> unbookedRates{}; // what makes that, rounded once for each rate
    /// It is due, but a slip has no rate or an amount that is no number.
    bool cannotTax = false;
    /// What the tax of a customer taxed on the bill should come to, where something else is booked: a slip
    /// came late, or the tax was typed. Empty where they agree.
    std::optional<double> due{};

    [[nodiscard]] double tax() const;                  // 消費税 booked on the slips of the period
    [[nodiscard]] double carried() const;              // 繰越金額
    [[nodiscard]] double billed(bool salesOnly) const; // 今回請求額
    [[nodiscard]] double balance() const { return billed(false); }

    /// All of the sums are nothing.
    [[nodiscard]] bool isEmpty() const;
};

/// How goods are taxed on a bill: what of them is taxed together.
struct BillRate
{
    book::GoodsTax taxClass = book::GoodsTax::Standard; // Food for all that is reduced
    std::optional<double> rate;                         // percent; a book from elsewhere may have none

    auto operator<=>(const BillRate &) const = default;
};

/// Maps the rates that lines were saved with to those of the bill. A line with a rate of its own keeps it.
/// Where a shop keeps one rate by hand and its slips do not have two of them, all others are taxed together
/// at the rate that the shop keeps now, as the bill has always done it; else each at its slip's.
class BillRates
{
public:
    explicit BillRates(const BillOptions &options)
        : m_byHand(options.rateByHand)
    {}

    /// Lets it see a line, or several, that come to something. \a taxClass: empty for the slip's own.
    void see(std::optional<book::GoodsTax> taxClass, std::optional<double> rate);
    [[nodiscard]] BillRate of(std::optional<book::GoodsTax> taxClass, std::optional<double> rate) const;
    /// The one rate of the slips where that is another than the shop keeps now.
    [[nodiscard]] std::optional<double> outdated() const;

private:
    [[nodiscard]] bool isOneRate() const;

    std::optional<double> m_byHand;
    std::optional<double> m_seen;
    bool m_hasSecond = false;
};

/// Adds the bill of one customer up, out of sums or of one line after the other.
class BillAccount
{
public:
    void add(const book::MovementSum &part);

    [[nodiscard]] BillSums sums(book::TaxClass taxClass, const BillOptions &options) const;
    [[nodiscard]] bool hasLinesInPeriod() const { return m_hasLinesInPeriod; }
    [[nodiscard]] BillRates rates(const BillOptions &options) const;

private:
    using Rate = std::pair<std::optional<book::GoodsTax>, std::optional<double>>;

    void addSales(const book::MovementSum &part);
    void computeUnbooked(const BillOptions &options, BillSums &sums) const;
    void compareBooked(const BillOptions &options, BillSums &sums) const;
    [[nodiscard]] std::optional<std::vector<book::RateTax>> taxes(const BillRates &rates) const;

    base::ExactSum m_previous;
    base::ExactSum m_sales;
    base::ExactSum m_tax;
    base::ExactSum m_received;
    std::map<Rate, base::ExactSum> m_net; // goods whose prices do not include the tax
    bool m_hasLinesInPeriod = false;
};

} // namespace reports
