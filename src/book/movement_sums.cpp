#include "book/movement_sums.h"

#include "book/slip_columns.h"
#include "book/slip_slices.h"
#include "book/stored_values.h"
#include "db/statement.h"
#include "text/dates.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

// What is added up of each line, and the names under which it is grouped.
QString linesStatement(const Condition &condition, const Grouping &grouping)
{
    const auto when = [](bool wanted, const QString &column) { return wanted ? column : u"NULL"_s; };
    const QStringList list{
        columns::kind + u" AS 種"_s,
        when(grouping.byCounterpart, u"相手先ID"_s) + u" AS 相手"_s,
        when(grouping.since.isValid(),
             u"CASE WHEN 日付 >= ? AND "_s + columns::hasDay + u" THEN 1 ELSE 0 END"_s) +
            u" AS 以後"_s,
        when(grouping.byRate, columns::taxClass) + u" AS 区分"_s,
        when(grouping.byRate, columns::taxRate) + u" AS 率"_s,
        columns::amountCount + u" AS 額"_s,
        when(grouping.withTax, u"CASE WHEN "_s + columns::isTax + u" THEN 1 ELSE 0 END"_s) + u" AS 税"_s,
        when(grouping.withLastDay, columns::day) + u" AS 日"_s,
        u"入出庫サブ.ID AS 伝票"_s,
        when(grouping.byBasis, columns::inclusive) + u" AS 内"_s,
        when(grouping.byDay, columns::suppliedDay) + u" AS 供給日"_s,
    };
    return u"SELECT "_s + list.join(u", "_s) + u" FROM "_s + columns::slipsAndLines + u" WHERE "_s +
           condition.sql;
}

QString sumsStatement(const Condition &condition, const Grouping &grouping)
{
    // What is never asked for together would cost the large sums time.
    const QString finer = grouping.byBasis || grouping.byDay ? u", 内, 供給日"_s : QString();
    return u"SELECT 種, 相手, 以後, 区分, 率, SUM(額), COUNT(伝票), MIN(伝票), MAX(日), SUM(税), "
           "SUM(CASE WHEN 税 = 1 THEN 額 END), MIN(内), MIN(供給日) FROM ("_s +
           linesStatement(condition, grouping) + u") AS 明細 GROUP BY 種, 相手, 以後, 区分, 率"_s + finer;
}

MovementSum sumFrom(const db::Statement &row)
{
    MovementSum sum;
    sum.kind = kindWith(row.text(0)).value_or(sale);
    sum.counterpart = storedKey(row.variant(1));
    sum.isSince = row.integer(2) != 0;
    sum.taxClass = goodsTaxFrom(row.variant(3));
    sum.taxRate = storedNumber(row.variant(4));
    sum.amount = base::ExactSum::ofTenThousandths(row.real(5));
    sum.lines = row.integer(6);
    sum.firstSlip = row.integer(7);
    sum.lastDay = QString::fromLatin1(row.text(8));
    sum.taxLines = row.integer(9);
    sum.tax = base::ExactSum::ofTenThousandths(row.real(10));
    if (const QVariant inclusive = row.variant(11); !inclusive.isNull())
        sum.inclusive = inclusive.toInt() != 0;
    sum.day = QString::fromLatin1(row.text(12));
    return sum;
}

base::Status takeSums(db::Connection &connection, const Condition &condition, const Grouping &grouping,
                      const TakeSum &take)
{
    const QVariantList since =
        grouping.since.isValid() ? QVariantList{text::stored(grouping.since)} : QVariantList();
    return connection.visit(sumsStatement(condition, grouping), since + condition.values,
                            [&take](const db::Statement &row) { take(sumFrom(row)); });
}

// A few hundred counterparts at a time: so many of their slips are read in some hundredths of a second, and
// each statement but the last has the same text.
constexpr std::size_t counterpartSlice = 500;

base::Status takeSumsOfCounterparts(db::Connection &connection, const Selection &selection,
                                    const Grouping &grouping, const base::Progress &progress,
                                    const TakeSum &take)
{
    const std::vector<qint64> &all = *selection.counterparts;
    for (std::size_t done = 0; done < all.size(); done += counterpartSlice) {
        if (!progress(static_cast<qint64>(done), static_cast<qint64>(all.size())))
            return base::cancelled();
        const std::size_t next = std::min(done + counterpartSlice, all.size());
        const auto at = [&all](std::size_t place) {
            return all.begin() + static_cast<std::ptrdiff_t>(place);
        };
        Selection slice = selection;
        slice.counterparts.emplace(at(done), at(next));
        Condition condition = slipsOf(slice);
        condition &= linesOf(slice);
        if (const base::Status taken = takeSums(connection, condition, grouping, take); !taken)
            return taken;
    }
    return {};
}

} // namespace

base::ExactSum MovementSum::inBalance() const { return amount.times(kind.sign); }

base::Status sumMovements(db::Connection &connection, const Selection &selection, const Grouping &grouping,
                          const base::Progress &progress, const TakeSum &take)
{
    if (selection.counterparts)
        return takeSumsOfCounterparts(connection, selection, grouping, progress, take);
    Condition condition = slipsOf(selection);
    condition &= linesOf(selection);
    const bool isSmall = selection.counterpart || selection.days.onlyUndated || selection.days.from.isValid();
    if (isSmall)
        return takeSums(connection, condition, grouping, take);
    return forSlipSlices(connection, progress, [&](const Condition &slice) {
        Condition within = condition;
        within &= slice;
        return takeSums(connection, within, grouping, take);
    });
}

} // namespace book
