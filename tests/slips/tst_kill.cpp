#include "support/fresh_shop.h"

#include "slips/slip_store.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

/// What the clerk's program had reported as saved when it was killed.
struct Reported
{
    int headers = 0;
    QHash<qint64, int> lines; // by slip
};

// Saves slips until it is killed and reports each action after it was saved.
int saveUntilKilled(const QString &fileName)
{
    db::Connection connection;
    if (!connection.open(fileName))
        return 1;
    slips::NewSlip slip;
    slip.date = QDate(2026, 4, 1);
    slip.counterpart = 1;
    slip.employee = 1;
    slip.taxRate = 10;
    slip.stamp = slip.date;
    for (;;) {
        const auto header = slips::saveHeader(connection, slip);
        if (!header)
            return 1;
        std::printf("H %lld\n", static_cast<long long>(header->id));
        std::fflush(stdout);
        for (int line = 0; line < 3; ++line) {
            if (!slips::addLine(connection, header->id, {u"りんご"_s, u"５ｋｇ"_s, 2, u"箱"_s, 3980, 7960}))
                return 1;
            std::printf("L %lld\n", static_cast<long long>(header->id));
            std::fflush(stdout);
        }
        if (!slips::closeSlip(connection, header->id, 10, slips::TaxClass::OnDelivery, false))
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
};

void TestKill::nothingReportedIsLost()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID) VALUES (1)"_s);
    const QString fileName = shop.path(u"shop.cdb"_s);
    QRandomGenerator random(1);
    int headersBefore = 0;
    int saved = 0;
    for (int round = 0; round < 25; ++round) {
        shop.connection.close();
        QProcess clerk;
        clerk.start(QCoreApplication::applicationFilePath(), {u"--save"_s, fileName});
        QVERIFY(clerk.waitForReadyRead());
        QTest::qSleep(random.bounded(40));
        clerk.kill();
        QVERIFY(clerk.waitForFinished());
        QCOMPARE(clerk.exitStatus(), QProcess::CrashExit);
        const Reported reported = read(clerk.readAllStandardOutput());

        QVERIFY(shop.connection.open(fileName));
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        const int headers = shop.value(u"SELECT count(*) FROM 入出庫マスター"_s).toInt() - headersBefore;
        QVERIFY(headers == reported.headers || headers == reported.headers + 1);
        int unreported = headers - reported.headers;
        for (auto slip = reported.lines.cbegin(); slip != reported.lines.cend(); ++slip) {
            const int lines =
                shop.value(u"SELECT count(*) FROM 入出庫サブ WHERE ID = ?"_s, {slip.key()}).toInt();
            QVERIFY2(lines >= slip.value(), "a reported line was lost");
            unreported += lines - slip.value();
        }
        QVERIFY2(unreported <= 1, "more than the action in flight was stored");
        QCOMPARE(
            shop.value(u"SELECT count(*) FROM 入出庫サブ WHERE ID NOT IN (SELECT ID FROM 入出庫マスター)"_s)
                .toInt(),
            0);
        headersBefore += headers;
        saved += reported.headers;
    }
    QVERIFY2(saved >= 25, "the clerk hardly came to save anything");
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
