#include "db/recordset.h"
#include "registers/lists/customer_search.h"
#include "registers/lists/roster.h"
#include "support/fresh_shop.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using registers::CustomerQuery;

namespace
{

// Five customers; the category of 4 is not registered and 5 has none, so that neither is ever found.
void fill(FreshShop &shop)
{
    shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (2, '一般')"_s);
    shop.run(u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, 納品先名キー, フリガナ, 区分ID, 住所1, "
             u"住所2, TEL1, TEL2, "
             "FAX, メール, メモ, 登録日, 更新日, 誕生日, 締め日, 消費税区分, 元帳出力) VALUES "
             "(1, 'B12', '山田', '山田 B12', 'ﾔﾏﾀﾞ', 2, '東京都港区', '港ビル', '03-1', '090-1', '03-9', "
             "'a@x.jp', "
             "'100%引き', '2026-01-04', '2026-03-01', '1970/5/1', 0, 2, 1), "
             "(2, 'A12', '鈴木', '鈴木 A12', 'ｽｽﾞｷ', 1, '東京都北区', '北荘', '03', '090-2', '03', 'b@x.jp', "
             "'10の引き', '2025-12-31', '2026-02-01', '1970-05-01', 20, 0, 0), "
             "(3, '12A', '佐藤', '佐藤 12A', 'ｻﾄｳ', 1, '大阪市', '''梅''田', '06-03', '080', NULL, 'B@X.JP', "
             "NULL, '2026-04-01', '2026-04-01', '五月', 15, 0, 1), "
             "(4, 'A12', '無区分', '無区分 03', 'ﾑ', 9, '東京都', '港', '03', '0', '03', 'm', '引き', "
             "'2026-01-04', "
             "'2026-04-02', '1970/5/1', 0, 0, 1), "
             "(5, 'A12', '区分なし', '区分なし', 'ｸ', NULL, '東京都', '港', '03', '0', '03', 'm', '引き', "
             "'2026-01-04', "
             "'2026-04-02', '1970/5/1', 0, 0, 1)"_s);
}

int itemNamed(const QString &name) { return int(registers::customerSearchItems().indexOf(name)); }
int orderNamed(const QString &name) { return int(registers::customerSearchOrders().indexOf(name)); }

} // namespace

class TestCustomerSearch : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_shop = std::make_unique<FreshShop>();
        fill(*m_shop);
    }
    void cleanupTestCase() { m_shop.reset(); }

    void offersItemsAndOrders()
    {
        QCOMPARE(
            registers::customerSearchItems().join(u' '),
            u"すべて選択 納品先区分 納品先名 ﾌﾘｶﾞﾅ 住所1 住所2 TEL1 TEL2 FAX ﾒｰﾙｱﾄﾞﾚｽ 登録日 更新日 メモ "
            "誕生日 消費税区分 締め日 コード 元帳出力"_s);
        QCOMPARE(registers::customerSearchOrders().join(u' '),
                 u"登録日昇順 更新日降順 ﾌﾘｶﾞﾅ昇順 登録区分昇順 検索項目昇順"_s);
    }

    void finds_data()
    {
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("condition");
        QTest::addColumn<QString>("partial"); // keys found, in the column's own order
        QTest::addColumn<QString>("exact");
        const auto row = [](const char16_t *item, const char16_t *condition, const char *partial,
                            const char *exact) {
            const QString name = QString::fromUtf16(item) + u' ' + QString::fromUtf16(condition);
            QTest::newRow(name.toUtf8().constData())
                << QString::fromUtf16(item) << QString::fromUtf16(condition) << QString::fromLatin1(partial)
                << QString::fromLatin1(exact);
        };
        row(u"すべて選択", u"", "1 2 3", "1 2 3");
        row(u"納品先区分", u"1", "2 3", "2 3");
        row(u"納品先区分", u"２", "1", "1");
        row(u"納品先区分", u"得意先", "2 3", "2 3");
        row(u"納品先区分", u"得意", "", "");
        row(u"納品先区分", u"9", "", "");
        row(u"納品先名", u"山田", "1", "");
        row(u"納品先名", u"山田 B12", "1", "1");
        row(u"納品先名", u"12", "3 1 2", "");
        row(u"ﾌﾘｶﾞﾅ", u"やまだ", "1", "1");
        row(u"ﾌﾘｶﾞﾅ", u"ズ", "2", "");
        row(u"住所1", u"東京都", "2 1", "");
        row(u"住所1", u"大阪市", "3", "3");
        row(u"住所2", u"'梅'", "3", "");
        row(u"住所2", u"' OR 1=1 --", "", "");
        row(u"TEL1", u"03", "2 1 3", "2");
        row(u"TEL1", u"０３", "2 1 3", "2");
        row(u"TEL2", u"090", "1 2", "");
        row(u"FAX", u"03", "2 1", "2");
        row(u"ﾒｰﾙｱﾄﾞﾚｽ", u"b@x.jp", "3 2", "3 2");
        row(u"登録日", u"2026/0", "1 3", "");
        row(u"登録日", u"2026-01", "1", "");
        row(u"登録日", u"/12/", "2", "");
        row(u"登録日", u"2026/01/04", "1", "1");
        row(u"登録日", u"2026/1/4", "", "1");
        row(u"登録日", u"20260104", "", "1");
        row(u"登録日", u"2026/02/30", "", "");
        row(u"登録日", u"きのう", "", "");
        row(u"登録日", u"R8.1.4", "1", "1");
        row(u"登録日", u"令和７年１２月３１日", "2", "2");
        row(u"誕生日", u"昭和45年5月1日", "2 1", "2 1");
        row(u"更新日", u"2026", "2 1 3", "");
        row(u"更新日", u"2026-04-01", "3", "3");
        row(u"誕生日", u"1970/05/01", "2", "2 1");
        row(u"誕生日", u"1970", "2 1", "");
        row(u"誕生日", u"五", "3", "");
        row(u"メモ", u"引き", "1 2", "");
        row(u"メモ", u"100%引き", "1", "1");
        row(u"メモ", u"0%", "1", ""); // each sign stands for itself
        row(u"メモ", u"10%き", "", "");
        row(u"メモ", u"10_引き", "", "");
        row(u"メモ", u"\\%", "", "");
        row(u"誕生日", u"1970_5", "", "");
        row(u"消費税区分", u"0", "2 3", "2 3");
        row(u"消費税区分", u"内税", "1", "1");
        row(u"消費税区分", u"外税(納品時)", "2 3", "2 3");
        row(u"締め日", u"末日", "1", "1");
        row(u"締め日", u"20日", "2", "2");
        row(u"締め日", u"月", "", "");
        row(u"元帳出力", u"する", "1 3", "1 3");
        row(u"締め日", u"20", "2", "2");
        row(u"締め日", u"0", "1", "1");
        row(u"元帳出力", u"1", "1 3", "1 3");
        row(u"元帳出力", u"1.5", "", "");
        row(u"コード", u"12", "3", "");
        row(u"コード", u"a12", "2", "2");
    }

    void finds()
    {
        QFETCH(QString, item);
        QFETCH(QString, condition);
        CustomerQuery query{itemNamed(item), condition, false, orderNamed(u"検索項目昇順"_s)};
        // Rows that are equal in the order asked for come as they like.
        if (item == u"ﾒｰﾙｱﾄﾞﾚｽ"_s)
            query.condition = condition.toUpper();
        QTEST(found(query), "partial");
        query.exact = true;
        QTEST(found(query), "exact");
    }

    void findsByDays_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("until");
        QTest::addColumn<QString>("keys");
        QTest::newRow("days") << u"2025/12/31"_s << u"2026-1-4"_s << u"2 1"_s;
        QTest::newRow("a day before the first") << u"2026/1/1"_s << u"２０２６/１/４"_s << u"1"_s;
        QTest::newRow("months") << u"2026/1"_s << u"2026/4"_s << u"1 3"_s;
        QTest::newRow("to the end of a month") << u"2025"_s << u"2025/12"_s << u"2"_s;
        QTest::newRow("a year") << u"2026"_s << u"2026"_s << u"1 3"_s;
        QTest::newRow("without a first day") << u""_s << u"2026/1/4"_s << u"2 1"_s;
        QTest::newRow("the wrong way round") << u"2026/4"_s << u"2026/1"_s << u""_s;
        QTest::newRow("no day") << u"2026/1/1"_s << u"2026/2/30"_s << u""_s;
        QTest::newRow("no first day") << u"きのう"_s << u"2026/4/1"_s << u""_s;
    }
    void findsByDays()
    {
        QFETCH(QString, from);
        QFETCH(QString, until);
        CustomerQuery query{itemNamed(u"登録日"_s), from};
        query.until = until;
        QTEST(found(query), "keys");
    }

    // Nothing would be found, and nobody would know why.
    void saysWhatIsNoDay_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("until");
        QTest::addColumn<bool>("isDay");
        QTest::newRow("eras") << u"R2.1.1"_s << u"令和２年１２月３１日"_s << true;
        QTest::newRow("months") << u"2026/1"_s << u"2026/4"_s << true;
        QTest::newRow("no first day") << u""_s << u"R2.12.31"_s << true;
        QTest::newRow("a part") << u"五月"_s << u""_s << true;
        QTest::newRow("a word to a day") << u"きのう"_s << u"2026/4/1"_s << false;
        QTest::newRow("a day to a word") << u"2026/4/1"_s << u"きのう"_s << false;
        QTest::newRow("not in its era") << u"H32.4.1"_s << u""_s << false;
        QTest::newRow("not in the calendar") << u"2026/2/30"_s << u""_s << false;
    }
    void saysWhatIsNoDay()
    {
        QFETCH(QString, from);
        QFETCH(QString, until);
        QFETCH(bool, isDay);
        CustomerQuery query{itemNamed(u"誕生日"_s), from};
        query.until = until;
        const auto lack = registers::lackOf(query);
        QCOMPARE(!lack, isDay);
        QVERIFY(isDay || lack == registers::QueryLack::Day);
    }

    void findsReadingsAsTheyAreTyped()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先')"_s);
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, フリガナ, 区分ID) VALUES (1, 'ｼﾖｳｼﾞ', 1), (2, 'ショウジ', 1), "
            "(3, 'ｼﾖｳｼﾞﾔ', 1)"_s);
        for (const QString &typed : {u"しょうじ"_s, u"ショウジ"_s, u"ｼｮｳｼﾞ"_s}) {
            QCOMPARE(found(shop, {itemNamed(u"ﾌﾘｶﾞﾅ"_s), typed, true, orderNamed(u"登録区分昇順"_s)}),
                     u"1 2"_s);
            QCOMPARE(found(shop, {itemNamed(u"ﾌﾘｶﾞﾅ"_s), typed, false, orderNamed(u"登録区分昇順"_s)}),
                     u"1 2 3"_s);
        }
    }

    // Whichever way they were typed; what is no day is in no span.
    void findsBirthdaysInASpan()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先')"_s);
        int id = 0;
        for (const QString &birthday :
             {u"1970-05-01"_s, u"1970/5/1"_s, u"昭和45年5月1日"_s, u"S45.5.1"_s, u"19700501"_s, u"五月"_s,
              u"1970-02-30"_s, u"1971-05-01"_s, QString()})
            shop.run(u"INSERT INTO 納品先 (納品先ID, 誕生日, 区分ID) VALUES (?, ?, 1)"_s, {++id, birthday});
        CustomerQuery query{itemNamed(u"誕生日"_s), u"1970/4"_s, false, orderNamed(u"登録区分昇順"_s)};
        query.until = u"1970/5"_s;
        QCOMPARE(found(shop, query), u"1 2 3 4 5"_s);
        query.condition = u"S45.4.30"_s;
        query.until = u"昭和４５年５月２日"_s;
        QCOMPARE(found(shop, query), u"1 2 3 4 5"_s);
        query.condition = u"昭和45年5月1日"_s;
        query.until.clear();
        QCOMPARE(found(shop, query), u"1 2 3 4 5"_s);
        query.condition.clear();
        query.until = u"1970/4/30"_s;
        QCOMPARE(found(shop, query), QString());
    }

    void findsWhatMeetsAllConditions()
    {
        const auto term = [](const QString &item, const QString &condition, bool exact = false) {
            return registers::CustomerTerm{itemNamed(item), condition, exact, {}};
        };
        CustomerQuery query{itemNamed(u"住所1"_s), u"東京"_s};
        query.further = {term(u"納品先区分"_s, u"得意先"_s), {}};
        QCOMPARE(found(query), u"2"_s);
        query.further = {term(u"元帳出力"_s, u"する"_s), term(u"TEL1"_s, u"03-1"_s, true)};
        QCOMPARE(found(query), u"1"_s);
        query.further = {term(u"コード"_s, u"12"_s)}; // the prefix is the first condition's alone
        QCOMPARE(found(query), u"2 1"_s);
        CustomerQuery every{registers::everyCustomerItem};
        every.further = {term(u"消費税区分"_s, u"外税（納品時）"_s), term(u"登録日"_s, u"2026"_s)};
        QCOMPARE(found(every), u"3"_s);
        every.further = {{-1, u"x"_s}};
        QCOMPARE(registers::lackOf(every), registers::QueryLack::Item);
        every.further = {{itemNamed(u"TEL1"_s)}};
        QCOMPARE(registers::lackOf(every), registers::QueryLack::Condition);
    }

    void orders_data()
    {
        QTest::addColumn<QString>("keys");
        QTest::newRow("登録日昇順") << u"2 1 3"_s;
        QTest::newRow("更新日降順") << u"3 1 2"_s;
        QTest::newRow("ﾌﾘｶﾞﾅ昇順") << u"3 2 1"_s;
        QTest::newRow("検索項目昇順") << u"3"_s; // then the start of a code counts, else any part of it
    }

    void orders()
    {
        const int order = orderNamed(QString::fromUtf8(QTest::currentDataTag()));
        QTEST(found({itemNamed(u"コード"_s), u"12"_s, false, order}), "keys");
    }

    void ordersByCategory()
    {
        QVERIFY(found({0, {}, false, orderNamed(u"登録区分昇順"_s)}).endsWith(u" 1"_s));
    }

    // As in a dictionary, whatever the characters' numbers are: voiced kana beside the others, wide ones
    // beside half-width ones.
    void ordersReadingsByTheSounds()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先')"_s);
        int id = 0;
        for (const QString &reading : {u"ｶﾜｲ"_s, u"ｶﾞﾏ"_s, u"アオキ"_s, u"ｷﾑﾗ"_s, u"ｱｲﾀﾞ"_s, u"ギオン"_s})
            shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名キー, フリガナ, 区分ID) VALUES (?, ?, ?, 1)"_s,
                     {++id, reading, reading});
        const QString byReading = u"5 3 2 1 6 4"_s;
        QCOMPARE(found(shop, {0, {}, false, orderNamed(u"ﾌﾘｶﾞﾅ昇順"_s)}), byReading);
        QCOMPARE(found(shop, {itemNamed(u"ﾌﾘｶﾞﾅ"_s), {}, false, orderNamed(u"検索項目昇順"_s)}), byReading);
        // On paper too.
        const registers::RosterOptions readingsAlone{
            u"名簿"_s, {}, registers::rosterColumnsFrom(u"000010000000000"_s)};
        const auto printed =
            registers::roster(shop.connection, {1, 2, 3, 4, 5, 6}, readingsAlone, base::unwatched);
        QVERIFY(printed);
        QStringList readings;
        for (const base::ReportRow &row : printed->rows)
            readings << row.values.constFirst().toString();
        QCOMPARE(readings.join(u' '), u"ｱｲﾀﾞ アオキ ｶﾞﾏ ｶﾜｲ ギオン ｷﾑﾗ"_s);
        // Who has no honorific of his own is addressed as on all paper.
        shop.run(u"UPDATE 納品先 SET 敬称 = '先生' WHERE 納品先ID = 5"_s);
        shop.run(u"UPDATE 納品先 SET 敬称 = 'なし' WHERE 納品先ID = 3"_s);
        const registers::RosterOptions honorificsAlone{
            u"名簿"_s, {}, registers::rosterColumnsFrom(u"000100000000000"_s)};
        const auto addressed =
            registers::roster(shop.connection, {5, 3, 2}, honorificsAlone, base::unwatched);
        QVERIFY(addressed);
        QCOMPARE(addressed->rows[0].values.constFirst().toString(), u"先生"_s);
        QCOMPARE(addressed->rows[1].values.constFirst().toString(), QString());
        QCOMPARE(addressed->rows[2].values.constFirst().toString(), u"様"_s);
    }

    void tellsWhatIsLacking()
    {
        using registers::QueryLack;
        QCOMPARE(registers::lackOf({}), QueryLack::Item);
        QCOMPARE(registers::lackOf({.item = itemNamed(u"TEL1"_s)}), QueryLack::Condition);
        QVERIFY(!registers::lackOf({.item = registers::everyCustomerItem}));
        QVERIFY(!registers::lackOf({.item = itemNamed(u"TEL1"_s), .condition = u"0"_s}));
    }

    void theRecordSetHoldsTheCustomersFound()
    {
        FreshShop shop;
        fill(shop);
        db::Recordset customers(shop.connection);
        QVERIFY(registers::openCustomersFound(customers, {itemNamed(u"納品先区分"_s), u"1"_s}));
        QCOMPARE(customers.table(), u"納品先"_s);
        QCOMPARE(customers.count(), 2);
        QCOMPARE(customers.columns().size(), 25);
        QCOMPARE(customers.value(u"区分ID"_s).toInt(), 1);
        customers.setValue(u"区分ID"_s, 2);
        customers.setValue(u"メモ"_s, u"新"_s);
        QVERIFY(customers.update());
        QCOMPARE(shop.rows(u"SELECT 区分ID, メモ FROM 納品先 WHERE 納品先ID = "_s +
                           QString::number(customers.currentKey())),
                 QStringList{u"2|新"_s});
        // It has left its category, and stays in the list until the next search.
        QCOMPARE(customers.count(), 2);
        QVERIFY(customers.remove());
        QCOMPARE(shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 4);
        QCOMPARE(shop.value(u"SELECT count(*) FROM 登録区分"_s).toInt(), 2);
    }

private:
    QString found(const CustomerQuery &query) { return found(*m_shop, query); }

    static QString found(FreshShop &shop, const CustomerQuery &query)
    {
        db::Recordset customers(shop.connection);
        if (const base::Status opened = registers::openCustomersFound(customers, query); !opened)
            return opened.error().text;
        QStringList keys;
        for (int row = 0; row < customers.count(); ++row)
            keys << QString::number(customers.keyAt(row));
        return keys.join(u' ');
    }

    std::unique_ptr<FreshShop> m_shop;
};

QTEST_MAIN(TestCustomerSearch)
#include "tst_customer_search.moc"
