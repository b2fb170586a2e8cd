// Two programs enter slips into one file at once. KANBALORE_SLIPS: how many each of them.
#include "book/slip_store.h"
#include "db/connection.h"
#include "support/fresh_shop.h"
#include "support/numbers.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <array>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

const QString wait = u"しばらく待ってから、もう一度実行してください。"_s;

// Does an action as a clerk does: told to wait, again after a while; any other sentence ends the work.
template <class Act>
auto untilDone(Act act)
{
    auto done = act();
    while (!done && done.error().text.endsWith(wait)) {
        std::puts("W");
        QThread::msleep(50);
        done = act();
    }
    if (!done)
        std::printf("E %s\n", qPrintable(done.error().text));
    return done;
}

int enterSlips(const QString &fileName, qint64 clerk, int slips)
{
    db::Connection connection;
    if (!untilDone([&] { return connection.open(fileName); }))
        return 1;
    book::NewSlip slip;
    slip.date = QDate(2026, 4, 1);
    slip.counterpart = clerk;
    slip.employee = clerk;
    slip.taxRate = 10;
    slip.stamp = slip.date;
    for (int i = 1; i <= slips; ++i) {
        const auto header = untilDone([&] { return book::saveHeader(connection, slip); });
        if (!header)
            return 1;
        for (int line = 1; line <= 2; ++line) {
            const book::GoodsLine goods{u"りんご"_s, {}, double(line), u"箱"_s, double(i), double(i * line)};
            if (!untilDone([&] { return book::addLine(connection, header->id, goods); }))
                return 1;
        }
        if (!untilDone([&] {
                return book::closeSlip(connection, header->id, 10, book::TaxClass::OnDelivery, false);
            }))
            return 1;
    }
    return 0;
}

} // namespace

class TestTwoPrograms : public QObject
{
    Q_OBJECT

private slots:
    void bothEnterAtOnce();
};

void TestTwoPrograms::bothEnterAtOnce()
{
    const int slips = numberFrom("KANBALORE_SLIPS", 60);
    FreshShop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID) VALUES (1), (2)"_s);
    QElapsedTimer time;
    time.start();
    std::array<QProcess, 2> clerks;
    for (std::size_t i = 0; i < clerks.size(); ++i) {
        clerks[i].setProcessChannelMode(QProcess::ForwardedErrorChannel);
        clerks[i].start(
            QCoreApplication::applicationFilePath(),
            {u"--enter"_s, shop.path(u"shop.cdb"_s), QString::number(i + 1), QString::number(slips)});
    }
    qsizetype waits = 0;
    for (QProcess &clerk : clerks) {
        QVERIFY(clerk.waitForFinished(110'000));
        const QByteArray said = clerk.readAllStandardOutput();
        QVERIFY2(clerk.exitStatus() == QProcess::NormalExit && clerk.exitCode() == 0, said.constData());
        waits += said.count('W');
    }
    qInfo("2 programs, %d slips each: %lld ms, told to wait %lld times", slips,
          static_cast<long long>(time.elapsed()), static_cast<long long>(waits));

    QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
    QCOMPARE(shop.rows(u"SELECT count(*), count(DISTINCT ID), max(ID), count(DISTINCT 伝票番号) "
                       "FROM 入出庫マスター"_s),
             QStringList{u"%1|%1|%1|%1"_s.arg(2 * slips)});
    for (int clerk = 1; clerk <= 2; ++clerk) {
        // The n-th slip of each clerk has its own two lines, and the tax of these.
        const QStringList entered = shop.rows(
            u"SELECT group_concat(金額) FROM (SELECT m.ID AS ID, s.金額 AS 金額 FROM 入出庫マスター m, "
            u"入出庫サブ s "
            "WHERE s.ID = m.ID AND m.社員ID = %1 ORDER BY m.ID, s.rowid) GROUP BY ID ORDER BY ID"_s.arg(
                clerk));
        QCOMPARE(entered.size(), slips);
        for (int i = 1; i <= slips; ++i) {
            const int tax = 3 * i / 10;
            const QString lines =
                tax > 0 ? u"%1.0,%2.0,%3.0"_s.arg(i).arg(2 * i).arg(tax) : u"%1.0,%2.0"_s.arg(i).arg(2 * i);
            QCOMPARE(entered.at(i - 1), lines);
        }
    }
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--enter"_L1)
        return enterSlips(arguments.value(2), arguments.value(3).toLongLong(), arguments.value(4).toInt());
    TestTwoPrograms test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_two_programs.moc"
