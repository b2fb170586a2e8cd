#include "book/slip_store.h"

#include "book/numbering.h"
#include "book/printed_slip.h"
#include "book/slip_columns.h"
#include "book/stored_values.h"
#include "book/taken_payments.h"
#include "book/tax.h"
#include "db/keys.h"
#include "db/statement.h"
#include "db/transaction.h"
#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

base::Error gone(const QString &text) { return {.text = text, .gone = true}; }

base::Status checkHeader(const NewSlip &slip)
{
    if (slip.counterpart == 0)
        return base::Error{slip.kind.party == Party::Customer ? u"納品先が選択されていません。"_s
                                                              : u"仕入先が選択されていません。"_s};
    if (slip.employee == 0)
        return base::Error{u"担当者が選択されていません。"_s};
    if (!isSlipDate(slip.date))
        return base::Error{
            u"日付が正しくないため、伝票を保存できませんでした。日付を入力し直してください。"_s};
    return {};
}

// Another program may have deleted the counterpart since it was searched.
base::Status checkCounterpart(db::Connection &connection, const NewSlip &slip)
{
    const bool isCustomer = slip.kind.party == Party::Customer;
    const auto there = connection.integers(isCustomer ? u"SELECT 納品先ID FROM 納品先 WHERE 納品先ID = ?"_s
                                                      : u"SELECT 仕入先ID FROM 仕入先 WHERE 仕入先ID = ?"_s,
                                           {slip.counterpart});
    if (!there)
        return there.error();
    if (there->empty())
        return gone(
            u"選択した%1は削除されているため、伝票を保存できませんでした。%1を検索し直してください。"_s.arg(
                isCustomer ? u"納品先"_s : u"仕入先"_s));
    return {};
}

base::Status stampCustomer(db::Connection &connection, qint64 customer, const QDate &day)
{
    const auto stamped = connection.execute(u"UPDATE 納品先 SET 更新日 = ? WHERE 納品先ID = ?"_s,
                                            {text::stored(day), customer});
    return stamped.status();
}

// 1, 0, or NULL where nothing is known.
QVariant storedMark(const std::optional<bool> &mark) { return mark ? QVariant(*mark ? 1 : 0) : QVariant(); }

// A damaged book may have lost slips and kept their lines, which a new slip under their key would take over.
base::Result<qint64> nextSlipKey(db::Connection &connection)
{
    const auto next = db::nextKey(connection, u"入出庫マスター"_s);
    return next ? db::unusedKey(connection, *next, {u"入出庫サブ"_s, u"ID"_s}) : next;
}

// The key of \a slip. A number that went out on paper is given to no other slip, though its own was deleted
// or is not in the backup that was restored: the copies that are kept (発行控) would tell of two sales.
base::Result<qint64> keyFor(db::Connection &connection, const NewSlip &slip)
{
    auto key = nextSlipKey(connection);
    while (key && !slip.manualNumber) {
        const auto issued =
            connection.integers(u"SELECT 発行ID FROM 発行控 WHERE 番号 = ? ORDER BY 発行ID LIMIT 1"_s,
                                {automaticNumber(slip.kind, slip.infix, *key)});
        if (!issued || issued->empty())
            return issued ? key : issued.error();
        key = db::unusedKey(connection, *key + 1, {u"入出庫サブ"_s, u"ID"_s});
    }
    return key;
}

base::Status insertHeader(db::Connection &connection, const NewSlip &slip, const SavedHeader &header)
{
    const auto inserted = connection.execute(
        u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 内税, 完了, 版) "
        "VALUES (?, ?, ?, ?, ?, ?, ?, ?, (SELECT 最終 FROM 版数))"_s,
        {header.id, text::stored(slip.date), header.number, slip.counterpart, slip.employee, slip.taxRate,
         storedMark(slip.inclusive), slip.needsClosing ? 0 : 1});
    return inserted.status();
}

// One statement, so that no line is ever stored without its header: another program may have deleted that.
// The line bears the file's counter as it is, which needs the lock that a transaction that writes has from
// its beginning: between reading it and storing the line nobody else may raise it.
base::Status insertLine(db::Connection &connection, const QString &columns, const QVariantList &values,
                        qint64 id)
{
    const QString places = QStringList(values.size(), u"?"_s).join(u", "_s);
    const auto insert = [&]() -> base::Status {
        const auto inserted =
            connection.execute(u"INSERT INTO 入出庫サブ (ID, "_s + columns + u", 版) SELECT ID, "_s + places +
                                   u", (SELECT 最終 FROM 版数) FROM 入出庫マスター WHERE ID = ?"_s,
                               values + QVariantList{id});
        if (inserted && *inserted == 0)
            return gone(u"この伝票はほかのプログラムで削除されたため、明細を保存できませんでした。"_s);
        return inserted.status();
    };
    // It is done wholly or not at all: within an action it needs no savepoint of its own.
    return connection.inTransaction() ? insert() : db::atomically(connection, insert);
}

base::Result<double> headersTaxRate(db::Connection &connection, qint64 id)
{
    const auto rate = connection.select(u"SELECT 消費税率 FROM 入出庫マスター WHERE ID = ?"_s, {id});
    return rate ? base::Result<double>(rate->value(0, u"消費税率"_s).toDouble()) : rate.error();
}

base::Status addTaxLines(db::Connection &connection, qint64 id, const std::vector<RateTax> &taxes)
{
    const auto own = headersTaxRate(connection, id);
    if (!own)
        return own.error();
    for (const SlipLine &line : taxLinesOf(taxes, *own)) {
        if (const base::Status added = addTaxLine(connection, id, line); !added)
            return added;
    }
    return {};
}

// \a assignment has one place for \a value; \a whenGone is told of a slip that is no longer there.
base::Status keepOnHeader(db::Connection &connection, qint64 id, const QString &assignment,
                          const QVariant &value, const QString &whenGone)
{
    return db::atomically(connection, [&]() -> base::Status {
        const auto version = db::nextVersion(connection);
        if (!version)
            return version.error();
        const auto kept = connection.execute(
            u"UPDATE 入出庫マスター SET "_s + assignment + u", 版 = ? WHERE ID = ?"_s, {value, *version, id});
        if (!kept)
            return kept.error();
        return *kept == 0 ? base::Status(gone(whenGone)) : base::Status();
    });
}

base::Status markClosed(db::Connection &connection, qint64 id, const std::optional<bool> &inclusive)
{
    return keepOnHeader(connection, id, u"完了 = 1, 内税 = COALESCE(?, 内税)"_s, storedMark(inclusive),
                        u"この伝票はほかのプログラムで削除されたため、閉じることができませんでした。"_s);
}

// What a slip that is to be closed comes to.
base::Result<SlipSums> sumsForClosing(db::Connection &connection, qint64 id, double taxRate)
{
    const auto there = slipExists(connection, id);
    if (!there)
        return there.error();
    if (!*there)
        return gone(u"この伝票はほかのプログラムで削除されたため、閉じることができませんでした。"_s);
    return slipSums(connection, id, taxRate);
}

} // namespace

// An invalid date comes before every other one.
bool isSlipDate(const QDate &date) { return date >= QDate(1900, 1, 1); }

base::Result<SavedHeader> saveHeader(db::Connection &connection, const NewSlip &slip)
{
    if (const base::Status complete = checkHeader(slip); !complete)
        return complete.error();
    return db::atomically(connection, [&]() -> base::Result<SavedHeader> {
        const auto id = keyFor(connection, slip);
        if (!id)
            return id.error();
        if (slip.manualNumber) {
            if (const auto free = checkManualNumber(connection, *slip.manualNumber, slip.manualLetter); !free)
                return free.error();
        }
        if (const base::Status there = checkCounterpart(connection, slip); !there)
            return there.error();
        if (slip.stamp) {
            if (const auto stamped = stampCustomer(connection, slip.counterpart, *slip.stamp); !stamped)
                return stamped.error();
        }
        const SavedHeader header{
            *id, slip.manualNumber ? *slip.manualNumber : automaticNumber(slip.kind, slip.infix, *id),
            slip.counterpart};
        if (const base::Status inserted = insertHeader(connection, slip, header); !inserted)
            return inserted.error();
        return header;
    });
}

base::Status addLine(db::Connection &connection, qint64 id, const GoodsLine &line)
{
    QString columns = u"商品名, 規格, 数量, 単位, 単価, 金額"_s;
    QVariantList values{line.product, line.specification, line.quantity, line.unit, line.price, line.amount};
    if (line.tax) {
        columns += u", 税区分, 税率"_s;
        values << static_cast<int>(line.tax->taxClass) << line.tax->rate;
    }
    return insertLine(connection, columns, values, id);
}

base::Status addLine(db::Connection &connection, qint64 id, const SlipKind &kind, const MoneyLine &line)
{
    const QString means = line.means.isEmpty() ? u""_s : line.means; // never NULL
    if (kind == payment)
        return insertLine(connection, u"商品名, 規格, 単位, 金額"_s, {line.item, means, u""_s, line.amount},
                          id);
    return insertLine(connection, u"商品名, 規格, 金額"_s, {line.item, means, line.amount}, id);
}

base::Status addTaxLine(db::Connection &connection, qint64 id, double tax)
{
    return insertLine(connection, u"商品名, 金額"_s, {QString::fromUtf16(taxLineName), tax}, id);
}

base::Status addTaxLine(db::Connection &connection, qint64 id, const SlipLine &line)
{
    if (!line.taxClass || !line.taxRate)
        return addTaxLine(connection, id, line.amount);
    const QVariant rate = line.specification.isEmpty() ? QVariant() : QVariant(line.specification);
    return insertLine(
        connection, u"商品名, 規格, 金額, 税区分, 税率"_s,
        {QString::fromUtf16(taxLineName), rate, line.amount, static_cast<int>(*line.taxClass), *line.taxRate},
        id);
}

base::Result<bool> slipExists(db::Connection &connection, qint64 id)
{
    const auto headers = connection.integers(u"SELECT ID FROM 入出庫マスター WHERE ID = ?"_s, {id});
    if (!headers)
        return headers.error();
    return !headers->empty();
}

base::Result<bool> removeLastLine(db::Connection &connection, qint64 id)
{
    return db::atomically(connection, [&]() -> base::Result<bool> {
        const auto removed = db::deleteRows(
            connection,
            u"DELETE FROM 入出庫サブ WHERE 明細ID = (SELECT max(明細ID) FROM 入出庫サブ WHERE ID = ?)"_s,
            {id});
        if (!removed)
            return removed.error();
        if (*removed > 0)
            return true;
        const auto there = slipExists(connection, id);
        if (!there)
            return there.error();
        if (!*there)
            return gone(u"この伝票はほかのプログラムで削除されたため、明細を取り消せませんでした。"_s);
        return false;
    });
}

base::Status checkKeyIsNotAnothers(db::Connection &connection, const SavedHeader &saved)
{
    const auto anothers = connection.integers(
        u"SELECT ID FROM 入出庫マスター WHERE ID = ? AND (COALESCE(伝票番号, '') <> ? OR COALESCE(相手先ID, 0) <> ?)"_s,
        {saved.id, saved.number, saved.counterpart});
    if (!anothers)
        return anothers.error();
    if (anothers->empty())
        return {};
    return gone(
        u"伝票 %1 はほかのプログラムで変更または削除されたため、続けて入力できません。"_s.arg(saved.number));
}

base::Result<SlipSums> slipSums(db::Connection &connection, qint64 id, double taxRate)
{
    static const QString statement = u"SELECT "_s + columns::taxClass + u" AS 区分, "_s +
                                     columns::ownTaxRate + u" AS 率, CASE WHEN "_s + columns::isTax +
                                     u" THEN 1 ELSE 0 END AS 税, SUM(金額) FROM 入出庫サブ WHERE ID = ? "
                                     "GROUP BY 区分, 率, 税"_s;
    SlipSums sums;
    const base::Status read = connection.visit(statement, {id}, [&](const db::Statement &row) {
        const double amount = row.real(3);
        sums.total += amount;
        if (row.integer(2) != 0)
            sums.hasTaxLine = true;
        else
            sums.goods.push_back({amount, storedNumber(row.variant(1)).value_or(taxRate),
                                  goodsTaxFrom(row.variant(0)).value_or(GoodsTax::Standard)});
    });
    return read ? base::Result<SlipSums>(std::move(sums)) : read.error();
}

base::Result<ClosedSlip> closeSlip(db::Connection &connection, qint64 id, double taxRate, TaxClass taxClass,
                                   bool inclusive)
{
    return db::atomically(connection, [&]() -> base::Result<ClosedSlip> {
        const auto sums = sumsForClosing(connection, id, taxRate);
        if (!sums)
            return sums.error();
        ClosedSlip closed{sums->total, 0};
        if (taxIsAdded(taxClass, inclusive) && !sums->hasTaxLine) {
            const auto taxes = taxesByRate(sums->goods, Basis::Net);
            if (!taxes)
                return taxes.error();
            if (const base::Status added = addTaxLines(connection, id, *taxes); !added)
                return added.error();
            closed.tax = sumOf(*taxes);
        }
        if (const base::Status marked = markClosed(connection, id, inclusive); !marked)
            return marked.error();
        return closed;
    });
}

base::Result<ClosedSlip> closeUntaxedSlip(db::Connection &connection, qint64 id)
{
    return db::atomically(connection, [&]() -> base::Result<ClosedSlip> {
        const auto sums = sumsForClosing(connection, id, 0);
        if (!sums)
            return sums.error();
        if (const base::Status marked = markClosed(connection, id, std::nullopt); !marked)
            return marked.error();
        return ClosedSlip{sums->total, 0};
    });
}

base::Result<QStringList> slipsLeftOpen(db::Connection &connection, int most)
{
    const auto found = connection.select(
        u"SELECT 伝票番号 FROM 入出庫マスター WHERE 完了 = 0 ORDER BY ID DESC LIMIT ?"_s, {most});
    if (!found)
        return found.error();
    QStringList numbers;
    for (const QVariantList &row : found->rows)
        numbers << row.front().toString();
    return numbers;
}

base::Result<bool> holdsTaxAlone(db::Connection &connection, const SavedHeader &saved, double tax)
{
    const auto found = connection.integers(
        u"SELECT ID FROM 入出庫マスター WHERE ID = ? AND 伝票番号 = ? AND 相手先ID = ? "
        "AND (SELECT COUNT(*) FROM 入出庫サブ WHERE 入出庫サブ.ID = 入出庫マスター.ID) = 1 "
        "AND (SELECT COUNT(*) FROM 入出庫サブ WHERE 入出庫サブ.ID = 入出庫マスター.ID AND "_s +
            columns::isTax + u" AND 金額 = ?) = 1"_s,
        {saved.id, saved.number, saved.counterpart, tax});
    if (!found)
        return found.error();
    return !found->empty();
}

base::Status keepRemark(db::Connection &connection, qint64 id, const QString &text)
{
    return keepOnHeader(connection, id, u"摘要 = ?"_s, text.isEmpty() ? QVariant() : QVariant(text),
                        u"この伝票はほかのプログラムで削除されたため、備考を保存できませんでした。"_s);
}

base::Status keepInclusive(db::Connection &connection, qint64 id, bool inclusive)
{
    return keepOnHeader(
        connection, id, u"内税 = ?"_s, inclusive ? 1 : 0,
        u"この伝票はほかのプログラムで削除されたため、内税かどうかを保存できませんでした。"_s);
}

base::Status deleteSlip(db::Connection &connection, qint64 id)
{
    return db::atomically(connection, [&]() -> base::Status {
        const auto lines = db::deleteRows(connection, u"DELETE FROM 入出庫サブ WHERE ID = ?"_s, {id});
        if (!lines)
            return lines.error();
        if (const base::Status forgotten = forgetTaken(connection, id); !forgotten)
            return forgotten;
        return db::deleteRows(connection, u"DELETE FROM 入出庫マスター WHERE ID = ?"_s, {id}).status();
    });
}

base::Result<db::Rows> previousLines(db::Connection &connection, const SlipKind &kind, qint64 counterpart)
{
    return connection.select(
        u"SELECT 入出庫マスター.相手先ID, 入出庫マスター.日付, 入出庫マスター.伝票番号, 入出庫サブ.商品名, "
        "入出庫サブ.規格, 入出庫サブ.数量 , 入出庫サブ.単位, 入出庫サブ.単価, 入出庫サブ.金額 "
        "From 入出庫サブ, 入出庫マスター Where 入出庫サブ.ID = 入出庫マスター.ID AND "_s +
            columns::kind +
            u" = ? And 相手先ID =? And 商品名 <> '消費税' ORDER BY 入出庫マスター.日付 DESC, "
            "入出庫マスター.ID DESC, 入出庫サブ.明細ID"_s,
        {QString(QChar(kind.letter)), counterpart});
}

} // namespace book
