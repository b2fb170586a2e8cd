#include "book/generated_book.h"

#include "reports/ledgers/goods_ledger.h"
#include "reports/ledgers/stock_ledger.h"
#include "text/numbers.h"

#include <QtTest>

#include <unordered_map>

using namespace Qt::StringLiterals;

namespace
{

const book::Goods apples{u"りんご"_s, u"大"_s, u"箱"_s};

// "I 2026-04-01 2.5": a slip with one line of apples; "-" for no day.
void writeSlip(FreshShop &shop, int id, const QString &slip)
{
    const QStringList parts = slip.split(u' ');
    shop.run(
        u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (?, ?, ?, 1)"_s,
        {id, parts.at(1) == u"-" ? QVariant() : QVariant(parts.at(1)), parts.at(0) + QString::number(id)});
    bool isNumber = false;
    const double quantity = parts.at(2).toDouble(&isNumber);
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 単位, 数量) VALUES (?, 'りんご', '大', '箱', ?)"_s,
             {id, isNumber ? QVariant(quantity) : QVariant(parts.at(2))});
}

QString shown(double quantity) { return text::formatQuantity(quantity); }

QString exact(double quantity) { return QString::number(quantity, 'f', 4); }

} // namespace

class TestGoodsLedger : public QObject
{
    Q_OBJECT

private slots:
    void reckoned_data()
    {
        QTest::addColumn<QStringList>("slips");
        QTest::addColumn<QString>("lines"); // brought, then each slip's letter and the stock after it
        QTest::addColumn<QString>("sums");  // in, out, found, stock
        const auto row = [](const char *name, const QStringList &slips, const QString &lines,
                            const QString &sums) { QTest::newRow(name) << slips << lines << sums; };
        row("nothing", {}, u"0"_s, u"0 0 0 0"_s);
        row("bought and sold", {u"O 2026-04-02 1"_s, u"I 2026-04-01 2.5"_s}, u"0 I2.50 O1.50"_s,
            u"2.50 1 0 1.50"_s);
        row("counted in the evening", {u"T 2026-04-10 10"_s, u"O 2026-04-10 3"_s, u"I 2026-04-11 5"_s},
            u"0 O-3 T10 I15"_s, u"5 3 13 15"_s);
        row("counted shelf by shelf", {u"I 2026-03-01 20"_s, u"T 2026-04-10 10"_s, u"T 2026-04-10 2.5"_s},
            u"20 T10 T12.50"_s, u"0 0 -7.50 12.50"_s);
        row("counted twice", {u"T 2026-04-01 4"_s, u"T 2026-04-30 3"_s}, u"0 T4 T3"_s, u"0 0 3 3"_s);
        row("counted before the period", {u"I 2026-03-30 50"_s, u"O 2026-03-31 4"_s, u"T 2026-03-31 10"_s},
            u"10"_s, u"0 0 0 10"_s);
        row("days that are none lie before", {u"I - 7"_s, u"I 20260415 2"_s, u"O 2026-04-02 1"_s}, u"9 O8"_s,
            u"0 1 0 8"_s);
        row("after the period", {u"I 2026-05-01 1"_s, u"T 2026-05-01 1"_s}, u"0"_s, u"0 0 0 0"_s);
        row("no number, until the next count", {u"I 2026-04-01 三"_s, u"T 2026-04-05 3"_s},
            u"0 I計算不能 T3"_s, u"計算不能 0 計算不能 3"_s);
        row("neither estimates nor money", {u"M 2026-04-01 5"_s, u"R 2026-04-01 5"_s, u"A 2026-04-01 5"_s},
            u"0"_s, u"0 0 0 0"_s);
    }

    void reckoned()
    {
        QFETCH(QStringList, slips);
        FreshShop shop;
        shop.run(u"BEGIN"_s);
        writeSlip(shop, 1, u"I 2026-04-03 99"_s); // other goods
        shop.run(u"UPDATE 入出庫サブ SET 単位 = 'kg'"_s);
        for (int i = 0; i < slips.size(); ++i)
            writeSlip(shop, i + 2, slips.at(i));
        shop.run(u"COMMIT"_s);
        const auto ledger = reports::readGoodsLedger(shop.connection, apples, {{2026, 4, 1}, {2026, 4, 30}});
        QVERIFY(ledger);
        QString lines = shown(ledger->brought);
        for (const reports::GoodsLine &line : ledger->lines)
            lines += u' ' + line.number.first(1) + shown(line.stock);
        QTEST(lines, "lines");
        QTEST(QStringList({shown(ledger->in), shown(ledger->out), shown(ledger->found), shown(ledger->stock)})
                  .join(u' '),
              "sums");
    }

    // At the beginning and at the end the ledgers of all goods are the stock list.
    void agreesWithTheStockList()
    {
        FreshShop shop;
        GeneratedBook::writeTo(shop);
        const book::Period periods[] = {{{2025, 2, 1}, {2025, 2, 28}},
                                        {{2025, 5, 17}, {2025, 9, 3}},
                                        {GeneratedBook::firstDay, GeneratedBook::lastDay}};
        for (const book::Period &period : periods) {
            const auto before = reports::readStock(shop.connection, period.from.addDays(-1), base::unwatched);
            const auto after = reports::readStock(shop.connection, period.to, base::unwatched);
            QVERIFY(before && after && after->lines.size() > 20);
            std::unordered_map<book::Goods, double> brought;
            for (const reports::StockLine &line : before->lines)
                brought[{line.product, line.specification, line.unit}] = line.stock;
            for (const reports::StockLine &line : after->lines) {
                const book::Goods goods{line.product, line.specification, line.unit};
                const auto ledger = reports::readGoodsLedger(shop.connection, goods, period);
                QVERIFY(ledger);
                QCOMPARE(exact(ledger->stock), exact(line.stock));
                QCOMPARE(exact(ledger->brought), exact(brought[goods]));
                QCOMPARE(exact(ledger->brought + ledger->in - ledger->out + ledger->found),
                         exact(ledger->stock));
                if (!ledger->lines.empty())
                    QCOMPARE(exact(ledger->lines.back().stock), exact(ledger->stock));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestGoodsLedger)
#include "tst_goods_ledger.moc"
