#include "masters/master_definitions.h"

#include "book/tax_terms.h"
#include "masters/list_queries.h"

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

// What goods are taxed as.
MasterField taxClassField()
{
    QStringList names;
    for (int taxClass = 0; taxClass <= static_cast<int>(book::GoodsTax::OutOfScope); ++taxClass)
        names << nameOf(static_cast<book::GoodsTax>(taxClass));
    return {u"cboTaxClass"_s, u"税区分"_s, u"税区分(&X)"_s, names};
}

} // namespace

const MasterDefinition &definitionOf(Master master)
{
    static const QString deleteByK = u"削除(&K)"_s;
    // In the order of Master.
    static const MasterDefinition definitions[] = {
        {.screen = u"frmTani"_s,
         .caption = u"商品単位登録"_s,
         .list = lists::units(),
         .fields = {{u"txtID"_s, u"単位ID"_s, u"単位ID"_s}, {u"txtName"_s, u"単位"_s, u"数量単位(&K)"_s}}},
        {.screen = u"frmKikaku"_s,
         .caption = u"商品規格登録"_s,
         .list = lists::specifications(),
         .fields = {{u"txtID"_s, u"規格ID"_s, u"規格ID"_s}, {u"txtName"_s, u"規格"_s, u"商品規格(&K)"_s}}},
        {.screen = u"frmShain"_s,
         .caption = u"社員登録"_s,
         .list = lists::employees(),
         .fields = {{u"txtID"_s, u"社員ID"_s, u"社員ID"_s},
                    {u"txtName"_s, u"社員名"_s, u"社員名(&K)"_s},
                    {u"txtTel"_s, u"内線番号"_s, u"内線番号(&F)"_s}},
         .deleteCaption = deleteByK},
        {.screen = u"frmKubun"_s,
         .caption = u"納品先区分登録"_s,
         .list = lists::customerCategories(),
         .fields = {{u"txtID"_s, u"区分ID"_s, u"区分ID"_s},
                    {u"txtName"_s, u"区分名"_s, u"納品先区分名(&K)"_s}},
         .kind = EditorKind::Categories,
         .hasReturnButton = true,
         .blamesConnection = true},
        // The doubled word is the screen's name.
        {.screen = u"frmInvKubun"_s,
         .caption = u"発送区分区分登録"_s,
         .list = lists::shippingCategories(),
         .fields = {{u"txtID"_s, u"発送区分ID"_s, u"発送区分ID"_s},
                    {u"txtName"_s, u"発送区分名"_s, u"区分名(&K)"_s}},
         .kind = EditorKind::Categories},
        {.screen = u"frmInShohin"_s,
         .caption = u"仕入商品登録"_s,
         .list = lists::purchaseProducts(),
         .fields = {{u"txtID"_s, u"商品ID"_s, u"商品ID"_s},
                    {u"txtShohin"_s, u"商品名"_s, u"仕入商品名(&K)"_s},
                    taxClassField()},
         .deleteCaption = deleteByK},
        {.screen = u"frmOutShohin"_s,
         .caption = u"納品　商品登録"_s,
         .list = lists::salesProducts(),
         .fields = {{u"txtID"_s, u"商品ID"_s, u"商品ID"_s},
                    {u"txtShohin"_s, u"商品名"_s, u"納品　商品名(&K)"_s},
                    taxClassField()}},
        {.screen = u"frmMyco"_s,
         .caption = u"自社情報登録"_s,
         .list = lists::ownCompany(),
         .fields = {},
         .kind = EditorKind::OwnCompany},
    };
    return definitions[static_cast<std::size_t>(master)];
}

} // namespace masters
