#include "slips/correction/slip_correction.h"

#include "book/counterpart_search.h"
#include "book/numbering.h"
#include "book/printed_slip.h"
#include "book/slip_selection.h"
#include "book/slip_store.h"
#include "book/stored_values.h"
#include "book/tax.h"
#include "db/keys.h"
#include "masters/name_lists.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "text/width.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

constexpr qsizetype longestText = 255; // characters; a column of the users' older files holds no more

const QDate earliestDate(1900, 1, 1);

base::Result<QVariant> readText(const QString &column, const QString &typed)
{
    if (typed.size() > longestText)
        return base::Error{u"%1が長すぎます。%2文字以内で入力してください。"_s.arg(column).arg(longestText)};
    return QVariant(typed.isNull() ? u""_s
                                   : typed); // never NULL: a line without a name is still one of goods
}

base::Result<QVariant> readDate(const QString &typed)
{
    const auto date = text::parseDate(typed);
    if (!date || *date < earliestDate)
        return base::Error{
            u"「%1」は日付として読めません。「2026/4/1」のように入力してください。"_s.arg(typed.left(30))};
    return QVariant(text::stored(*date));
}

base::Result<double> readNumber(const QString &column, const QString &typed)
{
    const auto number = text::parseNumber(typed);
    if (!number)
        return base::Error{u"%1には数字を入力してください。"_s.arg(column)};
    if (std::abs(*number) > book::greatestAmount)
        return base::Error{u"%1が大きすぎます。９０００億以内になるように入力してください。"_s.arg(column)};
    return *number;
}

base::Result<QVariant> readRate(const QString &typed)
{
    const auto rate = readNumber(u"消費税率"_s, typed);
    if (!rate)
        return rate.error();
    if (*rate < 0 || *rate > 100)
        return base::Error{u"消費税率は 0 から 100 までの数字で入力してください。"_s};
    return QVariant(*rate);
}

base::Result<QVariant> readCounterpart(db::Connection &connection, const book::SlipKind &kind,
                                       const QString &typed)
{
    const book::CounterpartSearch &search =
        kind.party == book::Party::Customer ? book::customerSearch : book::supplierSearch;
    const QString party = kind.party == book::Party::Customer ? u"納品先"_s : u"仕入先"_s;
    db::Recordset found(connection);
    const auto key = text::parseInteger(typed);
    if (!key && typed.trimmed().isEmpty())
        return base::Error{party + u"が入力されていません。"_s};
    const base::Status opened =
        key ? book::openCounterpart(found, search, *key) : book::searchCounterparts(found, search, typed);
    if (!opened)
        return opened.error();
    if (found.isEmpty())
        return base::Error{u"「%1」に当たる%2がありません。%2IDか、%2名キーの一部を入力してください。"_s.arg(
            typed.left(30), party)};
    if (found.count() > 1)
        return base::Error{
            u"「%1」に当たる%2が複数あります。%2IDを入力してください。"_s.arg(typed.left(30), party)};
    return QVariant(found.currentKey());
}

base::Result<QVariant> readEmployee(db::Connection &connection, const QString &typed)
{
    const auto employees = masters::employees(connection);
    if (!employees)
        return employees.error();
    const QString name = typed.trimmed();
    if (name.isEmpty())
        return base::Error{u"担当者が選択されていません。"_s};
    const auto key = text::parseInteger(name);
    std::vector<qint64> found;
    for (const masters::Entry &employee : *employees) {
        if (key ? employee.id == *key : employee.name == name)
            found.push_back(employee.id);
    }
    if (found.size() == 1)
        return QVariant(found.front());
    return base::Error{(found.empty()
                            ? u"「%1」に当たる担当者がありません。社員IDか担当者名を入力してください。"_s
                            : u"「%1」に当たる担当者が複数あります。社員IDを入力してください。"_s)
                           .arg(name.left(30))};
}

base::Result<QVariant> readHeaderCell(db::Connection &connection, const book::SlipKind &kind,
                                      const QString &column, const QString &typed)
{
    if (column == u"日付")
        return readDate(typed);
    if (column == u"消費税率")
        return readRate(typed);
    if (column == u"相手先ID")
        return readCounterpart(connection, kind, typed);
    if (column == u"社員ID")
        return readEmployee(connection, typed);
    // Another letter would make another kind of slip of it, in the books of another party.
    if (column == u"伝票番号" && !typed.startsWith(QChar(kind.letter)))
        return base::Error{u"伝票番号に誤りがあります。"_s};
    return readText(column, typed);
}

base::Result<QVariant> readLineCell(const QString &column, const QString &typed)
{
    const bool isAmount = column == u"金額";
    if (!isAmount && column != u"数量" && column != u"単価")
        return readText(column, typed);
    if (typed.trimmed().isEmpty() && !isAmount)
        return QVariant(); // a line of money has neither
    const auto number = readNumber(column, typed);
    if (!number)
        return number.error();
    const auto value = isAmount ? book::currency(*number) : number;
    return value ? base::Result<QVariant>(QVariant(*value)) : value.error();
}

std::optional<double> numberIn(const db::Recordset &lines, int row, const QString &column)
{
    return book::storedNumber(lines.index(row, lines.columnOf(column)).data(Qt::EditRole));
}

// Figures and names from elsewhere may be of hundreds of characters, which no sentence on a screen can hold.
QString figure(double amount)
{
    constexpr double longestWritten = 1e15;
    const bool isLong = std::isfinite(amount) && std::abs(amount) >= longestWritten;
    return isLong ? QString::number(amount, 'g', 6) : text::formatQuantity(amount);
}

QString shortened(const QString &name)
{
    constexpr qsizetype most = 30;
    return name.size() > most ? name.left(most) + u"…"_s : name;
}

struct Sums
{
    double goods = 0;
    double tax = 0;
    bool isTaxed = false;
    bool hasGoods = false;
};

Sums sumsOf(const std::vector<book::SlipLine> &lines)
{
    Sums sums;
    for (const book::SlipLine &line : lines) {
        (line.isTax() ? sums.tax : sums.goods) += line.amount;
        (line.isTax() ? sums.isTaxed : sums.hasGoods) = true;
    }
    return sums;
}

// Whether closing books a tax line.
bool isTaxed(const book::SlipKind &kind)
{
    return kind == book::sale || kind == book::purchase || kind == book::estimate;
}

// As the entry screens begin a slip; whether the clerk had changed that is not known any more.
bool includesTax(book::TaxClass taxClass) { return taxClass == book::TaxClass::Included; }

} // namespace

base::Status openSlips(db::Recordset &headers, const book::SlipKind &kind)
{
    const book::Condition condition = book::slipsOf({.kinds = {kind}});
    return headers.open({.table = u"入出庫マスター"_s,
                         .where = condition.sql,
                         .order = {u"ID"_s},
                         .values = condition.values});
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
    return lines.open({.columns = u"ID, 商品名, 規格, 数量, 単位, 単価, 金額, 版"_s,
                       .table = u"入出庫サブ"_s,
                       .where = u"ID = ?"_s,
                       .values = {id}});
}

void makeHeadersEditable(db::Recordset &headers, db::Connection &connection, const book::SlipKind &kind)
{
    headers.setEditable(
        {u"日付"_s, u"伝票番号"_s, u"相手先ID"_s, u"社員ID"_s, u"消費税率"_s, u"備考"_s, u"摘要"_s},
        [&connection, kind](const QString &column, const QString &typed) {
            return readHeaderCell(connection, kind, column, typed);
        });
}

void makeLinesEditable(db::Recordset &lines)
{
    lines.setEditable({u"商品名"_s, u"規格"_s, u"数量"_s, u"単位"_s, u"単価"_s, u"金額"_s}, readLineCell);
}

base::Status saveCorrections(db::Recordset &headers, db::Recordset &lines, db::Connection &connection,
                             const book::SlipKind &kind)
{
    return headers.updateWith(lines, [&] {
        return headers.isEdited(u"伝票番号"_s)
                   ? book::checkManualNumber(connection, headers.text(u"伝票番号"_s), kind.letter,
                                             headers.currentKey())
                   : base::Status();
    });
}

base::Status deleteCurrentSlip(db::Recordset &headers, db::Connection &connection)
{
    return headers.remove([&] {
        return db::deleteRows(connection, u"DELETE FROM 入出庫サブ WHERE ID = ?"_s, {headers.currentKey()})
            .status();
    });
}

base::Status deleteCurrentLine(db::Recordset &headers, db::Recordset &lines)
{
    return lines.remove([&headers] { return headers.checkAsRead(); });
}

base::Status appendEmptyLine(db::Connection &connection, const book::SlipKind &kind, qint64 id)
{
    return holdsGoods(kind) ? book::addLine(connection, id, book::GoodsLine{u""_s, u""_s, 0, u""_s, 0, 0})
                            : book::addLine(connection, id, kind, book::MoneyLine{u""_s, u""_s, 0});
}

bool holdsGoods(const book::SlipKind &kind)
{
    return kind == book::sale || kind == book::purchase || kind == book::estimate || kind == book::stocktake;
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
            numberIn(lines, row, u"金額"_s).value_or(0)};
}

std::vector<book::SlipLine> linesIn(const db::Recordset &lines)
{
    std::vector<book::SlipLine> read;
    for (int row = 0; row < lines.count(); ++row)
        read.push_back(lineIn(lines, row));
    return read;
}

QString amountRemark(const book::SlipLine &line)
{
    if (!line.quantity || !line.price)
        return {};
    const auto amount = book::lineAmount(*line.quantity, *line.price);
    if (!amount)
        return amount.error().text;
    if (*amount == line.amount)
        return {};
    return u"「%1」の数量×単価は %2 円ですが、金額は %3 円です。"_s.arg(shortened(line.product),
                                                                        figure(*amount), figure(line.amount));
}

QString taxRemark(const std::vector<book::SlipLine> &lines, double taxRate, book::TaxClass taxClass)
{
    const Sums sums = sumsOf(lines);
    // A slip of tax alone holds that of a whole period.
    if (!sums.isTaxed || !sums.hasGoods)
        return {};
    // A slip that has a tax line was closed as one whose prices do not include it.
    if (!book::taxIsAdded(taxClass, false))
        return u"この相手先の消費税は%1ですが、伝票に消費税の行（%2 円）があります。"_s.arg(nameOf(taxClass),
                                                                                            figure(sums.tax));
    const auto tax = book::taxOf(book::taxableGoods(lines, taxRate), book::Basis::Net);
    if (!tax)
        return tax.error().text;
    if (*tax == sums.tax)
        return {};
    return u"消費税の行は %1 円ですが、いまの明細（%2 円、税率 %3 %）では %4 円になります。"_s.arg(
        figure(sums.tax), figure(sums.goods), QString::number(taxRate, 'g', 6), figure(*tax));
}

bool isLeftOpen(const db::Recordset &headers)
{
    const QVariant mark = headers.value(u"完了"_s);
    return headers.currentRow() >= 0 && !mark.isNull() && mark.toInt() == 0;
}

QString leftOpenRemark(const db::Recordset &headers, const std::vector<book::SlipLine> &lines,
                       const book::SlipKind &kind, book::TaxClass taxClass)
{
    if (!isLeftOpen(headers))
        return {};
    const QString leftOpen = u"この伝票は閉じられていません。"_s;
    const Sums sums = sumsOf(lines);
    if (!isTaxed(kind) || sums.isTaxed || !book::taxIsAdded(taxClass, includesTax(taxClass)))
        return leftOpen;
    const double rate = headers.value(u"消費税率"_s).toDouble();
    const auto tax = book::taxOf(book::taxableGoods(lines, rate), book::Basis::Net);
    if (!tax || *tax == 0)
        return leftOpen;
    return leftOpen + u"消費税 %1 円が計上されていません。「伝票完了」で計上します。"_s.arg(figure(*tax));
}

base::Status closeLeftOpen(db::Connection &connection, const db::Recordset &headers,
                           const book::SlipKind &kind, book::TaxClass taxClass)
{
    const qint64 id = headers.currentKey();
    const auto closed = isTaxed(kind)
                            ? book::closeSlip(connection, id, headers.value(u"消費税率"_s).toDouble(),
                                              taxClass, includesTax(taxClass))
                            : book::closeUntaxedSlip(connection, id);
    return closed ? base::Status() : base::Status(closed.error());
}

QString totalRemark(const std::vector<book::SlipLine> &lines)
{
    const Sums sums = sumsOf(lines);
    if (!std::isfinite(sums.goods + sums.tax))
        return u"合計は計算できません。"_s;
    const QString total = u"合計 %1 円"_s.arg(figure(sums.goods + sums.tax));
    return sums.isTaxed ? total + u"（うち消費税 %1 円）"_s.arg(figure(sums.tax)) : total;
}

} // namespace slips
