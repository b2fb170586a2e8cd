#include "book/returned_goods.h"

#include "book/slip_columns.h"
#include "book/tax.h"
#include "db/keys.h"
#include "text/dates.h"
#include "text/like.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

constexpr double leastDocumented = 10000; // yen with tax

OriginalSlip originalFrom(const QVariantList &row)
{
    return {row.at(0).toLongLong(), QDate::fromString(row.at(1).toString(), u"yyyy-MM-dd"_s),
            row.at(2).toString()};
}

LineTax taxOf(const SlipLine &line, double slipRate)
{
    return {line.taxClass.value_or(GoodsTax::Standard), line.taxRate.value_or(slipRate)};
}

} // namespace

base::Result<std::vector<OriginalSlip>> slipsToReturnOf(db::Connection &connection, const SlipKind &kind,
                                                        const SavedHeader &slip, const QDate &until,
                                                        const QString &product, int most)
{
    // The newest ones are looked for before their lines are: a customer may have thousands.
    const auto rows = connection.select(
        u"SELECT ID, 日付, 伝票番号, CASE WHEN EXISTS (SELECT 1 FROM 入出庫サブ WHERE 入出庫サブ.ID = "
        u"近い伝票.ID "
        "AND 数量 > 0 AND 商品名 LIKE ? ESCAPE '\\') THEN 1 ELSE 0 END FROM (SELECT ID, 日付, 伝票番号 FROM "
        "入出庫マスター "
        "WHERE "_s +
            columns::kind + u" = ? AND 相手先ID = ? AND ID <> ? AND "_s + columns::hasDay +
            u" AND 日付 <= ? AND EXISTS (SELECT 1 FROM 入出庫サブ WHERE 入出庫サブ.ID = 入出庫マスター.ID "
            u"AND "
            "数量 > 0) ORDER BY 日付 DESC, ID DESC LIMIT ?) AS 近い伝票 ORDER BY 日付 DESC, ID DESC"_s,
        {text::literalPattern(product), QString(QChar(kind.letter)), slip.counterpart, slip.id,
         text::stored(until), most});
    if (!rows)
        return rows.error();
    std::vector<OriginalSlip> slips;
    for (const QVariantList &row : rows->rows) {
        slips.push_back(originalFrom(row));
        slips.back().holdsProduct = row.at(3).toInt() != 0;
    }
    std::ranges::stable_partition(slips, &OriginalSlip::holdsProduct);
    return slips;
}

base::Result<std::optional<LineTax>> taxWhenSold(db::Connection &connection, qint64 original,
                                                 const QString &product)
{
    const auto slip = readSlip(connection, original, Party::Customer);
    if (!slip)
        return slip.error();
    for (const SlipLine &line : slip->lines) {
        const bool isSold = !line.isTax() && line.quantity.value_or(0) > 0;
        if (isSold && text::folded(line.product) == text::folded(product))
            return std::optional(taxOf(line, slip->taxRate));
    }
    return std::optional<LineTax>();
}

base::Status keepOriginal(db::Connection &connection, qint64 id, qint64 original)
{
    return db::atomically(connection, [&]() -> base::Status {
        const auto version = db::nextVersion(connection);
        if (!version)
            return version.error();
        const auto kept = connection.execute(u"UPDATE 入出庫マスター SET 元伝票 = ?, 版 = ? WHERE ID = ?"_s,
                                             {original, *version, id});
        if (!kept)
            return kept.error();
        return *kept > 0 ? base::Status()
                         : base::Error{.text = u"この伝票はほかのプログラムで削除されたため、元の伝票を"
                                               "保存できませんでした。"_s,
                                       .gone = true};
    });
}

base::Result<std::optional<OriginalSlip>> originalOf(db::Connection &connection, qint64 id)
{
    const auto rows = connection.select(u"SELECT ID, 日付, 伝票番号 FROM 入出庫マスター WHERE ID = "
                                        "(SELECT 元伝票 FROM 入出庫マスター WHERE ID = ?) ORDER BY ID"_s,
                                        {id});
    if (!rows)
        return rows.error();
    return rows->isEmpty() ? std::optional<OriginalSlip>() : originalFrom(rows->rows.front());
}

base::Result<std::vector<RateTax>> returnedAt(const Slip &slip, double rate, Basis basis)
{
    std::vector<SlipLine> returned;
    std::ranges::copy_if(slip.lines, std::back_inserter(returned),
                         [](const SlipLine &line) { return line.quantity.value_or(0) < 0; });
    return taxesByRate(taxableGoods(returned, rate), basis);
}

bool needsReturnDocument(const std::vector<RateTax> &taxes)
{
    double gross = 0;
    for (const RateTax &tax : taxes)
        gross += tax.gross;
    return gross <= -leastDocumented;
}

} // namespace book
