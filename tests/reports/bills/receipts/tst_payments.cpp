// Money that came in, as cash books and banks tell it: what is read, whose it is, and what becomes of it.
#include "book/taken_payments.h"
#include "db/care/plain_handle.h"
#include "db/foreign_table.h"
#include "payment_shop.h"
#include "reports/bills/receipts/payer_key.h"
#include "reports/bills/receipts/payment_taking.h"
#include "text/cp932.h"

#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;
using namespace reports;

namespace
{

/// As banks write it: an account before the headings, half-width kana, what went out between.
const QString bankList = u"口座,普通 1234567,信州りんご園\n"
                         "取引日,摘要,お支払金額,お預り金額,振込依頼人名,残高\n"
                         "2026/04/01,振込,,\"11,000\",ｶ)ﾔﾏﾀﾞ ｼﾖｳﾃﾝ,500000\n"
                         "2026/04/01,電気料金,8000,,ﾃﾞﾝﾘﾖｸ,492000\n"
                         "R8.4.1,振込,,3000,ﾀｶﾊｼ,495000\n"
                         "20260401,振込,,8800,ﾀｶﾊｼ,503800\n"
                         "2026年4月1日,振込,,20000,ｽｽﾞｷﾌﾞﾂｻ,523800\n"
                         "2026/04/01,振込,,5500,ｶ)ﾅｶﾑﾗ,529300\n"
                         "2026/04/01,振込,,77,ﾅｿﾞﾉ ﾋﾄ,529377\n"_s;

QByteArray cashBook(const QByteArray &rows)
{
    return "CREATE TABLE 現金出納帳 (ID INTEGER PRIMARY KEY, 日付 TEXT, 口座 TEXT, 摘要 TEXT, 相手先 TEXT, "
           "入金 REAL, 出金 REAL, 備考 TEXT);" +
           rows;
}

QString databaseOf(const FreshShop &shop, const QString &name, const QByteArray &statements)
{
    const QString file = fileOf(shop, name, {});
    db::PlainHandle handle;
    if (!handle.open(file) || !handle.run(statements))
        qFatal("%s", sqlite3_errmsg(handle.get()));
    return file;
}

base::Result<PaymentFile> readBy(const FreshShop &shop, const QString &file)
{
    return readPaymentFile(file, shop.connection.fileName(), base::unwatched);
}

std::vector<PaymentRow> rowsOf(const PaymentFile &file)
{
    const auto columns = columnsByHeadings(file.table);
    return columns ? paymentRows(file.table, *columns).rows : std::vector<PaymentRow>();
}

struct Desk
{
    Desk() { makeDebtors(shop); }

    std::vector<PaymentMatch> matched(const QByteArray &list, std::optional<int> closingDay = {})
    {
        const auto file = readBy(shop, fileOf(shop, u"list.csv"_s, list));
        customers =
            *PayingCustomers::read(shop.connection, closingDay, shop.workspace.today(), base::unwatched);
        return matchPayments(rowsOf(*file), customers, *book::takenPayments(shop.connection));
    }
    base::Result<TakenPayments> take(const std::vector<PaymentMatch> &matches)
    {
        return takePayments(shop.connection, matches, customers,
                            {.employee = 1,
                             .infix = u"26-"_s,
                             .fileName = u"list.csv"_s,
                             .now = shop.workspace.now(),
                             .taxRate = [](const QDate &) { return 10.0; }},
                            base::unwatched);
    }
    QStringList receipts()
    {
        return shop.rows(
            u"SELECT m.伝票番号, m.日付, m.相手先ID, m.社員ID, m.消費税率, m.完了, m.内税, s.商品名, s.規格, "
            "s.数量, s.単位, s.単価, s.金額 FROM 入出庫マスター AS m JOIN 入出庫サブ AS s ON s.ID = m.ID "
            "WHERE m.種別 = 'R' ORDER BY s.明細ID"_s);
    }

    FreshShop shop;
    PayingCustomers customers;
};

} // namespace

class TestPayments : public QObject
{
    Q_OBJECT

private slots:
    void spellingsOfAPayer_data()
    {
        QTest::addColumn<QString>("one");
        QTest::addColumn<QString>("other");
        QTest::addColumn<bool>("isSame");
        const auto row = [](const char16_t *one, const char16_t *other, bool isSame) {
            QTest::newRow(qPrintable(QString::fromUtf16(one)))
                << QString::fromUtf16(one) << QString::fromUtf16(other) << isSame;
        };
        row(u"カ）ヤマダ　シヨウテン", u"ﾔﾏﾀﾞｼｮｳﾃﾝ", true);
        row(u"ﾔﾏﾀﾞｼﾖｳﾃﾝ(ｶ", u"やまだしょうてん", true);
        row(u"株式会社　山田商店", u"山田商店㈱", true);
        row(u"（有）佐藤", u"有限会社佐藤　御中", true);
        row(u"ユ)サトウ", u"ｻﾄｳ(ﾕ)", true);
        row(u"ビューティーサロン", u"ﾋﾞﾕ-ﾃｲ-ｻﾛﾝ", true);
        row(u"0012345 ヤマダ タロウ", u"山田　太郎", false);
        row(u"0012345ヤマダ タロウ", u"ﾔﾏﾀﾞ･ﾀﾛｳ 様", true);
        row(u"ｱｵﾔﾏｶｵﾙ", u"アオヤマカヲル", true);
        row(u"髙橋", u"高橋", true);
        row(u"ﾊﾅｺ", u"ﾊﾞﾅｺ", false);
        row(u"カトウ", u"トウ", false);
        row(u"ユ）カトウ", u"カ）ユトウ", false);
    }

    void spellingsOfAPayer()
    {
        QFETCH(QString, one);
        QFETCH(QString, other);
        QVERIFY(!payerKey(one).isEmpty());
        QTEST(payerKey(one) == payerKey(other), "isSame");
    }

    void whoseAPaymentIs()
    {
        Desk desk;
        QStringList found;
        for (const PaymentMatch &match : desk.matched(*text::toCp932(bankList)))
            found << u"%1 %2 %3 %4"_s.arg(nameOf(match.certainty))
                         .arg(match.customer)
                         .arg(match.ticked)
                         .arg(match.candidates.size());
        QCOMPARE(found, (QStringList{u"確実 1 1 1"_s, u"有力 5 0 2"_s, u"要確認 0 0 2"_s, u"有力 6 0 1"_s,
                                     u"要確認 0 0 2"_s, u"該当なし 0 0 0"_s}));
        // Of one closing day the others' payments are nobody's.
        const auto ofTwentieth = desk.matched(*text::toCp932(bankList), 20);
        QCOMPARE(ofTwentieth[0].certainty, Certainty::None);
        QCOMPARE(ofTwentieth[3].customer, 6);
    }

    // What the first of two payments settles is not open for the second one; what came in since is none
    // either.
    void aBillIsPaidOnce()
    {
        Desk desk;
        const QByteArray twice = "日付,相手先,入金額\n2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,11000\n2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,11000\n";
        auto matches = desk.matched(twice);
        QCOMPARE(matches[0].certainty, Certainty::Certain);
        QVERIFY(matches[1].certainty == Certainty::Likely && !matches[1].ticked);
        QVERIFY(desk.take(matches));
        matches = desk.matched("日付,相手先,入金額\n2026/4/1,山田商店,11000\n");
        QCOMPARE(matches[0].certainty, Certainty::Likely);
        QCOMPARE(missingInWords(missingOf(matches[0], *desk.customers.with(1))), u"11,000 円多い"_s);
    }

    void rowsThatAreNoPayments_data()
    {
        QTest::addColumn<QByteArray>("row");
        QTest::addColumn<QString>("trouble"); // its beginning; "-" for no payment at all
        QTest::newRow("text") << QByteArray("2026/4/1,山田,一万円") << u"金額「一万円」を数字"_s;
        QTest::newRow("taken back") << QByteArray("2026/4/1,山田,-500") << u"金額がマイナス"_s;
        QTest::newRow("parts of a yen") << QByteArray("2026/4/1,山田,0.5") << u"金額「0.5」は、円"_s;
        QTest::newRow("far too much") << QByteArray("2026/4/1,山田,1e300") << u"金額「1e300」"_s;
        QTest::newRow("no day") << QByteArray("2026/2/30,山田,500") << u"日付「2026/2/30」"_s;
        QTest::newRow("a day long ago") << QByteArray("0026/4/1,山田,500") << u"日付「0026/4/1」"_s;
        QTest::newRow("a code for a day") << QByteArray("46113,山田,500") << u"日付「46113」"_s;
        QTest::newRow("money going out") << QByteArray("2026/4/1,山田,") << u"-"_s;
        QTest::newRow("nothing") << QByteArray("2026/4/1,山田,0") << u"-"_s;
    }

    void rowsThatAreNoPayments()
    {
        QFETCH(QByteArray, row);
        QFETCH(QString, trouble);
        Desk desk;
        const auto matches = desk.matched("日付,相手先,入金額\n" + row + "\n2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,11000\n");
        QCOMPARE(matches.size(), std::size_t(trouble == u"-" ? 1 : 2));
        QVERIFY(matches.back().ticked);
        if (trouble != u"-")
            QVERIFY2(matches[0].row.trouble.startsWith(trouble) && !matches[0].ticked,
                     qPrintable(matches[0].row.trouble));
    }

    void receiptsAreThoseOfTheReceiptsScreen()
    {
        Desk desk;
        auto matches = desk.matched(*text::toCp932(bankList));
        matches[1].ticked = true; // likely, and taken as it is
        matches[3].ticked = true;
        matches[2].customer = 4; // chosen: 8,000 are owed
        matches[2].ticked = true;
        matches[5].row.amount = 4560; // 5,500 less a fee that the customer kept back
        matches[5].customer = 2;
        matches[5].ticked = true;
        matches[5].difference = Difference::TransferFee;
        const auto taken = desk.take(matches);
        QVERIFY2(taken, taken ? "" : qPrintable(taken.error().text));
        QCOMPARE(taken->total, 11000.0 + 3000 + 8800 + 20000 + 4560);
        QCOMPARE(desk.receipts(),
                 (QStringList{u"R26-7|2026-04-01|1|1|10|1|-|入　金|銀行振込|-|-|-|11000"_s,
                              u"R26-8|2026-04-01|5|1|10|1|-|入　金|銀行振込|-|-|-|3000"_s,
                              u"R26-9|2026-04-01|4|1|10|1|-|入　金|銀行振込|-|-|-|8800"_s,
                              u"R26-10|2026-04-01|6|1|10|1|-|入　金|銀行振込|-|-|-|20000"_s,
                              u"R26-11|2026-04-01|2|1|10|1|-|入　金|銀行振込|-|-|-|4560"_s,
                              u"R26-11|2026-04-01|2|1|10|1|-|振込手数料|銀行振込|-|-|-|940"_s}));
        // Money does not bring a customer up in the lists.
        QCOMPARE(desk.shop.value(u"SELECT count(*) FROM 納品先 WHERE 更新日 = '2026-03-10'"_s).toInt(), 6);
    }

    // A fee is what is missing after the payments before it, not what the whole bill was.
    void whatIsPaidBeforeIsNotAFee()
    {
        Desk desk;
        auto matches = desk.matched("日付,相手先,入金額\n2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,6000\n2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,4560\n");
        for (PaymentMatch &match : matches)
            match.ticked = true;
        matches[1].difference = Difference::Fee;
        settleInOrder(matches, desk.customers);
        QVERIFY(desk.take(matches));
        QCOMPARE(desk.shop.rows(u"SELECT 商品名, 金額 FROM 入出庫サブ WHERE ID > 6 ORDER BY 明細ID"_s),
                 (QStringList{u"入　金|6000"_s, u"入　金|4560"_s, u"手数料|440"_s}));
    }

    void noRowIsTakenTwice()
    {
        Desk desk;
        const QByteArray equal = "2026/4/1,ﾔﾏﾀﾞｼﾖｳﾃﾝ,5500\n";
        const QByteArray head = "日付,相手先,入金額\n";
        auto matches = desk.matched(head + equal + equal);
        QVERIFY(matches[0].row.key != matches[1].row.key);
        for (PaymentMatch &match : matches)
            match.ticked = true;
        QVERIFY(desk.take(matches));
        QCOMPARE(desk.receipts().size(), 2);
        // The list of the next week, under another name, in another width, with a third one.
        const auto grown = desk.matched(
            "取引日,金額,依頼人名\n2026-04-01,\"5,500\",ﾔﾏﾀﾞ ｼﾖｳﾃﾝ\n20260401,5500,やまだしょうてん\n"
            "2026/4/2,5500,ﾔﾏﾀﾞｼﾖｳﾃﾝ\n2026/4/1,5500,ヤマダシヨウテン\n");
        QStringList taken;
        for (const PaymentMatch &match : grown)
            taken << (match.taken.isEmpty() ? u"-"_s : match.taken);
        QCOMPARE(taken, (QStringList{u"R26-7"_s, u"R26-8"_s, u"-"_s, u"-"_s}));
        // Another program was quicker: nothing of the list is written.
        const auto late = desk.take(matches);
        QVERIFY(!late && late.error().changed);
        QCOMPARE(desk.receipts().size(), 2);
        // A receipt that was deleted can be taken again, and its key may be another's by then.
        QVERIFY(book::deleteSlip(desk.shop.connection, 8));
        desk.shop.run(
            u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (8, '2026-04-01', 'R8', 3)"_s);
        QVERIFY(desk.matched(head + equal + equal)[1].taken.isEmpty());
    }

    void allOrNothing()
    {
        Desk desk;
        auto matches = desk.matched(*text::toCp932(bankList));
        matches[1].ticked = true;
        desk.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 5"_s);
        const auto taken = desk.take(matches);
        QVERIFY(!taken && taken.error().gone);
        QVERIFY2(taken.error().text.startsWith(u"5 行目（ﾀｶﾊｼ）"_s), qPrintable(taken.error().text));
        QVERIFY(desk.receipts().isEmpty());
        QCOMPARE(desk.shop.value(u"SELECT count(*) FROM 入金取込"_s).toInt(), 0);
    }

    // Once a person has said whose a name is, it is known; where two bear it, it is asked for again.
    void aNameIsRemembered()
    {
        Desk desk;
        auto matches = desk.matched("日付,相手先,入金額\n2026/4/1,ﾐﾂｲ ｹﾝｼﾞ,8000\n");
        QCOMPARE(matches[0].customer, 0);
        matches[0].customer = 4;
        matches[0].ticked = true;
        QVERIFY(desk.take(matches));
        QCOMPARE(desk.matched("日付,相手先,入金額\n2026/5/1,ミツイケンジ,700\n")[0].customer, 4);
    }

    void cashBooks()
    {
        FreshShop shop;
        const QString file = databaseOf(
            shop, u"kin.cdb"_s,
            cashBook("INSERT INTO 現金出納帳 VALUES (1, '2026-03-31', '現金', '繰越', '', NULL, NULL, ''),"
                     "(2, '2026-04-01', '現金', '売掛金', '山田商店', 11000, NULL, ''),"
                     "(3, '2026-04-01', 'ゆうちょ', '売掛金', '佐藤', 5500.0, 0, ''),"
                     "(4, '2026-04-01', '普通預金', '仕入', '問屋', 0, 3000, ''),"
                     "(5, '昨日', '現金', '売掛金', '高橋', 'たくさん', NULL, '')"));
        const auto read = readBy(shop, file);
        QVERIFY2(read, read ? "" : qPrintable(read.error().text));
        const auto rows = rowsOf(*read);
        QCOMPARE(rows.size(), std::size_t(3));
        QVERIFY(rows[0].amount == 11000 && rows[0].payer == u"山田商店" && rows[0].trouble.isEmpty());
        QCOMPARE(meansOf(rows[0], true), u"現　金"_s);
        QCOMPARE(meansOf(rows[1], true), u"郵便振替"_s);
        QVERIFY(!rows[2].trouble.isEmpty());
        // Others' cash books have what columns they have.
        const QString other = databaseOf(shop, u"kin2.cdb"_s,
                                         "CREATE TABLE 現金出納帳 (取引日 TEXT, 内容 TEXT, 金額 INTEGER);"
                                         "INSERT INTO 現金出納帳 VALUES ('20260401', '山田商店', 11000)");
        const auto found = rowsOf(*readBy(shop, other));
        QVERIFY(found.size() == 1 && found[0].payer == u"山田商店" && found[0].date == QDate(2026, 4, 1));
    }

    // A table of the old engine, which a process of its own reads.
    void tablesOfTheOldEngine()
    {
        const QString old = QStringLiteral(OLD_FILE);
        const auto table = db::readForeignTable(old, u"納品先"_s, base::unwatched);
        QVERIFY2(table, table ? "" : qPrintable(table.error().text));
        const qsizetype name = table->columns.indexOf(u"納品先名1"_s);
        QVERIFY(name >= 0 && !table->rows.empty() && !table->rows.front().at(name).isEmpty());
        const qsizetype day = table->columns.indexOf(u"更新日"_s);
        QVERIFY(QDate::fromString(table->rows.front().at(day), Qt::ISODate).isValid());
        FreshShop shop;
        const auto none = readBy(shop, old);
        QVERIFY(!none && none.error().text.contains(u"テーブル「現金出納帳」がありません"_s));
    }

    void filesThatTellOfNoPayments_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("told");
        for (const auto &[file, told] : {std::pair{u"own", u"いま開いている"},
                                         {u"pdf", u"PDF の文書"},
                                         {u"none", u"読み取れない"},
                                         {u"view", u"現金出納帳」がありません"},
                                         {u"empty", u"データがありません"},
                                         {u"huge", u""},
                                         {u"quotes", u"引用符"},
                                         {u"damaged", u""},
                                         {u"zeros", u""}})
            QTest::newRow(qPrintable(QString::fromUtf16(file)))
                << QString::fromUtf16(file) << QString::fromUtf16(told);
    }

    void filesThatTellOfNoPayments()
    {
        QFETCH(QString, file);
        QFETCH(QString, told);
        FreshShop shop;
        QString name = shop.path(u"missing.csv"_s);
        if (file == u"own")
            name = shop.connection.fileName();
        else if (file == u"pdf")
            name = fileOf(shop, u"a.csv"_s, "%PDF-1.4\n1,2,3");
        else if (file == u"view")
            name =
                databaseOf(shop, u"a.cdb"_s,
                           "CREATE TABLE t (日付, 相手先, 入金); CREATE VIEW 現金出納帳 AS SELECT * FROM t");
        else if (file == u"empty")
            name = fileOf(shop, u"a.csv"_s, "\n\n");
        else if (file == u"quotes")
            name = fileOf(shop, u"a.csv"_s, "日付,相手先,入金額\n2026/4/1,\"山田,500\n");
        else if (file == u"zeros")
            name = fileOf(shop, u"a.csv"_s, QByteArray(5000, '\0'));
        else if (file == u"huge")
            QVERIFY(QFile::resize(name = fileOf(shop, u"a.csv"_s, "日付"), qint64(3) << 30));
        else if (file == u"damaged") {
            name = databaseOf(
                shop, u"a.cdb"_s,
                cashBook("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
                         "WHERE i < 3000) INSERT INTO 現金出納帳 (日付, 入金) SELECT 'x', i FROM n"));
            QFile bytes(name);
            QVERIFY(bytes.open(QIODevice::ReadWrite) && bytes.seek(3 * 4096) &&
                    bytes.write(QByteArray(8192, 'x')) == 8192);
        }
        const auto read = readBy(shop, name);
        QVERIFY(!read);
        QVERIFY2(!read.error().text.isEmpty() && read.error().text.contains(told),
                 qPrintable(read.error().text));
    }

    void columnsOfABankAreKept()
    {
        FreshShop shop;
        const auto plain =
            readBy(shop, fileOf(shop, u"a.csv"_s, "1,260401,x,500,ﾔﾏﾀﾞ\n1,260402,x,600,ｻﾄｳ\n"));
        QVERIFY(plain && !columnsByHeadings(plain->table));
        PaymentColumns columns;
        QVERIFY(!columns.lack().isEmpty());
        columns[PaymentField::Date] = 1;
        columns[PaymentField::Amount] = 3;
        columns[PaymentField::Payer] = 3;
        QVERIFY(columns.lack().contains(u"同じ列"_s));
        columns[PaymentField::Payer] = 4;
        QVERIFY(columns.lack().isEmpty());
        const QString stored = storedColumns(columns, plain->table);
        QCOMPARE(columnsFromStored(stored, plain->table), std::optional(columns));
        const auto wider = readBy(shop, fileOf(shop, u"b.csv"_s, "1,260401,x,500,ﾔﾏﾀﾞ,9\n"));
        QVERIFY(!columnsFromStored(stored, wider->table));
        for (const char *wrong :
             {"", "5 0 1 3 4", "5 99999999999999999999 1 3 4 -1 -1|", "5 0 9 9 9 9 9|", "x y z"})
            QVERIFY(!columnsFromStored(QString::fromLatin1(wrong), plain->table));
    }
};

QTEST_GUILESS_MAIN(TestPayments)
#include "tst_payments.moc"
