#include "registers/customer_desk.h"
#include "registers/duplicates/DialogNameless.h"
#include "registers/duplicates/nameless_rows.h"
#include "registers/frmSiire.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

using namespace registers;
using book::Party;

namespace
{

QList<qint64> keysOf(const std::vector<NamelessRow> &rows)
{
    QList<qint64> keys;
    for (const NamelessRow &row : rows)
        keys << row.id;
    return keys;
}

qint64 counted(FreshShop &shop, Party party)
{
    NamelessCount count(shop.connection, party);
    while (!count.isComplete()) {
        if (!count.readOn())
            return -1;
    }
    return count.count();
}

} // namespace

/// Rows of the registers that were left without a name.
class TestNameless : public ScriptedTest
{
    Q_OBJECT

private slots:
    void listsAndDeletesWhatNobodyUses()
    {
        FreshShop shop;
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名2, 住所1) VALUES (1, '山田', NULL, NULL), "
            "(2, NULL, NULL, '港区'), (3, ' 　 ', '', NULL), (4, NULL, '本店', NULL), (5, '', NULL, NULL), "
            "(6, NULL, NULL, NULL), (8, NULL, NULL, NULL)"_s);
        shop.run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1) VALUES (2, NULL), (3, '農園')"_s);
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (1, 'O1', 5), (2, 'I2', 3), (3, 'M3', 2)"_s);
        shop.run(u"INSERT INTO 発送マスター (発送ID, 納品先ID, 依頼主ID) VALUES (1, 6, NULL), (2, 1, 8)"_s);
        const auto customers = namelessRows(shop.connection, Party::Customer, 10);
        QVERIFY(customers);
        QCOMPARE(keysOf(*customers), QList<qint64>({2, 3, 5, 6, 8}));
        QCOMPARE(customers->front().slips, 1);
        QCOMPARE(customers->front().address, u"港区"_s);
        QCOMPARE(keysOf(*namelessRows(shop.connection, Party::Customer, 2)), QList<qint64>({6, 8}));
        QCOMPARE(counted(shop, Party::Customer), 5);
        QCOMPARE(counted(shop, Party::Supplier), 1);
        const auto deleted = deleteNameless(shop.connection, Party::Customer, {1, 2, 3, 4, 5, 6, 7, 8});
        QVERIFY(deleted);
        QCOMPARE(*deleted, 1);
        QCOMPARE(shop.rows(u"SELECT 納品先ID FROM 納品先 ORDER BY 納品先ID"_s).join(u' '), u"1 2 4 5 6 8"_s);
        QCOMPARE(*deleteNameless(shop.connection, Party::Supplier, {2, 3}), 1);
        QCOMPARE(shop.rows(u"SELECT 仕入先ID FROM 仕入先"_s), QStringList{u"3"_s});
    }

    void countsALargeRegisterInPieces()
    {
        FreshShop shop;
        shop.run(
            u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 12000) "
            "INSERT INTO 仕入先 (仕入先ID, 仕入先名1) SELECT 3 * i, CASE WHEN i % 100 = 0 THEN NULL ELSE 'x' "
            "END FROM n"_s);
        QCOMPARE(counted(shop, Party::Supplier), 120);
    }

    // Left by 新規登録 and the window's close button, as it is prescribed; the register leads to it.
    void theRegisterLeadsToThem()
    {
        CustomerDesk r(CustomerDesk::Customers);
        QPushButton &button = r.the<QPushButton>("cmdNameless");
        QVERIFY(!button.isVisible());
        r.shop.run(
            u"INSERT INTO 納品先 (納品先ID, 区分ID, 更新日) VALUES (77, 1, '2020-01-01'), (78, 1, '2020-01-01')"_s);
        r.screen.hide();
        r.show();
        QTRY_VERIFY(button.isVisible());
        QCOMPARE(button.text(), u"名前のない納品先 2 件(&L)"_s);

        QTimer::singleShot(0, &r.screen, [] {
            auto *dialog = qobject_cast<DialogNameless *>(QApplication::activeModalWidget());
            ScreenDriver driver(dialog);
            auto &grid = driver.the<ui::ReportGrid>("gridRows");
            grid.setCurrentIndex(grid.model()->index(1, 0));
            ui::prompts::expectAskCautiously({}, false);
            driver.press("cmdDelete");
            ui::prompts::expectAskCautiously({}, true);
            driver.press("cmdDelete");
            QCOMPARE(grid.rowCount(), 1);
            driver.press("cmdFill");
        });
        r.press("cmdNameless");
        QCOMPARE(r.box("txtID").text(), u"77"_s);
        QTRY_COMPARE(r.screen.focusWidget(), &r.box("txtName"));
        r.type("txtName", u"佐藤商店"_s);
        r.press("cmdNewDate");
        QCOMPARE(r.shop.rows(u"SELECT 納品先名1 FROM 納品先 WHERE 納品先ID >= 77"_s),
                 QStringList{u"佐藤商店"_s});
        QTRY_VERIFY(!button.isVisible());
    }

    // Another program deletes the row that is to be filled in: the boxes stay those of whom they were.
    void theRowIsGone()
    {
        CustomerDesk r(CustomerDesk::Customers);
        r.shop.run(u"INSERT INTO 納品先 (納品先ID, 区分ID, 更新日) VALUES (77, 1, '2020-01-01')"_s);
        r.screen.hide();
        r.show();
        QTRY_VERIFY(r.the<QPushButton>("cmdNameless").isVisible());
        r.press("Command6");
        r.goTo(2);
        QCOMPARE(r.box("txtID").text(), u"2"_s);
        QTimer::singleShot(0, &r.screen, [&r] {
            ScreenDriver driver(qobject_cast<DialogNameless *>(QApplication::activeModalWidget()));
            r.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 77"_s);
            ui::prompts::expectInform(u"選んだ行は、ほかのパソコンで削除されています。"_s);
            driver.press("cmdFill");
        });
        r.press("cmdNameless");
        QCOMPARE(r.box("txtID").text(), u"2"_s);
        QVERIFY(!r.box("txtName").hasFocus());
    }

    void suppliersToo()
    {
        FreshShop shop;
        shop.run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1) VALUES (1, '農園'), (2, NULL)"_s);
        frmSiire screen(shop.workspace);
        ScreenDriver driver(&screen);
        driver.show();
        QTRY_VERIFY(driver.the("cmdNameless").isVisible());
        QTimer::singleShot(0, &screen,
                           [] { ScreenDriver(QApplication::activeModalWidget()).press("cmdFill"); });
        driver.press("cmdNameless");
        QCOMPARE(driver.box("txtID").text(), u"2"_s);
        QTRY_COMPARE(screen.focusWidget(), &driver.box("txtName1"));
    }
};

QTEST_MAIN(TestNameless)
#include "tst_nameless.moc"
