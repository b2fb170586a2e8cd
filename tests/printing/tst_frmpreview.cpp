#include "printing/DialogPrint.h"
#include "printing/DialogPrintJobs.h"
#include "printing/frmPreview.h"
#include "printing/sheet_view.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/pages_of_text.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSpinBox>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

using namespace Qt::StringLiterals;
using namespace printing;

namespace
{

QString textOfPdf(const QByteArray &pdf)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, {u"-raw"_s, u"-"_s, u"-"_s});
    reader.write(pdf);
    reader.closeWriteChannel();
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAllStandardOutput());
}

QString textOfFile(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? textOfPdf(file.readAll()) : QString();
}

// A preview of some pages over printers that keep what they are given.
struct Desk
{
    explicit Desk(int pages, const std::function<void(FakePrinters &, FreshShop &)> &prepare = {},
                  const std::function<base::Status(const QByteArray &pdf)> &keep = {})
    {
        if (prepare)
            prepare(*printers, shop);
        keepPrintSystem(shop.workspace, printers);
        Document document = pagesOfText(pages);
        document.keep = keep;
        preview = std::make_unique<frmPreview>(shop.workspace, std::move(document));
        driver = std::make_unique<ScreenDriver>(preview.get());
        driver->show();
    }

    /// Opens the print dialog by its key and does \a work in it; \a work has to close it.
    void print(const std::function<void(QWidget &dialog)> &work) const
    {
        QTimer::singleShot(0, preview.get(), [&] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog && dialog->objectName() == u"DialogPrint"_s);
            work(*dialog);
        });
        QTest::keyClick(preview.get(), Qt::Key_P, Qt::ControlModifier);
    }

    FreshShop shop;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
    std::unique_ptr<frmPreview> preview;
    std::unique_ptr<ScreenDriver> driver;
};

/// The bounds of the dots that \a wanted says.
QRectF areaOf(const QImage &image, bool (*wanted)(QRgb dot))
{
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (wanted(image.pixel(x, y)))
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}

template <class T>
T &in(QWidget &dialog, const char *name)
{
    return *dialog.findChild<T *>(QLatin1StringView(name));
}

void press(QWidget &dialog, const char *name) { in<QPushButton>(dialog, name).click(); }

} // namespace

class TestFrmPreview : public ScriptedTest
{
    Q_OBJECT

private slots:
    void turnsPagesByKeys()
    {
        const Desk desk(3);
        auto &page = desk.driver->the<QSpinBox>("spnPage");
        QCOMPARE(desk.driver->the<QLabel>("lblPage").text(), u"/ 3 ページ"_s);
        QTest::keyClick(desk.preview.get(), Qt::Key_PageDown);
        QTest::keyClick(desk.preview.get(), Qt::Key_PageDown);
        QCOMPARE(page.value(), 3);
        QVERIFY(!desk.driver->the<QPushButton>("cmdNext").isEnabled());
        QTest::keyClick(desk.preview.get(), Qt::Key_PageUp);
        QCOMPARE(page.value(), 2);
        QTest::keyClick(desk.preview.get(), Qt::Key_Home);
        QCOMPARE(desk.preview->page(), 1);
        QVERIFY(!desk.driver->the<QPushButton>("cmdPrevious").isEnabled());
        page.setFocus();
        page.selectAll();
        QTest::keyClicks(&page, u"3"_s);
        QTest::keyClick(&page, Qt::Key_Return);
        QCOMPARE(desk.preview->page(), 3);
        QTest::keyClick(desk.preview.get(), Qt::Key_Escape);
        QVERIFY(!desk.preview->isVisible());
    }

    void thePageLookedAtIsDrawnInItsPlace_data()
    {
        QTest::addColumn<QString>("zoom");
        QTest::addColumn<QSizeF>("paper"); // as it is fed
        QTest::addColumn<bool>("turned");
        QTest::newRow("whole") << u"cmdWholePage"_s << QSizeF(210, 297) << false;
        QTest::newRow("a continuous form") << u"cmdWholePage"_s << QSizeF(241.3, 114.3) << false;
        QTest::newRow("read across") << u"cmdWholePage"_s << QSizeF(114, 184) << true;
        QTest::newRow("its width") << u"cmdPageWidth"_s << QSizeF(210, 297) << false;
        QTest::newRow("smaller") << u"cmdZoomOut"_s << QSizeF(210, 297) << false;
    }

    // Each page has a black square further right than the one before.
    void thePageLookedAtIsDrawnInItsPlace()
    {
        QFETCH(QString, zoom);
        QFETCH(QSizeF, paper);
        QFETCH(bool, turned);
        Document document;
        for (int page = 1; page <= 3; ++page) {
            Sheet sheet;
            sheet.paperWidth = paper.width();
            sheet.paperHeight = paper.height();
            sheet.turned = turned;
            sheet.origin = Origin::PaperEdge;
            sheet.boxes.push_back({twipsFromMillimetres(30 * page), twipsFromMillimetres(40),
                                   twipsFromMillimetres(20), twipsFromMillimetres(20), 0, 0});
            document.sheets.push_back(sheet);
        }
        FreshShop shop;
        keepPrintSystem(shop.workspace, std::make_shared<FakePrinters>());
        frmPreview preview(shop.workspace, document);
        ScreenDriver driver(&preview);
        driver.show();
        driver.press(qPrintable(zoom));
        QTest::keyClick(&preview, Qt::Key_PageDown);
        QCoreApplication::processEvents(); // a scroll bar comes with the next turn of the loop
        auto &view = driver.the<SheetView>("preview");
        const QImage seen = view.viewport()->grab().toImage();
        const QRectF white = areaOf(seen, [](QRgb dot) { return dot == qRgb(255, 255, 255); });
        const QRectF black = areaOf(seen, [](QRgb dot) { return dot == qRgb(0, 0, 0); });
        const double scale = view.scale();
        const QSizeF read = turned ? paper.transposed() : paper;
        const double tolerance = 1.5; // dots
        QVERIFY(std::abs(white.width() - read.width() * scale) < tolerance);
        if (zoom == u"cmdPageWidth"_s)
            QVERIFY(white.width() > view.viewport()->width() - 30);
        else
            QVERIFY(std::abs(white.height() - read.height() * scale) < tolerance);
        QVERIFY(std::abs(black.left() - white.left() - 60 * scale) < tolerance);
        QVERIFY(std::abs(black.top() - white.top() - 40 * scale) < tolerance);
        QVERIFY(std::abs(black.width() - 20 * scale) < tolerance);
    }

    void theWheelZoomsAndTurnsAtTheEnd()
    {
        const Desk desk(3);
        auto &view = desk.driver->the<SheetView>("preview");
        const auto wheel = [&](int by, Qt::KeyboardModifiers keys) {
            const QPointF middle(50, 50);
            QWheelEvent event(middle, view.viewport()->mapToGlobal(middle), {}, {0, by}, Qt::NoButton, keys,
                              Qt::NoScrollPhase, false);
            QApplication::sendEvent(view.viewport(), &event);
        };
        wheel(-120, Qt::NoModifier);
        QCOMPARE(desk.preview->page(), 2);
        const double before = view.scale();
        wheel(120, Qt::ControlModifier);
        QVERIFY(view.scale() > before * 1.2);
        QCOMPARE(desk.preview->page(), 2);
        wheel(-120, Qt::NoModifier); // there is paper left to be seen
        QCOMPARE(desk.preview->page(), 2);
        view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
        wheel(-120, Qt::NoModifier);
        QCOMPARE(desk.preview->page(), 3);
        QCOMPARE(view.verticalScrollBar()->value(), 0);
    }

    void aGridSeenCloselyShowsEachMillimetre()
    {
        Document document;
        document.sheets.push_back({});
        SheetView view(document, {u"IPAMincho"_s, true});
        view.resize(600, 700);
        view.show();
        const auto linesAcross = [&view] { // between the lines of the grid that lie
            const QImage seen = view.viewport()->grab().toImage();
            const QRectF paper = areaOf(seen, [](QRgb dot) { return dot == qRgb(255, 255, 255); });
            const int y = qRound(paper.top() + 15.5 * view.scale());
            int lines = 0;
            for (int x = qRound(paper.left()) + 1; x < qRound(paper.right()); ++x)
                lines +=
                    seen.pixel(x, y) != qRgb(255, 255, 255) && seen.pixel(x - 1, y) == qRgb(255, 255, 255);
            return lines * view.scale() / paper.width() * 10; // to ten millimetres
        };
        const double whole = linesAcross();
        QVERIFY2(whole > 0.7 && whole < 1.3, qPrintable(QString::number(whole)));
        while (view.scale() < 8)
            view.zoomIn();
        const double near = linesAcross();
        QVERIFY2(near > 8.5 && near < 11, qPrintable(QString::number(near)));
    }

    void savesAsPdfAndAsksBeforeOverwriting()
    {
        const Desk desk(1);
        const QString fileName = desk.shop.path(u"saved.pdf"_s);
        ui::file_dialogs::expectFile(desk.shop.path(u"saved"_s));
        QTest::keyClick(desk.preview.get(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(textOfFile(fileName).contains(u"第1葉"_s));

        QFile::resize(fileName, 3);
        ui::file_dialogs::expectFile(fileName);
        ui::prompts::expectAsk(u"「saved.pdf」は既にあります。上書きしますか。"_s, false);
        QTest::keyClick(desk.preview.get(), Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(QFile(fileName).size(), 3);
    }

    // What is kept is what went out, byte for byte; of a few pages the whole document.
    void whatIsIssuedIsKept_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"printed", "some pages", "saved", "refused", "looked at"})
            QTest::newRow(how) << QString::fromLatin1(how);
    }

    void whatIsIssuedIsKept()
    {
        QFETCH(QString, how);
        QList<QByteArray> kept;
        const Desk desk(3, {}, [&kept](const QByteArray &pdf) {
            kept << pdf;
            return base::Status();
        });
        const QString fileName = desk.shop.path(u"saved.pdf"_s);
        if (how == u"saved"_s) {
            for (int time = 0; time < 2; ++time) {
                ui::file_dialogs::expectFile(fileName);
                if (time > 0)
                    ui::prompts::expectAsk({}, true);
                desk.driver->press("cmdPdf");
            }
            QFile saved(fileName);
            QVERIFY(saved.open(QIODevice::ReadOnly));
            QCOMPARE(kept, QList<QByteArray>(2, saved.readAll()));
            return;
        }
        if (how == u"looked at"_s) {
            desk.preview->close();
            QVERIFY(kept.isEmpty());
            return;
        }
        if (how == u"refused"_s) {
            desk.printers->refusal = base::Error{u"受け付けません。"_s};
            ui::prompts::expectInform(u"受け付けません。"_s);
        }
        desk.print([&how](QWidget &dialog) {
            if (how == u"some pages"_s)
                in<QSpinBox>(dialog, "spnFirst").setValue(3);
            press(dialog, "cmdPrint");
        });
        if (how == u"refused"_s) {
            QVERIFY(kept.isEmpty());
            return;
        }
        QCOMPARE(kept.size(), 1);
        QVERIFY(textOfPdf(kept.front()).contains(u"第1葉"_s));
        QCOMPARE(kept.front() == desk.printers->given.front().pdf, how == u"printed"_s);
    }

    // The paper is there; that its copy is not must not be passed over, nor be taken for a failed print.
    void aCopyThatCannotBeKeptIsTold()
    {
        const Desk desk(1, {}, [](const QByteArray &) { return base::Error{u"ディスクがいっぱいです。"_s}; });
        ui::prompts::expectInform(
            u"印刷は済みましたが、発行控えに残せませんでした。原因を取り除いてから、もう一度"
            "この伝票のプレビューを開き、「PDF保存」を押してください。"_s,
            u"ディスクがいっぱいです。"_s);
        desk.print([](QWidget &dialog) { press(dialog, "cmdPrint"); });
        QVERIFY(desk.preview->isIssued());
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
    }

    void withoutAPrinterAPdfIsOffered()
    {
        const Desk desk(1, [](FakePrinters &printers, FreshShop &) { printers.names.clear(); });
        ui::prompts::expectAsk(u"プリンタが見つかりません。PDF に保存しますか。"_s, true);
        ui::file_dialogs::expectFile(desk.shop.path(u"instead.pdf"_s));
        desk.driver->press("cmdPrint");
        QVERIFY(QFile::exists(desk.shop.path(u"instead.pdf"_s)));
    }

    void aServiceThatDoesNotRunIsNamed()
    {
        const Desk desk(1, [](FakePrinters &printers, FreshShop &) {
            printers.noService = base::Error{u"印刷サービスに接続できません。"_s};
        });
        ui::prompts::expectAsk(u"印刷サービスに接続できません。\nPDF に保存しますか。"_s, false);
        desk.driver->press("cmdPrint");
        QVERIFY(!desk.preview->isIssued());
    }

    void printsOnTheStoredPrinterWithTheGrid()
    {
        const Desk desk(2, [](FakePrinters &, FreshShop &shop) {
            shop.settings.write(workspace::keys::printerName, u"DOT"_s);
        });
        desk.driver->the<QCheckBox>("chkGrid").setChecked(true);
        desk.print([](QWidget &dialog) {
            QCOMPARE(in<QComboBox>(dialog, "cboQueue").currentText(), u"DOT"_s);
            QVERIFY(!in<QLabel>(dialog, "lblRemark").isVisible());
            press(dialog, "cmdPrint");
        });
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
        const auto &[settings, pdf] = desk.printers->given.front();
        QCOMPARE(settings.queue, u"DOT"_s);
        QCOMPARE(settings.copies, 1);
        QCOMPARE(settings.paper, QSizeF(210, 297));
        const QString text = textOfPdf(pdf);
        QVERIFY2(text.contains(u"第2葉"_s) && text.contains(u"150"_s), qPrintable(text)); // grid labels
        QVERIFY(desk.preview->isIssued() && !desk.preview->isVisible());
    }

    void pagesCopiesAndBinAreAsked()
    {
        const Desk desk(5, [](FakePrinters &printers, FreshShop &) {
            printers.can[u"LASER"_s] = {.bins = {u"top"_s, u"manual"_s}, .mostCopies = 9};
        });
        desk.print([](QWidget &dialog) {
            in<QComboBox>(dialog, "cboBin").setCurrentText(u"手差し"_s);
            // The wrong way round, as a hurried hand types it.
            in<QSpinBox>(dialog, "spnFirst").setValue(4);
            in<QSpinBox>(dialog, "spnLast").setValue(3);
            QVERIFY(in<QRadioButton>(dialog, "optRange").isChecked());
            in<QSpinBox>(dialog, "spnCopies").setValue(50);
            press(dialog, "cmdPrint");
        });
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
        const auto &[settings, pdf] = desk.printers->given.front();
        QCOMPARE(settings.bin, u"manual"_s);
        QCOMPARE(settings.copies, 9);
        QCOMPARE(textOfPdf(pdf).remove(u'\n').remove(u'\f'), u"第3葉第4葉"_s);
    }

    void theFormsOwnBinIsChosen_data()
    {
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<QString>("given");
        QTest::newRow("none") << QString() << QString();
        QTest::newRow("one that there is") << u"tractor"_s << u"tractor"_s;
        QTest::newRow("one that there is not") << u"roll"_s << QString();
    }

    void theFormsOwnBinIsChosen()
    {
        QFETCH(QString, wanted);
        const auto printers = std::make_shared<FakePrinters>();
        printers->can[u"LASER"_s] = {.bins = {u"manual"_s, u"tractor"_s}, .mostCopies = 9};
        FreshShop shop;
        keepPrintSystem(shop.workspace, printers);
        Document document;
        Sheet sheet;
        sheet.bin = wanted;
        document.sheets.push_back(sheet);
        DialogPrint dialog(shop.workspace, document, {printers->names, u"LASER"_s, {}});
        ScreenDriver driver(&dialog);
        driver.show();
        driver.press("cmdPrint");
        QTEST(dialog.choice()->settings.bin, "given");
    }

    void manyCopiesAreAskedAbout()
    {
        const Desk desk(1);
        ui::prompts::expectAskCautiously(u"100 部印刷します。よろしいですか。"_s, false);
        desk.print([](QWidget &dialog) {
            in<QSpinBox>(dialog, "spnCopies").setValue(100);
            press(dialog, "cmdPrint");
            QVERIFY(dialog.isVisible());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        QVERIFY(desk.printers->given.empty() && !desk.preview->isIssued() && desk.preview->isVisible());
    }

    void paperThatThePrinterDoesNotTakeIsToldAndNothingIsSent()
    {
        const Desk desk(1, [](FakePrinters &printers, FreshShop &) {
            printers.can[u"LASER"_s] = {.media = {{u"iso_a5_148x210mm"_s, {148, 210}, {}}}};
        });
        const QString told =
            u"プリンタ「LASER」は、A4の用紙を受け付けません。この用紙を使えるプリンタを選ぶか、"
            "プリンタの設定で用紙を加えてください。"_s;
        ui::prompts::expectInform(told);
        desk.print([&](QWidget &dialog) {
            QCOMPARE(in<QLabel>(dialog, "lblRemark").text(), told);
            press(dialog, "cmdPrint");
            QVERIFY(dialog.isVisible());
            in<QComboBox>(dialog, "cboQueue").setCurrentText(u"DOT"_s);
            QVERIFY(!in<QLabel>(dialog, "lblRemark").isVisible());
            press(dialog, "cmdPrint");
        });
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
        QCOMPARE(desk.printers->given.front().settings.queue, u"DOT"_s);
    }

    void aStoredPrinterThatIsGoneIsNamed()
    {
        const Desk desk(1, [](FakePrinters &, FreshShop &shop) {
            shop.settings.write(workspace::keys::printerName, u"事務所のプリンタ"_s);
        });
        QTRY_COMPARE(desk.driver->the<QLabel>("LblPrinterName").text(), u"プリンタ：LASER"_s);
        desk.print([](QWidget &dialog) {
            QCOMPARE(in<QComboBox>(dialog, "cboQueue").currentText(), u"LASER"_s);
            QVERIFY(in<QLabel>(dialog, "lblRemark").text().contains(u"「事務所のプリンタ」が見つからない"_s));
            in<QComboBox>(dialog, "cboQueue").setCurrentText(u"DOT"_s);
            QVERIFY(!in<QLabel>(dialog, "lblRemark").isVisible());
            dialog.close();
        });
        QVERIFY(desk.printers->given.empty());
    }

    void aPrinterThatStandsStillIsToldBeforeAnythingIsSent()
    {
        const Desk desk(1, [](FakePrinters &printers, FreshShop &) {
            printers.can[u"LASER"_s].state = {.isStopped = true, .reasons = {u"media-jam-error"_s}};
        });
        desk.print([](QWidget &dialog) {
            QVERIFY(in<QLabel>(dialog, "lblRemark")
                        .text()
                        .startsWith(u"プリンタが止まっています（紙詰まり）。"_s));
            press(dialog, "cmdPrint");
        });
        QCOMPARE(desk.printers->given.size(), std::size_t(1)); // it waits for the paper
    }

    void aSheetThatIsAllBesideThePaperSaysSo()
    {
        FreshShop shop;
        keepPrintSystem(shop.workspace, std::make_shared<FakePrinters>());
        for (const double x : {-200'000.0, 1000.0}) {
            Document document;
            Sheet sheet;
            sheet.texts.push_back({x, 1000, u"納品書"_s, 12});
            document.sheets.push_back(sheet);
            frmPreview preview(shop.workspace, document);
            QCOMPARE(preview.findChild<QLabel *>(u"lblRemark"_s)->text().contains(u"すべて用紙の外"_s),
                     x < 0);
        }
    }

    // The label tells how it is now.
    void aServiceThatIsBackIsFoundAgain()
    {
        const Desk desk(1, [](FakePrinters &printers, FreshShop &) {
            printers.noService = base::Error{u"印刷サービスに接続できません。"_s};
        });
        auto &label = desk.driver->the<QLabel>("LblPrinterName");
        QTRY_VERIFY(label.text().startsWith(u"印刷サービスに接続できません。"_s));
        desk.printers->noService.reset();
        desk.print([&label](QWidget &dialog) {
            QCOMPARE(label.text(), u"プリンタ：LASER"_s);
            dialog.close();
        });
    }

    // The service may take seconds; it is asked once for the label, and once for each print.
    void thePageIsThereBeforeThePrintServiceIsAsked()
    {
        FreshShop shop;
        const auto printers = std::make_shared<FakePrinters>();
        printers->usual = u"DOT"_s;
        keepPrintSystem(shop.workspace, printers);
        frmPreview preview(shop.workspace, pagesOfText(1));
        preview.show();
        QCOMPARE(printers->asked, 0);
        QTRY_COMPARE(preview.findChild<QLabel *>(u"LblPrinterName"_s)->text(), u"プリンタ：DOT"_s);
        preview.repaint();
        QCoreApplication::processEvents();
        QCOMPARE(printers->asked, 1);
        QTimer::singleShot(0, &preview, [] { QApplication::activeModalWidget()->close(); });
        press(preview, "cmdPrint");
        QCOMPARE(printers->asked, 2);
    }

    // Counted from the corner of what this printer reaches, as the queue tells it for the paper.
    void aFormFromThePrintableCornerIsSetByThePrintersMargins()
    {
        Document document;
        Sheet sheet;
        sheet.origin = Origin::PrintableArea;
        sheet.texts.push_back({0, 0, u"角"_s, 12});
        document.sheets.push_back(sheet);
        FreshShop shop;
        const auto printers = std::make_shared<FakePrinters>();
        printers->can[u"LASER"_s] = {.media = {{u"a4"_s, {210, 297}, {10, 20, 10, 20}}}};
        keepPrintSystem(shop.workspace, printers);
        frmPreview preview(shop.workspace, document);
        ScreenDriver driver(&preview);
        driver.show();
        QTimer::singleShot(0, &preview, [] { press(*QApplication::activeModalWidget(), "cmdPrint"); });
        driver.press("cmdPrint");
        QProcess reader;
        reader.start(u"pdftotext"_s, {u"-bbox"_s, u"-"_s, u"-"_s});
        reader.write(printers->given.front().pdf);
        reader.closeWriteChannel();
        reader.waitForFinished();
        const QString words = QString::fromUtf8(reader.readAll());
        static const QRegularExpression word(u"xMin=\"([0-9.]+)\" yMin=\"([0-9.]+)\"[^>]*>角"_s);
        const auto match = word.match(words);
        const double mm = 72 / 25.4;
        QVERIFY2(std::abs(match.captured(1).toDouble() / mm - 10) < 0.3 &&
                     std::abs(match.captured(2).toDouble() / mm - 20) < 0.3,
                 qPrintable(words));
    }

    void aRefusedJobIsToldAndCountsAsNotPrinted()
    {
        const Desk desk(1, [](FakePrinters &printers, FreshShop &) {
            printers.refusal = base::Error{u"Destination is not accepting jobs."_s};
        });
        ui::prompts::expectInform(u"Destination is not accepting jobs."_s);
        desk.print([](QWidget &dialog) { press(dialog, "cmdPrint"); });
        QVERIFY(!desk.preview->isIssued());
        QVERIFY(desk.preview->isVisible());
    }

    void jobsOfTheDayCanBeTakenBack()
    {
        FreshShop shop;
        const auto printers = std::make_shared<FakePrinters>();
        const QDateTime today(shop.workspace.today(), QTime(9, 30));
        printers->list = {{7,
                           u"DOT"_s,
                           u"納品書 O3"_s,
                           JobState::Waiting,
                           today,
                           {.isStopped = true, .reasons = {u"media-empty-error"_s, u"media-needed"_s}}},
                          {6, u"LASER"_s, u"納品書 O2"_s, JobState::Done, today},
                          {5, u"LASER"_s, u"納品書 O1"_s, JobState::Waiting, today.addDays(-1)},
                          {4, u"LASER"_s, u"昨日の日報"_s, JobState::Done, today.addDays(-1)}};
        keepPrintSystem(shop.workspace, printers);
        DialogPrintJobs dialog(shop.workspace);
        ScreenDriver driver(&dialog);
        driver.show();
        auto &grid = driver.the<ui::ReportGrid>("gridJobs");
        QCOMPARE(grid.rowCount(), 3); // what is done is listed on its day, what may still come out always
        QCOMPARE(grid.model()->index(0, 3).data().toString(), u"プリンタが止まっています（用紙切れ）"_s);
        grid.selectRow(1);
        QVERIFY(!driver.the<QPushButton>("cmdCancelJob").isEnabled());
        grid.selectRow(0);
        const QString question = u"「納品書 O3」の印刷を取り消します。よろしいですか。"_s;
        const QString remark = u"プリンタに届いている分は、そのまま出ることがあります。"_s;
        ui::prompts::expectAskCautiously(question, false, remark);
        driver.press("cmdCancelJob");
        QVERIFY(printers->cancelled.empty());
        ui::prompts::expectAskCautiously(question, true, remark);
        driver.press("cmdCancelJob");
        QCOMPARE(printers->cancelled, std::vector<int>{7});
        QCOMPARE(grid.rowCount(), 2);

        printers->noService = base::Error{u"印刷サービスに接続できません。"_s};
        driver.press("cmdRefresh");
        QCOMPARE(driver.the<QLabel>("lblCount").text(), u"印刷サービスに接続できません。"_s);
        // Whoever cannot be reached is not asked again by itself.
        auto *clock = dialog.findChild<QTimer *>();
        QVERIFY(!clock->isActive());
        printers->noService.reset();
        driver.press("cmdRefresh");
        QVERIFY(clock->isActive());
    }
};

QTEST_MAIN(TestFrmPreview)
#include "tst_frmpreview.moc"
