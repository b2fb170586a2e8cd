#pragma once

#include "base/progress.h"
#include "base/report.h"
#include "book/counterpart_name.h"
#include "book/period.h"
#include "db/connection.h"

#include <QStringList>

#include <optional>
#include <vector>

// Figures for charts: what was sold and received, or bought and paid, by the month, and who and what made
// most of it. Amounts are yen, and the same as in ledgers and bills: of the days of the slips, tax included.
namespace reports
{

enum class ChartKind {
    ByMonth,    // sales and receipts; purchases and payments
    YearBeside, // sales or purchases by the month, and of the same month a year before
    TopCounterparts,
    TopGoods, // without lines of tax
};

inline constexpr int chartKinds = 4;

/// What a chart of \a party is called.
QString nameOf(ChartKind kind, book::Party party);

struct ChartSeries
{
    QString name;
    std::vector<double> values{}; // one a category
};

struct ChartData
{
    QString title{};
    QString remark{};         // whose figures, and of which days
    QStringList categories{}; // months, or names
    std::vector<ChartSeries> series{};
    bool lying = false; // bars from the left, of names that take room

    /// Whether all values are nothing.
    [[nodiscard]] bool isEmpty() const;
};

/// Which figures.
struct ChartQuery
{
    ChartKind kind = ChartKind::ByMonth;
    book::Party party = book::Party::Customer;
    /// The twelve months that end with the one of this day.
    QDate until{};
    /// None: all of them. An empty key: slips that name nobody.
    std::optional<book::CounterpartKey> counterpart{};
};

/// The twelve months of \a query.
book::Period monthsOf(const ChartQuery &query);

/// How many names a chart shows; what others come to is added up under "その他".
inline constexpr std::size_t mostNames = 10;

/// The figures of \a query, read a month at a time, at one moment. An amount that is no number makes the sum
/// that it belongs to none.
base::Result<ChartData> readChart(db::Connection &connection, const ChartQuery &query,
                                  const base::Progress &progress);

/// \a data as a table, to be written to a file.
base::Report tableOf(const ChartData &data);

} // namespace reports
