#include "slips/slip_desk.h"

#include "printing/list_sheet.h"
#include "reports/ledgers/ledger_screen.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

// aite0 (key 1) has sales, a receipt and a carried balance; of key 77, a customer once, only slips are left;
// one slip has no customer at all.
template <class Screen>
class LedgerDesk : public SlipDesk<Screen>
{
public:
    LedgerDesk()
    {
        this->shop.run(u"BEGIN"_s);
        slip(1, u"2026-02-10"_s, u"O1"_s, 1, {u"りんご"_s, 10, 300, 3000}, 300);
        slip(2, u"2026-02-28"_s, u"B2"_s, 1, {u"繰越残高"_s, {}, {}, 50000});
        slip(3, u"2026-04-01"_s, u"O3"_s, 1, {u"ジュース"_s, 2.5, 1200, 3000}, 300);
        slip(4, u"2026-03-31"_s, u"R4"_s, 1, {u"入　金"_s, {}, {}, 60000});
        slip(5, u"2026-03-01"_s, u"O5"_s, 77, {u"りんご"_s, 1, 1234, 1234});
        slip(6, u"2026-03-02"_s, u"O6"_s, 2, {u"りんご"_s, 1, 500, 500});
        slip(7, u"2026-03-03"_s, u"R7"_s, 2, {u"入　金"_s, {}, {}, 500});
        slip(8, u"2026-03-31"_s, u"T8"_s, 10, {u"りんご"_s, 12, 100, 1200});
        slip(9, u"2026-04-01"_s, u"I9"_s, 10, {u"りんご"_s, 8, 110, 880});
        slip(10, u"2026-03-04"_s, u"O10"_s, {}, {u"りんご"_s, 1, 70, 70});
        this->shop.run(u"COMMIT"_s);
    }

    QString cell(int row, int column)
    {
        return this->driver()
            .template the<ui::Grid>("MSFlexGrid1")
            .model()
            ->index(row, column)
            .data()
            .toString();
    }
    QStringList row(int row)
    {
        QStringList cells;
        const QAbstractItemModel *model = this->driver().template the<ui::Grid>("MSFlexGrid1").model();
        for (int column = 0; column < model->columnCount(); ++column)
            cells << cell(row, column);
        return cells;
    }
    QString shown()
    {
        QStringList rows;
        const int count = this->driver().template the<ui::Grid>("MSFlexGrid1").model()->rowCount();
        for (int i = 0; i < count; ++i)
            rows << row(i).join(u'|');
        return rows.join(u'\n');
    }
    QString sums()
    {
        QStringList sums;
        for (const char *box : {"txtSum1", "txtSum2", "txtSum3", "txtSum4", "txtSum5"}) {
            if (!this->driver().box(box).isHidden())
                sums << this->driver().box(box).text();
        }
        return sums.join(u' ');
    }

private:
    void slip(int id, const QString &date, const QString &number, const QVariant &counterpart,
              const QVariantList &line, const QVariant &tax = {})
    {
        this->shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (?, ?, ?, ?)"_s,
                       {id, date, number, counterpart});
        this->shop.run(u"INSERT INTO 入出庫サブ (商品名, 数量, 単価, 金額, ID) VALUES (?, ?, ?, ?, ?)"_s,
                       line + QVariantList{id});
        if (!tax.isNull())
            this->shop.run(u"INSERT INTO 入出庫サブ (商品名, 金額, ID) VALUES ('消費税', ?, ?)"_s, {tax, id});
    }
};

} // namespace

class TestLedgerScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        ui::prompts::beginScript();
        ui::desktop::beginScript();
        ui::file_dialogs::beginScript();
    }
    void cleanup() { QCOMPARE(ui::prompts::takeUnexpected(), QString()); }

    void ledgerOfTheCustomerFound()
    {
        LedgerDesk<reports::frmOutMoto> desk;
        QCOMPARE(desk.driver().enabled({"Command2", "Command3", "Command4"}), QString());
        // On the first of a month, too, there is something to see.
        QCOMPARE(desk.driver().the<QDateEdit>("DTPicker1").date(), QDate(2026, 3, 1));
        desk.driver().the<QDateEdit>("DTPicker1").setDate({2026, 2, 15});
        desk.driver().type("txtKey1", u"aite0"_s);
        QTest::keyClick(&desk.driver().box("txtKey1"), Qt::Key_Return);
        QCOMPARE(desk.driver().cursor(), u"MSFlexGrid1"_s);
        QCOMPARE(desk.driver().box("txtNouhinsaki1").text(), u"aite0"_s);
        QCOMPARE(desk.shown(), u"|||繰越残高|||||3,300|||3,300\n"
                               "2026/02/28|B2|繰越|繰越残高|||||50,000|||53,300\n"
                               "2026/03/31|R4|入金|入　金|||||||60,000|-6,700\n"
                               "2026/04/01|O3|納品|ジュース||2.50||1,200||3,000||-3,700\n"
                               "2026/04/01|O3|納品|消費税||||||300||-3,400"_s);
        QCOMPARE(desk.sums(), u"53,300 3,300 300 60,000 -3,400"_s);
        QCOMPARE(desk.driver().enabled({"Command2", "Command3", "Command4"}), u"Command2 Command3"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down); // a balance brought forward is no slip
        QCOMPARE(desk.driver().enabled({"Command4"}), u"Command4"_s);
    }

    void lineLeadsToTheCorrectionOfItsSlip()
    {
        LedgerDesk<reports::frmOutMoto> desk;
        desk.driver().the<QDateEdit>("DTPicker1").setDate({2026, 2, 15});
        desk.driver().type("txtKey1", u"aite0"_s);
        desk.driver().press("Command1");
        auto &grid = desk.driver().the<ui::Grid>("MSFlexGrid1");
        QTest::keyClick(&grid, Qt::Key_Return); // the balance brought forward leads nowhere
        grid.setCurrentIndex(grid.model()->index(2, 0));
        QString seen;
        QTimer::singleShot(0, &grid, [&] {
            QWidget *correction = QApplication::activeModalWidget();
            seen =
                correction->objectName() + u' ' + correction->findChild<QLineEdit *>(u"txtDenNo"_s)->text();
            desk.shop.run(u"UPDATE 入出庫サブ SET 金額 = 50000 WHERE ID = 4"_s);
            desk.shop.run(u"UPDATE 入出庫マスター SET 日付 = '2026-02-20' WHERE ID = 4"_s);
            correction->close();
        });
        QTest::keyClick(&grid, Qt::Key_Return);
        QCOMPARE(seen, u"frmOutAmd R4"_s);
        QCOMPARE(desk.sums(), u"53,300 3,300 300 50,000 6,600"_s);
        QCOMPARE(desk.row(grid.currentIndex().row())[1], u"R4"_s); // where the slip is now
        QCOMPARE(grid.currentIndex().row(), 1);
    }

    void whatIsMissingIsTold()
    {
        LedgerDesk<reports::frmInMoto> desk;
        ui::prompts::expectInform(u"仕入先が選択されていません。"_s);
        desk.driver().press("cmdMasterUpdate");
        QCOMPARE(desk.driver().cursor(), u"txtKey1"_s);
        ui::prompts::expectInform(u"検索した仕入先は見つかりませんでした。"_s);
        desk.driver().type("txtKey1", u"誰も"_s);
        desk.driver().press("Command1");
        desk.driver().type("txtKey1", u"aite0"_s);
        desk.driver().press("Command1");
        QCOMPARE(desk.sums(), u"0 880 0 0 880"_s);
        // A period that ends before it begins leaves nothing on the screen that looks like an answer.
        desk.driver().the<QDateEdit>("DTPicker2").setDate({2020, 1, 1});
        ui::prompts::expectInform(
            u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s);
        desk.driver().press("cmdMasterUpdate");
        QCOMPARE(desk.shown(), QString());
        QCOMPARE(desk.sums(), QString());
        QCOMPARE(desk.driver().enabled({"Command2", "Command3", "Command4"}), QString());
    }

    void balancesLeadToTheLedgerEvenOfADeletedCustomer()
    {
        LedgerDesk<reports::frmOutZandaka> desk;
        desk.screen();
        QTRY_COMPARE(desk.shown(),
                     u"|aite0|2026/04/01|2026/03/31|-3,400\n|(削除済み) ID 77|2026/03/01||1,234\n"
                     "|(相手先なし)|2026/03/04||70"_s);
        QCOMPARE(desk.sums(), u"-2,096"_s);
        QCOMPARE(desk.driver().cursor(), u"MSFlexGrid1"_s);
        // Who owes most comes first after two clicks; the customers' own order after three.
        auto *headings = desk.driver().the<ui::Grid>("MSFlexGrid1").horizontalHeader();
        for (const QString &first : {u"aite0"_s, u"(削除済み) ID 77"_s, u"aite0"_s}) {
            QTest::mouseClick(headings->viewport(), Qt::LeftButton, {},
                              QPoint(headings->sectionViewportPosition(4) + 9, headings->height() / 2));
            QCOMPARE(desk.cell(0, 1), first);
        }
        QTest::keyClick(&desk.driver().the<QCheckBox>("Check1"), Qt::Key_Space);
        QCOMPARE(desk.row(1).join(u'|'), u"|aite1|2026/03/02|2026/03/03|0"_s);

        auto &grid = desk.driver().the<ui::Grid>("MSFlexGrid1");
        grid.setFocus();
        QTest::keyClick(&grid, Qt::Key_End, Qt::ControlModifier);
        // The ledger is of the day of the list, whatever the box says by now.
        desk.driver().the<QDateEdit>("DTPicker2").setDate({2026, 5, 15});
        QStringList seen;
        const auto lookAtLedger = [&](const QString &meanwhile) {
            QTimer::singleShot(0, &grid, [&seen, &desk, meanwhile] {
                QWidget *ledger = QApplication::activeModalWidget();
                seen = {ledger->objectName()};
                for (const auto *box : {"txtNouhinsaki1", "txtSum2", "txtSum5"})
                    seen << ledger->findChild<QLineEdit *>(QLatin1String(box))->text();
                seen << ledger->findChild<QDateEdit *>(u"DTPicker2"_s)->text();
                desk.shop.run(meanwhile);
                ledger->close();
            });
            QTest::keyClick(&grid, Qt::Key_Return);
        };
        lookAtLedger(u"DELETE FROM 入出庫サブ WHERE ID = 10"_s);
        QCOMPARE(seen.join(u'|'), u"frmOutMoto|(相手先なし)|70|70|2026/04/01"_s);
        QTest::keyClick(&grid, Qt::Key_Up);
        lookAtLedger(u"DELETE FROM 入出庫サブ WHERE ID = 5"_s);
        QCOMPARE(seen.join(u'|'), u"frmOutMoto|(削除済み) ID 77|0|1,234|2026/05/15"_s);
        // What was changed from there is seen at once.
        QCOMPARE(desk.sums(), u"-3,400"_s);
    }

    void stockSinceTheLastCount()
    {
        LedgerDesk<reports::frmTanaMoto> desk;
        desk.screen();
        QTRY_COMPARE(desk.shown(),
                     u"ジュース||||0|0|2.50|-2.50||0\nりんご|||2026/03/31|12|8|0|20|110|2,200"_s);
    }

    void goodsLeadToTheirLedgerAndBack()
    {
        LedgerDesk<reports::frmTanaMoto> desk;
        desk.screen();
        QTRY_COMPARE(desk.cell(1, 0), u"りんご"_s);
        auto &list = desk.driver().the<ui::ReportGrid>("MSFlexGrid1");
        list.setCurrentIndex(list.model()->index(1, 0));
        QStringList seen;
        QTimer::singleShot(0, &list, [&] {
            auto *ledger = QApplication::activeModalWidget();
            auto *rows = ledger->findChild<ui::ReportGrid *>(u"MSFlexGrid1"_s);
            seen << ledger->objectName() << ledger->findChild<QLineEdit *>(u"txtNouhinsaki1"_s)->text();
            for (int row = 0; row < rows->rowCount(); ++row) {
                rows->setCurrentIndex(rows->model()->index(row, 0));
                seen << rows->selectedText().replace(u'\t', u'|');
            }
            for (int sum = 1; sum <= 5; ++sum)
                seen << ledger->findChild<QLineEdit *>(u"txtSum%1"_s.arg(sum))->text();
            rows->setCurrentIndex(rows->model()->index(4, 0));
            QTimer::singleShot(0, &list, [&] {
                QWidget *correction = QApplication::activeModalWidget();
                seen << correction->objectName() + u' ' +
                            correction->findChild<QLineEdit *>(u"txtDenNo"_s)->text();
                desk.shop.run(u"UPDATE 入出庫サブ SET 数量 = 13 WHERE ID = 8"_s);
                correction->close();
            });
            QTest::keyClick(rows, Qt::Key_Return);
            seen << ledger->findChild<QLineEdit *>(u"txtSum5"_s)->text();
            QTest::keyClick(rows, Qt::Key_Escape);
            seen << (ledger->isVisible() ? u"still there"_s : u"back"_s);
        });
        QTest::keyClick(&list, Qt::Key_Return);
        QCOMPARE(seen.join(u'\n'), u"frmTanaGoods\nりんご\n|||繰越在庫|||||-10\n"
                                   "2026/03/01|O5|納品|(削除済み) ID 77|1,234||1||-11\n"
                                   "2026/03/02|O6|納品|aite1|500||1||-12\n"
                                   "2026/03/04|O10|納品|(相手先なし)|70||1||-13\n"
                                   "2026/03/31|T8|棚卸|aite0|100|||12|12\n"
                                   "2026/04/01|I9|仕入|aite0|110|8|||20\n"
                                   "-10\n8\n3\n25\n20\nfrmInAmd T8\n21\nback"_s);
        QCOMPARE(desk.cell(1, 7), u"21"_s); // the list counts anew
        QCOMPARE(list.currentIndex().row(), 1);
    }

    // The file holds what the screen shows, numbers as numbers, with the row of totals.
    void writtenAsTable()
    {
        LedgerDesk<reports::frmInMoto> desk;
        desk.driver().type("txtKey1", u"aite0"_s);
        desk.driver().press("Command1");
        const QString fileName = desk.shop.path(u"元帳.csv"_s);
        ui::file_dialogs::expectFile(fileName);
        desk.driver().press("Command3");
        QVERIFY(ui::desktop::takeOpened().endsWith(u".csv"_s));
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        QVERIFY2(text.contains(u"2026/04/01,I9,仕入,りんご,\"\",8,\"\",110,,880,,880"_s), qPrintable(text));
        QVERIFY2(text.contains(u",,,合計,,,,,0,880,0,880"_s), qPrintable(text));
    }

    void printedOnLyingPaper()
    {
        reports::Ledger ledger;
        ledger.brought = -1234567;
        ledger.totals.balance = -1234567;
        const base::Report report =
            reports::ledgerReport(ledger, book::Party::Supplier, u"仕入先"_s, {{2026, 3, 1}, {2026, 3, 31}});
        QCOMPARE(report.remark, u"仕入先　　2026/03/01 ～ 2026/03/31"_s);
        const auto sheets = printing::listSheets(report, {}, printing::paperFor(report));
        QVERIFY(sheets.front().readWidth() > sheets.front().readHeight());
        const auto &texts = sheets.front().texts;
        QVERIFY(std::any_of(texts.begin(), texts.end(),
                            [](const printing::TextItem &item) { return item.text == u"-1,234,567"_s; }));
        double width = 0;
        for (const base::Column &column : report.columns)
            width += column.millimetres;
        QVERIFY(width < sheets.front().readWidth() - 20); // nothing has to be made narrower
    }

    void filesAreNamedAfterWhatTheyHold()
    {
        const base::Report report =
            reports::ledgerReport({}, book::Party::Supplier, u"A/B: 商店"_s, {{2026, 3, 1}, {2026, 3, 31}});
        QCOMPARE(ui::file_dialogs::proposedFile(report.documentName, u"xls"_s).section(u'/', -1),
                 u"買掛金元帳 A-B_ 商店 2026-03-01 ～ 2026-03-31.xls"_s);
    }
};

QTEST_MAIN(TestLedgerScreens)
#include "tst_ledger_screens.moc"
