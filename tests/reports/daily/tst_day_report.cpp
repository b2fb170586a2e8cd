#include "day_book.h"

#include "printing/text_fit.h"
#include "reports/daily/day_report_rows.h"
#include "reports/daily/day_report_sheets.h"
#include "reports/ledgers/ledger_report.h"
#include "tables/report_file.h"
#include "text/format_value.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using printing::Align;
using printing::Sheet;
using printing::TextItem;
using reports::DayPaper;
using reports::DayReport;
using reports::DayReportKind;

namespace
{

const book::Period week{{2026, 4, 1}, {2026, 4, 7}};

DayReport reportOf(FreshShop &shop, DayReportKind kind, const book::Period &period = week)
{
    const auto report = reports::readDayReport(shop.connection, kind, period);
    return report ? *report : DayReport();
}

QString shown(const base::Report &report, const QVariantList &values)
{
    QStringList cells;
    for (qsizetype i = 0; i < values.size(); ++i)
        cells << text::formatValue(report.columns.at(static_cast<std::size_t>(i)).format, values.at(i));
    return cells.join(u'|').replace(u'\n', u'/');
}

QStringList shown(const base::Report &report)
{
    QStringList rows;
    for (const base::ReportRow &row : report.rows)
        rows << shown(report, row.values);
    return rows << shown(report, report.totals);
}

// Lines of one day each for as long as there are any, 1 yen each.
DayReport reportOfLines(int lines)
{
    DayReport report{.kind = DayReportKind::Receipts, .period = week};
    for (int i = 1; i <= lines; ++i) {
        reports::DayLine each;
        each.line.date = u"2026-04-01"_s;
        each.line.slip = i;
        each.line.product = u"入　金"_s;
        each.line.amount = 1;
        each.counterpart = u"客%1"_s.arg(i);
        report.lines.push_back(each);
        report.total += 1;
    }
    return report;
}

QStringList textsOf(const Sheet &sheet)
{
    QStringList texts;
    for (const TextItem &item : sheet.texts)
        texts << item.text;
    return texts;
}

const TextItem *item(const Sheet &sheet, const QString &text)
{
    const auto found =
        std::ranges::find_if(sheet.texts, [&](const TextItem &each) { return each.text == text; });
    return found == sheet.texts.end() ? nullptr : &*found;
}

double millimetres(double twips) { return twips / printing::twipsPerMillimetre; }

// Where \a word of a heading ends.
double endOf(const TextItem &heading, const QString &word)
{
    const qsizetype end = heading.text.indexOf(word) + word.size();
    return millimetres(heading.x) + printing::textWidth(QStringView(heading.text).first(end), heading.points);
}

} // namespace

class TestDayReport : public QObject
{
    Q_OBJECT

private slots:
    void sevenReports_data()
    {
        QTest::addColumn<DayReportKind>("kind");
        QTest::addColumn<QString>("headings"); // of the table
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<QStringList>("paper"); // name, both halves upright and lying
        const QString goods = u"|規格|数量|単位|単価"_s;
        QTest::newRow("sales")
            << DayReportKind::Sales << u"納品先名|商品名"_s + goods + u"|売上額"_s
            << QStringList{u"2026/04/01|Ｏ２|77|(削除済み) ID 77|みかん||1|箱|1,200|1,200|"_s,
                           u"2026/04/01|o-3|2|二階|返品||-1||500|-500|"_s,
                           u"|||小計||||||700|"_s,
                           u"2026/04/07|O1|1|山田商店|みかん|5kg|2.50|箱|1,200|3,000|急ぎ"_s,
                           u"2026/04/07|O1|1|山田商店|りんご||3|個|100.50|301|急ぎ"_s,
                           u"2026/04/07|O1|1|山田商店|消費税|||||330|急ぎ"_s,
                           u"|||小計||||||3,631|"_s,
                           u"|||登録のない納品先の伝票 1 件を含みます。|||||||"_s,
                           u"|||合計||||||4,331|"_s}
            << QStringList{u"納品日報"_s, u"日  付    　    納品先名"_s, u"売上額　　      備考"_s,
                           u"品　名                            数量        単価         売上額　　備考"_s};
        QTest::newRow("receipts") << DayReportKind::Receipts << u"入金先名|提要|入金額"_s
                                  << QStringList{u"2026/04/02|R8|1|山田商店|入　金|60,000|"_s,
                                                 u"|||小計||60,000|"_s, u"|||合計||60,000|"_s}
                                  << QStringList{u"入金日報"_s, u"日  付    　    入金先名"_s,
                                                 u"入金額　　      備考"_s,
                                                 u"提要                             入金額　　   備考"_s};
        QTest::newRow("purchases")
            << DayReportKind::Purchases << u"仕入先名|商品名"_s + goods + u"|仕入額"_s
            << QStringList{u"2026/04/03|I12|1|千曲農園|りんご|20kg|10|箱|80|800|納品書 123/2枚"_s,
                           u"|||小計||||||800|"_s, u"|||合計||||||800|"_s}
            << QStringList{u"仕入日報"_s, u"日  付    　    仕入先名"_s, u"仕入額　　      備考"_s,
                           u"品　名                            数量        単価         仕入額　　備考"_s};
        QTest::newRow("payments") << DayReportKind::Payments << u"支払先名|摘要|支払額"_s
                                  << QStringList{u"2026/04/02|P9|1|千曲農園|支払|20,000|"_s,
                                                 u"|||小計||20,000|"_s, u"|||合計||20,000|"_s}
                                  << QStringList{u"支払日報"_s, u"日  付    　    支払先名"_s,
                                                 u"支払額　　      備考"_s,
                                                 u"摘要                             支払額　　   備考"_s};
        QTest::newRow("stocktakes")
            << DayReportKind::Stocktakes << u"仕入先名|商品名"_s + goods + u"|棚卸額"_s
            << QStringList{u"2026/04/04|T13|1|千曲農園|りんご||7|箱|80|560|"_s, u"|||小計||||||560|"_s,
                           u"|||合計||||||560|"_s}
            << QStringList{u"棚卸日報"_s, u"日  付    　    仕入先名"_s, u"棚卸額　　      備考"_s,
                           u"品　名                            数量        単価         仕入額　　備考"_s};
        QTest::newRow("receivables carried")
            << DayReportKind::ReceivableCarried << u"納品先名|摘要|売上額"_s
            << QStringList{u"2026/04/02|B10|1|山田商店|繰越残高|7,000|"_s, u"|||小計||7,000|"_s,
                           u"|||合計||7,000|"_s}
            << QStringList{u"売掛金繰越日報"_s, u"日  付    　    納品先名"_s, u"売上額　　      備考"_s,
                           u"摘要                             売上額　　   備考"_s};
        QTest::newRow("payables carried")
            << DayReportKind::PayableCarried << u"仕入先名|摘要|仕入額"_s
            << QStringList{u"2026/04/02|A11||(相手先なし)|繰越残高|8,000|"_s, u"|||小計||8,000|"_s,
                           u"|||登録のない仕入先の伝票 1 件を含みます。|||"_s, u"|||合計||8,000|"_s}
            << QStringList{u"買掛金繰越日報"_s, u"日  付    　    仕入先名"_s, u"仕入額　　      備考"_s,
                           u"摘要                             仕入額　　   備考"_s};
    }
    void sevenReports()
    {
        QFETCH(const DayReportKind, kind);
        QFETCH(const QString, headings);
        QFETCH(const QStringList, rows);
        QFETCH(const QStringList, paper);
        DayBook book;
        const DayReport report = reportOf(book, kind);
        const base::Report table = reports::rowsOf(report);
        QStringList columns;
        for (const base::Column &column : table.columns)
            columns << column.heading;
        QCOMPARE(columns.join(u'|'), u"日付|伝票番号|相手先ID|"_s + headings + u"|備考"_s);
        QCOMPARE(shown(table).join(u'\n'), rows.join(u'\n'));

        const auto upright = reports::dayReportSheets(report, DayPaper::Upright);
        QCOMPARE(upright.size(), 1u);
        QCOMPARE(textsOf(upright.front()).first(5),
                 (QStringList{u"Page 1"_s, QString(17, u'　') + paper[0],
                              u" 　　　　期間　2026/04/01　～　2026/04/07"_s, paper[1], paper[2]}));
        const auto lying = reports::dayReportSheets(report, DayPaper::Lying);
        const Sheet &sheet = lying.front();
        QVERIFY(sheet.readWidth() > sheet.readHeight());
        QCOMPARE(textsOf(sheet).first(5),
                 (QStringList{u"Page 1"_s, QString(17, u'　') + paper[0],
                              u"　　　　期間　2026/04/01　～　2026/04/07"_s, paper[1], paper[3]}));
    }

    // Under the words of the heading, whose blanks are as they are.
    void figuresStandUnderTheirHeadings()
    {
        DayBook book;
        const DayReport report = reportOf(book, DayReportKind::Sales);
        const auto lying = reports::dayReportSheets(report, DayPaper::Lying);
        const Sheet &sheet = lying.front();
        const TextItem heading = sheet.texts.at(4);
        const auto endsUnder = [&](const QString &figure, const QString &word) {
            const TextItem *found = item(sheet, figure);
            return found && found->align == Align::Right &&
                   std::abs(millimetres(found->x) - endOf(heading, word)) < 1.1;
        };
        QVERIFY(endsUnder(u"3,000"_s, u"売上額"_s));
        QVERIFY(endsUnder(u"100.50"_s, u"単価"_s));
        QVERIFY(endsUnder(u"2.50"_s, u"数量"_s));
        QVERIFY(item(sheet, u"みかん　5kg"_s));
        QVERIFY(!item(sheet, u"次頁へ"_s));
        // Upright the amounts stand alone.
        const auto upright = reports::dayReportSheets(report, DayPaper::Upright);
        QVERIFY(item(upright.front(), u"みかん"_s) && !item(upright.front(), u"100.50"_s));
        for (const TextItem &each : sheet.texts)
            QVERIFY2(each.room > 0 || each.align == Align::Right ||
                         millimetres(each.x) + printing::textWidth(each.text, each.points) < 297 - 11,
                     qPrintable(each.text));
    }

    void pagesAreFilledToTheLastRow_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<DayPaper>("paper");
        QTest::addColumn<QList<int>>("pages"); // rows of each, sums counted
        QTest::newRow("one") << 1 << DayPaper::Upright << QList<int>{3};
        QTest::newRow("a row less") << 43 << DayPaper::Upright << QList<int>{45};
        QTest::newRow("exactly full") << 44 << DayPaper::Upright << QList<int>{46};
        QTest::newRow("the total alone on the next") << 45 << DayPaper::Upright << QList<int>{46, 1};
        QTest::newRow("exactly two") << 90 << DayPaper::Upright << QList<int>{46, 46};
        QTest::newRow("lying, exactly full") << 28 << DayPaper::Lying << QList<int>{30};
        QTest::newRow("lying, one more") << 29 << DayPaper::Lying << QList<int>{30, 1};
    }
    void pagesAreFilledToTheLastRow()
    {
        QFETCH(const int, lines);
        QFETCH(const DayPaper, paper);
        QFETCH(const QList<int>, pages);
        const auto sheets = reports::dayReportSheets(reportOfLines(lines), paper);
        QList<int> found;
        QStringList customers;
        for (std::size_t page = 0; page < sheets.size(); ++page) {
            const Sheet sheet = sheets[page];
            QCOMPARE(sheet.texts.front().text, u"Page %1"_s.arg(page + 1));
            found << static_cast<int>(sheet.lines.size()) - 1; // a rule under each, and under the heading
            QCOMPARE(item(sheet, u"次頁へ"_s) != nullptr, page + 1 < sheets.size());
            for (const TextItem &each : sheet.texts) {
                QVERIFY(millimetres(each.y) + 4 < sheet.readHeight() - 10);
                if (each.text.startsWith(u'客'))
                    customers << each.text;
            }
        }
        QCOMPARE(found, pages);
        QCOMPARE(customers.size(), lines); // none twice, none lost
        QCOMPARE(QSet<QString>(customers.begin(), customers.end()).size(), lines);
        const Sheet last = sheets.back();
        QVERIFY(item(last, u"合計"_s) && textsOf(last).contains(QString::number(lines)));
    }

    // Long names make their row grow, and the page hold fewer of them.
    void longNamesKeepWithinTheirRows()
    {
        DayReport report = reportOfLines(44);
        report.lines[5].counterpart = QString(u"株式会社とても長い名前の百貨店"_s).repeated(4);
        const auto sheets = reports::dayReportSheets(report, DayPaper::Upright);
        QCOMPARE(sheets.size(), 2u);
        QString name;
        const Sheet first = sheets[0];
        for (const TextItem &each : first.texts) {
            if (each.text.contains(u"百貨店"_s) || each.text.contains(u"株式"_s) || name.size() > 0)
                name += each.text;
            if (name.size() >= report.lines[5].counterpart.size())
                break;
        }
        QVERIFY2(name.startsWith(report.lines[5].counterpart), qPrintable(name));
    }

    // Both rates and what is not taxed add up to the total, each with its own tax lines.
    void totalsOfSeveralRates()
    {
        DayBook book;
        QVERIFY(reportOf(book, DayReportKind::Sales).rates.empty()); // one rate says nothing
        book.slip(20, u"2026-04-05"_s, u"O20"_s, 1);
        book.line(20, u"弁当"_s, {}, 2, {}, 540, 1080, 1, 8);
        book.line(20, u"消費税"_s, {}, {}, {}, {}, 86, 1, 8);
        book.line(20, u"切手"_s, {}, 1, {}, 84, 84, 3, 0);
        book.slip(21, u"2026-04-05"_s, u"O21"_s, 1, {}, 8);
        book.line(21, u"古い税率の返品"_s, {}, -1, {}, 1000, -1000);
        book.run(u"UPDATE 入出庫マスター SET 消費税率 = NULL WHERE ID = 2"_s);
        const DayReport report = reportOf(book, DayReportKind::Sales);
        QStringList rates;
        double sum = 0;
        for (const reports::DayRate &rate : report.rates) {
            rates << u"%1 %2 %3"_s.arg(rate.name).arg(rate.amount).arg(rate.tax);
            sum += rate.amount;
        }
        QCOMPARE(rates.join(u'\n'),
                 u"10% 3131 330\n8% -1000 0\n軽減8% 1166 86\n非課税 84 0\n税率不明 1200 0"_s);
        QCOMPARE(sum, report.total);
        const auto sheets = reports::dayReportSheets(report, DayPaper::Upright);
        const Sheet &sheet = sheets.front();
        QVERIFY(item(sheet, u"軽減8%"_s) && item(sheet, u"うち消費税 86"_s) && item(sheet, u"1,166"_s));
        QVERIFY(shown(reports::rowsOf(report)).contains(u"|||軽減8%||||||1,166|うち消費税 86"_s));
        QVERIFY(reportOf(book, DayReportKind::Stocktakes).rates.empty());
    }

    // Files made by other hands: no period has what has no day, and an amount that is none leaves no sum.
    void oddDatesAndAmounts()
    {
        DayBook book;
        book.slip(30, u"abc"_s, u"T30"_s, 1);
        book.line(30, u"りんご"_s, {}, 1, {}, 1, 1);
        book.line(30, u"みかん"_s, {}, 1, {}, 1, 1);
        book.slip(31, {}, u"T31"_s, 1);
        book.line(31, u"りんご"_s, {}, 1, {}, 1, 1);
        const base::Report rows =
            reports::rowsOf(reportOf(book, DayReportKind::Stocktakes, {{1752, 9, 14}, {9999, 12, 31}}));
        QCOMPARE(shown(rows, rows.rows.back().values),
                 u"|||日付のない伝票の明細 3 行は、どの期間にも入りません（合計に含みません）。|||||||"_s);
        QCOMPARE(rows.rows.back().link.value<reports::SlipTarget>(),
                 (reports::SlipTarget{30, book::stocktake}));
        QCOMPARE(rows.rows.front().link.value<reports::SlipTarget>(),
                 (reports::SlipTarget{13, book::stocktake}));
        QCOMPARE(shown(rows, rows.totals), u"|||合計||||||560|"_s);
        book.run(u"UPDATE 入出庫サブ SET 金額 = '12円' WHERE ID = 13"_s);
        const auto sheets =
            reports::dayReportSheets(reportOf(book, DayReportKind::Stocktakes), DayPaper::Lying);
        QCOMPARE(textsOf(sheets.front()).count(u"計算不能"_s), 3);
    }

    void periods()
    {
        DayBook book;
        const auto reversed =
            reports::readDayReport(book.connection, DayReportKind::Sales, {{2026, 4, 7}, {2026, 4, 1}});
        QCOMPARE(reversed.error().text,
                 u"期間の終わりが始まりより前になっています。日付を入力し直してください。"_s);
        const DayReport none = reportOf(book, DayReportKind::Sales, {{2026, 4, 2}, {2026, 4, 6}});
        QVERIFY(none.lines.empty()); // a slip without lines and an estimate are none
        QVERIFY(reports::dayReportSheets(none, DayPaper::Upright).empty());
        QCOMPARE(reportOf(book, DayReportKind::Sales, {{2026, 4, 7}, {2026, 4, 7}}).lines.size(), 3u);
    }

    void writtenAsTable()
    {
        DayBook book;
        const QString file = book.path(u"日報.csv"_s);
        const base::Report rows = reports::rowsOf(reportOf(book, DayReportKind::Sales));
        QCOMPARE(rows.documentName, u"納品日報 2026-04-01～2026-04-07"_s);
        QVERIFY(tables::writeReport(file, rows, base::unwatched));
        QFile written(file);
        QVERIFY(written.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(written.readAll());
        QVERIFY2(text.contains(u"2026/04/07,O1,1,山田商店,りんご,\"\",3,個,100.5,301,急ぎ"_s),
                 qPrintable(text));
        QVERIFY2(text.contains(u",,,小計,,,,,,3631,"_s), qPrintable(text));
    }
};

QTEST_GUILESS_MAIN(TestDayReport)
#include "tst_day_report.moc"
