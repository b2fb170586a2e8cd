#include "book/tax_terms.h"
#include "masters/name_lists.h"
#include "masters/own_company.h"
#include "support/fresh_shop.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

QStringList namesOf(const std::vector<masters::Product> &products)
{
    QStringList names;
    for (const masters::Product &product : products)
        names << product.name + u' ' + nameOf(product.taxClass);
    return names;
}

} // namespace

class TestMasterLists : public QObject
{
    Q_OBJECT

private slots:
    void ownCompanyIsTheFirstRow()
    {
        FreshShop shop;
        const auto none = masters::ownCompany(shop.connection);
        QVERIFY(none && !none->has_value());

        shop.run(u"INSERT INTO 自社情報 (会社ID, 会社名1, 会社名2, 郵便番号, 住所1, 住所2, TEL1, TEL2, FAX, "
                 "取引銀行1, 取引銀行2, 備考) VALUES (3, 'n1', 'n2', 'z', 'a1', 'a2', 't1', 't2', 'f', "
                 "'b1', 'b2', NULL)"_s);
        shop.run(u"INSERT INTO 自社情報 (会社ID, 会社名1) VALUES (4, 'another')"_s);
        const auto found = masters::ownCompany(shop.connection);
        QVERIFY(found && found->has_value());
        const masters::OwnCompany &own = **found;
        const QStringList all{own.name1, own.name2, own.zip,   own.address1, own.address2, own.tel1,
                              own.tel2,  own.fax,   own.bank1, own.bank2,    own.memo};
        QCOMPARE(all.join(u' '), u"n1 n2 z a1 a2 t1 t2 f b1 b2 "_s);
    }

    void namesAreOfferedInOrderEachOnce()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 納品商品 (商品ID, 商品名, 税区分) VALUES (1, 'りんご', 1), (2, 'あんず', NULL), "
            "(3, NULL, 1), (4, '', 1), (5, 'りんご', 3), (6, 'ん', 9)"_s);
        shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (7, '一般'), (2, '法人')"_s);
        const auto products = masters::salesProducts(shop.connection);
        QVERIFY(products);
        QCOMPARE(namesOf(*products),
                 QStringList({u"あんず 標準"_s, u"りんご 軽減（飲食料品）"_s, u"ん 標準"_s}));
        const auto categories = masters::customerCategories(shop.connection);
        QVERIFY(categories);
        QCOMPARE(int(categories->size()), 2);
        QCOMPARE(categories->front().id, 2);
        QCOMPARE(categories->front().name, u"法人"_s);
    }

    // Nobody chooses from megabytes, as damage or ill will leave them in a file.
    void hugeNamesAreNotOffered()
    {
        FreshShop shop;
        const QString huge(5'000'000, u'あ');
        shop.run(u"INSERT INTO 納品商品 (商品ID, 商品名) VALUES (1, 'りんご'), (2, ?)"_s, {huge});
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (1, ?)"_s, {huge});
        QCOMPARE(namesOf(*masters::salesProducts(shop.connection)), QStringList{u"りんご 標準"_s});
        QVERIFY(masters::employees(shop.connection)->front().name.size() < 2000);
    }

    void everyListCanBeRead()
    {
        FreshShop shop;
        for (const auto &list : {masters::unitNames, masters::specificationNames})
            QVERIFY(list(shop.connection));
        for (const auto &list : {masters::salesProducts, masters::purchaseProducts})
            QVERIFY(list(shop.connection));
        QVERIFY(masters::employees(shop.connection));
        shop.connection.close();
        const auto closed = masters::unitNames(shop.connection);
        QVERIFY(!closed && !closed.error().text.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestMasterLists)
#include "tst_master_lists.moc"
