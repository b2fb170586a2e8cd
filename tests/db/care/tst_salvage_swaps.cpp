// Database files whose pages were written to each other's places, as a broken disk or a copy that went wrong
// leaves them: no row gets into a table that is not its own, and what is lost is told.
#include "db/care/salvage_shop.h"
#include "db/schema.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int pageSize = 4096;

QByteArray pageOf(const QByteArray &bytes, int page)
{
    return bytes.mid(qsizetype(page - 1) * pageSize, pageSize);
}

void put(QByteArray &bytes, int page, const QByteArray &content)
{
    bytes.replace(qsizetype(page - 1) * pageSize, pageSize, content);
}

// Tables of which several look alike, some of them too small for an index or an inner page.
void fill(FreshShop &shop)
{
    shop.run(u"BEGIN"_s);
    const QString numbers =
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "_s;
    const auto add = [&](int rows, const QString &statement) { shop.run(numbers.arg(rows) + statement); };
    add(12, u"INSERT INTO 単位 SELECT i, '単位' || i, i FROM n"_s);
    add(400, u"INSERT INTO 規格 SELECT i, '規格' || i, i FROM n"_s);
    add(9, u"INSERT INTO 社員 SELECT i, '社員' || i, '内線' || i, i FROM n"_s);
    add(6, u"INSERT INTO 登録区分 SELECT i, '区分' || i, NULL FROM n"_s);
    add(500, u"INSERT INTO 納品商品 (商品ID, 商品名, 単価, 版) SELECT i, '商品' || i, i * 10.5, i FROM n"_s);
    add(700,
        u"INSERT INTO 仕入商品 (商品ID, 商品名, 商品コード) SELECT i + 40, '仕入' || i, 'C' || i FROM n"_s);
    add(300, u"INSERT INTO 納品先 (納品先ID, 納品先名1, 住所1, 更新日, 区分ID) "
             "SELECT i * 3, '顧客' || i, '東京都港区' || i, '2026-01-01', 1 FROM n"_s);
    add(120,
        u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 住所1) SELECT i, '仕入先' || i, '大阪市' || i FROM n"_s);
    add(900, u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率) "
             "SELECT i, '2026-04-01', 'O' || i, i % 40, 1, 10 FROM n"_s);
    add(2500, u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額) "
              "SELECT 1 + i % 900, '明細' || i, 2, i, 2 * i FROM n"_s);
    add(250, u"INSERT INTO 発送マスター (発送ID, 届先名1, 届先郵便番号, 受付日, 価格) "
             "SELECT i, '届先' || i, '530-0001', '2026-04-01', 100.25 FROM n"_s);
    shop.run(u"COMMIT"_s);
}

// All rows of a table, with their keys.
QSet<QString> rowsOf(FreshShop &shop, const QString &table)
{
    const QStringList rows = shop.rows(u"SELECT rowid AS 行, * FROM "_s + table);
    return QSet<QString>(rows.begin(), rows.end());
}

} // namespace

class TestSalvageSwaps : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void swaps_data();
    void swaps();
    void doubtfulRowsAreListed();

private:
    [[nodiscard]] QList<int> treePages() const;
    [[nodiscard]] int leafWith(const QByteArray &text) const;
    void trade(QByteArray &bytes, QList<int> &pages, QRandomGenerator &random, bool isCopy) const;

    SalvageShop m_both;
    FreshShop &m_shop = m_both.shop;
    FreshShop &m_result = m_both.result;
    QByteArray m_sound;
    QSet<int> m_alike; // pages of tables of one shape
    QHash<QString, QSet<QString>> m_rows;
};

void TestSalvageSwaps::initTestCase()
{
    fill(m_shop);
    for (const db::Table &table : db::tables())
        m_rows[table.name] = rowsOf(m_shop, table.name);
    const QStringList alike =
        m_shop.rows(u"SELECT pageno FROM dbstat WHERE name IN "
                    "('単位', '規格', '登録区分', '発送区分', '仕入商品', '納品商品')"_s);
    QVERIFY(alike.size() > 6);
    for (const QString &page : alike)
        m_alike << page.toInt();
    m_sound = m_both.close();
}

// Those with rows, inner pages or indexes; never the first one.
QList<int> TestSalvageSwaps::treePages() const
{
    QList<int> pages;
    for (int page = 2; page <= int(m_sound.size() / pageSize); ++page) {
        if (QByteArrayView("\x02\x05\x0a\x0d").contains(pageOf(m_sound, page).front()))
            pages << page;
    }
    return pages;
}

int TestSalvageSwaps::leafWith(const QByteArray &text) const
{
    for (int page = 2; page <= int(m_sound.size() / pageSize); ++page) {
        if (pageOf(m_sound, page).startsWith('\x0d') && pageOf(m_sound, page).contains(text))
            return page;
    }
    qFatal("no such leaf");
}

// Nothing in a file tells apart tables of one shape with the same keys, two of whose pages have traded
// places.
void TestSalvageSwaps::trade(QByteArray &bytes, QList<int> &pages, QRandomGenerator &random,
                             bool isCopy) const
{
    const auto take = [&] { return pages.takeAt(random.bounded(int(pages.size()))); };
    const int one = take();
    int other = take();
    while (m_alike.contains(one) && m_alike.contains(other))
        other = take();
    put(bytes, other, pageOf(m_sound, one));
    if (!isCopy)
        put(bytes, one, pageOf(m_sound, other));
}

void TestSalvageSwaps::swaps_data()
{
    QTest::addColumn<int>("pairs");
    QTest::addColumn<bool>("isCopy"); // the one page is lost, the other one is there twice
    QTest::newRow("one pair") << 1 << false;
    QTest::newRow("three pairs") << 3 << false;
    QTest::newRow("one page twice") << 1 << true;
}

void TestSalvageSwaps::swaps()
{
    QFETCH(int, pairs);
    QFETCH(bool, isCopy);
    QVERIFY(treePages().size() > 80);
    QRandomGenerator random(20260401);
    constexpr int files = 25;
    QStringList astray;
    QStringList untold;
    for (int round = 0; round < files; ++round) {
        QByteArray bytes = m_sound;
        QList<int> pages = treePages();
        for (int i = 0; i < pairs; ++i)
            trade(bytes, pages, random, isCopy);
        const db::Salvage done = m_both.rebuilt(bytes);
        for (const db::Table &table : db::tables()) {
            const QSet<QString> now = rowsOf(m_result, table.name);
            const auto told = std::find_if(done.tables.begin(), done.tables.end(),
                                           [&](const auto &each) { return each.table == table.name; });
            if (const qsizetype foreign = (now - m_rows[table.name]).size(); foreign > 0)
                astray << u"%1 %2: %3"_s.arg(round).arg(table.name).arg(foreign);
            const qsizetype lost = (m_rows[table.name] - now).size();
            // The doubtful ones are listed with their values.
            if (lost > told->unread + done.strayRows && !told->isOpenEnd)
                untold << u"%1 %2: %3 of %4"_s.arg(round).arg(table.name).arg(told->unread).arg(lost);
        }
    }
    QCOMPARE(untold.join(u'\n'), QString());
    QCOMPARE(astray.join(u'\n'), QString());
}

// A leaf of slip lines in the place of one of customers, and still in its own.
void TestSalvageSwaps::doubtfulRowsAreListed()
{
    const int lines = leafWith("明細1");
    const int customers = leafWith("顧客1");
    QByteArray bytes = m_sound;
    put(bytes, customers, pageOf(m_sound, lines));
    const db::Salvage done = m_both.rebuilt(bytes);
    QVERIFY(done.strayRows > 20);
    QCOMPARE(qint64(done.doubtful.size()), done.strayRows);
    for (const db::DoubtfulRow &row : done.doubtful)
        QVERIFY(row.values.at(1).startsWith(u"明細"));
    QVERIFY(rowsOf(m_result, u"入出庫サブ"_s) == m_rows[u"入出庫サブ"_s]);
}

QTEST_MAIN(TestSalvageSwaps)
#include "tst_salvage_swaps.moc"
