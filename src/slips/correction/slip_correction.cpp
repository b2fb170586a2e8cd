#include "slips/correction/slip_correction.h"

#include "book/numbering.h"
#include "book/slip_selection.h"
#include "book/slip_store.h"
#include "book/stored_values.h"
#include "book/taken_payments.h"
#include "db/keys.h"
#include "db/transaction.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

std::optional<double> numberIn(const db::Recordset &lines, int row, const QString &column)
{
    return book::storedNumber(lines.index(row, lines.columnOf(column)).data(Qt::EditRole));
}

} // namespace

base::Status openSlips(db::Recordset &headers, const book::SlipKind &kind)
{
    const book::Condition condition = book::slipsOf({.kinds = {kind}});
    return headers.open({.table = u"入出庫マスター"_s,
                         .where = condition.sql,
                         .order = {u"ID"_s},
                         .values = condition.values},
                        db::KeySet::End::Last);
}

base::Result<bool> openSlipsOf(db::Recordset &headers, const book::SlipKind &kind,
                               book::CounterpartKey counterpart)
{
    const book::Condition condition = book::slipsOf({.kinds = {kind}, .counterpart = counterpart});
    return headers.openIfAny({.table = u"入出庫マスター"_s,
                              .where = condition.sql,
                              .order = {u"ID"_s},
                              .values = condition.values});
}

base::Status openLines(db::Recordset &lines, qint64 id)
{
    return lines.open({.columns = u"ID, 商品名, 規格, 数量, 単位, 単価, 金額, 税区分, 税率, 版"_s,
                       .table = u"入出庫サブ"_s,
                       .where = u"ID = ?"_s,
                       .values = {id}});
}

base::Status checkNumber(const db::Recordset &headers, db::Connection &connection, const book::SlipKind &kind)
{
    return headers.isEdited(u"伝票番号"_s) ? book::checkManualNumber(connection, headers.text(u"伝票番号"_s),
                                                                     kind.letter, headers.currentKey())
                                           : base::Status();
}

base::Status checkAsRead(const db::Recordset &headers, const db::Recordset &lines)
{
    const base::Status same = headers.checkAsRead();
    return same && lines.isDirty() ? lines.checkAsRead() : same;
}

base::Status saveCorrections(db::Recordset &headers, db::Recordset &lines, db::Connection &connection,
                             const book::SlipKind &kind, const db::Recordset::Step &check)
{
    if (!headers.isDirty() && !lines.isDirty())
        return {};
    return headers.updateWith(lines, [&]() -> base::Status {
        const base::Status same = check ? check() : base::Status();
        return same ? checkNumber(headers, connection, kind) : same;
    });
}

base::Status saveLine(db::Recordset &lines, const db::Recordset::Step &check) { return lines.update(check); }

base::Status deleteCurrentSlip(db::Recordset &headers, db::Connection &connection)
{
    return headers.remove([&]() -> base::Status {
        const qint64 id = headers.currentKey();
        const auto lines = db::deleteRows(connection, u"DELETE FROM 入出庫サブ WHERE ID = ?"_s, {id});
        return lines ? book::forgetTaken(connection, id) : lines.error();
    });
}

base::Status deleteCurrentLine(db::Recordset &headers, db::Recordset &lines)
{
    return lines.remove([&headers] { return headers.checkAsRead(); });
}

base::Status beginLine(db::Recordset &lines, const book::SlipKind &kind, qint64 id)
{
    // As the entry screens store lines: an empty text, never NULL, which would be no goods.
    QVariantMap values{{u"ID"_s, id}, {u"商品名"_s, u""_s}, {u"規格"_s, u""_s}, {u"金額"_s, 0.0}};
    if (holdsGoods(kind) || kind == book::payment)
        values.insert(u"単位"_s, u""_s);
    if (holdsGoods(kind)) {
        values.insert(u"数量"_s, 0.0);
        values.insert(u"単価"_s, 0.0);
    }
    return lines.beginRow(values);
}

bool holdsGoods(const book::SlipKind &kind)
{
    return kind == book::sale || kind == book::purchase || kind == book::estimate || kind == book::stocktake;
}

bool isTaxed(const book::SlipKind &kind)
{
    return kind == book::sale || kind == book::purchase || kind == book::estimate;
}

book::SlipLine lineIn(const db::Recordset &lines, int row)
{
    const auto textIn = [&](const QString &column) {
        return lines.index(row, lines.columnOf(column)).data(Qt::EditRole).toString();
    };
    return {textIn(u"商品名"_s),
            textIn(u"規格"_s),
            numberIn(lines, row, u"数量"_s),
            textIn(u"単位"_s),
            numberIn(lines, row, u"単価"_s),
            numberIn(lines, row, u"金額"_s).value_or(0),
            book::goodsTaxFrom(lines.index(row, lines.columnOf(u"税区分"_s)).data(Qt::EditRole)),
            numberIn(lines, row, u"税率"_s)};
}

std::vector<book::SlipLine> linesIn(const db::Recordset &lines)
{
    std::vector<book::SlipLine> read;
    for (int row = 0; row < lines.count(); ++row)
        read.push_back(lineIn(lines, row));
    return read;
}

bool isLeftOpen(const db::Recordset &headers)
{
    const QVariant mark = headers.value(u"完了"_s);
    return headers.currentRow() >= 0 && !mark.isNull() && mark.toInt() == 0;
}

bool isClosed(const db::Recordset &headers) { return headers.value(u"完了"_s).toInt() == 1; }

std::optional<bool> inclusiveIn(const db::Recordset &headers)
{
    const QVariant mark = headers.value(u"内税"_s);
    return mark.isNull() ? std::nullopt : std::optional(mark.toInt() == 1);
}

bool includesTax(const db::Recordset &headers, book::TaxClass taxClass)
{
    return inclusiveIn(headers).value_or(taxClass == book::TaxClass::Included);
}

base::Status closeLeftOpen(db::Connection &connection, const db::Recordset &headers,
                           const book::SlipKind &kind, book::TaxClass taxClass,
                           const db::Recordset::Step &check)
{
    return db::atomically(connection, [&]() -> base::Status {
        if (const base::Status same = check(); !same)
            return same;
        const qint64 id = headers.currentKey();
        const auto closed = isTaxed(kind)
                                ? book::closeSlip(connection, id, headers.value(u"消費税率"_s).toDouble(),
                                                  taxClass, includesTax(headers, taxClass))
                                : book::closeUntaxedSlip(connection, id);
        return closed.status();
    });
}

} // namespace slips
