#include "address_desk.h"

#include "registers/lists/supplementary_file.h"
#include "shipping/addresses/DialogHagakiB.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QLabel>
#include <QRadioButton>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace shipping;
namespace keys = workspace::keys;

namespace
{

struct BulkDesk : AddressDesk
{
    explicit BulkDesk(int customers)
    {
        for (int id = 1; id <= customers; ++id)
            addCustomer(id, u"客　%1"_s.arg(id, 2, 10, QChar(u'0')), u"380-0821"_s, u"長野市%1-2"_s.arg(id),
                        {}, id % 2 == 0 ? 1 : 7);
    }

    void open()
    {
        driver.reset();
        dialog = std::make_unique<DialogHagakiB>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(dialog.get());
        driver->show();
    }
    void listAll() const { driver->choose("Combo1", 0); }
    void print()
    {
        answer({{u"DialogPrint"_s, u"cmdPrint"_s}});
        driver->press("cmdPrint");
    }
    QString count() const { return driver->the<QLabel>("lblCount").text(); }
    /// The columns of \a row from the tick on, "1|客　０１　様|380-0821|…".
    QString row(int row) const
    {
        const QAbstractItemModel &model = *driver->the<ui::Grid>("grdAddresses").model();
        QStringList cells{model.index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked ? u"1"_s
                                                                                              : u"0"_s};
        for (int column = 1; column < model.columnCount(); ++column)
            cells << model.index(row, column).data().toString();
        return cells.join(u'|');
    }

    std::unique_ptr<DialogHagakiB> dialog;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestDialogHagakiB : public ScriptedTest
{
    Q_OBJECT

private slots:
    void whoIsMarkedIsWhoTheQueueTook_data()
    {
        QTest::addColumn<bool>("labels"); // from the place 11 of 12 on, else cards
        QTest::addColumn<int>("most");    // jobs
        QTest::addColumn<bool>("clerkStops");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("printed"); // of 45
        const QString all = u"すべてのデータを排出しました。"_s;
        QTest::newRow("cards") << false << 99 << false << all << 45;
        QTest::newRow("refused at once") << false << 0 << false << QString() << 0;
        QTest::newRow("refused in the middle") << false << 1 << false << QString() << 20;
        QTest::newRow("stopped in the middle") << false << 2 << true << u"中止しました。"_s << 40;
        QTest::newRow("labels") << true << 99 << false << all << 45;
        QTest::newRow("labels, stopped in the middle") << true << 2 << true << u"中止しました。"_s << 14;
    }

    void whoIsMarkedIsWhoTheQueueTook()
    {
        QFETCH(bool, labels);
        QFETCH(int, printed);
        QFETCH(QString, text);
        BulkDesk desk(45);
        QFETCH(int, most);
        QFETCH(bool, clerkStops);
        desk.printers->most = most;
        desk.printers->clerkStops = clerkStops;
        desk.shop.settings.write(keys::addressPaper, labels ? u"宛名ラベル"_s : u"はがき"_s);
        desk.shop.settings.write(keys::labelPlace, 11);
        desk.open();
        desk.listAll();
        QCOMPARE(desk.count(), u"45件のうち 45件"_s);
        ui::prompts::expectInform(text, ui::prompts::anyRemark);
        desk.print();
        QStringList expected;
        for (int id = 1; id <= printed; ++id)
            expected << u"%1|2026-04-01|%2"_s.arg(id).arg(labels ? u"宛名ラベル"_s : u"はがき"_s);
        QCOMPARE(desk.marks(), expected);
        QCOMPARE(desk.count(), u"45件のうち %1件"_s.arg(45 - printed));
        // What is left is printed by the next press, and nobody twice.
        desk.printers->most = 99;
        if (printed < 45) {
            ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
            desk.print();
        }
        QCOMPARE(desk.marks().size(), 45);
        QVERIFY(!desk.driver->the<QPushButton>("cmdPrint").isEnabled());
        // Ten places were gone, and 45 taken: the eighth of another sheet is free.
        QCOMPARE(desk.shop.settings.integer(keys::labelPlace), labels ? (10 + 45) % 12 + 1 : 11);
    }

    void whoWasPrintedCanBeLeftOut()
    {
        BulkDesk desk(3);
        desk.shop.run(u"INSERT INTO 宛名印刷 (納品先ID, 印刷日, 用紙) VALUES (1, '2025-12-01', 'はがき'), "
                      "(2, '2026-03-20', 'はがき'), (2, '2025-01-01', 'はがき'), (3, 'いつか', 'はがき')"_s);
        desk.open();
        desk.listAll();
        QCOMPARE(desk.row(1), u"1|客　０２　様|380-0821|2026/03/20||長野市2-2"_s);
        desk.driver->press("Check1");
        QCOMPARE(desk.count(), u"2件のうち 2件　印刷済のため出していない宛名 1件"_s);
        QCOMPARE(desk.row(1), u"1|客　０３　様|380-0821|||長野市3-2"_s);
        desk.driver->the<QDateEdit>("DTPicker1").setDate(QDate(2025, 12, 1));
        QCOMPARE(desk.count(), u"1件のうち 1件　印刷済のため出していない宛名 2件"_s);
        ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
        desk.print();
        QCOMPARE(desk.marks().size(), 5);
    }

    void whoCannotBeAddressedIsListedAndNotPrinted()
    {
        BulkDesk desk(2);
        desk.addCustomer(3, u"　"_s, u"380-0821"_s, u"長野市"_s);
        desk.addCustomer(4, u"佐藤"_s, u"38008"_s, u"松本市"_s);
        desk.addCustomer(5, u"高橋"_s, u"380-0821"_s, u" "_s);
        desk.open();
        desk.listAll();
        QCOMPARE(desk.count(), u"5件のうち 3件"_s);
        QCOMPARE(desk.row(2), u"0||380-0821||名前がありません|長野市"_s);
        QVERIFY(desk.row(3).startsWith(u"1|佐藤　様|38008||郵便番号「38008」は"_s));
        QCOMPARE(desk.row(4), u"0|高橋　様|380-0821||住所がありません|"_s);
        // Neither the blank bar nor "all" ticks them.
        auto &grid = desk.driver->the<ui::Grid>("grdAddresses");
        grid.setFocus();
        desk.driver->key(Qt::Key_Space);
        QVERIFY(desk.row(0).startsWith(u"0|客　０１"_s));
        grid.setCurrentIndex(grid.model()->index(4, 1));
        desk.driver->key(Qt::Key_Space);
        desk.driver->press("cmdTickAll");
        QCOMPARE(desk.count(), u"5件のうち 3件"_s);
        ui::prompts::expectInform(u"すべてのデータを排出しました。"_s,
                                  u"3件のうち 3件 の宛名を印刷しました。\n次の納品先は印刷していません。\n"
                                  "ID 3：名前がありません\n高橋　様：住所がありません\n"
                                  "次の宛名を確かめてください。\n佐藤　様：郵便番号「38008」は 7 "
                                  "桁の数字として読み取れないため、印刷しません"_s);
        desk.print();
        QCOMPARE(desk.marks().size(), 3);
    }

    void categoriesAndRostersAreSelections()
    {
        BulkDesk desk(6);
        desk.open();
        desk.driver->choose("Combo1", 1);
        desk.driver->choose("comboNames", u"得意先"_s);
        desk.driver->press("Command2");
        QCOMPARE(desk.count(), u"3件のうち 3件"_s);
        // A wrong file is told, and the list stays.
        QFile none(desk.shop.path(u"list.csv"_s));
        QVERIFY(none.open(QIODevice::WriteOnly) && none.write("a,b\n") > 0);
        none.close();
        ui::file_dialogs::expectFile(none.fileName());
        ui::prompts::expectInform(
            u"「%1」は補助名簿ではありません。「補助名簿作成」で作ったファイルを選んでください。"_s.arg(
                none.fileName()));
        desk.driver->press("cmdRoster");
        QCOMPARE(desk.count(), u"3件のうち 3件"_s);
        const QString roster = desk.shop.path(u"roster.cdb"_s);
        QVERIFY(registers::writeSupplementaryFile(desk.shop.connection, {2, 5}, roster));
        ui::file_dialogs::expectFile(roster);
        desk.driver->press("cmdRoster");
        QCOMPARE(desk.count(), u"2件のうち 2件"_s);
        ui::prompts::expectInform(u"すべてのデータを排出しました。"_s, ui::prompts::anyRemark);
        desk.print();
        QCOMPARE(desk.marks(), (QStringList{u"2|2026-04-01|はがき"_s, u"5|2026-04-01|はがき"_s}));
    }

    // Who is nobody of the register does not say that he was printed: nothing remembers it.
    void strangersOfARosterAreToldOf()
    {
        BulkDesk desk(3);
        const QString roster = desk.shop.path(u"roster.cdb"_s);
        QVERIFY(registers::writeSupplementaryFile(desk.shop.connection, {1, 2, 3}, roster));
        desk.shop.run(u"UPDATE 納品先 SET 納品先名1 = '名前だけ' WHERE 納品先ID = 1"_s);
        desk.shop.run(u"UPDATE 納品先 SET 納品先名1 = '別', 住所1 = '松本市' WHERE 納品先ID = 2"_s);
        desk.open();
        ui::file_dialogs::expectFile(roster);
        desk.driver->press("cmdRoster");
        ui::prompts::expectInform(u"すべてのデータを排出しました。"_s,
                                  u"3件のうち 3件 の宛名を印刷しました。\n次の宛名を確かめてください。\n"
                                  "客　０２　様：登録の納品先ではないため、印刷済は残りません"_s);
        desk.print();
        QCOMPARE(desk.marks(), (QStringList{u"1|2026-04-01|はがき"_s, u"3|2026-04-01|はがき"_s}));
        QVERIFY(desk.row(0).startsWith(u"0|客　０１　様|380-0821|2026/04/01|"_s));
        QVERIFY(desk.row(1).startsWith(u"0|客　０２　様|380-0821||登録の"_s));
    }

    void whatWasLeftAtThePrintDialogIsNotMarked()
    {
        BulkDesk desk(2);
        desk.open();
        desk.listAll();
        desk.answer({{u"DialogPrint"_s, u"cmdCancel"_s}});
        desk.driver->press("cmdPrint");
        QCOMPARE(desk.marks(), QStringList());
        QCOMPARE(desk.count(), u"2件のうち 2件"_s);
        // Where nobody can be marked, nothing is printed.
        desk.shop.fireTriggers();
        desk.shop.run(
            u"CREATE TRIGGER full BEFORE INSERT ON 宛名印刷 BEGIN SELECT RAISE(ABORT, 'full'); END"_s);
        ui::prompts::expectInform({}, ui::prompts::anyRemark);
        desk.print();
        QVERIFY(desk.printers->given.empty());
        desk.shop.run(u"DROP TRIGGER full"_s);
    }

    void theChoicesAreKept()
    {
        BulkDesk desk(1);
        desk.addCustomer(2, u"㈱みすず"_s, u"380-0821"_s, u"長野市"_s, u"小林"_s);
        desk.open();
        desk.listAll();
        QVERIFY(desk.row(1).startsWith(u"1|㈱みすず　御中|"_s));
        desk.driver->press("Check2");
        QVERIFY(desk.row(1).startsWith(u"1|㈱みすず　小林　様|"_s));
        desk.driver->choose("cmbPaper", u"封筒　長形3号"_s);
        desk.driver->press("optHorizontal");
        for (const char *option : {"Aop1", "Aop5"})
            desk.driver->press(option);
        QVERIFY(!desk.driver->the<QCheckBox>("Aop2").isEnabled()); // of columns
        desk.driver->type("Text7", u"3"_s);
        desk.driver->key(Qt::Key_Escape);
        desk.open();
        QCOMPARE(desk.driver->list("cmbPaper").currentText(), u"封筒　長形3号"_s);
        QVERIFY(desk.driver->the<QRadioButton>("optHorizontal").isChecked());
        QVERIFY(desk.driver->the<QCheckBox>("Check2").isChecked());
        QVERIFY(!desk.driver->the<QCheckBox>("Aop1").isChecked());
        QCOMPARE(desk.driver->box("Text7").text(), u"3"_s);
        QCOMPARE(desk.shop.settings.text(keys::hagakiAop[4]), u"0"_s);
        // Labels are written across alone.
        desk.driver->choose("cmbPaper", u"宛名ラベル"_s);
        QVERIFY(!desk.driver->the<QRadioButton>("optVertical").isEnabled());
    }
};

QTEST_MAIN(TestDialogHagakiB)
#include "tst_dialoghagakib.moc"
