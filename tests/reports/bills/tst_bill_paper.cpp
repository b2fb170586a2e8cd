#include "hand_made_bills.h"

#include "printing/forms/form_files.h"
#include "printing/forms/form_sheets.h"
#include "printing/lead_lines.h"
#include "reports/bills/bill_header.h"
#include "slips/documents/placed_texts.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace reports;
using printing::Sheet;

namespace
{

const QString plain = u"bill-a4.toml"_s;
const QString continuous = u"bill-1148.toml"_s;

std::vector<Sheet> sheetsOf(const BillPaper &paper, const QString &layout)
{
    return billSheets(paper, printing::builtInForm(layout, billItems()));
}

QStringList allTexts(const BillPaper &paper, const QString &layout)
{
    QStringList texts;
    const std::vector<Sheet> sheets = sheetsOf(paper, layout);
    for (const Sheet &sheet : sheets)
        texts << textsOf(sheet);
    return texts;
}

/// The paper without sprocket strips.
QRectF printable(const Sheet &sheet)
{
    if (sheet.paperWidth > 210)
        return {12.7, 8.4, sheet.paperWidth - 2 * 12.7, sheet.paperHeight - 2 * 8.4};
    return {10, 8.4, 190, 279.6};
}

void addLayouts()
{
    QTest::addColumn<QString>("layout");
    for (const QString &layout : {plain, continuous})
        QTest::newRow(qPrintable(layout)) << layout;
}

BillSums sumsOf(double previous, double sales, double received, double untaxed)
{
    BillSums sums;
    sums.previous = previous;
    sums.sales = sales;
    sums.received = received;
    sums.untaxed = untaxed;
    return sums;
}

/// A registered shop's bill of goods at three rates, with what was owed and paid.
BillPaper invoice(book::TaxClass taxClass)
{
    BillPaper paper = paperOf(3);
    paper.sender.registrationNumber = u"T7000012050002"_s;
    paper.bill.customer.taxClass = taxClass;
    paper.bill.rows[1].mark = u"※"_s;
    paper.bill.rates = {{u"10%"_s, 1000, 100}, {u"軽減8%"_s, 1000, 80}, {u"軽減1%"_s, 1000, 10}};
    paper.bill.reducedLegend = u"※は軽減税率（8%）、◆は軽減税率（1%）対象"_s;
    paper.bill.noteNumbers = QStringList{u"O101"_s, u"O102"_s, u"O103"_s};
    paper.bill.sums = sumsOf(54'000, 3'190, 50'000, 3'000);
    return paper;
}

} // namespace

class TestBillPaper : public QObject
{
    Q_OBJECT

private slots:
    // Measured from the upper left corner of the paper; moved 2 steps down and 3 to the left, the addressee 4
    // characters to the right.
    void everythingStandsWhereTheFormWantsIt_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QPointF>("at");
        QTest::addColumn<QPointF>("moved");
        const QPointF all(-5.25, 2.82);
        const QPointF name(1.75, 2.82);
        const auto row = [](const char *what, const QString &layout, const char16_t *text, QPointF at,
                            QPointF moved) {
            QTest::addRow("%s of %s", what, qPrintable(layout))
                << layout << QString::fromUtf16(text) << at << moved;
        };
        const double middle = 25.4 / 72 / 2; // of a point of type
        row("post code", plain, u"１５０－０００１", {20, 20}, name);
        row("billed", plain, u"¥7,190", {193.2, 87.4 + 4.4 - 16 * middle}, all);
        row("first row", plain, u"品1", {42, 131.4 + 3.7 - 9 * middle}, all);
        row("last row", plain, u"品20", {42, 131.4 + 19.5 * 7.4 - 9 * middle}, all);
        row("a balance", plain, u"17,000", {194.2, 131.4 + 16.5 * 7.4 - 9 * middle}, all);
        row("post code", continuous, u"〒150-0001", {20, 20.46}, name);
        row("sender", continuous, u"有限会社山田茶舗", {135, 20.46}, all);
        row("sales", continuous, u"20,000", {152, 68}, all);
        row("first row", continuous, u"品1", {45.5, 84.7 + 4.2335 - 9.5 * middle}, all);
        row("last row", continuous, u"品20", {45.5, 84.7 + 19.5 * 8.467 - 9.5 * middle}, all);
    }

    void everythingStandsWhereTheFormWantsIt()
    {
        QFETCH(QString, layout);
        QFETCH(QString, text);
        QFETCH(QPointF, at);
        QFETCH(QPointF, moved);
        BillPaper paper = paperOf(20);
        paper.bill.sums.previous = 37'190;
        paper.bill.sums.received = 50'000;
        // The amounts of the head stand below the rows in the order of drawing.
        const int later = text == u"20,000" ? 1 : 0;
        const auto placed = [&] {
            const Sheet sheet = sheetsOf(paper, layout).front();
            const printing::TextItem *item = itemWith(sheet, text, later);
            if (!item)
                qWarning("%s", qPrintable(textsOf(sheet).join(u'|')));
            return item ? placeOf(*item) : QPointF();
        };
        const QPointF usual = placed();
        QVERIFY2(QLineF(usual, at).length() < 0.02,
                 qPrintable(u"%1 %2"_s.arg(usual.x(), 0, 'f', 3).arg(usual.y(), 0, 'f', 3)));
        paper.offsets = {.down = 2, .right = -3, .addresseeRight = 4};
        QVERIFY(QLineF(placed() - usual, moved).length() < 0.01);
        // Without the name a form of lines begins a line of four points higher; plain paper does not.
        paper.offsets = {};
        paper.companyName = slips::CompanyName::Omitted;
        if (text != u"有限会社山田茶舗")
            QVERIFY(QLineF(placed() - usual, QPointF(0, layout == plain ? 0 : -1.411)).length() < 0.01);
    }

    void leadLinesFollowThePrinter_data()
    {
        QTest::addColumn<double>("margin"); // millimetres
        QTest::addColumn<int>("lines");
        QTest::newRow("none") << 0.0 << 10;
        QTest::newRow("just under 4") << 3.99 << 10;
        QTest::newRow("4 are 3 times 57 twips and more") << 4.0 << 10;
        QTest::newRow("a sixth of an inch") << 25.4 / 6 << 9;
        QTest::newRow("under 5") << 4.9 << 9;
        QTest::newRow("over 5") << 5.1 << 8;
        QTest::newRow("under 6") << 5.9 << 8;
        QTest::newRow("6.35, of dot-matrix printers") << 6.35 << 10;
        QTest::newRow("half an inch") << 12.7 << 10;
    }

    void leadLinesFollowThePrinter()
    {
        QFETCH(double, margin);
        QFETCH(int, lines);
        QCOMPARE(printing::leadLines(margin), lines);
        // From the paper's edge to the first line: what is not reached, and the lines of four points.
        const double first = 6.35 + 10 * 25.4 / 18 + printing::leadShift(margin);
        QVERIFY(std::abs(first - (margin + lines * 25.4 / 18)) < 0.001);
    }

    void noRowIsLostWhereABillGoesOn_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QStringList>("carried"); // at the end of each sheet but the last
        QTest::newRow("1148, one") << continuous << 1 << QStringList();
        QTest::newRow("1148, full") << continuous << 20 << QStringList();
        QTest::newRow("1148, one more") << continuous << 21 << QStringList{u"19,000"_s};
        QTest::newRow("1148, two full") << continuous << 39 << QStringList{u"19,000"_s};
        QTest::newRow("1148, three") << continuous << 40 << QStringList{u"19,000"_s, u"38,000"_s};
        QTest::newRow("A4, full") << plain << 20 << QStringList();
        QTest::newRow("A4, one more") << plain << 21 << QStringList{u"19,000"_s};
        QTest::newRow("A4, two full") << plain << 51 << QStringList{u"19,000"_s};
        QTest::newRow("A4, hundred") << plain << 100 << QStringList{u"19,000"_s, u"50,000"_s, u"81,000"_s};
    }

    void noRowIsLostWhereABillGoesOn()
    {
        QFETCH(QString, layout);
        QFETCH(int, rows);
        QFETCH(QStringList, carried);
        const std::vector<Sheet> sheets = sheetsOf(paperOf(rows), layout);
        QCOMPARE(qsizetype(sheets.size()), carried.size() + 1);
        QStringList goods;
        for (std::size_t i = 0; i < sheets.size(); ++i) {
            const QStringList texts = textsOf(sheets[i]);
            const qsizetype at = texts.indexOf(u"次葉へ繰越"_s);
            QCOMPARE(at >= 0, i + 1 < sheets.size());
            if (at >= 0)
                QCOMPARE(texts.at(at + 1), carried[qsizetype(i)]);
            QCOMPARE(texts.contains(u"%1 / %2"_s.arg(i + 1).arg(sheets.size())), sheets.size() > 1);
            goods << texts.filter(QRegularExpression(u"^品\\d"_s));
        }
        QCOMPARE(goods.size(), rows);
        QCOMPARE(goods.back(), u"品%1"_s.arg(rows));
    }

    // What comes in lowers what is carried to the next sheet.
    void theCarriedBalanceIsThatOfItsLastRow()
    {
        BillPaper paper = paperOf(25);
        std::vector<BillRow> &rows = paper.bill.rows;
        rows[0] = BillRow();
        rows[0].kind = BillRowKind::Carried;
        rows[0].name = u"繰越"_s;
        rows[0].balance = 54'000;
        rows[10].kind = BillRowKind::Receipt;
        rows[10].delivered.reset();
        rows[10].received = 50'000;
        for (std::size_t i = 1; i < rows.size(); ++i)
            rows[i].balance =
                rows[i - 1].balance + rows[i].delivered.value_or(0) - rows[i].received.value_or(0);
        const std::vector<Sheet> sheets = sheetsOf(paper, continuous);
        const QStringList texts = textsOf(sheets.front());
        QCOMPARE(texts.at(texts.indexOf(u"次葉へ繰越"_s) + 1), u"21,000"_s);
        const printing::TextItem *received = itemWith(sheets.front(), u"50,000"_s);
        QVERIFY(received && std::abs(placeOf(*received).x() - 204) < 0.01);
        QVERIFY(textsOf(sheets.back()).contains(u"27,000"_s));
    }

    void headerLinesSayWhomTheBillIsFor_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("honorific");  // "-": none was chosen
        QTest::addColumn<QStringList>("others"); // code, telephone, fax
        QTest::addColumn<QStringList>("lines");  // from the names on
        const QStringList all{u"T-0042"_s, u"03-1234-5678"_s, u"03-1234-9999"_s};
        const QString number = u"   T-0042               No. 7-20261031"_s;
        const QStringList reached{number, u"   TEL 03-1234-5678"_s, u"   FAX 03-1234-9999"_s};
        QTest::newRow("one name") << QStringList{u"山田 太郎"_s, {}} << u"-"_s << all
                                  << QStringList{u"　　山田 太郎　様"_s} + reached;
        QTest::newRow("two names") << QStringList{u"㈱東京百貨店"_s, u"外商部"_s} << u"-"_s << all
                                   << QStringList{u"　　㈱東京百貨店"_s, u"　　外商部　　様"_s} + reached;
        QTest::newRow("a firm") << QStringList{u"㈱東京百貨店"_s, {}} << u"御中"_s << all
                                << QStringList{u"　　㈱東京百貨店　御中"_s} + reached;
        QTest::newRow("to be none") << QStringList{u"現金売り"_s, {}} << QString() << all
                                    << QStringList{u"　　現金売り"_s} + reached;
        QTest::newRow("has one") << QStringList{u"山田 太郎様"_s, {}} << u"-"_s << all
                                 << QStringList{u"　　山田 太郎様"_s} + reached;
        QTest::newRow("no code, no fax")
            << QStringList{u"山田"_s, {}} << u"-"_s << QStringList{{}, u"03-1234-5678"_s, {}}
            << QStringList{u"　　山田　様"_s, u"                        No. 7-20261031"_s,
                           u"   TEL 03-1234-5678"_s};
        QTest::newRow("a long code of two widths")
            << QStringList{u"山田"_s, {}} << u"-"_s << QStringList{u"東京１２３４５６７８９０１２"_s, {}, {}}
            << QStringList{u"　　山田　様"_s, u"   東京１２３４５６７８９０１２ No. 7-20261031"_s};
    }

    void headerLinesSayWhomTheBillIsFor()
    {
        QFETCH(QStringList, names);
        QFETCH(QString, honorific);
        QFETCH(QStringList, others);
        QFETCH(QStringList, lines);
        BillPaper paper = paperOf(1);
        BillCustomer &customer = paper.bill.customer;
        customer.name1 = names[0];
        customer.name2 = names[1];
        if (honorific != u'-')
            customer.honorific = honorific;
        customer.code = others[0];
        customer.tel = others[1];
        customer.fax = others[2];
        const QStringList before{u"〒150-0001"_s, u"   東京都渋谷区神宮前１－２－３"_s};
        QCOMPARE(billHeaderLines(paper.bill), before + lines);
        // The form of lines prints them as they are.
        const Sheet sheet = sheetsOf(paper, continuous).front();
        for (const QString &line : before + lines) {
            const printing::TextItem *item = itemWith(sheet, line);
            QVERIFY2(item && item->points == 8, qPrintable(line));
        }
    }

    void nothingIsCutOffOrStandsOnAnotherText_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<int>("length");
        for (const QString &layout : {plain, continuous}) {
            for (const int length : {8, 22, 60})
                QTest::addRow("%s %d", qPrintable(layout), length) << layout << length;
        }
    }

    void nothingIsCutOffOrStandsOnAnotherText()
    {
        QFETCH(QString, layout);
        QFETCH(int, length);
        constexpr double large = -123'456'789'012.0;
        const QString text(length, u'茶');
        BillPaper paper = invoice(book::TaxClass::OnBill);
        BillCustomer &customer = paper.bill.customer;
        customer.name1 = customer.name2 = customer.address1 = customer.address2 = text;
        customer.code = customer.tel = customer.fax = text.left(20);
        paper.sender.name1 = paper.sender.name2 = paper.sender.address1 = paper.sender.address2 = text;
        paper.sender.bank1 = paper.sender.bank2 = paper.message = text;
        paper.sender.fax = u"054-123-4568"_s;
        paper.salesOnly = true;
        for (slips::InvoiceRate &rate : paper.bill.rates)
            rate.amount = rate.tax = large;
        paper.bill.noteNumbers = QStringList(200, u"O123456"_s);
        paper.bill.sums = sumsOf(large, -large, 0, 0);
        BillRow row = paper.bill.rows.back();
        row.name = row.specification = text;
        row.number = text.left(22);
        row.quantity = 123'456.25;
        row.price = 1'234'567.25;
        row.delivered = row.received = row.balance = large;
        paper.bill.rows.assign(40, row);
        QString printed;
        const std::vector<Sheet> sheets = sheetsOf(paper, layout);
        for (const Sheet &sheet : sheets) {
            const QStringList wrong = misplaced(sheet, printable(sheet));
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u'\n').left(2000)));
            printed += textsOf(sheet).join(QString());
        }
        QVERIFY(printed.count(u'茶') >= (11 + 2 * 40) * length);
    }

    void theAddresseeShowsThroughTheWindow()
    {
        BillPaper paper = paperOf(1);
        paper.bill.customer.name2 = u"外商部　第一営業課　ご担当者"_s;
        paper.bill.customer.address2 = u"神宮前ビルディング別館１２階"_s;
        const Sheet sheet = sheetsOf(paper, plain).front();
        const QRectF window(20, 18, 75, 32);
        int inside = 0;
        for (const printing::TextItem &item : sheet.texts) {
            const QRectF area = areaOf(item);
            const bool isInside = window.adjusted(-0.1, 0, 0.1, 0).contains(area);
            QVERIFY2(isInside || !window.intersects(area), qPrintable(item.text));
            inside += isInside ? 1 : 0;
        }
        QCOMPARE(inside, 5);
    }

    // Number, period, marks with their legend, totals and tax of each rate, to whom.
    void aRegisteredShopsBillIsAnInvoice_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<book::TaxClass>("taxClass");
        QTest::addColumn<bool>("namesNotes");
        for (const QString &layout : {plain, continuous}) {
            QTest::addRow("on bill, %s", qPrintable(layout)) << layout << book::TaxClass::OnBill << true;
            QTest::addRow("on delivery, %s", qPrintable(layout))
                << layout << book::TaxClass::OnDelivery << false;
            QTest::addRow("included, %s", qPrintable(layout)) << layout << book::TaxClass::Included << false;
        }
    }

    void aRegisteredShopsBillIsAnInvoice()
    {
        QFETCH(QString, layout);
        QFETCH(book::TaxClass, taxClass);
        QFETCH(bool, namesNotes);
        BillPaper paper = invoice(taxClass);
        const QStringList texts = allTexts(paper, layout);
        QCOMPARE(texts.filter(u"T7000012050002"_s), QStringList{u"登録番号　T7000012050002"_s});
        QCOMPARE(texts.count(u"※"_s), 1);
        QVERIFY(texts.contains(paper.bill.reducedLegend));
        const qsizetype rate = texts.indexOf(u"10%"_s);
        QCOMPARE(texts.mid(rate, 9), QStringList({u"10%"_s, u"1,000"_s, u"100"_s, u"軽減8%"_s, u"1,000"_s,
                                                  u"80"_s, u"軽減1%"_s, u"1,000"_s, u"10"_s}));
        const QString notes = u"納品書番号　O101、O102、O103"_s;
        QCOMPARE(texts.contains(notes), namesNotes);
        // What was owed and paid stands outside of the rates.
        QVERIFY(texts.contains(u"54,000"_s) && texts.contains(u"4,000"_s) && texts.contains(u"¥7,190"_s));
        paper.includedOnBill = true;
        QCOMPARE(allTexts(paper, layout).contains(notes), taxClass != book::TaxClass::OnDelivery);
    }

    void nothingLooksLikeAnInvoiceWithoutANumber_data() { addLayouts(); }
    void nothingLooksLikeAnInvoiceWithoutANumber()
    {
        QFETCH(QString, layout);
        BillPaper paper = invoice(book::TaxClass::OnBill);
        for (const QString &number : {QString(), u"T123"_s, u"申請中"_s}) {
            paper.sender.registrationNumber = number;
            const QString texts = allTexts(paper, layout).join(u'|');
            for (const QString &word : {u"登録番号"_s, u"軽減8%"_s, u"対象額"_s, u"納品書番号"_s, u"適格"_s})
                QVERIFY2(!texts.contains(word), qPrintable(word));
        }
        // As long as the tax is not booked, the bill does not bear what the rates would tell.
        paper.sender.registrationNumber = u"T7000012050002"_s;
        paper.bill.sums.unbooked = 190;
        const QStringList unbooked = allTexts(paper, layout);
        QVERIFY(!unbooked.contains(u"対象額"_s) && unbooked.contains(u"別途"_s));
    }

    void whatIncludesTheTaxSaysSo()
    {
        BillPaper paper = invoice(book::TaxClass::Included);
        paper.bill.sums.sales = paper.bill.sums.untaxed = 3'000;
        const QStringList texts = allTexts(paper, plain);
        QVERIFY(texts.contains(u"内 190"_s) && texts.contains(u"売上金額（税込）"_s));
        paper.bill.rates.clear();
        QVERIFY(allTexts(paper, plain).contains(u"内税"_s));
    }

    void billsOfNothingAndLessAreWhole_data() { addLayouts(); }
    void billsOfNothingAndLessAreWhole()
    {
        QFETCH(QString, layout);
        BillPaper paper = paperOf(0);
        QCOMPARE(sheetsOf(paper, layout).size(), 1U);
        QVERIFY(allTexts(paper, layout).contains(u"¥0"_s));
        paper.bill.sums.received = 500;
        QVERIFY(allTexts(paper, layout).contains(u"¥-500"_s));
        paper.salesOnly = true;
        QVERIFY(allTexts(paper, layout).contains(u"¥0"_s));
        QVERIFY(allTexts(paper, layout).contains(u"今回請求額は当月の売上金額のみです。"_s));
    }

    void whatCameBackIsToldBelowItsSlip()
    {
        BillPaper paper = invoice(book::TaxClass::OnBill);
        paper.returned = {{102, {u"【返還】元の伝票 O90　2026/09/28"_s, u"　10%対象 -12,000 円"_s}}};
        const QStringList texts = allTexts(paper, plain);
        const qsizetype at = texts.indexOf(u"　10%対象 -12,000 円"_s);
        QVERIFY(at > texts.indexOf(u"品2"_s) && at < texts.indexOf(u"品3"_s));
    }
};

QTEST_MAIN(TestBillPaper)
#include "tst_bill_paper.moc"
