#include "slips/documents/DialogOderEX.h"
#include "slips/documents/transfer_form_print.h"
#include "slips/entry/frmOut.h"
#include "slips/slip_desk.h"
#include "support/fake_printers.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QLabel>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

namespace keys = workspace::keys;

/// Does \a work in the modal screen \a name that opens next, or is there already, and closes it.
void inNext(const QString &name, const std::function<void(QWidget &)> &work)
{
    QTimer::singleShot(0, qApp, [name, work] {
        QWidget *shown = QApplication::activeModalWidget();
        if (!shown || shown->objectName() != name)
            qFatal("%s is not there", qPrintable(name));
        work(*shown);
        shown->close();
    });
}

// A shop with a customer, an account and two printers.
struct Desk
{
    Desk()
    {
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, 納品先名1, 郵便番号, 住所1, TEL1) VALUES "
            "(1, '山田　花子', '380-0821', '長野市上千歳町', '026-224-1137'), (2, '佐藤', '', '', '')"_s);
        shop.settings.write(keys::oderText[0], u"00990-4-313097"_s);
        shop.settings.write(keys::oderText[1], u"信州りんご園"_s);
        printing::keepPrintSystem(shop.workspace, printers);
    }

    bool open(double amount, const std::function<void(QWidget &)> &work)
    {
        inNext(u"DialogOderEX"_s, work);
        return printTransferForm(shop.workspace, nullptr, {1, amount});
    }
    [[nodiscard]] QString stored(const workspace::SettingKey &key) const { return shop.settings.text(key); }

    FreshShop shop;
    std::shared_ptr<FakePrinters> printers = std::make_shared<FakePrinters>();
};

QString formWithoutTax(const QString &amount)
{
    return u"この納品先の消費税は請求時に加算します。税別の金額 %1 円で払込取扱票を作りますか。"_s.arg(
        amount);
}

// From the transfer form's screen through the preview to the printer.
void printFrom(QWidget &screen)
{
    inNext(u"frmPreview"_s, [](QWidget &preview) {
        inNext(u"DialogPrint"_s, [](QWidget &dialog) { ScreenDriver(&dialog).press("cmdPrint"); });
        ScreenDriver(&preview).press("cmdPrint");
    });
    ScreenDriver(&screen).press("Command2");
}

} // namespace

class TestDialogOderEX : public ScriptedTest
{
    Q_OBJECT

private slots:
    void printsOnItsPaperAndKeepsTheTexts_data()
    {
        QTest::addColumn<bool>("turned");
        QTest::newRow("across") << true;
        QTest::newRow("along") << false;
    }

    void printsOnItsPaperAndKeepsTheTexts()
    {
        QFETCH(bool, turned);
        Desk desk;
        const bool issued = desk.open(1980, [&](QWidget &screen) {
            ScreenDriver driver(&screen);
            QCOMPARE(driver.box("Text5").text(), u"1,980"_s);
            QCOMPARE(driver.box("txtNouhinsaki1").text(), u"山田　花子"_s);
            driver.choose("Combo2", u"DOT"_s);
            driver.press(turned ? "Option1" : "Option2");
            driver.enter("Text3", u"ありがとうございます"_s);
            driver.enter("Text8", u"3"_s);
            printFrom(screen);
            QCOMPARE(driver.cursor(), u"Command3"_s); // Enter closes, and prints no second form
            driver.type("Text4", u"まだ入力の途中"_s);
            driver.key(Qt::Key_Escape);
        });
        QVERIFY(issued);
        QCOMPARE(desk.printers->given.size(), std::size_t(1));
        const printing::JobSettings &job = desk.printers->given.front().settings;
        QCOMPARE(job.queue, u"DOT"_s);
        QCOMPARE(job.paper, turned ? QSizeF(114, 184) : QSizeF(184, 114));
        QCOMPARE(desk.stored(keys::oderPrinterName), u"DOT"_s);
        QCOMPARE(desk.stored(keys::oderText[2]), u"ありがとうございます"_s);
        QCOMPARE(desk.stored(keys::oderText[3]), u"まだ入力の途中"_s);
        QCOMPARE(desk.stored(keys::oderOffsetY), u"3"_s);
        QCOMPARE(desk.shop.settings.checked(keys::oderOption1), turned);
        QCOMPARE(desk.shop.settings.checked(keys::oderOption2), !turned);
    }

    void whatCannotBePrintedIsToldWhereItIsPutRight_data()
    {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("told"); // its beginning
        QTest::newRow("savings account") << u"Text1"_s << u"10940-1-2345671"_s << u"「1」で始まるのは"_s;
        QTest::newRow("no payee") << u"Text2"_s << u" 　"_s << u"加入者名が入力されていません。"_s;
        QTest::newRow("nine digits") << u"Text5"_s << u"１００，０００，０００"_s << u"金額が 8 桁"_s;
        QTest::newRow("below nothing") << u"Text5"_s << u"-1980"_s << u"金額が -1,980 円のため"_s;
        QTest::newRow("a date") << u"Text5"_s << u"2026/4/1"_s << u"金額が 0 円のため"_s;
    }

    void whatCannotBePrintedIsToldWhereItIsPutRight()
    {
        QFETCH(QString, box);
        QFETCH(QString, typed);
        QFETCH(QString, told);
        Desk desk;
        const bool issued = desk.open(1980, [&](QWidget &screen) {
            ScreenDriver driver(&screen);
            driver.enter(box, typed);
            ui::prompts::expectInform({});
            driver.press("Command2");
            QCOMPARE(driver.cursor(), box);
        });
        QVERIFY(!issued && desk.printers->given.empty());
        // The words themselves.
        TransferForm form{{u"山田"_s, {}, {}, {}, {}, {}}, 1980, transferTexts(desk.shop.settings)};
        form.texts.account = box == u"Text1"_s ? typed : u"00990-4-313097"_s;
        if (box == u"Text5"_s)
            form.amount = typed.startsWith(u'-') ? -1980 : typed.startsWith(u'2') ? 0 : 100'000'000;
        const auto values = transferFormValues(form);
        QVERIFY2(!values && values.error().text.startsWith(told),
                 qPrintable(values ? typed : values.error().text));
    }

    void amountsThatNoFormBearsOpenNothing()
    {
        Desk desk;
        ui::prompts::expectInform(
            u"金額が 8 桁（99,999,999 円）を超えるため、郵便振替用紙を印刷できません。"_s);
        QVERIFY(!printTransferForm(desk.shop.workspace, nullptr, {1, 100'000'000}));
        ui::prompts::expectInform(u"金額が 0 円のため、郵便振替用紙を印刷できません。"_s);
        QVERIFY(!printTransferForm(desk.shop.workspace, nullptr, {1, 0}));
        ui::prompts::expectInform(u"納品先（ID 7）が削除されているため、郵便振替用紙を印刷できません。"_s);
        QVERIFY(!printTransferForm(desk.shop.workspace, nullptr, {7, 1980}));
    }

    // By accident: the wheel over what is stored, Esc, an offset of a slipped finger.
    void aHandInPassingStoresNothing()
    {
        Desk desk;
        desk.shop.settings.write(keys::oderPrinterName, u"FORMS"_s); // is gone just now
        desk.shop.settings.write(keys::oderOption2, true);
        desk.open(1980, [&](QWidget &screen) {
            ScreenDriver driver(&screen);
            QVERIFY(driver.the<QLabel>("LblPrinterName").text().contains(u"FORMS"_s));
            for (const char *name : {"Combo2", "Text7", "Text8", "Option1"})
                turnWheelOver(driver.the(name));
            driver.type("Text7", u"300"_s);
            ui::prompts::expectAskCautiously({}, false);
            driver.key(Qt::Key_Escape);
            QVERIFY(screen.isVisible());
            QCOMPARE(driver.cursor(), u"Text7"_s);
            driver.type("Text7", u"-9"_s); // no further than the paper allows
        });
        QCOMPARE(desk.stored(keys::oderPrinterName), u"FORMS"_s);
        QCOMPARE(desk.stored(keys::oderOffsetX), u"-2"_s);
        QVERIFY(desk.shop.settings.checked(keys::oderOption2));
        QVERIFY(desk.printers->given.empty());
    }

    void aRunAsksOnceAndGivesEachItsJob()
    {
        Desk desk;
        const std::vector<TransferRequest> requests{{1, 1980}, {2, 0}, {7, 500}, {2, 12'345'678}};
        inNext(u"DialogOderEX"_s, [](QWidget &screen) {
            ScreenDriver driver(&screen);
            QVERIFY(driver.the<QLabel>("lblRun").text().startsWith(u"3 枚　合計 12,348,158 円"_s));
            inNext(u"DialogPrint"_s, [](QWidget &dialog) { ScreenDriver(&dialog).press("cmdPrint"); });
            driver.press("Command2");
        });
        const auto jobs = printTransferForms(desk.shop.workspace, nullptr, requests);
        QCOMPARE(jobs.size(), requests.size());
        QVERIFY(jobs[0] && *jobs[0] == 1);
        QVERIFY(!jobs[1]);
        QVERIFY(!jobs[2] && jobs[2].error().gone);
        QVERIFY(jobs[3] && *jobs[3] == 2);
        QCOMPARE(desk.printers->given.size(), std::size_t(2));
    }

    void aRunNamesThoseWhoGetNoForm_data()
    {
        QTest::addColumn<int>("without");
        QTest::addColumn<QString>("words");
        const QString why = u"%1 件は、金額を払込取扱票に印刷できないため作りません。\n"_s;
        QTest::newRow("one") << 1 << why.arg(1) + u"店11"_s;
        QTest::newRow("as many as are named") << 5 << why.arg(5) + u"店11、店12、店13、店14、店15"_s;
        QTest::newRow("more") << 7 << why.arg(7) + u"店11、店12、店13、店14、店15　ほか 2 件"_s;
    }

    void aRunNamesThoseWhoGetNoForm()
    {
        QFETCH(int, without);
        Desk desk;
        std::vector<TransferRequest> requests{{1, 1980}};
        for (int id = 11; id < 11 + without; ++id) {
            desk.shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (?, ?)"_s,
                          {id, u"店%1"_s.arg(id)});
            requests.push_back({id, 123'456'789});
        }
        QString told;
        inNext(u"DialogOderEX"_s,
               [&told](QWidget &screen) { told = ScreenDriver(&screen).the<QLabel>("lblRun").text(); });
        QVERIFY(printTransferForms(desk.shop.workspace, nullptr, requests).empty());
        QTEST(told.section(u'\n', 1), "words");
    }

    void aRunThatIsLeftPrintsNothing()
    {
        Desk desk;
        inNext(u"DialogOderEX"_s, [](QWidget &) {});
        QVERIFY(printTransferForms(desk.shop.workspace, nullptr, {{1, 1980}}).empty());
        inNext(u"DialogOderEX"_s, [](QWidget &screen) {
            inNext(u"DialogPrint"_s, [](QWidget &) {});
            ScreenDriver(&screen).press("Command2");
            QVERIFY(screen.isVisible());
        });
        QVERIFY(printTransferForms(desk.shop.workspace, nullptr, {{1, 1980}}).empty());
        desk.printers->refusal = base::Error{u"受け付けていません。"_s};
        inNext(u"DialogOderEX"_s, [](QWidget &screen) {
            inNext(u"DialogPrint"_s, [](QWidget &dialog) { ScreenDriver(&dialog).press("cmdPrint"); });
            ScreenDriver(&screen).press("Command2");
        });
        const auto jobs = printTransferForms(desk.shop.workspace, nullptr, {{1, 1980}, {2, 5}});
        QVERIFY(jobs.size() == 2 && !jobs[0] && !jobs[1]);
        QVERIFY(desk.printers->given.empty());
    }

    void itFollowsTheNoteForWhatIsToBePaid_data()
    {
        QTest::addColumn<int>("taxClass");
        QTest::addColumn<bool>("otherwise"); // the clerk turns the box of the inclusive prices round
        QTest::addColumn<QString>("amount");
        QTest::newRow("tax is added") << 0 << false << u"1,050"_s;
        QTest::newRow("made inclusive") << 0 << true << u"1,000"_s;
        QTest::newRow("taxed on the bill") << 1 << false << u"1,000"_s;
        QTest::newRow("taxed on the bill, made inclusive") << 1 << true << u"1,000"_s;
        QTest::newRow("inclusive") << 2 << false << u"1,000"_s;
        QTest::newRow("made exclusive") << 2 << true << u"1,050"_s;
    }

    void itFollowsTheNoteForWhatIsToBePaid()
    {
        QFETCH(int, taxClass);
        QFETCH(bool, otherwise);
        QFETCH(QString, amount);
        SlipDesk<frmOut> desk;
        desk.shop.workspace.panel.transferFormAfterDelivery = true;
        desk.open(taxClass);
        QVERIFY(desk.the<QAbstractButton>("Check3").isChecked());
        desk.goods(u"2"_s, u"500"_s);
        if (otherwise)
            desk.press("Check1");
        QString shown;
        if (taxClass == 1 && !otherwise)
            ui::prompts::expectAskCautiously(formWithoutTax(u"1,000"_s), true);
        inNext(u"DialogOderEX"_s,
               [&](QWidget &screen) { shown = ScreenDriver(&screen).box("Text5").text(); });
        desk.press("cmdNext");
        QCOMPARE(shown, amount);
        // Once a document: unticked for the next one, it is ticked again for the one after it.
        desk.open(taxClass);
        desk.goods(u"2"_s, u"500"_s);
        desk.press("Check3");
        desk.press("cmdNext");
        QVERIFY(!QApplication::activeModalWidget());
        desk.open(taxClass);
        QVERIFY(desk.the<QAbstractButton>("Check3").isChecked());
        desk.goods(u"1"_s, u"1"_s);
        // Left open, nobody knows yet what is to be paid.
        ui::prompts::expectAskToSave({}, ui::prompts::Choice::Discard);
        desk.screen().close();
        QVERIFY(!desk.screen().isVisible() && !QApplication::activeModalWidget());
    }

    void noFormWithoutTheTaxUnlessWanted()
    {
        SlipDesk<frmOut> desk;
        desk.shop.workspace.panel.transferFormAfterDelivery = true;
        desk.open(1);
        desk.goods(u"3"_s, u"1333"_s);
        bool opened = false;
        auto *watching = new QTimer(&desk.screen());
        QObject::connect(watching, &QTimer::timeout, &desk.screen(), [&opened] {
            if (auto *shown = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                opened = true;
                shown->reject();
            }
        });
        watching->start(0);
        ui::prompts::expectAskCautiously(formWithoutTax(u"3,999"_s), false);
        desk.press("cmdNext");
        QVERIFY(!opened);
        QCOMPARE(desk.lines().size(), 1); // the slip is stored all the same
        QCOMPARE(desk.text("Text1"), QString());
    }
};

QTEST_MAIN(TestDialogOderEX)
#include "tst_dialogoderex.moc"
