#include "tables/report_file.h"

#include <QtTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

base::Report dailyReport()
{
    base::Column amount{u"金額"_s, base::Format::Amount};
    amount.summed = true;
    base::Report report;
    report.columns = {{u"日付"_s, base::Format::Date},
                      {u"電話"_s},
                      {u"商品名"_s, base::Format::Text, 20, 40, true},
                      {u"数量"_s, base::Format::Quantity},
                      amount};
    beginGroup(report, u"東京商店"_s);
    report.rows.push_back({{u"2026-04-01"_s, u"0312345678"_s, u"=1+2"_s, 2.5, 1234.5678}});
    report.rows.push_back({{u"不明"_s, u"1-2"_s, u"りんご"_s, u"三"_s, 20000000}});
    endGroup(report, u"計"_s);
    addTotals(report, u"合計"_s);
    return report;
}

QByteArray written(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestReportFile : public QObject
{
    Q_OBJECT

private slots:
    // Numbers in full and without separators, texts as texts, groups and totals where they stand on paper.
    void numbersStayNumbersAndTextsTexts()
    {
        const QTemporaryDir folder;
        const QString name = folder.filePath(u"日報.csv"_s);
        QVERIFY(tables::writeReport(name, dailyReport(), base::unwatched));
        const QString text = QString::fromUtf8(written(name)).remove(u'\r').remove(QChar(0xFEFF));
        QCOMPARE(text,
                 u"日付,電話,商品名,数量,金額\n,,東京商店,,\n2026/04/01,0312345678,'=1+2,2.5,1234.5678\n"
                 "不明,1-2,りんご,三,20000000\n,,計,,20001234.5678\n,,合計,,20001234.5678\n"_s);
    }

    void sumsThatAreNoneAreToldInWords()
    {
        const QTemporaryDir folder;
        base::Report report = dailyReport();
        report.rows[1].values.last() = std::nan("");
        addTotals(report, u"合計"_s);
        const QString name = folder.filePath(u"日報.csv"_s);
        QVERIFY(tables::writeReport(name, report, base::unwatched));
        QVERIFY(written(name).endsWith(u",,合計,,計算不能\r\n"_s.toUtf8()));
    }

    // One row of headings and one of totals go into an old workbook's 65,536.
    void sheetsHoldSoManyRows()
    {
        base::Report report;
        report.columns = {{u"番号"_s, base::Format::Number}};
        report.rows.assign(65534, {{1}});
        addTotals(report, u"合計"_s);
        QVERIFY(tables::checkReport(u"番号.xls"_s, report));
        report.rows.push_back({{1}});
        QVERIFY(!tables::checkReport(u"番号.xls"_s, report));
        QVERIFY(tables::checkReport(u"番号.xlsx"_s, report));
    }
};

QTEST_GUILESS_MAIN(TestReportFile)
#include "tst_report_file.moc"
