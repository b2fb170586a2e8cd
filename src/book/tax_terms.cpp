#include "book/tax_terms.h"

#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"
#include "text/dates.h"

#include <algorithm>
#include <cmath>
#include <tuple>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

constexpr double highestPercent = 100;

QDate dayFrom(const QVariant &stored) { return QDate::fromString(stored.toString(), u"yyyy-MM-dd"_s); }

bool reaches(const TaxTerm &term, const QDate &day) { return !term.to.isValid() || term.to >= day; }

bool overlap(const TaxTerm &one, const TaxTerm &other)
{
    return one.inForce && other.inForce && one.taxClass == other.taxClass && reaches(one, other.from) &&
           reaches(other, one.from);
}

const TaxTerm *byKey(const std::vector<TaxTerm> &terms, qint64 id)
{
    const auto found = std::ranges::find(terms, id, &TaxTerm::id);
    return found == terms.end() ? nullptr : &*found;
}

base::Status checkAll(const std::vector<TaxTerm> &terms)
{
    for (auto term = terms.begin(); term != terms.end(); ++term) {
        if (const base::Status good = checkTerm(*term); !good)
            return good;
        if (std::any_of(terms.begin(), term, [&](const TaxTerm &other) { return overlap(other, *term); }))
            return base::Error{u"同じ区分の期間が重なっています。期間を確認してください。"_s};
    }
    return {};
}

QVariantList values(const TaxTerm &term)
{
    const QVariant to = term.to.isValid() ? QVariant(text::stored(term.to)) : QVariant();
    return {static_cast<int>(term.taxClass), text::stored(term.from), to, term.percent, term.inForce ? 1 : 0};
}

base::Status add(db::Connection &connection, const TaxTerm &term)
{
    const auto key = db::nextKey(connection, u"税率"_s);
    if (!key)
        return key.error();
    return connection
        .execute(u"INSERT INTO 税率 (税区分, 開始日, 終了日, 税率, 有効, 税率ID, 版) "
                 "VALUES (?, ?, ?, ?, ?, ?, (SELECT 最終 FROM 版数))"_s,
                 values(term) + QVariantList{*key})
        .status();
}

base::Status change(db::Connection &connection, const TaxTerm &term)
{
    const auto version = db::nextVersion(connection);
    if (!version)
        return version.error();
    return connection
        .execute(u"UPDATE 税率 SET 税区分 = ?, 開始日 = ?, 終了日 = ?, 税率 = ?, 有効 = ?, 版 = ? "
                 "WHERE 税率ID = ?"_s,
                 values(term) + QVariantList{*version, term.id})
        .status();
}

base::Status writeChanges(db::Connection &connection, const std::vector<TaxTerm> &before,
                          const std::vector<TaxTerm> &after)
{
    for (const TaxTerm &term : before) {
        if (byKey(after, term.id))
            continue;
        const auto removed = db::deleteRows(connection, u"DELETE FROM 税率 WHERE 税率ID = ?"_s, {term.id});
        if (!removed)
            return removed.error();
    }
    for (const TaxTerm &term : after) {
        const TaxTerm *old = term.id == 0 ? nullptr : byKey(before, term.id);
        if (old && *old == term)
            continue;
        if (const base::Status written = old ? change(connection, term) : add(connection, term); !written)
            return written;
    }
    return {};
}

// What is left of \a old before and behind \a term.
std::vector<TaxTerm> around(const TaxTerm &old, const TaxTerm &term)
{
    std::vector<TaxTerm> parts;
    if (old.from < term.from) {
        parts.push_back(old);
        parts.back().to = term.from.addDays(-1);
    }
    if (term.to.isValid() && reaches(old, term.to.addDays(1))) {
        parts.push_back(old);
        parts.back().from = term.to.addDays(1);
        if (parts.size() == 2)
            parts.back().id = 0;
    }
    if (parts.empty()) {
        parts.push_back(old);
        parts.back().inForce = false;
    }
    return parts;
}

} // namespace

QString nameOf(GoodsTax taxClass)
{
    switch (taxClass) {
    case GoodsTax::Standard:
        break;
    case GoodsTax::Food:
        return u"軽減（飲食料品）"_s;
    case GoodsTax::Newspapers:
        return u"軽減（新聞）"_s;
    case GoodsTax::Exempt:
        return u"非課税"_s;
    case GoodsTax::OutOfScope:
        return u"対象外"_s;
    }
    return u"標準"_s;
}

QString rateName(GoodsTax taxClass, double percent)
{
    if (!isTaxed(taxClass))
        return nameOf(taxClass);
    return (isReduced(taxClass) ? u"軽減"_s : QString()) + QString::number(percent, 'g', 6) + u'%';
}

base::Result<std::vector<TaxTerm>> taxTerms(db::Connection &connection)
{
    const auto rows = connection.select(u"SELECT 税率ID, 税区分, 開始日, 終了日, 税率, 有効 FROM 税率 "
                                        "ORDER BY 税区分, 開始日, 税率ID"_s);
    if (!rows)
        return rows.error();
    std::vector<TaxTerm> terms;
    for (const QVariantList &row : rows->rows) {
        const auto taxClass = goodsTaxFrom(row.at(1));
        const QDate from = dayFrom(row.at(2));
        if (taxClass && from.isValid())
            terms.push_back({row.at(0).toLongLong(), *taxClass, from, dayFrom(row.at(3)),
                             row.at(4).toDouble(), row.at(5).toInt() == 1});
    }
    return terms;
}

base::Status checkTerm(const TaxTerm &term)
{
    if (!isTaxed(term.taxClass))
        return base::Error{
            u"%1の商品には税率がありません。区分を選び直してください。"_s.arg(nameOf(term.taxClass))};
    if (!std::isfinite(term.percent) || term.percent < 0 || term.percent > highestPercent)
        return base::Error{u"消費税率は０から１００までの数字で入力してください。"_s};
    if (!term.from.isValid())
        return base::Error{u"開始日を入力してください。"_s};
    if (term.to.isValid() && term.to < term.from)
        return base::Error{u"終了日が開始日より前です。日付を確認してください。"_s};
    return {};
}

std::vector<TaxTerm> overlapping(const std::vector<TaxTerm> &terms, const TaxTerm &term)
{
    std::vector<TaxTerm> found;
    std::ranges::copy_if(terms, std::back_inserter(found), [&](const TaxTerm &other) {
        return (term.id == 0 || other.id != term.id) && overlap(other, term);
    });
    return found;
}

std::vector<TaxTerm> withRoomFor(const std::vector<TaxTerm> &terms, const TaxTerm &term)
{
    std::vector<TaxTerm> made;
    bool isIn = false;
    for (const TaxTerm &other : terms) {
        if (term.id != 0 && other.id == term.id) {
            made.push_back(term);
            isIn = true;
        } else if (overlap(other, term)) {
            std::ranges::copy(around(other, term), std::back_inserter(made));
        } else {
            made.push_back(other);
        }
    }
    if (!isIn)
        made.push_back(term);
    std::ranges::stable_sort(made, [](const TaxTerm &one, const TaxTerm &other) {
        return std::tie(one.taxClass, one.from) < std::tie(other.taxClass, other.from);
    });
    return made;
}

TaxRates inForce(const std::vector<TaxTerm> &terms)
{
    std::vector<TaxRates::Term> found;
    for (const TaxTerm &term : terms) {
        if (term.inForce)
            found.push_back({term.taxClass, term.from, term.to, term.percent});
    }
    return TaxRates(std::move(found));
}

QDate firstGap(const std::vector<TaxTerm> &terms, const QDate &today)
{
    QDate covered; // the first day not reached yet
    for (const TaxTerm &term : terms) {
        if (term.taxClass != GoodsTax::Standard || !term.inForce)
            continue;
        if (term.from > (covered.isValid() ? covered : today))
            break;
        if (!term.to.isValid())
            return {};
        covered = term.to.addDays(1);
    }
    return covered.isValid() ? covered : today;
}

base::Status storeTaxTerms(db::Connection &connection, const std::vector<TaxTerm> &before,
                           const std::vector<TaxTerm> &after)
{
    if (const base::Status good = checkAll(after); !good)
        return good;
    return db::atomically(connection, [&]() -> base::Status {
        const auto now = taxTerms(connection);
        if (!now)
            return now.error();
        if (*now != before)
            return base::Error{u"税率表は、別のプログラムで変更されました。もう一度確認してください。"_s};
        return writeChanges(connection, before, after);
    });
}

} // namespace book
