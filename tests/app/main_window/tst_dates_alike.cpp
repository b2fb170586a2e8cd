// Days look alike on every screen, whatever the desktop's language.
#include "registers/duplicates/DialogDuplicates.h"
#include "registers/frmNouhin.h"
#include "registers/lists/frmNouhinDel.h"
#include "registers/lists/frmNouhinFind.h"
#include "registers/lists/frmNouhinSub.h"
#include "reports/bills/frmOutBillList.h"
#include "reports/daily/DialogDayReport.h"
#include "reports/ledgers/ledger_screen.h"
#include "reports/purchases/frmInList.h"
#include "reports/purchases/frmInTax.h"
#include "slips/correction/frmInAmd.h"
#include "slips/correction/frmMitumoriAmd.h"
#include "slips/correction/frmOutAmd.h"
#include "slips/entry/frmIn.h"
#include "slips/entry/frmMitsumori.h"
#include "slips/entry/frmOut.h"
#include "slips/entry/money_slips.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/prompts.h"

#include <QDateTimeEdit>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

using Work = std::function<void(ScreenDriver &)>;

// Two customers that look like one, a supplier, and a slip of each kind.
void fill(FreshShop &shop)
{
    shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先')"_s);
    shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (1, '木村')"_s);
    for (const int id : {1, 2})
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, TEL1, 区分ID, 登録日, 更新日, 誕生日, "
            "締め日, 消費税区分) VALUES (?, '山田', '山田', '03-1234-5678', 1, '2026-02-03', '2026-02-03', "
            "'1980-02-03', 0, 0)"_s,
            {id});
    shop.run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 仕入先名キー) VALUES (1, '林', '林')"_s);
    int id = 0;
    for (const QChar kind : u"ORBIPATM"_s) {
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率) "
                 "VALUES (?, '2026-02-03', ?, 1, 1, 10)"_s,
                 {++id, kind + u"1"_s});
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 数量, 単価, 金額) VALUES (?, 'りんご', 1, 100, 100)"_s,
                 {id});
    }
    shop.workspace.panel.employeeId = 1;
}

QStringList textsOf(const QAbstractItemView &view)
{
    QStringList texts;
    const auto *table = qobject_cast<const QTableView *>(&view);
    for (int row = 0; view.model() && row < std::min(20, view.model()->rowCount()); ++row) {
        for (int column = 0; column < view.model()->columnCount(); ++column) {
            if (!table || !table->isColumnHidden(column))
                texts << view.model()->index(row, column).data().toString();
        }
    }
    return texts;
}

QStringList textsOn(const QWidget &screen)
{
    QStringList texts;
    for (const auto *view : screen.findChildren<QAbstractItemView *>()) {
        if (!qobject_cast<const QHeaderView *>(view))
            texts << textsOf(*view);
    }
    for (const auto *box : screen.findChildren<QLineEdit *>()) {
        if (box->isVisible())
            texts << box->text();
    }
    for (const auto *label : screen.findChildren<QLabel *>())
        texts << label->text();
    for (const auto *box : screen.findChildren<QDateTimeEdit *>())
        texts << box->text();
    return texts;
}

int daysSeen = 0;

// What is a day, and not as 2026/02/03.
QStringList otherDays(const QWidget &screen)
{
    static const QRegularExpression day(
        uR"((?<![0-9/])([0-9]{4}-[0-9]{1,2}-[0-9]{1,2}|[0-9]{4}年[0-9]{1,2}月[0-9]{1,2}日|[0-9]{1,4}/[0-9]{1,2}/[0-9]{1,4})(?![0-9/]))"_s);
    static const QRegularExpression wanted(u"\\A[0-9]{4}/[0-9]{2}/[0-9]{2}\\z"_s);
    QStringList found;
    for (const QString &text : textsOn(screen)) {
        for (auto match = day.globalMatch(text); match.hasNext();) {
            const QString written = match.next().captured();
            if (wanted.match(written).hasMatch())
                ++daysSeen;
            else
                found << screen.objectName() + u": "_s + text;
        }
    }
    return found;
}

template <class Screen>
QStringList daysOn(FreshShop &shop, const Work &work = {})
{
    Screen screen(shop.workspace);
    ScreenDriver driver(&screen);
    driver.show();
    if (work)
        work(driver);
    return otherDays(screen);
}

template <class... Screens>
QStringList daysOnAll(FreshShop &shop, const Work &work = {})
{
    QStringList found;
    (found.append(daysOn<Screens>(shop, work)), ...);
    return found;
}

void findEveryone(ScreenDriver &screen)
{
    screen.list(u"Combo1").setFocus();
    screen.choose(u"Combo1", 1);
    screen.choose(u"Combo1", 0);
}

void chooseCounterpart(ScreenDriver &screen)
{
    screen.press(u"Command1");
    screen.key(Qt::Key_Return);
}

} // namespace

class TestDatesAlike : public ScriptedTest
{
    Q_OBJECT

private slots:
    void onEveryScreen_data()
    {
        QTest::addColumn<QLocale>("language");
        QTest::newRow("Japanese") << QLocale(QLocale::Japanese, QLocale::Japan);
        QTest::newRow("American") << QLocale(QLocale::English, QLocale::UnitedStates);
    }
    void onEveryScreen()
    {
        QFETCH(QLocale, language);
        QLocale::setDefault(language);
        FreshShop shop;
        fill(shop);
        daysSeen = 0;
        using namespace registers;
        using namespace slips;
        using namespace reports;
        QStringList found = daysOnAll<frmNouhin, DialogDuplicates>(shop);
        found << daysOnAll<frmNouhinFind, frmNouhinDel, frmNouhinSub>(shop, findEveryone);
        QVERIFY2(daysSeen > 12, qPrintable(QString::number(daysSeen)));
        found << daysOnAll<frmOutAmd, frmInAmd, frmMitumoriAmd, frmOutMoto, frmInMoto, frmOutZandaka,
                           frmInZandaka, frmTanaMoto, DayReportOf<DayReportKind::Sales>,
                           DayReportOf<DayReportKind::Receipts>, frmOutBillList, frmInList, frmInTax>(shop);
        found << daysOnAll<frmOut, frmIn, frmMitsumori, frmOutReceipt, frmInPay>(shop, chooseCounterpart);
        QVERIFY2(daysSeen > 30, qPrintable(QString::number(daysSeen)));
        ui::prompts::takeUnexpected(); // what an unregistered company has to be told is not asked here
        QCOMPARE(found.join(u'\n'), QString());
    }
    void cleanupTestCase() { QLocale::setDefault(QLocale(QLocale::Japanese, QLocale::Japan)); }
};

QTEST_MAIN(TestDatesAlike)
#include "tst_dates_alike.moc"
