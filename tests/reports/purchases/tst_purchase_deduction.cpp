#include "printing/list_sheet.h"
#include "reports/purchases/purchase_list.h"
#include "reports/purchases/purchase_report.h"
#include "support/fresh_shop.h"
#include "tables/report_file.h"

#include <QRandomGenerator>
#include <QtTest>

#include <array>
#include <map>

using namespace Qt::StringLiterals;
using book::Period;
using reports::PurchaseList;

namespace
{

const Period october{{2026, 10, 1}, {2026, 10, 31}};

// A line as "11000", "消費税=1000", "10000@8軽" or "500@0非".
void writeLine(FreshShop &shop, int slip, const QString &words)
{
    const QString tax = words.section(u'@', 1);
    const QString amount = words.section(u'@', 0, 0);
    QString rate = tax;
    rate.remove(u'軽').remove(u'非');
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額, 税率, 税区分) VALUES (?, ?, ?, ?, ?)"_s,
             {slip, amount.contains(u'=') ? amount.section(u'=', 0, 0) : u"昆布"_s,
              amount.section(u'=', -1).toDouble(), tax.isEmpty() ? QVariant() : rate.toDouble(),
              tax.endsWith(u'軽')   ? QVariant(1)
              : tax.endsWith(u'非') ? QVariant(3)
                                    : QVariant()});
}

// A slip as "I 2026-10-01 11000 …"; "内" before the lines says that prices include the tax, "元7" names the
// slip that is taken back, "率" that it has no rate.
void writeSlip(FreshShop &shop, int id, const QString &words, int supplier = 1)
{
    QStringList parts = words.split(u' ');
    QVariant inclusive;
    QVariant original;
    QVariant rate = 10;
    for (; parts.size() > 2 && !parts.at(2).front().isDigit() && parts.at(2).front() != u'-' &&
           !parts.at(2).contains(u'=');
         parts.removeAt(2)) {
        if (parts.at(2) == u"内")
            inclusive = 1;
        else if (parts.at(2) == u"率")
            rate = QVariant();
        else
            original = parts.at(2).mid(1).toInt();
    }
    shop.run(
        u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率, 内税, 元伝票) VALUES (?, ?, ?, ?, ?, ?, ?)"_s,
        {id, parts.at(1) == u"-" ? QVariant() : parts.at(1), parts.at(0) + QString::number(id), supplier,
         rate, inclusive, original});
    for (const QString &line : parts.mid(2))
        writeLine(shop, id, line);
}

// "2 2024-01-01 -": 登録, 登録開始日, 登録終了日
void writeSupplier(FreshShop &shop, int id, const QString &registration, int taxClass)
{
    QVariantList values{id, u"S%1"_s.arg(id), u"仕入先%1"_s.arg(id), taxClass};
    for (const QString &part : registration.split(u' '))
        values << (part == u"-" ? QVariant() : part);
    shop.run(
        u"INSERT INTO 仕入先 (仕入先ID, コード, 仕入先名1, 消費税区分, 登録, 登録開始日, 登録終了日) VALUES (?, ?, ?, ?, ?, ?, ?)"_s,
        values);
}

PurchaseList listOf(FreshShop &shop, const Period &period, bool withIdle = true)
{
    auto list = reports::purchaseList(shop.connection, period, withIdle, base::unwatched);
    return list ? std::move(*list) : PurchaseList();
}

// "80%・70% 1500"
QString shown(const std::optional<reports::PurchaseDeduction> &deduction)
{
    if (!deduction)
        return u"none"_s;
    return deduction->shares() + u' ' + (deduction->tax ? QString::number(*deduction->tax, 'f', 0) : u"?"_s);
}

// A book of three rates over the years of all shares, with what may be deducted added up as it is written.
class Book
{
public:
    explicit Book(FreshShop &shop)
        : m_shop(shop)
    {
        const char *registrations[suppliers] = {"2 - -",          "- - -",          "1 - -",
                                                "1 2026-04-15 -", "1 - 2028-12-10", "1 2025-02-01 2030-10-15",
                                                "2 - -",          "0 2024-01-01 -"};
        for (int id = 1; id <= suppliers; ++id)
            writeSupplier(shop, id, QString::fromLatin1(registrations[id - 1]), id % 3);
        for (int id = 1; id <= slips; ++id)
            write(id);
    }

    static constexpr int suppliers = 8;

    // What may be deducted for the supplier in the period; none where no slip is of a day that matters.
    [[nodiscard]] std::optional<qint64> deductible(int supplier, const Period &period) const
    {
        std::map<std::array<qint64, 4>, qint64> sums; // share, rate, reduced, net: yen
        bool any = false;
        for (const Line &line : m_lines) {
            const qint64 percent = percentOn(line.taxDay);
            if (line.supplier != supplier || line.day < period.from || line.day > period.to ||
                percent == 100 || !isMissing(supplier, line.taxDay))
                continue;
            any = true;
            sums[{percent, line.rate, line.isReduced, line.isNet}] += line.yen;
        }
        qint64 total = 0;
        for (const auto &[group, yen] : sums)
            total += yen * group[1] * group[0] / ((100 + (group[3] ? 0 : group[1])) * 100);
        return any ? std::optional(total) : std::nullopt;
    }

private:
    static constexpr int slips = 2500;

    struct Line
    {
        int supplier;
        QDate day;
        QDate taxDay;
        qint64 rate;
        bool isReduced;
        bool isNet;
        qint64 yen;
    };

    // The years of the table, in a form of its own.
    static qint64 percentOn(const QDate &day)
    {
        const int months = day.year() * 12 + day.month();
        const auto since = [months](int year) { return months >= year * 12 + 10; };
        return since(2031)   ? 0
               : since(2030) ? 30
               : since(2028) ? 50
               : since(2026) ? 70
               : since(2023) ? 80
                             : 100;
    }

    static bool isMissing(int supplier, const QDate &day)
    {
        switch (supplier) {
        case 1:
        case 7:
            return true;
        case 4:
            return day < QDate(2026, 4, 15);
        case 5:
            return day > QDate(2028, 12, 10);
        case 6:
            return day < QDate(2025, 2, 1) || day > QDate(2030, 10, 15);
        default:
            return false;
        }
    }

    int upTo(int highest) { return static_cast<int>(m_random.bounded(1, highest + 1)); }

    void write(int id)
    {
        const int supplier = upTo(suppliers);
        const QDate day = QDate(2023, 7, 1).addDays(upTo(3200));
        const bool isInclusive = supplier % 3 == 2 || upTo(9) == 1;
        const bool takesBack = m_days.size() > 10 && upTo(6) == 1;
        const int original = takesBack ? upTo(id - 1) : 0;
        const QDate taxDay = takesBack && m_days.contains(original) ? m_days[original] : day;
        if (upTo(8) == 1) { // no purchase
            writeSlip(m_shop, id,
                      u"%1 %2 5000"_s.arg(upTo(2) == 1 ? u'P' : u'A').arg(day.toString(Qt::ISODate)),
                      supplier);
            m_days[id] = day;
            return;
        }
        m_days[id] = day;
        QString words = u"I "_s + day.toString(Qt::ISODate);
        if (isInclusive)
            words += u" 内"_s;
        if (takesBack)
            words += u" 元%1"_s.arg(original);
        const bool isNet = supplier % 3 == 1 && !isInclusive;
        qint64 tax = 0;
        for (int i = upTo(4); i > 0; --i) {
            const int rate = std::array{10, 8, 1}[static_cast<std::size_t>(upTo(3) - 1)];
            const qint64 yen = takesBack ? -upTo(9999) : upTo(30'000);
            words += u" %1@%2%3"_s.arg(yen).arg(rate).arg(rate == 10 ? QString() : u"軽"_s);
            m_lines.push_back({supplier, day, taxDay, rate, rate != 10, isNet, yen});
            tax += yen * rate / 100;
        }
        if (tax != 0 && !isInclusive && (!isNet || upTo(3) == 1)) {
            words += u" 消費税=%1@10"_s.arg(tax);
            if (!isNet)
                m_lines.push_back({supplier, day, taxDay, 10, false, false, tax});
        }
        writeSlip(m_shop, id, words, supplier);
    }

    FreshShop &m_shop;
    QRandomGenerator m_random{20261001};
    QHash<int, QDate> m_days;
    std::vector<Line> m_lines;
};

} // namespace

class TestPurchaseDeduction : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_shop = std::make_unique<FreshShop>(); }
    // Each test's slips are rolled back.
    void init() { m_shop->run(u"BEGIN"_s); }
    void cleanup() { m_shop->run(u"ROLLBACK"_s); }

    void rules_data()
    {
        QTest::addColumn<QString>("registration");
        QTest::addColumn<int>("taxClass");
        QTest::addColumn<QStringList>("slips");
        QTest::addColumn<QString>("deduction"); // in October 2026
        const auto row = [](const char *name, const QString &registration, int taxClass,
                            const QStringList &slips, const QString &deduction) {
            QTest::newRow(name) << registration << taxClass << slips << deduction;
        };
        const QString no = u"2 - -"_s;
        const QString none = u"none"_s;
        const QStringList plain{u"I 2026-10-01 内 11000"_s};
        row("not registered", no, 2, plain, u"70% 700"_s);
        row("not known", u"- - -"_s, 2, plain, none);
        row("registered", u"1 - -"_s, 2, plain, none);
        row("registered before", u"1 - 2026-09-30"_s, 2, plain, u"70% 700"_s);
        row("registered to that day", u"1 - 2026-10-01"_s, 2, plain, none);
        row("registered later", u"1 2026-10-02 -"_s, 2, plain, u"70% 700"_s);
        row("registered in the midst", u"1 2026-10-10 -"_s, 2,
            {u"I 2026-10-09 内 11000"_s, u"I 2026-10-10 内 5500"_s}, u"70% 700"_s);
        row("tax on the slip", no, 0, {u"I 2026-10-01 10000 消費税=1000"_s}, u"70% 700"_s);
        row("tax of its own slip", no, 0, {u"I 2026-10-01 10000"_s, u"I 2026-10-31 消費税=1000"_s},
            u"70% 700"_s);
        row("tax of the bill, to come", no, 1, {u"I 2026-10-01 10000"_s}, u"70% 700"_s);
        row("tax of the bill, booked", no, 1, {u"I 2026-10-01 10000"_s, u"I 2026-10-31 消費税=1000"_s},
            u"70% 700"_s);
        row("tax of the bill of September", no, 1, {u"I 2026-09-30 10000"_s, u"I 2026-10-01 消費税=1000"_s},
            u"70% 0"_s);
        row("several rates", no, 2, {u"I 2026-10-01 内 11000 1080@8軽 1010@1軽 500@0非"_s}, u"70% 763"_s);
        row("a food of ten percent", no, 2, {u"I 2026-10-01 内 13 13@10軽"_s}, u"70% 0"_s);
        row("truncated once", no, 2, {u"I 2026-10-01 内 8"_s, u"I 2026-10-02 内 8"_s}, u"70% 1"_s);
        row("taken back", no, 2, {u"I 2026-10-01 内 11000"_s, u"I 2026-10-20 内 -1100"_s}, u"70% 630"_s);
        row("taken back alone", no, 2, {u"I 2026-10-20 内 -1100"_s}, u"70% -70"_s);
        row("taken back of September", no, 2, {u"I 2026-09-30 内 11000"_s, u"I 2026-10-20 内 元1 -1100"_s},
            u"80% -80"_s);
        row("taken back of September with goods of October", no, 2,
            {u"I 2026-09-30 内 11000"_s, u"I 2026-10-20 内 元1 -1100 5500"_s}, u"80%・70% 270"_s);
        row("taken back of nothing known", no, 2, {u"I 2026-10-20 内 元77 -1100"_s}, u"70% -70"_s);
        row("nothing bought", no, 2, {u"P 2026-10-01 11000"_s, u"A 2026-10-01 11000"_s}, none);
        row("bought outside", no, 2, {u"I 2026-09-30 11000"_s, u"I 2026-11-01 11000"_s}, none);
        row("no day", no, 2, {u"I - 11000"_s, u"I 2026-10-32 11000"_s}, none);
        row("a slip without lines", no, 2, {u"I 2026-10-01"_s}, none);
        row("no rate", no, 2, {u"I 2026-10-01 内 率 11000"_s}, u"70% ?"_s);
        row("an impossible rate", no, 2, {u"I 2026-10-01 内 11000@250"_s}, u"70% ?"_s);
    }

    void rules()
    {
        QFETCH(QString, registration);
        QFETCH(int, taxClass);
        QFETCH(QStringList, slips);
        QFETCH(QString, deduction);
        FreshShop &shop = *m_shop;
        writeSupplier(shop, 1, registration, taxClass);
        for (int i = 0; i < slips.size(); ++i)
            writeSlip(shop, i + 1, slips.at(i));
        const auto list = listOf(shop, october);
        QCOMPARE(list.suppliers.size(), 1u);
        QCOMPARE(shown(list.suppliers.front().deduction), deduction);
        QCOMPARE(shown(list.deduction), deduction);
    }

    // 11,000 yen with the tax, on the days around each change, each a list of its own; then all at once.
    void theDaysAroundEachChange()
    {
        FreshShop &shop = *m_shop;
        writeSupplier(shop, 1, u"2 - -"_s, 2);
        const std::pair<QDate, QString> days[] = {
            {{2023, 9, 30}, u"none"_s},    {{2023, 10, 1}, u"80% 800"_s}, {{2026, 9, 30}, u"80% 800"_s},
            {{2026, 10, 1}, u"70% 700"_s}, {{2028, 9, 30}, u"70% 700"_s}, {{2028, 10, 1}, u"50% 500"_s},
            {{2030, 9, 30}, u"50% 500"_s}, {{2030, 10, 1}, u"30% 300"_s}, {{2031, 9, 30}, u"30% 300"_s},
            {{2031, 10, 1}, u"0% 0"_s},
        };
        int id = 0;
        for (const auto &[day, deduction] : days) {
            writeSlip(shop, ++id, u"I %1 内 11000"_s.arg(day.toString(Qt::ISODate)));
            QCOMPARE(shown(listOf(shop, {day, day}).deduction), deduction);
        }
        QCOMPARE(shown(listOf(shop, {{2023, 1, 1}, {2031, 12, 31}}).deduction),
                 u"80%・70%・50%・30%・0% 4600"_s);
        QCOMPARE(shown(listOf(shop, {{2026, 9, 1}, {2026, 10, 31}}).deduction), u"80%・70% 1500"_s);
    }

    void generatedBook()
    {
        FreshShop &shop = *m_shop;
        const Book book(shop);
        std::vector<Period> periods{{{2023, 1, 1}, {2032, 12, 31}}, {{2026, 4, 1}, {2027, 3, 31}}};
        for (QDate month(2023, 7, 1); month < QDate(2032, 6, 1); month = month.addMonths(1))
            periods.push_back({month, month.addMonths(1).addDays(-1)});
        int told = 0;
        for (const Period &period : periods) {
            const auto list = listOf(shop, period);
            QCOMPARE(list.suppliers.size(), std::size_t(Book::suppliers));
            qint64 sum = 0;
            for (const auto &purchases : list.suppliers) {
                const auto expected = book.deductible(static_cast<int>(*purchases.supplier), period);
                QCOMPARE(purchases.deduction.has_value(), expected.has_value());
                if (!expected)
                    continue;
                ++told;
                QVERIFY(purchases.deduction->tax);
                QCOMPARE(qint64(*purchases.deduction->tax), *expected);
                sum += *expected;
            }
            QCOMPARE(list.deduction ? qint64(*list.deduction->tax) : 0, sum);
        }
        QVERIFY(told > 200);
    }

    // A shop of which nobody is known to be without a registration has the list of before.
    void theColumnComesWithTheFirstOne()
    {
        FreshShop &shop = *m_shop;
        writeSupplier(shop, 1, u"- - -"_s, 2);
        writeSupplier(shop, 2, u"1 - -"_s, 2);
        for (int id = 1; id <= 3; ++id)
            writeSlip(shop, id, u"I 2026-10-01 内 11000"_s, id);
        const base::Report before = reports::purchaseReport(listOf(shop, october), october);
        QCOMPARE(before.columns.size(), 10u);
        QCOMPARE(before.totals.size(), 10);
        QCOMPARE(reports::shownPurchases(listOf(shop, october)).columns.size(), 6u);

        writeSupplier(shop, 3, u"2 - -"_s, 2);
        writeSupplier(shop, 4, u"1 - 2026-10-31"_s, 2);
        writeSlip(shop, 4, u"I 2026-10-31 内 2200"_s, 4);
        const auto list = listOf(shop, october);
        const base::Report report = reports::purchaseReport(list, october);
        QStringList printed;
        const auto sheets = printing::listSheets(report, {}, printing::paperFor(report));
        for (const printing::TextItem &text : sheets.front().texts)
            printed << text.text;
        QCOMPARE(printed.filter(u"控除できる税額"_s).size(), 1);
        QCOMPARE(printed.mid(printed.indexOf(u"S3"_s) + 10, 2), (QStringList{u"70%"_s, u"700"_s}));
        QCOMPARE(printed.filter(u"%"_s).size(), 1);
        QCOMPARE(printed.mid(printed.indexOf(u"合計"_s) + 9, 1), QStringList{u"700"_s});

        // A usual name stays in one line.
        double others = 0;
        for (const base::Column &column : report.columns)
            others += column.stretches ? 0 : column.millimetres;
        QVERIFY(273 - others >= 28);

        const QString file = shop.path(u"list.csv"_s);
        QVERIFY(tables::writeReport(file, report, base::unwatched));
        QFile written(file);
        QVERIFY(written.open(QFile::ReadOnly));
        const QStringList lines = QString::fromUtf8(written.readAll()).split(u"\r\n"_s);
        QVERIFY(lines.at(0).endsWith(u"経過措置,控除できる税額"_s));
        QVERIFY2(lines.filter(u"S3,"_s).front().endsWith(u"70%,700"_s), qPrintable(lines.join(u'\n')));
        QVERIFY(lines.filter(u"S1,"_s).front().endsWith(u",,"_s));
        QVERIFY(lines.filter(u"合計"_s).front().endsWith(u",,700"_s));
    }

private:
    std::unique_ptr<FreshShop> m_shop;
};

QTEST_GUILESS_MAIN(TestPurchaseDeduction)
#include "tst_purchase_deduction.moc"
