#include "registers/lists/frmNouhinFind.h"

#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/desktop.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString missing = u"入力漏れがあります。"_s;
const QString editsOpen = u"変更が保存されていません。保存しますか？"_s;

// A shop with two categories and four customers, the last of which has no category and is never found.
struct SmallShop
{
    explicit SmallShop(bool withCategories)
    {
        if (withCategories)
            shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (2, '一般')"_s);
        shop.run(
            u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, 納品先名2, フリガナ, 納品先名キー, 区分ID, "
            u"郵便番号, 住所1, "
            "TEL1, 更新日, 締め日) VALUES "
            "(1, 'A1', '山田太郎', NULL, 'ﾔﾏﾀﾞﾀﾛｳ', '山田太郎 A1 03-1 ﾔﾏﾀﾞﾀﾛｳ', 1, '100-0001', '東京都', "
            "'03-1', "
            "'2026-02-01', 15), "
            "(2, 'B2', '鈴木花子', NULL, 'ｽｽﾞｷﾊﾅｺ', '鈴木花子 B2 06-2 ｽｽﾞｷﾊﾅｺ', 2, NULL, '大阪府', '06-2', "
            "'2026-01-01', 0), "
            "(3, 'C3', '田中次郎', '営業部', 'ﾀﾅｶｼﾞﾛｳ', '田中次郎営業部 C3 03-3 ﾀﾅｶｼﾞﾛｳ', 1, '100-0003', "
            "'東京都千代田区', '03-3', '2026-02-01', NULL), "
            "(4, 'D4', '区分なし', NULL, 'ｸﾌﾞﾝﾅｼ', '区分なし', NULL, NULL, NULL, '03-4', '2026-02-01', NULL)"_s);
    }

    FreshShop shop;
};

struct Search : SmallShop, ScreenDriver
{
    explicit Search(bool withCategories = true)
        : SmallShop(withCategories)
        , ScreenDriver(&screen)
    {
        show();
    }

    void find(const QString &item, const QString &condition)
    {
        choose("Combo1", list("Combo1").findText(item));
        type("txtKey", condition);
        press("Command2");
    }
    void findAll() { choose("Combo1", 0); }

    ui::Grid &grid() { return the<ui::Grid>("DataGrid1"); }
    void goTo(int row) { grid().setCurrentIndex(grid().model()->index(row, 0)); }
    QString listed()
    {
        QStringList ids;
        for (int row = 0; row < grid().model()->rowCount(); ++row)
            ids << grid().model()->index(row, 0).data().toString();
        return ids.join(u' ');
    }
    QString count() { return the<QLabel>("labelCount").text(); }
    QString stored(const QString &columns, int id)
    {
        return shop.rows(u"SELECT "_s + columns + u" FROM 納品先 WHERE 納品先ID = "_s + QString::number(id))
            .join(u'\n');
    }
    QString enabled()
    {
        return ScreenDriver::enabled({"Command2", "panel", "Command3", "cmdDelete", "Command1"});
    }

    registers::frmNouhinFind screen{shop.workspace};
};

const QString nothingShown = u"Command2"_s;
const QString customersShown = u"Command2 panel Command3 cmdDelete Command1"_s;

// Works the next modal screen, which \a trigger opens, and closes it.
void inModalScreen(const std::function<void()> &trigger, const std::function<void(ScreenDriver &)> &work)
{
    bool came = false;
    QTimer::singleShot(0, [&] {
        auto *screen = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        QVERIFY(screen);
        came = true;
        ScreenDriver driver(screen);
        work(driver);
        screen->reject();
    });
    trigger();
    QVERIFY(came);
}

} // namespace

class TestFrmNouhinFind : public ScriptedTest
{
    Q_OBJECT

private slots:
    void whatWasTypedCanBeTakenBack()
    {
        Search s;
        s.findAll();
        s.goTo(0);
        const QString name = s.box("txtName").text();
        s.type("txtName", u"別人"_s);
        s.press("cmdUndo");
        QCOMPARE(s.box("txtName").text(), name);
        s.goTo(1);
        QCOMPARE(s.shop.value(u"SELECT COUNT(*) FROM 納品先 WHERE 納品先名1 = '別人'"_s).toInt(), 0);
    }

    void narrowsByFurtherConditionsAndNames()
    {
        Search s;
        s.choose("Combo1", s.list("Combo1").findText(u"納品先区分"_s));
        s.choose("comboNames", u"得意先"_s);
        QCOMPARE(s.box("txtKey").text(), u"1"_s);
        s.press("Command2");
        QCOMPARE(s.listed(), u"1 3"_s);
        QVERIFY(!s.list("comboItem2").isVisible());
        s.press("cmdMore");
        QCOMPARE(s.cursor(), u"comboItem2"_s);
        s.choose("comboItem2", s.list("comboItem2").findText(u"更新日"_s));
        QVERIFY(s.box("txtUntil2").isVisible());
        s.choose("comboItem3", s.list("comboItem3").findText(u"住所1"_s));
        ui::prompts::expectInform(ui::messages::searchEmpty());
        s.press("Command2");
        QCOMPARE(s.cursor(), u"txtKey2"_s);
        s.type("txtKey2", u"2026/1"_s);
        s.type("txtUntil2", u"2026/2"_s);
        s.type("txtKey3", u"千代田"_s);
        s.leave("txtKey3"); // Enter searches
        QCOMPARE(s.listed(), u"3"_s);
        // Conditions that are no longer seen do not narrow.
        s.press("cmdMore");
        s.press("Command2");
        QCOMPARE(s.listed(), u"1 3"_s);
    }

    void writesWhatIsFoundOrSelected()
    {
        ui::desktop::beginScript();
        Search s;
        s.findAll();
        const auto written = [&](const QString &name) {
            QFile file(s.shop.path(name));
            QStringList ids;
            if (file.open(QIODevice::ReadOnly)) {
                const QStringList lines =
                    QString::fromUtf8(file.readAll()).split(u"\r\n"_s, Qt::SkipEmptyParts);
                for (const QString &line : lines.mid(1))
                    ids << line.section(u',', 0, 0).remove(u'"');
            }
            return ids.join(u' ');
        };
        ui::file_dialogs::expectFile(s.shop.path(u"all.csv"_s));
        s.press("cmdExport");
        QCOMPARE(written(u"all.csv"_s), s.listed());
        s.goTo(0);
        s.grid().setFocus();
        QTest::keyClick(&s.grid(), Qt::Key_Down, Qt::ShiftModifier);
        const QString question = u"選んだ納品先 2 件だけを書き出しますか？"_s;
        ui::prompts::expectAskHowToLeave(question, ui::prompts::Choice::Cancel, ui::prompts::Choice::Save);
        s.press("cmdExport");
        ui::prompts::expectAskHowToLeave(question, ui::prompts::Choice::Save, ui::prompts::Choice::Save);
        ui::file_dialogs::expectFile(s.shop.path(u"two.csv"_s));
        s.press("cmdExport");
        QCOMPARE(written(u"two.csv"_s), u"1 2"_s);
        ui::desktop::takeOpened();
        // Of what is selected only the customer in the boxes is deleted.
        const QString shown = s.box("txtID").text();
        ui::prompts::expectAskCautiously({}, true);
        s.press("cmdDelete");
        QCOMPARE(s.shop.value(u"SELECT COUNT(*) FROM 納品先"_s).toInt(), 3);
        QVERIFY(s.stored(u"納品先ID"_s, shown.toInt()).isEmpty());
    }

    void opensEmpty()
    {
        Search s;
        QCOMPARE(s.screen.windowTitle(), u"納品先名簿印刷"_s);
        QCOMPARE(s.list("Combo1").currentText(), QString());
        QCOMPARE(s.list("Combo2").currentText(), u"検索項目昇順"_s);
        QCOMPARE(s.enabled(), nothingShown);
        QCOMPARE(s.count(), QString());
        QCOMPARE(s.cursor(), u"Combo1"_s);
    }

    void tellsWhatIsMissing()
    {
        Search s;
        ui::prompts::expectInform(u"検索する項目を選んでください。"_s);
        s.press("Command2");
        QCOMPARE(s.cursor(), u"Combo1"_s);
        s.choose("Combo1", s.list("Combo1").findText(u"TEL1"_s));
        ui::prompts::expectInform(ui::messages::searchEmpty());
        s.press("Command2");
        QCOMPARE(s.cursor(), u"txtKey"_s);

        Search bare(false);
        ui::prompts::expectInform(ui::messages::noCategories());
        inModalScreen([&] { bare.findAll(); }, [](ScreenDriver &) {}); // where none is registered
        QCOMPARE(bare.enabled(), nothingShown);
        // What was refused for want of a category goes on once there is one.
        ui::prompts::expectInform(ui::messages::noCategories());
        inModalScreen([&] { bare.press("Command2"); },
                      [](ScreenDriver &editor) {
                          QTRY_VERIFY(
                              editor.box("txtName").isEnabled()); // its first row begins when it is active
                          editor.enter("txtName", u"一般"_s);
                          editor.press("cmdUpdate");
                      });
        QCOMPARE(bare.shop.value(u"SELECT 区分名 FROM 登録区分"_s).toString(), u"一般"_s);
        QCOMPARE(bare.enabled(), customersShown);
    }

    void finds()
    {
        Search s;
        s.find(u"TEL1"_s, u"03"_s);
        QCOMPARE(s.listed(), u"1 3"_s);
        QCOMPARE(s.count(), u"該当データ　2件"_s);
        QCOMPARE(s.enabled(), customersShown);
        QCOMPARE(s.box("txtName").text(), u"山田太郎"_s);
        QCOMPARE(s.cursor(), u"DataGrid1"_s);

        // With Enter, from the start of the condition again; what is not found empties the list.
        QTest::keyClick(&s.screen, Qt::Key_F3);
        QCOMPARE(s.cursor(), u"txtKey"_s);
        s.the<QCheckBox>("Check1").setChecked(true);
        ui::prompts::expectInform(ui::messages::nothingFound());
        QTest::keyClick(s.screen.focusWidget(), Qt::Key_Return);
        QCOMPARE(s.listed(), QString());
        QCOMPARE(s.count(), u"該当データ　0件"_s);
        QCOMPARE(s.enabled(), nothingShown);
        QCOMPARE(s.box("txtName").text(), QString());

        ui::prompts::expectInform(ui::messages::nothingFound());
        s.find(u"登録日"_s, u"きのう"_s);
        ui::prompts::expectInform(ui::messages::nothingFound());
        s.find(u"住所1"_s, u"' OR 1=1 --"_s);
    }

    void everyCustomerIsFoundAtOnce()
    {
        Search s;
        s.type("txtKey", u"03"_s);
        s.findAll();
        QCOMPARE(s.box("txtKey").text(), QString());
        QCOMPARE(s.listed(), u"1 2 3"_s);
        // The arrow keys go on to the other items.
        QCOMPARE(s.cursor(), u"Combo1"_s);
    }

    void savesWithPostalCode()
    {
        Search s;
        s.findAll();
        s.goTo(1); // has none
        s.type("txtTel", u"０６－９"_s);
        ui::prompts::expectInform(missing);
        s.press("Command3");
        QCOMPARE(s.cursor(), u"txtZip"_s);
        ui::prompts::expectInform(missing);
        s.goTo(2);
        QCOMPARE(s.grid().currentIndex().row(), 1);
        ui::prompts::expectInform(missing);
        s.press("Command2");
        QCOMPARE(s.stored(u"TEL1"_s, 2), u"06-2"_s);

        s.type("txtZip", u"530-0001"_s);
        s.press("Command3");
        QCOMPARE(s.stored(u"TEL1, 郵便番号, 更新日, 納品先名キー"_s, 2),
                 u"06-9|530-0001|2026-04-01|鈴木花子 B2 06-9 ｽｽﾞｷﾊﾅｺ"_s);
        QCOMPARE(s.listed(), u"1 2 3"_s);
        s.clear("txtName");
        ui::prompts::expectInform(missing);
        s.press("Command3");
        QCOMPARE(s.cursor(), u"txtName"_s);
        ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Save);
        ui::prompts::expectInform(missing);
        s.screen.reject();
        QVERIFY(s.screen.isVisible());
        ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Discard);
        s.screen.reject();
        QCOMPARE(s.stored(u"納品先名1"_s, 2), u"鈴木花子"_s);
    }

    // This screen needs the postal code. Without data files the lookup's window comes up.
    void looksThePostalCodeUp()
    {
        Search s;
        s.findAll();
        s.goTo(1);
        auto *lookUp = s.the<QWidget>("panel").findChild<QPushButton *>(u"Command3"_s);
        ui::prompts::expectInform({});
        ui::prompts::expectInform({});
        inModalScreen([&] { lookUp->click(); },
                      [](ScreenDriver &window) {
                          QCOMPARE(window.box("Text2").text(), u"大阪府"_s);
                          QCoreApplication::processEvents(); // its first search
                          window.type("Text1", u"530-0001"_s);
                      });
        QCOMPARE(s.box("txtZip").text(), u"530-0001"_s);
        s.press("Command3");
        QCOMPARE(s.stored(u"郵便番号"_s, 2), u"530-0001"_s);
    }

    void searchingSavesWhatWasTyped()
    {
        Search s;
        s.findAll();
        s.type("txtMemo", u"改装中"_s);
        s.find(u"メモ"_s, u"改装"_s);
        QCOMPARE(s.listed(), u"1"_s);
        s.type("txtMemo", u"閉店"_s);
        ui::prompts::expectAskToSave(editsOpen, ui::prompts::Choice::Save);
        s.screen.close();
        QCOMPARE(s.stored(u"メモ"_s, 1), u"閉店"_s);
    }

    void refusesWideTexts()
    {
        Search s;
        s.findAll();
        s.type("txtAddress2", QString(23, u'山'));
        ui::prompts::expectInform(ui::messages::widthLimit());
        s.leave("txtAddress2");
        QCOMPARE(s.cursor(), u"txtAddress2"_s);
        s.clear("txtAddress2");
    }

    void deletes()
    {
        Search s;
        s.find(u"TEL1"_s, u"03"_s);
        ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), false, ui::prompts::anyRemark);
        s.press("cmdDelete");
        for (const QString &left : {u"3"_s, QString()}) {
            ui::prompts::expectAskCautiously(ui::messages::deleteQuestion(), true, ui::prompts::anyRemark);
            s.press("cmdDelete");
            QCOMPARE(s.listed(), left);
        }
        QCOMPARE(s.count(), u"該当データ　0件"_s);
        QCOMPARE(s.enabled(), nothingShown);
        QCOMPARE(s.shop.value(u"SELECT count(*) FROM 納品先"_s).toInt(), 2);
    }

    void tabGoesInReadingOrder()
    {
        Search s;
        s.findAll();
        s.list("Combo1").setFocus();
        QStringList order;
        do {
            order << s.cursor();
            QTest::keyClick(s.screen.focusWidget(), Qt::Key_Tab);
        } while (order.size() < 50 && !s.list("Combo1").hasFocus());
        const QString path = order.join(u' ');
        QVERIFY2(path.startsWith(u"Combo1 Check1 Combo2 Command2 cmdMore DataGrid1 txtCode txtName "_s),
                 qPrintable(path));
        QVERIFY2(path.endsWith(u" txtMemo Command3 cmdDelete cmdExport Command1"_s), qPrintable(path));
    }

    void printsTheRoster()
    {
        Search s;
        s.find(u"TEL1"_s, u"03"_s);
        s.type("txtMemo", u"得意客"_s); // is on paper without being saved first
        const QString pdf = s.shop.path(u"roster.pdf"_s);
        inModalScreen([&] { s.press("Command1"); },
                      [&](ScreenDriver &options) {
                          QCOMPARE(options.box("Text1").text(), u"顧客名簿"_s);
                          QCOMPARE(options.box("Text4").text(), u"FAX"_s);
                          options.type("Text1", u"東京のお客様"_s);
                          options.type("Text2", u"電話"_s);
                          options.the<QCheckBox>("chkColumn15").click(); // 備考
                          options.the<QCheckBox>("chkColumn9").click();  // TEL2
                          inModalScreen([&] { options.press("Command49"); },
                                        [&](ScreenDriver &preview) {
                                            ui::file_dialogs::expectFile(pdf);
                                            preview.press("cmdPdf");
                                        });
                      });
        QProcess reader;
        reader.start(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
        QVERIFY(reader.waitForFinished());
        const QString text = QString::fromUtf8(reader.readAllStandardOutput()).simplified();
        for (const QString &expected : {u"東京のお客様"_s, u"2 件"_s, u"2026/04/01 現在"_s,
                                        u"電話 FAX 備考"_s, u"営業部"_s, u"得意客"_s, u"1 / 1"_s})
            QVERIFY2(text.contains(expected), qPrintable(expected + u" is not in "_s + text));
        // In the order of the readings.
        QVERIFY(text.indexOf(u"田中次郎"_s) < text.indexOf(u"山田太郎"_s));
        QCOMPARE(s.shop.settings.text(workspace::keys::meiboTitle), u"東京のお客様"_s);
        QCOMPARE(s.shop.settings.text(workspace::keys::meiboTitle2), u"電話"_s);
        QCOMPARE(s.shop.settings.text(workspace::keys::meiboColumns), u"101001110100001"_s);
    }
};

QTEST_MAIN(TestFrmNouhinFind)
#include "tst_frmnouhinfind.moc"
