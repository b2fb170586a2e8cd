#include "printing/list_sheet.h"
#include "printing/text_fit.h"

#include <QtTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using base::Report;
using printing::Align;
using printing::ListPaper;
using printing::Sheet;
using printing::TextItem;

namespace
{

constexpr double left = 12; // millimetres: the table's edges on A4
constexpr double right = 198;
constexpr double top = 25.5;
constexpr double firstRow = 32.9;
constexpr double rowHeight = 7.4;
constexpr int rowsOnPage = 33;

double millimetres(double twips) { return twips / printing::twipsPerMillimetre; }

const base::Column nameColumn{u"名前"_s, base::Format::Text, 10, 50};
const base::Column amountColumn{u"金額"_s, base::Format::Amount, 10, 30};

Report reportOf(int rows)
{
    Report report{u"残高一覧"_s, u"東京"_s, {}, {nameColumn, amountColumn}};
    for (int row = 1; row <= rows; ++row)
        report.rows.push_back({{u"客%1"_s.arg(row), row}});
    return report;
}

printing::Sheets sheetsOf(const Report &report)
{
    return printing::listSheets(report, u"2026年4月1日"_s, ListPaper::Upright);
}

const TextItem *item(const Sheet &sheet, const QString &text)
{
    const auto found = std::find_if(sheet.texts.begin(), sheet.texts.end(),
                                    [&](const TextItem &candidate) { return candidate.text == text; });
    return found == sheet.texts.end() ? nullptr : &*found;
}

// The left edges of the columns but the first.
std::vector<double> rulesOf(const Sheet &sheet)
{
    std::vector<double> rules;
    for (const printing::Line &line : sheet.lines) {
        if (line.x1 == line.x2)
            rules.push_back(std::round(millimetres(line.x1) * 100) / 100);
    }
    return rules;
}

// Where a text stands, millimetres; as wide as the renderer may set it.
QRectF areaOf(const TextItem &text)
{
    const double natural = printing::textWidth(text.text, text.points);
    const double width = text.room > 0 ? std::min(natural, millimetres(text.room)) : natural;
    const double share = text.align == Align::Left ? 0 : text.align == Align::Centre ? 0.5 : 1;
    return {millimetres(text.x) - share * width, millimetres(text.y), width,
            printing::millimetresFromPoints(text.points)};
}

} // namespace

class TestListSheet : public QObject
{
    Q_OBJECT

private slots:
    void standsInMillimetres()
    {
        const auto sheets = sheetsOf(reportOf(2));
        QCOMPARE(sheets.size(), 1u);
        const Sheet &sheet = sheets.front();
        QCOMPARE(sheet.origin, printing::Origin::PaperEdge);
        const struct
        {
            const char16_t *text;
            double x, middle;
            Align align;
        } expected[] = {
            {u"残高一覧", 105, 11 + 15 * 25.4 / 72 / 2, Align::Centre},
            {u"2026年4月1日", right, 20 + 9 * 25.4 / 72 / 2, Align::Right},
            {u"名前", left + 25, top + 3.7, Align::Centre},
            {u"客1", left + 1, firstRow + rowHeight / 2, Align::Left},
            {u"2", left + 79, firstRow + 1.5 * rowHeight, Align::Right},
            {u"1 / 1", 105, 286 + 9 * 25.4 / 72 / 2, Align::Centre},
        };
        for (const auto &text : expected) {
            const TextItem *found = item(sheet, QString::fromUtf16(text.text));
            QVERIFY2(found, qPrintable(QString::fromUtf16(text.text)));
            QCOMPARE(millimetres(found->x), text.x);
            QCOMPARE(areaOf(*found).center().y(), text.middle);
            QCOMPARE(found->align, text.align);
        }
        QCOMPARE(rulesOf(sheet), std::vector<double>{left + 50});
    }

    void goesOnOverPages_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<bool>("totals");
        QTest::addColumn<int>("pages");
        QTest::newRow("nothing") << 0 << false << 1;
        QTest::newRow("a full page") << rowsOnPage << false << 1;
        QTest::newRow("one more") << rowsOnPage + 1 << false << 2;
        QTest::newRow("the totals one more") << rowsOnPage << true << 2;
        QTest::newRow("many") << 10000 << true << 304;
    }

    void goesOnOverPages()
    {
        QFETCH(int, rows);
        QFETCH(bool, totals);
        Report report = reportOf(rows);
        if (totals)
            report.totals = {u"合計"_s, 1000};
        const auto sheets = sheetsOf(report);
        QTEST(int(sheets.size()), "pages");
        int printed = 0;
        for (std::size_t page = 0; page < sheets.size(); ++page) {
            QVERIFY(item(sheets[page], u"名前"_s));
            QVERIFY(item(sheets[page], u"%1 / %2"_s.arg(page + 1).arg(sheets.size())));
            for (const TextItem &text : sheets[page].texts) {
                printed += text.text.startsWith(u'客') ? 1 : 0;
                QVERIFY(areaOf(text).bottom() < 290);
            }
        }
        QCOMPARE(printed, rows);
        QCOMPARE(item(sheets.back(), u"合計"_s) != nullptr, totals);
        QCOMPARE(item(sheets.back(), u"1,000"_s) != nullptr, totals);
    }

    // The heading of a group stands over its first row; a subtotal may come to the top of a page.
    void groupsOverPages_data()
    {
        QTest::addColumn<int>("before");         // rows of the group before
        QTest::addColumn<QStringList>("firsts"); // what the pages begin with
        QTest::newRow("a page filled by the heading") << rowsOnPage - 3 << QStringList{u"一"_s, u"二"_s};
        QTest::newRow("a page filled by the row after it")
            << rowsOnPage - 4 << QStringList{u"一"_s, u"客2"_s};
        QTest::newRow("a page filled by the subtotal") << rowsOnPage - 2 << QStringList{u"一"_s, u"二"_s};
        QTest::newRow("a page filled by the rows") << rowsOnPage - 1 << QStringList{u"一"_s, u"一 計"_s};
    }

    void groupsOverPages()
    {
        QFETCH(int, before);
        QFETCH(QStringList, firsts);
        Report report = reportOf(0);
        report.columns.back().summed = true;
        const std::pair<QString, int> groups[] = {{u"一"_s, before}, {u"二"_s, 2}};
        for (const auto &[name, rows] : groups) {
            base::beginGroup(report, name);
            for (const base::ReportRow &row : reportOf(rows).rows)
                report.rows.push_back(row);
            base::endGroup(report, name + u" 計"_s);
        }
        const auto sheets = sheetsOf(report);
        QStringList found;
        for (const Sheet &sheet : sheets) {
            const auto first = std::find_if(sheet.texts.begin(), sheet.texts.end(), [](const TextItem &text) {
                return areaOf(text).center().y() > firstRow &&
                       areaOf(text).center().y() < firstRow + rowHeight;
            });
            found << first->text;
        }
        QCOMPARE(found, firsts);
        const TextItem *subtotal = item(sheets.back(), u"二 計"_s);
        QVERIFY(subtotal && subtotal->bold && item(sheets.back(), u"3"_s));
    }

    void sharesTheRoom_data()
    {
        QTest::addColumn<std::vector<double>>("widths"); // negative: stretches
        QTest::addColumn<std::vector<double>>("rules");
        using Widths = std::vector<double>;
        QTest::newRow("as wide as told") << Widths{20, 30, 40} << Widths{32, 62};
        QTest::newRow("stretched") << Widths{20, -30, -60, 6} << Widths{32, 32 + 160. / 3, 192};
        QTest::newRow("too many") << Widths{186, -186} << Widths{left + 93};
    }

    void sharesTheRoom()
    {
        QFETCH(std::vector<double>, widths);
        QFETCH(std::vector<double>, rules);
        Report report;
        for (const double width : widths)
            report.columns.push_back({u"列"_s, base::Format::Text, 10, std::abs(width), width < 0});
        for (double &rule : rules)
            rule = std::round(rule * 100) / 100;
        QCOMPARE(rulesOf(sheetsOf(report).front()), rules);
    }

    void nothingLeavesItsCell_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("short") << u"山田"_s;
        QTest::newRow("a little long") << QString(17, u'山');
        QTest::newRow("two lines") << QString(30, u'山');
        QTest::newRow("very long") << QString(200, u'山');
        QTest::newRow("line breaks") << u"山田太郎\n営業部"_s;
        QTest::newRow("long lines") << QString(22, u'山') + u'\n' + QString(22, u'川');
        QTest::newRow("many line breaks") << u"一\n二\n三\n四\n五\n六"_s;
        QTest::newRow("control characters") << u"山\t田\r\n\x07太郎"_s;
    }

    void nothingLeavesItsCell()
    {
        QFETCH(QString, text);
        Report report = reportOf(0);
        report.rows = {{{u"上"_s, 1}}, {{text, text}}, {{u"下"_s, 2}}};
        const auto sheets = sheetsOf(report);
        // As high as it takes, up to the row below.
        const double bottom = areaOf(*item(sheets.front(), u"下"_s)).center().y() - rowHeight / 2;
        const QRectF row(left, firstRow + rowHeight, 80, bottom - firstRow - rowHeight);
        QVERIFY(row.height() > rowHeight - 0.01);
        const QRectF cells[] = {{row.left(), row.top(), 50, row.height()},
                                {row.left() + 50, row.top(), 30, row.height()}};
        QString printed[2];
        for (const TextItem &item : sheets.front().texts) {
            const QRectF area = areaOf(item);
            if (!row.contains(area.center()))
                continue;
            const int column = cells[0].contains(area.center()) ? 0 : 1;
            QVERIFY2(cells[column].contains(area), qPrintable(item.text));
            for (const QChar c : item.text)
                QVERIFY(c.isPrint());
            printed[column] += item.text;
        }
        // Nothing is lost, and a number stays on its line.
        const auto bare = [](QString all) { return all.remove(QRegularExpression(u"[\\s\\x07]"_s)); };
        QCOMPARE(bare(printed[0]), bare(text));
        QCOMPARE(printed[1], printing::singleLine(text));
    }

    // A roster with all its columns: rows grow before the type gets too small to read, and telephone numbers
    // and codes stay in one piece.
    void longNamesStayLegible()
    {
        Report report;
        for (const double width : {44., 16., 50., 22., 22., 40., 60.})
            report.columns.push_back({u"列"_s, base::Format::Text, 10, width});
        const QString name = QString(22, u'山') + u'\n' + QString(22, u'川');
        for (int row = 0; row < 40; ++row)
            report.rows.push_back({{name, u"100-0005"_s, name, u"011-1234-5678"_s, u"(0120)123-456"_s,
                                    QString(50, u'備'), QString()}});
        const auto sheets = sheetsOf(report);
        QVERIFY(sheets.size() > 2);
        int codes = 0;
        int phones = 0;
        QString names;
        for (std::size_t page = 0; page < sheets.size(); ++page) {
            for (const TextItem &text : sheets[page].texts) {
                QVERIFY2(text.points >= 7, qPrintable(text.text));
                QVERIFY(areaOf(text).bottom() < 290);
                codes += text.text == u"100-0005" ? 1 : 0;
                phones += text.text == u"011-1234-5678" || text.text == u"(0120)123-456" ? 1 : 0;
                names += text.text;
            }
        }
        QCOMPARE(codes, 40);
        QCOMPARE(phones, 80);
        QCOMPARE(names.count(u'山'), 2 * 40 * 22);
        // A house number stays in one piece, too, wherever it would be broken.
        report.rows = {};
        for (int length = 8; length < 40; ++length)
            report.rows.push_back({{QString(length, u'町') + u"３-15-33"_s}});
        const Sheet page = sheetsOf(report).front();
        for (const TextItem &text : page.texts)
            QVERIFY2(!text.text.contains(u"15"_s) || text.text.endsWith(u"３-15-33"_s),
                     qPrintable(text.text));
        QCOMPARE(printing::paperByWidths(report), ListPaper::Lying);
        report.columns.resize(3);
        QCOMPARE(printing::paperByWidths(report), ListPaper::Upright);
    }
};

QTEST_MAIN(TestListSheet)
#include "tst_list_sheet.moc"
