#include "reports/ledgers/stock_ledger.h"

#include "book/counterpart_name.h"
#include "book/exact_sum.h"
#include "book/slip_blocks.h"
#include "book/stored_values.h"
#include "book/tax.h"
#include "db/transaction.h"

#include <limits>
#include <map>
#include <tuple>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

QString stored(const QDate &date) { return date.toString(u"yyyy-MM-dd"_s); }

StocktakeLine stocktakeFrom(const QVariantList &row)
{
    const book::CounterpartKey key =
        row.at(3).isNull() ? book::CounterpartKey() : book::CounterpartKey(row.at(3).toLongLong());
    const QString supplier = row.at(4).isNull()
                                 ? book::unknownCounterpartName(key)
                                 : book::counterpartName(row.at(5).toString(), row.at(6).toString());
    return {row.at(0).toLongLong(),         row.at(1).toString(),
            row.at(2).toString(),           supplier,
            row.at(7).toString(),           row.at(8).toString(),
            book::storedNumber(row.at(9)),  row.at(10).toString(),
            book::storedNumber(row.at(11)), book::storedNumber(row.at(12)).value_or(0)};
}

// --- The stock ---

// The price of a line, with what tells which of two lines is the later one.
struct Price
{
    QString date;
    qint64 slip = 0;
    std::optional<double> yen;

    void take(const QString &ofDate, qint64 ofSlip, const QVariant &price)
    {
        const double given = book::storedNumber(price).value_or(0);
        if (!(given <= 0) && std::tie(date, slip) <= std::tie(ofDate, ofSlip)) // also what is no number
            *this = {ofDate, ofSlip, given};
    }
};

struct Goods
{
    QString counted;
    book::ExactSum stocktake;
    book::ExactSum in;
    book::ExactSum out;
    Price purchasePrice;
    Price stocktakePrice;
};

using GoodsKey = std::tuple<QString, QString, QString>; // product, specification, unit
using AllGoods = std::map<GoodsKey, Goods>;

Goods &goodsOf(AllGoods &all, const QVariantList &row)
{
    return all[{row.at(0).toString(), row.at(1).toString(), row.at(2).toString()}];
}

base::Status readCounts(db::Connection &connection, const QDate &day, AllGoods &all)
{
    const auto rows = connection.select(
        u"SELECT 商品名, 規格, 単位, 入出庫マスター.ID, CASE WHEN "_s + book::isUndated() +
            u" THEN '' ELSE 日付 END AS 日, 数量, 単価 "
            "FROM 入出庫マスター INNER JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID "
            "WHERE 伝票番号 LIKE ? AND 日 <= ? AND COALESCE(商品名, '') <> '消費税' "
            "ORDER BY 日, 入出庫マスター.ID, 入出庫サブ.rowid"_s,
        {book::patternOf(book::stocktake), stored(day)});
    if (!rows)
        return rows.error();
    for (const QVariantList &row : rows->rows) {
        Goods &goods = goodsOf(all, row);
        const QString date = row.at(4).toString();
        if (goods.counted != date)
            goods.stocktake = {};
        goods.counted = date;
        goods.stocktake.add(book::storedNumber(row.at(5)).value_or(0));
        goods.stocktakePrice.take(date, row.at(3).toLongLong(), row.at(6));
    }
    return {};
}

base::Status addMovements(db::Connection &connection, qint64 after, qint64 upTo, const QDate &day,
                          AllGoods &all)
{
    const auto rows = connection.select(
        u"SELECT 商品名, 規格, 単位, 入出庫マスター.ID, CASE WHEN 日付 <= ? THEN 日付 ELSE '' END, "
        "数量, 単価, 伝票番号 LIKE ? "
        "FROM 入出庫マスター INNER JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID "
        "WHERE 入出庫マスター.ID > ? AND 入出庫マスター.ID <= ? AND (COALESCE(日付, '') <= ? OR "_s +
            book::isUndated() +
            u") AND (伝票番号 LIKE ? OR 伝票番号 LIKE ?) AND COALESCE(商品名, '') <> '消費税'"_s,
        {stored(day), book::patternOf(book::purchase), after, upTo, stored(day),
         book::patternOf(book::purchase), book::patternOf(book::sale)});
    if (!rows)
        return rows.error();
    for (const QVariantList &row : rows->rows) {
        Goods &goods = goodsOf(all, row);
        const QString date = row.at(4).toString();
        const bool purchased = row.at(7).toBool();
        if (date > goods.counted || goods.counted.isEmpty())
            (purchased ? goods.in : goods.out).add(book::storedNumber(row.at(5)).value_or(0));
        if (purchased)
            goods.purchasePrice.take(date, row.at(3).toLongLong(), row.at(6));
    }
    return {};
}

StockLine lineOf(const GoodsKey &key, const Goods &goods)
{
    StockLine line;
    std::tie(line.product, line.specification, line.unit) = key;
    line.counted = goods.counted;
    line.stocktake = goods.stocktake.value();
    line.in = goods.in.value();
    line.out = goods.out.value();
    book::ExactSum stock = goods.stocktake;
    stock.add(line.in);
    stock.add(-line.out);
    line.stock = stock.value();
    line.price = goods.purchasePrice.yen ? goods.purchasePrice.yen : goods.stocktakePrice.yen;
    const auto amount = book::lineAmount(line.stock, line.price.value_or(0));
    line.amount = amount ? *amount : std::numeric_limits<double>::quiet_NaN();
    return line;
}

} // namespace

base::Result<StocktakeReport> readStocktakes(db::Connection &connection, const book::Period &period)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    const auto rows = connection.select(
        u"SELECT 入出庫マスター.ID, 日付, 伝票番号, 相手先ID, 仕入先ID, 仕入先名1, 仕入先名2, 商品名, 規格, "
        "数量, 単位, 単価, 金額 FROM 入出庫マスター "
        "INNER JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID LEFT JOIN 仕入先 ON 仕入先ID = 相手先ID "
        "WHERE 伝票番号 LIKE ? AND 日付 >= ? AND 日付 <= ? AND NOT "_s +
            book::isUndated() + u" ORDER BY 日付, 入出庫マスター.ID, 入出庫サブ.rowid"_s,
        {book::patternOf(book::stocktake), stored(period.from), stored(period.to)});
    if (!rows)
        return rows.error();
    StocktakeReport report;
    book::ExactSum total;
    for (const QVariantList &row : rows->rows) {
        report.lines.push_back(stocktakeFrom(row));
        total.add(report.lines.back().amount);
    }
    report.total = total.value();
    const auto undated = connection.select(
        u"SELECT COUNT(*), MIN(入出庫マスター.ID) FROM 入出庫マスター "
        "INNER JOIN 入出庫サブ ON 入出庫サブ.ID = 入出庫マスター.ID WHERE 伝票番号 LIKE ? AND "_s +
            book::isUndated(),
        {book::patternOf(book::stocktake)});
    if (!undated)
        return undated.error();
    report.undatedLines = undated->rows.front().at(0).toLongLong();
    report.firstUndated = undated->rows.front().at(1).toLongLong();
    return report;
}

base::Result<StockLedger> readStock(db::Connection &connection, const QDate &day,
                                    const base::Progress &progress)
{
    db::ReadTransaction oneMoment(connection);
    if (const base::Status begun = oneMoment.begin(); !begun)
        return begun.error();
    AllGoods all;
    if (const base::Status counted = readCounts(connection, day, all); !counted)
        return counted.error();
    const base::Status moved = book::forSlipBlocks(connection, progress, [&](qint64 after, qint64 upTo) {
        return addMovements(connection, after, upTo, day, all);
    });
    if (!moved)
        return moved.error();

    StockLedger ledger;
    book::ExactSum total;
    for (const auto &[key, goods] : all) {
        ledger.lines.push_back(lineOf(key, goods));
        total.add(ledger.lines.back().amount);
    }
    ledger.total = total.value();
    return ledger;
}

} // namespace reports
