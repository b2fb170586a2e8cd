// Tracking numbers out of the carriers' answers: which columns, whose they are, and what is not taken.
#include "carrier_shop.h"
#include "shipping/carriers/tracking_matches.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

const QDate exportDay(2026, 4, 1);

// A shop that has exported five parcels; the third one has its number already.
void makeParcels(FreshShop &shop)
{
    for (int i = 1; i <= 6; ++i) {
        Shipment shipment = hurriedShipment();
        shipment.exported = i <= 5 ? exportDay : QDate();
        shipment.trackingNumber = i == 3 ? u"312345678901"_s : QString();
        kept(shop, shipment);
    }
}

base::Result<registers::ImportTable> tableOf(const FreshShop &shop, const QByteArray &content)
{
    return readTrackingFile(fileOf(shop, u"answer.csv"_s, content), shop.connection.fileName(),
                            base::unwatched);
}

std::vector<TrackingMatch> matchesOf(FreshShop &shop, const QByteArray &content)
{
    const auto table = tableOf(shop, content);
    if (!table)
        qFatal("%s", qPrintable(table.error().text));
    const auto columns = trackingColumnsByHeadings(*table);
    if (!columns)
        qFatal("no columns");
    return *matchTracking(shop.connection, *table, *columns, {u"KB-"_s}, base::unwatched);
}

const QByteArray heading = "お客様管理番号,お届け先名,伝票番号\n";

} // namespace

class TestTracking : public QObject
{
    Q_OBJECT

private slots:
    void rowsAreJudged_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("states"); // of the rows, a ticked one with "*"
        QTest::addColumn<QString>("remark"); // within the first row's
        const auto row = [](const char *name, const QByteArray &lines, const QString &states,
                            const QString &remark = {}) { QTest::newRow(name) << lines << states << remark; };
        row("new", "KB-1,山田　太郎,3912-3456-7894\n", u"新しい番号*"_s);
        row("in any width and case", "ｋｂ－１,㈱山田商店,３９１２３４５６７８９４\n", u"新しい番号*"_s);
        row("a wrong check digit is only a remark", "KB-1,,391234567893\n", u"新しい番号*"_s,
            u"最後の数字"_s);
        row("the same again", "KB-3,,3123-4567-8901\n", u"記録済み"_s);
        row("another one than before", "KB-3,,391234567894\n", u"番号がちがう"_s, u"312345678901"_s);
        row("somebody else's number", "12,,391234567894\nWEB-1,,391234567894\n", u"該当なし 該当なし"_s);
        row("a key that is none", "KB-99999999999,,391234567894\nKB-0,,391234567894\n",
            u"該当なし 該当なし"_s);
        row("no shipment of that key", "KB-77,,391234567894\n", u"該当なし"_s);
        row("no number yet", "KB-1,,\n", u"使えません"_s, u"ありません"_s);
        row("spoilt by a spreadsheet", "KB-1,,3.91235E+11\n", u"使えません"_s, u"形ではありません"_s);
        row("the same row twice", "KB-1,,391234567894\nKB-1,,391234567894\n", u"新しい番号* 記録済み"_s);
        row("two numbers for one", "KB-1,,391234567894\nKB-1,,391234567905\n", u"新しい番号 新しい番号"_s,
            u"ちがう送り状番号"_s);
        row("one number for two", "KB-1,,391234567894\nKB-2,,391234567894\n", u"新しい番号 新しい番号"_s,
            u"ちがう管理番号"_s);
        row("a number that another one has", "KB-1,,312345678901\n", u"新しい番号"_s, u"ほかの発送"_s);
        row("to another consignee", "KB-1,鈴木花子,391234567894\n", u"新しい番号"_s, u"名前がちがいます"_s);
        row("a digit lost", "KB-1,,39123456789\n", u"新しい番号"_s, u"11 けた"_s);
        row("never exported", "KB-6,,391234567894\n", u"新しい番号"_s, u"書き出していない"_s);
    }

    void rowsAreJudged()
    {
        QFETCH(QByteArray, lines);
        FreshShop shop;
        makeParcels(shop);
        const auto matches = matchesOf(shop, heading + lines);
        QStringList states;
        for (const TrackingMatch &match : matches)
            states << nameOf(match.state) + (match.ticked ? u"*"_s : QString());
        QTEST(states.join(u' '), "states");
        QFETCH(QString, remark);
        QVERIFY2(remark.isEmpty() ? matches.front().remark.isEmpty()
                                  : matches.front().remark.contains(remark),
                 qPrintable(matches.front().remark));
    }

    // All of them or none, and never over what another program did.
    void numbersAreStoredTogether()
    {
        FreshShop shop;
        makeParcels(shop);
        auto matches =
            matchesOf(shop, heading + "KB-1,,391234567894\nKB-3,,391234567905\nKB-2,,391234567920\n");
        QCOMPARE(*storeTracking(shop.connection, matches, base::unwatched), 2);
        const QString numbers = u"SELECT 送り状番号 FROM 発送マスター WHERE 発送ID <= 3 ORDER BY 発送ID"_s;
        QCOMPARE(shop.rows(numbers), (QStringList{u"391234567894"_s, u"391234567920"_s, u"312345678901"_s}));

        matches = matchesOf(shop, heading + "KB-4,,391234567931\nKB-5,,391234567942\n");
        shop.run(u"UPDATE 発送マスター SET 品名 = 'みかん', 版 = 99 WHERE 発送ID = 5"_s);
        const auto refused = storeTracking(shop.connection, matches, base::unwatched);
        QVERIFY(!refused && refused.error().changed);
        QVERIFY(refused.error().text.contains(u"3 行目（KB-5）"_s));
        QCOMPARE(shop.value(u"SELECT COUNT(送り状番号) FROM 発送マスター WHERE 送り状番号 <> ''"_s).toInt(),
                 3);
    }

    void columnsAreFoundAndRemembered_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("columns"); // first row, then the three; empty: a person has to say
        QTest::newRow("below a preamble") << QByteArray("発行済データ\n2026/04/02\n") + heading + "KB-1,,1\n"
                                          << u"3 0 2 1"_s;
        QTest::newRow("quoted, with a mark")
            << QByteArray(
                   "\xEF\xBB\xBF\"発送予定日\",\"お客様側管理番号\",\"お問い合わせ番号\",\"お届け先 氏名\"\n"
                   "\"20260402\",\"KB-1\",\"391234567894\",\"山田\"\n")
            << u"1 1 2 3"_s;
        QTest::newRow("other headings")
            << QByteArray("注文No,送付先,荷物番号\nKB-1,山田,391234567894\n") << QString();
    }

    void columnsAreFoundAndRemembered()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, columns);
        FreshShop shop;
        const auto table = tableOf(shop, content);
        const auto found = trackingColumnsByHeadings(*table);
        if (!columns.isEmpty()) {
            QCOMPARE(u"%1 %2 %3 %4"_s.arg(found->firstRow)
                         .arg(found->columns[0])
                         .arg(found->columns[1])
                         .arg(found->columns[2]),
                     columns);
            return;
        }
        QVERIFY(!found);
        const TrackingColumns said{{0, 2, -1}, 1};
        QString stored = withStoredColumns({}, said, *table);
        stored = withStoredColumns(stored, {{1, 0, -1}, 0}, *tableOf(shop, "1,2,3,4\n"));
        QCOMPARE(columnsFromStored(stored, *table), std::optional(said));
        QVERIFY(!columnsFromStored(stored, *tableOf(shop, "注文No,荷物番号,送付先\nKB-1,1,山田\n")));
        QVERIFY(!columnsFromStored(u"9999999 0 1 2|3|\nx|\n"_s, *table));
    }

    void hostileFilesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("says");
        QTest::newRow("nothing") << QByteArray() << u"データがありません"_s;
        QTest::newRow("NUL") << heading + QByteArray("KB-1,\0,1\n", 9) << u"表の形をしたテキストではない"_s;
        QTest::newRow("quotes left open") << heading + "KB-1,\"山田,1\nKB-2,,2\n" << u"引用符"_s;
        QTest::newRow("100,000 columns") << heading + QByteArray(100000, ',') + "x\n" << u"列が多すぎる"_s;
        QTest::newRow("300,000 rows") << heading + QByteArray("1,2,3\n").repeated(300000) << u"多すぎる"_s;
        QTest::newRow("a database") << QByteArray("SQLite format 3\0", 16) + QByteArray(4096, '\0')
                                    << QString();
    }

    void hostileFilesAreRefused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, says);
        FreshShop shop;
        const auto read = tableOf(shop, content);
        QVERIFY(!read);
        QVERIFY2(read.error().text.contains(says), qPrintable(read.error().text));
        QVERIFY(!readTrackingFile(shop.connection.fileName(), shop.connection.fileName(), base::unwatched));
    }
};

QTEST_GUILESS_MAIN(TestTracking)

#include "tst_tracking.moc"
