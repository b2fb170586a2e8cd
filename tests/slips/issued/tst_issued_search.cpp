// Finding, checking and handing out issued documents.
#include "db/recordset.h"
#include "slips/issued/document_check.h"
#include "slips/issued/issued_documents.h"
#include "slips/issued/issued_export.h"
#include "slips/issued/issued_search.h"
#include "support/fresh_shop.h"
#include "workspace/document_places.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

struct Known
{
    qint64 key;
    QString kind;
    QString number;
    QString date; // empty: none
    QString name;
    double amount;
};

/// A book of documents as some years leave it, the odd ones among them.
std::vector<Known> generated(int count)
{
    QRandomGenerator dice(20260401);
    const QStringList kinds{u"納品書"_s, u"納品書（再発行）"_s, u"見積書"_s, u"請求書"_s,
                            u"請求書（印刷取消）"_s};
    const QStringList names{u"山田商店"_s,  u"㈱ヤマダ　本店"_s, u"佐藤花子"_s,     u"100%果汁の会"_s,
                            u"鈴木_商店"_s, u"(相手先なし)"_s,   u"Smith & Sons"_s, u"高橋\\商会"_s};
    std::vector<Known> all;
    for (int i = 1; i <= count; ++i) {
        const QDate date = QDate(2024, 12, 25).addDays(dice.bounded(800));
        all.push_back({i, kinds.at(dice.bounded(5)),
                       QStringLiteral("OM").at(dice.bounded(2)) + QString::number(dice.bounded(300)),
                       dice.bounded(50) == 0 ? QString() : date.toString(Qt::ISODate),
                       names.at(dice.bounded(8)), double(dice.bounded(-500, 200000))});
    }
    return all;
}

void store(FreshShop &shop, const std::vector<Known> &all)
{
    shop.run(u"BEGIN"_s);
    for (const Known &each : all)
        shop.run(
            u"INSERT INTO 発行控 (発行ID, 種類, 番号, 日付, 相手先名, 税込金額) VALUES (?, ?, ?, ?, ?, ?)"_s,
            {each.key, each.kind, each.number, each.date.isEmpty() ? QVariant() : QVariant(each.date),
             each.name, each.amount});
    shop.run(u"COMMIT"_s);
}

/// A document of the shop, and its key.
struct Office
{
    qint64 keep(const QString &counterpart, const QByteArray &pdf, const QString &number = u"O1"_s)
    {
        const IssuedDocument document{.kind = QString::fromUtf16(deliveryNoteKind),
                                      .number = number,
                                      .date = QDate(2026, 4, 1),
                                      .slipKind = book::sale,
                                      .counterpart = ++m_counterpart,
                                      .counterpartName = counterpart,
                                      .amount = 1100};
        if (!keepDocument(shop.connection, folder(), document, pdf, shop.now, u"木村"_s))
            qFatal("nothing is kept");
        return shop.value(u"SELECT max(発行ID) FROM 発行控"_s).toLongLong();
    }
    QString folder() const { return workspace::documentFolderOf(shop.path(u"shop.cdb"_s)); }
    QString fileOf(const QByteArray &pdf) const
    {
        return folder() + u'/' + pathOf({QDate(2026, 4, 1), hashOf(pdf)});
    }

    FreshShop shop;

private:
    qint64 m_counterpart = 0;
};

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestIssuedSearch : public QObject
{
    Q_OBJECT

private slots:
    void theLastTimeCountsThatWasNotTakenBack_data()
    {
        QTest::addColumn<QStringList>("rows"); // kind, number, counterpart, 訂正元; each of its key's yen
        QTest::addColumn<int>("amount");       // of the bill 7-20260331; 0: it is not out
        const QString bill = u"'請求書', '7-20260331', 7, NULL"_s;
        const QString again = u"'請求書（再発行）', '7-20260331', 7, NULL"_s;
        const auto takenBack = [](int key) {
            return u"'請求書（印刷取消）', '7-20260331', 7, %1"_s.arg(key);
        };
        QTest::newRow("never") << QStringList() << 0;
        QTest::newRow("once") << QStringList{bill} << 1;
        QTest::newRow("corrected") << QStringList{bill, u"'請求書', '7-20260331', 7, 1"_s} << 2;
        QTest::newRow("again") << QStringList{bill, again} << 2;
        QTest::newRow("taken back") << QStringList{bill, takenBack(1)} << 0;
        QTest::newRow("the second taken back") << QStringList{bill, again, takenBack(2)} << 1;
        QTest::newRow("the first taken back") << QStringList{bill, takenBack(1), again} << 3;
        QTest::newRow("another kind") << QStringList{u"'見積書', '7-20260331', 7, NULL"_s} << 0;
        QTest::newRow("another month") << QStringList{u"'請求書', '7-20260228', 7, NULL"_s} << 0;
        QTest::newRow("another counterpart") << QStringList{u"'請求書', '7-20260331', 8, NULL"_s} << 0;
    }

    void theLastTimeCountsThatWasNotTakenBack()
    {
        QFETCH(QStringList, rows);
        FreshShop shop;
        int key = 0;
        for (const QString &row : rows) {
            ++key;
            shop.run(u"INSERT INTO 発行控 (発行ID, 種類, 番号, 相手先ID, 訂正元, 税込金額, 発行日時) VALUES "
                     "(%1, %2, %1, '2026-04-0%1 10:00:00')"_s.arg(key)
                         .arg(row));
        }
        const auto last = lastIssue(shop.connection, u"請求書"_s, u"7-20260331"_s, 7);
        QVERIFY(last);
        QTEST(*last ? int((*last)->amount) : 0, "amount");
        if (*last)
            QCOMPARE((*last)->issuedAt, u"2026-04-0%1 10:00:00"_s.arg((*last)->amount));
    }

    void findsWhatANaiveFilterFinds_data()
    {
        QTest::addColumn<QDate>("from");
        QTest::addColumn<QDate>("to");
        QTest::addColumn<QString>("least");
        QTest::addColumn<QString>("most");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QStringList>("named"); // whom that is to find
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("number");
        const QDate none;
        const QStringList anybody;
        const QDate april(2025, 4, 1);
        const QDate may(2025, 5, 31);
        QTest::newRow("all") << none << none << u""_s << u""_s << u""_s << anybody << u""_s << u""_s;
        QTest::newRow("from a day on")
            << april << none << u""_s << u""_s << u""_s << anybody << u""_s << u""_s;
        QTest::newRow("up to a day") << none << may << u""_s << u""_s << u""_s << anybody << u""_s << u""_s;
        QTest::newRow("one day") << april << april << u""_s << u""_s << u""_s << anybody << u""_s << u""_s;
        QTest::newRow("amounts") << none << none << u"1000"_s << u"50000"_s << u""_s << anybody << u""_s
                                 << u""_s;
        QTest::newRow("returns") << none << none << u""_s << u"-1"_s << u""_s << anybody << u""_s << u""_s;
        QTest::newRow("name in other letters") << none << none << u""_s << u""_s << u"やまだ"_s
                                               << QStringList{u"㈱ヤマダ　本店"_s} << u""_s << u""_s;
        QTest::newRow("two words") << none << none << u""_s << u""_s << u"本店　ﾔﾏﾀﾞ"_s
                                   << QStringList{u"㈱ヤマダ　本店"_s} << u""_s << u""_s;
        QTest::newRow("a sign of patterns")
            << none << none << u""_s << u""_s << u"%"_s << QStringList{u"100%果汁の会"_s} << u""_s << u""_s;
        QTest::newRow("another one") << none << none << u""_s << u""_s << u"_"_s
                                     << QStringList{u"鈴木_商店"_s} << u""_s << u""_s;
        QTest::newRow("kind") << none << none << u""_s << u""_s << u""_s << anybody << u"納品書"_s << u""_s;
        QTest::newRow("bills, those that never came out too")
            << none << none << u""_s << u""_s << u""_s << anybody << u"請求書"_s << u""_s;
        QTest::newRow("number") << none << none << u""_s << u""_s << u""_s << anybody << u""_s << u"o12"_s;
        QTest::newRow("dates, amounts and counterpart")
            << april << may << u"5000"_s << u"150000"_s << u"商店"_s
            << QStringList{u"山田商店"_s, u"鈴木_商店"_s} << u""_s << u""_s;
        QTest::newRow("everything") << april << QDate(2026, 12, 31) << u"0"_s << u"200000"_s << u"smith"_s
                                    << QStringList{u"Smith & Sons"_s} << u"見積書"_s << u"M1"_s;
        QTest::newRow("the wrong way round")
            << may << april << u"150000"_s << u"5000"_s << u""_s << anybody << u""_s << u""_s;
    }

    void findsWhatANaiveFilterFinds()
    {
        static const std::vector<Known> all = generated(3000);
        if (!m_shop) {
            m_shop = std::make_unique<FreshShop>();
            store(*m_shop, all);
        }
        FreshShop &shop = *m_shop;
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        QFETCH(QString, least);
        QFETCH(QString, most);
        QFETCH(QString, typed);
        QFETCH(QStringList, named);
        QFETCH(QString, kind);
        QFETCH(QString, number);
        const auto amount = [](const QString &s) {
            return s.isEmpty() ? std::nullopt : std::optional(s.toDouble());
        };
        db::Recordset found(shop.connection);
        QVERIFY(found.open(findingIssued({from, to, amount(least), amount(most), typed, kind, number})));
        QVERIFY(found.readAll());
        if (from.isValid() && to.isValid() && from > to)
            std::swap(from, to);
        if (!least.isEmpty() && !most.isEmpty() && least.toDouble() > most.toDouble())
            std::swap(least, most);
        std::vector<Known> expected;
        for (const Known &each : all) {
            const QDate date = QDate::fromString(each.date, Qt::ISODate);
            if ((from.isValid() && !(date >= from && date.isValid())) ||
                (to.isValid() && !(date <= to && date.isValid())) ||
                (!least.isEmpty() && each.amount < least.toDouble()) ||
                (!most.isEmpty() && each.amount > most.toDouble()) ||
                (!typed.isEmpty() && !named.contains(each.name)) ||
                (!kind.isEmpty() && !each.kind.startsWith(kind)) ||
                !each.number.startsWith(number, Qt::CaseInsensitive))
                continue;
            expected.push_back(each);
        }
        std::stable_sort(expected.begin(), expected.end(), [](const Known &one, const Known &other) {
            return one.date != other.date ? one.date > other.date : one.key > other.key;
        });
        QVERIFY(!expected.empty());
        QCOMPARE(found.count(), int(expected.size()));
        for (int row = 0; row < found.count(); ++row)
            QCOMPARE(found.keyAt(row), expected[std::size_t(row)].key);
    }

    void checksEachFile()
    {
        Office office;
        const std::vector<qint64> keys{office.keep(u"a"_s, "%PDF 1"), office.keep(u"b"_s, "%PDF 2"),
                                       office.keep(u"c"_s, "%PDF 3"), office.keep(u"d"_s, "%PDF 4")};
        QVERIFY(QFile::remove(office.fileOf("%PDF 1")));
        for (const QByteArray &pdf : {QByteArray("%PDF 2"), QByteArray("%PDF 4")}) {
            QFile::setPermissions(office.fileOf(pdf), QFile::ReadOwner | QFile::WriteOwner);
            QVERIFY(QFile::resize(office.fileOf(pdf), 5));
        }
        // A backup has one of them.
        const QString backup = office.shop.path(u"backup"_s);
        QVERIFY(storeDocument(backup, {QDate(2026, 4, 1), hashOf("%PDF 4")}, "%PDF 4"));
        const auto check =
            checkDocuments(office.shop.connection, keys, {office.folder(), backup}, base::unwatched);
        QVERIFY(check);
        QCOMPARE(check->checked, 4);
        QCOMPARE(check->mended, 1);
        QCOMPARE(contentOf(office.fileOf("%PDF 4")), "%PDF 4");
        QCOMPARE(check->faulty.size(), std::size_t(2));
        QVERIFY(check->faulty[0].row.key == 1 && check->faulty[0].state == DocumentState::Missing);
        QVERIFY(check->faulty[1].row.key == 2 && check->faulty[1].state == DocumentState::Damaged);
        const QString words = check->words(15);
        QVERIFY2(words.contains(u"控え番号 1　納品書 O1　a：ファイルがありません"_s), qPrintable(words));

        const auto stopped = checkDocuments(office.shop.connection, keys, {office.folder()},
                                            [](qint64 done, qint64) { return done < 2; });
        QVERIFY(stopped->isStopped);
        QCOMPARE(stopped->checked, 2);
        QVERIFY(stopped->words(15).startsWith(u"途中で中止しました。"_s));
    }

    void exportsUnderSafeNames_data()
    {
        QTest::addColumn<QString>("counterpart");
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << u"山田商店"_s << u"O1"_s << u"2026-04-01_納品書_O1_山田商店.pdf"_s;
        QTest::newRow("a way up") << u"../../x"_s << u"O1"_s << u"2026-04-01_納品書_O1_..-..-x.pdf"_s;
        QTest::newRow("absolute") << u"/etc/passwd"_s << u"O1"_s << u"2026-04-01_納品書_O1_-etc-passwd.pdf"_s;
        QTest::newRow("of Windows") << u"C:\\a|b?*<\"> ."_s << u"O/1"_s
                                    << u"2026-04-01_納品書_O-1_C--a-b-----.pdf"_s;
        QTest::newRow("line end and direction")
            << u"a\nb\u202Ec"_s << u"O1"_s << u"2026-04-01_納品書_O1_a-b-c.pdf"_s;
        QTest::newRow("beyond the plane") << u"𠮷野家"_s << u"O1"_s << u"2026-04-01_納品書_O1_𠮷野家.pdf"_s;
        QTest::newRow("200 characters")
            << QString(200, u'長') << u"O1"_s << u"2026-04-01_納品書_O1_"_s + QString(52, u'長') + u".pdf"_s;
        QTest::newRow("nothing") << QString() << QString() << u"2026-04-01_納品書__.pdf"_s;
    }

    void exportsUnderSafeNames()
    {
        QFETCH(QString, counterpart);
        QFETCH(QString, number);
        QFETCH(QString, name);
        Office office;
        const qint64 one = office.keep(counterpart, "%PDF 1", number);
        const qint64 other = office.keep(counterpart, "%PDF 2", number);
        const QString target = office.shop.path(u"税務署"_s);
        QVERIFY(QDir().mkpath(target));
        const auto exported = exportDocuments(office.shop.connection, {one, other}, {office.folder()}, target,
                                              QDate(2026, 4, 2), base::unwatched);
        QVERIFY(exported);
        QCOMPARE(exported->folder, target + u"/発行控え 書き出し 2026-04-02"_s);
        QCOMPARE(QDir(target).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).size(), 1);
        QStringList names = QDir(exported->folder).entryList(QDir::Files | QDir::Hidden);
        QVERIFY(names.removeOne(u"索引.csv"_s));
        QCOMPARE(names.size(), 2);
        QCOMPARE(contentOf(exported->folder + u'/' + name), "%PDF 1");
        QCOMPARE(contentOf(exported->folder + u'/' + name.chopped(4) + u" (2).pdf"_s), "%PDF 2");
    }

    void theIndexTellsWhatIsLacking()
    {
        Office office;
        const qint64 whole = office.keep(u"山田商店"_s, "%PDF 1");
        const qint64 lost = office.keep(u"=1+1"_s, "%PDF 2", u"O2"_s);
        QVERIFY(QFile::remove(office.fileOf("%PDF 2")));
        const auto exported = exportDocuments(office.shop.connection, {whole, lost}, {office.folder()},
                                              office.shop.folder.path(), QDate(2026, 4, 2), base::unwatched);
        QCOMPARE(exported->written, 1);
        QCOMPARE(exported->lacking.size(), std::size_t(1));
        QByteArray index = contentOf(exported->folder + u"/索引.csv"_s);
        const QStringList lines = QString::fromUtf8(index.replace("\xEF\xBB\xBF", "")).split(u"\r\n"_s);
        QVERIFY(lines.value(1).startsWith(u"1,納品書,O1,2026/04/01,山田商店,1100,2026-04-01 10:00:00,木村,,"
                                          "2026-04-01_納品書_O1_山田商店.pdf,\"\","_s +
                                          hashOf("%PDF 1")));
        QVERIFY(lines.value(2).startsWith(u"2,納品書,O2,2026/04/01,'=1+1,1100,2026-04-01 10:00:00,木村,,\"\","
                                          "ファイルがありません,"_s +
                                          hashOf("%PDF 2")));
    }

    void aStoppedExportLeavesNothing()
    {
        Office office;
        const qint64 one = office.keep(u"a"_s, "%PDF 1");
        const qint64 other = office.keep(u"b"_s, "%PDF 2");
        const QString target = office.shop.path(u"税務署"_s);
        QVERIFY(QDir().mkpath(target));
        const auto stopped = exportDocuments(office.shop.connection, {one, other}, {office.folder()}, target,
                                             QDate(2026, 4, 2), [](qint64 done, qint64) { return done < 1; });
        QVERIFY(!stopped && stopped.error().cancelled);
        QVERIFY(QDir(target).isEmpty());
        QVERIFY(!exportDocuments(office.shop.connection, {one}, {office.folder()},
                                 office.shop.path(u"shop.cdb/無い"_s), QDate(2026, 4, 2), base::unwatched));
    }

    void cleanupTestCase() { m_shop.reset(); } // before the connections go

private:
    std::unique_ptr<FreshShop> m_shop; // that the searches share
};

QTEST_GUILESS_MAIN(TestIssuedSearch)
#include "tst_issued_search.moc"
