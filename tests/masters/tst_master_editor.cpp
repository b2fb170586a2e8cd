#include "masters/master_desk.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QComboBox>
#include <QtTest>

using Desk = MasterDesk;

class TestMasterEditor : public ScriptedTest
{
    Q_OBJECT

private slots:
    void anEmptyTableOffersItsFirstRow_data() { addCases(); }
    void anEmptyTableOffersItsFirstRow()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        QVERIFY(desk.open());
        QCOMPARE(desk.stored(), u"1="_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"1"_s);
        QVERIFY(desk.nameBox()->hasFocus());
        QCOMPARE(desk.enabled(), u"Update Cancel"_s);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.stored(), QString());
    }

    void aNewRowLivesOnlyWhenConfirmed_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("end");
        QTest::addColumn<QString>("stored");
        for (int i = 0; i < cases.size(); ++i) {
            const QString screen = cases.at(i).screen;
            QTest::newRow(qPrintable(screen + u" confirmed"_s)) << i << u"cmdUpdate"_s << u"3=n3 4=new"_s;
            QTest::newRow(qPrintable(screen + u" given up"_s)) << i << u"cmdCancel"_s << u"3=n3"_s;
        }
    }

    void aNewRowLivesOnlyWhenConfirmed()
    {
        QFETCH(int, index);
        QFETCH(QString, end);
        QFETCH(QString, stored);
        Desk desk(cases.at(index));
        desk.store({3});
        QVERIFY(desk.open());
        QCOMPARE(desk.enabled(), u"Add Delete"_s);
        desk.click(u"cmdAdd"_s);
        const bool own = desk.c.master == Master::OwnCompany;
        QCOMPARE(desk.enabled(), own ? u"Update Cancel"_s : u"Update Cancel Delete"_s);
        QCOMPARE(desk.stored(), u"3=n3 4="_s);
        QTest::keyClicks(desk.nameBox(), u"new"_s);
        desk.click(end);
        QCOMPARE(desk.enabled(), u"Add Delete"_s);
        QVERIFY(desk.button(u"cmdAdd"_s)->hasFocus());
        QCOMPARE(desk.nameBox()->text(), end == u"cmdUpdate"_s ? u"new"_s : u"n3"_s);
        QCOMPARE(desk.stored(), stored);
    }

    void enterLeadsThroughNewRows()
    {
        Desk desk(cases.at(0));
        QVERIFY(desk.open());
        for (const QString &unit : {u"ko"_s, u"hako"_s}) {
            QTest::keyClicks(desk.nameBox(), unit);
            QTest::keyClick(desk.nameBox(), Qt::Key_Return);
            QVERIFY(desk.button(u"cmdUpdate"_s)->hasFocus());
            QTest::keyClick(desk.button(u"cmdUpdate"_s), Qt::Key_Return);
            QTest::keyClick(desk.button(u"cmdAdd"_s), Qt::Key_Return);
            QVERIFY(desk.nameBox()->hasFocus());
        }
        desk.screen->close();
        QCOMPARE(desk.stored(), u"1=ko 2=hako"_s);
    }

    void keysFollowTheHighest_data() { addCases(); }
    void keysFollowTheHighest()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        desk.store({5, 1, 2});
        QVERIFY(desk.open());
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"6"_s);
        desk.click(u"cmdCancel"_s);
        // Another program deletes the highest and this one must know.
        desk.shop.run(u"DELETE FROM %1 WHERE %2 = 5"_s.arg(desk.c.table, desk.c.key));
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"3"_s);
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.stored(), u"1=n1 2=n2 3="_s);
    }

    void aDeletedHighestKeyIsGivenAgain_data() { addGridCases(); }
    void aDeletedHighestKeyIsGivenAgain()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        desk.store({1, 4, 5});
        QVERIFY(desk.open());
        desk.grid()->selectRow(2);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, u"削除する行： 5　n5"_s);
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"4"_s); // the new last row
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"5"_s);
    }

    void noKeyBeyondTheHighest()
    {
        Desk desk(cases.at(0));
        desk.store({4, 2147483647});
        QVERIFY(desk.open());
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"5"_s);
    }

    void deleting_data() { addCases(); }
    void deleting()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        const bool own = desk.c.master == Master::OwnCompany;
        desk.store({1, 2});
        QVERIFY(desk.open());
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false, u"削除する行： 1　n1"_s);
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.stored(), u"1=n1 2=n2"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, u"削除する行： 1　n1"_s);
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.nameBox()->text(), u"n2"_s);
        QCOMPARE(desk.enabled(), own ? u"Add Update Delete"_s : u"Add Delete"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, u"削除する行： 2　n2"_s);
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.stored(), QString());
        QCOMPARE(desk.enabled(), own ? u"Add Update"_s : u"Add"_s);
        QVERIFY(!desk.nameBox()->isEnabled());
        // The table stays empty until the screen is visited again.
        desk.screen->close();
        QCOMPARE(desk.stored(), QString());
        QVERIFY(desk.open());
        QCOMPARE(desk.stored(), u"1="_s);
    }

    void aNewRowIsNotDeletedButGivenUp_data() { addGridCases(); }
    void aNewRowIsNotDeletedButGivenUp()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        desk.store({1});
        QVERIFY(desk.open());
        desk.click(u"cmdAdd"_s);
        ui::prompts::expectInform({});
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.stored(), u"1=n1 2="_s);
        QVERIFY(!desk.grid()->isEnabled());
        desk.click(u"cmdCancel"_s);
        QVERIFY(desk.grid()->isEnabled());
    }

    void aNewRowThatCannotBeSavedStaysOpen_data() { addCases(); }
    void aNewRowThatCannotBeSavedStaysOpen()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        QVERIFY(desk.open());
        QTest::keyClicks(desk.nameBox(), u"new"_s);
        desk.setReadOnly(true);
        ui::prompts::expectInform(readOnlyText);
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.enabled(), u"Update Cancel"_s);
        QCOMPARE(desk.nameBox()->text(), u"new"_s);
        ui::prompts::expectAskToSave(newRowQuestion, ui::prompts::Choice::Discard);
        ui::prompts::expectAsk(readOnlyText + u"\n確定していない行を残したまま閉じますか。"_s, false);
        desk.screen->close();
        QVERIFY(desk.screen->isVisible());
        desk.setReadOnly(false);
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.stored(), u"1=new"_s);
    }

    void twoProgramsNeverTakeTheSameKey()
    {
        Desk desk(cases.at(0));
        desk.store({1});
        QVERIFY(desk.open());
        db::Connection other;
        QVERIFY(other.open(desk.shop.path(u"shop.cdb"_s)));
        QVERIFY(other.execute(u"INSERT INTO 単位 (単位ID, 単位) VALUES (2, 'theirs')"_s));
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"3"_s);

        QVERIFY(other.execute(u"DELETE FROM 単位"_s));
        QTest::keyClicks(desk.nameBox(), u"mine"_s);
        ui::prompts::expectInform({});
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.nameBox()->text(), u"mine"_s);
        QCOMPARE(desk.stored(), QString());
    }

    void columnsAndCaptionsOfTheirOwn()
    {
        Desk products(cases.at(6));
        products.store({1});
        QVERIFY(products.open());
        QCOMPARE(products.grid()->columnWidth(1), 200); // 3000 twips
        QCOMPARE(products.button(u"cmdDelete"_s)->text(), u"削除(&D)"_s);

        Desk employees(cases.at(2));
        QVERIFY(employees.open());
        QTest::keyClicks(employees.box(u"txtTel"_s), u"12"_s);
        employees.click(u"cmdUpdate"_s);
        QCOMPARE(employees.shop.value(u"SELECT 内線番号 FROM 社員"_s).toString(), u"12"_s);
        QCOMPARE(employees.button(u"cmdDelete"_s)->text(), u"削除(&K)"_s);
        QVERIFY(!employees.button(u"Command1"_s));

        Desk categories(cases.at(3));
        QVERIFY(categories.open());
        categories.click(u"Command1"_s);
        QVERIFY(!categories.screen->isVisible());
        QCOMPARE(categories.stored(), QString());
    }

    // What a product is taxed as, for shops that follow the table of rates; nobody else passes it by.
    void productsHaveAClassOfTax_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("sold") << 6;
        QTest::newRow("bought") << 5;
    }

    void productsHaveAClassOfTax()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        desk.store({1, 2});
        desk.shop.run(u"UPDATE %1 SET 税区分 = 3 WHERE 商品ID = 2"_s.arg(desk.c.table));
        QVERIFY(desk.open());
        auto *tax = desk.screen->findChild<QComboBox *>(u"cboTaxClass"_s);
        QCOMPARE(tax->currentText(), u"標準"_s);
        QCOMPARE(desk.grid()->model()->index(1, 2).data().toString(), u"非課税"_s);
        turnWheelOver(*tax);
        QCOMPARE(tax->currentText(), u"標準"_s);
        QTest::keyClick(desk.nameBox(), Qt::Key_Tab);
        QVERIFY(!tax->hasFocus());
        QTest::keyClick(desk.screen.get(), Qt::Key_X, Qt::AltModifier);
        QVERIFY(tax->hasFocus());
        QTest::keyClick(tax, Qt::Key_Down);
        QCOMPARE(tax->currentText(), u"軽減（飲食料品）"_s);
        desk.grid()->selectRow(1);
        QCOMPARE(tax->currentText(), u"非課税"_s);
        QTest::keyClick(tax, Qt::Key_Down);
        desk.click(u"cmdUndo"_s);
        QCOMPARE(tax->currentText(), u"非課税"_s);
        desk.screen->close();
        QCOMPARE(desk.shop.rows(u"SELECT 税区分 FROM %1 ORDER BY 商品ID"_s.arg(desk.c.table)),
                 QStringList({u"1"_s, u"3"_s}));
    }

    void aWideNewRowCanStillBeGivenUp()
    {
        Desk desk(cases.at(7));
        QVERIFY(desk.open());
        QTest::keyClicks(desk.nameBox(), QString(45, u'a'));
        ui::prompts::expectInform(ui::messages::widthLimit());
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.stored(), u"1="_s);
        desk.click(u"cmdCancel"_s);
        QTest::qWait(50);
        QCOMPARE(desk.stored(), QString());
        QVERIFY(desk.button(u"cmdAdd"_s)->hasFocus());
    }
};

QTEST_MAIN(TestMasterEditor)
#include "tst_master_editor.moc"
