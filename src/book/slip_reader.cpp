#include "book/slip_reader.h"

#include "book/counterpart_name.h"
#include "book/slip_columns.h"
#include "book/stored_values.h"
#include "book/tax.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

QString counterpartStatement(Party party)
{
    return party == Party::Customer ? u"SELECT コード, 納品先名1 AS 名1, 納品先名2 AS 名2, 郵便番号, 住所1, "
                                      u"住所2, TEL1, FAX, 消費税区分, 敬称 "
                                      "FROM 納品先 WHERE 納品先ID = ?"_s
                                    : u"SELECT コード, 仕入先名1 AS 名1, 仕入先名2 AS 名2, 郵便番号, 住所1, "
                                      u"住所2, TEL1, FAX, 消費税区分, NULL AS 敬称 "
                                      "FROM 仕入先 WHERE 仕入先ID = ?"_s;
}

base::Status readHeader(db::Connection &connection, qint64 id, Slip &slip)
{
    const auto header =
        connection.select(u"SELECT 日付, 伝票番号, 相手先ID, 消費税率, 備考, 社員名 FROM 入出庫マスター "
                          "LEFT JOIN 社員 ON 社員.社員ID = 入出庫マスター.社員ID WHERE ID = ?"_s,
                          {id});
    if (!header)
        return header.error();
    if (header->isEmpty())
        return base::Error{u"この伝票はほかのプログラムで削除されたため、表示できませんでした。"_s};
    slip.id = id;
    slip.date = QDate::fromString(header->value(0, u"日付"_s).toString(), u"yyyy-MM-dd"_s);
    slip.number = header->value(0, u"伝票番号"_s).toString();
    slip.counterpart = header->value(0, u"相手先ID"_s).toLongLong();
    slip.taxRate = header->value(0, u"消費税率"_s).toDouble();
    slip.memo = header->value(0, u"備考"_s).toString();
    slip.employeeName = header->value(0, u"社員名"_s).toString();
    return {};
}

base::Status readCounterpart(db::Connection &connection, Party party, Slip &slip)
{
    const auto found = connection.select(counterpartStatement(party), {slip.counterpart});
    if (!found)
        return found.error();
    if (found->isEmpty()) {
        slip.name1 = unknownCounterpartName(slip.counterpart);
        return {};
    }
    const auto text = [&](const QString &column) { return found->value(0, column).toString(); };
    slip.code = text(u"コード"_s);
    slip.name1 = text(u"名1"_s);
    slip.name2 = text(u"名2"_s);
    slip.zip = text(u"郵便番号"_s);
    slip.address1 = text(u"住所1"_s);
    slip.address2 = text(u"住所2"_s);
    slip.tel = text(u"TEL1"_s);
    slip.fax = text(u"FAX"_s);
    if (const QString chosen = text(u"敬称"_s); !chosen.isEmpty())
        slip.honorific = chosen == QStringView(noHonorific) ? QString() : chosen;
    slip.taxClass = taxClassFrom(text(u"消費税区分"_s));
    return {};
}

base::Status readLines(db::Connection &connection, Slip &slip)
{
    const auto lines = connection.select(u"SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額, "_s +
                                             columns::taxClass + u", "_s + columns::ownTaxRate +
                                             u" FROM 入出庫サブ WHERE ID = ? ORDER BY "_s + columns::lineKey,
                                         {slip.id});
    if (!lines)
        return lines.error();
    for (const QVariantList &row : lines->rows) {
        slip.lines.push_back({row.at(1).toString(), row.at(2).toString(), storedNumber(row.at(3)),
                              row.at(4).toString(), storedNumber(row.at(5)),
                              storedNumber(row.at(6)).value_or(0), goodsTaxFrom(row.at(7)),
                              storedNumber(row.at(8))});
    }
    return {};
}

} // namespace

bool SlipLine::operator==(const SlipLine &other) const
{
    return product == other.product && specification == other.specification &&
           isSameNumber(quantity, other.quantity) && unit == other.unit && isSameNumber(price, other.price) &&
           isSameNumber(amount, other.amount) && taxClass == other.taxClass &&
           isSameNumber(taxRate, other.taxRate);
}

base::Result<Slip> readSlip(db::Connection &connection, qint64 id, Party party)
{
    Slip slip;
    if (const base::Status header = readHeader(connection, id, slip); !header)
        return header.error();
    if (const base::Status counterpart = readCounterpart(connection, party, slip); !counterpart)
        return counterpart.error();
    if (const base::Status lines = readLines(connection, slip); !lines)
        return lines.error();
    return slip;
}

} // namespace book
