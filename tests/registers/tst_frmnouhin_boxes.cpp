#include "registers/customer_desk.h"
#include "registers/last_counterparts.h"
#include "registers/postal/postal_index.h"
#include "support/postal_files.h"
#include "support/scripted_test.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString editsOpen = u"変更が保存されていません。保存しますか？"_s;

using Register = CustomerDesk;

// Two customers of one city, the second without a code, and a town whose other code an office has.
void fillMiyako(Register &r)
{
    const QString city = u"沖縄県宮古島市"_s;
    PostalFiles::writeAreas(
        r.shop.folder.path(),
        {{city,
          u"宮古島市"_s,
          {{"9060000", city}, {"9060012", city + u"平良西里"_s}, {"9060013", city + u"平良下里"_s}}},
         {u"栃木県那須郡那珂川町"_s, u"那珂川町"_s, {{"3240600", u"那珂川町 栃木県那須郡"_s}}}});
    PostalFiles::writeEntries(r.shop.folder.path(), u"ZipCode1.txt"_s,
                              {u"906-0000  "_s + city, u"906-0012  "_s + city + u"平良西里"_s,
                               u"906-0013  "_s + city + u"平良下里"_s, u"324-0600  栃木県那須郡那珂川町"_s});
    r.shop.workspace.keep(
        registers::PostalIndex({{city, u"宮古島市"_s, 1}, {u"栃木県那須郡那珂川町"_s, u"那珂川町"_s, 4}}));
    r.shop.run(u"UPDATE 納品先 SET 住所1 = '沖縄県宮古島市平良下里９'"_s);
}

void expectMove()
{
    ui::prompts::expectAskCautiously(
        u"郵便番号は「906-0013」ですが、この住所１の郵便番号は「906-0012」のようです。\n"
        "「906-0012」に変更しますか。"_s,
        true);
}

} // namespace

// What leaving a box of the register brings into form, fills in, refuses or asks about.
class TestFrmNouhinBoxes : public ScriptedTest
{
    Q_OBJECT

private slots:
    void refusesWideTexts_data()
    {
        QTest::addColumn<QString>("limit");
        for (const char *box : {"txtName", "txtName2", "txtAddress", "txtAddress2"})
            QTest::newRow(box) << ui::messages::widthLimit();
        QTest::newRow("txtMemo") << ui::messages::memoLimit();
    }

    void refusesWideTexts()
    {
        QFETCH(QString, limit);
        const char *box = QTest::currentDataTag();
        const int most = limit == ui::messages::memoLimit() ? 50 : 22;
        Register r;
        r.type(box, QString(most, u'山'));
        r.leave(box);
        QVERIFY(!r.box(box).hasFocus());
        r.press("cmdNewDate");

        const QString tooWide(most + 1, u'山');
        r.type(box, tooWide);
        ui::prompts::expectInform(limit);
        r.leave(box);
        QVERIFY(r.box(box).hasFocus());
        QCOMPARE(r.box(box).text(), tooWide);
        // It is not kept when the screen closes either.
        ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Discard);
        r.screen.reject();
        QVERIFY(!r.screen.isVisible());
        QVERIFY(!r.stored(u"*"_s, 3).contains(tooWide));
    }

    void fillsTheReading()
    {
        Register r;
        r.press("cmdAdd");
        for (const QString &composition : {u"や"_s, u"やまだ"_s, u"山田"_s})
            r.compose("txtName", composition);
        r.compose("txtName", {}, u"山田"_s);
        r.compose("txtName", u"きゃっちー"_s);
        r.compose("txtName", {}, u"キャッチー"_s);
        QCOMPARE(r.box("txtFurigana").text(), u"ﾔﾏﾀﾞｷｬｯﾁｰ"_s);
        r.leave("txtName");
        QCOMPARE(r.box("txtFurigana").text(), u"ﾔﾏﾀﾞｷﾔﾂﾁ-"_s);
        r.type("txtFurigana", u"ショップ"_s);
        r.leave("txtFurigana");
        QCOMPARE(r.box("txtFurigana").text(), u"ｼﾖﾂﾌﾟ"_s);
        r.clear("txtName");
        QCOMPARE(r.box("txtFurigana").text(), QString());
    }

    void takesBirthdaysInAnyForm_data()
    {
        QTest::addColumn<QString>("shown"); // empty: refused
        QTest::addColumn<QString>("kept");
        const auto row = [](const char *typed, const QString &shown, const QString &kept) {
            QTest::newRow(typed) << shown << kept;
        };
        for (const char *typed : {"1980/2/3", "S55.2.3", "昭和55年2月3日", "１９８００２０３", "1980-02-03"})
            row(typed, u"1980/02/03"_s, u"1980-02-03"_s);
        for (const char *typed : {"昭和30年", "2月3日ごろ", "55/2/3"})
            row(typed, QString::fromUtf8(typed), QString::fromUtf8(typed));
        for (const char *typed : {"1980-02-30", "19801301", "S65.1.1", "1980年2月30日"})
            row(typed, {}, u"1970/1/1"_s);
    }

    void takesBirthdaysInAnyForm()
    {
        QFETCH(QString, shown);
        QFETCH(QString, kept);
        Register r(Register::Customers, [](Register &shop) {
            shop.shop.run(u"UPDATE 納品先 SET 誕生日 = '1970/1/1', 敬称 = '御中'"_s);
        });
        const QString typed = QString::fromUtf8(QTest::currentDataTag());
        r.type("txtBarth", typed);
        r.leave("txtBarth");
        QCOMPARE(r.box("txtBarth").text(), shown.isEmpty() ? typed : shown);
        if (shown.isEmpty())
            ui::prompts::expectInform(
                u"誕生日「%1」は暦にない日付です。\n"
                "1980/2/3、S55.2.3、昭和55年2月3日のように入力してください。"_s.arg(typed));
        r.press("cmdNewDate");
        QCOMPARE(r.stored(u"誕生日"_s, 3), kept);
        if (shown.isEmpty()) {
            QCOMPARE(r.cursor(), u"txtBarth"_s);
            ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Discard);
            r.screen.reject();
        }
        // The other days are shown alike.
        QCOMPARE(r.box("txtDate2").text(), shown.isEmpty() ? u"2026/02/01"_s : u"2026/04/01"_s);
    }

    void bringsIntoFormOnLeaving()
    {
        Register r;
        for (const char *box : {"txtTel", "txtFax", "txtKeitai"}) {
            r.type(box, u"１２３４５６７８９０１２３４５６"_s);
            r.leave(box);
            QCOMPARE(r.box(box).text(), u"123456789012345"_s);
        }
        r.type("txtMail", u"mailto:ｔａｒｏ@example.jp"_s);
        r.leave("txtMail");
        QCOMPARE(r.box("txtMail").text(), u"taro@example.jp"_s);
        r.press("cmdNewDate");
        QCOMPARE(r.stored(u"TEL1, FAX, TEL2, メール"_s, 3),
                 u"123456789012345|123456789012345|123456789012345|taro@example.jp"_s);
        // Saved by its key while the cursor is still in the box.
        r.type("txtKeitai", u"０６"_s);
        QTest::keyClick(&r.box("txtKeitai"), Qt::Key_U, Qt::AltModifier);
        QTRY_COMPARE(r.stored(u"TEL2"_s, 3), u"06"_s);
        QCOMPARE(r.box("txtKeitai").text(), u"06"_s);
    }

    void theAddressBringsItsPostalCode()
    {
        Register r(Register::Customers, [](Register &opened) {
            PostalFiles::writeAreas(
                opened.shop.folder.path(),
                {{u"長野県長野市"_s, u"長野市"_s, {{"3800823", u"長野県長野市南千歳"_s}}}});
            opened.shop.workspace.keep(registers::PostalIndex({{u"長野県長野市"_s, u"長野市"_s, 1}}));
        });
        r.type("txtAddress", u"長野県長野市南千歳1"_s);
        r.leave("txtAddress");
        QTRY_COMPARE(r.box("txtZip").text(), u"380-0823"_s);
        r.press("cmdNewDate");
        QCOMPARE(r.stored(u"郵便番号"_s, 3), u"380-0823"_s);
        r.clear("txtZip");
        QTest::keyClick(&r.box("txtZip"), Qt::Key_Z, Qt::AltModifier);
        QTRY_COMPARE(r.box("txtZip").text(), u"380-0823"_s);
    }

    void aWideAddressGoesOnInItsSecondLine()
    {
        const QString city = u"京都府京都市上京区"_s;
        const QString town = u"今出川通寺町西入２丁目東入真如堂前町"_s;
        Register r(Register::Customers, [&](Register &opened) {
            PostalFiles::writeEntries(opened.shop.folder.path(), u"ZipCode1.txt"_s,
                                      {u"602-0802  "_s + city + town});
            opened.shop.workspace.keep(registers::PostalIndex({{city, u"京都市上京区"_s, 1}}));
        });
        r.type("txtAddress2", u"　御所ビル２Ｆ"_s);
        r.type("txtZip", u"６０２０８０２"_s);
        r.leave("txtZip");
        QTRY_COMPARE(r.box("txtAddress").text(), city);
        QCOMPARE(r.box("txtAddress2").text(), town + u"　御所ビル２Ｆ"_s);
        QCOMPARE(r.cursor(), u"txtAddress2"_s);
        QCOMPARE(r.box("txtAddress2").cursorPosition(), town.size());
        r.clear("txtAddress2");
        r.clear("txtAddress");
        r.type("txtZip", u"602-0802"_s); // and with the key of the button that saves
        QTest::keyClick(&r.box("txtZip"), Qt::Key_U, Qt::AltModifier);
        QTRY_COMPARE(r.stored(u"郵便番号, 住所1, 住所2"_s, 3), u"602-0802|"_s + city + u'|' + town);
    }

    void aCodeThatStandsIsNotReplacedUnasked_data()
    {
        QTest::addColumn<QString>("standing");
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("offered"); // empty: no question
        const auto row = [](const char *name, const QString &standing, const QString &address,
                            const QString &offered = {}) {
            QTest::newRow(name) << standing << address << offered;
        };
        row("the city's general code", u"906-0012"_s, u"沖縄県宮古島市平良字西里１８６"_s);
        row("over an office's own", u"906-8501"_s, u"沖縄県宮古島市城辺字福里600-1"_s);
        row("a town behind 字", u"906-8501"_s, u"沖縄県宮古島市平良字西里1140"_s, u"906-0012"_s);
        row("over another city's", u"324-0600"_s, u"沖縄県宮古島市荷川取1"_s, u"906-0000"_s);
        row("another town's", u"９０６００１２"_s, u"沖縄県宮古島市平良下里３-1"_s, u"906-0013"_s);
        row("an office's own", u"906-8501"_s, u"沖縄県宮古島市平良下里1140"_s, u"906-0013"_s);
        row("half a code", u"906-"_s, u"沖縄県宮古島市平良下里1"_s, u"906-0013"_s);
        row("in another prefecture", u"811-1242"_s, u"福岡県筑紫郡那珂川町西隈２丁目"_s);
    }

    void aCodeThatStandsIsNotReplacedUnasked()
    {
        QFETCH(QString, standing);
        QFETCH(QString, address);
        QFETCH(QString, offered);
        for (const bool yes : {false, true}) {
            Register r(Register::Customers, fillMiyako);
            r.type("txtZip", standing);
            r.leave("txtZip");
            r.type("txtAddress", address);
            if (!offered.isEmpty())
                ui::prompts::expectAskCautiously(
                    u"郵便番号は「%1」ですが、この住所１の郵便番号は「%2」のようです。\n「%2」に変更しますか。"_s
                        .arg(standing, offered),
                    yes);
            r.leave("txtAddress");
            QTest::qWait(10);
            QCOMPARE(r.box("txtZip").text(), yes && !offered.isEmpty() ? offered : standing);
            // Asked once: going through the box again is no edit.
            r.box("txtAddress").setFocus();
            r.leave("txtAddress");
            r.press("cmdNewDate");
        }
    }

    void theCodeGoesToTheRowThatWasLeft()
    {
        Register r(Register::Customers, fillMiyako);
        r.box("txtAddress").setFocus();
        clickRow(r, 1);
        QTest::qWait(60);
        QCOMPARE(r.stored(u"郵便番号, 更新日"_s, 3), u"906-0013|2026-04-01"_s);
        QCOMPARE(r.stored(u"郵便番号, 更新日"_s, 1), u"-|2026-02-01"_s);
        QCOMPARE(r.box("txtZip").text(), QString());

        // Typed, and left by a click on another row, by a button and by its key.
        r.type("txtZip", u"906-0013"_s);
        r.type("txtAddress", u"沖縄県宮古島市平良西里5"_s);
        expectMove();
        clickRow(r, 2);
        QTest::qWait(60);
        QCOMPARE(r.stored(u"郵便番号, 住所1"_s, 1), u"906-0012|沖縄県宮古島市平良西里5"_s);
        QCOMPARE(r.stored(u"郵便番号, 更新日"_s, 2), u"-|2026-01-01"_s);
        r.type("txtZip", u"906-0013"_s);
        r.type("txtAddress", u"沖縄県宮古島市平良西里7"_s);
        expectMove();
        r.press("cmdNewDate");
        QCOMPARE(r.stored(u"郵便番号"_s, 2), u"906-0012"_s);
        r.type("txtZip", u"906-0013"_s);
        r.type("txtAddress", u"沖縄県宮古島市平良西里9"_s);
        expectMove();
        QTest::keyClick(&r.box("txtAddress"), Qt::Key_U, Qt::AltModifier);
        QTRY_COMPARE(r.stored(u"郵便番号, 住所1"_s, 2), u"906-0012|沖縄県宮古島市平良西里9"_s);
    }

    void aCodeIsWarnedOfBeforeItsRowIsLeft()
    {
        Register r;
        r.type("txtCode", u"B2"_s);
        ui::prompts::expectInform(u"納品先コードが重複しています。"_s);
        clickRow(r, 1); // of another code: nothing is said of that one
        QTest::qWait(60);
        QCOMPARE(r.stored(u"コード"_s, 3), u"B2"_s);
    }

    void warnsOfSharedCodes()
    {
        Register r;
        r.type("txtCode", u"A1"_s);
        ui::prompts::expectInform(u"納品先コードが重複しています。"_s);
        r.leave("txtCode");
        r.type("txtCode", u"Z9"_s);
        r.leave("txtCode");
        r.press("cmdNewDate");
        QCOMPARE(r.stored(u"コード"_s, 3), u"Z9"_s);
    }

    void showsClosingDayAndTaxClass()
    {
        Register r;
        r.goTo(1);
        QCOMPARE(r.list("cmdBill").currentText(), u"15 日"_s);
        QCOMPARE(r.list("Combo1").currentText(), u"外税 （請求時）"_s);
        QVERIFY(r.the<QCheckBox>("Check1").isChecked());
        r.goTo(0); // holds no closing day
        QCOMPARE(r.list("cmdBill").currentText(), u"15 日"_s);
        r.goTo(2);
        QCOMPARE(r.list("cmdBill").currentText(), u"末日"_s);
        QCOMPARE(r.list("Combo1").currentText(), u"内税"_s);
        QVERIFY(!r.the<QCheckBox>("Check1").isChecked());
    }

    void theHonorificIsTheCustomersOwn()
    {
        Register r;
        QCOMPARE(r.list("cmbHonorific").currentIndex(), -1);
        r.choose("cmbHonorific", 1);
        r.goTo(1);
        QCOMPARE(r.stored(u"敬称"_s, 3), u"御中"_s);
        QCOMPARE(r.list("cmbHonorific").currentIndex(), -1);
        r.choose("cmbHonorific", 3);
        r.press("cmdUndo");
        QCOMPARE(r.list("cmbHonorific").currentIndex(), -1);
        r.choose("cmbHonorific", 3); // none
        r.press("cmdNewDate");
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 納品先 WHERE 敬称 = 'なし'"_s).toInt(), 1);
        QCOMPARE(r.stored(u"敬称"_s, 2), u"-"_s);
        r.goTo(0);
        QCOMPARE(r.list("cmbHonorific").currentText(), u"御中"_s);
    }

    // For the ledger program: whoever was looked for, not whoever happens to stand first.
    void whoWasLookedAtIsRemembered()
    {
        Register r;
        const auto last = [&r] { return registers::lastCounterparts(r.shop.workspace).customer; };
        QCOMPARE(last(), 0);
        r.goTo(2);
        QCOMPARE(last(), 2);
        r.goTo(0);
        r.goTo(1);
        QCOMPARE(last(), 1);
        // A list that is read anew, and the row after one that is deleted, stand there by themselves.
        r.press("Command6");
        QCOMPARE(r.box("txtID").text(), u"3"_s);
        QCOMPARE(last(), 1);
        r.goTo(1);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, ui::prompts::anyRemark);
        r.press("cmdDelete");
        QCOMPARE(r.box("txtID").text(), u"2"_s);
        QCOMPARE(last(), 0);
        r.type("txtKey1", u"田中"_s);
        r.press("cmdFind");
        QCOMPARE(last(), 3);
    }

    void aCategoryIsSavedWhenChosen()
    {
        Register r;
        r.type("txtTantou", u"木村"_s);
        r.choose("dbcKubun", 1);
        QCOMPARE(r.stored(u"区分ID, 担当者名"_s, 3), u"2|-"_s);
        QCOMPARE(r.box("txtTantou").text(), u"木村"_s);
        r.goTo(1);
        QCOMPARE(r.stored(u"区分ID, 担当者名"_s, 3), u"2|木村"_s);
    }
};

QTEST_MAIN(TestFrmNouhinBoxes)
#include "tst_frmnouhin_boxes.moc"
