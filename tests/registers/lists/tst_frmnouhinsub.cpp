#include "db/care/backup.h"
#include "registers/lists/frmNouhinSub.h"
#include "registers/lists/supplementary_file.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace
{

const QString overwrite = u"指定した名前のファイルが存在します。\n上書きしますか？"_s;

QString tableOf(db::Connection &connection, const QString &sql)
{
    const auto rows = connection.select(sql);
    if (!rows)
        return rows.error().text;
    QStringList lines;
    for (const QVariantList &row : rows->rows) {
        QStringList cells;
        for (const QVariant &cell : row)
            cells << (cell.isNull() ? u"-"_s : cell.toString());
        lines << cells.join(u'|');
    }
    return lines.join(u'\n');
}

QByteArray contents(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void fill(FreshShop &shop)
{
    for (const QString &statement : {
             u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (7, '一般')"_s,
             u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (3, '木村', '12')"_s,
             u"INSERT INTO 自社情報 (会社ID, 会社名1) VALUES (1, 'かんばん堂')"_s,
             u"INSERT INTO 納品商品 (商品ID, 商品名) VALUES (4, 'りんご')"_s,
             u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, TEL1, 区分ID, 締め日, メモ) VALUES "
             "(2, '山田', '山田', '03-1', 1, 15, 'O''Neil\n①'), (5, '佐藤', '佐藤', '03-2', 7, NULL, ''), "
             "(9, '鈴木', '鈴木', '06-3', 1, 0, NULL)"_s,
             u"INSERT INTO 仕入先 (仕入先ID) VALUES (1)"_s,
             u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (1, 'O1', 2)"_s,
             u"INSERT INTO 入出庫サブ (ID) VALUES (1)"_s,
             u"INSERT INTO 発送マスター (発送ID) VALUES (1)"_s,
         })
        shop.run(statement);
}

struct Roster : ScreenDriver
{
    Roster()
        : ScreenDriver(&screen)
    {
        fill(shop);
        show();
        list("Combo1").setCurrentText(u"TEL1"_s);
        type("txtKey", u"03"_s);
        press("Command2");
    }

    void makeAs(const QString &name)
    {
        ui::file_dialogs::expectFile(name);
        press("cmdMake");
    }
    QStringList files() { return QDir(shop.folder.path()).entryList(QDir::Files); }

    FreshShop shop;
    registers::frmNouhinSub screen{shop.workspace};
};

} // namespace

class TestFrmNouhinSub : public ScriptedTest
{
    Q_OBJECT

private slots:
    void makesAFileThatCanBeWorkedWith()
    {
        Roster r;
        QVERIFY(r.the<ui::Grid>("DataGrid1").isColumnHidden(1));
        const QString current = r.shop.connection.fileName();
        ui::prompts::expectInform(u"2 件の納品先を「sub.cdb」に書き出しました。"_s);
        r.makeAs(r.shop.path(u"sub"_s));
        QCOMPARE(r.shop.connection.fileName(), current);
        QVERIFY(r.screen.isVisible());

        db::Connection made;
        const base::Status opened = made.open(r.shop.path(u"sub.cdb"_s));
        QVERIFY2(opened, qPrintable(opened ? QString() : opened.error().text));
        QCOMPARE(tableOf(made, u"SELECT 納品先ID, 納品先名1, 区分ID, 締め日, メモ FROM 納品先"_s),
                 u"2|山田|1|15|O'Neil\n①\n5|佐藤|7|-|"_s);
        QCOMPARE(tableOf(made, u"SELECT 区分ID, 区分名 FROM 登録区分"_s), u"1|得意先\n7|一般"_s);
        QCOMPARE(tableOf(made, u"SELECT 社員ID, 社員名, 内線番号 FROM 社員"_s), u"3|木村|12"_s);
        QCOMPARE(tableOf(made, u"SELECT 会社名1 FROM 自社情報"_s), u"かんばん堂"_s);
        QCOMPARE(tableOf(made, u"SELECT 商品名 FROM 納品商品"_s), u"りんご"_s);
        for (const QString &table : {u"仕入先"_s, u"入出庫マスター"_s, u"入出庫サブ"_s, u"発送マスター"_s})
            QCOMPARE(tableOf(made, u"SELECT * FROM "_s + table), QString());
        QCOMPARE(tableOf(made, u"PRAGMA integrity_check"_s), u"ok"_s);
    }

    void refusesNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("current file") << u"shop.cdb"_s;
        QTest::newRow("current file in capitals") << u"SHOP.CDB"_s;
        QTest::newRow("initial file") << u"Kanbalore.cdb"_s;
        QTest::newRow("backup") << u"x/../BackupKanbalore"_s;
        QTest::newRow("folder") << u"folder.cdb"_s;
    }

    void refusesNames()
    {
        QFETCH(QString, name);
        Roster r;
        QVERIFY(QDir(r.shop.folder.path()).mkdir(u"folder.cdb"_s));
        const QStringList before = r.files();
        ui::prompts::expectInform(u"ファイル名が不正です。"_s);
        r.makeAs(r.shop.path(name));
        QCOMPARE(r.files(), before);
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 3);
    }

    void asksBeforeOverwriting()
    {
        Roster r;
        const QString name = r.shop.path(u"old.cdb"_s);
        QFile old(name);
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
        old.close();
        r.makeAs({});
        const QString remark = ui::messages::keptUnder(u"old 上書き前 2026-04-01.cdb"_s);
        ui::prompts::expectAskCautiously(overwrite, false, remark);
        r.makeAs(name);
        QCOMPARE(contents(name), QByteArray("old"));
        ui::prompts::expectAskCautiously(overwrite, true, remark);
        ui::prompts::expectInform(u"2 件の納品先を「old.cdb」に書き出しました。"_s);
        r.makeAs(name);
        QVERIFY(contents(name).startsWith("SQLite format 3"));
        QCOMPARE(r.files().filter(u".tmp"_s), QStringList());
    }

    void neverTouchesTheFileInUse()
    {
        FreshShop shop;
        fill(shop);
        const QString inUse = shop.path(u"list.cdb"_s);
        QVERIFY(db::copyDatabase(shop.connection, inUse));
        QVERIFY(shop.connection.open(inUse));
        QVERIFY(!registers::writeSupplementaryFile(shop.connection, {2}, inUse));
        QVERIFY(QFile::exists(inUse));
        QCOMPARE(shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 3);
    }

    void leavesNothingBehind_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"disk full", "cancelled", "no folder", "source damaged"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }

    // The file that stood there before is still the old one.
    void leavesNothingBehind()
    {
        QFETCH(QString, how);
        FreshShop shop;
        fill(shop);
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, メモ) WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i + 1 "
            "FROM n WHERE i < 1599) SELECT i, printf('%.*c', 400, 'x') FROM n"_s);
        std::vector<qint64> ids;
        for (qint64 id = 100; id < 1600; ++id)
            ids.push_back(id);
        const bool hasFolder = how != u"no folder"_s;
        const QString name = shop.path(hasFolder ? u"old.cdb"_s : u"none/old.cdb"_s);
        QFile old(name);
        QVERIFY(!hasFolder || (old.open(QIODevice::WriteOnly) && old.write("old") == 3));
        old.close();
        const QStringList before = QDir(shop.folder.path()).entryList(QDir::Files);
        if (how == u"source damaged"_s)
            shop.run(u"ALTER TABLE 納品先 RENAME COLUMN メモ TO メモ2"_s);

        rlimit whole{};
        if (how == u"disk full"_s) {
            std::signal(SIGXFSZ, SIG_IGN);
            getrlimit(RLIMIT_FSIZE, &whole);
            const rlimit small{300 * 1024, whole.rlim_max};
            setrlimit(RLIMIT_FSIZE, &small);
        }
        const base::Progress progress = [&](qint64 done, qint64) {
            return how != u"cancelled"_s || done < 1000;
        };
        const auto made = registers::writeSupplementaryFile(shop.connection, ids, name, progress);
        if (how == u"disk full"_s)
            setrlimit(RLIMIT_FSIZE, &whole);

        QVERIFY(!made);
        QVERIFY(!made.error().text.isEmpty());
        QCOMPARE(QDir(shop.folder.path()).entryList(QDir::Files), before);
        QVERIFY(!hasFolder || contents(name) == "old");
    }
};

QTEST_MAIN(TestFrmNouhinSub)
#include "tst_frmnouhinsub.moc"
