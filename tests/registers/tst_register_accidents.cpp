// What a hand does by accident on the screens of the registers, and that the file is as it was.
#include "registers/duplicates/DialogDuplicates.h"
#include "registers/duplicates/DialogNameless.h"
#include "registers/frmNouhin.h"
#include "registers/frmSiire.h"
#include "registers/lists/frmNouhinDel.h"
#include "registers/lists/frmNouhinFind.h"
#include "registers/lists/frmNouhinSub.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLineEdit>
#include <QtTest>

using namespace Qt::StringLiterals;
using ui::prompts::Choice;

namespace
{

// Two customers that look like one, one of whom nothing is known, and two suppliers, one without a name.
void fill(FreshShop &shop)
{
    shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (2, '一般')"_s);
    shop.run(u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, 納品先名キー, 区分ID, 郵便番号, TEL1, "
             u"更新日, 締め日, "
             "消費税区分, 元帳出力, 版) VALUES "
             "(1, 'A1', '山田商店', '山田商店', 1, '100-0001', '03-1234-5678', '2026-02-03', 15, 1, 1, 1), "
             "(2, 'A2', '山田', '山田', 2, '100-0001', '03-1234-5678', '2026-02-02', 0, 1, 0, 1), "
             "(3, NULL, NULL, NULL, 1, NULL, NULL, '2026-02-01', 0, 0, 0, 1)"_s);
    shop.run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 仕入先名キー, 消費税区分, 版) VALUES "
             "(1, '農園', '農園', 2, 1), (2, NULL, NULL, 0, 1)"_s);
}

template <class Screen>
struct Desk : ScreenDriver
{
    template <class... Further>
    explicit Desk(Further... further)
        : ScreenDriver(nullptr)
    {
        fill(shop);
        screen = std::make_unique<Screen>(shop.workspace, further...);
        static_cast<ScreenDriver &>(*this) = ScreenDriver(screen.get());
        show();
        QCoreApplication::processEvents();
    }

    QStringList file()
    {
        return shop.rows(u"SELECT * FROM 納品先 ORDER BY 納品先ID"_s) +
               shop.rows(u"SELECT * FROM 仕入先 ORDER BY 仕入先ID"_s) +
               shop.rows(u"SELECT * FROM 登録区分 ORDER BY 区分ID"_s) +
               QDir(shop.path(u"."_s)).entryList({u"*.cdb"_s, u"*.log"_s}, QDir::Files);
    }
    void press(QAnyStringView name) { ScreenDriver::press(name); }
    void keys(std::initializer_list<Qt::Key> pressed)
    {
        for (const Qt::Key each : pressed)
            key(each);
    }
    void turnWheels()
    {
        const auto boxes = screen->template findChildren<QComboBox *>();
        for (QComboBox *box : boxes) {
            if (box->isVisible() && box->isEnabled())
                turnWheelOver(*box);
        }
    }
    void findEveryone()
    {
        list(u"Combo1").setFocus();
        choose(u"Combo1", 1);
        choose(u"Combo1", 0);
    }

    FreshShop shop;
    std::unique_ptr<Screen> screen;
};

const QString editsOpen = u"変更が保存されていません。保存しますか？"_s;

} // namespace

class TestRegisterAccidents : public ScriptedTest
{
    Q_OBJECT

private slots:
    // Esc again and again, the wheel over every list, keys that delete elsewhere.
    void customersFound()
    {
        Desk<registers::frmNouhinFind> desk;
        desk.findEveryone();
        const QStringList before = desk.file();
        desk.the<ui::Grid>(u"DataGrid1").setFocus();
        desk.turnWheels();
        desk.keys({Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Space, Qt::Key_Return});
        QCOMPARE(desk.file(), before);
        desk.type(u"txtMemo", u"改装中"_s);
        for (int press = 0; press < 2; ++press) {
            ui::prompts::expectAskToSave(editsOpen, Choice::Cancel);
            desk.key(Qt::Key_Escape);
        }
        QVERIFY(desk.screen->isVisible());
        QCOMPARE(desk.box(u"txtMemo").text(), u"改装中"_s);
        ui::prompts::expectAskToSave(editsOpen, Choice::Discard);
        desk.key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.file(), before);
    }

    // The row is left while its boxes are being filled, and another program has been at it.
    void customersFoundMeanwhile()
    {
        Desk<registers::frmNouhinFind> desk;
        desk.findEveryone();
        desk.type(u"txtMemo", u"改装中"_s);
        desk.shop.run(u"UPDATE 納品先 SET メモ = '移転', 版 = 7 WHERE 納品先ID = 1"_s);
        const QStringList before = desk.file();
        auto &grid = desk.the<ui::Grid>(u"DataGrid1");
        ui::prompts::expectAskWhichVersion({}, ui::prompts::Version::Undecided);
        grid.setCurrentIndex(grid.model()->index(1, 0));
        QCOMPARE(grid.currentIndex().row(), 0);
        QCOMPARE(desk.file(), before);
        desk.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 1"_s);
        const QStringList without = desk.file();
        ui::prompts::expectInform({});
        grid.setCurrentIndex(grid.model()->index(1, 0));
        QTest::qWait(1);
        QCOMPARE(desk.file(), without);
        if (desk.screen->isVisible() && desk.box(u"txtMemo").text() == u"改装中"_s)
            ui::prompts::expectAskToSave({}, Choice::Discard);
        desk.screen->reject();
    }

    void customersToDelete()
    {
        Desk<registers::frmNouhinDel> desk;
        desk.key(Qt::Key_Return); // before anything was searched
        desk.findEveryone();
        const QStringList before = desk.file();
        desk.turnWheels();
        desk.the<ui::Grid>(u"DataGrid1").setFocus();
        desk.keys({Qt::Key_Return, Qt::Key_Delete});
        desk.the<ui::Grid>(u"DataGrid1").setFocus();
        ui::prompts::expectAskCautiously({}, false, ui::prompts::anyRemark);
        desk.press(u"cmdDelete"); // and Enter, which says no
        QCOMPARE(desk.file(), before);
        desk.keys({Qt::Key_Escape, Qt::Key_Escape});
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.file(), before);
    }

    void fileOfSomeCustomers()
    {
        Desk<registers::frmNouhinSub> desk;
        desk.findEveryone();
        const QStringList before = desk.file();
        desk.turnWheels();
        ui::file_dialogs::expectFile({});
        desk.press(u"cmdMake");
        desk.key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.file(), before);
    }

    // Not the keys of the list, and not a question that is answered too quickly.
    void customersThatAreTwice()
    {
        Desk<registers::DialogDuplicates> desk;
        const QStringList before = desk.file();
        auto &grid = desk.the<ui::ReportGrid>(u"gridGroups");
        grid.setCurrentIndex(grid.model()->index(1, 0));
        grid.setFocus();
        desk.keys({Qt::Key_Return, Qt::Key_Delete, Qt::Key_Space});
        QTRY_VERIFY(desk.the(u"cmdMerge").isEnabled());
        ui::prompts::expectAskCautiously({}, false, ui::prompts::anyRemark);
        desk.press(u"cmdMerge");
        QCOMPARE(desk.file(), before);
        grid.setCurrentIndex(grid.model()->index(2, 0)); // and away before it is shown
        desk.keys({Qt::Key_Escape, Qt::Key_Escape});
        QVERIFY(!desk.screen->isVisible());
        QTest::qWait(200);
        QCOMPARE(desk.file(), before);
    }

    // Somebody else fills the row in while the question stands.
    void rowsWithoutAName()
    {
        Desk<registers::DialogNameless> desk(book::Party::Customer);
        const QStringList before = desk.file();
        auto &grid = desk.the<ui::ReportGrid>(u"gridRows");
        grid.setFocus();
        grid.selectRow(0);
        desk.keys({Qt::Key_Delete, Qt::Key_Space});
        ui::prompts::expectAskCautiously({}, false, ui::prompts::anyRemark);
        desk.press(u"cmdDelete");
        QCOMPARE(desk.file(), before);
        ui::prompts::expectAskCautiously({}, true, ui::prompts::anyRemark);
        ui::prompts::meanwhile(
            [&] { desk.shop.run(u"UPDATE 納品先 SET 納品先名1 = '佐藤' WHERE 納品先ID = 3"_s); });
        ui::prompts::expectInform({});
        desk.press(u"cmdDelete");
        QCOMPARE(desk.shop.rows(u"SELECT 納品先名1 FROM 納品先 WHERE 納品先ID = 3"_s),
                 QStringList{u"佐藤"_s});
        QCOMPARE(grid.rowCount(), 0);
        desk.keys({Qt::Key_Escape, Qt::Key_Escape});
        QVERIFY(!desk.screen->isVisible());
    }

    // A supplier given up twice, left while it is filled, and deleted by somebody else.
    void suppliers()
    {
        Desk<registers::frmSiire> desk;
        const QStringList before = desk.file();
        desk.box(u"txtName1").setFocus();
        desk.turnWheels();
        QCOMPARE(desk.file(), before);
        desk.type(u"txtTantou1", u"森"_s);
        for (int press = 0; press < 2; ++press) {
            ui::prompts::expectAskToSave(editsOpen, Choice::Cancel);
            desk.key(Qt::Key_Escape);
        }
        QVERIFY(desk.screen->isVisible());
        QCOMPARE(desk.file(), before);
        const int id = desk.box(u"txtID").text().toInt();
        desk.shop.run(u"DELETE FROM 仕入先 WHERE 仕入先ID = ?"_s, {id});
        const QStringList without = desk.file();
        ui::prompts::expectInform({});
        desk.press(u"cmdUpdate");
        QCOMPARE(desk.file(), without);
    }

    // A picture taken for a table, a table that is none, and Esc once too often.
    void import()
    {
        Desk<registers::frmNouhin> desk;
        const QStringList before = desk.file();
        const QString picture = desk.shop.path(u"写真.csv"_s);
        QFile file(picture);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\1\0", 20));
        file.close();
        ui::file_dialogs::expectFile(picture);
        ui::prompts::expectInform({});
        desk.press(u"Command1");
        QVERIFY(desk.the(u"DataGrid1").isVisible());

        QGuiApplication::clipboard()->setText(u"氏名\tTEL\n佐藤\t03-5\n森\t03-6\n"_s);
        desk.press(u"Command2");
        auto &rows = desk.the<ui::Grid>(u"MSFlexGrid1");
        QVERIFY(rows.isVisible());
        rows.setFocus();
        desk.turnWheels();
        desk.keys({Qt::Key_Return, Qt::Key_Delete});
        rows.setFocus();
        desk.key(Qt::Key_Escape);
        QVERIFY(!rows.isVisible() && desk.screen->isVisible());
        QCOMPARE(desk.file(), before);
        desk.keys({Qt::Key_Escape});
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.file(), before);
    }
};

QTEST_MAIN(TestRegisterAccidents)
#include "tst_register_accidents.moc"
