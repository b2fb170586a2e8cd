#include "placed_texts.h"
#include "plain_sheets.h"
#include "slips/documents/delivery_note.h"
#include "support/fresh_shop.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

// "1980@8r 458*2@8r 1234@10": amounts with their rates; r: food. Without a rate: the slip's own.
void addLines(FreshShop &shop, const QString &text)
{
    for (const QString &part : text.split(u' ', Qt::SkipEmptyParts)) {
        const bool isReduced = part.endsWith(u'r');
        const QString rate = part.section(u'@', 1).remove(u'r');
        const QString amount = part.section(u'@', 0, 0);
        const bool isTax = amount.startsWith(u't');
        shop.run(
            u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額, 税区分, 税率) VALUES (1, ?, ?, ?, ?, ?, ?)"_s,
            {isTax ? u"消費税"_s : u"煎茶"_s, amount.startsWith(u'-') ? -1 : 1,
             amount.mid(isTax).remove(u'-'), amount.mid(isTax).toDouble(),
             isReduced        ? QVariant(1)
             : rate.isEmpty() ? QVariant()
                              : QVariant(0),
             rate.isEmpty() ? QVariant() : QVariant(rate.toDouble())});
    }
}

void addShop(FreshShop &shop, int taxClass, const QString &number)
{
    shop.run(u"INSERT INTO 自社情報 (会社ID, 会社名1, 登録番号) VALUES (1, '山田茶舗', ?)"_s, {number});
    shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 消費税区分) VALUES (7, '山田　太郎', ?)"_s,
             {taxClass});
    shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率, 元伝票) VALUES "
             "(1, '2026-04-01', 'O1', 7, 10, 2), (2, '2026-03-01', 'O2', 7, 10, NULL)"_s);
}

QString shown(const std::vector<InvoiceRate> &rates)
{
    QStringList parts;
    for (const InvoiceRate &rate : rates)
        parts << u"%1: %2+%3"_s.arg(rate.name).arg(rate.amount, 0, 'f', 0).arg(rate.tax, 0, 'f', 0);
    return parts.join(u", "_s);
}

const QString number = u"T7000012050002"_s;

} // namespace

class TestInvoiceRates : public QObject
{
    Q_OBJECT

private slots:
    void ratesOfANote_data();
    void ratesOfANote();
    void onPaper_data();
    void onPaper();
    void billsOfIncludedPrices();
    void nobodyIsAddressed();
    void includedTaxIsToldByRate();
};

void TestInvoiceRates::ratesOfANote_data()
{
    QTest::addColumn<QString>("lines"); // t: a tax line that was booked
    QTest::addColumn<int>("taxClass");
    QTest::addColumn<bool>("isOpen");
    QTest::addColumn<QString>("rates");

    QTest::newRow("one rate") << u"105 105 105"_s << 0 << true << u"10%: 315+31"_s;
    QTest::newRow("two rates") << u"1980@8r 458@8r 458@8r 315@8r 1234 770"_s << 0 << true
                               << u"10%: 2004+200, 軽減8%: 3211+256"_s;
    QTest::newRow("included") << u"5400@8r 3300"_s << 2 << true
                              << u"10%税込: 3300+300, 軽減8%税込: 5400+400"_s;
    QTest::newRow("rounded down once") << u"1000"_s << 2 << true << u"10%税込: 1000+90"_s;
    QTest::newRow("a return") << u"-3333@8r"_s << 0 << true << u"軽減8%: -3333+-266"_s;
    QTest::newRow("food and postage") << u"5000@8r 800"_s << 0 << true << u"10%: 800+80, 軽減8%: 5000+400"_s;
    QTest::newRow("three rates, the old 8 apart")
        << u"1000@8 1000@8r 1000@1r 1000"_s << 0 << true
        << u"8%: 1000+80, 10%: 1000+100, 軽減1%: 1000+10, 軽減8%: 1000+80"_s;
    QTest::newRow("too little for a tax") << u"9"_s << 0 << true << u"10%: 9+0"_s;
    QTest::newRow("on the bill") << u"1000"_s << 1 << true << QString();
    QTest::newRow("as booked") << u"1999 t199"_s << 0 << false << u"10%: 1999+199"_s;
    QTest::newRow("what was booked otherwise is told") << u"1999 t200"_s << 0 << false << u"10%: 1999+200"_s;
    QTest::newRow("booked by rates") << u"1000@8r 500 t50@10 t80@8r"_s << 0 << false
                                     << u"10%: 500+50, 軽減8%: 1000+80"_s;
    QTest::newRow("the tax of a rate that nothing is of")
        << u"1000@8r t80@8r t50@10"_s << 0 << false << QString();
    QTest::newRow("left without its tax") << u"1000"_s << 0 << false << QString();
}

void TestInvoiceRates::ratesOfANote()
{
    QFETCH(QString, lines);
    QFETCH(int, taxClass);
    QFETCH(bool, isOpen);
    FreshShop shop;
    addShop(shop, taxClass, number);
    addLines(shop, lines);
    DeliveryNoteOptions options;
    options.inclusive = taxClass == 2;
    if (isOpen)
        options.closing = book::TaxRates::keptByHand(10);
    const auto note = readDeliveryNote(shop.connection, 1, options);
    QVERIFY(note);
    QTEST(shown(note->rates), "rates");
}

void TestInvoiceRates::onPaper_data()
{
    QTest::addColumn<QString>("registered");
    QTest::addColumn<QString>("lines");
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QStringList>("missing");

    const QString legend = u"※は軽減税率（8%）対象"_s;
    QTest::newRow("qualified") << number << u"5000@8r 800"_s
                               << QStringList{u"登録番号　T7000012050002"_s,
                                              u"※"_s,
                                              legend,
                                              u"対象額"_s,
                                              u"軽減8%"_s,
                                              u"5,000"_s,
                                              u"400"_s,
                                              u"10%"_s,
                                              u"80"_s}
                               << QStringList();
    QTest::newRow("qualified, no reduced line")
        << number << u"800"_s << QStringList{u"登録番号　T7000012050002"_s, u"10%"_s, u"80"_s}
        << QStringList{u"※"_s, legend, u"軽減8%"_s};
    QTest::newRow("not registered") << QString() << u"5000@8r 800"_s << QStringList{u"※"_s, legend}
                                    << QStringList{u"登録番号"_s, u"対象額"_s};
    QTest::newRow("a return of 10,000 with tax")
        << number << u"-9260@8r"_s
        << QStringList{u"【返還】元の伝票 O2　2026/03/01"_s, u"　軽減8%対象 -9,260 円"_s, u"-740"_s}
        << QStringList();
    QTest::newRow("a return of two rates")
        << number << u"-4630@8r -4546"_s << QStringList{u"　10%対象 -4,546 円"_s, u"　軽減8%対象 -4,630 円"_s}
        << QStringList();
    QTest::newRow("a small return") << number << u"-9259@8r 20000"_s << QStringList()
                                    << QStringList{u"【返還】元の伝票 O2　2026/03/01"_s};
    QTest::newRow("a return to a shop without a number")
        << QString() << u"-20000"_s << QStringList{u"-20,000"_s}
        << QStringList{u"【返還】元の伝票 O2　2026/03/01"_s};
    QTest::newRow("several reduced rates have marks of their own")
        << number << u"1000@8r 2000@1r"_s
        << QStringList{u"※"_s, u"◆"_s, u"※は軽減税率（8%）、◆は軽減税率（1%）対象"_s,
                       u"（軽減1%）¥20（軽減8%）¥80"_s}
        << QStringList{u"◇"_s};
    QTest::newRow("no such number") << u"T12345"_s << u"800"_s << QStringList{u"合計金額"_s}
                                    << QStringList{u"登録番号"_s, u"登録番号　T12345"_s, u"対象額"_s};
}

void TestInvoiceRates::onPaper()
{
    QFETCH(QString, registered);
    QFETCH(QString, lines);
    QFETCH(QStringList, there);
    QFETCH(QStringList, missing);
    FreshShop shop;
    addShop(shop, 0, registered);
    addLines(shop, lines);
    DeliveryNoteOptions options;
    options.closing = book::TaxRates::keptByHand(10);
    const auto note = readDeliveryNote(shop.connection, 1, options);
    QVERIFY(note);
    const QStringList texts = textsOf(plainSheets(*note).front());
    for (const QString &text : there)
        QVERIFY2(texts.contains(text), qPrintable(text + texts.join(u'|')));
    for (const QString &text : missing)
        QVERIFY2(!texts.contains(text), qPrintable(text));
}

// To whom prices include the tax the shop issues the invoice once, as it has chosen.
void TestInvoiceRates::billsOfIncludedPrices()
{
    FreshShop shop;
    addShop(shop, 2, number);
    addLines(shop, u"1000"_s);
    DeliveryNoteOptions options;
    options.inclusive = true;
    QCOMPARE(readDeliveryNote(shop.connection, 1, options)->rates.size(), 1U);
    options.includedOnBill = true;
    QVERIFY(readDeliveryNote(shop.connection, 1, options)->rates.empty());
    options.inclusive = false; // a slip taxed on top all the same
    options.closing = book::TaxRates::keptByHand(10);
    QCOMPARE(readDeliveryNote(shop.connection, 1, options)->rates.size(), 1U);
}

// For everybody, registered or not: whole yen at each rate.
void TestInvoiceRates::includedTaxIsToldByRate()
{
    FreshShop shop;
    addShop(shop, 2, QString());
    addLines(shop, u"5400@8r 3300"_s);
    DeliveryNoteOptions options;
    options.inclusive = true;
    const auto several = readDeliveryNote(shop.connection, 1, options);
    QCOMPARE(several->includedRates, u"10% ¥300・軽減8% ¥400"_s);
    const QStringList texts = textsOf(plainSheets(*several).front());
    QVERIFY2(texts.contains(u"¥700"_s) && texts.contains(u"10% ¥300・軽減8% ¥400"_s),
             qPrintable(texts.join(u'|')));
    shop.run(u"DELETE FROM 入出庫サブ WHERE 税区分 = 1"_s);
    QCOMPARE(readDeliveryNote(shop.connection, 1, options)->includedRates, u"10%"_s);
}

// The simplified invoice (適格簡易請求書) names nobody; it has all the rest.
void TestInvoiceRates::nobodyIsAddressed()
{
    FreshShop shop;
    addShop(shop, 0, number);
    shop.run(u"UPDATE 納品先 SET 納品先名1 = NULL"_s);
    addLines(shop, u"1000"_s);
    DeliveryNoteOptions options;
    options.closing = book::TaxRates::keptByHand(10);
    const QStringList texts = textsOf(plainSheets(*readDeliveryNote(shop.connection, 1, options)).front());
    QVERIFY(texts.contains(u"登録番号　T7000012050002"_s));
    QVERIFY(texts.contains(u"対象額"_s));
    QVERIFY(texts.filter(u"様"_s).isEmpty());
}

QTEST_MAIN(TestInvoiceRates)

#include "tst_invoice_rates.moc"
