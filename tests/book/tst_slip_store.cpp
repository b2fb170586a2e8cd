#include "book/balance.h"
#include "book/printed_slip.h"
#include "book/slip_reader.h"
#include "book/slip_shop.h"

using book::TaxClass;

// The lines of slips, their end, and how they are read.
class TestSlipStore : public QObject
{
    Q_OBJECT

private slots:
    void linesKeepTheirOrder();
    void deletedSlipIsRefused();
    void issuedNumbersAreNotGivenAgain();
    void closingAddsTheTaxOnce_data();
    void closingAddsTheTaxOnce();
    void closingTaxesEachRateByItself();
    void deletingLeavesNoLines();
    void previousLinesAreTheCustomersGoodsNewestFirst();
    void balancesFollowTheKinds();
    void failureLeavesNothingHalfWritten();
    void fullDiskLosesOnlyTheActionInHand();
    void readSlipGivesHeaderLinesAndCounterpart();
};

void TestSlipStore::linesKeepTheirOrder()
{
    Shop shop;
    const qint64 first = savedSale(shop);
    const qint64 second = savedSale(shop);
    addLine(shop, first, 100, u"か"_s);
    addLine(shop, second, 7, u"x"_s);
    addLine(shop, first, 200, u"あ"_s);
    addLine(shop, first, 300, u"さ"_s);
    QCOMPARE(book::slipSums(shop.connection, first)->total, 600.0);
    QVERIFY(*book::removeLastLine(shop.connection, first));
    addLine(shop, first, 400, u"い"_s);
    const auto slip = book::readSlip(shop.connection, first, book::Party::Customer);
    QVERIFY(slip);
    QStringList products;
    for (const book::SlipLine &line : slip->lines)
        products << line.product;
    QCOMPARE(products, QStringList({u"か"_s, u"あ"_s, u"い"_s}));
    QVERIFY(*book::removeLastLine(shop.connection, second));
    QVERIFY2(!*book::removeLastLine(shop.connection, second), "no line was left");
    QCOMPARE(book::slipSums(shop.connection, second)->total, 0.0);
    QCOMPARE(book::slipSums(shop.connection, first)->total, 700.0);
}

void TestSlipStore::deletedSlipIsRefused()
{
    FreshShop shop;
    QVERIFY(!book::addLine(shop.connection, 1, {u"りんご"_s, {}, 1, {}, 1, 1}));
    QVERIFY(!book::removeLastLine(shop.connection, 1));
    for (const TaxClass taxClass : {TaxClass::OnDelivery, TaxClass::OnBill})
        QVERIFY2(!book::closeSlip(shop.connection, 1, 5, taxClass, false), "nothing was saved");
    QCOMPARE(everything(shop), QStringList());
}

// A note that went out keeps its number for itself, whatever became of its slip.
void TestSlipStore::issuedNumbersAreNotGivenAgain()
{
    Shop shop;
    const auto numberOf = [&shop](qint64 id) {
        return shop.value(u"SELECT 伝票番号 FROM 入出庫マスター WHERE ID = ?"_s, {id}).toString();
    };
    const qint64 first = savedSale(shop);
    const QString number = numberOf(first);
    const auto take = [&](qint64 id) { shop.run(u"DELETE FROM 入出庫マスター WHERE ID = %1"_s.arg(id)); };
    take(first);
    QCOMPARE(numberOf(savedSale(shop)), number); // nothing went out
    shop.run(u"INSERT INTO 発行控 (種類, 番号) VALUES ('納品書', '%1')"_s.arg(number));
    take(first);
    const qint64 next = savedSale(shop);
    QCOMPARE(next, first + 1);
    QVERIFY(numberOf(next) != number);
}

void TestSlipStore::closingAddsTheTaxOnce_data()
{
    QTest::addColumn<double>("amount");
    QTest::addColumn<double>("rate");
    QTest::addColumn<TaxClass>("taxClass");
    QTest::addColumn<bool>("inclusive");
    QTest::addColumn<QStringList>("taxLines");
    const QStringList none;
    QTest::newRow("due") << 1999.0 << 5.0 << TaxClass::OnDelivery << false << QStringList{u"99"_s};
    QTest::newRow("rate of now") << 1999.0 << 10.0 << TaxClass::OnDelivery << false << QStringList{u"199"_s};
    QTest::newRow("inclusive") << 1999.0 << 5.0 << TaxClass::OnDelivery << true << none;
    QTest::newRow("on the bill") << 1999.0 << 5.0 << TaxClass::OnBill << false << none;
    QTest::newRow("included") << 1999.0 << 5.0 << TaxClass::Included << true << none;
    QTest::newRow("made exclusive") << 1999.0 << 5.0 << TaxClass::Included << false << QStringList{u"99"_s};
    QTest::newRow("tax of 0") << 19.0 << 5.0 << TaxClass::OnDelivery << false << none;
}

void TestSlipStore::closingAddsTheTaxOnce()
{
    QFETCH(double, amount);
    QFETCH(double, rate);
    QFETCH(TaxClass, taxClass);
    QFETCH(bool, inclusive);
    QFETCH(QStringList, taxLines);
    Shop shop;
    const qint64 id = savedSale(shop);
    addLine(shop, id, amount);
    const auto taxRows = [&] {
        return shop.rows(u"SELECT printf('%d', 金額) FROM 入出庫サブ WHERE 商品名 = '消費税' "
                         "AND 数量 IS NULL AND 単価 IS NULL AND 単位 IS NULL"_s);
    };
    const auto isClosed = [&] { return shop.value(u"SELECT 完了 FROM 入出庫マスター"_s); };
    QCOMPARE(isClosed(), QVariant(0));
    const auto closed = book::closeSlip(shop.connection, id, rate, taxClass, inclusive);
    QVERIFY(closed);
    QCOMPARE(isClosed(), QVariant(1));
    QCOMPARE(closed->total, amount);
    QCOMPARE(closed->tax, taxLines.isEmpty() ? 0.0 : taxLines.front().toDouble());
    QCOMPARE(taxRows(), taxLines);
    QVERIFY(book::closeSlip(shop.connection, id, rate, taxClass, inclusive));
    QCOMPARE(taxRows(), taxLines);
}

// Food at its own rate beside a line at the rate of the slip; paper of the open slip shows the same.
void TestSlipStore::closingTaxesEachRateByItself()
{
    Shop shop;
    const qint64 id = savedSale(shop);
    addLine(shop, id, 1234);
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額, 税区分, 税率) VALUES (?, 'もなか', 1980, 1, 8), "
             "(?, '新聞', 458, 2, 8), (?, '切手', 84, 3, 0)"_s,
             {id, id, id});
    const auto open = book::readSlip(shop.connection, id, book::Party::Customer);
    QVERIFY(open);
    const auto printed = book::taxedForPrint(*open, {false, book::TaxRates::keptByHand(10)});
    QVERIFY(printed);
    QCOMPARE(printed->total, 1234 + 1980 + 458 + 84 + 123 + 195.0);

    const auto closed = book::closeSlip(shop.connection, id, 10, TaxClass::OnDelivery, false);
    QVERIFY(closed);
    QCOMPARE(closed->tax, 123 + 195.0);
    QCOMPARE(shop.rows(u"SELECT CAST(金額 AS INTEGER), 税区分, CAST(税率 AS INTEGER) FROM 入出庫サブ "
                       "WHERE 商品名 = '消費税' ORDER BY 明細ID"_s),
             QStringList({u"123|0|10"_s, u"195|1|8"_s}));
    QVERIFY(book::closeSlip(shop.connection, id, 10, TaxClass::OnDelivery, false));
    QCOMPARE(book::slipSums(shop.connection, id, 10)->total, printed->total);
}

void TestSlipStore::deletingLeavesNoLines()
{
    Shop shop;
    const qint64 kept = savedSale(shop);
    addLine(shop, kept, 1);
    const qint64 id = savedSale(shop);
    addLine(shop, id, 1000);
    QVERIFY(book::closeSlip(shop.connection, id, 5, TaxClass::OnDelivery, false));
    QVERIFY(book::deleteSlip(shop.connection, id));
    QCOMPARE(shop.rows(u"SELECT ID FROM 入出庫サブ"_s), QStringList{u"1"_s});
    QCOMPARE(shop.rows(u"SELECT ID FROM 入出庫マスター"_s), QStringList{u"1"_s});
}

void TestSlipStore::previousLinesAreTheCustomersGoodsNewestFirst()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES "
             "(1, '2026-01-10', 'O1', 5), (2, '2026-03-10', 'O2', 5), (3, '2026-02-10', 'O3', 5), "
             "(4, '2026-03-11', 'O4', 6), (5, '2026-03-12', 'I5', 5), (6, '2026-03-13', 'M6', 5), "
             "(7, '2026-02-10', 'O7', 5)"_s);
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (1, 'a', 1), (2, 'b', 2), (2, '消費税', 9), "
             "(7, 'h', 7), (7, 'g', 8), (3, 'c', 3), (4, 'd', 4), (5, 'e', 5), (6, 'f', 6)"_s);
    const auto found = book::previousLines(shop.connection, book::sale, 5);
    QVERIFY(found);
    QStringList numbers;
    for (int row = 0; row < found->count(); ++row)
        numbers << found->value(row, u"伝票番号"_s).toString() + found->value(row, u"商品名"_s).toString();
    QCOMPARE(numbers, QStringList({u"O2b"_s, u"O7h"_s, u"O7g"_s, u"O3c"_s, u"O1a"_s}));
}

void TestSlipStore::balancesFollowTheKinds()
{
    FreshShop shop;
    // Each kind weighs another power of ten, so that a wrong sign or a foreign kind shows in its digit.
    const QString letters = u"OIMRPABT"_s;
    double amount = 1;
    qint64 id = 1;
    for (const QChar letter : letters) {
        for (const qint64 counterpart : {5, 6}) {
            shop.run(
                u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (?, '2026-01-10', ?, ?)"_s,
                {id, letter + QString::number(id), counterpart});
            shop.run(u"INSERT INTO 入出庫サブ (ID, 金額) VALUES (?, ?), (?, ?)"_s,
                     {id, amount * 2, id, counterpart == 5 ? amount : 0});
            ++id;
        }
        amount *= 10;
    }
    QCOMPARE(balanceOf(shop.connection, book::Party::Customer, 5), 3.0 - 3'000 + 3'000'000);
    QCOMPARE(balanceOf(shop.connection, book::Party::Supplier, 5), 30.0 - 30'000 + 300'000);
    QCOMPARE(balanceOf(shop.connection, book::Party::Customer, 6), 2.0 - 2'000 + 2'000'000);
    QCOMPARE(balanceOf(shop.connection, book::Party::Customer, 99), 0.0);
}

void TestSlipStore::failureLeavesNothingHalfWritten()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID, 更新日) VALUES (5, '2020-01-01')"_s);
    const qint64 id = savedSale(shop, 5);
    addLine(shop, id, 1000);
    const QStringList before = everything(shop);

    // A temporary trigger lets the first statement of an action pass and fails the second one.
    const auto fails = [&](const QString &event, const auto &action) {
        shop.fireTriggers();
        shop.run(u"CREATE TEMP TRIGGER failing BEFORE "_s + event +
                 u" BEGIN SELECT RAISE(ABORT, 'full'); END"_s);
        const bool done = action();
        shop.run(u"DROP TRIGGER failing"_s);
        return !done && everything(shop) == before;
    };
    QVERIFY(fails(u"INSERT ON main.入出庫マスター"_s, [&] {
        book::NewSlip slip = saleTo(5);
        slip.stamp = QDate(2026, 4, 1);
        return bool(book::saveHeader(shop.connection, slip));
    }));
    QVERIFY(fails(u"DELETE ON main.入出庫マスター"_s,
                  [&] { return bool(book::deleteSlip(shop.connection, id)); }));
    QVERIFY(fails(u"INSERT ON main.入出庫サブ"_s, [&] {
        return bool(book::closeSlip(shop.connection, id, 5, TaxClass::OnDelivery, false));
    }));
    QVERIFY(!shop.connection.inTransaction());
}

void TestSlipStore::fullDiskLosesOnlyTheActionInHand()
{
    Shop shop;
    const QString roomy = u"PRAGMA max_page_count = 100000"_s;
    shop.run(u"PRAGMA max_page_count = %1"_s.arg(shop.value(u"PRAGMA page_count"_s).toInt() + 2));
    // Slips until one finds no room for its header, lines until one finds none for itself.
    int headers = 0;
    while (book::saveHeader(shop.connection, saleTo(1)))
        ++headers;
    QVERIFY(headers > 0);
    QVERIFY(!shop.connection.inTransaction());
    QCOMPARE(shop.value(u"SELECT COUNT(*) FROM 入出庫マスター"_s).toInt(), headers);
    const book::GoodsLine line{QString(500, u'茶'), {}, 1, {}, 100, 100};
    int lines = 0;
    while (book::addLine(shop.connection, headers, line))
        ++lines;
    QVERIFY(!shop.connection.inTransaction());
    QCOMPARE(book::slipSums(shop.connection, headers)->total, lines * 100.0);

    shop.run(roomy);
    QVERIFY(book::addLine(shop.connection, headers, line));
    QCOMPARE(book::saveHeader(shop.connection, saleTo(1))->id, headers + 1);
    QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
}

void TestSlipStore::readSlipGivesHeaderLinesAndCounterpart()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, '佐藤', '11')"_s);
    shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 郵便番号, FAX, 消費税区分) "
             "VALUES (5, '山田　太郎', '100-0001', '03', 2)"_s);
    book::NewSlip manual = saleTo(5);
    manual.manualNumber = u"I1"_s;
    manual.manualLetter = u'I';
    const auto header = book::saveHeader(shop.connection, manual);
    QVERIFY(header);
    addLine(shop, header->id, 2000);
    // Every change is seen by who edits the slip beside it.
    const auto version = [&] {
        return shop.rows(u"SELECT 版 FROM 入出庫マスター WHERE ID = %1"_s.arg(header->id)).join(QString());
    };
    QStringList versions{version()};
    QVERIFY(book::keepRemark(shop.connection, header->id, u"至急"_s));
    versions += version();
    QVERIFY(book::keepInclusive(shop.connection, header->id, false));
    versions += version();
    QVERIFY(book::closeSlip(shop.connection, header->id, 5, TaxClass::Included, false));
    versions += version();
    QCOMPARE(QSet<QString>(versions.cbegin(), versions.cend()).size(), 4);
    const auto slip = book::readSlip(shop.connection, header->id, book::Party::Customer);
    QVERIFY(slip);
    QCOMPARE(slip->date, QDate(2026, 4, 1));
    QCOMPARE(slip->number, u"I1"_s);
    QCOMPARE(slip->employeeName, u"佐藤"_s);
    QCOMPARE(slip->name1, u"山田　太郎"_s);
    QCOMPARE(slip->fax, u"03"_s);
    QCOMPARE(slip->taxClass, TaxClass::Included);
    QCOMPARE(slip->lines.size(), 2U);
    QVERIFY(slip->lines[1].isTax());
    QVERIFY(!slip->lines[1].quantity);
    QCOMPARE(slip->lines[1].amount, 100.0);
    QVERIFY(!book::readSlip(shop.connection, 77, book::Party::Customer));
    shop.run(u"DELETE FROM 納品先"_s);
    QCOMPARE(book::readSlip(shop.connection, header->id, book::Party::Customer)->name1,
             u"(削除済み) ID %1"_s.arg(slip->counterpart));
    for (const QString &none : {u"NULL"_s, u"0"_s}) {
        shop.run(u"UPDATE 入出庫マスター SET 相手先ID = "_s + none);
        QCOMPARE(book::readSlip(shop.connection, header->id, book::Party::Customer)->name1,
                 u"(相手先なし)"_s);
    }
}

QTEST_GUILESS_MAIN(TestSlipStore)
#include "tst_slip_store.moc"
