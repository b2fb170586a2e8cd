// What a hand does by accident between a document and its printer, by key and mouse events.

#include "printing/DialogPrintJobs.h"
#include "printing/frmPreview.h"
#include "support/fake_printers.h"
#include "support/fresh_shop.h"
#include "support/pages_of_text.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QThread>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace printing;

namespace
{

// Printers that take long, and may go while the clerk chooses.
class SlowPrinters : public FakePrinters
{
public:
    int milliseconds = 0; // of a page

    base::Result<int> print(const Document &document, const Look &look, const JobSettings &settings,
                            const base::Progress &progress) override
    {
        if (!names.contains(settings.queue))
            return base::Error{u"The printer or class does not exist."_s};
        return FakePrinters::print(document, look, settings, [&](qint64 done, qint64 total) {
            QThread::msleep(static_cast<unsigned long>(milliseconds));
            return progress(done, total);
        });
    }
};

struct Desk
{
    explicit Desk(int pages)
    {
        printers->can[u"LASER"_s] = {.bins = {u"top"_s, u"manual"_s}, .mostCopies = 99};
        keepPrintSystem(shop.workspace, printers);
        preview = std::make_unique<frmPreview>(shop.workspace, pagesOfText(pages));
        driver = std::make_unique<ScreenDriver>(preview.get());
        driver->show();
    }

    /// Opens the print dialog and does \a work in it, which closes it.
    void print(const std::function<void(QWidget &dialog)> &work) const
    {
        QTimer::singleShot(0, preview.get(), [&] {
            QWidget *dialog = QApplication::activeModalWidget();
            QVERIFY(dialog && dialog->objectName() == u"DialogPrint"_s);
            QTRY_VERIFY(dialog->isActiveWindow());
            work(*dialog);
        });
        driver->press("cmdPrint");
    }
    /// Whether nothing was printed, and the document is there to be printed still.
    [[nodiscard]] bool isAsBefore() const
    {
        return printers->given.empty() && !preview->isIssued() && preview->isVisible();
    }

    FreshShop shop;
    std::shared_ptr<SlowPrinters> printers = std::make_shared<SlowPrinters>();
    std::unique_ptr<frmPreview> preview;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestPrintAccidents : public ScriptedTest
{
    Q_OBJECT

private slots:
    void escTwicePrintsNothing()
    {
        const Desk desk(3);
        desk.print([](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
        QVERIFY(desk.isAsBefore());
        QTest::keyClick(desk.preview.get(), Qt::Key_Escape);
        QVERIFY(!desk.preview->isVisible() && !desk.preview->isIssued());
    }

    void aWheelInPassingChangesNothingOfThePrint()
    {
        const Desk desk(3);
        desk.print([](QWidget &dialog) {
            for (const auto *name : {"cboQueue", "cboBin", "spnFirst", "spnLast", "spnCopies"})
                turnWheelOver(*dialog.findChild<QWidget *>(QLatin1StringView(name)));
            QVERIFY(dialog.findChild<QRadioButton *>(u"optAll"_s)->isChecked());
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return); // the button has the cursor
        });
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
        const JobSettings &settings = desk.printers->given.front().settings;
        QCOMPARE(settings.queue, u"LASER"_s);
        QCOMPARE(settings.bin, QString());
        QCOMPARE(settings.copies, 1);
    }

    // Enter in a box goes on to the next one; copies typed in a hurry count as they stand.
    void enterInABoxDoesNotPrint()
    {
        const Desk desk(3);
        desk.print([&desk](QWidget &dialog) {
            auto &copies = *dialog.findChild<QSpinBox *>(u"spnCopies"_s);
            copies.setFocus();
            copies.selectAll();
            QTest::keyClicks(&copies, u"2"_s);
            QTest::keyClick(&copies, Qt::Key_Return);
            QVERIFY(dialog.isVisible() && desk.printers->given.empty());
            QTest::keyClick(&dialog, Qt::Key_P, Qt::AltModifier);
        });
        QTRY_COMPARE(desk.printers->given.size(), std::size_t(1));
        QCOMPARE(desk.printers->given.front().settings.copies, 2);
    }

    void aPrinterThatGoesWhileTheClerkChoosesIsTold()
    {
        const Desk desk(1);
        ui::prompts::expectInform(u"The printer or class does not exist."_s);
        desk.print([&desk](QWidget &dialog) {
            desk.printers->names = QStringList{u"DOT"_s};
            dialog.findChild<QPushButton *>(u"cmdPrint"_s)->click();
        });
        QVERIFY(desk.isAsBefore());
        // The next try stands at the printer that there is.
        desk.print([](QWidget &dialog) {
            QCOMPARE(dialog.findChild<QComboBox *>(u"cboQueue"_s)->currentText(), u"DOT"_s);
            dialog.findChild<QPushButton *>(u"cmdPrint"_s)->click();
        });
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
        QCOMPARE(desk.printers->given.front().settings.queue, u"DOT"_s);
    }

    // The preview cannot be closed under its work: Esc reaches the window that tells of it, and stops the
    // whole.
    void escWhileAJobIsMadeStopsItWhole()
    {
        Desk desk(40);
        desk.printers->milliseconds = 50;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&watch] {
            QWidget *progress = QApplication::activeModalWidget();
            if (!progress || progress->objectName() != u"progress"_s || !progress->isActiveWindow())
                return;
            watch.stop();
            QTest::keyClick(progress, Qt::Key_Escape);
        });
        ui::prompts::expectInform(u"印刷を中止しました。何も印刷していません。"_s);
        desk.print([&watch](QWidget &dialog) {
            dialog.findChild<QPushButton *>(u"cmdPrint"_s)->click();
            watch.start(10);
        });
        QVERIFY(desk.isAsBefore());
    }

    void aPdfThatCannotBeWrittenCountsAsNothing()
    {
        const Desk desk(1);
        ui::file_dialogs::expectFile({}); // left with Esc
        QTest::keyClick(desk.preview.get(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(desk.isAsBefore());
        ui::file_dialogs::expectFile(desk.shop.path(u"no such folder/note.pdf"_s));
        ui::prompts::expectInform({});
        QTest::keyClick(desk.preview.get(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(desk.isAsBefore());
    }

    // The list of jobs is read anew while the clerk looks at it: the row stays with its job.
    void theJobToBeTakenBackIsTheOneThatWasChosen()
    {
        FreshShop shop;
        const auto printers = std::make_shared<FakePrinters>();
        const QDateTime today(shop.workspace.today(), QTime(9, 30));
        printers->list = {{7, u"DOT"_s, u"納品書 O3"_s, JobState::Waiting, today},
                          {6, u"DOT"_s, u"納品書 O2"_s, JobState::Waiting, today}};
        keepPrintSystem(shop.workspace, printers);
        DialogPrintJobs dialog(shop.workspace);
        ScreenDriver driver(&dialog);
        driver.show();
        driver.the<ui::ReportGrid>("gridJobs").selectRow(1);
        printers->list.insert(printers->list.begin(),
                              {8, u"DOT"_s, u"納品書 O4"_s, JobState::Waiting, today});
        driver.press("cmdRefresh");
        const QString question = u"「納品書 O2」の印刷を取り消します。よろしいですか。"_s;
        ui::prompts::expectAskCautiously(question, true, ui::prompts::anyRemark);
        driver.press("cmdCancelJob");
        QCOMPARE(printers->cancelled, std::vector<int>{6});
        // Enter on the row, and Esc, take nothing back.
        driver.the("gridJobs").setFocus();
        driver.key(Qt::Key_Return);
        driver.key(Qt::Key_Escape);
        QCOMPARE(printers->cancelled, std::vector<int>{6});
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(TestPrintAccidents)
#include "tst_print_accidents.moc"
