#include "base/replacement.h"
#include "db/care/backup.h"
#include "db/care/file_repair.h"
#include "db/care/salvage_shop.h"
#include "db/migrations.h"
#include "support/earlier_version.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTest>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int pageSize = 4096;

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

constexpr int firstRates = 7; // rows of 税率 in a new file

const QStringList filledTables = {u"単位"_s, u"納品先"_s, u"入出庫マスター"_s, u"入出庫サブ"_s,
                                  u"発送マスター"_s};

QString rowsOf(const QString &table)
{
    return u"SELECT rowid AS 行, * FROM "_s + table + u" ORDER BY rowid"_s;
}

} // namespace

/// Damages a file of several tables in many places, and counts what is carried over.
class TestSalvage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void soundFile();
    void oneDamagedPage_data();
    void oneDamagedPage();
    void innerPagesCostNoRow();
    void rowsOfVersion1_data();
    void rowsOfVersion1();
    void deletedRowsStayDeleted();
    void cutShort();
    void manyWounds();
    void stoppedLeavesNothing();
    void openElsewhere();
    void foreignFileIsLeftAlone();

private:
    // Rebuilds m_shop's damaged.cdb of \a bytes and opens the result.
    db::Salvage rebuilt(const QByteArray &bytes);
    // How many rows of the result are not rows of the sound file.
    int inventedRows();

    SalvageShop m_both;
    FreshShop &m_shop = m_both.shop;
    FreshShop &m_result = m_both.result;
    QByteArray m_sound;
    QHash<QString, QSet<QString>> m_rows; // of the sound file
};

void TestSalvage::initTestCase()
{
    m_shop.run(u"BEGIN"_s);
    for (int i = 1; i <= 700; ++i) {
        m_shop.run(u"INSERT INTO 単位 (単位ID, 単位) VALUES (?, ?)"_s, {i, u"単位%1"_s.arg(i)});
        m_shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考) "
                   "VALUES (?, '2026-04-01', ?, ?, 1, 10, NULL)"_s,
                   {i, u"O%1"_s.arg(i), i % 40 + 1});
        for (int line = 0; line < 3; ++line)
            m_shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) "
                       "VALUES (?, 'りんご', '贈答用', ?, '箱', 3980.5, ?)"_s,
                       {i, line, -3980 * line});
        if (i > 200)
            continue;
        // Every tenth has a note that goes on over several pages.
        m_shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, メモ, 更新日, 区分ID) VALUES (?, ?, ?, ?, 3)"_s,
                   {i * 5, u"顧客%1"_s.arg(i), QString(i % 10 == 0 ? 9000 : 5, u'あ'), u"2026-01-01"_s});
        m_shop.run(u"INSERT INTO 発送マスター (発送ID, 届先名1, 届先郵便番号, 価格) "
                   "VALUES (?, ?, '530-0001', 100.25)"_s,
                   {i, u"届先%1"_s.arg(i)});
    }
    m_shop.run(u"COMMIT"_s);
    for (const QString &table : filledTables) {
        const QStringList rows = m_shop.rows(rowsOf(table));
        m_rows[table] = QSet<QString>(rows.begin(), rows.end());
    }
    m_sound = m_both.close();
}

db::Salvage TestSalvage::rebuilt(const QByteArray &bytes)
{
    const db::Salvage done = m_both.rebuilt(bytes);
    for (const db::SalvagedTable &table : done.tables) {
        // Where no rate can be read, those that every file begins with stay.
        const bool hasFirstRows = table.table == u"税率"_s && table.carried == 0;
        if (!hasFirstRows &&
            m_result.value(u"SELECT count(*) FROM "_s + table.table).toLongLong() != table.carried)
            qFatal("wrong count of carried rows");
    }
    return done;
}

int TestSalvage::inventedRows()
{
    int invented = 0;
    for (const QString &table : filledTables) {
        for (const QString &row : m_result.rows(rowsOf(table)))
            invented += m_rows[table].contains(row) ? 0 : 1;
    }
    return invented;
}

void TestSalvage::soundFile()
{
    const db::Salvage done = rebuilt(m_sound);
    QVERIFY(done.isComplete());
    QCOMPARE(inventedRows(), 0);
    for (const QString &table : filledTables)
        QCOMPARE(m_result.rows(rowsOf(table)).size(), m_rows[table].size());
}

void TestSalvage::oneDamagedPage_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("zeroes") << 0;
    QTest::newRow("noise") << 1;
    QTest::newRow("another page's content") << 2;
}

void TestSalvage::oneDamagedPage()
{
    QFETCH(int, kind);
    QRandomGenerator random(7);
    const int pages = int(m_sound.size()) / pageSize;
    QVERIFY(pages > 60);
    for (int page = 2; page <= pages; page += kind == 0 ? 4 : 12) {
        QByteArray bytes = m_sound;
        const qsizetype at = qsizetype(page - 1) * pageSize;
        if (kind == 2)
            bytes.replace(
                at, pageSize,
                m_sound.mid((page % (pages - 1) + 1) * qsizetype(pageSize) % m_sound.size(), pageSize));
        else
            for (qsizetype i = at; i < at + pageSize; ++i)
                bytes[i] = kind == 0 ? 0 : char(random.bounded(256));
        const db::Salvage done = rebuilt(bytes);
        // The note that ends on an emptied page is cut.
        if (kind != 2)
            QVERIFY2(inventedRows() <= 1, qPrintable(QString::number(page)));
        qint64 lost = 0;
        for (const db::SalvagedTable &table : done.tables) {
            if (!filledTables.contains(table.table))
                continue;
            const qint64 missing = m_rows.value(table.table).size() - table.carried;
            lost += missing;
            // An honest count: exact, or told to be a least one. (A page that stands there twice is counted
            // in both places.)
            const bool isHonest = table.isOpenEnd ? table.unread <= missing : table.unread >= missing;
            QVERIFY2(kind == 2 || isHonest, qPrintable(u"%1 %2"_s.arg(page).arg(table.table)));
        }
        // A leaf of the smallest rows holds some three hundred.
        const int bound = kind == 2 ? 701 : 350; // two trees' roots may trade places
        QVERIFY2(lost - done.strayRows < bound, qPrintable(u"page %1: %2 rows lost"_s.arg(page).arg(lost)));
    }
}

void TestSalvage::innerPagesCostNoRow()
{
    int innerPages = 0;
    for (qsizetype at = pageSize; at < m_sound.size(); at += pageSize) {
        if (m_sound.at(at) != 5)
            continue;
        ++innerPages;
        QByteArray bytes = m_sound;
        bytes.replace(at, pageSize, QByteArray(pageSize, 0));
        const db::Salvage done = rebuilt(bytes);
        qint64 carried = done.carried() + done.strayRows - firstRates;
        for (const auto &rows : std::as_const(m_rows))
            carried -= rows.size();
        QCOMPARE(carried, 0);
        QCOMPARE(inventedRows(), 0);
    }
    QVERIFY(innerPages >= 4);
}

void TestSalvage::rowsOfVersion1_data()
{
    QTest::addColumn<bool>("isMigrated");
    QTest::addColumn<bool>("isDamaged");
    QTest::newRow("sound") << false << false;
    QTest::newRow("without its inner pages") << false << true;
    QTest::newRow("migrated, sound") << true << false;
    QTest::newRow("migrated, without its inner pages") << true << true;
}

// Rows that were written before columns were added end where their table ended then.
void TestSalvage::rowsOfVersion1()
{
    QFETCH(bool, isMigrated);
    QFETCH(bool, isDamaged);
    QTemporaryDir folder;
    const QString file = folder.filePath(u"shop.cdb"_s);
    makeVersion(
        1, file,
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 900) "
        "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) "
        "SELECT i, '2026-04-01', 'O' || i, i % 40, 10 FROM n;"
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2700) "
        "INSERT INTO 入出庫サブ (ID, 商品名, 数量, 金額) SELECT 1 + i % 900, '商品' || i, i, i FROM n;"
        "INSERT INTO 納品先 (納品先ID, 納品先名1, 区分ID) VALUES (3, '山田', 1)");
    if (isMigrated)
        QVERIFY(db::migrate(file, QDate(2026, 4, 1)));
    QByteArray bytes = contentOf(file);
    for (qsizetype at = pageSize; isDamaged && at < bytes.size(); at += pageSize) {
        if (bytes.at(at) == 5)
            bytes.replace(at, pageSize, QByteArray(pageSize, 0));
    }
    const db::Salvage done = rebuilt(bytes);
    QCOMPARE(done.strayRows, 0);
    QVERIFY(done.isComplete()); // the indexes tell that no row is lost
    QCOMPARE(m_result.rows(u"SELECT count(*), sum(ID), min(種別), max(種別) FROM 入出庫マスター"_s),
             QStringList{u"900|405450|O|O"_s});
    QCOMPARE(m_result.rows(u"SELECT count(*), sum(CAST(金額 AS INTEGER)) FROM 入出庫サブ"_s),
             QStringList{u"2700|3646350"_s});
    // In the order of their entry.
    QCOMPARE(m_result.rows(u"SELECT 明細ID FROM 入出庫サブ WHERE 明細ID <> 数量"_s), QStringList());
    QCOMPARE(m_result.value(u"SELECT 納品先名1 FROM 納品先"_s).toString(), u"山田"_s);
    QCOMPARE(m_result.value(u"SELECT count(*) FROM 税率"_s).toInt(), firstRates);
}

void TestSalvage::deletedRowsStayDeleted()
{
    QVERIFY(m_shop.connection.open(m_shop.path(u"shop.cdb"_s)));
    m_shop.run(u"DELETE FROM 入出庫サブ WHERE ID > 350"_s);
    m_shop.connection.close();
    QByteArray bytes = contentOf(m_shop.path(u"shop.cdb"_s));
    SalvageShop::write(m_shop.path(u"shop.cdb"_s), m_sound);
    for (qsizetype at = pageSize; at < bytes.size(); at += pageSize) {
        if (bytes.at(at) == 5)
            bytes.replace(at, pageSize, QByteArray(pageSize, 0));
    }
    (void)rebuilt(bytes);
    QCOMPARE(m_result.value(u"SELECT count(*) FROM 入出庫サブ"_s).toInt(), 3 * 350);
    QCOMPARE(m_result.value(u"SELECT max(ID) FROM 入出庫サブ"_s).toInt(), 350);
}

void TestSalvage::cutShort()
{
    for (const double part : {0.3, 0.6, 0.95}) {
        const db::Salvage done = rebuilt(m_sound.left(qsizetype(double(m_sound.size()) * part)));
        QVERIFY(!done.isComplete());
        QVERIFY(done.carried() > 100);
        QCOMPARE(inventedRows(), 0);
    }
}

// Neither a crash nor a hang, and always a file that can be worked in.
void TestSalvage::manyWounds()
{
    QRandomGenerator random(11);
    for (int round = 0; round < 20; ++round) {
        QByteArray bytes = m_sound;
        const int wounds = 1 << random.bounded(12);
        for (int i = 0; i < wounds; ++i)
            bytes[random.bounded(bytes.size())] = char(random.bounded(256));
        (void)rebuilt(bytes);
        QCOMPARE(m_result.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
    }
}

void TestSalvage::stoppedLeavesNothing()
{
    const QString target = m_result.path(u"stopped.cdb"_s);
    const auto done =
        db::rebuild(m_shop.path(u"shop.cdb"_s), target, [](qint64 looked, qint64) { return looked < 20; });
    QVERIFY(!done && done.error().cancelled);
    QVERIFY(!QFile::exists(target));
}

void TestSalvage::openElsewhere()
{
    const QString file = m_shop.path(u"shop.cdb"_s);
    QVERIFY(m_shop.connection.open(file));
    QVERIFY(!db::FileRepair(file).begin());
    base::Replacement other(file);
    QVERIFY(other.begin() && !db::replaceDatabase(other));
    m_shop.connection.close();
    db::FileRepair repair(file);
    QVERIFY(repair.begin());
    QVERIFY(!m_shop.connection.open(file));
    QCOMPARE(*repair.check(base::unwatched), 0);
}

void TestSalvage::foreignFileIsLeftAlone()
{
    const QString file = m_shop.path(u"letter.cdb"_s);
    const QByteArray letter = QByteArray("Dear Sir, ").repeated(2000);
    SalvageShop::write(file, letter);
    db::FileRepair repair(file);
    QVERIFY(repair.begin());
    QVERIFY(*repair.check(base::unwatched) > 0);
    QVERIFY(!repair.salvage(base::unwatched));
    QCOMPARE(contentOf(file), letter);
}

QTEST_MAIN(TestSalvage)
#include "tst_salvage.moc"
