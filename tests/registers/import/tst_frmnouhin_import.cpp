#include "registers/frmNouhin.h"
#include "registers/import/DialogCSV.h"
#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "support/scripted_test.h"
#include "ui/file_dialogs.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{

const QString noMapping = u"設定ファイルが見つかりませんでした。インポートの設定を行います。"_s;
const QString importAll = u"表示中のデータをすべてインポートします。よろしいですか。"_s;

QString taken(int count) { return u"印のある行だけを取り込みます（新規登録 %1 件）。"_s.arg(count); }

// How bright a colour is to the eye, 0 to 1.
double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

// The register of a shop with one customer, and a table of four rows: one to import, one that repeats the
// customer, one without a name, one more to import.
struct Import : ScreenDriver
{
    Import()
        : ScreenDriver(&screen)
    {
        shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (2, '一般')"_s);
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, TEL1, 区分ID, 更新日) "
                 "VALUES (1, '山田太郎', '03-1', 1, '2026-01-01')"_s);
        show();
    }

    static QString table(QChar separator)
    {
        return u"氏名,電話番号,区分\n佐藤,03-5,一般\n山田　太郎,０３－１,一般\n,03-9,一般\n鈴木,03-6,2\n"_s
            .replace(u',', separator);
    }

    void openFile(const QString &content = table(u','))
    {
        QFile file(shop.path(u"in.csv"_s));
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no file");
        file.write(content.toUtf8());
        file.close();
        ui::file_dialogs::expectFile(file.fileName());
        QTest::keyClick(&the<QPushButton>("Command1"), Qt::Key_Space);
        // Without a window manager nobody else makes the screen under a dialog the active one again.
        show();
    }

    // Does \a work in the dialog of the settings as soon as it stands.
    static void inSettings(const std::function<void(ScreenDriver &)> &work)
    {
        QTimer::singleShot(0, [work] {
            auto *dialog = qobject_cast<registers::DialogCSV *>(QApplication::activeModalWidget());
            if (!dialog)
                qFatal("no dialog of the settings");
            ScreenDriver driver(dialog);
            work(driver);
        });
    }
    static void confirm(ScreenDriver &settings) { settings.press("cmdOK"); }

    QAbstractItemModel &model() { return *the<ui::Grid>("MSFlexGrid1").model(); }
    QString column(int column)
    {
        QStringList cells;
        for (int row = 0; row < model().rowCount(); ++row)
            cells << model().index(row, column).data().toString();
        return cells.join(u'|');
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&the<ui::Grid>("MSFlexGrid1"), key, modifiers);
    }
    QString stored() { return shop.rows(u"SELECT 納品先名1 FROM 納品先 ORDER BY 納品先ID"_s).join(u' '); }
    bool importing() { return the<ui::Grid>("MSFlexGrid1").isVisible(); }

    FreshShop shop;
    registers::frmNouhin screen{shop.workspace};
};

} // namespace

class TestFrmNouhinImport : public ScriptedTest
{
    Q_OBJECT

private slots:
    void importsEveryRowShown()
    {
        Import r;
        ui::prompts::expectInform(noMapping);
        Import::inSettings(Import::confirm);
        r.openFile();
        QVERIFY(QFile::exists(r.shop.path(u"KanbaloreCSV1.log"_s)));
        QVERIFY(r.importing());
        QVERIFY(!r.the<ui::Grid>("DataGrid1").isVisible());
        QCOMPARE(r.cursor(), u"MSFlexGrid1"_s);
        QCOMPARE(r.column(3), u"佐藤|山田　太郎||鈴木"_s);
        QCOMPARE(r.column(2), u"|登録済み：納品先ID 1「山田太郎」|納品先名1：入力されていません|"_s);
        QCOMPARE(r.the<QLabel>("labelTaken").text(), u"← 印のある行だけを取り込みます（新規登録 2 件）"_s);
        ui::prompts::expectAsk(importAll, false, taken(2));
        r.press("Command5");
        QCOMPARE(r.stored(), u"山田太郎"_s);
        ui::prompts::expectAsk(importAll, true, taken(2));
        ui::prompts::expectInform(u"2 件の納品先を登録しました。\n取り込まなかった行が 2 件あります。"
                                  "「確認」の欄で理由を確かめてください。"_s);
        QTest::keyClick(r.screen.focusWidget(), Qt::Key_A, Qt::AltModifier);
        QTRY_COMPARE(r.stored(), u"山田太郎 佐藤 鈴木"_s); // a button pressed by its letter moves first
        // What is left can be saved, and the register shows the new ones.
        QCOMPARE(r.column(1), u"3|4"_s);
        ui::file_dialogs::expectFile(r.shop.path(u"rest.csv"_s));
        r.press("cmdSaveReport");
        QVERIFY(QFile::exists(r.shop.path(u"rest.csv"_s)));
        r.key(Qt::Key_Escape);
        QVERIFY(!r.importing() && r.screen.isVisible());
        QCOMPARE(r.cursor(), u"DataGrid1"_s);
        QCOMPARE(r.the<ui::Grid>("DataGrid1").model()->rowCount(), 3);
        // The settings are kept: the same file opens without a question.
        r.openFile();
        QVERIFY(r.importing());
    }

    void importsSelectedRows()
    {
        Import r;
        QGuiApplication::clipboard()->setText(Import::table(u'\t'));
        r.press("Command2");
        QVERIFY(r.importing());
        // The row that repeats a customer is taken with the space bar, the refused one cannot be.
        r.key(Qt::Key_Down);
        r.key(Qt::Key_Space);
        r.key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(r.model().index(1, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        // What is selected counts for nothing until it is ticked.
        r.press("cmdTickSelected");
        QCOMPARE(r.model().index(3, 0).data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
        ui::prompts::expectAsk(importAll, true, taken(1));
        ui::prompts::expectInform(
            u"1 件の納品先を登録しました。\nまだ取り込んでいない行が 2 件残っています。\n"
            "取り込まなかった行が 1 件あります。「確認」の欄で理由を確かめてください。"_s);
        r.press("Command5");
        QCOMPARE(r.stored(), u"山田太郎 山田　太郎"_s);
        QCOMPARE(r.column(3), u"佐藤||鈴木"_s);
        // The names stay in sight beside the other fields.
        QCOMPARE(r.model().headerData(0, Qt::Vertical).toString(), u"佐藤"_s);
        ui::prompts::expectInform(
            u"取り込む行がありません。取り込む行の「取込」の欄に印を付けてください。"_s);
        r.press("Command5");
        r.choose("comboFilter", 1);
        QCOMPARE(r.column(3), u"佐藤|鈴木"_s);
    }

    void pastesIntoTheGrid()
    {
        Import r;
        QGuiApplication::clipboard()->setText(u"納品先名1\t区分ID\n高橋\t1\n"_s);
        r.press("Command2");
        QCOMPARE(r.column(3), u"高橋"_s);
        QGuiApplication::clipboard()->setText(u"納品先名1\t区分ID\n=1+1\t1\n"_s);
        r.key(Qt::Key_Insert, Qt::ShiftModifier);
        QCOMPARE(r.column(3), u"=1+1"_s);
        ui::prompts::expectAsk(importAll, true, taken(1));
        ui::prompts::expectInform(u"1 件の納品先を登録しました。"_s);
        r.press("Command5");
        QVERIFY(!r.importing());
        QCOMPARE(r.stored(), u"山田太郎 =1+1"_s);
        QGuiApplication::clipboard()->clear();
        ui::prompts::expectInform({});
        r.press("Command2");
        QVERIFY(!r.importing());
    }

    void asksForTheColumns()
    {
        Import r;
        ui::prompts::expectInform(noMapping);
        Import::inSettings([](ScreenDriver &settings) {
            QVERIFY(!settings.the<QCheckBox>("checkHeadings").isChecked());
            QCOMPARE(settings.the<QLabel>("labelSample2").text(), u"佐藤 ／ 鈴木"_s);
            QCOMPARE(settings.cursor(), u"comboField1"_s);
            ui::prompts::expectInform(u"「納品先名1」にする列を指定してください。"_s);
            settings.press("cmdOK");
            settings.choose("comboField1", 2);
            settings.choose("comboField2", 2);
            ui::prompts::expectInform(u"「納品先名1」が 1 列目と 2 列目の両方に指定されています。"_s);
            settings.press("cmdOK");
            QCOMPARE(settings.cursor(), u"comboField2"_s);
            settings.choose("comboField1", 0);
            settings.choose("comboCategory", 2);
            settings.press("cmdOK");
        });
        r.openFile(u"x,佐藤\ny,鈴木\n"_s);
        QCOMPARE(r.column(3), u"佐藤|鈴木"_s);
        ui::prompts::expectAsk(importAll, true, taken(2));
        ui::prompts::expectInform({});
        r.press("Command5");
        QCOMPARE(r.shop.rows(u"SELECT 区分ID FROM 納品先 WHERE 納品先ID > 1"_s).join(u' '), u"2 2"_s);
    }

    // The register's customer gets what the table says; another program is faster the first time.
    void updatesAfterShowingWhatChanges()
    {
        Import r;
        ui::prompts::expectInform(noMapping);
        Import::inSettings([](ScreenDriver &settings) {
            settings.choose("comboMatch", 2);
            ui::prompts::expectInform(
                u"「コード」が同じ納品先を更新するには、「コード」にする列を指定してください。"_s);
            settings.press("cmdOK");
            settings.choose("comboMatch", 1);
            settings.press("cmdOK");
        });
        r.openFile(u"納品先ID,電話番号,区分\n1,03-2,特約店\n"_s);
        QCOMPARE(r.column(2), u"納品先区分に登録されていません"_s.prepend(u"区分ID："_s));
        r.press("checkNewCategories");
        QCOMPARE(r.column(2),
                 u"納品先ID 1「山田太郎」 を更新：TEL1「03-1」→「03-2」、区分ID「得意先」→「特約店」"_s);
        const QAbstractItemModel &changes = *r.the<ui::Grid>("gridChanges").model();
        QCOMPARE(changes.rowCount(), 2);
        QCOMPARE(changes.index(1, 2).data().toString(), u"特約店"_s);
        r.shop.run(u"UPDATE 納品先 SET TEL1 = '03-7', 版 = 3 WHERE 納品先ID = 1"_s);
        const QString remark = u"印のある行だけを取り込みます（登録済みの納品先の更新 1 件）。"_s;
        ui::prompts::expectAskCautiously(importAll, true, remark);
        ui::prompts::expectInform({});
        r.press("Command5");
        QCOMPARE(r.shop.value(u"SELECT TEL1 FROM 納品先"_s).toString(), u"03-7"_s);
        QCOMPARE(r.shop.value(u"SELECT COUNT(*) FROM 登録区分"_s).toInt(), 2);
        QVERIFY(r.column(2).contains(u"TEL1「03-7」→「03-2」"_s));
        ui::prompts::expectAskCautiously(importAll, true, remark);
        ui::prompts::expectInform(u"1 件の納品先を更新しました。"_s);
        r.press("Command5");
        QCOMPARE(r.shop.rows(u"SELECT TEL1, 区分ID, 納品先名キー FROM 納品先"_s),
                 QStringList{u"03-2|3|山田太郎  03-2 "_s});
        QVERIFY(!r.importing());
    }

    // By the clerk's choice the second row goes into the first; without it, it stays out, and the question
    // says so.
    void asksWhatBecomesOfRowsOfOneCode()
    {
        Import r;
        ui::prompts::expectInform(noMapping);
        Import::inSettings(Import::confirm);
        r.openFile(u"コード,氏名,電話番号,区分\nA1,佐藤,03-5,1\nA1,佐藤,03-6,1\n鈴,鈴木,,1\n"_s);
        QVERIFY(!r.the<QCheckBox>("checkMergeRepeats").isHidden());
        QVERIFY(!r.the<QCheckBox>("checkMergeRepeats").isChecked());
        ui::prompts::expectAsk(
            importAll, false, taken(2) + u"\n前の行と同じコードか納品先IDの行（3 行目）は取り込みません。"_s);
        r.press("Command5");
        r.key(Qt::Key_Down);
        r.key(Qt::Key_Down);
        r.key(Qt::Key_Space); // what is unticked stays so
        QTest::keyClick(&r.screen, Qt::Key_M, Qt::AltModifier);
        QTRY_VERIFY(r.the<QCheckBox>("checkMergeRepeats").isChecked());
        QVERIFY(r.the<QLabel>("labelSummary").text().endsWith(u"前の行にまとめる行 1 件"_s));
        ui::prompts::expectAsk(importAll, true, taken(1));
        ui::prompts::expectInform(
            u"1 件の納品先を登録しました。\nまだ取り込んでいない行が 1 件残っています。"_s);
        r.press("Command5");
        QCOMPARE(r.shop.rows(u"SELECT 納品先名1, TEL1 FROM 納品先 WHERE 納品先ID > 1"_s),
                 QStringList{u"佐藤|03-6"_s});
        QVERIFY(r.the<QCheckBox>("checkMergeRepeats").isHidden());
        // The rows have the room of the whole screen.
        QVERIFY(r.the<ui::Grid>("MSFlexGrid1").height() * 2 > r.screen.height());
    }

    // The clerk goes on with whom he was at, and a category that the import made can be chosen.
    void leadsBackToTheSameCustomer()
    {
        Import r;
        r.shop.run(
            u"INSERT INTO 納品先 (納品先ID, 納品先名1, 区分ID, 更新日) VALUES (5, '鈴木', 2, '2025-01-01')"_s);
        r.press("Command6");
        QTest::keyClick(&r.the<ui::Grid>("DataGrid1"), Qt::Key_Down);
        QCOMPARE(r.box("txtID").text(), u"5"_s);
        QGuiApplication::clipboard()->setText(u"氏名\t区分\n佐藤\t特約店\n"_s);
        r.press("Command2");
        r.press("checkNewCategories");
        ui::prompts::expectAsk(importAll, true, taken(1));
        ui::prompts::expectInform(u"1 件の納品先を登録しました。"_s);
        r.press("Command5");
        QVERIFY(!r.importing());
        QCOMPARE(r.box("txtID").text(), u"5"_s);
        r.type("txtMemo", u"新"_s);
        r.press("cmdNewDate");
        QCOMPARE(r.shop.rows(u"SELECT 納品先名1 FROM 納品先 WHERE メモ = '新'"_s), QStringList{u"鈴木"_s});
        r.type("txtKey1", u"佐藤"_s);
        r.press("cmdFind");
        QCOMPARE(r.box("txtName").text(), u"佐藤"_s);
        QCOMPARE(r.list("dbcKubun").currentText(), u"特約店"_s);
        r.type("txtMemo", u"紹介"_s);
        r.press("cmdNewDate");
        QCOMPARE(r.shop.rows(u"SELECT 納品先名1 FROM 納品先 WHERE メモ = '紹介'"_s), QStringList{u"佐藤"_s});
    }

    // Whatever the table has to say of itself.
    void leavesTheWindowItsSize()
    {
        Import r;
        QStringList headings{u"氏名"_s, u"区分"_s};
        QStringList cells{u"佐藤"_s, u"とても長い名前の区分をそのまま書いた表です一"_s.repeated(2)};
        for (int i = 0; i < 12; ++i) {
            headings << u"名簿ソフトの予備の項目 %1"_s.arg(i);
            cells << u"x"_s;
        }
        QString table = headings.join(u'\t') + u'\n' + cells.join(u'\t') + u'\n';
        for (int i = 0; i < 3; ++i) {
            cells[1] += QString::number(i);
            table += cells.join(u'\t') + u'\n';
        }
        QGuiApplication::clipboard()->setText(table);
        QTest::qWait(0);
        r.screen.resize(r.screen.minimumSizeHint()); // without room to spare
        QTest::qWait(0);
        const QSize size = r.screen.size();
        for (int times = 0; times < 2; ++times) {
            r.press("Command2");
            QTest::qWait(0);
            QVERIFY(r.importing());
            QCOMPARE(r.screen.size(), size);
            r.press("cmdBack");
            QTest::qWait(0);
            QVERIFY(!r.importing());
            QCOMPARE(r.screen.size(), size);
        }
    }

    // By the contrast that is asked of a text, 4.5.
    void whatIsWrongCanBeRead_data()
    {
        QTest::addColumn<QColor>("base");
        QTest::addColumn<QColor>("text");
        QTest::newRow("light") << QColor(0xffffff) << QColor(0x22282b);
        QTest::newRow("dark") << QColor(0x364046) << QColor(0xe6e9e8);
    }
    void whatIsWrongCanBeRead()
    {
        QFETCH(QColor, base);
        QFETCH(QColor, text);
        const QPalette usual = QApplication::palette();
        const auto back = qScopeGuard([&usual] { QApplication::setPalette(usual); });
        QPalette palette = usual;
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, text);
        QApplication::setPalette(palette);
        Import r;
        QGuiApplication::clipboard()->setText(Import::table(u'\t'));
        r.press("Command2");
        for (const int row : {1, 2}) {
            const auto ink = r.model().index(row, 2).data(Qt::ForegroundRole).value<QColor>();
            QVERIFY(ink.isValid());
            const double one = luminance(ink) + 0.05;
            const double other = luminance(base) + 0.05;
            QVERIFY2(std::max(one, other) / std::min(one, other) >= 4.5, qPrintable(ink.name()));
        }
    }

    void leavesEverythingWhenGivenUp()
    {
        Import r;
        ui::prompts::expectInform(noMapping);
        Import::inSettings([](ScreenDriver &settings) { settings.press("cmdCancel"); });
        r.openFile();
        QVERIFY(!r.importing());
        ui::file_dialogs::expectFile({});
        r.press("Command1");
        QVERIFY(!r.importing());
        ui::prompts::expectInform(u"1 行目の引用符「\"」が閉じられていないため、読み込みませんでした。"_s);
        r.openFile(u"\"abc\n"_s);
        QVERIFY(!r.importing());
        QCOMPARE(r.stored(), u"山田太郎"_s);
        QVERIFY(!QFile::exists(r.shop.path(u"KanbaloreCSV1.log"_s)));
    }
};

QTEST_MAIN(TestFrmNouhinImport)
#include "tst_frmnouhin_import.moc"
