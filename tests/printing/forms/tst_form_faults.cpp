#include "printing/forms/form_reader.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace printing;

namespace
{

const QByteArray sound = R"(format = 1
name = "試し"
paper = { width = 210, height = 100.5 }
shift = { down = "OffsetB" }


[[text]]
item = "宛先"
x = 20
y = 30
font = "ＭＳ ゴシック"
[[total]]
item = "合計"
x = 190
y = 95
format = "#,##0"
[body]
y = 40
pitch = 5
rows = 8
[[body.column]]
item = "明細.品"
x = 10
width = 100
[carry]
text = "次葉へ繰越"
x = 10
)";

FormItems items()
{
    FormItems all;
    all.items = {{u"宛先"_s, FormItemKind::Text},
                 {u"合計"_s, FormItemKind::Number},
                 {u"日付"_s, FormItemKind::Date},
                 {u"社名"_s, FormItemKind::RichText}};
    all.columns = {{u"明細.品"_s, FormItemKind::Text}};
    all.shifts = QStringList{u"OffsetB"_s};
    return all;
}

QString complaintOf(const QByteArray &content)
{
    const auto form = readForm(content, u"own.toml"_s, items());
    return form ? QString() : form.error().text;
}

/// A row of the table: in the sound file, \a part becomes \a damaged.
void damage(const char *name, const char *part, const char *damaged, const char *told)
{
    QTest::newRow(name) << sound.contains(part) << QByteArray(sound).replace(part, damaged)
                        << QString::fromUtf8(told);
}

} // namespace

class TestFormFaults : public QObject
{
    Q_OBJECT

private slots:
    void damagedFiles_data();
    void damagedFiles();
    void soundFileIsRead();
    void allFaultsAreToldInTheOrderOfTheFile();
};

void TestFormFaults::damagedFiles_data()
{
    QTest::addColumn<bool>("applies");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("told"); // the beginning

    damage("unknown key", "font = \"ＭＳ ゴシック\"", "allign = \"right\"",
           "own.toml:11: 「allign」というキーはありません。使えるキー：item、text、");
    damage("unknown key at the top", "name =", "titel =", "own.toml:1: 「name」が書かれていません。");
    damage("unknown table", "[[total]]", "[[totals]]", "own.toml:12: 「totals」");
    damage("unknown item", "item = \"宛先\"", "item = \"宛名\"",
           "own.toml:8: 「宛名」という項目はありません。使える項目：ページ、合計、宛先、日付、社名");
    damage("item of the rows outside them", "item = \"宛先\"", "item = \"明細.品\"",
           "own.toml:8: 「明細.品」");
    damage("unknown column", "明細.品", "明細.色",
           "own.toml:22: 「明細.色」という項目はありません。使える項目：明細.品");
    damage("unknown item of a condition", "font = \"ＭＳ ゴシック\"", "when = \"宛名\"",
           "own.toml:11: 「宛名」");
    damage("unknown offset", "OffsetB", "OffsetZ", "own.toml:4: 「OffsetZ」というずれはありません。");
    damage("unknown word", "font = \"ＭＳ ゴシック\"", "align = \"middle\"",
           "own.toml:11: 「align」に「middle」は使えません。使えるもの：left、center、right");
    damage("neither item nor text", "item = \"宛先\"", "", "own.toml:7: 「item」か「text」");
    damage("both item and text", "item = \"宛先\"", "item = \"宛先\"\ntext = \"a\"",
           "own.toml:9: 「item」と");
    damage("x off the paper", "x = 20", "x = 210.5",
           "own.toml:9: 「x」には 0 から 210 までの数を書いてください。");
    damage("x left of the paper", "x = 20", "x = -1", "own.toml:9: 「x」");
    damage("y off the paper", "y = 30", "y = 100.6", "own.toml:10: 「y」には 0 から 100.5");
    damage("y is text", "y = 30", "y = \"30\"", "own.toml:10: 「y」");
    damage("y missing", "y = 30", "", "own.toml:7: 「y」が書かれていません。");
    damage("x not a number", "x = 20", "x = nan", "own.toml:9: 「x」");
    damage("x infinite", "x = 20", "x = inf", "own.toml:9: 「x」");
    damage("x negative and infinite", "x = 20", "x = -inf", "own.toml:9: 「x」");
    damage("size too small", "font = \"ＭＳ ゴシック\"", "size = 3.9", "own.toml:11: 「size」には 4 から 72");
    damage("size too large", "font = \"ＭＳ ゴシック\"", "size = 73", "own.toml:11: 「size」");
    damage("rows negative", "rows = 8", "rows = -8", "own.toml:20: 「rows」");
    damage("rows with a fraction", "rows = 8", "rows = 8.5", "own.toml:20: 「rows」には小数点のない数");
    damage("rows off the paper", "rows = 8", "rows = 13",
           "own.toml:20: 明細の行が用紙の下端からはみ出しています。");
    damage("rows of further sheets", "rows = 8", "rows = 8\nfurther = { y = 90, rows = 3 }",
           "own.toml:21: 明細の行が");
    damage("one row, which the carried sum takes", "rows = 8", "rows = 1", "own.toml:25: 繰越の行");
    damage("pitch of nothing", "pitch = 5", "pitch = 0", "own.toml:19: 「pitch」");
    damage("column beyond the right edge", "width = 100", "width = 200.2",
           "own.toml:23: 用紙の右端からはみ出しています。");
    damage("column beyond the left edge", "width = 100", "width = 100\nalign = \"right\"",
           "own.toml:23: 用紙の左端からはみ出しています。");
    damage("vertical text off the paper", "font = \"ＭＳ ゴシック\"", "vertical = true\nwidth = 80",
           "own.toml:10: 用紙の下端からはみ出しています。");
    damage("vertical text that wraps", "font = \"ＭＳ ゴシック\"",
           "vertical = true\nwidth = 40\nheight = 9\nfit = \"wrap\"", "own.toml:14: 縦書きでは");
    damage("a smallest size of text that does not shrink", "font = \"ＭＳ ゴシック\"", "smallest = 9",
           "own.toml:11: 「smallest」は");
    damage("text of a part right of the paper", "[body]",
           "[[part]]\nname = \"控え\"\nx = 60\n[[part.text]]\ntext = \"a\"\nx = 151\ny = 1\n[body]",
           "own.toml:22: 「x」には 0 から 150 までの数を書いてください。");
    damage("text of a part below the paper", "[body]",
           "[[part]]\nname = \"控え\"\ny = 90\n[[part.text]]\ntext = \"a\"\nx = 1\ny = 11\n[body]",
           "own.toml:23: 「y」には 0 から 10.5");
    damage("part without a name", "[body]", "[[part]]\ny = 60\n[body]",
           "own.toml:17: 「name」が書かれていません。");
    damage("unknown key of a part", "[body]", "[[part]]\nname = \"控え\"\nhight = 60\n[body]",
           "own.toml:19: 「hight」というキーはありません。");
    damage("a continuous form turned", "height = 100.5", "height = 100.5, turned = true",
           "own.toml:3: 縦長に送る用紙だけ");
    damage("box off the paper", "[body]", "[[box]]\nx = 1\ny = 90\nwidth = 9\nheight = 11\n[body]",
           "own.toml:19: 用紙の下端");
    damage("format of a text", "item = \"宛先\"", "item = \"宛先\"\nformat = \"#,##0\"",
           "own.toml:9: 「宛先」");
    damage("wrong format of a number", "#,##0", "#.##0,00", "own.toml:16: 「合計」");
    damage("rich text as text", "font = \"ＭＳ ゴシック\"",
           "[[slot]]\nitem=\"宛先\"\nx=1\ny=1\nwidth=9\nheight=9",
           "own.toml:12: 「宛先」は飾り文字の枠に入りません。");
    damage("later format", "format = 1", "format = 2", "own.toml:1: この版より新しい書式");
    damage("no format", "format = 1", "", "own.toml:1: 「format = 1」が書かれていません。");
    damage("format as text", "format = 1", "format = \"1\"", "own.toml:1: 「format」");
    damage("paper too large", "width = 210,", "width = 21000,", "own.toml:3: 「width」");
    damage("paper is a number", "paper = { width = 210, height = 100.5 }", "paper = 4",
           "own.toml:3: 「paper」には表");
    damage("text is a table", "[[text]]", "[text]", "own.toml:7: 「text」には [[ ]] の表");
    damage("array of numbers", "[[body.column]]\nitem = \"明細.品\"\nx = 10\nwidth = 100", "column = [1, 2]",
           "own.toml:21: 「column」は [[ ]] の表");
    damage("key twice", "x = 20", "x = 20\nx = 21",
           "own.toml:10: 書き方が正しくありません（5 文字目：同じ名前が前にもあります）。");
    damage("unclosed text", "name = \"試し\"", "name = \"試し",
           "own.toml:2: 書き方が正しくありません（11 文字目：「\"」で閉じられていないか");
    damage("nothing behind the sign", "y = 40",
           "y =", "own.toml:18: 書き方が正しくありません（4 文字目：「=」の後に値が");
    damage("a unit behind a number", "y = 40", "y = 40mm",
           "own.toml:18: 書き方が正しくありません（7 文字目：数は");
    damage("decimal comma", "y = 40", "y = 40,5",
           "own.toml:18: 書き方が正しくありません（7 文字目：値の後に");
    damage("number in full width", "y = 40", "y = ４０",
           "own.toml:18: 書き方が正しくありません（5 文字目：値は");
    damage("no sign", "y = 40", "y 40", "own.toml:18: 書き方が正しくありません（3 文字目：名前の後に");
    damage("text without quotes", "name = \"試し\"", "name = 試し",
           "own.toml:2: 書き方が正しくありません（8 文字目：値は");

    QTest::newRow("empty") << true << QByteArray() << u"own.toml:1: "_s;
    QTest::newRow("over a megabyte") << true << sound + QByteArray(1024 * 1024, '#')
                                     << u"own.toml:1: ファイルが大きすぎます"_s;
    QTest::newRow("Shift-JIS") << true << QByteArray("format = 1\n# ") + "\x94\x5b\x95\x69\x8f\x91" // 納品書
                               << u"own.toml:2: 文字コードが UTF-8 ではありません。"_s;
    QTest::newRow("zeros") << true << QByteArray(100, '\0') << u"own.toml:1: "_s;
    QTest::newRow("key of endless parts")
        << true << sound + QByteArray("a.").repeated(300000) + "a = 1" << u"own.toml:28: "_s;
    for (const int depth : {40, 500, 200000})
        QTest::addRow("nested %d deep", depth)
            << true << sound + "deep = " + QByteArray(depth, '[') + QByteArray(depth, ']')
            << u"own.toml:28: "_s;
}

void TestFormFaults::damagedFiles()
{
    QFETCH(bool, applies);
    QFETCH(QByteArray, content);
    QFETCH(QString, told);
    QVERIFY(applies);
    const QString complaint = complaintOf(content);
    QVERIFY2(complaint.contains(told), qPrintable(complaint));
}

void TestFormFaults::soundFileIsRead()
{
    QCOMPARE(complaintOf(sound), QString());
    QByteArray windows = QByteArray(sound).replace("\n", "\r\n");
    QCOMPARE(complaintOf("\xef\xbb\xbf" + windows), QString()); // as editors there save it
    const auto form = readForm(sound, u"own.toml"_s, items());
    QCOMPARE(form->texts.size(), std::size_t{2});
    QCOMPARE(form->texts[1].place.sheets, OnSheets::Last);
    QCOMPARE(form->texts[0].type.font, u"ＭＳ ゴシック"_s);
    QCOMPARE(form->body->first.count, 8);
    QVERIFY(form->carry->takesRow);
}

void TestFormFaults::allFaultsAreToldInTheOrderOfTheFile()
{
    QByteArray content = sound;
    content.replace("x = 20", "x = 900")
        .replace("rows = 8", "rows = 99")
        .replace("item = \"合計\"", "itm = 1");
    const QStringList lines = complaintOf(content).split(u'\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines[0].startsWith(u"own.toml:9: "_s) && lines[1].startsWith(u"own.toml:12: "_s) &&
            lines[2].startsWith(u"own.toml:13: "_s) && lines[3].startsWith(u"own.toml:20: "_s));
    content.replace("x = 10\n", "x = 10\nw = 1\nv = 2\n");
    QVERIFY(complaintOf(content).endsWith(u"\nほかに 3 か所あります。"_s));
}

QTEST_APPLESS_MAIN(TestFormFaults)
#include "tst_form_faults.moc"
