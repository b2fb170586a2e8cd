// The letters with which menus and screens are worked: each once where its texts are ours to choose.
#include "app/main_window/command_panel.h"
#include "app/main_window/frmAMain.h"
#include "app/main_window/menu_letters.h"
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
#include "reports/bills/frmOutBillList.h"
#include "reports/charts/DialogCharts.h"
#include "reports/daily/DialogDayReport.h"
#include "reports/ledgers/ledger_screen.h"
#include "reports/purchases/frmInList.h"
#include "reports/purchases/frmInTax.h"
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
#include "ui/prompts.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QTest>

#include <map>

using namespace Qt::StringLiterals;

namespace
{

// Captions that clerks have known for long, and that therefore stay. The toolkit goes from one to the other.
const QSet<QString> knownTwice{
    u"mnuPic C"_s,      // カレンダーの色, カレンダー
    u"mnuInvoice G"_s,  // 発送伝票　ギフト, ご贈答品承り票
    u"mnuReport O"_s,   // 売掛金元帳, 納品日報
    u"mnuReport I"_s,   // 買掛金元帳, 仕入日報
    u"mnuReport R"_s,   // 買掛金残高照会, 入金日報
    u"frmNouhin K"_s,   // 納品先名キー, 削除
    u"frmShain K"_s,    // 社員名, 削除
    u"frmInShohin K"_s, // 仕入商品名, 削除
};

using Letters = std::map<QChar, QStringList>;

void add(Letters &letters, const QString &caption)
{
    if (const QChar letter = app::letterOf(caption); !letter.isNull())
        letters[letter] << caption;
}

// "frmX K: 名キー(&K), 削除(&K)" for each letter that stands twice.
QStringList twiceIn(const QString &place, const Letters &letters)
{
    QStringList found;
    for (const auto &[letter, captions] : letters) {
        const QString key = place + u' ' + letter;
        if (captions.size() > 1 && !knownTwice.contains(key))
            found << key + u": "_s + captions.join(u", "_s);
    }
    return found;
}

Letters lettersIn(const QWidget &screen)
{
    Letters letters;
    const auto widgets = screen.findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (!widget->isVisibleTo(&screen))
            continue;
        const auto *label = qobject_cast<QLabel *>(widget);
        if (label && label->buddy() && label->text().contains(u'&'))
            add(letters, label->text());
        if (const auto *button = qobject_cast<QAbstractButton *>(widget);
            button && button->text().contains(u'&'))
            add(letters, button->text());
        if (const auto *box = qobject_cast<QGroupBox *>(widget); box && box->title().contains(u'&'))
            add(letters, box->title());
        if (const auto *tabs = qobject_cast<QTabBar *>(widget)) {
            for (int i = 0; i < tabs->count(); ++i)
                if (tabs->tabText(i).contains(u'&'))
                    add(letters, tabs->tabText(i));
        }
    }
    return letters;
}

template <class... Screens>
QStringList twiceOnScreens(workspace::Workspace &workspace)
{
    QStringList found;
    const auto look = [&](QWidget &&screen) {
        screen.show();
        found << twiceIn(screen.objectName(), lettersIn(screen));
    };
    (look(Screens(workspace, nullptr)), ...);
    return found;
}

} // namespace

class TestLetters : public ScriptedTest
{
    Q_OBJECT

private slots:
    void standOnceInMenus();
    void standOnceOnScreens();
    void withoutAMarkChooseToo_data();
    void withoutAMarkChooseToo();

private:
    struct Desk
    {
        Desk()
        {
            shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (7, '山田')"_s);
            shop.connection.close();
            app::Openers openers = app::screenOpeners();
            for (const app::Command &command : app::commands())
                openers[command.action] = [this, action = command.action](QWidget *, workspace::Workspace &) {
                    opened << action;
                };
            window = std::make_unique<app::frmAMain>(shop.workspace, openers);
            window->load(u'"' + shop.path(u"shop.cdb"_s) + u'"');
            window->show();
        }

        FreshShop shop;
        QList<app::Action> opened;
        std::unique_ptr<app::frmAMain> window;
    };
};

void TestLetters::standOnceInMenus()
{
    Desk desk;
    QStringList twice = twiceIn(u"frmAMain"_s, lettersIn(*desk.window));
    QList<QWidget *> bars{desk.window->menuBar()};
    for (QMenu *menu : desk.window->findChildren<QMenu *>())
        bars << menu;
    QVERIFY(bars.size() > 15);
    for (const QWidget *bar : bars) {
        Letters letters;
        for (const QAction *item : bar->actions())
            add(letters, item->text());
        twice << twiceIn(bar->objectName(), letters);
    }
    QCOMPARE(twice.join(u'\n'), QString());
}

void TestLetters::standOnceOnScreens()
{
    FreshShop shop;
    QStringList twice =
        twiceOnScreens<masters::frmTani, masters::frmKikaku, masters::frmShain, masters::frmKubun,
                       masters::frmInvKubun, masters::frmInShohin, masters::frmOutShohin, masters::frmMyco,
                       masters::DialogMyCo, registers::frmNouhin, registers::frmSiire,
                       registers::DialogDuplicates, registers::frmNouhinDel, registers::frmNouhinFind,
                       registers::frmNouhinSub, registers::ZipCodeConv, masters::DialogTaxRates,
                       printing::DialogPrinterP, printing::frmPrinterP>(shop.workspace);
    twice << twiceOnScreens<slips::frmOut, slips::frmIn, slips::frmMitsumori, slips::frmOutReceipt,
                            slips::frmInPay, slips::frmUrikake, slips::frmKaikake, slips::frmTana,
                            slips::frmOutAmd, slips::frmInAmd, slips::frmMitumoriAmd>(shop.workspace);
    twice << twiceOnScreens<reports::frmOutMoto, reports::frmInMoto, reports::frmOutZandaka,
                            reports::frmInZandaka, reports::frmTanaMoto,
                            reports::DayReportOf<reports::DayReportKind::Sales>, reports::frmOutBillList,
                            reports::DialogCharts, reports::frmInList, reports::frmInTax>(shop.workspace);
    twice << twiceOnScreens<shipping::frmKuroneko1, shipping::frmKuroneko2>(shop.workspace);
    ui::prompts::takeUnexpected(); // what an empty shop has to say is not asked here
    QCOMPARE(twice.join(u'\n'), QString());
}

void TestLetters::withoutAMarkChooseToo_data()
{
    QTest::addColumn<QString>("menu");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("chosen"); // the item that the cursor is on, or the action that was opened
    QTest::newRow("receipt") << u"mnuOut"_s << u"r"_s << u"opened %1"_s.arg(int(app::Action::Receipt));
    QTest::newRow("shipping correction")
        << u"mnuInvoice"_s << u"a"_s << u"opened %1"_s.arg(int(app::Action::ShippingCorrection));
    QTest::newRow("purchases open") << u"mnuDenPrint"_s << u"R"_s << u"mnuShiire"_s;
    QTest::newRow("balances first") << u"mnuReport"_s << u"r"_s << u"mnuReportInZandaka"_s;
    QTest::newRow("then the daily report") << u"mnuReport"_s << u"rr"_s << u"mnuReportDayRev"_s;
    QTest::newRow("marked ones as ever")
        << u"mnuReport"_s << u"p"_s << u"opened %1"_s.arg(int(app::Action::PaymentReport));
    QTest::newRow("no such letter") << u"mnuReport"_s << u"q"_s << QString();
}

void TestLetters::withoutAMarkChooseToo()
{
    QFETCH(QString, menu);
    QFETCH(QString, keys);
    QFETCH(QString, chosen);
    Desk desk;
    auto *shown = desk.window->findChild<QMenu *>(menu);
    shown->popup({});
    for (const QChar key : keys)
        QTest::keyClick(shown, key.toLatin1());
    QString happened;
    if (!desk.opened.isEmpty())
        happened = u"opened %1"_s.arg(int(desk.opened.constFirst()));
    else if (const QAction *item = shown->activeAction())
        happened = item->menu() ? item->menu()->objectName() : item->objectName();
    QCOMPARE(happened, chosen);
    if (chosen == "mnuShiire"_L1)
        QVERIFY(desk.window->findChild<QMenu *>(chosen)->isVisible());
}

QTEST_MAIN(TestLetters)
#include "tst_letters.moc"
