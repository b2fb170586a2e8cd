// The bulk issue by key events: what is printed is what is in the file, and what was typed is never lost.
#include "gift_season.h"

#include "shipping/gifts/frmKuroneko5.h"
#include "shipping/gifts/gift_draft.h"
#include "support/fake_printers.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace shipping;
using ui::prompts::Choice;

namespace
{

const QString allOut = u"すべてのデータを排出しました。"_s;

/// A queue that takes so many jobs; then it refuses, or the clerk stops the run.
class TiredPrinters : public FakePrinters
{
public:
    std::size_t most = 99;
    bool clerkStops = false;
    QStringList titles;

    base::Result<int> printPdf(const QByteArray &pdf, const QString &title,
                               const printing::JobSettings &settings) override
    {
        if (given.size() == most)
            return base::Error{u"用紙がありません。"_s};
        titles << title;
        auto job = FakePrinters::printPdf(pdf, title, settings);
        if (clerkStops && given.size() == most)
            stop();
        return job;
    }

private:
    static void stop()
    {
        for (QWidget *window : QApplication::allWidgets()) {
            if (auto *progress = qobject_cast<QProgressDialog *>(window))
                progress->cancel();
        }
    }
};

struct Desk
{
    Desk()
    {
        printing::keepPrintSystem(shop.workspace, printers);
        shop.workspace.panel.carrier = u"佐川急便"_s;
        open();
    }

    void open()
    {
        driver.reset();
        screen = std::make_unique<frmKuroneko5>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }

    [[nodiscard]] ui::Grid &grid() const { return driver->the<ui::Grid>("DataGrid1"); }
    [[nodiscard]] QString cell(int row, GiftColumn column) const
    {
        return grid().model()->index(row, int(column)).data().toString();
    }
    [[nodiscard]] bool isTicked(int row) const
    {
        return grid().model()->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    }
    void goTo(int row, GiftColumn column) const
    {
        grid().setFocus();
        grid().setCurrentIndex(grid().model()->index(row, int(column)));
    }
    /// Opens a cell, types \a text, and presses \a last.
    void enter(int row, GiftColumn column, const QString &text, Qt::Key last = Qt::Key_Return) const
    {
        goTo(row, column);
        QTest::keyClick(&grid(), Qt::Key_F2);
        auto *box = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(box);
        box->selectAll();
        box->insert(text);
        QTest::keyClick(box, last);
    }
    void enterLine(int row, const QString &name, const QString &zip, const QString &address) const
    {
        enter(row, GiftColumn::Name1, name);
        enter(row, GiftColumn::Zip, zip);
        enter(row, GiftColumn::Address1, address);
    }
    /// One sender, what all get, and \a lines consignees.
    void fill(int lines) const
    {
        driver->type("cmbSender", u"髙橋"_s);
        driver->key(Qt::Key_Return);
        driver->choose("dbcKubun", 0);
        driver->enter("dbcShohin", u"みかん 5kg"_s);
        driver->enter("Text1", u"３，９８０"_s);
        driver->enter("Text2", u"880"_s);
        driver->enter("txtMemo1", u"御歳暮"_s);
        for (int row = 0; row < lines; ++row)
            enterLine(row, u"届先%1"_s.arg(row + 1), u"4388%1"_s.arg(122 + row), u"磐田市%1"_s.arg(row + 1));
    }
    /// Presses the button that issues, and the one of the print dialog where it comes.
    void issue(const QString &text) const
    {
        QTimer hand;
        QObject::connect(&hand, &QTimer::timeout, &hand, [] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (dialog && dialog->objectName() == u"DialogPrint"_s)
                dialog->findChild<QPushButton *>(u"cmdPrint"_s)->click();
        });
        hand.start(10);
        ui::prompts::expectInform(text, ui::prompts::anyRemark);
        driver->press("Command2");
    }
    QStringList history() { return shop.rows(u"SELECT 届先名1 FROM 発送マスター ORDER BY 発送ID"_s); }
    [[nodiscard]] QString draft() const { return draftFile(shop.workspace.applicationFolder()); }
    [[nodiscard]] QString message() const { return driver->the<QLabel>("lblMessage").text(); }

    GiftSeason shop;
    std::shared_ptr<TiredPrinters> printers = std::make_shared<TiredPrinters>();
    std::unique_ptr<frmKuroneko5> screen;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestFrmKuroneko5 : public ScriptedTest
{
    Q_OBJECT

private slots:
    void aSheetBecomesItsSlips()
    {
        Desk desk;
        desk.fill(2);
        desk.enter(1, GiftColumn::Price, u"5000"_s);
        desk.enter(1, GiftColumn::Delivery, u"4/20"_s);
        QCOMPARE(desk.cell(0, GiftColumn::Price), u"3,980"_s);
        QCOMPARE(desk.cell(0, GiftColumn::Zip), u"438-8122"_s);
        QCOMPARE(desk.driver->the<QLabel>("lblCount").text(),
                 u"2 件のうち 2 件　価格 8,980 円　送料 1,760 円"_s);
        desk.issue(allOut);
        QCOMPARE(desk.shop.rows(
                     u"SELECT 届先名1, 届先郵便番号, 品名, 価格, 送料, 配達日, 備考1, 発送区分, 発送方法, "
                     "依頼主名1, 依頼主ID, 受付日, 印刷日 FROM 発送マスター ORDER BY 発送ID"_s),
                 QStringList({u"届先1|438-8122|みかん 5kg|3980|880|-|御歳暮|お歳暮|佐川急便|髙橋商店|7|"
                              "2026-04-01|2026-04-01"_s,
                              u"届先2|438-8123|みかん 5kg|5000|880|2026-04-20|御歳暮|お歳暮|佐川急便|"
                              "髙橋商店|7|2026-04-01|2026-04-01"_s}));
        QCOMPARE(desk.printers->given.size(), std::size_t(2)); // a job a slip
        QCOMPARE(desk.cell(1, GiftColumn::State), u"発行済　発送ID 2"_s);
        QVERIFY(!desk.isTicked(0) && !desk.isTicked(1));
        QVERIFY(!desk.driver->the<QPushButton>("Command2").isEnabled());
        // Nothing is left to be lost: it closes without a question, and begins empty.
        desk.screen->close();
        QVERIFY(!desk.screen->isVisible());
        desk.open();
        QCOMPARE(desk.grid().model()->rowCount(), 1);
        QCOMPARE(desk.driver->box("txtMemo1").text(), u"御歳暮"_s); // Inv2Memo1
    }

    void whatIsPrintedIsInTheFile_data()
    {
        QTest::addColumn<int>("most");
        QTest::addColumn<bool>("clerkStops");
        QTest::addColumn<QString>("text");
        QTest::newRow("refused at once") << 0 << false << u"用紙がありません。"_s;
        QTest::newRow("refused in the middle") << 2 << false << u"用紙がありません。"_s;
        QTest::newRow("stopped in the middle") << 3 << true << u"中止しました。"_s;
    }

    void whatIsPrintedIsInTheFile()
    {
        QFETCH(int, most);
        QFETCH(bool, clerkStops);
        QFETCH(QString, text);
        Desk desk;
        desk.fill(5);
        desk.printers->most = std::size_t(most);
        desk.printers->clerkStops = clerkStops;
        desk.issue(text);
        QStringList printed;
        for (int row = 0; row < most; ++row)
            printed << u"届先%1"_s.arg(row + 1);
        QCOMPARE(desk.history(), printed);
        QCOMPARE(int(desk.printers->given.size()), most);
        for (int row = 0; row < 5; ++row) {
            QCOMPARE(desk.isTicked(row), row >= most);
            QCOMPARE(desk.cell(row, GiftColumn::State).startsWith(u"発行済"_s), row < most);
        }
        QCOMPARE(desk.cell(most, GiftColumn::State), clerkStops ? QString() : text);
        QCOMPARE(desk.grid().currentIndex().row(), most); // where it goes on
        // The program ends now; the draft does not print the first ones once more.
        const auto kept = readDraft(desk.draft(), QDate(2026, 4, 1));
        QVERIFY(kept && *kept);
        QCOMPARE(int(tickedRows(**kept).size()), 5 - most);
        desk.printers->most = 99;
        desk.issue(allOut);
        QCOMPARE(desk.history().size(), 5);
        QCOMPARE(desk.printers->titles.size(), 5);
        desk.printers->titles.removeDuplicates();
        QCOMPARE(desk.printers->titles.size(), 5);
    }

    void lastYearsListIsChangedAndIssued()
    {
        Desk desk;
        const Party shop = person(u"髙橋商店"_s, u"100-0001"_s, u"千代田1"_s);
        desk.shop.send({2025, 3, 1}, shop, 7, person(u"井上"_s, u"430-0926"_s, u"浜松市1"_s), u"柿"_s, 3000,
                       700);
        desk.shop.send({2025, 3, 2}, shop, 7, person(u"原"_s, u"438-0001"_s, u"磐田市2"_s), u"桃"_s, 4000,
                       800);
        ui::prompts::expectInform(u"ご依頼主を検索するか、名前を入力してください。"_s);
        desk.driver->press("cmdLastYear");
        desk.driver->type("cmbSender", u"髙橋"_s);
        desk.driver->press("Command5");
        desk.driver->choose("dbcKubun", 0);
        desk.driver->press("cmdLastYear");
        QCOMPARE(desk.cell(0, GiftColumn::Name1) + desk.cell(1, GiftColumn::Name1), u"原井上"_s);
        desk.driver->press("cmdLastYear"); // those that are there already are not doubled
        QCOMPARE(desk.grid().model()->rowCount(), 3);
        desk.goTo(0, GiftColumn::Zip);
        QTest::keyClick(&desk.grid(), Qt::Key_Space);
        desk.enter(1, GiftColumn::Price, u"3,300"_s);
        desk.issue(allOut);
        QCOMPARE(
            desk.shop.rows(
                u"SELECT 届先名1, 品名, 価格, 備考1, 備考2, 配達日 FROM 発送マスター WHERE 発送ID > 2"_s),
            QStringList(u"井上|柿|3300|御歳暮|髙橋|-"_s));
        // Two years ago there was nothing.
        desk.driver->choose("cmbYear", 1);
        ui::prompts::expectInform(u"該当するデータは見つかりませんでした。"_s);
        desk.driver->press("cmdLastYear");
    }

    void anotherSenderDoesNotTakeTheLinesUnasked()
    {
        Desk desk;
        desk.fill(2);
        const QString question = u"表には、髙橋商店 様のお届け先が 2 件残っています。ご依頼主を %1 "
                                 "様に替えると、どうしますか。"_s;
        for (const auto &[way, name] :
             {std::pair(QString(), u"髙橋商店"_s), {u"残して使う"_s, u"井上　誠"_s}}) {
            ui::prompts::expectAskWhichWay(question.arg(u"井上　誠"_s), way);
            desk.driver->type("cmbSender", u"井上"_s);
            desk.driver->key(Qt::Key_Return);
            QCOMPARE(desk.driver->box("txtName1").text(), name);
            QCOMPARE(desk.grid().model()->rowCount(), 3);
        }
        // A name that was typed over is one of another, too.
        desk.driver->enter("txtName1", u"原商店"_s);
        ui::prompts::expectAskWhichWay({}, u"表から除く"_s);
        ui::prompts::expectInform(u"発行するお届け先に印が付いていません。"_s);
        desk.driver->press("Command2");
        QCOMPARE(desk.grid().model()->rowCount(), 1);
        QVERIFY(desk.history().isEmpty());
    }

    // What one has sent does not count as there already for the next one.
    void theNextSenderBeginsAnew()
    {
        Desk desk;
        desk.shop.send({2025, 3, 1}, person(u"井上　誠"_s, u"1"_s, u"町1"_s), 8,
                       person(u"届先1"_s, u"438-8122"_s, u"磐田市1"_s), u"柿"_s, 3000, 700);
        desk.fill(1);
        desk.issue(allOut);
        desk.driver->type("cmbSender", u"井上"_s);
        desk.driver->key(Qt::Key_Return);
        QCOMPARE(desk.message(), u"髙橋商店 様のお届け先 1 行を表から除きました。"_s);
        QCOMPARE(desk.grid().model()->rowCount(), 1);
        desk.driver->press("cmdLastYear");
        QCOMPARE(desk.cell(0, GiftColumn::Name1) + desk.cell(0, GiftColumn::Goods), u"届先1柿"_s);
        QVERIFY(desk.isTicked(0));
        desk.driver->choose("cmbTimeSlot", u"14-16"_s);
        desk.driver->choose("Combo5", u"宅急便"_s); // which has no place for the time
        desk.issue(allOut);
        QCOMPARE(desk.cell(0, GiftColumn::State), u"発行済　発送ID 3　時間帯は書き込んでください"_s);
        QCOMPARE(desk.shop.rows(u"SELECT 依頼主名1 FROM 発送マスター WHERE 発送ID > 1 ORDER BY 発送ID"_s),
                 QStringList({u"髙橋商店"_s, u"井上　誠"_s}));
    }

    void nothingIsPrintedBeforeAllIsRight()
    {
        Desk desk;
        desk.fill(1);
        desk.enter(1, GiftColumn::Name1, u"住所のない人"_s);
        desk.enter(1, GiftColumn::Zip, u"４３８"_s);
        desk.issue(u"発行できないお届け先があります。直してから、もう一度発行してください。"_s);
        QCOMPARE(desk.cell(1, GiftColumn::State), u"住所が入力されていません。"_s);
        QCOMPARE(desk.grid().currentIndex(), desk.grid().model()->index(1, int(GiftColumn::Address1)));
        desk.enter(1, GiftColumn::Address1, u"磐田市9"_s);
        QCOMPARE(desk.cell(1, GiftColumn::State), QString());
        // A doubt is asked about once for all; Enter alone goes back.
        desk.enter(0, GiftColumn::Delivery, u"2026/3/1"_s);
        ui::prompts::expectAskCautiously(u"次の点を確かめてください。このまま発行しますか。"_s, false,
                                         u"1 行目　届先1: 配達予定日 2026/03/01 は過ぎています。"_s);
        desk.driver->press("Command2");
        desk.driver->type("dbcKubun", u"お歳墓"_s);
        ui::prompts::expectInform(u"発送区分が不正です。"_s);
        desk.driver->press("Command2");
        desk.driver->list("dbcKubun").clearEditText();
        ui::prompts::expectInform(u"発送区分が不正です。"_s, u"発送区分を選んでください。"_s);
        desk.driver->press("Command2");
        desk.driver->choose("dbcKubun", 0);
        desk.driver->enter("Text1", u"時価"_s);
        ui::prompts::expectInform(u"価格には、円の数字を入力してください。"_s);
        desk.driver->press("Command2");
        QCOMPARE(desk.driver->cursor(), u"Text1"_s);
        QVERIFY(desk.history().isEmpty() && desk.printers->given.empty());
    }

    void whatIsNotTakenStaysOpenToBeMended()
    {
        Desk desk;
        desk.fill(1);
        ui::prompts::expectInform(u"価格には、円の数字を入力してください。"_s);
        desk.enter(0, GiftColumn::Price, u"三千円"_s);
        QCoreApplication::processEvents();
        auto *open = qobject_cast<QLineEdit *>(QApplication::focusWidget());
        QVERIFY(open && open->text() == u"三千円"_s);
        QTest::keyClick(open, Qt::Key_Escape); // gives up the cell, and no more
        QVERIFY(desk.screen->isVisible());
        QCOMPARE(desk.cell(0, GiftColumn::Price), u"3,980"_s);
    }

    void accidentsLoseNothing()
    {
        Desk desk;
        desk.fill(2);
        const QString question = u"まだ発行していないお届け先が 2 件あります。"_s;
        for (int twice = 0; twice < 2; ++twice) {
            ui::prompts::expectAskHowToLeave(question, Choice::Cancel, Choice::Save);
            desk.goTo(0, GiftColumn::Tel);
            QTest::keyClick(&desk.grid(), Qt::Key_Escape);
            QVERIFY(desk.screen->isVisible());
        }
        // A line that is left while a cell of it is being filled.
        desk.goTo(1, GiftColumn::Tel);
        QTest::keyClick(&desk.grid(), Qt::Key_F2);
        qobject_cast<QLineEdit *>(QApplication::focusWidget())->insert(u"０９０"_s);
        ui::prompts::expectAskHowToLeave(question, Choice::Save, Choice::Save);
        desk.screen->close();
        desk.open();
        QCOMPARE(desk.cell(1, GiftColumn::Name1) + desk.cell(1, GiftColumn::Tel), u"届先2090"_s);
        QCOMPARE(desk.driver->box("txtName1").text(), u"髙橋商店"_s);
        QCOMPARE(desk.driver->box("Text1").text(), u"3,980"_s);
        QCOMPARE(desk.message(), u"前回の下書き（お届け先 2 件）を開きました。"_s);
        QCOMPARE(desk.driver->the<QLabel>("lblSender").text(), u"ID 7"_s);
        // The wheel over a box in passing, and a half typed day.
        turnWheelOver(desk.driver->list("Combo5"));
        QCOMPARE(desk.driver->list("Combo5").currentText(), u"佐川急便"_s);
        desk.driver->enter("txtDate2", u"12/"_s);
        QVERIFY(desk.message().startsWith(u"「12/」は日付として読めません。"_s));
        ui::prompts::expectAskHowToLeave(question, Choice::Discard, Choice::Save);
        desk.screen->close();
        QVERIFY(!QFile::exists(desk.draft()));
        desk.open();
        QCOMPARE(desk.grid().model()->rowCount(), 1);
    }

    void theProgramEndsSuddenly()
    {
        Desk desk;
        desk.fill(2);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(desk.draft()), 5000);
        const auto kept = readDraft(desk.draft(), QDate(2026, 4, 1));
        QVERIFY(kept && *kept);
        QCOMPARE((*kept)->rows.size(), std::size_t(2));
        QCOMPARE((*kept)->rows[1].consignee.address1, u"磐田市2"_s);
    }

    void pastedAndTakenBack()
    {
        Desk desk;
        desk.fill(1);
        QGuiApplication::clipboard()->setText(u"原\t\t4388122\t磐田市1\n森\t\t4300926\t浜松市2\n"_s);
        desk.goTo(1, GiftColumn::Name1);
        QTest::keyClick(&desk.grid(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(desk.cell(2, GiftColumn::Zip), u"430-0926"_s);
        desk.goTo(1, GiftColumn::Name1);
        QTest::keyClick(&desk.grid(), Qt::Key_Delete);
        QCOMPARE(desk.cell(1, GiftColumn::Name1), u"森"_s);
        QTest::keyClick(&desk.grid(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(desk.cell(1, GiftColumn::Name1), u"原"_s);
        QTest::keyClick(&desk.grid(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(desk.grid().model()->rowCount(), 2);
        QGuiApplication::clipboard()->setText(u"原\t\t1\t町\t\t\tみかん\t時価"_s);
        ui::prompts::expectInform(u"貼り付ける 1 行目の「価格」: 価格には、円の数字を入力してください。\n"
                                  "何も貼り付けていません。"_s);
        QTest::keyClick(&desk.grid(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(desk.grid().model()->rowCount(), 2);
    }

    void consigneesFromTheRegister()
    {
        Desk desk;
        desk.driver->type("cmbConsignee", u"井上"_s);
        desk.driver->key(Qt::Key_Return); // Enter adds
        QCOMPARE(desk.cell(0, GiftColumn::Name1) + desk.cell(0, GiftColumn::Zip), u"井上　誠430-0926"_s);
        QCOMPARE(desk.driver->cursor(), u"cmbConsignee"_s);
        desk.driver->type("cmbConsignee", u"井上"_s);
        desk.driver->press("cmdAddConsignee");
        QCOMPARE(desk.grid().model()->rowCount(), 2);
        QCOMPARE(desk.message(), u"井上　誠 は 1 行目にあります。"_s);
        desk.shop.run(
            u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー) VALUES (9, '井上商会', '井上商会')"_s);
        ui::prompts::expectInform(u"複数の納品先が選択されています。"_s);
        desk.driver->type("cmbConsignee", u"井上"_s);
        desk.driver->press("cmdAddConsignee");
        QVERIFY(desk.message().startsWith(u"該当する納品先 2 件"_s));
        // One whom nobody has registered; nothing typed is no sender either.
        ui::prompts::expectInform(u"該当するデータは見つかりませんでした。"_s);
        desk.driver->type("cmbConsignee", u"いない人"_s);
        desk.driver->press("cmdAddConsignee");
        ui::prompts::expectInform(u"ご依頼主の名前が入力されていません。"_s);
        desk.driver->press("Command2");
        QCOMPARE(desk.driver->cursor(), u"txtName1"_s);
        ui::prompts::expectAskHowToLeave({}, Choice::Discard, Choice::Save);
        desk.screen->close();
    }
};

QTEST_MAIN(TestFrmKuroneko5)
#include "tst_frmkuroneko5.moc"
