#include "app/main_window/command_panel.h"
#include "app/main_window/main_window_stage.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>

namespace
{

const QString nobodyChosen = u"担当者が選択されていません。"_s;
const QString noCompany = u"自社情報が登録されていません。「環境設定」「自社情報登録」を済ませてください。"_s;
const QString noSlips = u"現在、該当する伝票はありません。"_s;

const QString oldRate = u"メイン画面の消費税率は 5％ ですが、税率表では、今日の標準の税率は 10％ です。\n"
                        "税率表に従って納品書を作りますか。"_s;

using Stage = MainWindowStage;

} // namespace

// Who is in charge, and what else must be there before a command goes on.
class TestGuards : public ScriptedTest
{
    Q_OBJECT

private slots:
    void nobodyEmployedOpensTheEditor();
    void oneOfSeveralIsChosenByTheClerk();
    void theOnlyEmployeeIsInCharge();
    void theOnlyOneLeftIsNotChosenUnseen_data();
    void theOnlyOneLeftIsNotChosenUnseen();
    void nobodyChosenPutsTheCursorThere();
    void slipsToLookAtAreToldAtTheStart();
    void missingCompanyIsAskedForAndGoesOn();
    void oldRateIsToldBeforeTheFirstSale_data();
    void oldRateIsToldBeforeTheFirstSale();
    void slipGuard_data();
    void slipGuard();
    void employeesFollowTheTable();
};

void TestGuards::nobodyEmployedOpensTheEditor()
{
    Stage stage;
    // Left without an entry: nobody yet.
    ui::prompts::expectInform(nobodyChosen);
    stage.click("Command45");
    QCOMPARE(stage.opened, QList<Action>{Action::Employees});
    QCOMPARE(stage.find<QTabWidget>("SSTab1")->currentIndex(), static_cast<int>(Page::Settings));
    QCOMPARE(stage.window->focusWidget(), stage.find<QComboBox>("dbcShain"));

    // The only one is in charge, and what was asked for comes.
    stage.opened.clear();
    stage.whenOpened = [&stage](Action action) {
        if (action == Action::Employees)
            stage.shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (1, '佐藤')"_s);
    };
    ui::prompts::expectInform(nobodyChosen);
    stage.click("Command27");
    QCOMPARE(stage.opened, (QList<Action>{Action::Employees, Action::Bill}));
    QCOMPARE(stage.find<QComboBox>("dbcShain")->currentText(), u"佐藤"_s);
    QCOMPARE(stage.shop.workspace.panel.employeeId, 1);
}

void TestGuards::oneOfSeveralIsChosenByTheClerk()
{
    Stage stage;
    stage.whenOpened = [&stage](Action) {
        stage.shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (1, '佐藤'), (2, '木村')"_s);
    };
    ui::prompts::expectInform(nobodyChosen);
    stage.click("Command27");
    QCOMPARE(stage.opened, QList<Action>{Action::Employees});
    QCOMPARE(stage.find<QComboBox>("dbcShain")->currentText(), QString());
    QCOMPARE(stage.window->focusWidget(), stage.find<QComboBox>("dbcShain"));
}

void TestGuards::theOnlyEmployeeIsInCharge()
{
    Stage stage([](FreshShop &shop) { shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (3, '佐藤')"_s); });
    QCOMPARE(stage.find<QLineEdit>("txtShainID")->text(), u"3"_s);
    QCOMPARE(stage.shop.workspace.panel.employeeName, u"佐藤"_s);
}

void TestGuards::theOnlyOneLeftIsNotChosenUnseen_data()
{
    QTest::addColumn<QString>("how");
    for (const char *how : {"deleted in the editor", "deleted before the start", "gone with another file"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

// Slips would go to another account.
void TestGuards::theOnlyOneLeftIsNotChosenUnseen()
{
    QFETCH(QString, how);
    const QString deletion = u"DELETE FROM 社員 WHERE 社員ID = 7"_s;
    const bool before = how == "deleted before the start"_L1;
    Stage stage([&](FreshShop &shop) {
        employOne(shop);
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (3, '佐藤')"_s);
        if (before)
            shop.run(deletion);
    });
    stage.whenOpened = [&](Action) { stage.shop.run(deletion); };
    if (how == "deleted in the editor"_L1)
        stage.click("Command35");
    if (how == "gone with another file"_L1) {
        stage.shop.run(deletion);
        QVERIFY(QFile::copy(stage.shop.path(u"shop.cdb"_s), stage.shop.path(u"without.cdb"_s)));
        ui::file_dialogs::expectFile(stage.shop.path(u"without.cdb"_s));
        stage.find<QAction>("mnuOpen")->trigger();
    }
    QCOMPARE(stage.find<QComboBox>("dbcShain")->count(), 1);
    QCOMPARE(stage.find<QComboBox>("dbcShain")->currentText(), QString());
    QCOMPARE(stage.shop.workspace.panel.employeeId, 0);
}

void TestGuards::nobodyChosenPutsTheCursorThere()
{
    Stage stage([](FreshShop &shop) {
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (1, '佐藤'), (2, '木村')"_s);
    });
    ui::prompts::expectInform(nobodyChosen);
    stage.click("Command27");
    QVERIFY(stage.opened.isEmpty());
    QCOMPARE(stage.window->focusWidget(), stage.find<QComboBox>("dbcShain"));
    for (const char *item : {"mnuUrikakeKurikoshi", "mnuKaikakeKurikoshi", "mnuPreTana"}) {
        ui::prompts::expectInform(nobodyChosen);
        stage.find<QAction>(item)->trigger();
        QVERIFY(stage.opened.isEmpty());
    }
}

// Of a program that was killed, and of a tax line that is gone; nothing is said of slips from before the
// marks.
void TestGuards::slipsToLookAtAreToldAtTheStart()
{
    ui::prompts::expectInform(
        u"閉じられていない伝票があります。\nO12、I9\nほかのパソコンで入力中でなければ、伝票の訂正画面の"
        "「伝票完了」で消費税を計上して閉じてください。\n\n"
        "外税の相手先への伝票に、消費税の行のないものがあります。\nO13\n伝票の訂正画面の「伝票完了」で"
        "消費税を計上するか、税込の伝票なら「内税」に直してください。"_s);
    const Stage stage([](FreshShop &shop) {
        shop.run(u"INSERT INTO 納品先 (納品先ID, 消費税区分) VALUES (1, 0)"_s);
        shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号, 完了) VALUES (8, 'O8', NULL), (9, 'I9', 0), "
                 "(10, 'O10', 1), (12, 'O12', 0)"_s);
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率, 内税, 完了) VALUES "
                 "(13, '2026-02-01', 'O13', 1, 10, 0, 1), (14, '2026-01-31', 'O14', 1, 10, 0, 1)"_s);
        shop.run(
            u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (13, 'りんご', 10), (14, 'りんご', 10)"_s);
    });
    QTest::qWait(20);
}

void TestGuards::missingCompanyIsAskedForAndGoesOn()
{
    Stage stage(employOne);
    stage.whenOpened = [&stage](Action action) {
        if (action == Action::OwnCompany)
            stage.shop.run(u"INSERT INTO 自社情報 (会社ID, 会社名1) VALUES (1, 'ほのぼの商店')"_s);
    };
    ui::prompts::expectInform(noCompany);
    ui::prompts::expectAskWhichWay(oldRate, u"5％のまま続ける"_s);
    stage.find<QAction>("mnuDenOut")->trigger();
    QCOMPARE(stage.opened, (QList<Action>{Action::OwnCompany, Action::Sales}));
    QCOMPARE(stage.shop.workspace.panel.companyName1, u"ほのぼの商店"_s);
    QCOMPARE(stage.find<QLineEdit>("txtName1")->text(), u"ほのぼの商店"_s);

    // The employee comes first.
    stage.opened.clear();
    stage.shop.run(u"DELETE FROM 自社情報"_s);
    stage.find<QComboBox>("dbcShain")->setCurrentIndex(-1);
    ui::prompts::expectInform(nobodyChosen);
    stage.find<QAction>("mnuDenOut")->trigger();
    QVERIFY(stage.opened.isEmpty());
}

void TestGuards::oldRateIsToldBeforeTheFirstSale_data()
{
    QTest::addColumn<QString>("setUp");
    QTest::addColumn<QString>("way"); // empty: nothing is asked, or the clerk goes back
    QTest::addColumn<bool>("isAsked");
    QTest::addColumn<QString>("rate");

    const QString shop = u"INSERT INTO 自社情報 (会社ID, 会社名1) VALUES (1, 'ほのぼの商店')"_s;
    QTest::newRow("by the table") << shop << u"税率表に従う"_s << true << u"10"_s;
    QTest::newRow("by hand") << shop << u"5％のまま続ける"_s << true << u"5"_s;
    QTest::newRow("gone back") << shop << QString() << true << u"5"_s;
    QTest::newRow("a registered shop knows")
        << u"INSERT INTO 自社情報 (会社ID, 会社名1, 登録番号) VALUES (1, '店', 'T7000012050002')"_s
        << QString() << false << u"5"_s;
    QTest::newRow("a shop that sells knows")
        << shop + u"; INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (1, 'O1')"_s << QString() << false
        << u"5"_s;
}

void TestGuards::oldRateIsToldBeforeTheFirstSale()
{
    QFETCH(QString, setUp);
    QFETCH(QString, way);
    QFETCH(bool, isAsked);
    Stage stage(employOne);
    for (const QString &statement : setUp.split(u"; "_s))
        stage.shop.run(statement);
    auto *sell = stage.find<QAction>("mnuDenOut");
    if (isAsked)
        ui::prompts::expectAskWhichWay(oldRate, way);
    sell->trigger();
    QTEST(stage.find<QLineEdit>("txtTaxRate")->text(), "rate");
    const bool isBack = isAsked && way.isEmpty();
    QCOMPARE(stage.opened.size(), isBack ? 0 : 1);
    // Who has decided is not asked again; who went back is.
    if (isBack) {
        ui::prompts::expectAskWhichWay(oldRate, QString());
        QVERIFY(!stage.window->mayRun(Action::Sales)); // as out of the register
        ui::prompts::expectAskWhichWay(oldRate, u"税率表に従う"_s);
    }
    sell->trigger();
    QCOMPARE(stage.opened.size(), isBack ? 1 : 2);
}

void TestGuards::slipGuard_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("letter");
    QTest::newRow("sales") << u"mnuDenOutAmd"_s << u"O"_s;
    QTest::newRow("receipts") << u"mnuReceiptAmd"_s << u"R"_s;
    QTest::newRow("purchases") << u"mnuDenInAmd"_s << u"I"_s;
    QTest::newRow("payments") << u"mnuPaymentAmd"_s << u"P"_s;
    QTest::newRow("estimates") << u"mnuMitsumoriAmd"_s << u"M"_s;
    QTest::newRow("receivables") << u"mnuUrikakeAMD"_s << u"B"_s;
    QTest::newRow("payables") << u"mnuKaikakeAMD"_s << u"A"_s;
    QTest::newRow("stocktake") << u"mnuTanaAmd"_s << u"T"_s;
}

void TestGuards::slipGuard()
{
    QFETCH(QString, menu);
    QFETCH(QString, letter);
    Stage stage;
    // Slips of every other kind are no slips of this one.
    int id = 0;
    for (const QString &other : u"O I M R P A B T"_s.split(u' ')) {
        if (other != letter)
            stage.shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (?, ?)"_s,
                           {++id, other + u"1"_s});
    }
    QAction *item = stage.find<QAction>(menu.toLatin1().constData());
    ui::prompts::expectInform(noSlips);
    item->trigger();
    QVERIFY(stage.opened.isEmpty());
    // The cursor goes where such slips are entered.
    const QMap<QString, QString> entries{{u"O"_s, u"Command45"_s},
                                         {u"R"_s, u"Command1"_s},
                                         {u"I"_s, u"Command39"_s},
                                         {u"P"_s, u"Command41"_s},
                                         {u"M"_s, u"Command48"_s}};
    if (entries.contains(letter))
        QCOMPARE(stage.window->focusWidget()->objectName(), entries.value(letter));

    stage.shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (?, ?)"_s, {++id, letter + u"2"_s});
    item->trigger();
    QCOMPARE(stage.opened.size(), 1);
}

void TestGuards::employeesFollowTheTable()
{
    Stage stage(employOne);
    auto *box = stage.find<QComboBox>("dbcShain");
    QCOMPARE(box->currentText(), u"山田"_s);
    QCOMPARE(stage.find<QLineEdit>("txtShainID")->text(), u"7"_s);
    QCOMPARE(stage.shop.workspace.panel.employeeId, 7);

    stage.shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (3, '佐藤')"_s);
    stage.shop.run(u"UPDATE 社員 SET 社員名 = '山田　花子' WHERE 社員ID = 7"_s);
    stage.window->focusStep();
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->currentText(), u"山田　花子"_s);
    QCOMPARE(stage.shop.workspace.panel.employeeName, u"山田　花子"_s);

    stage.shop.run(u"DELETE FROM 社員 WHERE 社員ID = 7"_s);
    stage.window->focusStep();
    QCOMPARE(box->currentText(), QString());
    QCOMPARE(stage.shop.workspace.panel.employeeId, 0);
    QCOMPARE(stage.find<QLineEdit>("txtShainID")->text(), QString());
}

QTEST_MAIN(TestGuards)
#include "tst_guards.moc"
