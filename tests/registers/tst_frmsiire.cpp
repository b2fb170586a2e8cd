#include "registers/frmSiire.h"
#include "registers/last_counterparts.h"
#include "registers/postal/postal_index.h"
#include "registers/register_desk.h"
#include "support/postal_files.h"
#include "support/scripted_test.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

const QString entryOpen = u"入力中の仕入先が登録されていません。登録しますか？"_s;

// The register of a shop with the suppliers 2 and 5.
struct Register : RegisterDesk<registers::frmSiire>
{
    explicit Register(const std::function<void(Register &)> &before = {}, bool withSuppliers = true)
        : RegisterDesk(u"仕入先"_s)
    {
        if (withSuppliers)
            shop.run(u"INSERT INTO 仕入先 (仕入先ID, コード, 仕入先名1, 仕入先名キー, 消費税区分) VALUES "
                     "(5, 'S5', '大阪問屋', '大阪問屋 S5 ', 2), (2, 'S2', '浪速市場', '浪速市場 S2 ', 1)"_s);
        if (before)
            before(*this);
        show();
    }

    QString enabled()
    {
        return ScreenDriver::enabled({"DataGrid1", "panel", "cmdAdd", "cmdUpdate", "cmdCancel", "cmdDelete"});
    }
};

const QString browsing = u"DataGrid1 panel cmdAdd cmdUpdate cmdDelete"_s;
const QString entry = u"panel cmdUpdate cmdCancel"_s;
const QString withoutRows = u"DataGrid1 cmdAdd"_s;

} // namespace

class TestFrmSiire : public ScriptedTest
{
    Q_OBJECT

private slots:
    // Unlike a customer's, a supplier's code is looked up by the button alone.
    void whoWasSavedIsRemembered()
    {
        Register r;
        r.press("cmdAdd");
        r.type("txtName1", u"山本問屋"_s);
        r.press("cmdUpdate");
        QCOMPARE(registers::lastCounterparts(r.shop.workspace).supplier,
                 r.shop.value(u"SELECT 仕入先ID FROM 仕入先 WHERE 仕入先名1 = '山本問屋'"_s).toLongLong());
    }

    void theButtonBringsThePostalCode()
    {
        Register r([](Register &opened) {
            PostalFiles::writeAreas(
                opened.shop.folder.path(),
                {{u"長野県長野市"_s, u"長野市"_s, {{"3800823", u"長野県長野市南千歳"_s}}}});
            opened.shop.workspace.keep(registers::PostalIndex({{u"長野県長野市"_s, u"長野市"_s, 1}}));
        });
        r.type("txtAddress1", u"長野県長野市南千歳1"_s);
        r.leave("txtAddress1");
        QTest::qWait(20);
        QCOMPARE(r.box("txtZip").text(), QString());
        r.press("Command3");
        QCOMPARE(r.box("txtZip").text(), u"380-0823"_s);
    }

    void showsTheTableInItsOwnOrder()
    {
        Register r;
        QCOMPARE(r.screen.windowTitle(), u"仕入先登録"_s);
        QCOMPARE(r.listed(), u"2 5"_s);
        QCOMPARE(r.enabled(), browsing);
        QCOMPARE(r.box("txtName1").text(), u"浪速市場"_s);
        QCOMPARE(r.list("Combo1").currentText(), u"外税 （請求時）"_s);
        r.goTo(1);
        QCOMPARE(r.list("Combo1").currentText(), u"内税"_s);
    }

    void theFirstSupplierOfAll()
    {
        Register r({}, false);
        QCOMPARE(r.enabled(), withoutRows);
        r.press("cmdAdd");
        QCOMPARE(r.enabled(), entry);
        QCOMPARE(r.cursor(), u"txtName1"_s);
        QCOMPARE(r.stored(u"仕入先ID, 消費税区分, 仕入先名キー"_s, 1), u"1|0|-"_s);
        r.press("cmdUpdate");
        QCOMPARE(r.stored(u"仕入先名キー"_s, 1), u"  "_s);
        QCOMPARE(r.enabled(), browsing);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true,
                                         u"削除する仕入先： 1　（名前なし）"_s);
        r.press("cmdDelete");
        QCOMPARE(r.enabled(), withoutRows);
        QCOMPARE(r.box("txtID").text(), QString());
    }

    void aNewSupplierFromTheFirstKeyToTheLast()
    {
        Register r;
        r.press("cmdAdd");
        QCOMPARE(r.listed(), u"2 5 6"_s);
        const std::pair<const char *, QString> typed[] = {
            {"txtCode", u"S6"_s},         {"txtName1", u"京都　茶舗"_s}, {"txtName2", u"本店"_s},
            {"txtTantou1", u"木村"_s},    {"txtTantou2", u"林"_s},       {"txtZip", u"600-8001"_s},
            {"txtAddress1", u"京都市"_s}, {"txtAddress2", u"四条"_s},    {"txtTel1", u"075-1"_s},
            {"txtFax", u"075-2"_s},       {"txtTel2", u"090-3"_s},       {"txtMail", u"a@example.jp"_s},
            {"txtPay1", u"月末振込"_s},   {"txtPay2", u"四条銀行"_s},
        };
        for (const auto &[box, text] : typed)
            r.type(box, text);
        r.choose("Combo1", 2);
        r.press("cmdUpdate");
        QCOMPARE(
            r.stored(u"仕入先ID, コード, 仕入先名1, 仕入先名2, 仕入先名キー, 郵便番号, 住所1, 住所2, TEL1, "
                     "TEL2, FAX, メール, 担当者1, 担当者2, 支払方法, 振込先, 消費税区分"_s,
                     6),
            u"6|S6|京都　茶舗|本店|京都茶舗本店 S6 075-1|600-8001|京都市|四条|075-1|090-3|075-2|"
            "a@example.jp|木村|林|月末振込|四条銀行|2"_s);
        QCOMPARE(r.box("txtName4").text(), u"京都茶舗本店 S6 075-1"_s);
        QVERIFY(r.the<QPushButton>("cmdAdd").hasFocus());
        QCOMPARE(r.screen.savedSupplier(), std::optional<qint64>(6));
    }

    void givingUpDeletesTheNewRow()
    {
        Register r;
        r.press("cmdAdd");
        r.type("txtName1", u"京都茶舗"_s);
        r.press("cmdCancel");
        QCOMPARE(r.enabled(), browsing);
        QCOMPARE(r.listed(), u"2 5"_s);
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 仕入先"_s).toInt(), 2);
    }

    void opensForAnotherScreen()
    {
        Register one([](Register &opened) { opened.screen.openSupplier(5); });
        QCOMPARE(one.listed(), u"5"_s);
        QCOMPARE(one.box("txtName1").text(), u"大阪問屋"_s);
        Register fresh([](Register &opened) { opened.screen.startNew(); });
        QTRY_COMPARE(fresh.enabled(), entry);
        QCOMPARE(fresh.box("txtID").text(), u"6"_s);
    }

    // In the customers' words, and of the supplier's own code.
    void warnsOfCodes()
    {
        Register r;
        ui::prompts::expectInform(u"納品先コードが重複しています。"_s);
        r.box("txtCode").setFocus();
        r.leave("txtCode");
        r.type("txtCode", u"Z9"_s);
        r.leave("txtCode");
        r.press("cmdUpdate");
        QCOMPARE(r.stored(u"コード, 仕入先名キー"_s, 2), u"Z9|浪速市場 Z9 "_s);
    }

    void refusesWideTexts_data()
    {
        QTest::addColumn<QByteArray>("box");
        for (const char *box : {"txtName1", "txtName2", "txtAddress1", "txtAddress2"})
            QTest::newRow(box) << QByteArray(box);
    }

    void refusesWideTexts()
    {
        QFETCH(QByteArray, box);
        const QString tooWide(23, u'山');
        Register r;
        r.type(box.constData(), tooWide);
        ui::prompts::expectInform(ui::messages::widthLimit());
        r.leave(box.constData());
        QVERIFY(r.box(box.constData()).hasFocus());
        QCOMPARE(r.box(box.constData()).text(), tooWide);
        ui::prompts::expectInform(ui::messages::widthLimit());
        r.goTo(1);
        QCOMPARE(r.box("txtID").text(), u"2"_s);
        ui::prompts::expectAskToSave(u"変更が保存されていません。保存しますか？"_s,
                                     ui::prompts::Choice::Discard);
        r.screen.reject();
        QVERIFY(!r.stored(u"*"_s, 2).contains(tooWide));
    }

    void leavingSavesWhatWasTyped()
    {
        Register r;
        r.type("txtTel1", u"06-1"_s);
        r.goTo(1);
        QCOMPARE(r.stored(u"TEL1, 仕入先名キー"_s, 2), u"06-1|浪速市場 S2 06-1"_s);
        r.type("txtPay2", u"浪速銀行"_s);
        r.press("cmdAdd");
        QCOMPARE(r.stored(u"振込先"_s, 5), u"浪速銀行"_s);
        r.type("txtName1", u"京都茶舗"_s);
        ui::prompts::expectAskToSave(entryOpen, ui::prompts::Choice::Save);
        r.screen.reject();
        QCOMPARE(r.stored(u"仕入先名1, 仕入先名キー"_s, 6), u"京都茶舗|京都茶舗  "_s);
    }

    void whatWasTypedCanBeTakenBack()
    {
        Register r;
        const QString before = r.stored(u"*"_s, 2);
        r.type("txtTel1", u"06-1"_s);
        r.choose("Combo1", 2);
        r.press("cmdUndo");
        QCOMPARE(r.box("txtTel1").text(), QString());
        QCOMPARE(r.list("Combo1").currentText(), u"外税 （請求時）"_s);
        r.goTo(1);
        QCOMPARE(r.stored(u"*"_s, 2), before);
    }

    void tabGoesInReadingOrder()
    {
        Register r([](Register &opened) { opened.shop.run(u"UPDATE 仕入先 SET コード = NULL"_s); });
        r.grid().setFocus();
        QStringList order;
        do {
            order << r.cursor();
            QTest::keyClick(r.screen.focusWidget(), Qt::Key_Tab);
        } while (r.cursor() != u"DataGrid1"_s && order.size() < 50);
        QCOMPARE(order.join(u' '),
                 u"DataGrid1 txtCode txtName1 txtName2 txtTantou1 txtTantou2 txtZip txtAddress1 txtAddress2 "
                 "txtTel1 txtFax txtTel2 txtMail txtPay1 txtPay2 Combo1 txtRegistration Combo2 "
                 "txtRegisteredFrom txtRegisteredTo cmdAdd cmdUpdate cmdDelete"_s);
    }
};

QTEST_MAIN(TestFrmSiire)
#include "tst_frmsiire.moc"
