#include "db/care/plain_handle.h"
#include "registers/lists/customer_deletion.h"
#include "registers/lists/frmNouhinDel.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/grid.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QTimer>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

using registers::WithSlips;

// Customers 1 to 6, of which 1 and 2 have slips of their own; 3 and 4 share their numbers with suppliers that
// have some.
void fill(FreshShop &shop)
{
    shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先')"_s);
    shop.run(
        u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, TEL1, 区分ID) VALUES "
        "(1, '山田', '山田', '03-1', 1), (2, '佐藤', '佐藤', '03-2', 1), (3, '鈴木', '鈴木', '03-3', 1), "
        "(4, '田中', '田中', '06-4', 1), (5, '林', '林', '06-5', 1), (6, '森', '森', '06-6', 1)"_s);
    shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (1, 'O1', 1), (2, 'r2', 1), "
             "(3, 'Ｍ3', 2), (4, 'I4', 3), (5, 'P5', 4), (6, 'A6', 4), (7, 'T7', 4), (8, 'B8', NULL)"_s);
}

struct Deletion : ScreenDriver
{
    Deletion()
        : ScreenDriver(&screen)
    {
        fill(shop);
        show();
    }

    // Searches for every customer.
    void searchAll()
    {
        the<QComboBox>("Combo1").setFocus();
        choose("Combo1", 1);
        choose("Combo1", 0);
    }
    void searchTelephone(const QString &part)
    {
        list("Combo1").setCurrentText(u"TEL1"_s);
        type("txtKey", part);
        press("Command2");
    }
    QAbstractItemModel &model() { return *the<ui::Grid>("DataGrid1").model(); }
    // "1x 2 3": the customers listed, those ticked with an x, those that cannot be with a dash.
    QString listed()
    {
        QStringList rows;
        for (int row = 0; row < model().rowCount(); ++row) {
            const QModelIndex tick = model().index(row, 0);
            const bool ticked = tick.data(Qt::CheckStateRole).toInt() == Qt::Checked;
            const bool enabled = tick.flags() & Qt::ItemIsEnabled;
            rows << model().index(row, 2).data().toString() + (ticked    ? u"x"_s
                                                               : enabled ? QString()
                                                                         : u"-"_s);
        }
        return rows.join(u' ');
    }
    void toggle(int row)
    {
        auto &grid = the<ui::Grid>("DataGrid1");
        grid.setCurrentIndex(model().index(row, 4));
        QTest::keyClick(&grid, Qt::Key_Space);
    }
    QString left() { return shop.rows(u"SELECT 納品先ID FROM 納品先 ORDER BY 納品先ID"_s).join(u' '); }

    FreshShop shop;
    registers::frmNouhinDel screen{shop.workspace};
};

QString question(int count) { return u"対象の納品先 %1 件を削除します。よろしいですか。"_s.arg(count); }
// What stands below the question: of six customers two are a great part.
QString kept(int count, int all, const QString &name)
{
    return u"納品先情報：%1 行（全 %2 行のうち）\n削除する前の内容は「%3」に残します。"_s.arg(count)
        .arg(all)
        .arg(name);
}
QString done(int count) { return u"%1 件の納品先を削除しました。"_s.arg(count); }

} // namespace

class TestFrmNouhinDel : public ScriptedTest
{
    Q_OBJECT

private slots:
    void protectsCustomersWithSlips()
    {
        Deletion d;
        QCOMPARE(d.enabled({"cmdTickAll", "cmdDelete"}), QString());
        d.searchAll();
        QCOMPARE(d.listed(), u"1- 2- 3x 4x 5x 6x"_s);
        QCOMPARE(d.model().index(0, 1).data().toString(), u"2 件"_s);
        QCOMPARE(d.model().index(2, 1).data().toString(), QString());
        QCOMPARE(d.the<QLabel>("labelCount").text(), u"該当データ　6件　対象　4件　伝票のある納品先　2件"_s);
        d.toggle(4);
        d.press("cmdTickNone");
        QCOMPARE(d.listed(), u"1- 2- 3 4 5 6"_s);
        QVERIFY(!d.the("cmdDelete").isEnabled());
        d.press("cmdTickAll");
        d.toggle(3);
        const QString copy = u"shop 削除前 2026-04-01.cdb"_s;
        ui::prompts::expectAskCautiously(question(3), false, kept(3, 6, copy));
        d.press("cmdDelete");
        QCOMPARE(d.left(), u"1 2 3 4 5 6"_s);
        QVERIFY(!QFile::exists(d.shop.path(copy)));
        ui::prompts::expectAskCautiously(question(3), true, kept(3, 6, copy));
        ui::prompts::expectInform(done(3));
        d.press("cmdDelete");
        QCOMPARE(d.left(), u"1 2 4"_s);
        QCOMPARE(d.listed(), u"1- 2- 4x"_s);
        db::PlainHandle before;
        QVERIFY(before.open(d.shop.path(copy)));
        QCOMPARE(*before.number("SELECT count(*) FROM 納品先"), 6);
    }

    void fewNeedNoCopy()
    {
        Deletion d;
        d.shop.run(
            u"WITH RECURSIVE n(i) AS (SELECT 7 UNION ALL SELECT i + 1 FROM n WHERE i < 40) "
            "INSERT INTO 納品先 (納品先ID, 納品先名1, TEL1, 区分ID) SELECT i, '客' || i, '07', 1 FROM n"_s);
        d.searchTelephone(u"06-"_s);
        ui::prompts::expectAskCautiously(question(3), true, u"納品先情報：3 行（全 40 行のうち）"_s);
        ui::prompts::expectInform(done(3));
        d.press("cmdDelete");
        QCOMPARE(d.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 37);
        QCOMPARE(QDir(d.shop.folder.path()).entryList({u"*削除前*"_s}), QStringList());
    }

    void protectedOnesGoWhenTheClerkSaysSo()
    {
        Deletion d;
        d.searchTelephone(u"03-"_s);
        QCOMPARE(d.listed(), u"1- 2- 3x"_s);
        QTest::keyClick(&d.screen, Qt::Key_S, Qt::AltModifier);
        QTRY_COMPARE(d.listed(), u"1 2 3x"_s);
        d.toggle(1);
        ui::prompts::expectAsk(question(2) +
                                   u"\nこのうち 1 件には伝票があります。伝票は残りますが、納品先の名前は"
                                   "分からなくなります。"_s,
                               true, kept(2, 6, u"shop 削除前 2026-04-01.cdb"_s));
        ui::prompts::expectInform(done(2));
        d.press("cmdDelete");
        QCOMPARE(d.left(), u"1 4 5 6"_s);
        QCOMPARE(d.shop.value(u"SELECT count(*) FROM 入出庫マスター"_s).toInt(), 8);
        d.press("cmdTickAll");
        QCOMPARE(d.listed(), u"1x"_s);
        QTest::keyClick(&d.screen, Qt::Key_S, Qt::AltModifier);
        QTRY_COMPARE(d.listed(), u"1-"_s);
    }

    void findsNothing()
    {
        Deletion d;
        d.searchAll();
        ui::prompts::expectInform(ui::messages::nothingFound());
        d.searchTelephone(u"99"_s);
        QCOMPARE(d.listed(), QString());
        QVERIFY(!d.the("cmdDelete").isEnabled());
        d.shop.run(u"DELETE FROM 登録区分"_s);
        ui::prompts::expectInform(ui::messages::noCategories());
        bool opened = false;
        QTimer::singleShot(0, [&] {
            QDialog *editor = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            opened = editor && editor->objectName() == u"frmKubun"_s;
            if (editor)
                editor->reject();
        });
        d.searchTelephone(u"03"_s);
        QVERIFY(opened);
    }

    // Up, down and back; the ticks stay with their customers, and one that came meanwhile has none.
    void sortsByAClickOnTheHeading()
    {
        Deletion d;
        d.searchAll();
        d.toggle(4);
        auto &grid = d.the<ui::Grid>("DataGrid1");
        QHeaderView *header = grid.horizontalHeader();
        const auto click = [&](int section) {
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                              QPoint(header->sectionViewportPosition(section) + 9, header->height() / 2));
            return d.listed();
        };
        QCOMPARE(click(7), u"1- 2- 3x 4x 5 6x"_s);
        QVERIFY(header->isSortIndicatorShown());
        d.shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, TEL1, 区分ID) "
                   "VALUES (7, '東', '東', '01-7', 1)"_s);
        QCOMPARE(click(7), u"6x 5 4x 3x 2- 1- 7"_s);
        QCOMPARE(click(0), u"6x 5 4x 3x 2- 1- 7"_s); // the ticks are no order
        QCOMPARE(click(7), u"1- 2- 3x 4x 5 6x 7"_s);
        QVERIFY(!header->isSortIndicatorShown());
    }

    // A slip that another program entered since the list was made protects its customer too.
    void countsSlipsAgainWhenItDeletes()
    {
        FreshShop shop;
        fill(shop);
        const auto deleted = registers::deleteCustomers(shop.connection, {1, 3, 99, 5}, WithSlips::Keep);
        QVERIFY(deleted);
        QCOMPARE(*deleted, 2);
        QCOMPARE(shop.rows(u"SELECT 納品先ID FROM 納品先"_s).join(u' '), u"1 2 4 6"_s);
    }

    void allOrNothing()
    {
        FreshShop shop;
        fill(shop);
        shop.fireTriggers();
        shop.run(u"CREATE TRIGGER broken BEFORE DELETE ON 納品先 WHEN old.納品先ID = 5 "
                 "BEGIN SELECT raise(ABORT, 'broken'); END"_s);
        QVERIFY(!registers::deleteCustomers(shop.connection, {3, 4, 5, 6}, WithSlips::Keep));
        QCOMPARE(shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 6);
        const auto stopped = registers::deleteCustomers(shop.connection, {3, 4, 6}, WithSlips::Keep,
                                                        [](qint64 done, qint64) { return done < 2; });
        QVERIFY(!stopped && stopped.error().cancelled);
        QCOMPARE(shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 6);
    }
};

QTEST_MAIN(TestFrmNouhinDel)
#include "tst_frmnouhindel.moc"
