#include "reports/daily/day_report.h"

#include "base/exact_sum.h"
#include "book/movement_sums.h"
#include "book/slip_remarks.h"
#include "book/tax.h"
#include "book/tax_terms.h"
#include "db/transaction.h"
#include "reports/period_check.h"
#include "text/numbers.h"

#include <map>
#include <tuple>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

struct Name
{
    QString text;
    bool unknown = false; // to the register
};

// Two lines of a name are read, and the first is shown; the second stands in where only that was entered.
base::Result<Name> nameOf(db::Connection &connection, book::Party party, book::CounterpartKey counterpart)
{
    const auto found = connection.select(
        party == book::Party::Customer ? u"SELECT 納品先名1, 納品先名2 FROM 納品先 WHERE 納品先ID = ?"_s
                                       : u"SELECT 仕入先名1, 仕入先名2 FROM 仕入先 WHERE 仕入先ID = ?"_s,
        {counterpart ? QVariant(*counterpart) : QVariant()});
    if (!found)
        return found.error();
    if (found->isEmpty())
        return Name{book::unknownCounterpartName(counterpart), true};
    const QString first = found->rows.front().at(0).toString();
    if (!first.trimmed().isEmpty())
        return Name{first};
    return Name{book::counterpartName(found->rows.front().at(1).toString(), {})};
}

base::Status addLines(db::Connection &connection, std::vector<book::Movement> movements,
                      const std::unordered_map<qint64, QString> &remarks, DayReport &report)
{
    const book::Party party = descriptionOf(report.kind).slips.party;
    std::map<book::CounterpartKey, Name> names;
    base::ExactSum total;
    report.lines.reserve(movements.size());
    for (book::Movement &movement : movements) {
        auto known = names.find(movement.counterpart);
        if (known == names.end()) {
            const auto name = nameOf(connection, party, movement.counterpart);
            if (!name)
                return name.error();
            known = names.emplace(movement.counterpart, *name).first;
        }
        if (report.lines.empty() || report.lines.back().line.slip != movement.slip) {
            ++report.slips;
            report.unknownSlips += known->second.unknown ? 1 : 0;
        }
        total.add(movement.amount);
        const auto remark = remarks.find(movement.slip);
        report.lines.push_back(
            {std::move(movement), known->second.text, remark == remarks.end() ? QString() : remark->second});
    }
    report.total = total.value();
    return {};
}

// Standard rates first, the higher one before; then reduced ones, what is not taxed, and what has no rate.
struct RateKey
{
    enum Group { Standard, Reduced, Exempt, OutOfScope, Unknown } group = Standard;
    double descending = 0; // percent below 0

    bool operator<(const RateKey &other) const
    {
        return std::tie(group, descending) < std::tie(other.group, other.descending);
    }
};

RateKey rateOf(const book::Movement &line)
{
    const book::GoodsTax taxClass = line.taxClass.value_or(book::GoodsTax::Standard);
    if (!book::isTaxed(taxClass))
        return {taxClass == book::GoodsTax::Exempt ? RateKey::Exempt : RateKey::OutOfScope};
    if (!line.taxRate || !book::isCountable(*line.taxRate))
        return {RateKey::Unknown};
    return {book::isReduced(taxClass) ? RateKey::Reduced : RateKey::Standard, -*line.taxRate};
}

QString nameOf(const RateKey &key)
{
    using enum book::GoodsTax;
    switch (key.group) {
    case RateKey::Standard:
        return book::rateName(Standard, -key.descending);
    case RateKey::Reduced:
        return book::rateName(Food, -key.descending);
    case RateKey::Exempt:
        return book::rateName(Exempt, 0);
    case RateKey::OutOfScope:
        return book::rateName(OutOfScope, 0);
    case RateKey::Unknown:
        break;
    }
    return u"税率不明"_s;
}

void addRates(DayReport &report)
{
    struct Sums
    {
        base::ExactSum amount;
        base::ExactSum tax;
    };
    std::map<RateKey, Sums> rates;
    for (const DayLine &each : report.lines) {
        Sums &sums = rates[rateOf(each.line)];
        sums.amount.add(each.line.amount);
        sums.tax.add(each.line.isTax() ? each.line.amount : 0);
    }
    if (rates.size() < 2)
        return;
    for (const auto &[key, sums] : rates)
        report.rates.push_back({nameOf(key), sums.amount.value(), sums.tax.value()});
}

base::Status countUndated(db::Connection &connection, DayReport &report)
{
    return book::sumMovements(
        connection, {.kinds = {descriptionOf(report.kind).slips}, .days = book::Days::none()}, {},
        base::unwatched, [&report](const book::MovementSum &part) {
            if (part.lines > 0 && (report.undatedLines == 0 || part.firstSlip < report.firstUndated))
                report.firstUndated = part.firstSlip;
            report.undatedLines += part.lines;
        });
}

} // namespace

base::Result<DayReport> readDayReport(db::Connection &connection, DayReportKind kind,
                                      const book::Period &period)
{
    if (const base::Status good = checkPeriod(period); !good)
        return good.error();
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    const book::Selection selection{.kinds = {descriptionOf(kind).slips}, .days = book::Days::within(period)};
    auto movements = book::movements(connection, selection);
    if (!movements)
        return movements.error();
    const auto remarks = book::slipRemarks(connection, selection);
    if (!remarks)
        return remarks.error();
    DayReport report{.kind = kind, .period = period};
    if (const base::Status added = addLines(connection, std::move(*movements), *remarks, report); !added)
        return added.error();
    if (descriptionOf(kind).isTaxed)
        addRates(report);
    if (const base::Status counted = countUndated(connection, report); !counted)
        return counted.error();
    return report;
}

QString nothingInPeriod() { return u"該当するデータがありません。"_s; }

QString taxInWords(const DayRate &rate)
{
    return rate.tax == 0 ? QString() : u"うち消費税 "_s + text::formatAmount(rate.tax);
}

QStringList notesOn(const DayReport &report)
{
    QStringList notes;
    const bool isSold = descriptionOf(report.kind).slips.party == book::Party::Customer;
    if (report.unknownSlips > 0)
        notes << u"登録のない%1の伝票 %2 件を含みます。"_s.arg(isSold ? u"納品先"_s : u"仕入先"_s)
                     .arg(report.unknownSlips);
    if (report.undatedLines > 0)
        notes << u"日付のない伝票の明細 %1 行は、どの期間にも入りません（合計に含みません）。"_s.arg(
            report.undatedLines);
    return notes;
}

} // namespace reports
