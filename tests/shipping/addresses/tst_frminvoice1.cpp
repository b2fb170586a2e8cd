#include "address_desk.h"

#include "shipping/addresses/frmInvoice1.h"
#include "support/scripted_test.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace shipping;
namespace keys = workspace::keys;

namespace
{

const QString unprinted = u"直した宛名は、まだ印刷していません。捨ててもよろしいですか。"_s;
const QString correctThere = u"登録を直すときは、納品先登録で直してください。"_s;

struct LetterDesk : AddressDesk
{
    LetterDesk()
    {
        addCustomer(1, u"高橋 花子"_s, u"３８００８２１"_s, u"長野市上千歳町1137-23"_s);
        addCustomer(2, u"㈱みすず飴"_s, u"386-0012"_s, u"上田市中央2-4"_s, u"小林 実"_s);
        addCustomer(3, u"高橋 一郎"_s, u"38"_s, u"松本市3"_s);
        open();
    }

    void open()
    {
        driver.reset();
        screen = std::make_unique<frmInvoice1>(shop.workspace);
        driver = std::make_unique<ScreenDriver>(screen.get());
        driver->show();
    }
    void find(const QString &name)
    {
        driver->type("txtKey", name);
        driver->key(Qt::Key_Return);
        QTest::qWait(1);
    }
    QString written() const { return driver->the<QLabel>("lblWritten").text(); }
    void print()
    {
        answer({{u"DialogHagakiA"_s, u"cmdPrint"_s}, {u"DialogPrint"_s, u"cmdPrint"_s}});
        driver->press("cmdPrint");
    }
    /// What the letter that was printed last says, in the order in which it was drawn.
    QString printed()
    {
        QFile pdf(shop.path(u"printed.pdf"_s));
        if (printers->given.empty() || !pdf.open(QIODevice::WriteOnly))
            return {};
        pdf.write(printers->given.back().pdf);
        pdf.close();
        QProcess reader;
        reader.start(u"pdftotext"_s, {u"-raw"_s, pdf.fileName(), u"-"_s});
        reader.waitForFinished();
        static const QRegularExpression blanks(u"\\s"_s);
        return QString::fromUtf8(reader.readAll()).remove(blanks);
    }

    std::unique_ptr<frmInvoice1> screen;
    std::unique_ptr<ScreenDriver> driver;
};

} // namespace

class TestFrmInvoice1 : public ScriptedTest
{
    Q_OBJECT

private slots:
    void oneHitIsPrintedByKeysAlone()
    {
        LetterDesk desk;
        QCOMPARE(desk.driver->cursor(), u"txtKey"_s);
        desk.find(u"花子"_s);
        QCOMPARE(desk.driver->cursor(), u"cmdPrint"_s);
        QCOMPARE(desk.written(), u"高橋　花子　様"_s);
        desk.print();
        QCOMPARE(desk.marks(), QStringList{u"1|2026-04-01|はがき"_s});
        QCOMPARE(desk.printed(),
                 u"３８００８２１長野市上千歳町１１３７‐23高橋花子様380-0921長野市栗田２信州りんご園"_s);
        QCOMPARE(desk.driver->cursor(), u"txtKey"_s);
        desk.driver->key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
    }

    void whatIsPutRightIsPrintedAndTheRegisterStays()
    {
        LetterDesk desk;
        desk.find(u"高橋"_s);
        QCOMPARE(desk.driver->cursor(), u"DataGrid1"_s);
        desk.driver->key(Qt::Key_Down);
        desk.driver->key(Qt::Key_Up);
        desk.driver->key(Qt::Key_Return);
        desk.driver->enter("txtName2", u"花"_s);
        desk.driver->enter("txtAddress2", u"ﾘﾝｺﾞﾋﾞﾙ3F"_s);
        const QString whole = desk.written();
        QVERIFY(whole.contains(u"花　"_s));
        // Neither another customer nor Esc takes it away unasked.
        desk.driver->the<ui::Grid>("DataGrid1").setFocus();
        ui::prompts::expectAskCautiously(unprinted, false, correctThere);
        desk.driver->key(Qt::Key_Return);
        ui::prompts::expectAskCautiously(unprinted, false, correctThere);
        desk.driver->key(Qt::Key_Escape);
        QVERIFY(desk.screen->isVisible());
        QCOMPARE(desk.written(), whole);
        desk.print();
        QVERIFY(desk.printed().contains(u"リンゴビル３Ｆ"_s));
        QCOMPARE(desk.marks().size(), 1);
        QCOMPARE(desk.shop.rows(u"SELECT DISTINCT 住所2, 納品先名2 FROM 納品先"_s), QStringList{u"-|-"_s});
        desk.driver->key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
    }

    void aHandTypedAddressIsPrintedAndMarksNobody()
    {
        LetterDesk desk;
        ui::prompts::expectInform(u"名前がありません。納品先を検索するか、宛名を入力してください。"_s);
        desk.driver->press("cmdPrint");
        QCOMPARE(desk.driver->cursor(), u"txtName1"_s);
        desk.driver->enter("txtName1", u"伊藤 御中"_s);
        ui::prompts::expectInform(u"住所がありません。納品先を検索するか、宛名を入力してください。"_s);
        desk.driver->press("cmdPrint");
        QCOMPARE(desk.driver->cursor(), u"txtAddress1"_s);
        desk.driver->enter("txtAddress1", u"上田市"_s);
        desk.driver->enter("txtZip", u"3860"_s);
        QVERIFY(desk.driver->the<QLabel>("lblRemark").text().startsWith(u"郵便番号「3860」は"_s));
        desk.print();
        QVERIFY(!desk.printed().contains(u'６'));
        QVERIFY(desk.printed().contains(u"伊藤御中"_s));
        QCOMPARE(desk.marks(), QStringList());
    }

    void aRefusedLetterIsNotMarkedAndNotLost()
    {
        LetterDesk desk;
        desk.printers->most = 0;
        desk.find(u"花子"_s);
        desk.driver->enter("txtSection", u"気付"_s);
        ui::prompts::expectInform(u"用紙がありません。"_s);
        QTimer::singleShot(0, qApp, [&desk] {
            QPointer<QWidget> dialog = QApplication::activeModalWidget();
            desk.answer({{u"DialogPrint"_s, u"cmdPrint"_s}});
            QTest::mouseClick(dialog->findChild<QPushButton *>(u"cmdPrint"_s), Qt::LeftButton);
            QVERIFY(dialog && dialog->isVisible()); // to try another printer
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        desk.driver->press("cmdPrint");
        QCOMPARE(desk.marks(), QStringList());
        QCOMPARE(desk.driver->box("txtSection").text(), u"気付"_s);
        ui::prompts::expectAskCautiously(unprinted, true, correctThere);
        desk.driver->key(Qt::Key_Escape);
        QVERIFY(!desk.screen->isVisible());
    }

    void theContactPersonIsAddressedByChoice()
    {
        LetterDesk desk;
        desk.find(u"みすず"_s);
        QCOMPARE(desk.written(), u"㈱みすず飴　御中"_s);
        desk.driver->press("Check1");
        QCOMPARE(desk.written(), u"㈱みすず飴\n小林　実　様"_s);
        desk.driver->key(Qt::Key_Escape);
        QCOMPARE(desk.shop.settings.text(keys::frmInvCheck1), u"1"_s);
        desk.open();
        desk.find(u"みすず"_s);
        QCOMPARE(desk.written(), u"㈱みすず飴\n小林　実　様"_s);
    }

    void eachOptionIsSeenOnPaper_data()
    {
        QTest::addColumn<QByteArray>("option");
        QTest::addColumn<QString>("without"); // what the letter says with and without
        QTest::addColumn<QString>("with");
        QTest::newRow("sender") << QByteArray("Aop1") << QString() << u"信州りんご園"_s;
        QTest::newRow("kanji") << QByteArray("Aop2") << u"町１１３７‐23"_s << u"町一一三七‐二三"_s;
        QTest::newRow("between") << QByteArray("Aop3") << u"町１１３７‐23"_s << u"町１１３７の23"_s;
        QTest::newRow("honorific") << QByteArray("Aop5") << QString() << u"高橋花子様"_s;
    }

    void eachOptionIsSeenOnPaper()
    {
        QFETCH(QByteArray, option);
        QFETCH(QString, without);
        QFETCH(QString, with);
        LetterDesk desk;
        for (const bool ticked : {false, true}) {
            desk.find(u"花子"_s);
            QTimer::singleShot(0, qApp, [&] {
                QWidget *dialog = QApplication::activeModalWidget();
                dialog->findChild<QCheckBox *>(QString::fromLatin1(option))->setChecked(ticked);
                desk.answer({{u"DialogPrint"_s, u"cmdPrint"_s}});
                QTest::mouseClick(dialog->findChild<QPushButton *>(u"cmdPrint"_s), Qt::LeftButton);
            });
            desk.driver->press("cmdPrint");
            const QString says = desk.printed();
            QVERIFY2(says.contains(with) == ticked, qPrintable(says));
            QVERIFY2(says.contains(without) != (ticked && !without.isEmpty()), qPrintable(says));
            const int place = option.back() - '1';
            QCOMPARE(desk.shop.settings.checked(keys::hagakiAop[place]), ticked);
        }
    }

    void theTransferFormIsTheCustomers()
    {
        LetterDesk desk;
        desk.screen->standAtTransferForm();
        ui::prompts::expectInform(u"郵便振替用紙を印刷する納品先を検索してください。"_s);
        desk.driver->press("cmdTransfer");
        desk.find(u"花子"_s);
        QCOMPARE(desk.driver->cursor(), u"txtAmount"_s);
        desk.driver->type("txtAmount", u"三千円"_s);
        ui::prompts::expectInform(u"金額を数字で入力してください。"_s);
        desk.driver->press("cmdTransfer");
        desk.driver->type("txtAmount", u"¥1,980"_s);
        QStringList shown;
        QTimer::singleShot(0, qApp, [&shown] {
            QWidget *form = QApplication::activeModalWidget();
            for (const char *box : {"Text5", "txtNouhinsaki1"})
                shown << form->findChild<QLineEdit *>(QString::fromLatin1(box))->text();
            form->close();
        });
        desk.driver->press("cmdTransfer");
        QCOMPARE(shown, (QStringList{u"1,980"_s, u"高橋 花子"_s}));
    }
};

QTEST_MAIN(TestFrmInvoice1)
#include "tst_frminvoice1.moc"
