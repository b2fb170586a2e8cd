#include "app/main_window/command_panel.h"
#include "app/main_window/companions.h"
#include "app/main_window/main_window_stage.h"
#include "app/main_window/screens.h"
#include "registers/last_counterparts.h"
#include "support/postal_files.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "text/cp932.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

namespace
{

using Stage = MainWindowStage;

const QString byTable = u"消費税率を、税率表（標準・軽減、日付ごと）から自動で決めますか。"_s;

} // namespace

class TestMainWindow : public ScriptedTest
{
    Q_OBJECT

private slots:
    void everyCommandHasItsPlace();
    void commandsWithoutAScreenAreDisabled();
    void submenusHoldTheirItems_data();
    void submenusHoldTheirItems();
    void enterPressesAndMovesOn();
    void firstStepTakesTheRatesOfTheTable();
    void firstStepsLeadToTheFirstSlip();
    void firstStepLeavesTheCursorAtARefusal();
    void firstStepsKeepAway_data();
    void firstStepsKeepAway();
    void statusBarKeepsTheFile();
    void handOver();
    void counterpartsAreHandedOver();
    void theOwnAddressComesFromItsCode();
    void companionsThatAreMissing();
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
        << u"mnuKimatsu"_s
        << u"mnuUrikakeKurikoshi mnuUrikakeAMD mnuUrikakeReport mnuKaikakeKurikoshi mnuKaikakeAMD mnuKaikakeReport"_s;
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

// Who goes back is asked again.
void TestMainWindow::firstStepTakesTheRatesOfTheTable()
{
    Stage stage;
    auto *button = stage.find<QPushButton>("cmdStep3");
    ui::prompts::expectAskWhichWay(byTable, QString());
    stage.click("cmdStep3");
    QVERIFY(button->text().startsWith(u'3'));
    QVERIFY(!stage.shop.workspace.panel.followsTaxTable);
    ui::prompts::expectAskWhichWay(byTable, u"税率表に従う"_s);
    stage.click("cmdStep3");
    QVERIFY(button->text().startsWith(u'✓'));
    QCOMPARE(stage.find<QLineEdit>("txtTaxRate")->text(), u"10"_s);
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
        button->setFocus();
        if (i == 3)
            ui::prompts::expectAskWhichWay(byTable, u"税率を入力する"_s);
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

void TestMainWindow::firstStepLeavesTheCursorAtARefusal()
{
    Stage stage([](FreshShop &shop) {
        shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (1, '佐藤'), (2, '木村')"_s);
    });
    stage.find<QPushButton>("cmdStep6")->setFocus();
    ui::prompts::expectInform(u"担当者が選択されていません。"_s);
    stage.click("cmdStep6");
    QCOMPARE(stage.window->focusWidget(), stage.find<QComboBox>("dbcShain"));
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

// As in the registers.
void TestMainWindow::theOwnAddressComesFromItsCode()
{
    FreshShop shop;
    PostalFiles::writeEntries(shop.folder.path(), u"ZipCode1.txt"_s, {u"380-0823  長野県長野市南千歳"_s});
    shop.run(u"INSERT INTO 自社情報 (会社ID, 会社名1) VALUES (1, '山田茶舗')"_s);
    QString address;
    bool isLocked = true;
    QTimer::singleShot(0, qApp, [&] {
        ScreenDriver screen(QApplication::activeModalWidget());
        (void)QTest::qWaitForWindowActive(QApplication::activeModalWidget()); // boxes are left only there
        isLocked = !screen.the("cmdZip").isEnabled();
        screen.press("cmdEdit");
        screen.type("txtZip", u"３８０ー０８２３"_s);
        screen.leave("txtZip");
        QTest::qWait(20);
        address = screen.box("txtZip").text() + screen.box("txtAddress1").text();
        ui::prompts::expectAskToSave({}, ui::prompts::Choice::Save);
        QApplication::activeModalWidget()->close();
    });
    screenOpeners().at(Action::OwnCompany)(nullptr, shop.workspace);
    QVERIFY(isLocked);
    QCOMPARE(address, u"380-0823長野県長野市南千歳"_s);
    QCOMPARE(shop.value(u"SELECT 住所1 FROM 自社情報"_s).toString(), u"長野県長野市南千歳"_s);
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
