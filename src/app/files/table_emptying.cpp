#include "app/files/table_emptying.h"

#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace app
{

namespace
{

const QString everything = u"すべて選択"_s;

const struct Emptying
{
    QString item;
    QString statement;
    QString message;
} emptyings[] = {
    {u"仕入先情報"_s, u"DELETE FROM 仕入先"_s, u"仕入先情報を削除しました。"_s},
    {u"納品先情報"_s, u"DELETE FROM 納品先"_s, u"納品先情報を削除しました。"_s},
    {u"納品商品"_s, u"DELETE FROM 納品商品"_s, u"商品を削除しました。"_s},
    {u"仕入商品"_s, u"DELETE FROM 仕入商品"_s, u"商品を削除しました。"_s},
    {u"商品規格"_s, u"DELETE FROM 規格"_s, u"規格を削除しました。"_s},
    {u"商品単位"_s, u"DELETE FROM 単位"_s, u"単位を削除しました。"_s},
    {u"登録区分"_s, u"DELETE FROM 登録区分"_s, u"登録区分を削除しました。"_s},
    {u"自社情報"_s, u"DELETE FROM 自社情報"_s, u"自社情報を削除しました。"_s},
    {u"社員"_s, u"DELETE FROM 社員"_s, u"社員を削除しました。"_s},
    {u"発送伝票"_s, u"DELETE FROM 発送マスター"_s, u"発送マスターを削除しました。"_s},
};

// Only along with everything else: the slips and what was taken for them, the shipping categories and who
// was addressed, so that no table keeps a row.
const std::pair<QString, QString> furtherStatements[] = {
    {u"伝票"_s, u"DELETE FROM 入出庫マスター"_s},     {u"伝票の明細"_s, u"DELETE FROM 入出庫サブ"_s},
    {u"発送区分"_s, u"DELETE FROM 発送区分"_s},       {u"入金の取込記録"_s, u"DELETE FROM 入金取込"_s},
    {u"宛名印刷の記録"_s, u"DELETE FROM 宛名印刷"_s},
};

// With what each of them deletes.
std::vector<std::pair<QString, QString>> statementsOf(const QString &item)
{
    std::vector<std::pair<QString, QString>> statements;
    for (const Emptying &emptying : emptyings) {
        if (item == everything || item == emptying.item)
            statements.emplace_back(emptying.item, emptying.statement);
    }
    if (item == everything)
        statements.insert(statements.end(), std::begin(furtherStatements), std::end(furtherStatements));
    return statements;
}

QString messageOf(const QString &item)
{
    const auto *found = std::find_if(std::begin(emptyings), std::end(emptyings),
                                     [&item](const Emptying &emptying) { return emptying.item == item; });
    return found == std::end(emptyings) ? u"すべて選択を削除しました。"_s : found->message;
}

} // namespace

QStringList emptyingItems()
{
    QStringList items = {everything};
    for (const Emptying &emptying : emptyings)
        items << emptying.item;
    return items;
}

base::Result<QString> rowsToDelete(db::Connection &connection, const QString &item)
{
    QStringList lines;
    for (const auto &[what, statement] : statementsOf(item)) {
        const auto rows = connection.select(u"SELECT count(*) "_s + statement.sliced(u"DELETE "_s.size()));
        if (!rows)
            return rows.error();
        if (const qint64 count = rows->rows.front().front().toLongLong(); count > 0)
            lines << u"%1：%2 行"_s.arg(what).arg(count);
    }
    return lines.isEmpty() ? u"行はありません。"_s : lines.join(u'\n');
}

base::Result<QString> emptyTables(db::Connection &connection, const QString &item)
{
    const auto statements = statementsOf(item);
    if (statements.empty())
        return base::Error{u"削除するテーブルを選択してください。"_s};
    return db::atomically(connection, [&]() -> base::Result<QString> {
        for (const auto &[what, statement] : statements) {
            if (const auto done = db::deleteRows(connection, statement); !done)
                return done.error();
        }
        return messageOf(item);
    });
}

} // namespace app
