#pragma once

#include "db/query.h"

// The masters' lists in the order in which the editors show them and the other screens offer them.
namespace masters::lists
{

inline db::Query units() { return {.table = QStringLiteral("単位")}; }
inline db::Query specifications()
{
    return {.table = QStringLiteral("規格"), .order = {db::inJapaneseOrder(QStringLiteral("規格.規格"))}};
}
inline db::Query employees() { return {.table = QStringLiteral("社員")}; }
inline db::Query customerCategories()
{
    return {.table = QStringLiteral("登録区分"), .order = {QStringLiteral("区分ID")}};
}
inline db::Query shippingCategories()
{
    return {.table = QStringLiteral("発送区分"), .order = {QStringLiteral("発送区分ID")}};
}
inline db::Query purchaseProducts()
{
    return {.table = QStringLiteral("仕入商品"),
            .order = {db::inJapaneseOrder(QStringLiteral("仕入商品.商品名"))}};
}
inline db::Query salesProducts()
{
    return {.table = QStringLiteral("納品商品"),
            .order = {db::inJapaneseOrder(QStringLiteral("納品商品.商品名"))}};
}
inline db::Query ownCompany() { return {.table = QStringLiteral("自社情報")}; }

} // namespace masters::lists
