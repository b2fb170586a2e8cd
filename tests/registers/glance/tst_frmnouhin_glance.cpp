#include "registers/customer_desk.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"
#include "ui/report_grid.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

namespace
{

// 1 山田 has two sales and a receipt; 3 田中 is the one shown first.
struct Glance : CustomerDesk
{
    Glance()
        : CustomerDesk(Customers, [](CustomerDesk &r) {
            r.shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (1, '2026-03-01', "
                       u"'O1', 1), "
                       "(2, '2026-03-02', 'R2', 1), (3, '2026-03-03', 'O3', 1)"_s);
            r.shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 単価, 金額) VALUES (1, '米', 1000, 1000), (2, "
                       u"'入金', NULL, 400), "
                       "(3, '米', 1100, 2200)"_s);
            r.screen.setOpeners({
                .slip =
                    [&r](QWidget *, const book::SlipKind &kind, qint64 slip) {
                        r.shop.run(u"INSERT INTO 規格 (規格) VALUES (?)"_s,
                                   {QString(QChar(kind.letter)) + QString::number(slip)});
                    },
                .ledger =
                    [&r](QWidget *, qint64 customer) {
                        r.shop.run(u"INSERT INTO 規格 (規格) VALUES (?)"_s, {QString::number(customer)});
                    },
                .sale = {},
                .charts =
                    [&r](QWidget *, qint64 customer) {
                        r.shop.run(u"INSERT INTO 規格 (規格) VALUES (?)"_s,
                                   {u"図"_s + QString::number(customer)});
                    },
                .shipments =
                    [&r](QWidget *, qint64 customer, qint64 shipment) {
                        r.shop.run(u"INSERT INTO 規格 (規格) VALUES (?)"_s,
                                   {u"発送%1の%2"_s.arg(customer).arg(shipment)});
                    },
            });
        })
    {}

    QString shown()
    {
        QStringList lines;
        const QAbstractItemModel &model = *the<ui::ReportGrid>("gridGlance").model();
        for (int row = 0; row < model.rowCount(); ++row)
            lines << model.index(row, 1).data().toString() + u' ' + model.index(row, 2).data().toString();
        return lines.join(u'|');
    }
    QString balance() { return the<QLabel>("labelBalance").text(); }
    QString opened() { return shop.rows(u"SELECT 規格 FROM 規格 ORDER BY 規格ID"_s).join(u' '); }
};

const QString ofYamada =
    u"最近の伝票 |納品　O3 2,200|入金　R2 400|納品　O1 1,000|よく買う商品 |米 （2回） 1,100"_s;

} // namespace

class TestFrmNouhinGlance : public ScriptedTest
{
    Q_OBJECT

private slots:
    void showsTheCustomerAfterAWhile()
    {
        Glance r;
        QTRY_COMPARE(r.balance(), u"売掛金残高　0 円"_s);
        r.goTo(1);
        QCOMPARE(r.shown(), QString());
        QCOMPARE(r.balance(), QString()); // nobody else's figures stand beside the customer
        QTRY_COMPARE(r.balance(), u"売掛金残高　2,800 円"_s);
        QCOMPARE(r.shown(), ofYamada);
        r.goTo(0);
        QCOMPARE(r.shown(), QString());
    }

    // Keys come faster than the pause: nothing is read until they stop.
    void waitsForTheClerk()
    {
        Glance r;
        r.goTo(1);
        r.box("txtMemo").setFocus();
        // A busy machine may hold up the test itself, which is a pause of the clerk then.
        bool isHeldUp = true;
        for (int tries = 0; isHeldUp && tries < 20; ++tries) {
            r.goTo(0);
            r.goTo(1);
            isHeldUp = false;
            QElapsedTimer key;
            for (int presses = 0; presses < 20 && !isHeldUp; ++presses) {
                key.start();
                QTest::keyClick(&r.box("txtMemo"), Qt::Key_A);
                QTest::qWait(20);
                isHeldUp = key.elapsed() > 100;
            }
        }
        QCOMPARE(r.shown(), QString());
        QTRY_COMPARE(r.shown(), ofYamada);
        QVERIFY(r.box("txtMemo").text().startsWith(u"aaa"_s));
    }

    // Goods and headings are looked at, too.
    void onlyASlipIsOpenedByADoubleClick()
    {
        Glance r;
        r.goTo(1);
        QTRY_COMPARE(r.shown(), ofYamada);
        auto &grid = r.the<ui::ReportGrid>("gridGlance");
        const auto doubleClick = [&grid](int row) {
            const QPoint place = grid.visualRect(grid.model()->index(row, 1)).center();
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, place);
            QTest::mouseDClick(grid.viewport(), Qt::LeftButton, {}, place);
        };
        for (const int row : {0, 4, 5})
            doubleClick(row);
        QCOMPARE(r.opened(), QString());
        doubleClick(2);
        QCOMPARE(r.opened(), u"R2"_s);
    }

    void aParcelIsOpenedAsWell()
    {
        Glance r;
        r.shop.run(u"INSERT INTO 発送マスター (発送ID, 依頼主ID, 受付日, 届先名1, 品名) VALUES (5, 1, "
                   "'2026-03-01', '鈴木', '米')"_s);
        r.goTo(1);
        QTRY_COMPARE(r.shown(), ofYamada + u"|最近の発送 |鈴木　米 "_s);
        auto &grid = r.the<ui::ReportGrid>("gridGlance");
        grid.setCurrentIndex(grid.model()->index(7, 1));
        QTest::keyClick(&r.screen, Qt::Key_F6);
        QCOMPARE(r.opened(), u"発送1の5"_s);
    }

    // The customer that is shown first again may have got slips by a merge.
    void readsAnewAfterAMerge()
    {
        Glance r;
        QTRY_COMPARE(r.balance(), u"売掛金残高　0 円"_s);
        QTimer::singleShot(0, &r.screen, [&r] {
            r.shop.run(u"UPDATE 入出庫マスター SET 相手先ID = 3"_s);
            QApplication::activeModalWidget()->close();
        });
        r.press("cmdDuplicates");
        QTRY_COMPARE(r.balance(), u"売掛金残高　2,800 円"_s);
    }

    void leadsToSlipsAndLedger()
    {
        Glance r;
        r.goTo(1);
        QTRY_COMPARE(r.shown(), ofYamada);
        QVERIFY(!r.the<QPushButton>("cmdSale").isVisible()); // there is no way to it here
        r.type("txtMemo", u"新"_s);
        r.key(Qt::Key_F6); // the newest one, unless another is chosen
        QCOMPARE(r.opened(), u"O3"_s);
        QCOMPARE(r.stored(u"メモ"_s, 1), u"新"_s); // what was typed was saved first
        QTRY_COMPARE(r.shown(), ofYamada);
        auto &grid = r.the<ui::ReportGrid>("gridGlance");
        grid.setCurrentIndex(grid.model()->index(2, 0));
        r.key(Qt::Key_F6);
        r.press("cmdLedger");
        QCOMPARE(r.opened(), u"O3 R2 1"_s);
        r.key(Qt::Key_F8);
        r.key(Qt::Key_F9);
        QCOMPARE(r.opened(), u"O3 R2 1 図1"_s);
        r.clear("txtName");
        ui::prompts::expectInform({});
        r.key(Qt::Key_F7); // what cannot be saved keeps the clerk here
        QCOMPARE(r.opened(), u"O3 R2 1 図1"_s);
        r.type("txtName", u"山田"_s);
    }
};

QTEST_MAIN(TestFrmNouhinGlance)
#include "tst_frmnouhin_glance.moc"
