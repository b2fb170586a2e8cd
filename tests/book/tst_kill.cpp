// A clerk's program that saves slips is killed at random moments: what it had reported is there, and nothing
// is half there. KANBALORE_KILLS: how many times; KANBALORE_SEED: at which moments.
#include "support/fresh_shop.h"
#include "support/numbers.h"

#include "book/slip_store.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

constexpr int linesBySlip = 3;

/// What the clerk's program had reported as saved when it was killed.
struct Reported
{
    int headers = 0;
    QHash<qint64, int> lines; // by slip, the tax line among them
};

// Saves slips until it is killed and reports each action after it was saved.
int saveUntilKilled(const QString &fileName)
{
    db::Connection connection;
    if (!connection.open(fileName))
        return 1;
    book::NewSlip slip;
    slip.date = QDate(2026, 4, 1);
    slip.counterpart = 1;
    slip.employee = 1;
    slip.taxRate = 10;
    slip.stamp = slip.date;
    for (;;) {
        const auto header = book::saveHeader(connection, slip);
        if (!header)
            return 1;
        std::printf("H %lld\n", static_cast<long long>(header->id));
        std::fflush(stdout);
        for (int line = 0; line < linesBySlip; ++line) {
            if (!book::addLine(connection, header->id, {u"りんご"_s, u"５ｋｇ"_s, 2, u"箱"_s, 3980, 7960}))
                return 1;
            std::printf("L %lld\n", static_cast<long long>(header->id));
            std::fflush(stdout);
        }
        if (!book::closeSlip(connection, header->id, 10, book::TaxClass::OnDelivery, false))
            return 1;
        std::printf("L %lld\n", static_cast<long long>(header->id));
        std::fflush(stdout);
    }
}

Reported read(const QByteArray &output)
{
    Reported reported;
    for (const QByteArray &line : output.split('\n')) {
        const qint64 id = line.mid(2).toLongLong();
        if (line.startsWith("H "))
            ++reported.headers;
        else if (line.startsWith("L "))
            ++reported.lines[id];
    }
    return reported;
}

} // namespace

class TestKill : public QObject
{
    Q_OBJECT

private slots:
    void nothingReportedIsLost();

private:
    static void nothingIsHalfThere(FreshShop &shop);

    int m_lines = 0;
};

void TestKill::nothingReportedIsLost()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID, 更新日) VALUES (1, '2020-01-01')"_s);
    const QString fileName = shop.path(u"shop.cdb"_s);
    QRandomGenerator random(static_cast<quint32>(numberFrom("KANBALORE_SEED", 1)));
    const int kills = numberFrom("KANBALORE_KILLS", 40);
    int headersBefore = 0;
    int journals = 0;
    int unreportedChanges = 0;
    for (int round = 0; round < kills; ++round) {
        shop.connection.close();
        QProcess clerk;
        clerk.start(QCoreApplication::applicationFilePath(), {u"--save"_s, fileName});
        QVERIFY(clerk.waitForReadyRead());
        QTest::qSleep(random.bounded(40));
        clerk.kill();
        QVERIFY(clerk.waitForFinished());
        QCOMPARE(clerk.exitStatus(), QProcess::CrashExit);
        const Reported reported = read(clerk.readAllStandardOutput());
        journals += QFile::exists(fileName + u"-journal"_s) ? 1 : 0;

        QVERIFY(shop.connection.open(fileName));
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        const int headers = shop.value(u"SELECT count(*) FROM 入出庫マスター"_s).toInt() - headersBefore;
        QVERIFY(headers == reported.headers || headers == reported.headers + 1);
        int unreported = headers - reported.headers;
        for (auto slip = reported.lines.cbegin(); slip != reported.lines.cend(); ++slip) {
            const int lines =
                shop.value(u"SELECT count(*) FROM 入出庫サブ WHERE ID = ?"_s, {slip.key()}).toInt();
            QVERIFY2(lines >= slip.value(), "a reported line was lost");
        }
        unreported += shop.value(u"SELECT count(*) FROM 入出庫サブ"_s).toInt() - m_lines;
        m_lines = shop.value(u"SELECT count(*) FROM 入出庫サブ"_s).toInt();
        for (const int lines : reported.lines)
            unreported -= lines;
        QVERIFY2(unreported == 0 || unreported == 1, "more than the action in flight was stored");
        unreportedChanges += unreported;
        nothingIsHalfThere(shop);
        if (QTest::currentTestFailed())
            return;
        headersBefore += headers;
    }
    qInfo("%d kills, %d slips, %d lines; %d left a journal, %d an action stored and not yet reported", kills,
          headersBefore, m_lines, journals, unreportedChanges);
    QVERIFY2(headersBefore >= kills, "the clerk hardly came to save anything");
}

// By the program's own transactions: the header with its number and the customer's day, each line whole and
// under a header, the tax line last and of all the others.
void TestKill::nothingIsHalfThere(FreshShop &shop)
{
    const struct
    {
        const char *what;
        QString sql;
    } halves[] = {
        {"a line without its header",
         u"SELECT count(*) FROM 入出庫サブ WHERE ID NOT IN (SELECT ID FROM 入出庫マスター)"_s},
        {"a header without its values",
         u"SELECT count(*) FROM 入出庫マスター WHERE 伝票番号 IS NOT 'O' || ID OR 日付 IS NOT '2026-04-01' "
         "OR 相手先ID IS NOT 1 OR 社員ID IS NOT 1 OR 消費税率 IS NOT 10"_s},
        {"a header without the customer's day", u"SELECT count(*) FROM 納品先 WHERE 更新日 <> '2026-04-01' "
                                                "AND EXISTS (SELECT 1 FROM 入出庫マスター)"_s},
        {"a line without its values",
         u"SELECT count(*) FROM 入出庫サブ WHERE 商品名 IS NOT '消費税' AND (商品名 IS NOT 'りんご' "
         "OR 規格 IS NOT '５ｋｇ' OR 数量 IS NOT 2 OR 単位 IS NOT '箱' OR 単価 IS NOT 3980 "
         "OR 金額 IS NOT 7960)"_s},
        {"tax that is not that of all lines",
         u"SELECT count(*) FROM 入出庫サブ t WHERE 商品名 = '消費税' AND (金額 IS NOT 2388 "
         "OR (SELECT count(*) FROM 入出庫サブ o WHERE o.ID = t.ID) <> %1 "
         "OR t.rowid <> (SELECT max(rowid) FROM 入出庫サブ o WHERE o.ID = t.ID))"_s.arg(linesBySlip + 1)},
    };
    for (const auto &half : halves)
        QVERIFY2(shop.value(half.sql).toInt() == 0, half.what);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--save"_L1)
        return saveUntilKilled(arguments.value(2));
    TestKill test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_kill.moc"
