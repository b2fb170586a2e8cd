#include "app/main_window/command_panel.h"
#include "app/main_window/companions.h"
#include "app/main_window/frmAMain.h"
#include "registers/last_counterparts.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "text/cp932.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QAction>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QImage>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace app;

namespace
{

const QString nobodyChosen = u"担当者が選択されていません。"_s;
const QString noCompany = u"自社情報が登録されていません。「環境設定」「自社情報登録」を済ませてください。"_s;
const QString noSlips = u"現在、該当する伝票はありません。"_s;

} // namespace

class TestMainWindow : public ScriptedTest
{
    Q_OBJECT

private slots:
    void everyCommandHasItsPlace();
    void commandsWithoutAScreenAreDisabled();
    void submenusHoldTheirItems_data();
    void submenusHoldTheirItems();

    void nobodyEmployedOpensTheEditor();
    void oneOfSeveralIsChosenByTheClerk();
    void theOnlyEmployeeIsInCharge();
    void nobodyChosenPutsTheCursorThere();
    void slipsToLookAtAreToldAtTheStart();
    void missingCompanyIsAskedForAndGoesOn();
    void slipGuard_data();
    void slipGuard();
    void employeesFollowTheTable();

    void enterPressesAndMovesOn();
    void settingsRoundTrip();
    void aWheelTurnedInPassingChoosesNothing();
    void nonsenseInSettings();
    void taxRate_data();
    void taxRate();
    void sizesAlternate();
    void noticeNeedsItsCarrier();
    void calendarAndPicture();

    void firstStepsLeadToTheFirstSlip();
    void firstStepsKeepAway_data();
    void firstStepsKeepAway();
    void statusBarKeepsTheFile();
    void handOver();
    void counterpartsAreHandedOver();
    void companionsThatAreMissing();

private:
    // A window on a shop, with openers that only write down what was opened.
    struct Stage
    {
        Stage(const std::function<void(FreshShop &)> &prepare = {}, QSet<Action> missing = {})
        {
            if (prepare)
                prepare(shop);
            shop.connection.close();
            Openers openers;
            for (const Command &command : commands()) {
                if (command.action != Action::None && !missing.contains(command.action))
                    openers[command.action] = [this, action = command.action](QWidget *,
                                                                              workspace::Workspace &) {
                        opened << action;
                        if (whenOpened)
                            whenOpened(action);
                    };
            }
            window = std::make_unique<frmAMain>(shop.workspace, openers);
            window->load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
            window->show();
        }

        void click(const char *name)
        {
            auto *button = find<QAbstractButton>(name);
            if (!button->isEnabled())
                qFatal("%s is disabled", name);
            button->click();
        }

        template <class Widget>
        Widget *find(const char *name)
        {
            auto *found = window->findChild<Widget *>(QLatin1StringView(name));
            if (!found)
                qFatal("no %s", name);
            return found;
        }

        FreshShop shop;
        QList<Action> opened;
        std::function<void(Action)> whenOpened;
        std::unique_ptr<frmAMain> window;
    };

    static void employOne(FreshShop &shop)
    {
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (7, '山田')"_s);
        shop.settings.write(workspace::keys::employee, 7);
    }
};

void TestMainWindow::everyCommandHasItsPlace()
{
    Stage stage;
    QSet<QString> names;
    const auto isNew = [&names](const char16_t *name) {
        const QString text = QString::fromUtf16(name);
        const bool fresh = !names.contains(text);
        names.insert(text);
        return fresh;
    };
    for (const Command &command : commands()) {
        if (*command.menu != 0) {
            const QString name = QString::fromUtf16(command.menu);
            QVERIFY2(isNew(command.menu), qPrintable(name));
            auto *item = stage.window->menuBar()->findChild<QAction *>(name);
            auto *menu = stage.window->menuBar()->findChild<QMenu *>(name);
            QVERIFY2((item != nullptr) != (menu != nullptr), qPrintable(name));
            QCOMPARE(item ? item->text() : menu->title(), QString::fromUtf16(command.caption));
        }
        for (const ButtonPlace &place : command.buttons) {
            QVERIFY2(isNew(place.name), qPrintable(QString::fromUtf16(place.name)));
            const auto buttons = stage.window->findChildren<QPushButton *>(QString::fromUtf16(place.name));
            QCOMPARE(buttons.size(), 1);
            QCOMPARE(buttons.front()->text(), QString::fromUtf16(place.caption));
            QCOMPARE(buttons.front()->toolTip(), QString::fromUtf16(place.tip));
        }
        for (const Shortcut &shortcut : command.shortcuts) {
            QVERIFY(isNew(shortcut.name));
            auto *label = stage.window->findChild<QAbstractButton *>(QString::fromUtf16(shortcut.name));
            QVERIFY2(label, qPrintable(QString::fromUtf16(shortcut.name)));
            if (*shortcut.caption != 0)
                QCOMPARE(label->text(), QString::fromUtf16(shortcut.caption));
        }
    }
}

void TestMainWindow::commandsWithoutAScreenAreDisabled()
{
    Stage stage({}, {Action::Sales, Action::Units});
    for (const char *name : {"Command45", "Label10", "Command24"})
        QVERIFY2(!stage.find<QAbstractButton>(name)->isEnabled(), name);
    QVERIFY(!stage.find<QAction>("mnuDenOut")->isEnabled());
    QVERIFY(stage.find<QAbstractButton>("Command34")->isEnabled());
    stage.click("Command34");
    QCOMPARE(stage.opened, QList<Action>{Action::Specifications});

    // As the program is built: what can be chosen opens a screen, starts a program or acts by itself.
    const Openers screens = screenOpeners();
    for (const auto &[action, opener] : screens)
        QVERIFY(opener);
    for (const Action action : {Action::Units, Action::Employees, Action::OwnCompany, Action::Customers})
        QVERIFY(screens.contains(action));
}

void TestMainWindow::submenusHoldTheirItems_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("items");
    QTest::newRow("slips") << u"mnuDenPrint"_s << u"mnuInvoice mnuOut mnuShiire mnuMitsu"_s;
    QTest::newRow("shipping") << u"mnuInvoice"_s
                              << u"mnuTuhan mnuGift mnuRireki mnuTeisei mnuAdena mnuGiftMenu"_s;
    QTest::newRow("sales") << u"mnuOut"_s << u"mnuDenOut mnuBill mnuReceipt mnuDenOutAmd mnuReceiptAmd"_s;
    QTest::newRow("carried forward")
        << u"mnuKimatsu"_s << u"mnuUrikakeKurikoshi mnuUrikakeAMD mnuKaikakeKurikoshi mnuKaikakeAMD"_s;
}

void TestMainWindow::submenusHoldTheirItems()
{
    QFETCH(QString, menu);
    Stage stage;
    QStringList names;
    const auto actions = stage.find<QMenu>(menu.toLatin1().constData())->actions();
    for (const QAction *action : actions)
        names << (action->menu() ? action->menu()->objectName() : action->objectName());
    QTEST(names.join(u' '), "items");
}

void TestMainWindow::nobodyEmployedOpensTheEditor()
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

void TestMainWindow::oneOfSeveralIsChosenByTheClerk()
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

void TestMainWindow::theOnlyEmployeeIsInCharge()
{
    Stage stage([](FreshShop &shop) { shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (3, '佐藤')"_s); });
    QCOMPARE(stage.find<QLineEdit>("txtShainID")->text(), u"3"_s);
    QCOMPARE(stage.shop.workspace.panel.employeeName, u"佐藤"_s);
}

void TestMainWindow::nobodyChosenPutsTheCursorThere()
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
void TestMainWindow::slipsToLookAtAreToldAtTheStart()
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

void TestMainWindow::missingCompanyIsAskedForAndGoesOn()
{
    Stage stage(employOne);
    stage.whenOpened = [&stage](Action action) {
        if (action == Action::OwnCompany)
            stage.shop.run(u"INSERT INTO 自社情報 (会社ID, 会社名1) VALUES (1, 'ほのぼの商店')"_s);
    };
    ui::prompts::expectInform(noCompany);
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

void TestMainWindow::slipGuard_data()
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

void TestMainWindow::slipGuard()
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

void TestMainWindow::employeesFollowTheTable()
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

void TestMainWindow::enterPressesAndMovesOn()
{
    Stage stage(employOne);
    QTRY_VERIFY(stage.window->isActiveWindow());
    auto *button = stage.find<QPushButton>("Command27");
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Return);
    QCOMPARE(stage.opened, QList<Action>{Action::Bill});
    auto *infix = stage.find<QLineEdit>("txtDenNo");
    infix->setFocus();
    QTest::keyClick(infix, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(stage.window->focusWidget(), stage.find<QLineEdit>("txtTaxRate"));
}

void TestMainWindow::aWheelTurnedInPassingChoosesNothing()
{
    Stage stage([](FreshShop &shop) {
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (7, '山田'), (8, '木村')"_s);
        shop.settings.write(workspace::keys::employee, 7);
    });
    stage.find<QLineEdit>("txtDenNo")->setFocus();
    int turned = 0;
    const auto lists = stage.window->findChildren<QComboBox *>();
    for (QComboBox *list : lists) {
        const int before = list->currentIndex();
        turnWheelOver(*list);
        QVERIFY2(list->currentIndex() == before, qPrintable(list->objectName()));
        turned += list->count() > 1 ? 1 : 0;
    }
    QVERIFY(turned >= 4);
    QCOMPARE(stage.shop.settings.text(workspace::keys::employee), u"7"_s);
}

void TestMainWindow::settingsRoundTrip()
{
    Stage stage(employOne);
    for (int i = 1; i <= 8; ++i) {
        auto *check = stage.find<QCheckBox>(u"Check%1"_s.arg(i).toLatin1().constData());
        QCOMPARE(check->isChecked(), i <= 2);
        check->setChecked(i > 2);
    }
    stage.find<QComboBox>("Combo2")->setCurrentText(u"A4 無地"_s);
    stage.find<QComboBox>("Combo7")->setCurrentText(u"A4 無地"_s);
    stage.find<QComboBox>("Combo6")->setCurrentText(u"宅急便"_s);
    stage.find<QLineEdit>("txtDenNo")->setText(u"R8-"_s);
    stage.click("Command37");
    stage.click("Command15");
    const workspace::Panel &panel = stage.shop.workspace.panel;
    QCOMPARE(panel.automaticNumbers, false);
    QCOMPARE(panel.omitCompanyName, true);
    QCOMPARE(panel.deliveryPaper, u"A4 無地"_s);
    QCOMPARE(panel.numberInfix, u"R8-"_s);
    QVERIFY(stage.window->close());

    frmAMain again(stage.shop.workspace, {});
    again.load(u'"' + stage.shop.path(u"shop.cdb"_s) + u'"');
    for (int i = 1; i <= 8; ++i)
        QCOMPARE(again.findChild<QCheckBox *>(u"Check%1"_s.arg(i))->isChecked(), i > 2);
    QCOMPARE(again.findChild<QComboBox *>(u"Combo7"_s)->currentText(), u"A4 無地"_s);
    QCOMPARE(again.findChild<QComboBox *>(u"Combo6"_s)->currentText(), u"宅急便"_s);
    QCOMPARE(again.findChild<QLineEdit *>(u"txtDenNo"_s)->text(), u"R8-"_s);
    QCOMPARE(again.findChild<QLineEdit *>(u"Text6"_s)->text(), u"11"_s);
    QCOMPARE(again.findChild<QLineEdit *>(u"Text4"_s)->text(), u"グリッドの間隔　中"_s);
    QCOMPARE(stage.shop.settings.text(workspace::keys::employee), u"7"_s);
}

void TestMainWindow::nonsenseInSettings()
{
    Stage stage([](FreshShop &shop) {
        for (const workspace::SettingKey &key :
             {workspace::keys::mainLeft, workspace::keys::mainTop, workspace::keys::fontSize,
              workspace::keys::taxRate, workspace::keys::gridSize, workspace::keys::monthView,
              workspace::keys::monthViewColor, workspace::keys::deliveryPaper, workspace::keys::carrier,
              workspace::keys::employee, workspace::keys::check[0]})
            shop.settings.write(key, u"1e400 'x\";--"_s);
        shop.settings.writeLayout(u"frmAMain/size"_s, u"-1 999999999999 max"_s);
        shop.settings.write(workspace::keys::pictureFile, u"/nowhere/picture.png"_s);
    });
    const workspace::Panel &panel = stage.shop.workspace.panel;
    QCOMPARE(panel.taxRate, 0.0);
    QCOMPARE(panel.textSize, 10);
    QCOMPARE(panel.gridSpacing, workspace::GridSpacing::Small);
    QCOMPARE(panel.deliveryPaper, u"HISAGO 1149"_s);
    QCOMPARE(panel.carrier, u"佐川急便"_s);
    QCOMPARE(panel.automaticNumbers, false);
    QVERIFY(stage.find<QCalendarWidget>("MonthView1")->isHidden());
}

void TestMainWindow::taxRate_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("rate");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("ten") << u"10"_s << 10.0 << true;
    QTest::newRow("full width") << u"１０．５"_s << 10.5 << true;
    QTest::newRow("nothing") << u" "_s << 5.0 << false;
    QTest::newRow("word") << u"abc"_s << 5.0 << false;
    QTest::newRow("begins well") << u"8x"_s << 5.0 << false;
    QTest::newRow("infinite") << u"1e400"_s << 5.0 << false;
    QTest::newRow("dash") << u"-"_s << 5.0 << false;
    QTest::newRow("negative") << u"-3"_s << 5.0 << false;
    QTest::newRow("beyond") << u"101"_s << 5.0 << false;
}

void TestMainWindow::taxRate()
{
    QFETCH(QString, typed);
    QFETCH(bool, accepted);
    Stage stage;
    auto *box = stage.find<QLineEdit>("txtTaxRate");
    box->setFocus();
    box->selectAll();
    // As an input method hands it over: key events know no full-width characters.
    QInputMethodEvent input;
    input.setCommitString(typed);
    QCoreApplication::sendEvent(box, &input);
    if (!accepted)
        ui::prompts::expectInform({});
    QTest::keyClick(box, Qt::Key_Return);
    QTEST(stage.shop.workspace.panel.taxRate, "rate");
    QCOMPARE(box->text().toDouble(), stage.shop.workspace.panel.taxRate);
    // Kept at once: a power cut must not bring the old rate back.
    QCOMPARE(stage.shop.settings.number(workspace::keys::taxRate), stage.shop.workspace.panel.taxRate);
}

void TestMainWindow::sizesAlternate()
{
    Stage stage;
    auto *size = stage.find<QLineEdit>("Text6");
    auto *spacing = stage.find<QLineEdit>("Text4");
    QStringList sizes{size->text()};
    QStringList spacings{spacing->text()};
    for (int i = 0; i < 3; ++i) {
        stage.click("Command37");
        stage.click("Command15");
        sizes << size->text();
        spacings << spacing->text().right(1);
    }
    QCOMPARE(sizes.join(u' '), u"10 11 10 11"_s);
    QCOMPARE(spacings.join(u' '), u"グリッドの間隔　小 中 大 小"_s);
    QCOMPARE(stage.shop.workspace.panel.textSize, 11);
    QCOMPARE(stage.shop.workspace.panel.gridSpacing, workspace::GridSpacing::Small);
}

void TestMainWindow::noticeNeedsItsCarrier()
{
    Stage stage;
    QVERIFY(!stage.find<QCheckBox>("Check7")->isEnabled());
    stage.find<QComboBox>("Combo6")->setCurrentText(u"ゆうパック"_s);
    QVERIFY(stage.find<QCheckBox>("Check7")->isEnabled());
}

void TestMainWindow::calendarAndPicture()
{
    Stage stage;
    auto *calendar = stage.find<QCalendarWidget>("MonthView1");
    QVERIFY(calendar->isHidden());
    stage.click("Picture1");
    QVERIFY(!calendar->isHidden());
    QVERIFY(stage.find<QAction>("mnuMonthv")->isChecked());
    ui::file_dialogs::expectColor(QColor(1, 2, 3));
    stage.find<QAction>("mnuMonthvColor")->trigger();
    QCoreApplication::processEvents();
    QVERIFY2(calendar->findChild<QWidget *>(u"qt_calendar_yearbutton"_s)->x() <
                 calendar->findChild<QWidget *>(u"qt_calendar_monthbutton"_s)->x(),
             "the year stands before the month");

    const QString picture = stage.shop.path(u"picture.png"_s);
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(image.save(picture));
    ui::file_dialogs::expectFile(picture);
    stage.find<QAction>("mnuPicLoad")->trigger();
    // No picture: told, and the one before stays.
    ui::file_dialogs::expectFile(stage.shop.path(u"shop.cdb"_s));
    ui::prompts::expectInform({});
    stage.find<QAction>("mnuPicLoad")->trigger();

    QVERIFY(stage.window->close());
    QCOMPARE(stage.shop.settings.integer(workspace::keys::monthView), 1);
    QCOMPARE(stage.shop.settings.integer(workspace::keys::monthViewColor), 1 + 2 * 256 + 3 * 65536);
    QCOMPARE(stage.shop.settings.text(workspace::keys::pictureFile), picture);

    ui::prompts::expectInform(u"設定を有効にするには、ｱﾌﾟﾘｹｰｼｮﾝを終了してください。"_s);
    stage.window->show();
    stage.find<QAction>("mnuPSave")->trigger();
    QVERIFY(stage.window->close());
    QCOMPARE(stage.shop.settings.text(workspace::keys::pictureFile), QString());
}

void TestMainWindow::firstStepsLeadToTheFirstSlip()
{
    Stage stage;
    auto *steps = stage.find<QFrame>("fraFirstSteps");
    auto *picture = stage.find<QWidget>("Picture1");
    QVERIFY(steps->isVisible() && !picture->isVisible());
    const QMap<Action, QString> entered{
        {Action::OwnCompany, u"自社情報 (会社ID, 会社名1) VALUES (1, 'ほのぼの商店')"_s},
        {Action::Employees, u"社員 (社員ID, 社員名) VALUES (4, '佐藤')"_s},
        {Action::CustomerCategories, u"登録区分 (区分ID, 区分名) VALUES (1, '一般')"_s},
        {Action::Customers, u"納品先 (納品先ID, 納品先名1) VALUES (1, '東海林太郎')"_s},
        {Action::Sales, u"入出庫マスター (ID, 伝票番号) VALUES (1, 'O1')"_s}};
    stage.whenOpened = [&](Action action) { stage.shop.run(u"INSERT INTO "_s + entered.value(action)); };
    for (int i = 1; i <= 6; ++i) {
        const QByteArray name = "cmdStep" + QByteArray::number(i);
        auto *button = stage.find<QPushButton>(name.constData());
        QVERIFY2(button->text().startsWith(QString::number(i)), qPrintable(button->text()));
        stage.click(name.constData());
        if (i == 3) {
            QCOMPARE(stage.window->focusWidget(), stage.find<QLineEdit>("txtTaxRate"));
            QTest::keyClicks(stage.window->focusWidget(), u"10"_s);
            QTest::keyClick(stage.window->focusWidget(), Qt::Key_Return);
        }
        QVERIFY2(button->text().startsWith(u'✓'), qPrintable(button->text()));
        if (i < 6 && i != 3)
            QCOMPARE(stage.window->focusWidget()->objectName(), u"cmdStep%1"_s.arg(i + 1));
        QCOMPARE(steps->isVisible(), i < 6);
    }
    QVERIFY(picture->isVisible());
    QCOMPARE(stage.opened, (QList<Action>{Action::OwnCompany, Action::Employees, Action::CustomerCategories,
                                          Action::Customers, Action::Sales}));
}

void TestMainWindow::firstStepsKeepAway_data()
{
    QTest::addColumn<QString>("row");
    QTest::newRow("from a shop at work") << u"INSERT INTO 入出庫マスター (ID, 伝票番号) VALUES (1, 'O1')"_s;
    QTest::newRow("once closed") << QString();
}

void TestMainWindow::firstStepsKeepAway()
{
    QFETCH(QString, row);
    Stage stage([&row](FreshShop &shop) {
        employOne(shop);
        if (!row.isEmpty())
            shop.run(row);
    });
    auto *steps = stage.find<QFrame>("fraFirstSteps");
    QCOMPARE(steps->isVisible(), row.isEmpty());
    if (row.isEmpty())
        stage.click("cmdCloseSteps");
    QVERIFY(!steps->isVisible() && stage.find<QWidget>("Picture1")->isVisible());
    // Neither does another file bring them back.
    ui::file_dialogs::expectFile(stage.shop.path(u"copy.cdb"_s));
    stage.find<QAction>("mnuSave")->trigger();
    QVERIFY(!steps->isVisible());
}

// The file name stands in the status bar, whatever the pointer passes over.
void TestMainWindow::statusBarKeepsTheFile()
{
    Stage stage;
    const auto *bar = stage.find<QStatusBar>("StatusBar1");
    QVERIFY(bar->currentMessage().contains(u"shop.cdb"_s));
    stage.window->show();
    QMenuBar *menus = stage.window->menuBar();
    menus->setActiveAction(stage.find<QMenu>("mnuFileOpen")->menuAction());
    QTest::keyClick(stage.find<QMenu>("mnuFileOpen"), Qt::Key_Down);
    QTest::keyClick(stage.find<QMenu>("mnuFileOpen"), Qt::Key_Escape);
    QVERIFY(bar->currentMessage().contains(u"shop.cdb"_s));
}

void TestMainWindow::handOver()
{
    QTemporaryDir folder;
    const HandOver values{u"D:\\data\\店.cdb"_s, u"7"_s, {}, u"12"_s, 11, u"10"_s, u"R8-"_s};
    QVERIFY(writeHandOver(folder.path(), values));
    QFile file(folder.filePath(u"SendData.txt"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    file.close();
    QCOMPARE(text::fromCp932(content).value(), u"D:\\data\\店.cdb\r\n7\r\n\r\n12\r\n11\r\n10\r\nR8-\r\n"_s);

    // What the other program could not read is told; the file stays as it was.
    QVERIFY(!writeHandOver(folder.path(), {u"/😀.cdb"_s, {}, {}, {}, 10, {}, {}}));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), content);
}

// Whom a screen dealt with last; in another file the numbers mean nobody.
void TestMainWindow::counterpartsAreHandedOver()
{
    Stage stage([](FreshShop &shop) {
        employOne(shop);
        shop.run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 仕入先名2) VALUES (12, '山形果樹', '仙台店')"_s);
    });
    stage.whenOpened = [&stage](Action action) {
        const book::Party party = action == Action::Purchase ? book::Party::Supplier : book::Party::Customer;
        registers::rememberCounterpart(stage.shop.workspace, party, action == Action::Purchase ? 12 : 34);
    };
    stage.click("Command39");
    stage.click("Command27");
    QCOMPARE(stage.find<QLineEdit>("txtShiireID")->text(), u"12"_s);
    QCOMPARE(stage.find<QLineEdit>("Text3")->text(), u"山形果樹"_s);
    QCOMPARE(stage.find<QLineEdit>("Text5")->text(), u"仙台店"_s);
    QCOMPARE(stage.find<QLineEdit>("txtNouhinID")->text(), u"34"_s);

    ui::file_dialogs::expectFile(stage.shop.path(u"copy.cdb"_s));
    stage.find<QAction>("mnuSave")->trigger();
    QCOMPARE(stage.find<QLineEdit>("txtNouhinID")->text(), QString());
    QCOMPARE(stage.find<QLineEdit>("txtShiireID")->text(), QString());
    // The people of the copy are the same.
    QCOMPARE(stage.shop.workspace.panel.employeeId, 7);
    QCOMPARE(stage.find<QComboBox>("dbcShain")->currentText(), u"山田"_s);
}

void TestMainWindow::companionsThatAreMissing()
{
    Stage nothing({}, {Action::ReceivableLedger});
    QVERIFY(!nothing.find<QAbstractButton>("Command5")->isEnabled());

    // A screen of our own does in the other program's place.
    Stage own;
    own.click("Command5");
    own.click("Label20");
    QTest::keyClick(own.find<QMenu>("mnuLedgers"), Qt::Key_I);
    own.find<QAction>("mnuZip")->trigger();
    own.click("Label21");
    QCOMPARE(own.opened, (QList<Action>{Action::ReceivableLedger, Action::PayableLedger, Action::PostalCodes,
                                        Action::PostalCodes}));
    QVERIFY(!QFile::exists(own.shop.path(u"SendData.txt"_s)));

    Stage installed([](FreshShop &shop) {
        QFile program(companionFile(shop.folder.path(), Companion::Ledger));
        if (!program.open(QIODevice::WriteOnly) || program.write("#!/bin/sh\nexit 0\n") < 0)
            qFatal("no program");
        program.setPermissions(program.permissions() | QFile::ExeOwner);
    });
    installed.click("Label20");
    QVERIFY(QFile::remove(installed.shop.path(u"SendData.txt"_s)));
    installed.find<QAction>("mnuOutMoto")->trigger();
    QVERIFY(QFile::exists(installed.shop.path(u"SendData.txt"_s)));
    QVERIFY(installed.opened.isEmpty());
}

QTEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
