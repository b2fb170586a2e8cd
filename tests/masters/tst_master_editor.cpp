#include "masters/MasterGridEditor.h"
#include "masters/frmMyco.h"
#include "support/fresh_shop.h"
#include "support/scripted_test.h"
#include "ui/grid.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using masters::Master;

namespace
{

struct Case
{
    Master master;
    QString screen;
    QString table;
    QString key;
    QString nameBox;
    QString name; // column
};

const QList<Case> cases = {
    {Master::Units, u"frmTani"_s, u"単位"_s, u"単位ID"_s, u"txtName"_s, u"単位"_s},
    {Master::Specifications, u"frmKikaku"_s, u"規格"_s, u"規格ID"_s, u"txtName"_s, u"規格"_s},
    {Master::Employees, u"frmShain"_s, u"社員"_s, u"社員ID"_s, u"txtName"_s, u"社員名"_s},
    {Master::CustomerCategories, u"frmKubun"_s, u"登録区分"_s, u"区分ID"_s, u"txtName"_s, u"区分名"_s},
    {Master::ShippingCategories, u"frmInvKubun"_s, u"発送区分"_s, u"発送区分ID"_s, u"txtName"_s,
     u"発送区分名"_s},
    {Master::PurchaseProducts, u"frmInShohin"_s, u"仕入商品"_s, u"商品ID"_s, u"txtShohin"_s, u"商品名"_s},
    {Master::SalesProducts, u"frmOutShohin"_s, u"納品商品"_s, u"商品ID"_s, u"txtShohin"_s, u"商品名"_s},
    {Master::OwnCompany, u"frmMyco"_s, u"自社情報"_s, u"会社ID"_s, u"txtName1"_s, u"会社名1"_s},
};

/// One editor on a shop of its own.
struct Desk
{
    explicit Desk(const Case &data)
        : c(data)
    {}

    /// Stores rows with \a keys and the names "n1", "n2", …
    void store(const QList<int> &keys)
    {
        for (const int key : keys)
            shop.run(u"INSERT INTO %1 (%2, %3) VALUES (?, ?)"_s.arg(c.table, c.key, c.name),
                     {key, u"n%1"_s.arg(key)});
    }

    bool open()
    {
        if (c.master == Master::OwnCompany)
            screen = std::make_unique<masters::frmMyco>(shop.workspace);
        else
            screen = std::make_unique<masters::MasterGridEditor>(shop.workspace, c.master);
        screen->show();
        screen->activateWindow();
        return QTest::qWaitForWindowActive(screen.get());
    }

    QPushButton *button(const QString &name) { return screen->findChild<QPushButton *>(name); }
    QLineEdit *box(const QString &name) { return screen->findChild<QLineEdit *>(name); }
    QLineEdit *nameBox() { return box(c.nameBox); }
    ui::Grid *grid() { return screen->findChild<ui::Grid *>(u"DataGrid1"_s); }

    /// Begins editing where the row is only shown at first.
    void edit()
    {
        if (c.master == Master::OwnCompany)
            click(u"cmdEdit"_s);
    }

    void click(const QString &name) { QTest::mouseClick(button(name), Qt::LeftButton); }

    /// "1=n1 2=" as the file holds it.
    QString stored()
    {
        return shop
            .rows(u"SELECT %1 || '=' || coalesce(%2, '') FROM %3 ORDER BY %1"_s.arg(c.key, c.name, c.table))
            .join(u' ');
    }

    /// The buttons that can be pressed.
    QString enabled()
    {
        QStringList names;
        for (const QString &name : {u"cmdAdd"_s, u"cmdUpdate"_s, u"cmdCancel"_s, u"cmdDelete"_s}) {
            if (button(name)->isEnabled())
                names << name.mid(3);
        }
        return names.join(u' ');
    }

    /// From now on the file takes no writes, or again.
    void setReadOnly(bool on) { shop.run(on ? u"PRAGMA query_only = ON"_s : u"PRAGMA query_only = OFF"_s); }

    Case c;
    FreshShop shop;
    std::unique_ptr<ui::Screen> screen;
};

void addCases()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < cases.size(); ++i)
        QTest::newRow(qPrintable(cases.at(i).screen)) << i;
}

void addGridCases()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i + 1 < cases.size(); ++i)
        QTest::newRow(qPrintable(cases.at(i).screen)) << i;
}

const QString readOnlyText =
    u"データベースが読み取り専用のため、保存できませんでした。ファイルの属性とフォルダの権限を確認してください。"_s;

const QString newRowQuestion = u"入力中の行が登録されていません。登録しますか。"_s;
const QString editQuestion = u"変更が保存されていません。保存しますか。"_s;

} // namespace

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
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true);
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"4"_s); // the new last row
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.box(u"txtID"_s)->text(), u"5"_s);
    }

    void noKeyBeyondTheHighest()
    {
        Desk desk(cases.at(0));
        desk.store({2147483647});
        QVERIFY(desk.open());
        ui::prompts::expectInform({});
        desk.click(u"cmdAdd"_s);
        QCOMPARE(desk.enabled(), u"Add Delete"_s);
        QCOMPARE(desk.stored(), u"2147483647=n2147483647"_s);
    }

    void deleting_data() { addCases(); }
    void deleting()
    {
        QFETCH(int, index);
        Desk desk(cases.at(index));
        const bool own = desk.c.master == Master::OwnCompany;
        desk.store({1, 2});
        QVERIFY(desk.open());
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false);
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.stored(), u"1=n1 2=n2"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true);
        desk.click(u"cmdDelete"_s);
        QCOMPARE(desk.nameBox()->text(), u"n2"_s);
        QCOMPARE(desk.enabled(), own ? u"Add Update Delete"_s : u"Add Delete"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true);
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
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true);
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
    void theOwnCompanyIsReadFirst()
    {
        Desk desk(cases.at(7));
        desk.store({1});
        QVERIFY(desk.open());
        for (const char *keys : {"\r", "x", "\r", "7", " "})
            QTest::keyClicks(desk.screen->focusWidget(), QString::fromLatin1(keys));
        QCOMPARE(desk.nameBox()->text(), u"n1"_s);
        QVERIFY(!desk.box(u"txtZip"_s)->isModified());
        QTest::keyClick(desk.screen.get(), Qt::Key_F2);
        QVERIFY(desk.nameBox()->hasFocus());
        QCOMPARE(desk.enabled(), u"Add Update Delete"_s);
        QTest::keyClicks(desk.nameBox(), u"abc"_s);
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.stored(), u"1=n1abc"_s);
        QVERIFY(desk.nameBox()->isReadOnly());
        QCOMPARE(desk.enabled(), u"Add Delete"_s);
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

    void theOwnCompanyKeepsAllItsColumns()
    {
        Desk desk(cases.at(7));
        QVERIFY(desk.open());
        const QStringList boxes{u"txtName1"_s,    u"txtName2"_s, u"txtZip"_s,  u"txtAddress1"_s,
                                u"txtAddress2"_s, u"txtTel1"_s,  u"txtTel2"_s, u"txtFax"_s,
                                u"txtBank1"_s,    u"txtBank2"_s, u"txtMemo"_s};
        for (const QString &name : boxes)
            QTest::keyClicks(desk.box(name), name.mid(3));
        desk.click(u"cmdUpdate"_s);
        QCOMPARE(desk.shop
                     .rows(u"SELECT 会社名1, 会社名2, 郵便番号, 住所1, 住所2, TEL1, TEL2, FAX, 取引銀行1, "
                           "取引銀行2, 備考 FROM 自社情報"_s)
                     .first(),
                 u"Name1|Name2|Zip|Address1|Address2|Tel1|Tel2|Fax|Bank1|Bank2|Memo"_s);
    }

    void theOwnCompanyFitsItsPrintedLines_data()
    {
        QTest::addColumn<QString>("box");
        for (const QString &box : {u"txtName1"_s, u"txtName2"_s, u"txtAddress1"_s, u"txtAddress2"_s})
            QTest::newRow(qPrintable(box)) << box;
    }

    void theOwnCompanyFitsItsPrintedLines()
    {
        QFETCH(QString, box);
        constexpr int limit = 44; // bytes
        const QString refusal = ui::messages::widthLimit();
        Desk desk(cases.at(7));
        desk.store({1});
        QVERIFY(desk.open());
        desk.edit();
        QLineEdit *line = desk.box(box);
        line->setFocus();
        line->setText(QString(limit, u'a'));
        QTest::keyClick(line, Qt::Key_Return);
        QTest::qWait(50);
        QVERIFY(!line->hasFocus());

        line->setFocus();
        line->setText(QString(limit + 1, u'a'));
        ui::prompts::expectInform(refusal);
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_VERIFY(line->hasFocus());
        QCOMPARE(line->text().size(), limit + 1);

        // The buttons can be pressed by a key without leaving the box.
        ui::prompts::expectInform(refusal);
        QTest::keyClick(line, Qt::Key_N, Qt::AltModifier);
        QTRY_COMPARE(desk.enabled(), u"Add Update Delete"_s);
        QTest::qWait(200);
        QCOMPARE(desk.stored(), u"1=n1"_s);
        ui::prompts::expectAskToSave(editQuestion, ui::prompts::Choice::Discard);
        QTest::keyClick(line, Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
        QCOMPARE(desk.stored(), u"1=n1"_s);
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
