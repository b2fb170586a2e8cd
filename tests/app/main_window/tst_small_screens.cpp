// Windows on the counter's small display, and with the large type of a desktop: all of them can be worked.
#include "app/main_window/frmAMain.h"
#include "masters/DialogMyCo.h"
#include "masters/DialogTaxRates.h"
#include "masters/MasterGridEditor.h"
#include "masters/frmMyco.h"
#include "printing/DialogPrinterP.h"
#include "registers/duplicates/DialogDuplicates.h"
#include "registers/frmNouhin.h"
#include "registers/frmSiire.h"
#include "registers/lists/frmNouhinDel.h"
#include "registers/lists/frmNouhinFind.h"
#include "registers/lists/frmNouhinSub.h"
#include "registers/postal/ZipCodeConv.h"
#include "reports/bills/DialogBillIssue.h"
#include "reports/bills/frmOutBill.h"
#include "reports/bills/frmOutBillList.h"
#include "reports/charts/DialogCharts.h"
#include "reports/daily/DialogDayReport.h"
#include "reports/ledgers/ledger_screen.h"
#include "reports/purchases/frmInList.h"
#include "reports/purchases/frmInTax.h"
#include "shipping/addresses/DialogHagakiB.h"
#include "shipping/addresses/frmInvoice1.h"
#include "shipping/carriers/DialogCarrierExport.h"
#include "shipping/carriers/DialogCarrierSettings.h"
#include "shipping/carriers/DialogTrackingImport.h"
#include "shipping/slips/frmKuroneko1.h"
#include "shipping/slips/frmKuroneko2.h"
#include "slips/correction/frmInAmd.h"
#include "slips/correction/frmMitumoriAmd.h"
#include "slips/correction/frmOutAmd.h"
#include "slips/entry/frmIn.h"
#include "slips/entry/frmMitsumori.h"
#include "slips/entry/frmOut.h"
#include "slips/entry/money_slips.h"
#include "support/fresh_shop.h"
#include "support/scripted_test.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

// Those that cannot be reached: beyond their window and not in anything that scrolls.
QStringList outOfReach(const QWidget &window)
{
    QStringList found;
    const auto controls = window.findChildren<QWidget *>();
    for (const QWidget *control : controls) {
        if (control->focusPolicy() == Qt::NoFocus || !control->isVisible())
            continue;
        bool scrolls = false;
        for (const QWidget *over = control->parentWidget(); over != &window; over = over->parentWidget())
            scrolls = scrolls || over->inherits("QAbstractScrollArea");
        const QRect place(control->mapTo(&window, QPoint()), control->size());
        if (!scrolls && !window.rect().contains(place))
            found << window.objectName() + u'.' + control->objectName();
    }
    return found;
}

template <class... Screens>
QStringList cutScreens(workspace::Workspace &workspace, const QRect &display)
{
    QStringList found;
    const auto look = [&](QWidget &&screen) {
        screen.show();
        QTest::qWait(0);
        if (!display.contains(screen.geometry()))
            found << u"%1 does not fit the display: %2 × %3 at %4, %5"_s.arg(screen.objectName())
                         .arg(screen.width())
                         .arg(screen.height())
                         .arg(screen.x())
                         .arg(screen.y());
        found << outOfReach(screen);
    };
    (look(Screens(workspace, nullptr)), ...);
    return found;
}

} // namespace

class TestSmallScreens : public ScriptedTest
{
    Q_OBJECT

private slots:
    void nothingIsOutOfReach_data();
    void nothingIsOutOfReach();
    void customersNeedNoScrolling();
    void generalCodeNeedsNoMoreRoom();
    void remarksWidenNoWindow();
    void datesAreWhole();
    void cursorComesIntoSight();
    void wideTablesShareTheRoom();
    void aSizeOfASmallDisplayDoesNotStick();
};

void TestSmallScreens::nothingIsOutOfReach_data()
{
    QTest::addColumn<int>("points");
    QTest::newRow("usual") << 10;
    QTest::newRow("the panel's larger one") << 11;
    QTest::newRow("large") << 14;
}

void TestSmallScreens::nothingIsOutOfReach()
{
    QFETCH(int, points);
    QFont type = QApplication::font();
    type.setPointSize(points);
    QApplication::setFont(type);
    FreshShop shop;
    shop.workspace.panel.textSize = points;
    const QRect display = QGuiApplication::primaryScreen()->availableGeometry();
    QCOMPARE(display.size(), QSize(1024, 768));
    QStringList cut =
        cutScreens<masters::frmTani, masters::frmKikaku, masters::frmShain, masters::frmKubun,
                   masters::frmInvKubun, masters::frmInShohin, masters::frmOutShohin, masters::frmMyco,
                   masters::DialogMyCo, registers::frmNouhin, registers::frmSiire, registers::frmNouhinDel,
                   registers::frmNouhinFind, registers::frmNouhinSub, registers::ZipCodeConv,
                   registers::DialogDuplicates, masters::DialogTaxRates, printing::DialogPrinterP,
                   printing::frmPrinterP>(shop.workspace, display);
    cut << cutScreens<slips::frmOut, slips::frmIn, slips::frmMitsumori, slips::frmOutReceipt, slips::frmInPay,
                      slips::frmUrikake, slips::frmKaikake, slips::frmTana, slips::frmOutAmd, slips::frmInAmd,
                      slips::frmMitumoriAmd>(shop.workspace, display);
    cut << cutScreens<reports::frmOutMoto, reports::frmInMoto, reports::frmOutZandaka, reports::frmInZandaka,
                      reports::frmTanaMoto, reports::DayReportOf<reports::DayReportKind::Sales>,
                      reports::frmOutBillList, reports::DialogCharts, reports::frmInList, reports::frmInTax,
                      reports::DialogBillIssue, reports::frmOutBill>(shop.workspace, display);
    cut << cutScreens<shipping::frmInvoice1, shipping::DialogHagakiB>(shop.workspace, display);
    cut << cutScreens<shipping::DialogCarrierExport, shipping::DialogCarrierSettings,
                      shipping::DialogTrackingImport>(shop.workspace, display);
    cut << cutScreens<shipping::frmKuroneko1, shipping::frmKuroneko2>(shop.workspace, display);
    ui::prompts::takeUnexpected(); // what an empty shop has to say is not asked here
    QCOMPARE(cut.join(u'\n'), QString());

    app::frmAMain window(shop.workspace, app::screenOpeners());
    window.load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
    window.show();
    auto *tabs = window.findChild<QTabWidget *>(u"SSTab1"_s);
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        QTest::qWait(0);
        cut << outOfReach(window);
    }
    QVERIFY(display.contains(window.geometry()));
    QCOMPARE(cut.join(u'\n'), QString());
}

void TestSmallScreens::customersNeedNoScrolling()
{
    QFont type = QApplication::font();
    type.setPointSize(10);
    QApplication::setFont(type);
    FreshShop shop;
    for (const bool isRoster : {false, true}) {
        std::unique_ptr<ui::Screen> screen;
        if (isRoster)
            screen = std::make_unique<registers::frmNouhinFind>(shop.workspace);
        else
            screen = std::make_unique<registers::frmNouhin>(shop.workspace);
        const int least = screen->minimumSizeHint().width();
        screen->show();
        QVERIFY2(!screen->findChild<QScrollArea *>(u"pageView"_s), qPrintable(QString::number(least)));
    }
    ui::prompts::takeUnexpected();
}

// The remark beside a city's own code takes the room that is left, not that of the code.
void TestSmallScreens::generalCodeNeedsNoMoreRoom()
{
    for (const int points : {10, 11, 14}) {
        QFont type = QApplication::font();
        type.setPointSize(points);
        QApplication::setFont(type);
        FreshShop shop;
        shop.workspace.panel.textSize = points;
        registers::frmNouhin customers(shop.workspace);
        registers::frmSiire suppliers(shop.workspace);
        for (ui::Screen *screen : std::initializer_list<ui::Screen *>{&customers, &suppliers}) {
            screen->show();
            QTest::qWait(0);
            const int width = screen->minimumSizeHint().width();
            auto *remark = screen->findChild<QPushButton *>(u"cmdZipSearch"_s);
            auto *code = screen->findChild<QLineEdit *>(u"txtZip"_s);
            const int whole = code->fontMetrics().horizontalAdvance(u"999-9999"_s) + 10;
            remark->show();
            QTest::qWait(0);
            QVERIFY2(screen->minimumSizeHint().width() <= std::max(width, 1024),
                     qPrintable(u"%1: %2 points: %3, %4"_s.arg(screen->objectName())
                                    .arg(points)
                                    .arg(width)
                                    .arg(screen->minimumSizeHint().width())));
            QVERIFY2(code->width() >= whole, qPrintable(u"%1 of %2"_s.arg(code->width()).arg(whole)));
            QVERIFY2(remark->width() >= remark->fontMetrics().horizontalAdvance(remark->text()),
                     qPrintable(u"%1 points: %2"_s.arg(points).arg(remark->width())));
        }
    }
    ui::prompts::takeUnexpected();
}

void TestSmallScreens::remarksWidenNoWindow()
{
    for (const int points : {10, 11, 14}) {
        QFont type = QApplication::font();
        type.setPointSize(points);
        QApplication::setFont(type);
        FreshShop shop;
        shop.workspace.panel.textSize = points;
        reports::DayReportOf<reports::DayReportKind::Sales> screen(shop.workspace);
        screen.show();
        QTest::qWait(0);
        const int width = screen.width();
        for (int slip = 1; slip <= 120; ++slip) { // of customers who are deleted, every fourth without a date
            shop.run(
                u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID) VALUES (?, ?, ?, 77)"_s,
                {slip, slip % 4 == 0 ? QVariant() : QVariant(u"2026-04-01"_s), u'O' + QString::number(slip)});
            shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (?, 'みかん', 100)"_s, {slip});
        }
        screen.findChild<QPushButton *>(u"Command5"_s)->click();
        QTest::qWait(0);
        const auto *remark = screen.findChild<QLabel *>(u"lblMessage"_s);
        QVERIFY2(remark->text().contains(u"日付のない伝票の明細 30 行"_s), qPrintable(remark->text()));
        QCOMPARE(screen.width(), width);
        QCOMPARE(outOfReach(screen).join(u'\n'), QString());
        QVERIFY(remark->height() >= remark->heightForWidth(remark->width()));
    }
    ui::prompts::takeUnexpected();
}

// Also where the widths were kept while the type was smaller.
void TestSmallScreens::datesAreWhole()
{
    FreshShop shop;
    for (const int points : {10, 11, 14}) {
        shop.workspace.panel.textSize = points;
        slips::frmOutAmd screen(shop.workspace);
        screen.show();
        QTest::qWait(0);
        const auto *slips = screen.findChild<ui::Grid *>(u"DataGrid1"_s);
        QVERIFY(slips);
        for (int column = 0; column < slips->model()->columnCount(); ++column) {
            if (slips->model()->headerData(column, Qt::Horizontal) != u"日付"_s)
                continue;
            const int whole = slips->fontMetrics().horizontalAdvance(u"2026/11/22"_s) + 8;
            QVERIFY2(
                slips->columnWidth(column) >= whole,
                qPrintable(u"%1 points: %2 of %3"_s.arg(points).arg(slips->columnWidth(column)).arg(whole)));
        }
        screen.reject();
    }
    ui::prompts::takeUnexpected();
}

// By Enter as by Tab, and also where a refusal puts it.
void TestSmallScreens::cursorComesIntoSight()
{
    FreshShop shop;
    shop.workspace.panel.textSize = 30;
    masters::frmMyco screen(shop.workspace);
    screen.show();
    QVERIFY(QTest::qWaitForWindowActive(&screen));
    const auto *view = screen.findChild<QScrollArea *>(u"pageView"_s);
    QVERIFY(view);
    // Where type is large, a box may be wider than the display: its beginning counts.
    const auto isSeen = [&](const QWidget *control) {
        const QRect sight = view->viewport()->rect();
        const QPoint corner = control->mapTo(view->viewport(), QPoint());
        return sight.contains(corner) && corner.y() + control->height() <= sight.height();
    };
    auto *last = screen.findChild<QPushButton *>(u"cmdUpdate"_s);
    auto *first = screen.findChild<QLineEdit *>(u"txtName1"_s);
    QVERIFY2(first->hasFocus(), screen.focusWidget() ? qPrintable(screen.focusWidget()->objectName()) : "");
    QVERIFY(isSeen(first) && !isSeen(last));
    last->setFocus();
    QVERIFY(isSeen(last) && !isSeen(first));
}

void TestSmallScreens::wideTablesShareTheRoom()
{
    FreshShop shop;
    db::Recordset units(shop.connection);
    QVERIFY(units.open({u"単位ID, 単位, 版"_s, u"単位"_s}));
    ui::Grid grid;
    grid.setColumns({{u"単位ID"_s, 10}, {u"単位"_s, 30}});
    grid.bind(units, {});
    grid.setUp(shop.workspace, u"frmX/grid"_s);
    grid.resize(900, 300);
    grid.show();
    const int width = grid.columnWidth(1);
    grid.saveLayout(shop.workspace);
    const QString stored = shop.settings.layout(u"frmX/grid/columns"_s);
    for (int wide = 1400; wide <= 1920; ++wide)
        grid.resize(wide, 300);
    const int total = grid.columnWidth(0) + grid.columnWidth(1);
    QVERIFY2(total > 1880 && total <= grid.viewport()->width(), qPrintable(QString::number(total)));
    // What is kept is what they were given, also when the clerk drags one of them.
    grid.saveLayout(shop.workspace);
    QCOMPARE(shop.settings.layout(u"frmX/grid/columns"_s), stored);
    grid.setColumnWidth(0, grid.columnWidth(0) / 2);
    grid.resize(900, 300);
    QCOMPARE(grid.columnWidth(1), width);
    QVERIFY(std::abs(grid.columnWidth(0) * 2 - stored.split(u' ').at(0).toInt()) <= 4);
}

void TestSmallScreens::aSizeOfASmallDisplayDoesNotStick()
{
    FreshShop shop;
    const auto sizeWith = [&shop](const QString &stored) {
        shop.settings.writeLayout(u"frmTani/size"_s, stored);
        masters::frmTani screen(shop.workspace);
        screen.show();
        return screen.size();
    };
    const QSize usual = sizeWith({});
    QCOMPARE(sizeWith(u"900 700 800 600"_s), usual);
    QCOMPARE(sizeWith(u"900 700 1024 768"_s), QSize(900, 700));
    QCOMPARE(sizeWith(u"900 700"_s), QSize(900, 700));
    // Each window comes back to where it stood.
    {
        masters::frmTani units(shop.workspace);
        units.show();
        units.move(40, 30);
        units.reject();
        masters::frmKikaku specifications(shop.workspace);
        specifications.show();
        specifications.move(90, 60);
        specifications.reject();
    }
    masters::frmTani units(shop.workspace);
    units.show();
    QCOMPARE(units.pos(), QPoint(40, 30));
    ui::prompts::takeUnexpected();
}

QTEST_MAIN(TestSmallScreens)
#include "tst_small_screens.moc"
