#include "app/files/table_emptying.h"

#include "db/connection.h"
#include "db/keys.h"
#include "db/transaction.h"

#include <algorithm>

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

// Only along with everything else: the slips, and the shipping categories, so that no table keeps a row.
const QString furtherStatements[] = {
    u"DELETE FROM 入出庫マスター"_s,
    u"DELETE FROM 入出庫サブ"_s,
    u"DELETE FROM 発送区分"_s,
};

} // namespace

QStringList emptyingItems()
{
    QStringList items = {everything};
    for (const Emptying &emptying : emptyings)
        items << emptying.item;
    return items;
}

base::Result<QString> emptyTables(db::Connection &connection, const QString &item)
{
    QStringList statements;
    QString message = u"すべて選択を削除しました。"_s;
    for (const Emptying &emptying : emptyings) {
        if (item != everything && item != emptying.item)
            continue;
        statements << emptying.statement;
        if (item != everything)
            message = emptying.message;
    }
    if (item == everything)
        std::copy(std::begin(furtherStatements), std::end(furtherStatements), std::back_inserter(statements));
    if (statements.isEmpty())
        return base::Error{u"削除するテーブルを選択してください。"_s};

    return db::atomically(connection, [&]() -> base::Result<QString> {
        for (const QString &statement : statements) {
            if (const auto done = db::deleteRows(connection, statement); !done)
                return done.error();
        }
        return message;
    });
}

} // namespace app
