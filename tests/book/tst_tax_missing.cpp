#include "book/slip_store.h"
#include "support/fresh_shop.h"

#include <QtTest>

using namespace Qt::StringLiterals;

/// Whether prices include the tax stands on the slip, so that a closed slip whose tax is missing can be told.
class TestTaxMissing : public QObject
{
    Q_OBJECT

private slots:
    void whatIsKnownOfASlip()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID) VALUES (1)"_s);
        const auto kept = [&] { return shop.rows(u"SELECT 内税, 完了 FROM 入出庫マスター"_s).join(u' '); };
        book::NewSlip slip;
        slip.date = QDate(2026, 4, 1);
        slip.counterpart = 1;
        slip.employee = 1;
        slip.inclusive = true;
        const auto header = book::saveHeader(shop.connection, slip);
        QVERIFY(header);
        QCOMPARE(kept(), u"1|0"_s);
        QVERIFY(book::keepInclusive(shop.connection, header->id, false));
        QCOMPARE(kept(), u"0|0"_s);
        QVERIFY(book::closeSlip(shop.connection, header->id, 10, book::TaxClass::Included, true));
        QCOMPARE(kept(), u"1|1"_s);
        slip.kind = book::receipt; // no prices
        slip.inclusive = std::nullopt;
        const auto money = book::saveHeader(shop.connection, slip);
        QVERIFY(money && book::closeUntaxedSlip(shop.connection, money->id));
        QCOMPARE(kept(), u"1|1 -|1"_s);
        QVERIFY(book::deleteSlip(shop.connection, money->id));
        QVERIFY(!book::keepInclusive(shop.connection, money->id, true));
    }

    void aClosedSlipWithoutItsTaxIsFound_data()
    {
        QTest::addColumn<QString>("slip"); // 日付, 伝票番号, 相手先ID, 消費税率, 内税, 完了
        QTest::addColumn<QString>("lines");
        QTest::addColumn<bool>("found");
        const QString goods = u"('りんご', 1000)"_s;
        const auto row = [](const char *name, const QString &slip, const QString &lines, bool found) {
            QTest::newRow(name) << slip << lines << found;
        };
        const QString sale = u"'2026-03-01', 'O1', 1, 10, 0, 1"_s;
        row("tax line deleted", sale, goods, true);
        row("taxed", sale, goods + u", ('消費税', 100)"_s, false);
        row("too little for a tax", sale, u"('りんご', 9)"_s, false);
        row("no lines", sale, u"(NULL, NULL)"_s, false);
        row("tax included", u"'2026-03-01', 'O1', 1, 10, 1, 1"_s, goods, false);
        row("of an older file", u"'2026-03-01', 'O1', 1, 10, NULL, NULL"_s, goods, false);
        row("still open", u"'2026-03-01', 'O1', 1, 10, 0, 0"_s, goods, false);
        row("long ago", u"'2026-02-28', 'O1', 1, 10, 0, 1"_s, goods, false);
        row("taxed on the bill", u"'2026-03-01', 'O1', 2, 10, 0, 1"_s, goods, false);
        row("made exclusive", u"'2026-03-01', 'O1', 3, 10, 0, 1"_s, goods, true);
        row("class left empty", u"'2026-03-01', 'O1', 4, 10, 0, 1"_s, goods, true);
        row("nobody knows the customer", u"'2026-03-01', 'O1', 9, 10, 0, 1"_s, goods, false);
        row("a purchase", u"'2026-03-01', 'I1', 5, 10, 0, 1"_s, goods, true);
        row("a purchase taxed on the bill", u"'2026-03-01', 'I1', 1, 10, 0, 1"_s, goods, false);
        row("an estimate", u"'2026-03-01', 'M1', 1, 10, 0, 1"_s, goods, false);
        row("without a rate", u"'2026-03-01', 'O1', 1, NULL, 0, 1"_s, goods, false);
    }

    void aClosedSlipWithoutItsTaxIsFound()
    {
        QFETCH(QString, slip);
        QFETCH(QString, lines);
        QFETCH(bool, found);
        FreshShop shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID, 消費税区分) VALUES (1, 0), (2, 1), (3, 2), (4, NULL)"_s);
        shop.run(u"INSERT INTO 仕入先 (仕入先ID, 消費税区分) VALUES (1, 1), (5, 0)"_s);
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率, 内税, 完了) "
                 "VALUES (7, %1)"_s.arg(slip));
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) SELECT 7, * FROM (VALUES %1)"_s.arg(lines));
        const auto numbers = book::slipsWithoutTax(shop.connection, QDate(2026, 3, 1), 10);
        QVERIFY(numbers);
        QCOMPARE(!numbers->isEmpty(), found);
    }

    void theNewestComeFirst()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID, 消費税区分) VALUES (1, 0)"_s);
        shop.run(u"INSERT INTO 仕入先 (仕入先ID, 消費税区分) VALUES (1, 0)"_s);
        for (const char *number : {"O2", "I3", "O4", "I5"}) {
            const QString text = QString::fromLatin1(number);
            shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率, 内税, 完了) "
                     "VALUES (?, '2026-03-09', ?, 1, 10, 0, 1)"_s,
                     {text.mid(1), text});
            shop.run(u"INSERT INTO 入出庫サブ (ID, 金額) VALUES (?, 100)"_s, {text.mid(1)});
        }
        const auto numbers = book::slipsWithoutTax(shop.connection, QDate(2026, 3, 1), 3);
        QVERIFY(numbers);
        QCOMPARE(*numbers, (QStringList{u"I5"_s, u"O4"_s, u"I3"_s}));
    }
};

QTEST_GUILESS_MAIN(TestTaxMissing)
#include "tst_tax_missing.moc"
