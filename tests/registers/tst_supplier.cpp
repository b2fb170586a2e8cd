#include "db/recordset.h"
#include "registers/supplier.h"
#include "support/fresh_shop.h"

#include <QtTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

class TestSupplier : public QObject
{
    Q_OBJECT

private slots:
    void savesWithTheKey_data()
    {
        QTest::addColumn<QStringList>("fields"); // 仕入先名1, 仕入先名2, コード, TEL1
        QTest::addColumn<QString>("key");
        const QString none;
        QTest::newRow("nothing") << QStringList{none, none, none, none} << u"  "_s;
        QTest::newRow("all fields") << QStringList{u"　大阪　問屋 "_s, u"営業部　御中　"_s, u"S1"_s,
                                                   u"０６－１"_s}
                                    << u"大阪問屋 営業部御中 S1 ０６－１"_s;
        QTest::newRow("cut") << QStringList{QString(149, u'山'), none, u"C"_s, u"03"_s}
                             << QString(149, u'山') + u' ';
    }

    void savesWithTheKey()
    {
        QFETCH(QStringList, fields);
        QFETCH(QString, key);
        FreshShop shop;
        db::Recordset suppliers(shop.connection);
        QVERIFY(registers::openEverySupplier(suppliers));
        QCOMPARE(*registers::addSupplier(shop.connection, suppliers), 1);
        const QStringList columns{u"仕入先名1"_s, u"仕入先名2"_s, u"コード"_s, u"TEL1"_s};
        for (int i = 0; i < columns.size(); ++i)
            suppliers.setValue(columns[i], fields[i]);
        QVERIFY(registers::saveSupplier(suppliers));
        QVERIFY(!suppliers.isDirty());
        QCOMPARE(shop.value(u"SELECT 仕入先名キー FROM 仕入先"_s).toString(), key);
    }

    void keysFollowTheHighest()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 仕入先 (仕入先ID) VALUES (9), (4)"_s);
        db::Recordset suppliers(shop.connection);
        QVERIFY(registers::openEverySupplier(suppliers));
        QCOMPARE(*registers::addSupplier(shop.connection, suppliers), 10);
        QCOMPARE(suppliers.currentKey(), 10);
        QCOMPARE(suppliers.currentRow(), 2);
        // Slips of a deleted supplier never become the next one's; a customer's of that number are no
        // concern.
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (1, 'I1', 11), (2, 'P2', 12), (3, 'O3', 40)"_s);
        QCOMPARE(*registers::addSupplier(shop.connection, suppliers), 13);
        QVERIFY(suppliers.remove());
        QCOMPARE(shop.rows(u"SELECT 消費税区分, 仕入先名キー FROM 仕入先 WHERE 仕入先ID = 10"_s),
                 QStringList{u"0|-"_s});
    }

    // Between the reading of the keys and the storing no other program may save a slip under one of them.
    void theKeyIsChosenUnderTheLock()
    {
        FreshShop shop;
        db::Recordset suppliers(shop.connection);
        QVERIFY(registers::openEverySupplier(suppliers));
        struct Seen
        {
            db::Connection &connection;
            int statements = 0;
            int unlocked = 0;
        } seen{shop.connection};
        sqlite3_trace_v2(
            shop.connection.handle(), SQLITE_TRACE_STMT,
            [](unsigned, void *context, void *statement, void *) {
                auto &told = *static_cast<Seen *>(context);
                if (!QByteArray(sqlite3_sql(static_cast<sqlite3_stmt *>(statement))).startsWith("SELECT"))
                    return 0;
                ++told.statements;
                told.unlocked += told.connection.inTransaction() ? 0 : 1;
                return 0;
            },
            &seen);
        const auto added = registers::addSupplier(shop.connection, suppliers);
        sqlite3_trace_v2(shop.connection.handle(), 0, nullptr, nullptr);
        QVERIFY(added);
        QVERIFY(seen.statements > 0);
        QCOMPARE(seen.unlocked, 0);
    }

    void aFailedSavingKeepsWhatWasTyped()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 仕入先名キー) VALUES (1, '問屋', '問屋  ')"_s);
        db::Recordset suppliers(shop.connection);
        QVERIFY(registers::openSupplier(suppliers, 1));
        suppliers.setValue(u"仕入先名1"_s, u"市場"_s);
        shop.run(u"DELETE FROM 仕入先"_s); // by another program
        QVERIFY(!registers::saveSupplier(suppliers));
        QCOMPARE(suppliers.text(u"仕入先名1"_s), u"市場"_s);
        QCOMPARE(suppliers.text(u"仕入先名キー"_s), u"問屋  "_s);
    }

    void noticesCodes_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("exists");
        QTest::newRow("own, saved") << u"A1"_s << true;
        QTest::newRow("another's") << u"B2"_s << true;
        QTest::newRow("not saved yet") << u"Z9"_s << false;
        QTest::newRow("quote") << u"A1' OR '1'='1"_s << false;
        QTest::newRow("none") << QString() << false;
    }

    void noticesCodes()
    {
        QFETCH(QString, code);
        FreshShop shop;
        shop.run(u"INSERT INTO 仕入先 (仕入先ID, コード) VALUES (1, 'A1'), (2, 'B2'), (3, '')"_s);
        db::Recordset suppliers(shop.connection);
        QVERIFY(registers::openSupplier(suppliers, 1));
        suppliers.setValue(u"コード"_s, code);
        const auto exists = registers::supplierCodeExists(shop.connection, suppliers);
        QVERIFY(exists);
        QTEST(*exists, "exists");
    }
};

QTEST_GUILESS_MAIN(TestSupplier)
#include "tst_supplier.moc"
