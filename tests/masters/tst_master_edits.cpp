#include "masters/master_desk.h"
#include "support/scripted_test.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QtTest>

using Desk = MasterDesk;

// What becomes of an edited row: by accident, beside another program, in a file that takes no writes.
class TestMasterEdits : public ScriptedTest
{
    Q_OBJECT

private slots:
    void whatWasTypedIsNeitherStoredNorDroppedByEsc_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<int>("answer");
        QTest::addColumn<QString>("stored");
        using ui::prompts::Choice;
        for (int i = 0; i < cases.size(); ++i) {
            for (const bool isNew : {true, false}) {
                const auto row = [&](const char *name, Choice answer, const QString &stored) {
                    QTest::newRow(qPrintable(cases.at(i).screen + (isNew ? u" new "_s : u" "_s) +
                                             QString::fromLatin1(name)))
                        << i << isNew << static_cast<int>(answer) << stored;
                };
                row("saved", Choice::Save, isNew ? u"3=n3 4=abc"_s : u"3=abc"_s);
                row("dropped", Choice::Discard, u"3=n3"_s);
                row("gone back", Choice::Cancel, isNew ? u"3=n3 4="_s : u"3=n3"_s);
            }
        }
    }

    void whatWasTypedIsNeitherStoredNorDroppedByEsc()
    {
        QFETCH(int, index);
        QFETCH(bool, isNew);
        QFETCH(int, answer);
        Desk desk(cases.at(index));
        desk.store({3});
        QVERIFY(desk.open());
        if (isNew)
            desk.click(u"cmdAdd"_s);
        else
            desk.edit();
        desk.nameBox()->setFocus();
        desk.nameBox()->selectAll();
        QTest::keyClicks(desk.nameBox(), u"abc"_s);
        ui::prompts::expectAskToSave(isNew ? newRowQuestion : editQuestion,
                                     static_cast<ui::prompts::Choice>(answer));
        QTest::keyClick(desk.nameBox(), Qt::Key_Escape);
        const bool stays = answer == static_cast<int>(ui::prompts::Choice::Cancel);
        QCOMPARE(desk.screen->isVisible(), stays);
        QTEST(desk.stored(), "stored");
        if (stays)
            QCOMPARE(desk.nameBox()->text(), u"abc"_s);
    }

    void editsAreSavedWhenTheRowIsLeft_data() { addGridCases(); }
    void editsAreSavedWhenTheRowIsLeft()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        desk.store({1, 2});
        QVERIFY(desk.open());
        QTest::keyClicks(desk.nameBox(), u"x"_s);
        QCOMPARE(desk.stored(), u"1=n1 2=n2"_s);
        QTest::mouseClick(desk.grid()->viewport(), Qt::LeftButton, {},
                          desk.grid()->visualRect(desk.grid()->model()->index(1, 1)).center());
        QCOMPARE(desk.nameBox()->text(), u"n2"_s);
        QCOMPARE(desk.stored(), u"1=n1x 2=n2"_s);
        QTest::keyClicks(desk.nameBox(), u"y"_s);
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.stored(), u"1=n1x 2=n2y 3="_s);
    }

    void editsAreSavedWhenTheScreenCloses_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("text");
        const QStringList texts{u"O'Brien \"%_\"; DROP TABLE 単位 --"_s, u"髙𠮷野家😀"_s, u"a\0b"_s,
                                QString()};
        for (int i = 0; i < cases.size(); ++i) {
            for (int text = 0; text < texts.size(); ++text)
                QTest::addRow("%s %d", qPrintable(cases.at(i).screen), text) << i << texts.at(text);
        }
    }

    void editsAreSavedWhenTheScreenCloses()
    {
        QFETCH(int, index);
        QFETCH(QString, text);
        Desk desk(cases.at(index));
        desk.store({1});
        QVERIFY(desk.open());
        desk.edit();
        desk.nameBox()->setText(text);
        text.remove(QChar(u'\0')); // no box takes it
        ui::prompts::expectAskToSave(editQuestion, ui::prompts::Choice::Save);
        QTest::keyClick(desk.screen.get(), Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.shop.value(u"SELECT %1 FROM %2"_s.arg(desk.c.name, desk.c.table)).toString(), text);
        QVERIFY(desk.open());
        QCOMPARE(desk.nameBox()->text(), text);
    }

    void aFileThatTakesNoWritesChangesNothing_data() { addCases(); }
    void aFileThatTakesNoWritesChangesNothing()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        desk.store({1, 2});
        QVERIFY(desk.open());
        desk.setReadOnly(true);

        ui::prompts::expectInform(readOnlyText);
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.enabled(), u"Add Delete"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, ui::prompts::anyRemark);
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.enabled(), u"Add Delete"_s);

        desk.edit();
        QTest::keyClicks(desk.nameBox(), u"x"_s);
        if (ui::Grid *grid = desk.grid()) {
            ui::prompts::expectInform(readOnlyText);
            grid->selectRow(1);
            QCOMPARE(grid->currentIndex().row(), 0);
        }
        ui::prompts::expectAskToSave(editQuestion, ui::prompts::Choice::Save);
        ui::prompts::expectInform(readOnlyText);
        desk.screen->close();
        QVERIFY(desk.screen->isVisible());
        QCOMPARE(desk.nameBox()->text(), u"n1x"_s);
        ui::prompts::expectAskToSave(editQuestion, ui::prompts::Choice::Discard);
        desk.screen->close();
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.stored(), u"1=n1 2=n2"_s);
    }

    void aListThatCannotBeReadIsTold_data() { addCases(); }
    void aListThatCannotBeReadIsTold()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        const bool isKubun = desk.c.master == Master::CustomerCategories;
        desk.setReadOnly(true);
        ui::prompts::expectInform(isKubun ? ui::messages::databaseNotUsable() : readOnlyText);
        QVERIFY(desk.open());
        QCOMPARE(desk.enabled(), u"Add"_s);
        desk.screen->close();

        desk.shop.connection.close();
        ui::prompts::expectInform(isKubun ? ui::messages::databaseNotUsable() : QString());
        QVERIFY(desk.open());
        QCOMPARE(desk.enabled(), QString());
    }

    void anotherProgramChangesTheProduct()
    {
        Desk desk(cases.at(6));
        desk.store({1});
        QVERIFY(desk.open());
        db::Connection other;
        QVERIFY(other.open(desk.shop.path(u"shop.cdb"_s)));
        desk.nameBox()->setText(u"mine"_s);
        QVERIFY(other.execute(u"UPDATE 納品商品 SET 単価 = 120, 版 = 5"_s));
        ui::prompts::expectAskToSave(editQuestion, ui::prompts::Choice::Save);
        ui::prompts::expectAskWhichVersion({}, ui::prompts::Version::Undecided);
        desk.screen->close();
        QVERIFY(desk.screen->isVisible());
        QCOMPARE(desk.nameBox()->text(), u"mine"_s);
        ui::prompts::expectAskToSave(editQuestion, ui::prompts::Choice::Save);
        ui::prompts::expectAskWhichVersion({}, ui::prompts::Version::Mine);
        desk.screen->close();
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.shop.rows(u"SELECT 商品名, 単価 FROM 納品商品"_s), QStringList{u"mine|120"_s});
    }

    void whatWasTypedCanBeTakenBack_data() { addCases(); }
    void whatWasTypedCanBeTakenBack()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        desk.store({1, 2});
        QVERIFY(desk.open());
        desk.edit();
        QVERIFY(!desk.button(u"cmdUndo"_s)->isEnabled());
        desk.nameBox()->setFocus();
        desk.nameBox()->selectAll();
        QTest::keyClicks(desk.nameBox(), u"abc"_s);
        desk.click(u"cmdUndo"_s);
        QCOMPARE(desk.nameBox()->text(), u"n1"_s);
        QVERIFY(desk.nameBox()->hasFocus());
        QVERIFY(!desk.button(u"cmdUndo"_s)->isEnabled());
        desk.screen->close(); // there is nothing to ask about
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.stored(), u"1=n1 2=n2"_s);
    }

    // Enter on the way through, a cat on the keys.
};

QTEST_MAIN(TestMasterEdits)
#include "tst_master_edits.moc"
