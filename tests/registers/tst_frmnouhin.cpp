#include "registers/frmNouhin.h"
#include "registers/postal/postal_index.h"
#include "registers/register_desk.h"
#include "support/postal_files.h"
#include "support/scripted_test.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

const QString noName = u"納品先名が入力されていません。               "_s;
const QString noCategory = u"納品先区分が入力されていません。               "_s;
const QString notFound = u"検索した納品先は見つかりませんでした。\n新規に入力しますか？"_s;
const QString editsOpen = u"変更が保存されていません。保存しますか？"_s;
const QString entryOpen = u"入力中の納品先が登録されていません。登録しますか？"_s;
const QString anyText;
using ui::prompts::Version;

// The register of a shop with two categories and, when wanted, three customers: 3 田中, 1 山田, 2 鈴木 in the
// list's order.
struct Register : RegisterDesk<registers::frmNouhin>
{
    enum With { NoCategories, NoCustomers, Customers };

    explicit Register(With with = Customers, const std::function<void(Register &)> &before = {})
        : RegisterDesk(u"納品先"_s)
    {
        if (with != NoCategories)
            shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (2, '一般')"_s);
        if (with == Customers) {
            shop.run(
                u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, フリガナ, 納品先名キー, 区分ID, 更新日, "
                "締め日, 消費税区分, 元帳出力) VALUES "
                "(1, 'A1', '山田太郎', 'ﾔﾏﾀﾞﾀﾛｳ', '山田太郎 A1  ﾔﾏﾀﾞﾀﾛｳ', 1, '2026-02-01', 15, 1, 1), "
                "(2, 'B2', '鈴木花子', 'ｽｽﾞｷﾊﾅｺ', '鈴木花子 B2  ｽｽﾞｷﾊﾅｺ', 2, '2026-01-01', 0, 2, 0), "
                "(3, 'C3', '田中次郎', 'ﾀﾅｶｼﾞﾛｳ', '田中次郎 C3  ﾀﾅｶｼﾞﾛｳ', 1, '2026-02-01', NULL, 0, 0)"_s);
        }
        if (before)
            before(*this);
        show();
    }

    QString enabled()
    {
        return ScreenDriver::enabled(
            {"Frame2", "DataGrid1", "panel", "cmdAdd", "cmdUpdate", "cmdNewDate", "cmdCancel", "cmdDelete"});
    }
};

const QString browsing = u"Frame2 DataGrid1 panel cmdAdd cmdNewDate cmdDelete"_s;
const QString entry = u"panel cmdUpdate cmdCancel"_s;
const QString withoutRows = u"Frame2 DataGrid1 cmdAdd"_s;

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
        registers::PostalIndex{{city, u"宮古島市"_s, 1}, {u"栃木県那須郡那珂川町"_s, u"那珂川町"_s, 4}});
    r.shop.run(u"UPDATE 納品先 SET 住所1 = '沖縄県宮古島市平良下里９'"_s);
}

void expectMove()
{
    ui::prompts::expectAskCautiously(
        u"郵便番号は「906-0013」ですが、この住所１の郵便番号は「906-0012」のようです。\n"
        "「906-0012」に変更しますか。"_s,
        true);
}

void clickRow(Register &r, int row)
{
    const QModelIndex index = r.grid().model()->index(row, r.grid().currentIndex().column());
    QTest::mouseClick(r.grid().viewport(), Qt::LeftButton, {}, r.grid().visualRect(index).center());
}

} // namespace

class TestFrmNouhin : public ScriptedTest
{
    Q_OBJECT

private slots:
    void opensWithEveryCustomer()
    {
        Register r;
        QCOMPARE(r.screen.windowTitle(), u"納品先登録 ( 顧客情報 )"_s);
        QCOMPARE(r.listed(), u"3 1 2"_s);
        QCOMPARE(r.enabled(), browsing);
        QCOMPARE(r.box("txtName").text(), u"田中次郎"_s);
        QCOMPARE(r.list("dbcKubun").currentText(), u"得意先"_s);
        QVERIFY(r.the<QPushButton>("Command3").isEnabled());
    }

    void anotherProgramChangesTheCustomer_data()
    {
        QTest::addColumn<int>("version");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("shown");
        QTest::newRow("mine") << int(Version::Mine) << u"田中　商店|03-9|田中商店 C3 03-9 ﾀﾅｶｼﾞﾛｳ"_s
                              << u"田中　商店"_s;
        QTest::newRow("theirs") << int(Version::Theirs) << u"田仲|03-9|田仲 C3 03-9"_s << u"田仲"_s;
        QTest::newRow("Esc") << int(Version::Undecided) << u"田仲|03-9|田仲 C3 03-9"_s << u"田中　商店"_s;
    }

    void anotherProgramChangesTheCustomer()
    {
        QFETCH(int, version);
        QFETCH(QString, stored);
        QFETCH(QString, shown);
        Register r;
        db::Connection other;
        QVERIFY(other.open(r.shop.path(u"shop.cdb"_s)));
        r.type("txtName", u"田中　商店"_s);
        QVERIFY(other.execute(u"UPDATE 納品先 SET 納品先名1 = '田仲', TEL1 = '03-9', "
                              "納品先名キー = '田仲 C3 03-9' WHERE 納品先ID = 3"_s));
        ui::prompts::expectAskWhichVersion(
            u"表示中のデータは、編集している間にほかのプログラムで変更されました。どちらを残しますか。\n\n"
            "納品先名1：自分の入力は「田中　商店」、ほかの変更は「田仲」\n"
            "TEL1：「」がほかで「03-9」に変更（どちらを選んでも残ります）"_s,
            Version(version));
        r.goTo(1);
        QCOMPARE(r.stored(u"納品先名1, TEL1, 納品先名キー"_s, 3), stored);
        const bool isLeft = Version(version) != Version::Undecided;
        QCOMPARE(r.grid().currentIndex().row(), isLeft ? 1 : 0);
        r.goTo(0);
        QCOMPARE(r.box("txtName").text(), shown);
        if (!isLeft) { // what was typed is still there to be saved
            ui::prompts::expectAskWhichVersion({}, Version::Mine);
            r.goTo(1);
            QCOMPARE(r.stored(u"納品先名1"_s, 3), u"田中　商店"_s);
        }
    }

    void showsOneCustomerForAnotherScreen()
    {
        Register r(Register::Customers, [](Register &opened) { opened.screen.openCustomer(2); });
        QCOMPARE(r.listed(), u"2"_s);
        QCOMPARE(r.box("txtName").text(), u"鈴木花子"_s);
        QVERIFY(!r.screen.savedCustomer());
    }

    void startsNewForAnotherScreen()
    {
        Register r(Register::Customers, [](Register &opened) { opened.screen.startNew(); });
        QTRY_COMPARE(r.enabled(), entry);
        QCOMPARE(r.box("txtID").text(), u"4"_s);
        QTRY_VERIFY(r.box("txtName").hasFocus());
        r.type("txtName", u"佐藤"_s);
        r.choose("dbcKubun", 1);
        r.press("cmdUpdate");
        QCOMPARE(r.screen.savedCustomer(), std::optional<qint64>(4));
    }

    void theFirstCustomerOfAll()
    {
        Register r(Register::NoCustomers);
        QCOMPARE(r.enabled(), withoutRows);
        r.press("cmdAdd");
        QCOMPARE(r.enabled(), entry);
        QCOMPARE(r.stored(u"納品先ID, 納品先名1, 登録日, 更新日, 元帳出力, 消費税区分, 締め日"_s, 1),
                 u"1|-|2026-04-01|2026-04-01|0|0|-"_s);
        QCOMPARE(r.list("Combo1").currentText(), u"外税 （納品時）"_s);
        r.press("cmdCancel");
        QCOMPARE(r.enabled(), withoutRows);
        QCOMPARE(r.box("txtID").text(), QString());
    }

    void aNewCustomerFromTheFirstKeyToTheLast()
    {
        Register r;
        r.press("cmdAdd");
        QCOMPARE(r.listed(), u"1 2 3 4"_s);
        QCOMPARE(r.cursor(), u"txtName"_s);
        QCOMPARE(r.list("cmdBill").currentIndex(), -1);
        QCOMPARE(r.list("dbcKubun").currentIndex(), -1);
        r.type("txtName", u"山田　太郎"_s);
        r.type("txtFurigana", u"ﾔﾏﾀﾞﾀﾛｳ"_s);
        r.type("txtTel", u"０３－１２３４－５６７８"_s);
        r.choose("dbcKubun", 1);
        QCOMPARE(r.stored(u"区分ID, 納品先名1"_s, 4), u"2|-"_s);
        r.choose("cmdBill", 20);
        r.choose("Combo1", 2);
        QTest::keyClick(&r.the<QCheckBox>("Check1"), Qt::Key_Space);
        r.press("cmdUpdate");
        QCOMPARE(r.enabled(), browsing);
        QCOMPARE(r.stored(u"納品先名1, 納品先名キー, TEL1, 区分ID, 締め日, 消費税区分, 元帳出力"_s, 4),
                 u"山田　太郎|山田太郎  03-1234-5678 ﾔﾏﾀﾞﾀﾛｳ|03-1234-5678|2|20|2|1"_s);
        QCOMPARE(r.box("txtName4").text(), u"山田太郎  03-1234-5678 ﾔﾏﾀﾞﾀﾛｳ"_s);
        QVERIFY(r.the<QPushButton>("cmdAdd").hasFocus());
    }

    void aCustomerOfTheSameNameAndNumberIsAskedAbout()
    {
        Register r;
        r.shop.run(u"UPDATE 納品先 SET 納品先名1 = '髙橋　花子', TEL1 = '0312345678' WHERE 納品先ID = 2"_s);
        r.press("cmdAdd");
        r.type("txtName", u"髙橋 花子"_s);
        r.type("txtTel", u"０３ー１２３４ー５６７８"_s);
        r.choose("dbcKubun", 1);
        const QString question =
            u"同じ名前と電話番号の納品先が登録されています。\nID 2　髙橋　花子　0312345678\n別の納品先として登録しますか？"_s;
        ui::prompts::expectAskCautiously(question, false);
        r.press("cmdUpdate");
        QCOMPARE(r.stored(u"納品先名1"_s, 4), u"-"_s);
        ui::prompts::expectAskCautiously(question, true);
        r.press("cmdUpdate");
        QCOMPARE(r.stored(u"納品先名1, TEL1"_s, 4), u"髙橋 花子|03-1234-5678"_s);
        QCOMPARE(r.enabled(), browsing);
    }

    void givingUpDeletesTheNewRow()
    {
        Register r;
        r.press("cmdAdd");
        r.type("txtName", u"佐藤"_s);
        r.press("cmdCancel");
        QCOMPARE(r.enabled(), browsing);
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 3);
        QCOMPARE(r.box("txtName").text(), u"田中次郎"_s);
    }

    void nothingGoesWithoutCategories()
    {
        Register r(Register::NoCategories, [](Register &opened) {
            opened.shop.run(
                u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー) VALUES (1, '山田', '山田')"_s);
        });
        ui::prompts::expectInform(ui::messages::noCategories());
        r.press("cmdAdd");
        const QString forList =
            u"納品先登録区分が登録されていません。「新規登録」「納品先区分登録」を済ませてください。"_s;
        ui::prompts::expectInform(forList);
        r.press("Command6");
        ui::prompts::expectInform(forList);
        r.type("txtKey1", u"山田"_s);
        r.press("cmdFind");
        QCOMPARE(r.enabled(), browsing);
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 1);
    }

    void refusesToSave_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("category");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("cursor");
        QTest::newRow("no name") << QString() << 1 << noName << u"txtName"_s;
        QTest::newRow("no category") << u"佐藤"_s << -1 << noCategory << u"dbcKubun"_s;
        QTest::newRow("too wide") << QString(23, u'山') << 1 << ui::messages::widthLimit() << u"txtName"_s;
    }

    void refusesToSave()
    {
        QFETCH(QString, name);
        QFETCH(int, category);
        QFETCH(QString, message);
        Register r;
        r.press("cmdAdd");
        r.type("txtName", name);
        if (category >= 0)
            r.choose("dbcKubun", category);
        ui::prompts::expectInform(message);
        // By its key, so that the box is not left before.
        QTest::keyClick(&r.screen, Qt::Key_I, Qt::AltModifier);
        QTest::qWait(150);
        QCOMPARE(r.enabled(), entry);
        QCOMPARE(r.stored(u"納品先名1, 納品先名キー"_s, 4), u"-|-"_s);
        QCOMPARE(r.box("txtName").text(), name);
        QTEST(r.cursor(), "cursor");
    }

    void searches()
    {
        Register r;
        ui::prompts::expectInform(ui::messages::searchEmpty());
        r.press("cmdFind");
        QCOMPARE(r.listed(), u"3 1 2"_s);

        r.type("txtKey1", u"やまだ"_s);
        QTest::keyClick(&r.box("txtKey1"), Qt::Key_Return);
        QCOMPARE(r.listed(), u"1"_s);
        QVERIFY(r.grid().hasFocus());
        QCOMPARE(r.box("txtName").text(), u"山田太郎"_s);

        r.press("cmdNext");
        QCOMPARE(r.box("txtKey1").text(), QString());
        QCOMPARE(r.cursor(), u"txtKey1"_s);
        r.type("txtKey1", u"' OR 1=1 --"_s);
        ui::prompts::expectAsk(notFound, false);
        r.press("cmdFind");
        QCOMPARE(r.listed(), u"1"_s);
        QCOMPARE(r.enabled(), browsing);

        r.press("Command6");
        QCOMPARE(r.listed(), u"3 1 2"_s);

        QTest::keyClick(&r.screen, Qt::Key_F3);
        QCOMPARE(r.cursor(), u"txtKey1"_s);
        ui::prompts::expectAsk(notFound, true);
        r.press("cmdFind");
        QCOMPARE(r.enabled(), entry);
        QCOMPARE(r.stored(u"納品先ID"_s, 4), u"4"_s);
    }

    void deletes()
    {
        Register r;
        r.goTo(1);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false);
        r.press("cmdDelete");
        QCOMPARE(r.listed(), u"3 1 2"_s);
        for (const char *left : {"3 2", "3", ""}) {
            ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true);
            r.press("cmdDelete");
            QCOMPARE(r.listed(), QString::fromLatin1(left));
        }
        QCOMPARE(r.enabled(), withoutRows);
        QCOMPARE(r.box("txtName").text(), QString());
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 0);
    }

    // I1 is a slip of the supplier that has the customer's number.
    void tellsOfSlipsThatStayBehind()
    {
        Register r;
        r.shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) "
                   "VALUES (1, 'O1', 1), (2, 'R1', 3), (3, 'I1', 2)"_s);
        const QString stay =
            u"この納品先には伝票が 1 件あります。伝票は残りますが、納品先の名前は分からなくなります。"_s;
        const QString passOn =
            u"\n次に新規登録する納品先は同じ番号になり、残った伝票はその納品先のものになります。"_s;
        const std::pair<int, QString> remarks[] = {{0, stay + passOn}, {1, stay}, {2, {}}};
        for (const auto &[row, remark] : remarks) {
            r.goTo(row);
            ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false, remark);
            r.press("cmdDelete");
        }
    }

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
            opened.shop.workspace.keep(registers::PostalIndex{{u"長野県長野市"_s, u"長野市"_s, 1}});
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

    void aWheelTurnedInPassingChangesNothing()
    {
        Register r;
        r.box("txtName").setFocus();
        turnWheelOver(r.list("dbcKubun"));
        QCOMPARE(r.stored(u"区分ID"_s, 3), u"1"_s);
    }

    void leavingARowSavesIt()
    {
        Register r;
        r.type("txtName2", u"営業部"_s);
        r.goTo(2);
        QCOMPARE(r.stored(u"納品先名2, 納品先名キー, 更新日"_s, 3),
                 u"営業部|田中次郎営業部 C3  ﾀﾅｶｼﾞﾛｳ|2026-04-01"_s);
        QCOMPARE(r.listed(), u"3 1 2"_s);
        QCOMPARE(r.box("txtName").text(), u"鈴木花子"_s);

        r.clear("txtName");
        ui::prompts::expectInform(noName);
        r.goTo(0);
        QCOMPARE(r.grid().currentIndex().row(), 2);
        ui::prompts::expectInform(noName);
        r.press("Command6");
        ui::prompts::expectInform(noName);
        r.press("cmdAdd");
        QCOMPARE(r.stored(u"納品先名1"_s, 2), u"鈴木花子"_s);
        QCOMPARE(r.cursor(), u"txtName"_s);
        QCOMPARE(r.enabled(), browsing);
        ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Save);
        ui::prompts::expectInform(noName);
        r.screen.reject();
        QVERIFY(r.screen.isVisible());
        ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Discard);
        QTest::keyClick(&r.box("txtName"), Qt::Key_Escape);
        QVERIFY(!r.screen.isVisible());
        QCOMPARE(r.stored(u"納品先名1"_s, 2), u"鈴木花子"_s);
    }

    void escNeitherStoresNorDropsWhatWasTyped_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("closed");
        using ui::prompts::Choice;
        QTest::newRow("saved") << int(Choice::Save) << u"改装中|2026-04-01"_s << true;
        QTest::newRow("dropped") << int(Choice::Discard) << u"-|2026-02-01"_s << true;
        QTest::newRow("gone back") << int(Choice::Cancel) << u"-|2026-02-01"_s << false;
    }

    void escNeitherStoresNorDropsWhatWasTyped()
    {
        QFETCH(int, answer);
        Register r;
        r.type("txtMemo", u"改装中"_s);
        ui::prompts::expectAskToSave(editsOpen, static_cast<ui::prompts::Choice>(answer));
        QTest::keyClick(&r.box("txtMemo"), Qt::Key_Escape);
        QTEST(r.stored(u"メモ, 更新日"_s, 3), "stored");
        QTEST(!r.screen.isVisible(), "closed");
        QCOMPARE(r.box("txtMemo").text(),
                 answer == int(ui::prompts::Choice::Discard) ? QString() : u"改装中"_s);
    }

    // The category is stored when it is chosen, and belongs to what was changed all the same.
    void whatWasChangedCanBeTakenBack()
    {
        Register r;
        const QString before = r.stored(u"*"_s, 3);
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.type("txtName", u"田"_s);
        r.type("txtCode", u"A1"_s); // its warning is not due any more either
        r.choose("cmdBill", 20);
        r.choose("dbcKubun", 1);
        QCOMPARE(r.stored(u"区分ID, 納品先名1"_s, 3), u"2|田中次郎"_s);
        QTest::keyClick(r.screen.focusWidget(), Qt::Key_B, Qt::AltModifier);
        QTRY_COMPARE(r.box("txtName").text(), u"田中次郎"_s);
        QCOMPARE(r.list("dbcKubun").currentText(), u"得意先"_s);
        QCOMPARE(r.list("cmdBill").currentIndex(), -1);
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.goTo(1);
        QCOMPARE(r.stored(u"*"_s, 3).section(u'|', 0, -2), before.section(u'|', 0, -2)); // but for the 版
        r.goTo(0); // left in between: what is there now is what it is
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.press("cmdAdd");
        r.type("txtName", u"佐藤"_s);
        QVERIFY(!r.the("cmdUndo").isEnabled());
        r.press("cmdCancel");
    }

    void closingDuringEntry_data()
    {
        QTest::addColumn<bool>("typed");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("closed");
        using ui::prompts::Choice;
        const QString bare = u"4|-|2026-04-01"_s;
        QTest::newRow("nothing typed") << false << -1 << bare << true;
        QTest::newRow("given up") << true << int(Choice::Discard) << bare << true;
        QTest::newRow("saved") << true << int(Choice::Save) << u"4|佐藤|2026-04-01"_s << true;
        QTest::newRow("gone on") << true << int(Choice::Cancel) << bare << false;
    }

    void closingDuringEntry()
    {
        QFETCH(bool, typed);
        QFETCH(int, answer);
        Register r;
        r.press("cmdAdd");
        if (typed) {
            r.choose("dbcKubun", 0);
            r.type("txtName", u"佐藤"_s);
            ui::prompts::expectAskToSave(entryOpen, static_cast<ui::prompts::Choice>(answer));
        }
        r.screen.reject();
        QTEST(r.stored(u"納品先ID, 納品先名1, 登録日"_s, 4), "stored");
        QTEST(!r.screen.isVisible(), "closed");
    }

    void aFailingDatabaseChangesNothing()
    {
        Register r;
        r.shop.run(u"PRAGMA query_only = ON"_s);
        ui::prompts::expectInform(anyText);
        r.press("cmdAdd");
        QCOMPARE(r.listed(), u"3 1 2"_s);
        r.goTo(1);
        r.type("txtName", u"山本"_s);
        for (const char *button : {"cmdNewDate", "cmdAdd", "Command6"}) {
            ui::prompts::expectInform(anyText);
            r.press(button);
            QCOMPARE(r.enabled(), browsing);
        }
        ui::prompts::expectInform(anyText);
        QTest::keyClick(&r.list("dbcKubun"), Qt::Key_Down);
        QCOMPARE(r.list("dbcKubun").currentText(), u"得意先"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true);
        ui::prompts::expectInform(anyText);
        r.press("cmdDelete");
        QCOMPARE(r.listed(), u"3 1 2"_s);
        QCOMPARE(r.box("txtName").text(), u"山本"_s);
        QCOMPARE(r.box("txtDate2").text(), u"2026-02-01"_s);
        r.shop.run(u"PRAGMA query_only = OFF"_s);
        QCOMPARE(r.stored(u"納品先名1, 更新日"_s, 1), u"山田太郎|2026-02-01"_s);
        r.press("cmdNewDate");
        QCOMPARE(r.stored(u"納品先名1"_s, 1), u"山本"_s);
    }

    void aRowDeletedByAnotherProgram()
    {
        Register r;
        r.type("txtName", u"田中"_s);
        r.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 3"_s);
        ui::prompts::expectInform(anyText);
        r.press("cmdNewDate");
        QCOMPARE(r.box("txtName").text(), u"田中"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true);
        r.press("cmdDelete");
        QCOMPARE(r.listed(), u"1 2"_s);
    }

    void remembersTheWindowState()
    {
        FreshShop shop;
        {
            registers::frmNouhin screen(shop.workspace);
            screen.show();
            screen.showMaximized();
            screen.close();
        }
        QCOMPARE(shop.settings.integer(workspace::keys::nouhinWindowState), 2);
        registers::frmNouhin screen(shop.workspace);
        screen.show();
        QVERIFY(screen.isMaximized());
    }

    void opensTheMailProgram()
    {
        Register r;
        QDesktopServices::setUrlHandler(u"mailto"_s, this, "takeLink");
        const QPoint place = r.box("txtMail").rect().center();
        r.type("txtMail", u"taro@example.jp"_s);
        QTest::mouseDClick(&r.box("txtMail"), Qt::LeftButton, {}, place);
        r.type("txtMail", u"taro@example.jp?bcc=a@example.jp"_s);
        QTest::mouseDClick(&r.box("txtMail"), Qt::LeftButton, {}, place);
        QDesktopServices::unsetUrlHandler(u"mailto"_s);
        QCOMPARE(m_links, QStringList{u"mailto:taro@example.jp"_s});
        r.clear("txtMail");
    }

    void tabGoesInReadingOrder()
    {
        Register r;
        r.box("txtKey1").setFocus();
        QStringList order;
        do {
            order << r.cursor();
            QTest::keyClick(r.screen.focusWidget(), Qt::Key_Tab);
        } while (r.cursor() != u"txtKey1"_s && order.size() < 50);
        QCOMPARE(
            order.join(u' '),
            u"txtKey1 cmdFind cmdNext Command6 DataGrid1 txtCode txtName txtName2 txtFurigana dbcKubun "
            "txtTantou txtZip txtAddress txtAddress2 txtTel txtFax txtKeitai txtMail cmdBill Combo1 Check1 "
            "txtBarth txtMemo cmdAdd cmdNewDate Command7 Command1 Command2 cmdDelete"_s);
    }

    void takeLink(const QUrl &link) { m_links << link.toString(); }

private:
    QStringList m_links;
};

QTEST_MAIN(TestFrmNouhin)
#include "tst_frmnouhin.moc"
