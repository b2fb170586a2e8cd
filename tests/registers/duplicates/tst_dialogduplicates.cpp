#include "registers/customer_desk.h"
#include "registers/duplicates/DialogDuplicates.h"
#include "registers/last_counterparts.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

// 1 and 2 share a telephone number, 3 and 4 name and address; 2 and 4 have slips.
struct Twins : ScreenDriver
{
    Twins()
        : ScreenDriver(&screen)
    {
        shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先')"_s);
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, 納品先名1, 住所1, TEL1, メモ, 区分ID, 消費税区分, 版) VALUES "
            "(1, '山田', NULL, '03-1234-5678', '古', 1, 0, 1), (2, '山田商店', NULL, '0312345678', NULL, 1, "
            "0, 1), "
            "(3, '佐藤', '港区芝1-1', NULL, NULL, 1, 0, 1), (4, '佐　藤', '港区芝１丁目１', NULL, NULL, 1, 1, 1)"_s);
        shop.run(
            u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (1, 'O1', 2), (2, 'O2', 4), (3, 'O3', 3)"_s);
        registers::rememberCounterpart(shop.workspace, book::Party::Customer, 1);
        show();
        QCoreApplication::processEvents(); // the search begins when the screen stands
    }

    ui::ReportGrid &groups() { return the<ui::ReportGrid>("gridGroups"); }
    void goTo(qint64 id)
    {
        for (int row = 0; row < groups().model()->rowCount(); ++row) {
            if (groups().model()->index(row, 0).data().toString() == QString::number(id))
                groups().setCurrentIndex(groups().model()->index(row, 0));
        }
        QTRY_VERIFY(the<QLabel>("labelPlan").text() != u"…"_s); // what is read once the cursor rests
    }
    int count() { return the<QLabel>("labelCount").text().section(u'　', 1).section(u' ', 0, 0).toInt(); }
    QString plan(const QString &column)
    {
        const QAbstractItemModel &model = *the<ui::ReportGrid>("gridPlan").model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row, 0).data().toString() == column)
                return QStringList{
                    model.index(row, 1).data().toString(), model.index(row, 2).data().toString(),
                    model.index(row, 3).data().toString(), model.index(row, 4).data().toString()}
                    .join(u'|');
        }
        return {};
    }
    QStringList customers() { return shop.rows(u"SELECT 納品先ID, メモ FROM 納品先 ORDER BY 納品先ID"_s); }

    FreshShop shop;
    registers::DialogDuplicates screen{shop.workspace};
};

} // namespace

class TestDialogDuplicates : public ScriptedTest
{
    Q_OBJECT

private slots:
    void mergesAfterShowingWhatBecomesOfEach()
    {
        Twins r;
        QCOMPARE(r.the<QLabel>("labelCount").text(), u"重複していると思われる納品先　2 組"_s);
        r.goTo(1);
        QCOMPARE(r.plan(u"納品先ID"_s), u"2|1|2|"_s); // the one with slips stays
        QCOMPARE(r.plan(u"メモ"_s), u"|古|古|補います"_s);
        QCOMPARE(r.plan(u"伝票（件）"_s), u"1|0|1|"_s);
        QCOMPARE(r.plan(u"納品先名1"_s), u"山田商店|山田|山田商店|残りません"_s);
        r.press("cmdSwap");
        QCOMPARE(r.plan(u"納品先ID"_s), u"1|2|1|"_s);
        QCOMPARE(r.the<QLabel>("labelPlan").text(),
                 u"納品先ID 2 の伝票 1 件と発送 0 件は、納品先ID 1 のものになります。"_s);
        r.press("cmdSwap");
        const QString question = u"納品先ID 1 を納品先ID 2 に統合します。よろしいですか。"_s;
        const QString remark = u"納品先ID 1 の伝票 0 件と発送 0 件は、納品先ID 2 のものになります。\n"
                               "売掛金残高は、0 円と 0 円を合わせて 0 円になります。\n"
                               "納品先ID 1 は名簿からなくなります。\n"
                               "統合する前の内容は「shop 統合前 2026-04-01.cdb」に残します。"_s;
        ui::prompts::expectAskCautiously(question, false, remark);
        r.press("cmdMerge");
        QCOMPARE(r.customers().size(), 4);
        QVERIFY(!QFile::exists(r.shop.path(u"shop 統合前 2026-04-01.cdb"_s)));
        ui::prompts::expectAskCautiously(question, true, remark);
        ui::prompts::expectInform(u"納品先ID 2 に統合しました。"_s);
        r.press("cmdMerge");
        QVERIFY(QFile::exists(r.shop.path(u"shop 統合前 2026-04-01.cdb"_s)));
        QCOMPARE(r.customers(), QStringList({u"2|古"_s, u"3|-"_s, u"4|-"_s}));
        QCOMPARE(registers::lastCounterparts(r.shop.workspace).customer, 2);
        QCOMPARE(r.the<QLabel>("labelCount").text(), u"重複していると思われる納品先　1 組"_s);
    }

    void refusesWhatWouldChangeTheTax()
    {
        Twins r;
        r.goTo(4);
        QVERIFY(r.the<QLabel>("labelPlan").text().startsWith(u"消費税区分が違い"_s));
        QVERIFY(!r.the<QPushButton>("cmdMerge").isEnabled());
        r.press("cmdSwap");
        QVERIFY(!r.the<QPushButton>("cmdMerge").isEnabled());
        r.goTo(2);
        QVERIFY(r.the<QPushButton>("cmdMerge").isEnabled());
    }

    // What is to be added up may have changed while the question stands.
    void mergesWhatIsOwedAsItWasShown()
    {
        Twins r;
        r.shop.run(u"UPDATE 納品先 SET 消費税区分 = 1"_s);
        r.shop.run(u"INSERT INTO 入出庫サブ (ID, 金額) VALUES (2, 1200), (3, 30)"_s);
        r.goTo(4);
        QVERIFY(r.the<QLabel>("labelPlan").text().contains(u"端数が変わることがあります"_s));
        ui::prompts::expectAskCautiously({}, true);
        ui::prompts::meanwhile([&] { r.shop.run(u"UPDATE 入出庫サブ SET 金額 = 1300 WHERE ID = 2"_s); });
        ui::prompts::expectInform({});
        r.press("cmdMerge");
        QCOMPARE(r.customers().size(), 4);
        r.goTo(4);
        ui::prompts::expectAskCautiously(
            u"納品先ID 4 を納品先ID 3 に統合します。よろしいですか。"_s, false,
            r.the<QLabel>("labelPlan").text() +
                u"\n売掛金残高は、30 円と 1,300 円を合わせて 1,330 円になります。\n"
                "納品先ID 4 は名簿からなくなります。"_s);
        r.press("cmdMerge");
    }

    void twoThatAreTwoAreNotShownAgain()
    {
        Twins r;
        r.goTo(3);
        r.press("cmdDistinct");
        QCOMPARE(r.count(), 1);
        {
            registers::DialogDuplicates again(r.shop.workspace);
            ScreenDriver driver(&again);
            driver.show();
            QCoreApplication::processEvents();
            QVERIFY(driver.the<QLabel>("labelCount").text().endsWith(u"1 組"_s));
        }
        r.press("chkDistinct");
        QCOMPARE(r.count(), 2);
        r.goTo(3);
        r.press("cmdDistinct"); // it was a mistake
        r.press("chkDistinct");
        QCOMPARE(r.count(), 2);
        r.goTo(3);
        r.press("cmdDistinct");
        QCOMPARE(r.customers().size(), 4);
    }

    // The customer is changed while the question stands.
    void tellsWhatAnotherProgramDid()
    {
        Twins r;
        r.goTo(1);
        r.shop.run(u"UPDATE 納品先 SET メモ = '新', 版 = 5 WHERE 納品先ID = 2"_s);
        ui::prompts::expectAskCautiously({}, true);
        ui::prompts::expectInform({});
        r.press("cmdMerge");
        QCOMPARE(r.customers().size(), 4);
        r.goTo(1);
        QCOMPARE(r.plan(u"メモ"_s), u"新|古|新|残りません"_s);
        r.shop.run(u"DELETE FROM 納品先 WHERE 納品先ID = 1"_s);
        ui::prompts::expectInform({});
        r.press("cmdSwap");
        QVERIFY(!r.the<QPushButton>("cmdMerge").isEnabled());
    }

    // What is typed next goes to whom the clerk was at, or to the one who was kept in his place.
    void leadsBackToTheSameCustomer()
    {
        CustomerDesk r;
        r.shop.run(u"UPDATE 納品先 SET TEL1 = '03-1234-5678', 消費税区分 = 0 WHERE 納品先ID IN (1, 2)"_s);
        r.shop.run(u"INSERT INTO 入出庫マスター (ID, 伝票番号, 相手先ID) VALUES (1, 'O1', 1)"_s);
        r.press("Command6");
        const auto inDuplicates = [&r](const std::function<void(ScreenDriver &)> &work) {
            QTimer::singleShot(0, &r.screen, [work] {
                auto *dialog = qobject_cast<registers::DialogDuplicates *>(QApplication::activeModalWidget());
                ScreenDriver driver(dialog);
                QCoreApplication::processEvents(); // the search begins when the screen stands
                work(driver);
                dialog->close();
            });
            r.press("cmdDuplicates");
        };
        r.goTo(2);
        QCOMPARE(r.box("txtID").text(), u"2"_s);
        inDuplicates([](ScreenDriver &) {});
        QCOMPARE(r.box("txtID").text(), u"2"_s);
        r.type("txtMemo", u"新"_s);
        r.press("cmdNewDate");
        QCOMPARE(r.shop.rows(u"SELECT メモ FROM 納品先 ORDER BY 納品先ID"_s),
                 QStringList({u"-"_s, u"新"_s, u"-"_s}));

        // A search shows those found still.
        r.type("txtKey1", u"鈴木"_s);
        r.press("cmdFind");
        inDuplicates([](ScreenDriver &) {});
        QCOMPARE(r.listed(), u"2"_s);
        inDuplicates([](ScreenDriver &driver) {
            auto &grid = driver.the<ui::ReportGrid>("gridGroups");
            for (int row = 0; row < grid.model()->rowCount(); ++row) {
                if (grid.model()->index(row, 0).data().toString() == u"2"_s)
                    grid.setCurrentIndex(grid.model()->index(row, 0));
            }
            QTRY_VERIFY(driver.the<QPushButton>("cmdMerge").isEnabled());
            ui::prompts::expectAskCautiously({}, true);
            ui::prompts::expectInform(u"納品先ID 1 に統合しました。"_s);
            driver.press("cmdMerge");
        });
        QCOMPARE(r.box("txtID").text(), u"1"_s);
        r.goTo(1); // there are others again
        QCOMPARE(r.grid().model()->rowCount(), 2);
    }
};

QTEST_MAIN(TestDialogDuplicates)
#include "tst_dialogduplicates.moc"
