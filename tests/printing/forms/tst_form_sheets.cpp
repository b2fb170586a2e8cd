#include "printing/forms/form_reader.h"
#include "printing/forms/form_sheets.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace printing;

namespace
{

const QByteArray head = "format = 1\nname = \"試し\"\n";
const QByteArray paper = "paper = { width = 200, height = 100 }\n";

// A pre-printed continuous form: five rows, of which the carried sum takes one.
const QByteArray continuous = head + R"(
paper  = { width = 241.3, height = 114.3, source = "tractor" }
origin = "printable"
shift  = { right = "OffsetL", down = "OffsetB" }
[[text]]
item = "ページ"
x = 200
y = 5
[[text]]
item = "宛先"
after = "　様"
x = 20
y = 12
shift = { right = ["OffsetL", "OffsetF"] }
[[text]]
sheet = "further"
text = "続き"
x = 20
y = 5
[body]
y = 40
pitch = 8
rows = 5
[[body.column]]
item = "明細.品"
x = 15
width = 70.6
[[body.column]]
item = "明細.金額"
format = "#,##0"
x = 194
width = 30
align = "right"
[carry]
text = "次葉へ繰越"
x = 15
amount = { item = "繰越金額", format = "0", x = 194, align = "right" }
[[total]]
item = "合計"
before = "¥"
format = "#,##0"
x = 194
y = 97.4
align = "right"
)";

FormItems items()
{
    FormItems all;
    all.items = {
        {u"宛先"_s, FormItemKind::Text}, {u"日付"_s, FormItemKind::Date}, {u"合計"_s, FormItemKind::Number}};
    all.columns = {{u"明細.品"_s, FormItemKind::Text}, {u"明細.金額"_s, FormItemKind::Number}};
    all.shifts = QStringList{u"OffsetB"_s, u"OffsetL"_s, u"OffsetF"_s};
    all.summed = u"明細.金額"_s;
    return all;
}

Form formOf(const QByteArray &content)
{
    const auto form = readForm(content, u"test.toml"_s, items());
    if (!form)
        qFatal("%s", qPrintable(form.error().text));
    return *form;
}

FormValues valuesOf(const QStringList &products)
{
    FormValues values;
    values.summed = u"明細.金額"_s;
    values.items = {{u"宛先"_s, u"山田"_s}, {u"合計"_s, 12345.0}, {u"日付"_s, QDate(2026, 4, 1)}};
    for (const QString &product : products)
        values.rows.push_back({{u"明細.品"_s, product}, {u"明細.金額"_s, 1000.0}});
    return values;
}

QStringList numbered(int count)
{
    QStringList products;
    for (int i = 1; i <= count; ++i)
        products << u"品%1"_s.arg(i);
    return products;
}

QStringList textsOf(const Sheet &sheet)
{
    QStringList texts;
    for (const TextItem &item : sheet.texts)
        texts << item.text;
    return texts;
}

/// "x y" of the text in millimetres.
QString placeOf(const Sheet &sheet, const QString &text)
{
    const auto found = std::find_if(sheet.texts.begin(), sheet.texts.end(),
                                    [&](const TextItem &item) { return item.text == text; });
    return found == sheet.texts.end() ? u"none"_s
                                      : u"%1 %2"_s.arg(found->x / twipsPerMillimetre, 0, 'f', 2)
                                            .arg(found->y / twipsPerMillimetre, 0, 'f', 2);
}

} // namespace

class TestFormSheets : public QObject
{
    Q_OBJECT

private slots:
    void theCarriedSumTakesTheLastRow_data()
    {
        QTest::addColumn<QStringList>("products");
        QTest::addColumn<QStringList>("onSheets"); // products, and the sum carried over
        const QString longText =
            u"特選宇治抹茶入り玄米茶業務用"_s.repeated(4); // two rows at the smallest size
        QTest::newRow("none") << QStringList() << QStringList{u"0"_s};
        QTest::newRow("one sheet full") << numbered(5) << QStringList{u"5"_s};
        QTest::newRow("one more") << numbered(6) << QStringList{u"4 4000"_s, u"2"_s};
        QTest::newRow("two sheets full") << numbered(9) << QStringList{u"4 4000"_s, u"5"_s};
        QTest::newRow("three") << numbered(10) << QStringList{u"4 4000"_s, u"4 8000"_s, u"2"_s};
        QTest::newRow("a line of two rows at the end") << (numbered(3) << longText) << QStringList{u"4"_s};
        QTest::newRow("a line of two rows that another follows")
            << (numbered(3) << longText << u"品"_s) << QStringList{u"3 3000"_s, u"2"_s};
        QTest::newRow("a line that fills every row")
            << QStringList{longText.repeated(20), longText.repeated(20), u"品"_s}
            << QStringList{u"1 1000"_s, u"2"_s};
    }

    void theCarriedSumTakesTheLastRow()
    {
        QFETCH(QStringList, products);
        QFETCH(QStringList, onSheets);
        const std::vector<Sheet> sheets = formSheets(formOf(continuous), valuesOf(products));
        QStringList found;
        for (std::size_t i = 0; i < sheets.size(); ++i) {
            const QStringList texts = textsOf(sheets[i]);
            QString sheet = QString::number(texts.count(u"1,000"_s));
            if (const qsizetype carry = texts.indexOf(u"次葉へ繰越"_s); carry >= 0)
                sheet += u' ' + texts.at(carry + 1);
            found << sheet;
            QCOMPARE(texts.contains(u"¥12,345"_s), i + 1 == sheets.size());
            QCOMPARE(texts.contains(u"続き"_s), i > 0);
            for (const TextItem &item : sheets[i].texts)
                QVERIFY(item.y / twipsPerMillimetre < 80 || item.text == u"¥12,345"_s);
        }
        QCOMPARE(found, onSheets);
    }

    void offsetsMoveWhatTheyAreMeantFor()
    {
        FormValues values = valuesOf(numbered(6));
        values.shifts = {{u"OffsetB"_s, 1.41}, {u"OffsetL"_s, -1.75}, {u"OffsetF"_s, 7.0}};
        const std::vector<Sheet> sheets = formSheets(formOf(continuous), values);
        QCOMPARE(placeOf(sheets[0], u"1 / 2"_s), u"198.25 6.41"_s);
        QCOMPARE(placeOf(sheets[0], u"山田　様"_s), u"25.25 13.41"_s);
        QCOMPARE(placeOf(sheets[1], u"¥12,345"_s), u"192.25 98.81"_s);
        // In the middle of its row: 8 high, type of 10 points.
        QCOMPARE(placeOf(sheets[0], u"次葉へ繰越"_s),
                 u"13.25 %1"_s.arg(72 + 1.41 + (8 - 10 * 25.4 / 72) / 2, 0, 'f', 2));
    }

    // Both parts show the same rows, the receipt's measured from the perforation, and break at the same line.
    void aPartIsMovedByItsOwnOffsets()
    {
        const QByteArray content = head + R"(
paper = { width = 210, height = 297 }
shift = { right = "OffsetL", down = "OffsetB" }
[body]
y = 60
pitch = 8
rows = 6
[[body.column]]
item = "明細.品"
x = 15
[carry]
text = "次葉へ繰越"
x = 15
amount = { item = "繰越金額", x = 100 }
[[part]]
name = "物品受領書"
y = 148.5
shift = { right = "OffsetL", down = "OffsetF" }
[part.body]
y = 60
pitch = 7
rows = 5
[[part.body.column]]
item = "明細.品"
x = 25
width = 60
[[part.text]]
text = "受領印"
x = 150
y = 120
)";
        FormValues values = valuesOf(numbered(6));
        values.shifts = {{u"OffsetB"_s, 1.41}, {u"OffsetL"_s, -1.75}, {u"OffsetF"_s, 7.0}};
        const std::vector<Sheet> sheets = formSheets(formOf(content), values);
        QCOMPARE(sheets.size(), std::size_t(2));
        QCOMPARE(textsOf(sheets[0]).count(u"品4"_s), 2);
        QCOMPARE(textsOf(sheets[1]).count(u"品5"_s), 2);
        QVERIFY(textsOf(sheets[0]).contains(u"4,000"_s));
        QCOMPARE(placeOf(sheets[0], u"受領印"_s), u"148.25 275.50"_s);
        std::vector<TextItem> firsts;
        for (const TextItem &item : sheets[0].texts) {
            if (item.text == u"品1"_s)
                firsts.push_back(item);
        }
        QCOMPARE(firsts[1].x - firsts[0].x, twipsFromMillimetres(10));
        // 148.5 down, the row half a millimetre lower in its middle, and the offsets' difference.
        QVERIFY(std::abs(firsts[1].y - firsts[0].y - twipsFromMillimetres(148.5 - 0.5 + 7 - 1.41)) < 0.01);
    }

    void paperIsAsItIsFed()
    {
        const Sheet fed = formSheets(formOf(continuous), valuesOf({})).front();
        QCOMPARE(fed.paperWidth, 241.3);
        QCOMPARE(fed.paperHeight, 114.3);
        QVERIFY(!fed.turned && fed.origin == Origin::PrintableArea);

        // x may now be up to the long side.
        const QByteArray across = head + "paper = { width = 114, height = 184, turned = true }\n"
                                         "[[text]]\ntext = \"右\"\nx = 180\ny = 100\n";
        const Sheet turned = formSheets(formOf(across), valuesOf({})).front();
        QCOMPARE(turned.paperWidth, 114.0);
        QVERIFY(turned.turned);
        QCOMPARE(turned.readWidth(), 184.0);
    }

    void valuesAreSetAsTheirFormatsTell_data()
    {
        QTest::addColumn<QByteArray>("keys");
        QTest::addColumn<QString>("printed"); // empty: nothing
        QTest::newRow("date") << QByteArray("item = \"日付\"") << u"2026年4月1日"_s;
        QTest::newRow("date by a format")
            << QByteArray("item = \"日付\"\nformat = \"yyyy/MM/dd\"") << u"2026/04/01"_s;
        QTest::newRow("number") << QByteArray("item = \"合計\"") << u"12,345"_s;
        QTest::newRow("plain number") << QByteArray("item = \"合計\"\nformat = \"0\"") << u"12345"_s;
        QTest::newRow("around it") << QByteArray("item = \"宛先\"\nbefore = \"＜\"\nafter = \"＞\"")
                                   << u"＜山田＞"_s;
        QTest::newRow("no value") << QByteArray("item = \"ページ\"\nbefore = \"枚\"") << QString();
        QTest::newRow("no value, always")
            << QByteArray("item = \"ページ\"\nbefore = \"枚\"\nalways = true") << u"枚"_s;
        QTest::newRow("on a condition") << QByteArray("text = \"a\"\nwhen = \"宛先\"") << u"a"_s;
        QTest::newRow("on one that fails") << QByteArray("text = \"a\"\nwhen = \"ページ\"") << QString();
        QTest::newRow("not on this sheet")
            << QByteArray("text = \"a\"\nsheet = \"before_last\"") << QString();
    }

    void valuesAreSetAsTheirFormatsTell()
    {
        QFETCH(QByteArray, keys);
        QFETCH(QString, printed);
        const QByteArray content = head + paper + "[[text]]\nx = 10\ny = 10\n" + keys + '\n';
        const Sheet sheet = formSheets(formOf(content), valuesOf({})).front();
        QCOMPARE(textsOf(sheet).join(u'|'), printed);
    }

    void aTextIsSetAsItsKeysTell()
    {
        const QByteArray content = head + paper +
                                   "[[text]]\nitem = \"宛先\"\nx = 150\ny = 60\nsize = 24\nbold = true\n"
                                   "font = \"ＭＳ ゴシック\"\nvertical = true\npair_digits = true\n"
                                   "width = 60\nalign = \"center\"\n";
        const TextItem item = formSheets(formOf(content), valuesOf({})).front().texts.front();
        QVERIFY(item.vertical && item.pairedDigits && item.bold);
        QCOMPARE(item.align, Align::Centre);
        QCOMPARE(item.points, 24.0);
        QCOMPARE(item.room, twipsFromMillimetres(60));
        QCOMPARE(item.face, u"ＭＳ ゴシック"_s);
    }

    void aTextShrinksToItsSmallestAndIsSqueezedThen_data()
    {
        QTest::addColumn<QString>("addressee");
        QTest::addColumn<bool>("vertical");
        QTest::addColumn<double>("points"); // 12 mm hold 3.4 characters at 10 points
        for (const bool vertical : {false, true}) {
            const QByteArray way = vertical ? "down" : "across";
            QTest::newRow(("fits, " + way).constData()) << u"山田屋"_s << vertical << 10.0;
            QTest::newRow(("shrinks, " + way).constData()) << u"山田商店"_s << vertical << 8.5;
            QTest::newRow(("squeezed, " + way).constData()) << u"山田太郎商店"_s << vertical << 8.0;
        }
        // As half-width letters they take half as much across, and a square each in a column.
        QTest::newRow("letters across") << u"SHOP12"_s << false << 10.0;
        QTest::newRow("letters down") << u"SHOP"_s << true << 8.5;
        QTest::newRow("two digits in a square") << u"店12号"_s << true << 10.0;
    }

    void aTextShrinksToItsSmallestAndIsSqueezedThen()
    {
        QFETCH(QString, addressee);
        QFETCH(bool, vertical);
        const QByteArray content =
            head + paper +
            "[[text]]\nitem = \"宛先\"\nx = 50\ny = 20\nsize = 10\nwidth = 12\nfit = \"shrink\"\n" +
            "smallest = 8\n" + (vertical ? "vertical = true\npair_digits = true\n" : "");
        FormValues values = valuesOf({});
        values.items[u"宛先"_s] = addressee;
        const TextItem item = formSheets(formOf(content), values).front().texts.front();
        QTEST(item.points, "points");
        QCOMPARE(item.room, twipsFromMillimetres(12));
    }
};

QTEST_APPLESS_MAIN(TestFormSheets)
#include "tst_form_sheets.moc"
