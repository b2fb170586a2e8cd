#include "bill_book.h"
#include "slips/slip_desk.h"

#include "reports/bills/frmOutBill.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QtTest>

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;
namespace prompts = ui::prompts;

namespace
{

const QString noCustomer = u"納品先が選択されていません。"_s;
const QString notFound = u"該当するデータが見つかりませんでした。"_s;
const QString done = u"すべてのデータを排出しました。"_s;
const QString deleteQuestion = u"表示中のレコードを削除します。よろしいですか。"_s;

// On 2026-04-01: customer 1 is taxed on delivery, 2 on the bill, 3 has prices that include the tax.
class BillDesk : public SlipDesk<reports::frmOutBill>
{
public:
    BillDesk() { ui::file_dialogs::beginScript(); }

    void find(int taxClass)
    {
        box("txtKey1").setText(u"aite%1"_s.arg(taxClass));
        press("Command1");
    }

    // Text2, 3, 4, 5, 7, 8, 9 and 6.
    QString figures()
    {
        QStringList texts;
        for (const char *name : {"Text2", "Text3", "Text4", "Text5", "Text7", "Text8", "Text9", "Text6"})
            texts << text(name);
        return texts.join(u' ');
    }

    QString row(int row)
    {
        const QAbstractItemModel &model = *the<QAbstractItemView>("MSFlexGrid1").model();
        QStringList cells;
        for (int column = 0; row < model.rowCount() && column < model.columnCount(); ++column)
            cells << model.index(row, column).data().toString();
        return cells.join(u'|');
    }

    QString days() { return the<QDateEdit>("DTPicker1").text() + u' ' + the<QDateEdit>("DTPicker2").text(); }
    QString message() { return the<QLabel>("lblMessage").text(); }

    void turnTo(QDate from, QDate to)
    {
        the<QDateEdit>("DTPicker1").setDate(from);
        the<QDateEdit>("DTPicker2").setDate(to);
    }

    /// Presses 印刷 and saves what the preview shows as PDF; \return whether there was one.
    bool printToFile()
    {
        const QString fileName = shop.path(u"bill.pdf"_s);
        QFile::remove(fileName);
        ui::file_dialogs::expectFile(fileName);
        inNext(u"frmPreview"_s,
               [](QDialog &preview) { preview.findChild<QPushButton *>(u"cmdPdf"_s)->click(); });
        press("Command2");
        return QFile::exists(fileName);
    }
    void printAndLeave()
    {
        inNext(u"frmPreview"_s, [](QDialog &) {});
        press("Command2");
    }
    /// Does \a work in the next screen \a name that opens, and closes it.
    void inNext(const QString &name, const std::function<void(QDialog &)> &work)
    {
        auto *waiting = new QTimer(&screen());
        QObject::connect(waiting, &QTimer::timeout, &screen(), [this, waiting, name, work] {
            auto *shown = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (!shown || shown->objectName() != name)
                return;
            waiting->deleteLater();
            waiting->stop();
            opened << name;
            work(*shown);
            shown->reject();
        });
        waiting->start(0);
    }
    QStringList opened;
};

} // namespace

class TestFrmOutBill : public ScriptedTest
{
    Q_OBJECT

private slots:
    void computing()
    {
        BillDesk desk;
        writeSlip(desk.shop, 1, u"O 2026-02-10 500"_s, 2);
        writeSlip(desk.shop, 2, u"O 2026-03-01 12345"_s, 2);
        writeSlip(desk.shop, 3, u"R 2026-03-31 800"_s, 2);
        writeSlip(desk.shop, 4, u"O 2026-04-01 7"_s, 2);
        desk.find(1);
        QCOMPARE(desk.days(), u"2026/03/01 2026/03/31"_s);
        QCOMPARE(desk.figures(), u"500 12,345 800 12,045 12,345 0 -300 617"_s);
        QCOMPARE(desk.text("Text1"), u"2"_s);
        QCOMPARE(desk.text("txtNouhinsaki1"), u"aite1"_s);
        QVERIFY(desk.the<QPlainTextEdit>("RichTextBox1").toPlainText().contains(u"aite1"_s));
        QCOMPARE(desk.row(0), u"|繰越||||||500"_s);
        QCOMPARE(desk.row(1), u"2026/03/01|りんご||||12,345||12,845"_s);
        QCOMPARE(desk.row(2), u"2026/03/31|りんご|||||800|12,045"_s);
        QCOMPARE(desk.text("txtTanka"), u"617"_s);
        desk.the<QCheckBox>("Check1").click();
        QCOMPARE(desk.text("Text5"), u"12,345"_s);
        desk.turnTo({2026, 3, 1}, {2026, 4, 1});
        QCOMPARE(desk.text("Text3"), u"12,352"_s);
        desk.turnTo({2026, 4, 2}, {2026, 4, 1});
        QCOMPARE(desk.figures().trimmed(), QString());
        for (const char *button : {"cmdMasterUpdate", "Command2"}) {
            prompts::expectInform(
                u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s);
            desk.press(button);
        }
    }

    void nobodyAndNothing()
    {
        BillDesk desk;
        for (const char *button : {"cmdMasterUpdate", "Command2"}) {
            prompts::expectInform(noCustomer);
            desk.press(button);
        }
        prompts::expectInform(u"消費税が入力されていません。"_s);
        desk.press("Command4");
        desk.box("txtTanka").setText(u"5"_s);
        prompts::expectInform(noCustomer);
        desk.press("Command4");
        prompts::expectInform(u"検索する条件を入力してください。"_s);
        desk.press("Command1");
        prompts::expectInform(notFound);
        desk.find(7);
        prompts::expectInform(u"締め日を入力してください。"_s);
        desk.press("cmdBill");
        desk.box("txtTanka").clear();
        desk.find(0);
        QCOMPARE(desk.figures().trimmed(), QString());
        QCOMPARE(desk.message(), done);
        prompts::expectInform(done);
        desk.press("cmdMasterUpdate");
        writeSlip(desk.shop, 1, u"O 2026-02-28 7"_s);
        desk.press("cmdMasterUpdate");
        QCOMPARE(desk.text("Text5"), u"7"_s);
        prompts::expectInform(u"該当するデータがありません。"_s);
        desk.press("Command2");
    }

    void typedIds()
    {
        BillDesk desk;
        writeSlip(desk.shop, 1, u"O 2026-03-01 7"_s, 3);
        desk.driver().type("Text1", u"３"_s);
        desk.driver().leave("Text1");
        QTRY_COMPARE(desk.text("Text3"), u"7"_s);
        for (const QString &typed : {u"99"_s, u"abc"_s}) {
            prompts::expectInform(notFound);
            desk.driver().type("Text1", typed);
            desk.driver().leave("Text1");
            QTRY_COMPARE(desk.driver().cursor(), u"Text1"_s);
        }
        desk.driver().clear("Text1");
        desk.driver().leave("Text1");
        QTRY_COMPARE(desk.text("Text1"), u"3"_s);
        // Gone between two looks.
        desk.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 3"_s);
        prompts::expectInform(u"納品先ID 3 の納品先は登録されていないか、ほかのプログラムで削除されました。"
                              "納品先を選び直してください。"_s);
        desk.press("Command2");
        QCOMPARE(desk.figures().trimmed(), QString());
    }

    // As the clerk typed it, or as the customer has it who is on the screen.
    void allBillsAreThoseOfTheClosingDayInSight()
    {
        BillDesk desk;
        desk.shop.run(u"UPDATE 納品先 SET 締め日 = 20 WHERE 納品先ID = 2"_s);
        const auto opensAt = [&desk] {
            QString shown;
            desk.inNext(u"DialogBillIssue"_s, [&shown](QDialog &list) {
                shown = list.findChild<QComboBox *>(u"cmbClosing"_s)->currentText();
            });
            desk.press("cmdIssueAll");
            return shown;
        };
        QCOMPARE(opensAt(), u"末日"_s);
        desk.find(1);
        QCOMPARE(opensAt(), u"20 日"_s);
        desk.box("txtClosingDay").setText(u"31"_s);
        QCOMPARE(opensAt(), u"末日"_s);
        desk.find(2);
        desk.box("txtClosingDay").setText(u"２０"_s);
        QCOMPARE(opensAt(), u"20 日"_s);
    }

    void closingDays()
    {
        BillDesk desk;
        desk.shop.run(
            u"UPDATE 納品先 SET 締め日 = 20, 更新日 = '2026-01-0' || 納品先ID WHERE 納品先ID < 3"_s);
        const auto list = [&desk](const QString &day) {
            desk.box("txtClosingDay").setText(day);
            desk.press("cmdBill");
        };
        for (const QString &wrong : {u"45"_s, u"-1"_s, u"末"_s}) {
            prompts::expectInform(u"締め日は、１から３０までの日、または末日の０を入力してください。"_s);
            list(wrong);
        }
        prompts::expectInform(notFound);
        list(u"15"_s);
        list(u"２０"_s);
        QCOMPARE(desk.days(), u"2026/02/21 2026/03/20"_s);
        QCOMPARE(desk.text("Text1"), u"2"_s);
        desk.find(2); // the list waits
        QCOMPARE(desk.days(), u"2026/03/01 2026/03/31"_s);
        desk.press("cmdNext");
        QCOMPARE(desk.text("Text1"), u"1"_s);
        QCOMPARE(desk.days(), u"2026/02/21 2026/03/20"_s);
        QVERIFY(!desk.the("cmdNext").isEnabled());
        list(u"31"_s);
        QCOMPARE(desk.text("Text1"), u"3"_s);
        // Dates that were set by hand stay, until they are given back.
        desk.turnTo({2026, 1, 5}, {2026, 1, 9});
        list(u"20"_s);
        QCOMPARE(desk.days(), u"2026/01/05 2026/01/09"_s);
        desk.press("cmdPeriod");
        QCOMPARE(desk.days(), u"2026/02/21 2026/03/20"_s);
        // The wrong way round there is no bill to tell the closing day.
        desk.box("txtClosingDay").clear();
        desk.turnTo({2026, 12, 31}, {2026, 10, 1});
        prompts::expectInform({});
        desk.press("cmdMasterUpdate");
        desk.driver().key(Qt::Key_D, Qt::AltModifier);
        QTRY_COMPARE(desk.days(), u"2026/02/21 2026/03/20"_s);
        QVERIFY(!desk.the("cmdPeriod").isEnabled());
        desk.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 1"_s);
        prompts::expectInform({});
        desk.press("cmdNext");
        QCOMPARE(desk.text("txtNouhinsaki1"), QString());
    }

    void salesAloneAreBilledOnce()
    {
        BillDesk desk;
        for (int customer = 1; customer <= 3; ++customer) {
            writeSlip(desk.shop, customer, u"R 2026-02-10 3000"_s, customer);
            writeSlip(desk.shop, customer + 3, u"O 2026-03-01 3999"_s, customer);
        }
        desk.find(0);
        const auto billedAfterTicking = [&desk](const std::function<void()> &goOn) {
            desk.the<QCheckBox>("Check1").setChecked(true);
            goOn();
            return desk.text("Text5");
        };
        QCOMPARE(billedAfterTicking([&] { desk.press("cmdMasterUpdate"); }), u"3,999"_s); // the same one
        QCOMPARE(billedAfterTicking([&] { desk.find(1); }), u"999"_s);
        QCOMPARE(billedAfterTicking([&] {
                     desk.driver().type("Text1", u"3"_s);
                     desk.driver().leave("Text1");
                     QTRY_COMPARE(desk.text("txtNouhinsaki1"), u"aite2"_s);
                 }),
                 u"999"_s);
        desk.box("txtClosingDay").setText(u"0"_s);
        desk.press("cmdBill");
        QCOMPARE(billedAfterTicking([&] { desk.press("cmdNext"); }), u"999"_s);
    }

    void theSameIdReadsAnew()
    {
        BillDesk desk;
        writeSlip(desk.shop, 1, u"O 2026-03-01 12345"_s, 2);
        desk.find(1);
        desk.shop.run(u"UPDATE 納品先 SET 納品先名1 = '改名商店', 消費税区分 = 0 WHERE 納品先ID = 2"_s);
        desk.the("Text1").setFocus();
        desk.driver().leave("Text1"); // passed by
        QTest::qWait(50);
        QCOMPARE(desk.text("txtNouhinsaki1"), u"aite1"_s);
        desk.driver().type("Text1", u"2"_s);
        desk.driver().leave("Text1");
        QTRY_COMPARE(desk.text("txtNouhinsaki1"), u"改名商店"_s);
        QCOMPARE(desk.text("txtTanka"), QString());
        const QAbstractItemModel &found = *desk.the<QAbstractItemView>("DataGrid1").model();
        QVERIFY(!found.match(found.index(0, 1), Qt::DisplayRole, u"改名商店"_s).isEmpty());
        // Nobody has the ID 0.
        BillDesk empty;
        prompts::expectInform(notFound);
        empty.driver().type("Text1", u"0"_s);
        empty.driver().leave("Text1");
        QTRY_COMPARE(empty.driver().cursor(), u"Text1"_s);
    }

    void booking()
    {
        BillDesk desk;
        writeSlip(desk.shop, 1, u"O 2026-03-01 12345"_s, 2);
        desk.find(1);
        QCOMPARE(desk.driver().enabled({"Command4", "cmdMasterCancel"}), u"Command4"_s);
        QCOMPARE(desk.driver().cursor(), u"Command2"_s);
        desk.the("txtTanka").setFocus();
        desk.driver().leave("txtTanka"); // Enter takes the suggestion
        QCOMPARE(desk.headers().last(), u"O2|2026-03-31|2"_s);
        QCOMPARE(desk.lines().last(), u"2|消費税|-|-|-|-|617"_s);
        QCOMPARE(desk.figures(), u"0 12,962 0 12,962 12,345 617 0 "_s);
        QCOMPARE(desk.driver().enabled({"Command4", "cmdMasterCancel"}), u"cmdMasterCancel"_s);
        const QString which = u"伝票 O2　2026/03/31\n納品先「aite1」\n消費税 617 円"_s;
        prompts::expectAskCautiously(deleteQuestion, false, which);
        desk.driver().key(Qt::Key_C, Qt::AltModifier);
        prompts::expectAskCautiously(deleteQuestion, true, which);
        desk.driver().key(Qt::Key_C, Qt::AltModifier);
        QCOMPARE(desk.headers().size(), 1);
        QCOMPARE(desk.lines().size(), 1);
        desk.driver().key(Qt::Key_C, Qt::AltModifier); // nothing is left to be taken back
        QCOMPARE(desk.text("txtTanka"), u"617"_s);
        // Changed by another program, it stays.
        desk.press("Command4");
        desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 600 WHERE ID = 2"_s);
        prompts::expectAskCautiously(deleteQuestion, true, which);
        prompts::expectInform(
            u"伝票 O2 はほかのプログラムで変更または削除されたため、取り消しませんでした。"_s);
        desk.press("cmdMasterCancel");
        QCOMPARE(desk.lines().size(), 2);
    }

    void bookingSeveralRates()
    {
        BillDesk desk;
        desk.shop.workspace.panel.followsTaxTable = true;
        writeSlip(desk.shop, 1, u"O 2026-03-01 109 8*:224"_s, 2);
        desk.find(1);
        QCOMPARE(desk.text("txtTanka"), u"27"_s);
        desk.press("Command4");
        const auto taxes = [&desk] {
            return desk.shop.rows(u"SELECT 規格, 金額, 税区分, 税率 FROM 入出庫サブ WHERE ID = 2"_s);
        };
        QCOMPARE(taxes(), (QStringList{u"10%|10|0|10"_s, u"軽減8%|17|1|8"_s}));
        prompts::expectAskCautiously(deleteQuestion, true,
                                     u"伝票 O2　2026/03/31\n納品先「aite1」\n消費税 27 円"_s);
        desk.press("cmdMasterCancel");
        QCOMPARE(desk.headers().size(), 1);
        // Another amount belongs to no rate.
        desk.box("txtTanka").setText(u"26"_s);
        prompts::expectAskCautiously(u"税率ごとの消費税（10% 10 円、軽減8% 17 円）の合計と違うため、"
                                     "税率に分けずに入力します。よろしいですか。"_s,
                                     true);
        desk.press("Command4");
        QCOMPARE(taxes(), QStringList{u"-|26|-|-"_s});
    }

    void doubtfulBookings()
    {
        BillDesk desk;
        desk.shop.workspace.panel.automaticNumbers = false;
        writeSlip(desk.shop, 1, u"O 2026-03-01 1000"_s, 2);
        writeSlip(desk.shop, 2, u"O 2026-03-02 消費税=30"_s, 2);
        writeSlip(desk.shop, 3, u"O 2026-03-01 1000"_s, 3);
        desk.find(1);
        desk.driver().type("txtDenNo", u"1"_s);
        prompts::expectInform(u"伝票番号が重複しています。"_s);
        desk.driver().leave("txtDenNo");
        desk.driver().type("txtDenNo", u"-tax"_s);
        desk.box("txtTanka").setText(u"20"_s);
        prompts::expectAskCautiously(u"この期間の消費税はすでに計上されています。さらに入力しますか。"_s,
                                     false);
        desk.press("Command4");
        desk.the<QDateEdit>("DTPicker3").setDate({2026, 4, 1});
        prompts::expectAskCautiously(u"日付が期間の外にあります。この日付で入力しますか。"_s, false);
        desk.press("Command4");
        QCOMPARE(desk.headers().size(), 3);
        prompts::expectAskCautiously(u"入力途中の消費税は、まだ保存されていません。閉じますか。"_s, false);
        desk.screen().close();
        QVERIFY(desk.screen().isVisible());
        desk.find(2);
        desk.driver().type("txtDenNo", u"O-tax"_s);
        desk.box("txtTanka").setText(u"20"_s);
        prompts::expectAskCautiously(
            u"この納品先の消費税は「内税」で、請求時には計算しません。消費税の伝票を入力しますか。"_s, true);
        desk.press("Command4");
        QCOMPARE(desk.headers().last(), u"O-tax|2026-03-31|3"_s);
    }

    void printing()
    {
        BillDesk desk;
        writeSlip(desk.shop, 1, u"O 2026-03-01 12345"_s, 2);
        desk.find(1);
        const QString due = u"消費税 617 円がまだ計上されていません。"_s;
        prompts::expectAskWhichWay(due, QString());
        desk.press("Command2"); // no preview comes
        prompts::expectAskWhichWay(due, u"このまま印刷"_s);
        desk.printAndLeave();
        QCOMPARE(desk.headers().size(), 1);
        prompts::expectAskWhichWay(due, u"計上して印刷"_s);
        prompts::expectInform(done);
        QVERIFY(desk.printToFile());
        QCOMPARE(desk.opened.size(), 2);
        QCOMPARE(desk.text("Text5"), u"12,962"_s);
        QCOMPARE(desk.headers().last(), u"O2|2026-03-31|2"_s);

        // What was not seen is not printed.
        desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 12340 WHERE ID = 1"_s);
        prompts::expectInform(u"表示した後に伝票か納品先が変更されたため、計算し直しました。\n"
                              "請求額を確かめてから、もう一度印刷してください。"_s);
        desk.press("Command2");
        QCOMPARE(desk.text("Text5"), u"12,957"_s);
        desk.printAndLeave();
        QCOMPARE(desk.opened.size(), 3);
        // The transfer form follows a bill that came out, with what it says is to be paid.
        desk.the<QCheckBox>("Check2").click();
        desk.printAndLeave();
        QString amount;
        desk.inNext(u"DialogOderEX"_s,
                    [&amount](QDialog &form) { amount = form.findChild<QLineEdit *>(u"Text5"_s)->text(); });
        prompts::expectInform(done);
        QVERIFY(desk.printToFile());
        QCOMPARE(amount, u"12,957"_s);
        desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = '百' WHERE ID = 1"_s);
        prompts::expectInform(
            u"金額が数字でない伝票があるため、請求書を印刷できません。伝票を訂正してください。"_s);
        desk.press("Command2");
        // Tax that a late slip has made wrong does not go out by itself.
        desk.the<QCheckBox>("Check2").setChecked(false);
        desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 20000 WHERE ID = 1"_s);
        desk.press("cmdMasterUpdate");
        const std::size_t before = desk.opened.size();
        prompts::expectAskCautiously(
            u"計上した消費税 617 円が、期間の売上から計算した消費税 1,000 円と違います。"
            "消費税の伝票を訂正してください。\nこのまま印刷しますか。"_s,
            false, prompts::anyRemark);
        desk.press("Command2");
        QCOMPARE(desk.opened.size(), before);
    }

    void accidents()
    {
        BillDesk desk;
        desk.shop.workspace.panel.transferFormAfterBill = true;
        writeSlip(desk.shop, 1, u"O 2026-03-01 12345"_s, 2);
        writeSlip(desk.shop, 2, u"O 2026-03-01 7"_s, 3);
        desk.find(1);
        QVERIFY(desk.the<QCheckBox>("Check2").isChecked());
        // The wheel over the dates, Enter in the list, in the statement and in a date.
        turnWheelOver(desk.the("DTPicker1"));
        QCOMPARE(desk.days(), u"2026/03/01 2026/03/31"_s);
        for (const char *name : {"DataGrid1", "DTPicker2", "Text1"}) {
            desk.the(name).setFocus();
            desk.driver().key(Qt::Key_Return);
        }
        QCOMPARE(desk.figures(), u"0 12,345 0 12,345 12,345 0 0 617"_s);
        QCOMPARE(desk.headers().size(), 2);
        // A tax that was typed goes with its customer, and a second Esc closes nothing unasked.
        desk.box("txtTanka").setText(u"600"_s);
        desk.find(2);
        QCOMPARE(desk.text("txtTanka"), QString());
        desk.box("txtTanka").setText(u"5"_s);
        prompts::expectAskCautiously(u"入力途中の消費税は、まだ保存されていません。閉じますか。"_s, false);
        desk.driver().key(Qt::Key_Escape);
        QVERIFY(desk.screen().isVisible());
        QCOMPARE(desk.lines().size(), 2);
        desk.box("txtTanka").clear();
    }
};

QTEST_MAIN(TestFrmOutBill)
#include "tst_frmoutbill.moc"
