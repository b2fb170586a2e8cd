#pragma once

#include <QString>

// The masters' lists in the order in which the editors show them and the other screens offer them.
namespace masters::statements
{

inline QString units() { return QStringLiteral("SELECT * FROM 単位"); }
inline QString specifications() { return QStringLiteral("SELECT * FROM 規格 ORDER BY 規格.規格 ASC"); }
inline QString employees() { return QStringLiteral("SELECT * FROM 社員"); }
inline QString customerCategories()
{
    return QStringLiteral("SELECT * FROM 登録区分 ORDER BY 登録区分.区分ID ASC");
}
inline QString shippingCategories()
{
    return QStringLiteral("SELECT * FROM 発送区分 ORDER BY 発送区分.発送区分ID ASC");
}
inline QString purchaseProducts()
{
    return QStringLiteral("SELECT * FROM 仕入商品 ORDER BY 仕入商品.商品名 ASC");
}
inline QString salesProducts()
{
    return QStringLiteral("SELECT * FROM 納品商品 ORDER BY 納品商品.商品名 ASC");
}
inline QString ownCompany() { return QStringLiteral("SELECT * FROM 自社情報"); }

} // namespace masters::statements
