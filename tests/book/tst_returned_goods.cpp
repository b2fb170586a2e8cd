#include "book/returned_goods.h"

#include "book/slip_shop.h"

using book::GoodsTax;

namespace
{

// A sale of 2026-03-<day> with a line of each of \a products.
qint64 sold(Shop &shop, int day, const QStringList &products, qint64 customer = 1)
{
    book::NewSlip slip = saleTo(customer);
    slip.date = QDate(2026, 3, day);
    const auto header = book::saveHeader(shop.connection, slip);
    for (const QString &product : products)
        addLine(shop, header->id, 1000, product);
    return header->id;
}

} // namespace

class TestReturnedGoods : public QObject
{
    Q_OBJECT

private slots:
    void slipsAreOfferedByWhatTheyHold();
    void theOriginalIsKept();
    void whatNeedsADocument_data();
    void whatNeedsADocument();
};

void TestReturnedGoods::slipsAreOfferedByWhatTheyHold()
{
    Shop shop;
    shop.run(u"INSERT INTO 納品先 (納品先ID) VALUES (2)"_s);
    sold(shop, 1, {u"ﾘﾝｺﾞ"_s, u"箱"_s});
    sold(shop, 2, {u"みかん"_s});
    sold(shop, 3, {u"りんご"_s}, 2); // another customer's
    sold(shop, 9, {u"りんご"_s});    // of a later day than the return
    sold(shop, 3, {u"100%ジュース"_s});
    shop.run(u"UPDATE 入出庫マスター SET 日付 = '2026-02-31' WHERE ID = 2"_s); // no day at all
    const qint64 onlyBack = sold(shop, 4, {});
    QVERIFY(book::addLine(shop.connection, onlyBack, {u"りんご"_s, {}, -1, {}, 100, -100}));
    const qint64 now = sold(shop, 5, {u"りんご"_s});
    const book::SavedHeader header{now, u"O%1"_s.arg(now), 1};
    const auto offered = [&](const QString &product, int most = 10) {
        const auto slips =
            book::slipsToReturnOf(shop.connection, book::sale, header, {2026, 3, 5}, product, most);
        QStringList shown;
        for (const book::OriginalSlip &slip : *slips)
            shown << slip.number + (slip.holdsProduct ? u"!"_s : QString());
        return shown.join(u' ');
    };
    QCOMPARE(offered(u"リンゴ"_s), u"O1! O5"_s);
    QCOMPARE(offered(u"100%"_s), u"O5 O1"_s); // the sign stands for itself
    QCOMPARE(offered(u"リンゴ"_s, 1), u"O5"_s);
}

void TestReturnedGoods::theOriginalIsKept()
{
    Shop shop;
    const qint64 original = sold(shop, 1, {u"りんご"_s});
    const qint64 back = sold(shop, 2, {u"りんご"_s});
    QVERIFY(!book::originalOf(shop.connection, back)->has_value());
    QVERIFY(book::keepOriginal(shop.connection, back, original));
    const auto kept = book::originalOf(shop.connection, back);
    QVERIFY(kept && kept->has_value());
    QCOMPARE((*kept)->number, u"O1"_s);
    QCOMPARE((*kept)->date, QDate(2026, 3, 1));
    QVERIFY(book::deleteSlip(shop.connection, original));
    QVERIFY(!book::originalOf(shop.connection, back)->has_value());
    const auto tax = book::taxWhenSold(shop.connection, original, u"りんご"_s);
    QVERIFY(!tax && !tax.error().text.isEmpty());
    const base::Status gone = book::keepOriginal(shop.connection, 99, back);
    QVERIFY(!gone && gone.error().gone);
}

void TestReturnedGoods::whatNeedsADocument_data()
{
    QTest::addColumn<QString>("lines");
    QTest::addColumn<bool>("inclusive");
    QTest::addColumn<QString>("returned");
    QTest::addColumn<bool>("isNeeded");

    QTest::newRow("9,999 with tax") << u"-9259@8r"_s << false << u"-9259-740"_s << false;
    QTest::newRow("10,000 with tax") << u"-9260@8r"_s << false << u"-9260-740"_s << true;
    QTest::newRow("10,000 of two rates")
        << u"-4630@8r -4546@10"_s << false << u"-4546-454 -4630-370"_s << true;
    QTest::newRow("prices with the tax") << u"-9999@8r"_s << true << u"-9259-740"_s << false;
    QTest::newRow("what is sold beside it does not count")
        << u"50000@10 -3333@8r"_s << false << u"-3333-266"_s << false;
    QTest::newRow("nothing comes back") << u"50000@10"_s << false << QString() << false;
}

void TestReturnedGoods::whatNeedsADocument()
{
    QFETCH(QString, lines);
    QFETCH(bool, inclusive);
    book::Slip slip;
    for (const QString &part : lines.split(u' ', Qt::SkipEmptyParts)) {
        book::SlipLine line;
        line.product = u"茶"_s;
        line.amount = part.section(u'@', 0, 0).toDouble();
        line.quantity = line.amount < 0 ? -1 : 1;
        line.price = std::abs(line.amount);
        line.taxClass = part.endsWith(u'r') ? GoodsTax::Food : GoodsTax::Standard;
        line.taxRate = part.section(u'@', 1).remove(u'r').toDouble();
        slip.lines.push_back(line);
    }
    const auto taxes = book::returnedAt(slip, 10, inclusive ? book::Basis::Gross : book::Basis::Net);
    QVERIFY(taxes);
    QStringList shown;
    for (const book::RateTax &tax : *taxes)
        shown << u"%1%2"_s.arg(tax.net).arg(tax.tax);
    QTEST(shown.join(u' '), "returned");
    QTEST(book::needsReturnDocument(*taxes), "isNeeded");
}

QTEST_GUILESS_MAIN(TestReturnedGoods)
#include "tst_returned_goods.moc"
