#include "printing/preview_desk.h"

#include "printing/DialogPrintJobs.h"
#include "printing/queue/job_watch.h"
#include "printing/sheet_view.h"
#include "ui/report_grid.h"

#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSpinBox>

// From the preview to the printer.
class TestPreviewPrinting : public ScriptedTest
{
    Q_OBJECT

private slots:
    void withoutAPrinterAPdfIsOffered()
    {
        const PreviewDesk desk(1, [](FakePrinters &printers, FreshShop &) { printers.names.clear(); });
        ui::prompts::expectAsk(u"プリンタが見つかりません。PDF に保存しますか。"_s, true);
        ui::file_dialogs::expectFile(desk.shop.path(u"instead.pdf"_s));
        desk.driver->press("cmdPrint");
        QVERIFY(QFile::exists(desk.shop.path(u"instead.pdf"_s)));
    }

    void aServiceThatDoesNotRunIsNamed()
    {
        const PreviewDesk desk(1, [](FakePrinters &printers, FreshShop &) {
            printers.noService = base::Error{u"印刷サービスに接続できません。"_s};
        });
        ui::prompts::expectAsk(u"印刷サービスに接続できません。\nPDF に保存しますか。"_s, false);
        desk.driver->press("cmdPrint");
        QVERIFY(!desk.preview->isIssued());
    }

    void printsOnTheStoredPrinterWithTheGrid()
    {
        const PreviewDesk desk(2, [](FakePrinters &, FreshShop &shop) {
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
        const PreviewDesk desk(5, [](FakePrinters &printers, FreshShop &) {
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
        const PreviewDesk desk(1);
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
        const PreviewDesk desk(1, [](FakePrinters &printers, FreshShop &) {
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
        const PreviewDesk desk(1, [](FakePrinters &, FreshShop &shop) {
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
        const PreviewDesk desk(1, [](FakePrinters &printers, FreshShop &) {
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
        const PreviewDesk desk(1, [](FakePrinters &printers, FreshShop &) {
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
        const PreviewDesk desk(1, [](FakePrinters &printers, FreshShop &) {
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
                          {4, u"LASER"_s, u"昨日の日報"_s, JobState::Done, today.addDays(-1)},
                          {3, u"LASER"_s, u"納品書 O0"_s, JobState::Cancelled, today}};
        keepPrintSystem(shop.workspace, printers);
        std::vector<int> heard; // jobs taken back, here and at the printer itself
        base::Status answer = base::Error{u"データベースが使用中です。"_s};
        shop.workspace.keep(JobWatch{[&](const PrintJob &job) {
            heard.push_back(job.number);
            return std::exchange(answer, base::Status());
        }});
        DialogPrintJobs dialog(shop.workspace);
        ScreenDriver driver(&dialog);
        driver.show();
        auto &grid = driver.the<ui::ReportGrid>("gridJobs");
        QCOMPARE(heard, std::vector<int>{3}); // could not be noted, and is tried again
        driver.press("cmdRefresh");
        driver.press("cmdRefresh");
        QCOMPARE(heard, (std::vector<int>{3, 3}));
        QCOMPARE(grid.rowCount(), 4); // what is done is listed on its day, what may still come out always
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
        QCOMPARE(heard, (std::vector<int>{3, 3, 7}));
        QCOMPARE(grid.rowCount(), 3);

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

QTEST_MAIN(TestPreviewPrinting)
#include "tst_preview_printing.moc"
