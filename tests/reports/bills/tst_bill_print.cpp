#include "reports/bills/bill_print.h"

#include "printing/pdf.h"
#include "reports/bills/bill_header.h"
#include "slips/documents/placed_texts.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "ui/report_grid.h"

#include <QLabel>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace reports;

namespace
{

/// A registered tea shop with a customer taxed on the bill, whom it sold to and who gave some of it back.
struct BilledShop : FreshShop
{
    BilledShop()
    {
        run(u"INSERT INTO 自社情報 (会社ID, 会社名1, 取引銀行1, 登録番号) VALUES "
            "(1, '山田茶舗', '駿河銀行 普通 1234567', 'T7000012050002')"_s);
        run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 消費税区分) VALUES (7, '東京百貨店', 1)"_s);
        sell(1, u"2026-02-27"_s, 40, 500);
        sell(2, u"2026-03-02"_s, 10, 1'000);
        sell(3, u"2026-03-20"_s, -20, 500);
        run(u"UPDATE 入出庫マスター SET 元伝票 = 1 WHERE ID = 3"_s);
        workspace.panel.billPaper = u"A4 無地"_s;
        workspace.panel.employeeName = u"鈴木"_s;
    }

    void sell(int id, const QString &date, double quantity, double price)
    {
        run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) VALUES (?, ?, ?, 7, 10)"_s,
            {id, date, u"O%1"_s.arg(id)});
        run(u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額) VALUES (?, 'ほうじ茶', ?, ?, ?)"_s,
            {id, quantity, price, quantity * price});
    }

    void bookTax(double tax)
    {
        run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) VALUES "
            "(9, '2026-03-31', 'O9', 7, 10)"_s);
        run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (9, '消費税', ?)"_s, {tax});
    }

    printing::Document document(bool salesOnly = false)
    {
        const auto bill = billOf(connection, 7, {QDate(2026, 3, 1), QDate(2026, 3, 31)}, {});
        auto made = bill ? billDocument(workspace, *bill, {salesOnly}) : base::Error();
        if (!made)
            qFatal("%s", qPrintable(made.error().text));
        return std::move(*made);
    }

    void issue(const printing::Document &document)
    {
        const auto pdf = printing::pdfOf(document, printing::Look{u"IPAMincho"_s});
        if (!pdf || !document.keep(*pdf))
            qFatal("not kept");
    }
};

/// Where \a word begins on the first page of \a pdf that has it, millimetres.
QPointF placeInPdf(const QByteArray &pdf, const QString &word)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-bbox"_s, u"-"_s, u"-"_s});
    reader.write(pdf);
    reader.closeWriteChannel();
    reader.waitForFinished();
    const QRegularExpression place(u"xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\"[^>]*>"_s + word);
    const auto match = place.match(QString::fromUtf8(reader.readAllStandardOutput()));
    return QPointF(match.captured(1).toDouble(), match.captured(2).toDouble()) * 25.4 / 72;
}

} // namespace

class TestBillPrint : public QObject
{
    Q_OBJECT

private slots:
    void theSlipsBecomeAnInvoice()
    {
        BilledShop shop;
        shop.sell(4, u"2026-03-25"_s, 1, 4'567);
        shop.bookTax(0); // as long as it comes to nothing it is not booked
        const auto texts = [&] { return textsOf(shop.document().sheets.front()); };
        QVERIFY(texts().contains(u"別途"_s) && !texts().contains(u"対象額"_s));
        shop.run(u"UPDATE 入出庫サブ SET 金額 = 456 WHERE ID = 9"_s);
        const QStringList booked = texts();
        QVERIFY(booked.contains(u"登録番号　T7000012050002"_s));
        QCOMPARE(booked.mid(booked.indexOf(u"10%"_s), 3), QStringList({u"10%"_s, u"4,567"_s, u"456"_s}));
        QVERIFY(booked.contains(u"納品書番号　O2、O3、O4"_s));
        QVERIFY(booked.contains(u"¥25,023"_s)); // 20,000 carried, and what the month comes to
        const qsizetype notice = booked.indexOf(u"【返還】元の伝票 O1　2026/02/27"_s);
        QVERIFY2(notice > booked.indexOf(u"O3"_s) && booked.at(notice + 1) == u"　10%対象 -10,000 円"_s,
                 qPrintable(booked.join(u'|')));
    }

    // In the PDF that goes to the printer, millimetres from the paper's corner: a form of lines follows what
    // the printer leaves at the top, and plain paper does not.
    void everyPrinterGetsItInItsPlace_data()
    {
        QTest::addColumn<QString>("paper");
        QTest::addColumn<double>("top"); // what the printer leaves there; 0: no printer tells
        QTest::addColumn<QPointF>("goods");
        const double row = 84.7 + 4.2335 - 9.5 * 25.4 / 144;
        QTest::newRow("1148, file") << u"HISAGO 1148"_s << 0.0 << QPointF(45.5, row);
        QTest::newRow("1148, dot-matrix") << u"HISAGO 1148"_s << 6.35 << QPointF(45.5, row);
        QTest::newRow("1148, 8 lines") << u"HISAGO 1148"_s << 5.5 << QPointF(45.5, row - 3.672);
        QTest::newRow("1148, 9 lines") << u"HISAGO 1148"_s << 25.4 / 6 << QPointF(45.5, row - 3.528);
        QTest::newRow("1148, 10 lines") << u"HISAGO 1148"_s << 3.0 << QPointF(45.5, row - 3.35);
        const double plain = 131.4 + 3.7 - 9 * 25.4 / 144;
        QTest::newRow("A4, file") << u"A4 無地"_s << 0.0 << QPointF(42, plain);
        QTest::newRow("A4, 8 lines") << u"A4 無地"_s << 5.5 << QPointF(42, plain);
    }

    void everyPrinterGetsItInItsPlace()
    {
        QFETCH(QString, paper);
        QFETCH(double, top);
        QFETCH(QPointF, goods);
        BilledShop shop;
        shop.run(u"UPDATE 入出庫サブ SET 商品名 = '角砂糖'"_s);
        shop.run(u"DELETE FROM 入出庫マスター WHERE ID = 1"_s); // nothing is carried: the goods come first
        shop.workspace.panel.billPaper = paper;
        printing::Look look{u"IPAMincho"_s};
        if (top > 0)
            look.unprintable = QMarginsF(4, top, 4, 4);
        const auto pdf = printing::pdfOf(shop.document(), look);
        QVERIFY(bool(pdf));
        const QPointF found = placeInPdf(*pdf, u"角砂糖"_s);
        QVERIFY2(QLineF(found, goods).length() < 0.3, qPrintable(u"%1 %2"_s.arg(found.x()).arg(found.y())));
    }

    void aBillIsAnIssuedDocument()
    {
        BilledShop shop;
        QCOMPARE(shop.document().title, u"請求書 7-20260331　東京百貨店"_s);
        shop.issue(shop.document());
        shop.now = shop.now.addDays(1); // nothing on it depends on the day of issue
        shop.issue(shop.document());
        shop.bookTax(1);
        shop.issue(shop.document());
        shop.issue(shop.document(true));
        QCOMPARE(
            shop.rows(u"SELECT 発行ID, 種類, 番号, 日付, 伝票種別, 相手先ID, 相手先名, 税込金額, 社員名, "
                      "訂正元 FROM 発行控 ORDER BY 発行ID"_s),
            QStringList({u"1|請求書|7-20260331|2026-03-31|O|7|東京百貨店|20000|鈴木|-"_s,
                         u"2|請求書（再発行）|7-20260331|2026-03-31|O|7|東京百貨店|20000|鈴木|-"_s,
                         u"3|請求書|7-20260331|2026-03-31|O|7|東京百貨店|20001|鈴木|2"_s,
                         u"4|請求書|7-20260331|2026-03-31|O|7|東京百貨店|1|鈴木|3"_s}));
    }

    void panelAndSettingsChoosePaperNameAndPlace_data()
    {
        QTest::addColumn<QString>("paper");
        QTest::addColumn<QSizeF>("size");
        QTest::newRow("1148") << u"HISAGO 1148"_s << QSizeF(241.3, 279.4);
        QTest::newRow("A4") << u"A4 無地"_s << QSizeF(210, 297);
        QTest::newRow("unknown") << u"はがき"_s << QSizeF(210, 297);
    }

    void panelAndSettingsChoosePaperNameAndPlace()
    {
        QFETCH(QString, paper);
        QFETCH(QSizeF, size);
        BilledShop shop;
        shop.workspace.panel.billPaper = paper;
        shop.settings.write(workspace::keys::billMessage, u"年末は29日まで"_s);
        const printing::Document usual = shop.document();
        const printing::Sheet sheet = usual.sheets.front();
        QVERIFY(usual.remark.isEmpty() && !sheet.turned);
        QCOMPARE(QSizeF(sheet.paperWidth, sheet.paperHeight), size);
        QVERIFY(textsOf(sheet).contains(u"年末は29日まで"_s) && textsOf(sheet).contains(u"山田茶舗"_s));
        shop.settings.write(workspace::keys::offsetA, -4);
        shop.settings.write(workspace::keys::offsetL, 2);
        shop.workspace.panel.omitCompanyName = true;
        const printing::Sheet moved = shop.document().sheets.front();
        QVERIFY(!textsOf(moved).contains(u"山田茶舗"_s));
        const QPointF by =
            placeOf(*itemWith(moved, u"ほうじ茶"_s)) - placeOf(*itemWith(sheet, u"ほうじ茶"_s));
        const double line = size.width() > 210 ? 25.4 / 18 : 0;
        QVERIFY(QLineF(by, QPointF(3.5, -5.64 - line)).length() < 0.01);
    }

    void theTrialSheetShowsEveryRow()
    {
        BilledShop shop;
        for (const QString &paper : {u"HISAGO 1148"_s, u"A4 無地"_s}) {
            shop.workspace.panel.billPaper = paper;
            const auto sheet = billCalibration(shop.workspace, {.billDown = 1});
            QVERIFY(sheet && sheet->sheets.size() == 1);
            QCOMPARE(textsOf(sheet->sheets.front()).count(u"品"_s), 20);
        }
    }

    void bothFormsCanBeSetRight()
    {
        BilledShop shop;
        printing::DialogFormLayout screen(shop.workspace, adjustableBills(shop.settings));
        ScreenDriver driver(&screen);
        driver.show();
        auto &grid = driver.the<ui::ReportGrid>("gridElements");
        for (int form = 0; form < 2; ++form) {
            driver.choose("cboForm", form);
            QVERIFY(grid.rowCount() > 30);
            for (int row = 0; row < grid.rowCount(); ++row)
                grid.setCurrentIndex(grid.model()->index(row, 0));
            QCOMPARE(driver.the<QLabel>("lblMessage").text(), QString());
        }
    }
};

QTEST_MAIN(TestBillPrint)
#include "tst_bill_print.moc"
