#include "app/main_window/command_panel.h"
#include "app/main_window/main_window_stage.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"

#include <QAction>
#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTest>

namespace
{

using Stage = MainWindowStage;

} // namespace

// The settings beside the commands, and the calendar and picture below them.
class TestSettingsPanel : public ScriptedTest
{
    Q_OBJECT

private slots:
    void settingsRoundTrip();
    void aWheelTurnedInPassingChoosesNothing();
    void nonsenseInSettings();
    void taxRate_data();
    void taxRate();
    void rateOfTheTable();
    void sizesAlternate();
    void noticeNeedsItsCarrier();
    void calendarAndPicture();
};

void TestSettingsPanel::settingsRoundTrip()
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

void TestSettingsPanel::aWheelTurnedInPassingChoosesNothing()
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

void TestSettingsPanel::nonsenseInSettings()
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

void TestSettingsPanel::taxRate_data()
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

void TestSettingsPanel::taxRate()
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

// The shop's own rate waits behind that of the table, which changes with the days.
void TestSettingsPanel::rateOfTheTable()
{
    Stage stage;
    auto *box = stage.find<QLineEdit>("txtTaxRate");
    auto *follows = stage.find<QCheckBox>("chkTaxTable");
    QVERIFY(!follows->isChecked());
    stage.find<QCheckBox>("chkTaxTable")->click();
    QCOMPARE(box->text(), u"10"_s);
    QVERIFY(box->isReadOnly());
    QVERIFY(!stage.find<QWidget>("UpDown1")->isEnabled());
    box->setFocus();
    QTest::keyClicks(box, u"3"_s);
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(box->text(), u"10"_s);
    QVERIFY(stage.shop.settings.checked(workspace::keys::taxTable));
    QCOMPARE(stage.shop.settings.number(workspace::keys::taxRate), 5.0);

    // The editor of the table was open meanwhile.
    stage.whenOpened = [&](Action) { stage.shop.run(u"UPDATE 税率 SET 税率 = 12 WHERE 税率ID = 4"_s); };
    stage.click("cmdTaxRates");
    QCOMPARE(stage.opened, QList<Action>{Action::TaxRates});
    QCOMPARE(box->text(), u"12"_s);

    stage.find<QCheckBox>("chkTaxTable")->click();
    QCOMPARE(box->text(), u"5"_s);
    QVERIFY(!box->isReadOnly());
}

void TestSettingsPanel::sizesAlternate()
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

void TestSettingsPanel::noticeNeedsItsCarrier()
{
    Stage stage;
    QVERIFY(!stage.find<QCheckBox>("Check7")->isEnabled());
    stage.find<QComboBox>("Combo6")->setCurrentText(u"ゆうパック"_s);
    QVERIFY(stage.find<QCheckBox>("Check7")->isEnabled());
}

void TestSettingsPanel::calendarAndPicture()
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

QTEST_MAIN(TestSettingsPanel)
#include "tst_settings_panel.moc"
