#include "book/numbering.h"
#include "book/slip_shop.h"
#include "book/slip_store.h"
#include "db/keys.h"

// Keys, numbers and headers of new slips.
class TestSlipHeaders : public QObject
{
    Q_OBJECT

private slots:
    void keysFollowTheHighest();
    void aStrayKeyCostsNoNumbers_data();
    void aStrayKeyCostsNoNumbers();
    void theLetterTellsTheKind();
    void automaticNumbers_data();
    void automaticNumbers();
    void manualNumbers_data();
    void manualNumbers();
    void headerStampsTheCustomerInOneAction();
    void incompleteHeadersAreRefused_data();
    void incompleteHeadersAreRefused();
};

void TestSlipHeaders::keysFollowTheHighest()
{
    Shop shop;
    QCOMPARE(savedSale(shop), 1);
    QCOMPARE(savedSale(shop), 2);
    QCOMPARE(savedSale(shop), 3);
    QVERIFY(book::deleteSlip(shop.connection, 2));
    QCOMPARE(savedSale(shop), 4);
    QVERIFY(book::deleteSlip(shop.connection, 4));
    QCOMPARE(savedSale(shop), 4);
}

void TestSlipHeaders::aStrayKeyCostsNoNumbers_data()
{
    QTest::addColumn<QList<qint64>>("there");
    QTest::addColumn<qint64>("next");
    using Keys = QList<qint64>;
    QTest::newRow("the last of all") << Keys{1, 2, 3, db::highestKey} << 4LL;
    QTest::newRow("alone") << Keys{db::highestKey} << 1LL;
    QTest::newRow("several") << Keys{7, db::highestKey - 1, db::highestKey} << 8LL;
    QTest::newRow("beyond all keys") << Keys{-5, 9, 9'007'199'254'740'993} << 10LL;
    QTest::newRow("gaps below") << Keys{2, 5, db::highestKey} << 6LL;
}

void TestSlipHeaders::aStrayKeyCostsNoNumbers()
{
    QFETCH(QList<qint64>, there);
    Shop shop;
    for (const qint64 key : std::as_const(there))
        shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (?, 'O')"_s, {key});
    QTEST(savedSale(shop), "next");
    QCOMPARE(shop.value(u"SELECT COUNT(*) FROM 入出庫マスター"_s).toInt(), there.size() + 1);
}

// As the generated column does, whatever the width and the case.
void TestSlipHeaders::theLetterTellsTheKind()
{
    for (const QString &number :
         {u"I100"_s, u"Ｉ－１"_s, u"i1"_s, u"ｏ7"_s, u"Ｔ"_s, u"X1"_s, u"ア1"_s, u" I1"_s, QString()}) {
        FreshShop shop;
        shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (1, ?)"_s, {number});
        const auto kind = book::kindOf(number);
        const QString letter = shop.value(u"SELECT 種別 FROM 入出庫マスター"_s).toString();
        const auto counted = book::kindWith(letter.toLatin1());
        QCOMPARE(kind.has_value(), counted.has_value());
        QVERIFY(!kind || *kind == *counted);
    }
}

void TestSlipHeaders::automaticNumbers_data()
{
    QTest::addColumn<QString>("infix");
    QTest::addColumn<QString>("number");
    QTest::newRow("none") << QString() << u"O1"_s;
    QTest::newRow("year") << u"24-"_s << u"O24-1"_s;
    QTest::newRow("blanks stay") << u"  a "_s << u"O  a 1"_s;
    QTest::newRow("full width") << u"　令和"_s << u"O　令和1"_s;
    QTest::newRow("placeholders are text") << u"%1'_"_s << u"O%1'_1"_s;
}

void TestSlipHeaders::automaticNumbers()
{
    QFETCH(QString, infix);
    QFETCH(QString, number);
    Shop shop;
    book::NewSlip slip = saleTo(1);
    slip.infix = infix;
    const auto header = book::saveHeader(shop.connection, slip);
    QVERIFY(header);
    QCOMPARE(header->number, number);
    QCOMPARE(shop.value(u"SELECT 伝票番号 FROM 入出庫マスター"_s).toString(), number);
}

void TestSlipHeaders::manualNumbers_data()
{
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("refusal");
    const QString wrong = u"伝票番号に誤りがあります。"_s;
    QTest::newRow("demanded letter") << u"I1"_s << QString();
    QTest::newRow("letter alone") << u"I"_s << QString();
    QTest::newRow("own kind's letter") << u"O1"_s << wrong;
    QTest::newRow("lower case") << u"i1"_s << wrong;
    QTest::newRow("blank before") << u" I1"_s << wrong;
    QTest::newRow("empty") << QString() << wrong;
    const QString taken = u"伝票番号が重複しています。"_s;
    QTest::newRow("taken") << u"I7"_s << taken;
    QTest::newRow("taken, other width") << u"I７"_s << taken;
    QTest::newRow("taken, other case") << u"I-A1%"_s << taken;
    QTest::newRow("another form of a kanji") << u"I高2"_s << QString();
    QTest::newRow("not a pattern") << u"I%"_s << QString();
    QTest::newRow("nor a joker") << u"I_"_s << QString();
    QTest::newRow("quote") << u"I'1"_s << QString();
}

void TestSlipHeaders::manualNumbers()
{
    QFETCH(QString, number);
    QFETCH(QString, refusal);
    Shop shop;
    shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (7, 'I7'), (8, 'I-a1%'), (9, 'I髙2')"_s);
    const base::Status checked = book::checkManualNumber(shop.connection, number, u'I');
    QCOMPARE(checked ? QString() : checked.error().text, refusal);

    book::NewSlip slip = saleTo(1);
    slip.manualNumber = number;
    slip.manualLetter = u'I';
    const auto header = book::saveHeader(shop.connection, slip);
    QCOMPARE(header ? QString() : header.error().text, refusal);
    if (header)
        QCOMPARE(header->number, number);
    QCOMPARE(shop.value(u"SELECT COUNT(*) FROM 入出庫マスター"_s).toInt(), refusal.isEmpty() ? 4 : 3);
}

void TestSlipHeaders::headerStampsTheCustomerInOneAction()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID, 更新日) VALUES (5, '2020-01-01'), (6, '2020-01-01')"_s);
    book::NewSlip slip = saleTo(5);
    slip.date = QDate(2026, 3, 31);
    slip.stamp = QDate(2026, 4, 1);
    QVERIFY(book::saveHeader(shop.connection, slip));
    QCOMPARE(everything(shop),
             QStringList({u"1|2026-03-31|O1|5|1|5|-"_s, u"5|2026-04-01"_s, u"6|2020-01-01"_s}));
    slip.counterpart = 9;
    const auto gone = book::saveHeader(shop.connection, slip);
    QVERIFY2(!gone && gone.error().gone, "a customer deleted meanwhile gets no slip");
    QCOMPARE(shop.value(u"SELECT COUNT(*) FROM 入出庫マスター"_s).toInt(), 1);
}

void TestSlipHeaders::incompleteHeadersAreRefused_data()
{
    QTest::addColumn<QChar>("letter");
    QTest::addColumn<qint64>("counterpart");
    QTest::addColumn<qint64>("employee");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("refusal");
    const QDate day(2026, 4, 1);
    QTest::newRow("customer") << QChar(u'O') << 0LL << 1LL << day << u"納品先が選択されていません。"_s;
    QTest::newRow("supplier") << QChar(u'I') << 0LL << 1LL << day << u"仕入先が選択されていません。"_s;
    QTest::newRow("employee") << QChar(u'O') << 1LL << 0LL << day << u"担当者が選択されていません。"_s;
    QTest::newRow("date of another century")
        << QChar(u'O') << 1LL << 1LL << QDate(1899, 12, 31)
        << u"日付が正しくないため、伝票を保存できませんでした。日付を入力し直してください。"_s;
    QTest::newRow("date")
        << QChar(u'O') << 1LL << 1LL << QDate()
        << u"日付が正しくないため、伝票を保存できませんでした。日付を入力し直してください。"_s;
}

void TestSlipHeaders::incompleteHeadersAreRefused()
{
    QFETCH(QChar, letter);
    QFETCH(qint64, counterpart);
    QFETCH(qint64, employee);
    QFETCH(QDate, date);
    QFETCH(QString, refusal);
    FreshShop shop;
    book::NewSlip slip = saleTo(counterpart);
    slip.kind = letter == u'I' ? book::purchase : book::sale;
    slip.employee = employee;
    slip.date = date;
    const auto header = book::saveHeader(shop.connection, slip);
    QVERIFY(!header);
    QCOMPARE(header.error().text, refusal);
    QCOMPARE(everything(shop), QStringList());
}

QTEST_GUILESS_MAIN(TestSlipHeaders)
#include "tst_slip_headers.moc"
