#include "slips/correction/correction_cells.h"

#include "book/counterpart_search.h"
#include "book/numbering.h"
#include "book/tax.h"
#include "book/tax_terms.h"
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
            u"「%1」は日付として読めません。「2026/04/01」のように入力してください。"_s.arg(typed.left(30))};
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

// By one of its names or by the number that the file holds; nothing for the slip's own.
base::Result<QVariant> readTaxClass(const QString &typed)
{
    const QString word = text::toHalfWidth(typed.trimmed());
    if (word.isEmpty())
        return QVariant();
    const QStringList names = shortTaxNames();
    for (int taxClass = 0; taxClass < names.size(); ++taxClass) {
        const QString inFull = text::toHalfWidth(nameOf(static_cast<book::GoodsTax>(taxClass)));
        if (word == QString::number(taxClass) || word == names.at(taxClass) || word == inFull)
            return QVariant(taxClass);
    }
    return base::Error{u"税区分の欄には「%1」のどれかを入力してください。"_s.arg(names.join(u"」「"_s))};
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

// "内税" or "外税", by the word or by the number that the file holds; nothing where nobody knows.
base::Result<QVariant> readInclusive(const QString &typed)
{
    const QString word = text::toHalfWidth(typed.trimmed());
    if (word.isEmpty())
        return QVariant();
    if (word == u"内税" || word == u"税込" || word == u"1")
        return QVariant(1);
    if (word == u"外税" || word == u"税抜" || word == u"0")
        return QVariant(0);
    return base::Error{u"内税の欄には「内税」か「外税」を入力してください。"_s};
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
    if (column == u"内税")
        return readInclusive(typed);
    if (column == u"相手先ID")
        return readCounterpart(connection, kind, typed);
    if (column == u"社員ID")
        return readEmployee(connection, typed);
    // Another letter would make another kind of slip of it, in the books of another party.
    if (column == u"伝票番号" && !typed.startsWith(QChar(kind.letter)))
        return base::Error{book::wrongNumber()};
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

} // namespace

void makeHeadersEditable(db::Recordset &headers, db::Connection &connection, const book::SlipKind &kind)
{
    headers.setEditable({u"日付"_s, u"伝票番号"_s, u"相手先ID"_s, u"社員ID"_s, u"消費税率"_s, u"内税"_s,
                         u"備考"_s, u"摘要"_s},
                        [&connection, kind](const QString &column, const QString &typed) {
                            return readHeaderCell(connection, kind, column, typed);
                        });
}

QStringList shortTaxNames() { return {u"標準"_s, u"軽減"_s, u"新聞"_s, u"非課税"_s, u"対象外"_s}; }

void makeTaxedLinesEditable(db::Recordset &lines, const RateOf &rateOf)
{
    const auto read = [&lines, rateOf](const QString &column,
                                       const QString &typed) -> base::Result<QVariant> {
        if (column == u"税率")
            return typed.trimmed().isEmpty() ? base::Result<QVariant>(QVariant()) : readRate(typed);
        if (column != u"税区分")
            return readLineCell(column, typed);
        const auto taxClass = readTaxClass(typed);
        if (!taxClass)
            return taxClass;
        // A class without its rate would be taxed at the slip's.
        const auto goods = book::goodsTaxFrom(*taxClass);
        const auto rate = goods ? rateOf(*goods) : std::nullopt;
        if (goods && !rate)
            return base::Error{u"この伝票の日付には、軽減税率がありません。"_s};
        lines.setValue(u"税率"_s, rate ? QVariant(*rate) : QVariant());
        return taxClass;
    };
    lines.setEditable(
        {u"商品名"_s, u"規格"_s, u"数量"_s, u"単位"_s, u"単価"_s, u"金額"_s, u"税区分"_s, u"税率"_s}, read);
}

void makeLinesEditable(db::Recordset &lines)
{
    lines.setEditable({u"商品名"_s, u"規格"_s, u"数量"_s, u"単位"_s, u"単価"_s, u"金額"_s}, readLineCell);
}

} // namespace slips
