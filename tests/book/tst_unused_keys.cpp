// Keys of new slips and counterparts where a damaged book still names them.
#include "book/slip_counts.h"
#include "book/slip_store.h"
#include "db/keys.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestUnusedKeys : public QObject
{
    Q_OBJECT

private slots:
    void slipsNeverTakeOverLines_data();
    void slipsNeverTakeOverLines();
    void counterpartsNeverTakeOverSlips_data();
    void counterpartsNeverTakeOverSlips();
    void counterpartsNeverTakeOverDocuments();
    void customersNeverTakeOverShipments();
    void everyKeyIsNamed();
    void aLostRegisterIsSkippedQuickly();
};

void TestUnusedKeys::slipsNeverTakeOverLines_data()
{
    QTest::addColumn<QString>("lines"); // the slips that they are of
    QTest::addColumn<QList<qint64>>("keys");
    using Keys = QList<qint64>;
    QTest::newRow("none") << u"(4)"_s << Keys{5, 6, 7};
    QTest::newRow("lost slips") << u"(6), (6), (8), (9)"_s << Keys{5, 7, 10};
    QTest::newRow("the next one") << u"(5)"_s << Keys{6, 7, 8};
    QTest::newRow("far above") << u"(2147483646), (2147483647), (9007199254740993)"_s << Keys{5, 6, 7};
    QTest::newRow("no keys at all") << u"('６'), ('abc'), (5.5), (NULL), (-3), (x'35')"_s << Keys{5, 6, 7};
}

void TestUnusedKeys::slipsNeverTakeOverLines()
{
    QFETCH(QString, lines);
    QFETCH(QList<qint64>, keys);
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID) VALUES (1)"_s);
    shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (4, 'O4')"_s);
    shop.run(u"INSERT INTO 入出庫サブ (ID) VALUES "_s + lines);
    book::NewSlip slip;
    slip.date = QDate(2026, 4, 1);
    slip.counterpart = 1;
    slip.employee = 1;
    QList<qint64> given;
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const auto saved = book::saveHeader(shop.connection, slip);
        QVERIFY2(saved, saved ? "" : qPrintable(saved.error().text));
        given << saved->id;
    }
    QCOMPARE(given, keys);
}

void TestUnusedKeys::counterpartsNeverTakeOverSlips_data()
{
    QTest::addColumn<QString>("slips"); // 伝票番号, 相手先ID
    QTest::addColumn<qint64>("customer");
    QTest::addColumn<qint64>("supplier");
    QTest::newRow("none") << u"('O1', 1), ('I2', 2)"_s << 3LL << 3LL;
    QTest::newRow("each has its own") << u"('O1', 3), ('I2', 4), ('R3', 5), ('P4', 3)"_s << 4LL << 5LL;
    QTest::newRow("texts are no keys") << u"('O1', 'abc'), ('O2', '山田'), ('O3', 3)"_s << 4LL << 3LL;
    QTest::newRow("far above") << u"('O1', 2147483646), ('O2', 2147483647), ('O3', 99999999999), ('O4', 3)"_s
                               << 4LL << 3LL;
    QTest::newRow("several") << u"('O1', 3), ('O2', 3), ('R3', 4), ('Ｏ4', 5), ('o5', 7)"_s << 6LL << 3LL;
}

void TestUnusedKeys::counterpartsNeverTakeOverSlips()
{
    QFETCH(QString, slips);
    FreshShop shop;
    shop.run(u"INSERT INTO 入出庫マスター (伝票番号, 相手先ID) VALUES "_s + slips);
    const auto customer = book::keyWithoutSlips(shop.connection, book::Party::Customer, 3);
    const auto supplier = book::keyWithoutSlips(shop.connection, book::Party::Supplier, 3);
    QVERIFY(customer && supplier);
    QTEST(*customer, "customer");
    QTEST(*supplier, "supplier");
}

// After everything was deleted, the documents are what is left.
void TestUnusedKeys::counterpartsNeverTakeOverDocuments()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 入出庫マスター (伝票番号, 相手先ID) VALUES ('O1', 3), ('R1', 6), ('I2', 4)"_s);
    shop.run(u"INSERT INTO 発行控 (伝票種別, 相手先ID) VALUES ('O', 4), ('M', 5), ('O', 7), ('I', 3)"_s);
    QCOMPARE(*book::keyWithoutSlips(shop.connection, book::Party::Customer, 3), 8);
    QCOMPARE(*book::keyWithoutSlips(shop.connection, book::Party::Supplier, 3), 5);
}

void TestUnusedKeys::customersNeverTakeOverShipments()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 発送マスター (納品先ID, 依頼主ID) VALUES (3, NULL), (5, 6)"_s);
    shop.run(u"INSERT INTO 宛名印刷 (納品先ID) VALUES (4)"_s);
    shop.run(u"INSERT INTO 入出庫マスター (伝票番号, 相手先ID) VALUES ('O1', 7)"_s);
    QCOMPARE(*book::keyWithoutSlips(shop.connection, book::Party::Customer, 3), 8);
    QCOMPARE(*book::keyWithoutSlips(shop.connection, book::Party::Supplier, 3), 3);
}

void TestUnusedKeys::everyKeyIsNamed()
{
    FreshShop shop;
    shop.run(
        u"INSERT INTO 入出庫マスター (伝票番号, 相手先ID) VALUES ('O1', 2147483646), ('O2', 2147483647)"_s);
    const auto next = book::keyWithoutSlips(shop.connection, book::Party::Customer, db::highestKey - 1);
    QVERIFY2(!next, "its slips would be another customer's");
    QCOMPARE(*book::keyWithoutSlips(shop.connection, book::Party::Supplier, db::highestKey), db::highestKey);
}

void TestUnusedKeys::aLostRegisterIsSkippedQuickly()
{
    FreshShop shop;
    shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) "
             "INSERT INTO 入出庫マスター (伝票番号, 相手先ID) SELECT 'O' || i, i FROM n"_s);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(*book::keyWithoutSlips(shop.connection, book::Party::Customer, 1), 20001);
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
}

QTEST_GUILESS_MAIN(TestUnusedKeys)
#include "tst_unused_keys.moc"
