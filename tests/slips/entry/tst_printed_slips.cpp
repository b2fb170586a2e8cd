// Paper and book must not differ without a word.
#include "slips/documents/DialogMitsumori.h"
#include "slips/entry/frmMitsumori.h"
#include "slips/entry/frmOut.h"
#include "slips/slip_desk.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QTimer>
#include <QtTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace slips;

namespace
{

// Saves the paper that is shown next as a file.
void saveNextPaper(const QString &file)
{
    QTimer::singleShot(0, qApp, [file] {
        QWidget *shown = QApplication::activeModalWidget();
        if (qobject_cast<DialogMitsumori *>(shown)) {
            saveNextPaper(file);
            ScreenDriver(shown).press("Command2");
        } else {
            ui::file_dialogs::expectFile(file);
            ScreenDriver(shown).press("cmdPdf");
        }
        shown->close();
    });
}

template <class Screen>
struct Desk : SlipDesk<Screen>
{
    Desk()
    {
        this->open(0);
        this->goods(u"1"_s, u"1000"_s);
        this->goods(u"2"_s, u"500"_s);
    }

    QString file(int number) { return this->shop.path(u"paper%1.pdf"_s.arg(number)); }
    void print(int number)
    {
        saveNextPaper(file(number));
        this->press("Command3");
    }
};

template <class Screen>
void workOn(const std::function<void(SlipDesk<Screen> &)> &change, const QString &letter)
{
    const bool isChanged = bool(change);
    for (const bool again : {true, false}) {
        Desk<Screen> desk;
        desk.print(1);
        if (isChanged) {
            change(desk);
            ui::prompts::expectAsk(
                u"伝票 %1 は、印刷した後で変わりました。もう一度印刷しますか。"_s.arg(letter + u'1'), again);
        }
        if (isChanged && again)
            saveNextPaper(desk.file(2));
        desk.press("cmdNext");
        QCOMPARE(QFileInfo::exists(desk.file(1)), true);
        QCOMPARE(QFileInfo::exists(desk.file(2)), isChanged && again);
        QVERIFY(desk.the("Frame2").isEnabled()); // closed, in either case
        desk.open(0);
        desk.goods(u"3"_s, u"7"_s);
        desk.press("cmdNext"); // the next one has no paper
    }
}

} // namespace

class TestPrintedSlips : public ScriptedTest
{
    Q_OBJECT

private slots:
    void aChangeAfterPrintingOffersAnotherPaper_data()
    {
        QTest::addColumn<QString>("change");
        for (const char *change : {"none", "a line more", "a line taken out", "the remark", "made inclusive",
                                   "the rate", "another program"})
            QTest::newRow(change) << QString::fromLatin1(change);
    }

    void aChangeAfterPrintingOffersAnotherPaper()
    {
        QFETCH(QString, change);
        const auto changed = [&change](auto &desk) {
            if (change == "a line more"_L1)
                desk.goods(u"1"_s, u"1"_s);
            else if (change == "a line taken out"_L1)
                desk.press("cmdSubCancel");
            else if (change == "the remark"_L1)
                desk.driver().type("txtMemo", u"着払い"_s);
            else if (change == "made inclusive"_L1)
                desk.press("Check1");
            else if (change == "the rate"_L1)
                desk.shop.workspace.panel.taxRate = 8;
            else
                desk.shop.run(u"UPDATE 入出庫サブ SET 数量 = 9 WHERE 数量 = 2"_s);
        };
        const bool none = change == "none"_L1;
        workOn<frmOut>(none ? nullptr : std::function<void(SlipDesk<frmOut> &)>(changed), u"O"_s);
        workOn<frmMitsumori>(none ? nullptr : std::function<void(SlipDesk<frmMitsumori> &)>(changed), u"M"_s);
    }

    // The second paper of the slip names the first one, and says what the slip says now.
    void everyPaperIsKept()
    {
        Desk<frmOut> desk;
        desk.shop.workspace.panel.employeeName = u"木村"_s;
        desk.print(1);
        desk.goods(u"1"_s, u"1000"_s);
        ui::prompts::expectAsk({}, true);
        saveNextPaper(desk.file(2));
        desk.press("cmdNext");
        QCOMPARE(
            desk.shop.rows(
                u"SELECT 発行ID, 種類, 番号, 日付, 伝票種別, 相手先ID, 相手先名, 税込金額, 社員名, 訂正元 "
                "FROM 発行控 ORDER BY 発行ID"_s),
            (QStringList{u"1|納品書|O1|2026-04-01|O|1|aite0|2100|木村|-"_s,
                         u"2|納品書|O1|2026-04-01|O|1|aite0|3150|木村|1"_s}));
        for (int number : {1, 2}) {
            const QString hash =
                desk.shop.value(u"SELECT ハッシュ FROM 発行控 WHERE 発行ID = ?"_s, {number}).toString();
            QFile kept(desk.shop.path(u"shop.発行控/2026/%1.pdf"_s.arg(hash)));
            QFile saved(desk.file(number));
            QVERIFY(kept.open(QIODevice::ReadOnly) && saved.open(QIODevice::ReadOnly));
            QVERIFY(kept.readAll() == saved.readAll());
        }
    }

    void estimatesAreKeptWithTheNameOnThem()
    {
        Desk<frmMitsumori> desk;
        QTimer::singleShot(0, qApp, [&] {
            QWidget *dialog = QApplication::activeModalWidget();
            ScreenDriver(dialog).type("txtNouhinsaki1", u"山田様方"_s);
            saveNextPaper(desk.file(1));
            ScreenDriver(dialog).press("Command2");
            dialog->close();
        });
        desk.press("Command3");
        QCOMPARE(desk.shop.rows(u"SELECT 種類, 番号, 伝票種別, 相手先ID, 相手先名, 税込金額 FROM 発行控"_s),
                 QStringList{u"見積書|M1|M|1|山田様方|2100"_s});
    }

    // A look at the preview makes no paper.
    void whatWasOnlyLookedAtIsNotAskedAbout()
    {
        Desk<frmOut> desk;
        QTimer::singleShot(0, qApp, [] { QApplication::activeModalWidget()->close(); });
        desk.press("Command3");
        desk.goods(u"1"_s, u"1"_s);
        desk.press("cmdNext");
    }

    void aSlipLeftOpenOrDeletedHasItsPaperOut()
    {
        Desk<frmOut> desk;
        desk.print(1);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false,
                                         u"この伝票は印刷されています。印刷した紙は使わないでください。"_s);
        desk.press("cmdMasterCancel");
        desk.goods(u"1"_s, u"1"_s);
        ui::prompts::expectAskHowToLeave({}, ui::prompts::Choice::Discard, ui::prompts::Choice::Save);
        ui::prompts::expectAsk({}, false);
        desk.screen().close();
        QVERIFY(!desk.screen().isVisible());
    }
};

QTEST_MAIN(TestPrintedSlips)
#include "tst_printed_slips.moc"
