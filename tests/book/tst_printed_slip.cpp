// What a slip's paper says, printed before the slip is closed and after it.
#include "book/printed_slip.h"
#include "book/slip_store.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestPrintedSlip : public QObject
{
    Q_OBJECT

private slots:
    void closingMakesNoDifference_data();
    void closingMakesNoDifference();
    void whatIsNoNumberIsNoChange();
};

namespace
{

// Line by line: name, amount, and what it is taxed at.
QStringList linesOf(const book::Slip &slip)
{
    QStringList lines;
    for (const book::SlipLine &line : slip.lines) {
        const QString taxClass = line.taxClass ? QString::number(int(*line.taxClass)) : u"-"_s;
        const QString rate = line.taxRate ? QString::number(*line.taxRate) : u"-"_s;
        lines << u"%1 %2 %3 %4"_s.arg(line.product, QString::number(line.amount), taxClass, rate);
    }
    return lines;
}

} // namespace

void TestPrintedSlip::closingMakesNoDifference_data()
{
    QTest::addColumn<QVariant>("slipRate");
    QTest::addColumn<QString>("lines"); // 金額, 税区分, 税率
    QTest::addColumn<QStringList>("taxLines");
    const QVariant ten = 10;
    QTest::newRow("the slip's own rate")
        << ten << u"(1980, NULL, NULL)"_s << QStringList{u"消費税 198 - -"_s};
    QTest::newRow("the same, said by the lines")
        << ten << u"(1980, 0, 10), (20, NULL, NULL)"_s << QStringList{u"消費税 200 - -"_s};
    QTest::newRow("food alone") << ten << u"(1980, 1, 8), (540, 1, 8)"_s << QStringList{u"消費税 201 1 8"_s};
    QTest::newRow("food at the slip's rate")
        << ten << u"(1980, 1, 10)"_s << QStringList{u"消費税 198 1 10"_s};
    QTest::newRow("another standard rate alone")
        << ten << u"(1980, 0, 8)"_s << QStringList{u"消費税 158 0 8"_s};
    QTest::newRow("a slip without a rate")
        << QVariant() << u"(1980, NULL, NULL)"_s << QStringList{u"消費税 198 0 10"_s};
    QTest::newRow("two rates") << ten << u"(1000, NULL, NULL), (500, 1, 8)"_s
                               << QStringList{u"消費税 100 0 10"_s, u"消費税 40 1 8"_s};
}

void TestPrintedSlip::closingMakesNoDifference()
{
    QFETCH(QVariant, slipRate);
    QFETCH(QString, lines);
    FreshShop shop;
    shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) "
             "VALUES (3, '2026-04-01', 'O3', 1, ?)"_s,
             {slipRate});
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額, 税区分, 税率) "
             "SELECT 3, '品', column1, column2, column3 FROM (VALUES "_s +
             lines + u')');
    const book::PrintedTax tax{false, book::TaxRates::keptByHand(10)};
    const auto before = book::readSlip(shop.connection, 3, book::Party::Customer);
    QVERIFY(before);
    const auto open = book::taxedForPrint(*before, tax);
    QVERIFY(book::closeSlip(shop.connection, 3, 10, book::TaxClass::OnDelivery, false));
    const auto after = book::readSlip(shop.connection, 3, book::Party::Customer);
    QVERIFY(after);
    const auto closed = book::taxedForPrint(*after, tax);
    QVERIFY(open && closed);
    QTEST(linesOf(closed->slip).mid(qsizetype(before->lines.size())), "taxLines");
    QCOMPARE(linesOf(open->slip), linesOf(closed->slip));
    QCOMPARE(open->total, closed->total);
}

// A text that another program has left in place of a number.
void TestPrintedSlip::whatIsNoNumberIsNoChange()
{
    FreshShop shop;
    shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) "
             "VALUES (3, '2026-04-01', 'O3', 1, '不明')"_s);
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額, 税率) "
             "VALUES (3, '菓子', '二', '約500', '千円', '8%'), (3, '茶', 2, 300, 600, NULL)"_s);
    const auto slip = [&] { return *book::readSlip(shop.connection, 3, book::Party::Customer); };
    const book::Slip before = slip();
    QVERIFY(before == slip());
    for (const QString &column : {u"数量"_s, u"単価"_s, u"金額"_s, u"税率"_s}) {
        shop.run(u"UPDATE 入出庫サブ SET %1 = 7 WHERE 商品名 = '菓子'"_s.arg(column));
        QVERIFY2(before != slip(), qPrintable(column));
        shop.run(u"UPDATE 入出庫サブ SET %1 = 'なし' WHERE 商品名 = '菓子'"_s.arg(column));
        QVERIFY(before == slip());
    }
}

QTEST_GUILESS_MAIN(TestPrintedSlip)
#include "tst_printed_slip.moc"
