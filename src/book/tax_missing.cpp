// Slips whose tax was not booked.
#include "book/tax_missing.h"

#include "book/slip_columns.h"
#include "book/slip_store.h"
#include "book/tax.h"
#include "text/dates.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

struct Candidate
{
    qint64 id = 0;
    QString number;
    double taxRate = 0; // percent
};

base::Result<std::vector<Candidate>> candidates(db::Connection &connection, const SlipKind &kind,
                                                const QDate &from)
{
    const QString counterpart = kind.party == Party::Customer
                                    ? u"納品先 ON 納品先.納品先ID = 入出庫マスター.相手先ID"_s
                                    : u"仕入先 ON 仕入先.仕入先ID = 入出庫マスター.相手先ID"_s;
    const auto rows = connection.select(
        u"SELECT 入出庫マスター.ID, 伝票番号, 消費税率 FROM 入出庫マスター INNER JOIN "_s + counterpart +
            u" WHERE "_s + columns::kind +
            u" = ? AND 日付 >= ? AND 完了 = 1 AND 内税 = 0 AND COALESCE(消費税区分, 0) <> 1 "
            "AND NOT EXISTS (SELECT 1 FROM 入出庫サブ WHERE 入出庫サブ.ID = 入出庫マスター.ID AND "_s +
            columns::isTax + u") ORDER BY 入出庫マスター.ID DESC"_s,
        {QString(QChar(kind.letter)), text::stored(from)});
    if (!rows)
        return rows.error();
    std::vector<Candidate> found;
    for (const QVariantList &row : rows->rows)
        found.push_back({row.at(0).toLongLong(), row.at(1).toString(), row.at(2).toDouble()});
    return found;
}

// Of a customer whatever its class is now, closed or not.
base::Result<std::vector<Candidate>> candidatesOf(db::Connection &connection, qint64 customer,
                                                  const Period &period)
{
    const auto rows = connection.select(
        u"SELECT ID, 伝票番号, 消費税率 FROM 入出庫マスター WHERE 相手先ID = ? AND "_s + columns::kind +
            u" = ? AND 日付 >= ? AND 日付 <= ? AND 内税 = 0 AND NOT EXISTS (SELECT 1 FROM 入出庫サブ WHERE "
            "入出庫サブ.ID = 入出庫マスター.ID AND "_s +
            columns::isTax + u") ORDER BY ID"_s,
        {customer, QString(QChar(sale.letter)), text::stored(period.from), text::stored(period.to)});
    if (!rows)
        return rows.error();
    std::vector<Candidate> found;
    for (const QVariantList &row : rows->rows)
        found.push_back({row.at(0).toLongLong(), row.at(1).toString(), row.at(2).toDouble()});
    return found;
}

base::Result<bool> wouldBeTaxed(db::Connection &connection, const Candidate &slip)
{
    const auto sums = slipSums(connection, slip.id, slip.taxRate);
    if (!sums)
        return sums.error();
    const auto tax = taxOf(sums->goods, Basis::Net);
    return !tax || *tax != 0; // one that cannot be computed is to be looked at, too
}

} // namespace

base::Result<QStringList> salesWithoutTax(db::Connection &connection, qint64 customer, const Period &period)
{
    const auto all = candidatesOf(connection, customer, period);
    if (!all)
        return all.error();
    QStringList numbers;
    for (const Candidate &slip : *all) {
        const auto taxed = wouldBeTaxed(connection, slip);
        if (!taxed)
            return taxed.error();
        if (*taxed)
            numbers << slip.number;
    }
    return numbers;
}

base::Result<QStringList> slipsWithoutTax(db::Connection &connection, const QDate &from, int most)
{
    std::vector<Candidate> all;
    for (const SlipKind &kind : {sale, purchase}) {
        const auto found = candidates(connection, kind, from);
        if (!found)
            return found.error();
        all.insert(all.end(), found->begin(), found->end());
    }
    std::ranges::sort(all, std::greater(), &Candidate::id);
    QStringList numbers;
    for (const Candidate &slip : all) {
        if (numbers.size() >= most)
            break;
        const auto taxed = wouldBeTaxed(connection, slip);
        if (!taxed)
            return taxed.error();
        if (*taxed)
            numbers << slip.number;
    }
    return numbers;
}

} // namespace book
