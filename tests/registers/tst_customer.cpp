#include "db/recordset.h"
#include "registers/customer.h"
#include "support/fresh_shop.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QDate openingDay(2026, 4, 1);
const QDate laterDay(2026, 5, 20);

} // namespace

class TestCustomer : public QObject
{
    Q_OBJECT

private slots:
    void buildsTheKey_data()
    {
        QTest::addColumn<QStringList>("fields"); // 納品先名1, 納品先名2, コード, TEL1, フリガナ
        QTest::addColumn<QString>("key");
        const QString none;
        QTest::newRow("no code") << QStringList{u"山田　太郎"_s, none, none, u"03-1234-5678"_s, u"ﾔﾏﾀﾞﾀﾛｳ"_s}
                                 << u"山田太郎  03-1234-5678 ﾔﾏﾀﾞﾀﾛｳ"_s;
        QTest::newRow("all fields") << QStringList{u"　山田　商店 "_s, u"営業部　御中　"_s, u"A1"_s, u"03"_s,
                                                   u"ﾔ"_s}
                                    << u"山田商店 営業部御中 A1 03 ﾔ"_s;
        QTest::newRow("nothing") << QStringList{none, none, none, none, none} << u"   "_s;
        QTest::newRow("cut, the reading pushed out")
            << QStringList{QString(149, u'山'), none, u"C"_s, u"03"_s, u"ﾔﾏ"_s} << QString(149, u'山') + u' ';
        QTest::newRow("never half a character")
            << QStringList{QString(149, u'山') + u"😀"_s, none, none, none, none} << QString(149, u'山');
    }

    void buildsTheKey()
    {
        QFETCH(QStringList, fields);
        QTEST(registers::customerKey(fields[0], fields[1], fields[2], fields[3], fields[4]), "key");
    }

    void bringsIntoStoredForm_data()
    {
        QTest::addColumn<bool>("isMail");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("stored");
        QTest::newRow("full-width digits") << false << u"０３－１２３４－５６７８"_s << u"03-1234-5678"_s;
        QTest::newRow("long vowel marks") << false << u"０３ー１２３４ー５６７８"_s << u"03-1234-5678"_s;
        QTest::newRow("signs of other methods") << false << u"03‐1234−5678"_s << u"03-1234-5678"_s;
        QTest::newRow("16th dropped")
            << false << u"１２３４５６７８９０１２３４５６"_s << u"123456789012345"_s;
        QTest::newRow("voiced kana widen") << false << QString(15, u'ガ') << u"ｶﾞｶﾞｶﾞｶﾞｶﾞｶﾞｶﾞｶ"_s;
        QTest::newRow("half an emoji") << false << u"12345678901234😀"_s << u"12345678901234"_s;
        QTest::newRow("mailto") << true << u"mailto:a@example.jp"_s << u"a@example.jp"_s;
        QTest::newRow("MAILTO") << true << u"MailTo:a@example.jp"_s << u"a@example.jp"_s;
        QTest::newRow("full-width mail") << true << u"ａ＠ｅｘａｍｐｌｅ．ｊｐ"_s << u"a@example.jp"_s;
        QTest::newRow("51st dropped") << true << QString(51, u'a') << QString(50, u'a');
        QTest::newRow("50 after mailto:") << true << u"mailto:"_s + QString(50, u'a') << QString(50, u'a');
    }

    void bringsIntoStoredForm()
    {
        QFETCH(bool, isMail);
        QFETCH(QString, typed);
        QTEST(isMail ? registers::normalisedMail(typed) : registers::normalisedPhone(typed), "stored");
    }

    void linksPlainAddressesOnly_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("link");
        QTest::newRow("plain") << u"taro+shop@example.co.jp"_s << u"mailto:taro+shop@example.co.jp"_s;
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("no address") << u"なし"_s << QString();
        QTest::newRow("headers") << u"a@example.jp?bcc=b@example.jp"_s << QString();
        QTest::newRow("two") << u"a@example.jp,b@example.jp"_s << QString();
        QTest::newRow("another scheme") << u"file:///etc/passwd"_s << QString();
        QTest::newRow("line break") << u"a@example.jp\n"_s << QString();
    }

    void linksPlainAddressesOnly()
    {
        QFETCH(QString, address);
        const auto link = registers::mailLink(address);
        QTEST(link ? link->toString() : QString(), "link");
    }

    void namesClosingDays()
    {
        const QStringList names = registers::closingDayNames();
        QCOMPARE(names.size(), 31);
        QCOMPARE(names.at(0), u"末日"_s);
        QCOMPARE(names.at(15), u"15 日"_s);
        QCOMPARE(names.at(30), u"30 日"_s);
    }

    void keysFollowTheHighest()
    {
        FreshShop shop;
        QCOMPARE(*registers::addCustomer(shop.connection, openingDay), 1);
        QCOMPARE(*registers::addCustomer(shop.connection, openingDay), 2);
        QCOMPARE(*registers::addCustomer(shop.connection, openingDay), 3);
        shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 2"_s);
        QCOMPARE(*registers::addCustomer(shop.connection, openingDay), 4);
        shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 4"_s);
        QCOMPARE(*registers::addCustomer(shop.connection, openingDay), 4);
        // Slips of a deleted customer never become the next one's; a supplier's of that number are no
        // concern.
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (1, 'O1', 5), (2, 'R2', 7), (3, 'I3', 9)"_s);
        QCOMPARE(*registers::addCustomer(shop.connection, openingDay), 6);
        QCOMPARE(*registers::addCustomer(shop.connection, openingDay), 8);
        shop.run(u"DELETE FROM 納品先 WHERE 納品先ID IN (6, 8)"_s);
        QCOMPARE(
            shop.rows(
                u"SELECT 納品先ID, 納品先名1, 区分ID, 登録日, 更新日, 締め日, 消費税区分, 元帳出力 FROM 納品先 WHERE 納品先ID = 4"_s),
            QStringList{u"4|-|-|2026-04-01|2026-04-01|-|0|0"_s});
    }

    void searches_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("found");
        QTest::newRow("reading in hiragana") << u"やまだ"_s << u"1"_s;
        QTest::newRow("part of the telephone, full width") << u"１２３４"_s << u"1 2"_s;
        QTest::newRow("small kana for large") << u"しょうじ"_s << u"4"_s;
        QTest::newRow("small half-width kana") << u"ｼｮｳｼﾞ"_s << u"4"_s;
        QTest::newRow("long vowel of a reading") << u"らーめん"_s << u"4"_s;
        QTest::newRow("long vowel in a number") << u"03ー1234"_s << u"1"_s;
        QTest::newRow("name with its blank") << u"東海林　さだお"_s << u"4"_s;
        QTest::newRow("a narrow blank") << u"東海林 さだお"_s << u"4"_s;
        QTest::newRow("reading and number") << u"やまだ 1234"_s << u"1"_s;
        QTest::newRow("code") << u"K7"_s << u"2"_s;
        QTest::newRow("quote") << u"O'Neil"_s << u"3"_s;
        QTest::newRow("statement") << u"'; DROP TABLE 納品先; --"_s << QString();
        QTest::newRow("signs of patterns") << u"%_%"_s << QString();
        QTest::newRow("nothing") << u"鈴木"_s << QString();
    }

    // The last changed first, then by reading.
    void searches()
    {
        QFETCH(QString, text);
        FreshShop shop;
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, 納品先名キー, フリガナ, 更新日) VALUES "
            "(3, 'O''Neil   ｵﾆｰﾙ', 'ｵﾆｰﾙ', '2026-01-01'), (2, '佐藤 K7 06-1234 ｻﾄｳ', 'ｻﾄｳ', '2026-02-01'), "
            "(1, '山田  03-1234 ﾔﾏﾀﾞ', 'ｱ', '2026-02-01'), "
            "(4, '東海林さだお  052-99 ｼﾖｳｼﾞｻﾀﾞｵ ﾗ-ﾒﾝ', 'ｼ', '2026-02-01')"_s);
        db::Recordset customers(shop.connection);
        const auto found = registers::openCustomersLike(customers, text);
        QVERIFY(found);
        QCOMPARE(*found, !customers.isEmpty());
        QStringList keys;
        for (int row = 0; row < customers.count(); ++row)
            keys << QString::number(customers.keyAt(row));
        QTEST(keys.join(u' '), "found");
    }

    // More words than a condition of the database can have.
    void searchesForAPastedPage()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名キー) VALUES (1, '山田'), (2, '佐藤')"_s);
        db::Recordset customers(shop.connection);
        const auto found = registers::openCustomersLike(customers, u"山田\r\n"_s.repeated(3000));
        QVERIFY2(found && *found, found ? "" : qPrintable(found.error().text));
        QCOMPARE(customers.count(), 1);
    }

    void refuses_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("category");
        QTest::addColumn<QString>("refusal");
        const QString noName = u"納品先名が入力されていません。               "_s;
        const QString noCategory = u"納品先区分が入力されていません。               "_s;
        QTest::newRow("no name") << QString() << QVariant(5) << noName;
        QTest::newRow("blank name") << u"　 "_s << QVariant(5) << noName;
        QTest::newRow("no category") << u"山田"_s << QVariant() << noCategory;
        QTest::newRow("category deleted") << u"山田"_s << QVariant(6) << noCategory;
        QTest::newRow("complete") << u"山田"_s << QVariant(5) << QString();
    }

    void refuses()
    {
        QFETCH(QString, name);
        QFETCH(QVariant, category);
        FreshShop shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 区分ID) VALUES (1, ?, ?)"_s, {name, category});
        db::Recordset customers(shop.connection);
        QVERIFY(registers::openCustomer(customers, 1));
        const auto refusal = registers::customerRefusal(customers, {{5, u"得意先"_s}});
        QTEST(refusal ? refusal->text : QString(), "refusal");
    }

    void keepsWhatNobodyTyped()
    {
        FreshShop shop;
        const QString longMail(60, u'a');
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, メール, TEL1) VALUES (1, '山田', ?, '０３')"_s,
                 {longMail});
        db::Recordset customers(shop.connection);
        QVERIFY(registers::openCustomer(customers, 1));
        customers.setValue(u"メモ"_s, u"改装中"_s);
        QVERIFY(registers::saveCustomer(customers, laterDay));
        QCOMPARE(shop.rows(u"SELECT メール, TEL1, メモ FROM 納品先"_s),
                 QStringList{longMail + u"|０３|改装中"_s});
    }

    void storesAnyText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("quotes") << u"O'Neil \"商店\" ; --"_s;
        QTest::newRow("per cent") << u"100%_ストア"_s;
        QTest::newRow("emoji") << u"花屋😀"_s;
        QTest::newRow("backslash") << u"C:\\表\\"_s;
        QTest::newRow("combining marks") << u"か\u3099ーテ\u3099ン"_s;
        QTest::newRow("rare characters") << u"①㈱髙﨑〜𠮷"_s;
        QTest::newRow("150 characters") << QString(150, u'山');
    }

    void storesAnyText()
    {
        QFETCH(QString, name);
        FreshShop shop;
        const auto id = registers::addCustomer(shop.connection, openingDay);
        db::Recordset customers(shop.connection);
        QVERIFY(registers::openCustomer(customers, *id));
        customers.setValue(u"納品先名1"_s, name);
        QVERIFY(registers::saveCustomer(customers, laterDay));
        db::Recordset again(shop.connection);
        QVERIFY(registers::openCustomer(again, *id));
        QCOMPARE(again.text(u"納品先名1"_s), name);
        QVERIFY(*registers::openCustomersLike(again, name));
    }

    void theKeyFollowsAnotherProgramsChanges()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, フリガナ) VALUES (1, '山田', 'ﾔﾏﾀﾞ')"_s);
        db::Recordset customers(shop.connection);
        QVERIFY(registers::openCustomer(customers, 1));
        QCOMPARE(customers.text(u"納品先名1"_s), u"山田"_s);
        shop.run(u"UPDATE 納品先 SET 納品先名1 = '鈴木', フリガナ = 'ｽｽﾞｷ'"_s);
        customers.setValue(u"TEL1"_s, u"03-1234-5678"_s);
        const base::Status stale = registers::saveCustomer(customers, laterDay);
        QVERIFY(!stale && stale.error().changed);
        QCOMPARE(shop.rows(u"SELECT 納品先名1, 納品先名キー FROM 納品先"_s), QStringList{u"鈴木|-"_s});
        customers.refresh();
        QVERIFY(registers::saveCustomer(customers, laterDay));
        QCOMPARE(shop.rows(u"SELECT 納品先名1, 納品先名キー FROM 納品先"_s),
                 QStringList{u"鈴木|鈴木  03-1234-5678 ｽｽﾞｷ"_s});
    }

    void noticesSharedCodes_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<bool>("shared");
        QTest::newRow("own") << u"A1"_s << false;
        QTest::newRow("free") << u"Z9"_s << false;
        QTest::newRow("another's") << u"B2"_s << true;
        QTest::newRow("of two others") << u"C3"_s << true;
        QTest::newRow("none") << QString() << false;
    }

    void noticesSharedCodes()
    {
        QFETCH(QString, code);
        FreshShop shop;
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, コード) VALUES (1, 'A1'), (2, 'B2'), (3, 'C3'), (4, 'C3'), (5, '')"_s);
        db::Recordset customers(shop.connection);
        QVERIFY(registers::openCustomer(customers, 1));
        customers.setValue(u"コード"_s, code);
        const auto shared = registers::codeIsShared(shop.connection, customers);
        QVERIFY(shared);
        QTEST(*shared, "shared");
    }
};

QTEST_GUILESS_MAIN(TestCustomer)
#include "tst_customer.moc"
