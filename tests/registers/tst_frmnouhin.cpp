#include "registers/customer_desk.h"
#include "support/scripted_test.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QCheckBox>
#include <QDesktopServices>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

const QString noName = u"納品先名が入力されていません。               "_s;
const QString noCategory = u"納品先区分が入力されていません。               "_s;
const QString notFound = u"検索した納品先は見つかりませんでした。\n新規に入力しますか？"_s;

using Register = CustomerDesk;

// Works on the screen that the next action opens over the register, and closes it.
void onNextScreen(const std::function<void(QDialog &)> &work)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, work] {
        auto *screen = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!screen || !screen->isActiveWindow()) // it takes no keys yet
            return;
        timer->stop();
        timer->deleteLater();
        work(*screen);
        screen->reject();
    });
    timer->start(5);
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
        onNextScreen([](QDialog &) {}); // the clerk looks at the categories, and registers none
        r.press("cmdAdd");
        const QString forList =
            u"納品先登録区分が登録されていません。「新規登録」「納品先区分登録」を済ませてください。"_s;
        ui::prompts::expectInform(forList);
        onNextScreen([](QDialog &) {});
        r.press("Command6");
        ui::prompts::expectInform(forList);
        r.type("txtKey1", u"山田"_s);
        onNextScreen([](QDialog &) {});
        r.press("cmdFind");
        QCOMPARE(r.enabled(), browsing);
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 1);
    }

    // What was refused for want of a category is done once there is one.
    void categoriesAreRegisteredOnTheWay()
    {
        Register r(Register::NoCategories);
        ui::prompts::expectInform(ui::messages::noCategories());
        onNextScreen([](QDialog &editor) {
            ScreenDriver hands(&editor);
            hands.enter("txtName", u"一般"_s);
            hands.press("cmdUpdate");
        });
        r.press("cmdAdd");
        QCOMPARE(r.shop.value(u"SELECT 区分名 FROM 登録区分"_s).toString(), u"一般"_s);
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 1);
        QCOMPARE(r.cursor(), u"txtName"_s);
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
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false,
                                         u"削除する納品先： 1　山田太郎"_s);
        r.press("cmdDelete");
        QCOMPARE(r.listed(), u"3 1 2"_s);
        for (const char *left : {"3 2", "3", ""}) {
            ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, ui::prompts::anyRemark);
            r.press("cmdDelete");
            QCOMPARE(r.listed(), QString::fromLatin1(left));
        }
        QCOMPARE(r.enabled(), withoutRows);
        QCOMPARE(r.box("txtName").text(), QString());
        QCOMPARE(r.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 0);
    }

    // With Ctrl rows are marked one by one, and the boxes show the last one; that one goes, and is named.
    void marksRowsOneByOne()
    {
        Register r;
        const auto click = [&r](int row) {
            const QModelIndex index = r.grid().model()->index(row, 0);
            QTest::mouseClick(r.grid().viewport(), Qt::LeftButton, Qt::ControlModifier,
                              r.grid().visualRect(index).center());
            QStringList marked;
            for (int i = 0; i < 3; ++i) {
                if (r.grid().selectionModel()->isRowSelected(i))
                    marked << r.grid().model()->index(i, 0).data().toString();
            }
            return marked.join(u' ');
        };
        QCOMPARE(click(2), u"3 2"_s);
        QCOMPARE(r.box("txtID").text(), u"2"_s);
        QCOMPARE(click(0), u"2"_s); // which takes its mark off
        QCOMPARE(r.box("txtID").text(), u"3"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false,
                                         u"削除する納品先： 3　田中次郎"_s);
        r.press("cmdDelete");
        QVERIFY(r.grid().selectionModel()->isRowSelected(0) && !r.grid().selectionModel()->isRowSelected(2));
        QCOMPARE(click(1), u"3 1"_s);
        QTest::keyClick(&r.grid(), Qt::Key_Down);
        QCOMPARE(r.box("txtID").text(), u"2"_s);
    }

    // I1 is a slip of the supplier that has the customer's number.
    void tellsOfSlipsThatStayBehind()
    {
        Register r;
        r.shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) "
                   "VALUES (1, 'O1', 1), (2, 'R1', 3), (3, 'I1', 2)"_s);
        const QString stay =
            u"\nこの納品先には伝票が 1 件あります。伝票は残りますが、納品先の名前は分からなくなります。"_s;
        const QString who = u"削除する納品先： "_s;
        const std::pair<int, QString> remarks[] = {{0, who + u"3　田中次郎"_s + stay},
                                                   {1, who + u"1　山田太郎"_s + stay},
                                                   {2, who + u"2　鈴木花子"_s}};
        for (const auto &[row, remark] : remarks) {
            r.goTo(row);
            ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false, remark);
            r.press("cmdDelete");
        }
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
            u"txtKey1 cmdFind cmdNext Command6 DataGrid1 txtCode txtName txtName2 cmbHonorific txtFurigana "
            u"dbcKubun "
            "txtTantou txtZip txtAddress txtAddress2 txtTel txtFax txtKeitai txtMail cmdBill Combo1 Check1 "
            "txtBarth txtMemo cmdAdd cmdNewDate cmdDuplicates Command7 Command1 Command2 cmdDelete gridGlance"_s);
    }

    void takeLink(const QUrl &link) { m_links << link.toString(); }

private:
    QStringList m_links;
};

QTEST_MAIN(TestFrmNouhin)
#include "tst_frmnouhin.moc"
