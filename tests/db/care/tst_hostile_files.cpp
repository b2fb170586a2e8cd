// Database files that are damaged, or made with ill will, in every way: each one is opened and worked in, or
// refused with a sentence; none brings the program down or keeps it waiting.
// KANBALORE_DAMAGED_FILES: how many; KANBALORE_SEED: which ones.
#include "book/movement_sums.h"
#include "book/slip_store.h"
#include "db/care/file_repair.h"
#include "db/care/salvage.h"
#include "db/connection.h"
#include "db/migrations.h"
#include "db/schema.h"
#include "support/damage.h"
#include "support/fresh_shop.h"
#include "support/numbers.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <sqlite3.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

constexpr int patience = 30'000; // ms for one file

QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

// What somebody can write into a file who means ill, or a program that went wrong.
const QByteArray spoilings[] = {
    "UPDATE 入出庫マスター SET ID = 9223372036854775807 WHERE ID = 3",
    "UPDATE 入出庫マスター SET ID = -9223372036854775808 WHERE ID = 3",
    "UPDATE 納品先 SET 納品先名1 = zeroblob(30000000) WHERE 納品先ID = 2",
    "UPDATE 納品先 SET メモ = CAST(x'ff00fe80' AS TEXT), 更新日 = 12345, 消費税区分 = 'x', 納品先名キー = "
    "x'00'",
    "UPDATE 入出庫サブ SET 金額 = 9e999, 数量 = 'many', 単価 = x'01', 商品名 = NULL",
    "UPDATE 入出庫サブ SET ID = 1, 金額 = 1e308",
    "UPDATE 入出庫マスター SET 日付 = x'00', 伝票番号 = printf('O%.*c', 100000, '%'), 消費税率 = -1e300",
    "INSERT INTO 入出庫サブ (ID, 商品名, 金額) SELECT a.ID, a.商品名, a.金額 FROM 入出庫サブ a, 入出庫サブ b "
    "LIMIT 20000",
    "CREATE TRIGGER t AFTER INSERT ON 入出庫マスター BEGIN DELETE FROM 納品先; END",
    "CREATE VIEW v AS SELECT * FROM 納品先",
    "DROP TABLE 納品先; CREATE VIEW 納品先 AS SELECT 1 AS 納品先ID",
    "CREATE INDEX x ON 納品先 (length(hex(randomblob(1))))",
    "CREATE INDEX x ON 入出庫サブ (abs(-9223372036854775808))",
    "ALTER TABLE 入出庫サブ ADD COLUMN g AS (load_extension('x'))",
    "ALTER TABLE 入出庫サブ ADD COLUMN g AS (zeroblob(1000000000))",
    "CREATE VIRTUAL TABLE f USING fts5(a)",
    "CREATE TABLE 余分 (a CHECK (a > 0), b REFERENCES 納品先 DEFERRABLE INITIALLY DEFERRED)",
    "UPDATE sqlite_schema SET rootpage = 3 WHERE type = 'table'",
    "UPDATE sqlite_schema SET rootpage = 0x7fffffff WHERE name = '入出庫サブ'",
    "UPDATE sqlite_schema SET rootpage = -1 WHERE name = '納品先'",
    "UPDATE sqlite_schema SET rootpage = 'x' WHERE name = '納品先'",
    "UPDATE sqlite_schema SET sql = replace(sql, 'INTEGER PRIMARY KEY', 'TEXT')",
    "UPDATE sqlite_schema SET sql = sql || ' WITHOUT ROWID' WHERE name = '納品先'",
    "UPDATE sqlite_schema SET sql = substr(sql, 1, 30)",
    "UPDATE sqlite_schema SET sql = 'CREATE VIRTUAL TABLE 納品先 USING dbstat' WHERE name = '納品先'",
    "UPDATE sqlite_schema SET type = 'view' WHERE name = '入出庫サブ'",
    "UPDATE sqlite_schema SET name = '入出庫マスター', tbl_name = '入出庫マスター' WHERE type = 'table'",
    "UPDATE sqlite_schema SET sql = NULL, name = x'ff', type = NULL WHERE name = '納品先'",
    "INSERT INTO sqlite_schema SELECT * FROM sqlite_schema",
    "DELETE FROM sqlite_schema",
    "PRAGMA user_version = 2147483647",
    "PRAGMA user_version = -1",
    "PRAGMA application_id = 0",
    "PRAGMA journal_mode = WAL",
};

void spoil(const QString &fileName, const QByteArray &statements)
{
    sqlite3 *handle = nullptr;
    sqlite3_open(fileName.toUtf8().constData(), &handle);
    sqlite3_exec(handle, "PRAGMA writable_schema = ON; PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
    sqlite3_exec(handle, statements.constData(), nullptr, nullptr, nullptr); // some refuse; the file stays
    sqlite3_close(handle);
}

void enterSlip(db::Connection &connection)
{
    book::NewSlip slip;
    slip.date = QDate(2026, 4, 1);
    slip.counterpart = 1;
    slip.employee = 1;
    slip.taxRate = 10;
    slip.stamp = slip.date;
    const auto header = book::saveHeader(connection, slip);
    if (!header)
        return;
    (void)book::addLine(connection, header->id, {u"りんご"_s, {}, 2, u"箱"_s, 100, 200});
    (void)book::closeSlip(connection, header->id, 10, book::TaxClass::OnDelivery, false);
    (void)book::previousLines(connection, slip.kind, 1);
    (void)book::sumMovements(connection, {.kinds = book::balanceKindsOf(book::Party::Customer)}, {},
                             base::unwatched, [](const book::MovementSum &) {});
    (void)book::deleteSlip(connection, 1);
}

// \return what became of the file, a letter a step
QByteArray work(const QString &fileName, const QString &target)
{
    QByteArray outcome;
    const auto note = [&outcome](const auto &done, char letter) { outcome += done ? letter : '-'; };
    note(db::migrate(fileName, QDate(2026, 4, 1)), 'm');
    {
        db::Connection connection;
        const base::Status opened = connection.open(fileName);
        note(opened, 'o');
        if (opened) {
            for (const db::Table &table : db::tables())
                (void)connection.select(u"SELECT * FROM "_s + table.name);
            (void)connection.select(u"SELECT * FROM 納品先 WHERE 納品先名1 LIKE ?"_s, {u"%ﾈｺ%"_s});
            enterSlip(connection);
        }
    }
    {
        db::FileRepair repair(fileName);
        const base::Status begun = repair.begin();
        const auto faults = begun ? repair.check(base::unwatched) : base::Result<int>(begun.error());
        note(faults, faults && *faults == 0 ? 's' : 'd');
        if (faults && *faults == 0)
            note(repair.compact(base::unwatched), 'c');
    }
    const auto salvaged = db::rebuild(fileName, target, base::unwatched);
    note(salvaged, 'r');
    if (salvaged) {
        db::Connection connection;
        note(connection.open(target), 'O');
    }
    QFile::remove(target);
    return outcome;
}

int workAll(const QString &folder, int files, quint32 seed)
{
    const QByteArray sound = contentOf(folder + u"/sound.cdb"_s);
    const QString file = folder + u"/hostile.cdb"_s;
    Damage damage(seed);
    for (int i = 0; i < files; ++i) {
        for (const char *suffix : {"-journal", "-wal", "-shm"})
            QFile::remove(file + QLatin1StringView(suffix));
        const bool byStatement = i < int(std::size(spoilings)) || damage.below(4) == 0;
        write(file, byStatement ? sound : damage.to(sound));
        if (byStatement)
            spoil(file, spoilings[std::size_t(i) % std::size(spoilings)]);
        if (byStatement && i >= int(std::size(spoilings)))
            write(file, damage.to(contentOf(file)));
        if (i % 7 == 6) // what a program left behind that broke off, or did not
            write(file + u"-journal"_s, damage.to(sound).first(damage.below(8192)));
        std::printf("%d ", i);
        std::fflush(stdout);
        std::printf("%s\n", work(file, folder + u"/target.cdb"_s).constData());
        std::fflush(stdout);
    }
    return 0;
}

} // namespace

class TestHostileFiles : public QObject
{
    Q_OBJECT

private slots:
    void hostile();
};

void TestHostileFiles::hostile()
{
    FreshShop shop;
    shop.run(u"BEGIN"_s);
    for (int i = 1; i <= 150; ++i) {
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, メモ, 消費税区分) "
                 "VALUES (?, ?, ?, ?, 0)"_s,
                 {i, u"顧客%1"_s.arg(i), u"kokyaku"_s, QString(i % 30 == 0 ? 5000 : 5, u'あ')});
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考) "
                 "VALUES (?, '2026-04-01', ?, ?, 1, 10, NULL)"_s,
                 {i, u"O%1"_s.arg(i), i % 10 + 1});
        for (int line = 0; line < 3; ++line)
            shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) "
                     "VALUES (?, 'りんご', '贈答用', ?, '箱', 3980.5, ?)"_s,
                     {i, line, 3980 * line});
    }
    shop.run(u"COMMIT"_s);
    shop.connection.close();
    QVERIFY(QFile::rename(shop.path(u"shop.cdb"_s), shop.path(u"sound.cdb"_s)));

    const int files = numberFrom("KANBALORE_DAMAGED_FILES", 120);
    QProcess worker;
    worker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    worker.start(QCoreApplication::applicationFilePath(),
                 {u"--work"_s, shop.folder.path(), QString::number(files),
                  QString::number(numberFrom("KANBALORE_SEED", 1))});
    QMap<QByteArray, int> outcomes;
    QByteArray said;
    qint64 longest = 0;
    for (int done = 0; done < files;) {
        QElapsedTimer time;
        time.start();
        while (!worker.canReadLine() && worker.waitForReadyRead(int(patience - time.elapsed()))) {
        }
        said = worker.canReadLine() ? worker.readLine() : worker.readAll();
        const QString kept = u"/file-"_s + QString::fromUtf8(said).section(u' ', 0, 0) + u".cdb"_s;
        if (!said.endsWith('\n'))
            QFile::copy(shop.path(u"hostile.cdb"_s), QDir::tempPath() + kept);
        QVERIFY2(said.endsWith('\n'), qPrintable(u"crash or hang, kept as "_s + kept));
        longest = std::max(longest, time.elapsed());
        ++outcomes[said.trimmed().split(' ').value(1)];
        ++done;
    }
    QVERIFY(worker.waitForFinished());
    QCOMPARE(worker.exitCode(), 0);
    for (auto outcome = outcomes.cbegin(); outcome != outcomes.cend(); ++outcome) {
        qInfo("%5d %s", outcome.value(), outcome.key().constData());
        // What was salvaged can be worked in, what is sound can be compacted.
        QVERIFY(!outcome.key().endsWith("r-"));
        QVERIFY(!outcome.key().contains("s-"));
    }
    qInfo("the longest took %lld ms", static_cast<long long>(longest));
    QVERIFY(outcomes.size() > 2);
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--work"_L1)
        return workAll(arguments.value(2), arguments.value(3).toInt(), arguments.value(4).toUInt());
    TestHostileFiles test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_hostile_files.moc"
