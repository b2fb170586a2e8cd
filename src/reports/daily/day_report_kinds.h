#pragma once

#include "book/slip_kind.h"

#include <QString>

namespace reports
{

/// The daily reports there are: one for each kind of slip but estimates.
enum class DayReportKind {
    Sales,
    Receipts,
    Purchases,
    Payments,
    Stocktakes,
    ReceivableCarried,
    PayableCarried,
};

inline constexpr int dayReportKinds = 7;

/// Wherein the daily reports differ. Headings are set in type of fixed width: the blanks in them put their
/// words over the columns.
struct DayReportDescription
{
    book::SlipKind slips;
    const char16_t *name;
    bool hasGoods;               // specification, quantity, unit and price; money has none of them
    bool isTaxed;                // its lines are of a rate
    const char16_t *counterpart; // what its column is called
    const char16_t *amount;
    const char16_t *item;
    const char16_t *uprightHeading; // of item, amount and remark
    const char16_t *lyingHeading;
    const char16_t *lyingAmount; // what it calls the amount
};

const DayReportDescription &descriptionOf(DayReportKind kind);

/// The heading of date and counterpart, upright and lying.
QString firstHeading(DayReportKind kind);

} // namespace reports
