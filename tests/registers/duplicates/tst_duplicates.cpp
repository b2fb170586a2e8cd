#include "book/generated_book.h"
#include "book/movement_sums.h"
#include "registers/duplicates/customer_merge.h"
#include "registers/duplicates/distinct_pairs.h"
#include "registers/duplicates/duplicate_customers.h"
#include "registers/duplicates/person_folding.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace registers;

namespace
{

// What the customers owe, by 納品先ID, in ten-thousandths of a yen.
QHash<qint64, qint64> balances(FreshShop &shop)
{
    QHash<qint64, base::ExactSum> sums;
    const auto added =
        book::sumMovements(shop.connection, {.kinds = book::balanceKindsOf(book::Party::Customer)},
                           {.byCounterpart = true}, base::unwatched, [&](const book::MovementSum &part) {
                               sums[part.counterpart.value_or(0)].add(part.inBalance());
                           });
    if (!added)
        qFatal("no sums");
    QHash<qint64, qint64> balances;
    for (auto sum = sums.cbegin(); sum != sums.cend(); ++sum)
        balances[sum.key()] = std::llround(sum->value() * 10'000);
    return balances;
}

// Everything in the file that a merge may touch.
QStringList everything(FreshShop &shop)
{
    return shop.rows(u"SELECT * FROM 納品先 ORDER BY 納品先ID"_s) +
           shop.rows(u"SELECT ID, 相手先ID, 版 FROM 入出庫マスター ORDER BY ID"_s) +
           shop.rows(u"SELECT 発送ID, 納品先ID, 依頼主ID, 版 FROM 発送マスター ORDER BY 発送ID"_s) +
           shop.rows(u"SELECT 納品先ID, 版 FROM 宛名印刷 ORDER BY 印刷ID"_s);
}

void addCustomers(FreshShop &shop)
{
    shop.run(
        u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, 納品先名2, フリガナ, 住所1, TEL1, メモ, "
        u"消費税区分, 版) VALUES "
        "(1, NULL, '㈱山田商店', NULL, 'ﾔﾏﾀﾞ', '港区芝公園4-2-8', '03-1234-5678', '古い', 0, 3), "
        "(2, 'B2', '株式会社　山田商店', '本店', 'ﾔﾏﾀﾞ', '東京都港区芝公園４丁目２番８号', NULL, '新しい', 0, 4)"_s);
}

} // namespace

/// Probable duplicates among customers, and two of them made one: what is owed stays what it was.
class TestDuplicates : public QObject
{
    Q_OBJECT

private slots:
    void foldsAsPeopleWrite_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        QTest::addColumn<bool>("isSame");
        const auto row = [](const char *kind, const QString &one, const QString &other, bool isSame = true) {
            QTest::addRow("%s %s", kind, qPrintable(one))
                << QString::fromLatin1(kind) << one << other << isSame;
        };
        row("name", u"㈱髙橋商店"_s, u"株式会社　高橋商店"_s);
        row("name", u"（有）ﾔﾏﾀﾞ電機"_s, u"有限会社ヤマダ電機"_s);
        row("name", u"渡邉　一郎 様"_s, u"渡辺一郎"_s);
        row("name", u"やまだ花店"_s, u"ヤマダ花店"_s);
        row("name", u"㈱山田"_s, u"㈲山田"_s, false);
        row("name", u"渡部一郎"_s, u"渡辺一郎"_s, false);
        row("address", u"東京都港区芝公園４丁目２番８号"_s, u"港区芝公園4-2-8"_s);
        row("address", u"港区芝公園四丁目２－８　角ビル３０１"_s, u"東京都 港区芝公園４ー２−８"_s);
        row("address", u"杉並区阿佐ヶ谷南１丁目２番地の３"_s, u"東京都杉並区阿佐ケ谷南1-2-3"_s);
        row("address", u"札幌市中央区北一条西２丁目３"_s, u"北海道札幌市中央区北１条西2-3"_s);
        row("address", u"札幌市中央区北1条西2-3"_s, u"札幌市中央区北1条西2-4"_s, false);
        row("address", u"神奈川県鎌倉市大字岩瀬12番地"_s, u"鎌倉市岩瀬12"_s);
        row("address", u"港区芝公園4-2-8"_s, u"港区芝公園4-2-9"_s, false);
        row("address", u"港区芝公園4-2"_s, u"港区芝公園42"_s, false);
        row("phone", u"０３（１２３４）５６７８"_s, u"03-1234-5678"_s);
        row("phone", u"+81 3-1234-5678"_s, u"0312345678"_s);
        row("phone", u"03-1234-5678"_s, u"03-1234-5679"_s, false);
    }
    void foldsAsPeopleWrite()
    {
        QFETCH(QString, kind);
        QFETCH(QString, one);
        QFETCH(QString, other);
        QFETCH(bool, isSame);
        const auto fold = kind == u"name"_s ? foldedPerson : kind == u"phone"_s ? foldedPhone : foldedAddress;
        QVERIFY(!fold(one).isEmpty());
        QVERIFY2((fold(one) == fold(other)) == isSame, qPrintable(fold(one) + u'|' + fold(other)));
    }

    void findsGroups()
    {
        FreshShop shop;
        addCustomers(shop);
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, 納品先名1, 住所1, TEL1, TEL2) VALUES "
            "(3, '佐藤', '港区芝1-1', '0', '03(1234)5678'), (4, '鈴木', NULL, '0', NULL), "
            "(5, '鈴木', NULL, '0', NULL), (6, NULL, '港区芝公園4-2-8', NULL, NULL), "
            "(7, '田中', NULL, '045-111-2222', NULL), (8, '田中工業', NULL, '０４５１１１２２２２', NULL)"_s);
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名2, 住所1) VALUES (9, '役所', '総務課', "
                 u"'港区2-2'), "
                 "(10, '役所', '経理課', '港区2-2'), (11, '役　所', '総務課', '港区２丁目２')"_s);
        shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (1, 'O1', 2), (2, 'I2', 8)"_s);
        const auto groups = duplicateCustomers(shop.connection, base::unwatched);
        QVERIFY(groups);
        QStringList found;
        for (const DuplicateGroup &group : *groups) {
            QStringList ids;
            for (const ProbableDuplicate &customer : group.customers)
                ids << QString::number(customer.id);
            found << ids.join(u' ') + (group.samePhone ? u" 電話"_s : u""_s) +
                         (group.sameName ? u" 名前"_s : u""_s);
        }
        // 2 has a slip; a number that nobody has, and no address, join nobody.
        QCOMPARE(found, QStringList({u"2 1 3 電話 名前"_s, u"7 8 電話"_s, u"9 11 名前"_s}));
        QVERIFY(!duplicateCustomers(shop.connection, [](qint64, qint64) { return false; }));
    }

    // Merged one after the other until one customer of the generated book is left of each class of tax.
    void keepsWhatIsOwed()
    {
        FreshShop shop;
        GeneratedBook::writeTo(shop);
        QHash<qint64, qint64> before = balances(shop);
        const QStringList lines = shop.rows(u"SELECT * FROM 入出庫サブ ORDER BY 明細ID"_s);
        const QString ofSuppliers =
            u"SELECT ID, 相手先ID FROM 入出庫マスター WHERE 種別 IN ('I', 'P', 'A', 'T') ORDER BY ID"_s;
        const QStringList suppliersBefore = shop.rows(ofSuppliers);
        int merged = 0;
        for (const qint64 gone : {4, 5, 6, 7, 8, 9, 10, 12}) {
            const qint64 kept = gone % 3 == 0 ? 12 : gone % 3;
            if (kept == gone)
                continue;
            const auto plan = planMerge(shop.connection, kept, gone);
            QVERIFY(plan && plan->refusal.isEmpty());
            QVERIFY(mergeCustomers(shop.connection, *plan, shop.now.date()));
            before[kept] += before.take(gone);
            QCOMPARE(balances(shop), before);
            merged += plan->slips > 0 ? 1 : 0;
        }
        QCOMPARE(merged, 7);
        QCOMPARE(shop.rows(u"SELECT 納品先ID FROM 納品先 ORDER BY 納品先ID"_s),
                 QStringList({u"1"_s, u"2"_s, u"12"_s}));
        QCOMPARE(shop.rows(u"SELECT * FROM 入出庫サブ ORDER BY 明細ID"_s), lines);
        QCOMPARE(shop.rows(ofSuppliers), suppliersBefore);
    }

    void fillsAsShown()
    {
        FreshShop shop;
        addCustomers(shop);
        shop.run(
            u"INSERT INTO 発送マスター (発送ID, 納品先ID, 依頼主名1, 依頼主名2, 依頼主住所1, 届先名1, "
            u"届先名2, 届先住所1) VALUES "
            "(1, 2, 'x', NULL, 'x', NULL, NULL, NULL), "
            "(2, NULL, '佐藤', NULL, 'y', '株式会社　山田商店', '本店', '東京都港区芝公園４丁目２番８号'), "
            "(3, NULL, '株式会社　山田商店', '本店', '東京都港区芝公園４丁目２番８号', '佐藤', NULL, 'y'), "
            "(4, NULL, '株式会社　山田商店', '支店', '東京都港区芝公園４丁目２番８号', NULL, NULL, NULL), "
            "(5, 9, '株式会社　山田商店', '本店', '東京都港区芝公園４丁目２番８号', NULL, NULL, NULL), "
            "(6, NULL, NULL, NULL, NULL, NULL, NULL, NULL), (7, 9, 'x', NULL, 'x', NULL, NULL, NULL)"_s);
        shop.run(u"UPDATE 発送マスター SET 依頼主ID = 2 WHERE 発送ID = 7"_s);
        shop.run(u"INSERT INTO 宛名印刷 (印刷ID, 納品先ID) VALUES (1, 2), (2, 9)"_s);
        shop.run(u"INSERT INTO 発行控 (発行ID, 伝票種別, 相手先ID) VALUES (1, 'O', 2), (2, 'I', 2)"_s);
        const auto plan = planMerge(shop.connection, 1, 2);
        QVERIFY(plan);
        QCOMPARE(plan->shipments, 5);
        QStringList filled;
        QStringList lost;
        for (const MergedField &field : plan->fields) {
            if (field.isFilled())
                filled << field.column;
            if (field.isLost())
                lost << field.column;
        }
        QCOMPARE(filled.join(u' '), u"コード 納品先名2"_s);
        QCOMPARE(lost.join(u' '), u"納品先名1 住所1 メモ"_s);
        QVERIFY(mergeCustomers(shop.connection, *plan, shop.now.date()));
        QCOMPARE(
            shop.rows(
                u"SELECT 納品先ID, コード, 納品先名1, 納品先名2, TEL1, メモ, 納品先名キー, 更新日 FROM 納品先"_s),
            QStringList{
                u"1|B2|㈱山田商店|本店|03-1234-5678|古い|㈱山田商店本店 B2 03-1234-5678 ﾔﾏﾀﾞ|2026-04-01"_s});
        QCOMPARE(shop.rows(u"SELECT 納品先ID, 依頼主ID FROM 発送マスター ORDER BY 発送ID"_s).join(u' '),
                 u"1|- 1|- -|1 -|- 9|1 -|- 9|1"_s);
        QCOMPARE(shop.rows(u"SELECT 納品先ID FROM 宛名印刷 ORDER BY 印刷ID"_s).join(u' '), u"1 9"_s);
        QCOMPARE(shop.rows(u"SELECT 相手先ID FROM 発行控 ORDER BY 発行ID"_s).join(u' '), u"1 2"_s);
    }

    void noPresetWinsOverWhatWasChosen_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QVariant>("kept");
        QTest::addColumn<QVariant>("gone");
        QTest::addColumn<QString>("slips"); // of whom there are some: "1", "2"
        QTest::addColumn<QVariant>("after");
        const QVariant none;
        QTest::newRow("closing day") << u"締め日"_s << QVariant(0) << QVariant(20) << u"12"_s << QVariant(20);
        QTest::newRow("no closing day") << u"締め日"_s << none << QVariant(0) << u"12"_s << QVariant(0);
        QTest::newRow("its own") << u"締め日"_s << QVariant(15) << QVariant(20) << u"2"_s << QVariant(15);
        QTest::newRow("end of the month")
            << u"締め日"_s << QVariant(20) << QVariant(0) << u"2"_s << QVariant(20);
        QTest::newRow("ledger") << u"元帳出力"_s << QVariant(0) << QVariant(1) << u""_s << QVariant(1);
        // The class by which slips were taxed stays theirs.
        QTest::newRow("class, nobody's slips")
            << u"消費税区分"_s << QVariant(0) << QVariant(2) << u""_s << QVariant(2);
        QTest::newRow("class with its slips")
            << u"消費税区分"_s << none << QVariant(1) << u"2"_s << QVariant(1);
        QTest::newRow("no class, but slips") << u"消費税区分"_s << none << QVariant(1) << u"1"_s << none;
    }
    void noPresetWinsOverWhatWasChosen()
    {
        QFETCH(QString, column);
        QFETCH(QVariant, kept);
        QFETCH(QVariant, gone);
        QFETCH(QString, slips);
        FreshShop shop;
        addCustomers(shop);
        shop.run(u"UPDATE 納品先 SET "_s + column + u" = ? WHERE 納品先ID = 1"_s, {kept});
        shop.run(u"UPDATE 納品先 SET "_s + column + u" = ? WHERE 納品先ID = 2"_s, {gone});
        for (const QChar customer : slips)
            shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (?, 'O', ?)"_s,
                     {customer.digitValue(), customer.digitValue()});
        const auto plan = planMerge(shop.connection, 1, 2);
        QVERIFY2(plan && plan->refusal.isEmpty(), plan ? qPrintable(plan->refusal) : "");
        QVERIFY(mergeCustomers(shop.connection, *plan, shop.now.date()));
        QTEST(shop.value(u"SELECT "_s + column + u" FROM 納品先 WHERE 納品先ID = 1"_s), "after");
    }

    // Each pair by itself, until what the rows say is another.
    void twoThatAreTwoAreNoDuplicates()
    {
        const auto customer = [](qint64 id) {
            ProbableDuplicate sato;
            sato.id = id;
            sato.name = u"佐藤"_s;
            sato.address = u"港区芝1-1"_s;
            sato.phone = u"03-1234-5678"_s;
            return sato;
        };
        const std::vector<DuplicateGroup> groups{{true, false, {customer(1), customer(2), customer(3)}}};
        DistinctPairs distinct;
        const auto left = [&] {
            const auto shown = withoutDistinct(groups, DistinctPairs(distinct.stored()));
            return shown.empty() ? 0 : int(shown.front().customers.size());
        };
        QCOMPARE(left(), 3);
        distinct.mark(customer(2), customer(1), true);
        QCOMPARE(left(), 3); // 3 may be either of them
        distinct.mark(customer(1), customer(3), true);
        QCOMPARE(left(), 2);
        distinct.mark(customer(2), customer(3), true);
        QCOMPARE(left(), 0);
        ProbableDuplicate moved = customer(3);
        moved.phone = u"０３−１２３４−５６７８"_s; // as it was, but for the way it is written
        QVERIFY(distinct.has(moved, customer(2)));
        moved.address = u"港区芝2-2"_s;
        QVERIFY(!distinct.has(moved, customer(2)));
        distinct.mark(customer(3), customer(2), false);
        QCOMPARE(left(), 2);
    }

    void changesNothingWhenItMustNot_data()
    {
        QTest::addColumn<QString>("meanwhile");
        QTest::addColumn<QString>("said");
        QTest::newRow("open slip of the one that goes")
            << u"UPDATE 入出庫マスター SET 完了 = 0 WHERE ID = 2"_s << u"入力中（完了していない）の伝票 O2"_s;
        QTest::newRow("open slip of the one that stays")
            << u"UPDATE 入出庫マスター SET 完了 = 0 WHERE ID = 1"_s << u"入力中（完了していない）の伝票 R1"_s;
        QTest::newRow("changed by another program")
            << u"UPDATE 納品先 SET メモ = 'x', 版 = 9 WHERE 納品先ID = 2"_s
            << u"ほかのプログラムで納品先が変更された"_s;
        QTest::newRow("changed by a program that does not count its changes")
            << u"UPDATE 納品先 SET メモ = 'x' WHERE 納品先ID = 1"_s
            << u"ほかのプログラムで納品先が変更された"_s;
        QTest::newRow("a slip more") << u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID, 完了) "
                                        "VALUES (3, 'O3', 2, 1)"_s
                                     << u"ほかのプログラムで納品先が変更された"_s;
        QTest::newRow("deleted") << u"DELETE FROM 納品先 WHERE 納品先ID = 2"_s
                                 << u"ほかのプログラムで削除されています"_s;
        QTest::newRow("other tax") << u"UPDATE 納品先 SET 消費税区分 = 1 WHERE 納品先ID = 2"_s
                                   << u"消費税区分が違い（外税 （納品時） と 外税 （請求時））"_s;
        QTest::newRow("failure in the middle")
            << u"CREATE TEMP TRIGGER t BEFORE DELETE ON 納品先 BEGIN SELECT RAISE(ABORT, 'no'); END"_s
            << u""_s;
    }
    void changesNothingWhenItMustNot()
    {
        QFETCH(QString, meanwhile);
        QFETCH(QString, said);
        FreshShop shop;
        addCustomers(shop);
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID, 完了) VALUES (1, 'R1', 1, 1), (2, 'O2', 2, 1)"_s);
        shop.run(
            u"INSERT INTO 発送マスター (発送ID, 納品先ID, 依頼主ID) VALUES (1, 2, NULL), (2, NULL, 2)"_s);
        shop.run(u"INSERT INTO 宛名印刷 (印刷ID, 納品先ID) VALUES (1, 2)"_s);
        const auto plan = planMerge(shop.connection, 1, 2);
        QVERIFY(plan && plan->refusal.isEmpty());
        if (said.isEmpty())
            shop.fireTriggers();
        shop.run(meanwhile);
        const QStringList before = everything(shop);
        const auto merged = mergeCustomers(shop.connection, *plan, shop.now.date());
        QVERIFY(!merged);
        QVERIFY2(merged.error().text.contains(said), qPrintable(merged.error().text));
        QCOMPARE(everything(shop), before);
        const auto same = planMerge(shop.connection, 1, 1);
        QVERIFY(same && !same->refusal.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDuplicates)
#include "tst_duplicates.moc"
