// What is printed is in the history, and what is in the history was printed.
#include "shipping/slips/label_place_box.h"
#include "shipping/slips/label_places.h"
#include "shipping/slips/shipment_store.h"
#include "shipping/slips/slip_run.h"
#include "slip_cases.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/pdf_words.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace shipping;
using slip_cases::parcel;

namespace
{

/// Printers of which one gets stuck, and something happens while it is given a job.
class MoodyPrinters : public FakePrinters
{
public:
    std::size_t refusesAfter = 1000;
    std::function<void()> meanwhile;

    base::Result<int> printPdf(const QByteArray &pdf, const QString &title,
                               const printing::JobSettings &settings) override
    {
        if (given.size() >= refusesAfter)
            return base::Error{u"プリンタ「LASER」が受け付けません。"_s};
        if (meanwhile)
            meanwhile();
        return FakePrinters::printPdf(pdf, title, settings);
    }
};

struct Desk : FreshShop
{
    Desk() { printing::keepPrintSystem(workspace, printers); }

    /// As the clerk, who presses the button of the print dialog when it comes.
    bool prepare(const std::vector<Shipment> &shipments, bool again = false)
    {
        asked = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [this] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (!dialog || dialog->objectName() != u"DialogPrint"_s)
                return;
            ++asked;
            remark = dialog->findChild<QLabel *>(u"lblRemark"_s)->text();
            dialog->findChild<QPushButton *>(u"cmdPrint"_s)->click();
            dialog->close();
        });
        timer.start(10);
        return slips.prepare(nullptr, shipments, again);
    }

    QStringList history() { return rows(u"SELECT 品名, 印刷日 FROM 発送マスター ORDER BY 発送ID"_s); }

    std::shared_ptr<MoodyPrinters> printers = std::make_shared<MoodyPrinters>();
    SlipPrinter slips{workspace};
    int asked = 0;
    QString remark; // of the dialog
};

std::vector<Shipment> parcels(int count, const QString &form)
{
    std::vector<Shipment> shipments;
    for (int number = 1; number <= count; ++number) {
        shipments.push_back(parcel(form));
        shipments.back().goods = u"荷物%1"_s.arg(number);
    }
    return shipments;
}

std::size_t labelsOn(const QByteArray &pdf)
{
    std::size_t labels = 0;
    const auto pages = wordsOfPages(pdf);
    for (const PdfWord &word : pages.front().words)
        labels += word.text == u"佐藤花子"_s ? 1 : 0;
    return labels;
}

} // namespace

class TestSlipPrinter : public ScriptedTest
{
    Q_OBJECT

private slots:
    void printedAndRecordedOrNeither()
    {
        Desk desk;
        QVERIFY(!desk.slips.issue(parcel(), Record::Add)); // no printer was chosen
        QVERIFY(desk.prepare({parcel()}));
        const auto issued = desk.slips.issue(parcel(), Record::Add);
        QVERIFY2(issued, issued ? "" : qPrintable(issued.error().text));
        QCOMPARE(issued->id, 1);
        QCOMPARE(desk.history(), QStringList(u"ふじ10kg|2026-04-01"_s));
        desk.printers->refusal = base::Error{u"止まっています。"_s};
        QCOMPARE(desk.slips.issue(parcel(), Record::Add).error().text, u"止まっています。"_s);
        QVERIFY(!desk.slips.issue(*issued, Record::Update));
        QCOMPARE(desk.history(), QStringList(u"ふじ10kg|2026-04-01"_s));
        QCOMPARE(*readShipment(desk.connection, 1), *issued);
    }

    void reprintsAddNoRowAndReissuesUpdateIt()
    {
        Desk desk;
        QVERIFY(desk.prepare({parcel()}));
        Shipment shipment = *desk.slips.issue(parcel(), Record::Add);
        desk.workspace.settings.write(workspace::keys::kuOffsetX, 1);
        QVERIFY(desk.slips.issue(shipment, Record::None));
        shipment.goods = u"王林5kg"_s;
        shipment.printed = QDate(2026, 3, 1);
        const auto again = desk.slips.issue(shipment, Record::Update);
        QVERIFY(again);
        QCOMPARE(desk.history(), QStringList(u"王林5kg|2026-04-01"_s));
        QCOMPARE(desk.printers->given.size(), std::size_t(3));
        // Another program has had it meanwhile: nothing comes out.
        QVERIFY(desk.slips.issue(shipment, Record::Update).error().changed);
        desk.run(u"DELETE FROM 発送マスター"_s);
        QVERIFY(desk.slips.issue(*again, Record::Update).error().gone);
        QCOMPARE(desk.printers->given.size(), std::size_t(3));
    }

    void whatCannotBeKeptIsTakenBackFromTheQueue()
    {
        Desk desk;
        desk.run(u"PRAGMA busy_timeout = 0"_s);
        QVERIFY(desk.prepare({parcel()}));
        db::Connection other;
        QVERIFY(other.open(desk.connection.fileName()));
        // Who reads just now keeps the row from the file.
        desk.printers->meanwhile = [&other] {
            QVERIFY(other.execute(u"BEGIN"_s) && other.select(u"SELECT * FROM 発送マスター"_s));
        };
        const auto issued = desk.slips.issue(parcel(), Record::Add);
        QVERIFY(!issued && issued.error().text.contains(u"印刷を取り消しました"_s));
        QCOMPARE(desk.printers->cancelled, std::vector<int>{1});
        QCOMPARE(desk.history(), QStringList());
        QVERIFY(other.execute(u"COMMIT"_s));
    }

    void thePrinterIsAskedForOnce()
    {
        Desk desk;
        const std::vector<Shipment> both{parcel(), parcel(u"宛名ラベル"_s), parcel()};
        QVERIFY(desk.prepare(both));
        QCOMPARE(desk.asked, 2);
        QVERIFY(desk.prepare(both));
        QCOMPARE(desk.asked, 0);
        QVERIFY(desk.prepare({parcel()}, true));
        QCOMPARE(desk.asked, 1);
        // Declared, the paper is another.
        desk.workspace.panel.slipPaperDeclared = true;
        QVERIFY(desk.prepare(both));
        QCOMPARE(desk.asked, 1);
        // As is the printer, where another one was set.
        desk.settings.write(workspace::keys::kuroPrinterName, u"DOT"_s);
        QVERIFY(!desk.slips.issue(parcel(), Record::None));
        QVERIFY(desk.prepare({parcel()}));
        QCOMPARE(desk.asked, 1);
        QVERIFY(desk.slips.issue(parcel(), Record::None));
        QCOMPARE(desk.printers->given.back().settings.queue, u"DOT"_s);
        const QSizeF paper = desk.printers->given.back().settings.paper;
        QCOMPARE(qRound(printing::twipsFromMillimetres(paper.width())), 6486);
        QCOMPARE(qRound(printing::twipsFromMillimetres(paper.height())), 13041);
    }

    void whatIsDoubtfulIsAskedBeforePrinting()
    {
        Desk desk;
        Shipment shipment = parcel();
        shipment.consignee.zip = u"100-01"_s;
        for (const bool goesOn : {false, true}) {
            ui::prompts::expectAskCautiously(
                u"このまま印刷しますか。"_s, goesOn,
                u"佐藤花子：お届け先の郵便番号「100-01」は 7 桁ではないため、入力されたまま印刷します。"_s);
            QCOMPARE(desk.prepare({shipment}), goesOn);
        }
        ui::prompts::expectInform(
            u"「ペリカン便」という送り状の用紙はありません。用紙を選び直してください。"_s);
        QVERIFY(!desk.prepare({parcel(u"ペリカン便"_s)}));
        desk.printers->names.clear();
        ui::prompts::expectInform(u"プリンタが見つかりません。プリンタを設定してください。"_s);
        QVERIFY(!desk.prepare({parcel()}, true));
    }

    void paperThatIsTooSmallIsTold()
    {
        Desk desk;
        desk.printers->can[u"LASER"_s] = {.media = {{u"iso_a5"_s, {148, 210}, {}}},
                                          .usualPaper = printing::Medium{u"iso_a5"_s, {148, 210}, {}},
                                          .mostCopies = 9};
        Shipment shipment = parcel();
        QVERIFY(desk.prepare({shipment}));
        QCOMPARE(desk.remark, u""_s);
        shipment.goods = u"ふじとつがるとシナノゴールドの詰め合わせ10kg"_s;
        QVERIFY(desk.prepare({shipment}, true));
        QVERIFY(desk.remark.startsWith(u"プリンタの用紙（A5）からはみ出すものがあります。"_s));
        QVERIFY(desk.slips.issue(shipment, Record::None));
        QCOMPARE(desk.printers->given.back().settings.paper, QSizeF(148, 210));
    }

    void runs_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<int>("refusesAfter"); // jobs
        QTest::addColumn<int>("stopsAt");      // shipments
        QTest::addColumn<int>("issued");
        QTest::addColumn<int>("next"); // place
        QTest::newRow("all") << u"宅急便"_s << 100 << 100 << 12 << 1;
        QTest::newRow("refused in the middle") << u"宅急便"_s << 4 << 100 << 4 << 1;
        QTest::newRow("refused at once") << u"宅急便"_s << 0 << 100 << 0 << 1;
        QTest::newRow("stopped in the middle") << u"佐川急便"_s << 100 << 7 << 7 << 1;
        // From place 20 on: five on the first sheet, seven on the second.
        QTest::newRow("labels") << u"宛名ラベル"_s << 100 << 100 << 12 << 8;
        QTest::newRow("labels, refused") << u"宛名ラベル"_s << 1 << 100 << 5 << 1;
        QTest::newRow("labels, stopped") << u"宛名ラベル"_s << 100 << 1 << 5 << 1;
        QTest::newRow("tags") << u"オリジナル荷札１"_s << 100 << 100 << 12 << 5;
    }

    void runs()
    {
        QFETCH(QString, form);
        QFETCH(int, refusesAfter);
        QFETCH(int, stopsAt);
        QFETCH(int, issued);
        Desk desk;
        chooseLabelSheet(desk.settings, u"24 面"_s);
        setNextPlace(desk.settings, u"宛名ラベル"_s, 20);
        const std::vector<Shipment> shipments = parcels(12, form);
        QVERIFY(desk.prepare(shipments));
        desk.printers->refusesAfter = std::size_t(refusesAfter);
        const SlipRunOutcome outcome =
            issueAll(desk.slips, shipments, Record::Add, [&](qint64 done, qint64) { return done < stopsAt; });
        QCOMPARE(outcome.issued.size(), std::size_t(issued));
        QCOMPARE(outcome.failure.has_value(), refusesAfter < 100);
        QCOMPARE(outcome.stopped, stopsAt < 100);
        QStringList expected;
        for (int number = 1; number <= issued; ++number)
            expected << u"荷物%1|2026-04-01"_s.arg(number);
        QCOMPARE(desk.history(), expected);
        std::size_t printed = 0;
        for (const FakePrinters::Given &job : desk.printers->given)
            printed += labelsOn(job.pdf);
        QCOMPARE(printed, std::size_t(issued));
        QTEST(nextPlace(desk.settings, form), "next");
    }

    void thePlaceIsChosenByKeysAndClicks()
    {
        Desk desk;
        LabelPlaceBox box(desk.workspace);
        ScreenDriver driver(&box);
        box.setForm(u"宅急便"_s);
        QVERIFY(box.isHidden());
        box.setForm(u"宛名ラベル"_s);
        driver.show();
        driver.choose("cboLabelSheet", u"18 面"_s);
        QWidget &grid = driver.the("labelPlace");
        grid.setFocus();
        for (const Qt::Key key :
             {Qt::Key_Right, Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Down})
            QTest::keyClick(&grid, key);
        QCOMPARE(nextPlace(desk.settings, u"宛名ラベル"_s), 5);
        QTest::keyClick(&grid, Qt::Key_End);
        QTest::keyClick(&grid, Qt::Key_Right); // there is none
        QCOMPARE(box.place(), 18);
        QCOMPARE(driver.the<QLabel>("lblLabelPlace").text(), u"次は 18 番目（全 18）"_s);
        QTest::mouseClick(&grid, Qt::LeftButton, {}, QPoint(35, 20));
        QCOMPARE(nextPlace(desk.settings, u"宛名ラベル"_s), 2);
        box.setForm(u"オリジナル荷札２"_s);
        QTest::keyClick(&grid, Qt::Key_End);
        QCOMPARE(nextPlace(desk.settings, u"オリジナル荷札２"_s), 4);
        QCOMPARE(nextPlace(desk.settings, u"宛名ラベル"_s), 2);
    }
};

QTEST_MAIN(TestSlipPrinter)
#include "tst_slip_printer.moc"
