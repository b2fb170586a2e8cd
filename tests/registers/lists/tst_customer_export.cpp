#include "registers/frmNouhin.h"
#include "registers/lists/customer_export.h"
#include "registers/register_desk.h"
#include "tables/csv_guard.h"
#include "tables/csv_reader.h"
#include "tables/text_file.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QLineEdit>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString overwrite = u"指定した名前のファイルが存在します。\n上書きしますか？"_s;
const QString noName = u"納品先名が入力されていません。               "_s;

// The register of a shop with one customer who has something in every column.
struct Register : RegisterDesk<registers::frmNouhin>
{
    Register()
        : RegisterDesk(u"納品先"_s)
    {
        shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先')"_s);
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, 納品先名2, 納品先名3, フリガナ, 納品先名キー, "
            "区分ID, 郵便番号, 住所1, 住所2, TEL1, TEL2, FAX, メール, メモ, 登録日, 更新日, 誕生日, "
            "担当者名, "
            "締め日, 消費税区分, 元帳出力) VALUES (7, '007', '=山田', '部長', '御中', 'ﾔﾏﾀﾞ', '=山田 007', "
            "1, '0600001', '札幌市', 'ビル', '0312345678', '090', '+81', 'a@b', 'x,y', '2026-01-01', "
            "'2026-02-01', '昭和３年', '佐藤', 15, 1, 0)"_s);
        show();
    }

    // Alt and the button's letter, with the cursor where it is.
    void exportTo(const QString &name)
    {
        ui::file_dialogs::expectFile(name.isEmpty() ? name : shop.path(name));
        QTest::keyClick(&screen, Qt::Key_E, Qt::AltModifier);
        QCoreApplication::processEvents();
        QTest::qWait(150); // the button is shown pressed for a moment
    }
};

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The records as "a|b|c" lines.
QStringList records(const QString &csvFile)
{
    const auto text = tables::readTextFile(csvFile, qint64(1) << 24);
    QStringList lines;
    if (!text)
        return lines;
    tables::CsvReader reader(*text);
    for (QStringList record; reader.next(record);) {
        for (QString &field : record)
            field = tables::unguarded(field);
        lines << record.join(u'|');
    }
    return lines;
}

} // namespace

class TestCustomerExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        ui::prompts::beginScript();
        ui::file_dialogs::beginScript();
        ui::desktop::beginScript();
    }
    void cleanup()
    {
        QCOMPARE(ui::prompts::takeUnexpected() + ui::file_dialogs::takeUnexpected(), QString());
        ui::desktop::takeOpened();
    }

    void writesAllColumnsWithWhatWasJustTyped()
    {
        Register r;
        r.type("txtTantou", u"鈴木"_s);
        r.choose("cmbHonorific", u"御中"_s);
        r.exportTo(u"customers.csv"_s);
        const QString file = r.shop.path(u"customers.csv"_s);
        QCOMPARE(ui::desktop::takeOpened(), QUrl::fromLocalFile(file).toString());
        QCOMPARE(
            records(file),
            QStringList(
                {u"納品先ID|コード|納品先名1|納品先名2|ﾌﾘｶﾞﾅ|郵便番号|住所1|住所2|TEL1|TEL2|FAX|ﾒｰﾙｱﾄﾞﾚｽ|"
                 u"備考|"
                 "登録日|更新日|誕生日|区分ID|納品先名キー|納品先名3|担当者名|締め日|元帳出力|消費税区分|敬称"_s,
                 u"7|007|=山田|部長|ﾔﾏﾀﾞ|0600001|札幌市|ビル|0312345678|090|+81|a@b|x,y|"
                 "2026/01/01|2026/04/01|昭和３年|1|=山田部長 007 0312345678 ﾔﾏﾀﾞ|御中|鈴木|15|0|1|御中"_s}));
    }

    void asksBeforeAFileIsReplaced()
    {
        Register r;
        r.exportTo({});
        r.exportTo(u"customers"_s);
        const QString file = r.shop.path(u"customers.xls"_s);
        const QByteArray first = contentOf(file);
        QVERIFY(first.startsWith("\xd0\xcf\x11\xe0"));
        r.shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (8, '鈴木')"_s);
        ui::prompts::expectAsk(overwrite, false);
        r.exportTo(u"customers.xls"_s);
        QVERIFY(contentOf(file) == first);
        ui::desktop::takeOpened();
        ui::prompts::expectAsk(overwrite, true);
        ui::desktop::expectNoProgram();
        ui::prompts::expectInform(
            u"ファイルを書き出しました。開くプログラムが見つからないため、開いていません。\n"_s + file);
        r.exportTo(u"customers.xls"_s);
        QVERIFY(contentOf(file) != first);
    }

    void doesNotGoOutWithoutWhatCannotBeSaved()
    {
        Register r;
        r.clear("txtName");
        ui::prompts::expectInform(noName);
        QTest::keyClick(&r.screen, Qt::Key_E, Qt::AltModifier);
        QTest::qWait(150);
        r.type("txtName", u"山田"_s);
        r.press("cmdAdd");
        QVERIFY(!r.the<QWidget>("Command7").isEnabled());
        r.press("cmdCancel");
    }

    void writesWhatASearchFound()
    {
        Register r;
        r.shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー) VALUES (8, '鈴木', '鈴木')"_s);
        r.type("txtKey1", u"鈴木"_s);
        r.press("cmdFind");
        const auto answer = [&](ui::prompts::Choice choice) {
            ui::prompts::expectAskHowToLeave(u"一覧に出ている納品先 1 件だけを書き出しますか？"_s, choice,
                                             ui::prompts::Choice::Save);
        };
        answer(ui::prompts::Choice::Save);
        r.exportTo(u"found.csv"_s);
        QCOMPARE(records(r.shop.path(u"found.csv"_s)).size(), 2);
        answer(ui::prompts::Choice::Discard);
        r.exportTo(u"all.csv"_s);
        QCOMPARE(records(r.shop.path(u"all.csv"_s)).size(), 3);
        r.press("Command6"); // no part any more
        r.exportTo(u"again.csv"_s);
        QCOMPARE(records(r.shop.path(u"again.csv"_s)).size(), 3);
        ui::desktop::takeOpened();
    }

    void writesChosenOnesInTheirOrder()
    {
        FreshShop shop;
        shop.run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n LIMIT 1300) "
                 "INSERT INTO 納品先 (納品先ID, 納品先名1) SELECT i, 'n' || i FROM n"_s);
        std::vector<qint64> keys;
        for (qint64 key = 1300; key > 0; --key)
            keys.push_back(key);
        shop.run(u"DELETE FROM 納品先 WHERE 納品先ID IN (800, 1)"_s); // meanwhile
        const QString file = shop.path(u"chosen.csv"_s);
        QVERIFY(registers::exportCustomers(shop.connection, keys, file, base::unwatched));
        const QStringList lines = records(file);
        QCOMPARE(lines.size(), 1299);
        QVERIFY(lines[1].startsWith(u"1300||"_s) && lines[500].startsWith(u"801||"_s));
        QVERIFY(lines[501].startsWith(u"799||"_s) && lines[1298].startsWith(u"2||"_s));
    }

    void refusesAnotherFileBeforeItAsks()
    {
        Register r;
        const QByteArray database = contentOf(r.shop.path(u"shop.cdb"_s));
        ui::prompts::expectInform({});
        r.exportTo(u"shop.cdb"_s);
        QVERIFY(contentOf(r.shop.path(u"shop.cdb"_s)) == database);
    }

    void manyAreReadInBlocks()
    {
        FreshShop shop;
        shop.run(u"WITH RECURSIVE n(i) AS (SELECT -1 UNION ALL SELECT i + 3 FROM n LIMIT 2001) "
                 "INSERT INTO 納品先 (納品先ID, 納品先名1) SELECT i, 'n' || i FROM n"_s);
        const QString file = shop.path(u"many.csv"_s);
        const auto stop = [](qint64 done, qint64 total) { return total != 2001 || done < 1500; };
        const auto stopped = registers::exportCustomers(shop.connection, file, stop);
        QVERIFY(!stopped && stopped.error().cancelled);
        QVERIFY(!QFileInfo::exists(file) && QDir(shop.folder.path()).entryList({u"*.tmp"_s}).isEmpty());
        QVERIFY(!shop.connection.inTransaction());
        QVERIFY(registers::exportCustomers(shop.connection, file, base::unwatched));
        const QStringList lines = records(file);
        QCOMPARE(lines.size(), 2002);
        for (int i = 1; i < lines.size(); ++i)
            QVERIFY(lines[i].startsWith(u"%1||n%1|"_s.arg(3 * i - 4)));
    }
};

QTEST_MAIN(TestCustomerExport)
#include "tst_customer_export.moc"
