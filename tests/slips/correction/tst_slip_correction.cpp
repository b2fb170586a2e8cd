#include "slips/correction/correction_desk.h"

#include "slips/correction/correction_cells.h"
#include "slips/correction/correction_remarks.h"
#include "slips/correction/slip_correction.h"
#include "slips/correction/slip_recalculation.h"

#include <QtTest>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

/// A sale open for correction, as its screen has it.
struct OpenSale
{
    explicit OpenSale(CorrectionShop &shop, qint64 id)
        : connection(shop.connection)
        , headers(shop.connection)
        , lines(shop.connection)
    {
        makeHeadersEditable(headers, connection, book::sale);
        makeLinesEditable(lines);
        if (!openSlips(headers, book::sale) || !headers.moveToKey(id) || !openLines(lines, id))
            qFatal("the sale does not open");
        (void)headers.text(u"日付"_s); // it is looked at
        (void)lineIn(lines, 0);
    }

    bool type(db::Recordset &set, const QString &column, const QString &text)
    {
        return set.setData(set.index(set.currentRow(), set.columnOf(column)), text, Qt::EditRole);
    }
    base::Status save() { return saveCorrections(headers, lines, connection, book::sale); }

    db::Connection &connection;
    db::Recordset headers;
    db::Recordset lines;
};

book::SlipLine goods(double quantity, double price, double amount)
{
    return {u"りんご"_s, {}, quantity, {}, price, amount};
}

book::SlipLine taxLine(double amount) { return {u"消費税"_s, {}, {}, {}, {}, amount}; }

} // namespace

class TestSlipCorrection : public QObject
{
    Q_OBJECT

private slots:
    void cells_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QVariant>("stored"); // invalid: refused
        const QVariant refused;
        const auto row = [](const char *name, const QString &column, const QString &typed,
                            const QVariant &stored) { QTest::newRow(name) << column << typed << stored; };
        row("full width", u"数量"_s, u"１，２３４．５"_s, 1234.5);
        row("below zero", u"数量"_s, u"－3"_s, -3.0);
        row("no quantity", u"数量"_s, u""_s, QVariant(QString(u"-"_s)));
        row("letters", u"単価"_s, u"abc"_s, refused);
        row("exponent", u"単価"_s, u"1e308"_s, refused);
        row("endless", u"金額"_s, u"9"_s.repeated(400), refused);
        row("too great", u"金額"_s, u"900000000001"_s, refused);
        row("half to even", u"金額"_s, u"0.00025"_s, 0.0002);
        row("no amount", u"金額"_s, u" "_s, refused);
        row("name", u"商品名"_s, u"みかん"_s, u"みかん"_s);
        row("long name", u"商品名"_s, u"あ"_s.repeated(500), refused);
        row("date", u"日付"_s, u"２０２６．４．１"_s, u"2026-04-01"_s);
        row("no such day", u"日付"_s, u"2026/2/29"_s, refused);
        row("long ago", u"日付"_s, u"0026/4/1"_s, refused);
        row("no date", u"日付"_s, u""_s, refused);
        row("rate", u"消費税率"_s, u"１０"_s, 10.0);
        row("mad rate", u"消費税率"_s, u"101"_s, refused);
        row("number", u"伝票番号"_s, u"O-77"_s, u"O-77"_s);
        row("another kind", u"伝票番号"_s, u"I77"_s, refused);
        row("key", u"相手先ID"_s, u"２"_s, 2);
        row("one name", u"相手先ID"_s, u"key1"_s, 1);
        row("two names", u"相手先ID"_s, u"key2"_s, refused);
        row("nobody", u"相手先ID"_s, u"99"_s, refused);
        row("key beyond reason", u"相手先ID"_s, u"9223372036854775807"_s, refused);
        row("employee", u"社員ID"_s, u"２"_s, 2);
        row("employee's name", u"社員ID"_s, u"田中"_s, 2);
        row("no such employee", u"社員ID"_s, u"3"_s, refused);
        row("no employee", u"社員ID"_s, u" "_s, refused);
        row("no counterpart", u"相手先ID"_s, u""_s, refused);
        row("tax included", u"内税"_s, u"内税"_s, 1);
        row("tax added", u"内税"_s, u"０"_s, 0);
        row("neither", u"内税"_s, u"2"_s, refused);
    }
    void cells()
    {
        QFETCH(const QString, column);
        QFETCH(const QString, typed);
        QFETCH(const QVariant, stored);
        CorrectionShop shop;
        OpenSale slip(shop, 9);
        db::Recordset &set = slip.lines.columnOf(column) >= 0 ? slip.lines : slip.headers;
        QSignalSpy refusals(&set, &db::Recordset::refused);
        const QStringList before = shop.book();
        QCOMPARE(slip.type(set, column, typed), stored.isValid());
        QCOMPARE(refusals.count(), stored.isValid() ? 0 : 1);
        QVERIFY(slip.save());
        if (!stored.isValid()) {
            QCOMPARE(shop.book(), before);
            return;
        }
        const QString statement = &set == &slip.lines ? u"SELECT %1 FROM 入出庫サブ WHERE ID = 9 LIMIT 1"_s
                                                      : u"SELECT %1 FROM 入出庫マスター WHERE ID = 9"_s;
        QCOMPARE(shop.rows(statement.arg(column)).front(), stored.toString());
    }

    void bothPartsAreSavedOrNeither()
    {
        CorrectionShop shop;
        OpenSale slip(shop, 9);
        const QStringList before = shop.book();
        slip.type(slip.lines, u"数量"_s, u"3"_s);
        slip.type(slip.headers, u"備考"_s, u"至急"_s);
        slip.type(slip.headers, u"伝票番号"_s, u"O1"_s); // slip 1 has it
        const base::Status refused = slip.save();
        QVERIFY(!refused);
        QCOMPARE(refused.error().text, u"伝票番号が重複しています。"_s);
        QCOMPARE(shop.book(), before);
        slip.type(slip.headers, u"伝票番号"_s, u"O-9"_s);
        QVERIFY(slip.save());
        QVERIFY(!slip.lines.isDirty() && !slip.headers.isDirty());
        QCOMPARE(
            shop.rows(
                u"SELECT ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考 FROM 入出庫マスター WHERE ID = 9"_s),
            QStringList{u"9|2026-03-01|O-9|2|1|5|至急"_s});
        // The amount and the tax stay as the clerk wrote them.
        QCOMPARE(shop.rows(u"SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ WHERE ID = 9"_s),
                 (QStringList{u"9|りんご|箱|3|個|1000|2000"_s, u"9|消費税|-|-|-|-|100"_s}));
    }

    // A key is given again after its slip was deleted: what another program put there is not hit.
    void othersSlipsUnderTheSameKeys()
    {
        CorrectionShop shop;
        OpenSale slip(shop, 9);
        slip.type(slip.lines, u"金額"_s, u"1"_s);
        shop.run(u"DELETE FROM 入出庫サブ WHERE ID = 9"_s);
        shop.run(u"DELETE FROM 入出庫マスター WHERE ID = 9"_s);
        shop.addSlip(9, u"I9"_s, 1); // the same header key
        const QStringList others = shop.book();
        slip.type(slip.headers, u"備考"_s, u"x"_s);
        QVERIFY(!slip.save());
        QVERIFY(!deleteCurrentSlip(slip.headers, shop.connection));
        shop.run(u"DELETE FROM 入出庫マスター WHERE ID = 9"_s);
        shop.run(u"UPDATE 入出庫サブ SET ID = 10 WHERE ID = 9"_s); // the same rows, in another slip
        slip.headers.revert();
        QVERIFY(!slip.save());
        QVERIFY(!deleteCurrentLine(slip.headers, slip.lines));
        QCOMPARE(shop.value(u"SELECT SUM(金額) FROM 入出庫サブ WHERE ID = 10"_s).toInt(), 2100);
        QCOMPARE(shop.book().size(), others.size() - 1);
    }

    void deletingTakesTheLinesAlong()
    {
        CorrectionShop shop;
        OpenSale slip(shop, 9);
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考) "
                 "VALUES (10, '2026-03-01', 'O10', 1, 1, 5, NULL)"_s);
        QVERIFY(slip.headers.requery());
        QVERIFY(deleteCurrentSlip(slip.headers, shop.connection));
        QCOMPARE(shop.value(u"SELECT COUNT(*) FROM 入出庫サブ WHERE ID = 9"_s).toInt(), 0);
        QCOMPARE(slip.headers.currentKey(), 10);
        QVERIFY(deleteCurrentSlip(slip.headers, shop.connection)); // a header without lines
        QCOMPARE(slip.headers.currentKey(), 1);
        QCOMPARE(shop.book().size(), 8 * 3);
    }

    void remarks()
    {
        QCOMPARE(amountRemark(goods(2.5, 101, 252)), QString());
        QVERIFY(amountRemark(goods(2.5, 101, 253)).contains(u"252 円"_s));
        QCOMPARE(amountRemark(taxLine(5)), QString());
        QVERIFY(!amountRemark(goods(1e9, 1e9, 0)).isEmpty());
        const book::SlipLine foreign{
            u"名"_s.repeated(2000), {}, 1, {}, 1, 1e300}; // fits on the screen all the same
        QVERIFY(amountRemark(foreign).size() < 100 && totalRemark({foreign}).size() < 40);

        const auto tax = [](std::vector<book::SlipLine> lines, book::TaxClass taxClass) {
            return taxRemark(lines, 5, taxClass);
        };
        using enum book::TaxClass;
        QCOMPARE(tax({goods(1, 1999, 1999), taxLine(99)}, OnDelivery), QString());
        QCOMPARE(tax({goods(1, 2000, 2000), taxLine(99)}, OnDelivery),
                 u"消費税の行は 99 円ですが、いまの明細（2,000 円、税率 5 %）では 100 円になります。"_s);
        // The inclusive tax unticked at the entry.
        QCOMPARE(tax({goods(1, 1999, 1999), taxLine(99)}, Included), QString());
        QVERIFY(!tax({goods(1, 1999, 1999), taxLine(99)}, OnBill).isEmpty());
        QCOMPARE(tax({goods(1, 1999, 1999)}, OnDelivery), QString());
        QCOMPARE(tax({taxLine(5000)}, OnDelivery), QString()); // a period's tax on a slip of its own
    }

    // Two rates, one of which is new, and slips whose tax is not of their goods.
    void taxLinesAreComputedAnew()
    {
        using enum book::TaxClass;
        const auto food = [](double amount) {
            book::SlipLine line = goods(1, amount, amount);
            line.taxClass = book::GoodsTax::Food;
            line.taxRate = 8;
            return line;
        };
        const auto taxes = [](const std::vector<book::SlipLine> &lines, const TaxTerms &terms) {
            std::vector<KeyedLine> keyed;
            for (const book::SlipLine &line : lines)
                keyed.push_back({static_cast<qint64>(keyed.size()) + 1, line});
            const auto anew = recalculated(keyed, {0, terms});
            QStringList found;
            for (const auto &[key, line] : *anew) {
                if (line.isTax())
                    found << u"%1:%2"_s.arg(key).arg(line.amount);
            }
            return found.join(u' ');
        };
        const TaxTerms open{10, OnDelivery, std::nullopt, false};
        const TaxTerms closed{10, OnDelivery, false, true};
        const book::SlipLine standard = goods(1, 1000, 1000);
        QCOMPARE(taxes({standard, taxLine(7)}, open), u"2:100"_s);
        QCOMPARE(taxes({standard, food(1000), taxLine(100)}, open), u"0:100 0:80"_s);
        QCOMPARE(taxes({standard}, open), QString()); // gets it when it is closed
        QCOMPARE(taxes({standard}, closed), u"0:100"_s);
        QCOMPARE(taxes({taxLine(5000)}, closed), u"1:5000"_s);
        QCOMPARE(taxes({standard, taxLine(100)}, {10, OnBill, false, true}), QString());
        QVERIFY(!recalculated({{1, goods(1e9, 1e9, 0)}}, {{}, closed}));
    }
};

QTEST_GUILESS_MAIN(TestSlipCorrection)
#include "tst_slip_correction.moc"
