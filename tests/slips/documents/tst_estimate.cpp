#include "slips/slip_desk.h"

#include "plain_sheets.h"
#include "printing/text_fit.h"
#include "slips/documents/DialogMitsumori.h"
#include "slips/documents/estimate.h"
#include "slips/documents/estimate_print.h"
#include "slips/entry/frmMitsumori.h"
#include "support/scripted_test.h"
#include "ui/date_box.h"
#include "ui/file_dialogs.h"
#include "ui/prompts.h"
#include "workspace/settings.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QTimer>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace slips;
using printing::Sheet;

namespace
{

EstimateData estimateOf(int lines)
{
    EstimateData data;
    data.sender.name1 = u"有限会社山田茶舗"_s;
    data.slip.number = u"M24-125"_s;
    data.slip.date = QDate(2026, 4, 1);
    data.slip.name1 = u"株式会社東京百貨店"_s;
    data.goods = 10'000;
    data.tax = 1'000;
    data.taxed = EstimateTax::Added;
    for (int i = 0; i < lines; ++i)
        data.slip.lines.push_back({u"煎茶"_s, u"100g"_s, 2.5, u"袋"_s, 1234.5, 3086});
    return data;
}

QStringList textsOf(const Sheet &sheet)
{
    QStringList texts;
    for (const printing::TextItem &item : sheet.texts)
        texts << item.text;
    return texts;
}

// The rectangle the text takes in fixed-width type, millimetres.
QRectF areaOf(const printing::TextItem &item)
{
    const double width = printing::textWidth(item.text, item.points);
    const double share = item.align == printing::Align::Left    ? 0
                         : item.align == printing::Align::Right ? 1
                                                                : 0.5;
    return {item.x / printing::twipsPerMillimetre - width * share, item.y / printing::twipsPerMillimetre,
            width, printing::millimetresFromPoints(item.points)};
}

// What lies off the printable part of the paper or on top of another text.
QStringList misplaced(const Sheet &sheet)
{
    QStringList found;
    for (std::size_t i = 0; i < sheet.texts.size(); ++i) {
        const QRectF area = areaOf(sheet.texts[i]).adjusted(0.02, 0.02, -0.02, -0.02);
        if (!QRectF(10, 10, 190, 277).contains(area))
            found << u"off the paper: "_s + sheet.texts[i].text;
        for (std::size_t other = i + 1; other < sheet.texts.size(); ++other) {
            if (area.intersects(areaOf(sheet.texts[other])))
                found << sheet.texts[i].text + u" on "_s + sheet.texts[other].text;
        }
    }
    return found;
}

} // namespace

class TestEstimate : public ScriptedTest
{
    Q_OBJECT

private slots:
    void pages_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<QList<int>>("onPages");
        QTest::newRow("none") << 0 << QList<int>{0};
        QTest::newRow("full") << 17 << QList<int>{17};
        QTest::newRow("one more") << 18 << QList<int>{17, 1};
        QTest::newRow("two full") << 44 << QList<int>{17, 27};
        QTest::newRow("three") << 45 << QList<int>{17, 27, 1};
    }
    void pages()
    {
        QFETCH(int, lines);
        QFETCH(QList<int>, onPages);
        const std::vector<Sheet> sheets = plainSheets(estimateOf(lines));
        QCOMPARE(sheets.size(), static_cast<std::size_t>(onPages.size()));
        for (int page = 0; page < onPages.size(); ++page) {
            const QStringList texts = textsOf(sheets[static_cast<std::size_t>(page)]);
            const bool last = page + 1 == onPages.size();
            QCOMPARE(texts.count(u"煎茶"_s), onPages.at(page));
            QCOMPARE(texts.contains(u"次葉へ繰越"_s), !last);
            QCOMPARE(texts.contains(u"小計"_s), last);
            QCOMPARE(texts.contains(u"合計金額"_s), page == 0);
            QCOMPARE(texts.contains(u"%1 / %2"_s.arg(page + 1).arg(onPages.size())), onPages.size() > 1);
            QVERIFY(texts.contains(u"見積書No.　M24-125"_s));
        }
    }

    void wording()
    {
        EstimateData data = estimateOf(1);
        QStringList texts = textsOf(plainSheets(data).front());
        for (const QString &label : {u"有効期限"_s, u"納入期日"_s, u"取引方法"_s, u"受渡場所"_s})
            QVERIFY(!texts.contains(label));
        data.terms = {QDate(2026, 5, 1), QDate(2026, 4, 15), u"月末締め翌月末払い"_s, u"貴社倉庫"_s,
                      u"一\n二\n三"_s};
        texts = textsOf(plainSheets(data).front());
        for (const QString &wanted : {u"御見積書"_s,
                                      u"2026年4月1日"_s,
                                      u"株式会社東京百貨店　様"_s,
                                      u"有限会社山田茶舗"_s,
                                      u"（消費税込）"_s,
                                      u"¥11,000"_s,
                                      u"有効期限"_s,
                                      u"2026年5月1日"_s,
                                      u"納入期日"_s,
                                      u"2026年4月15日"_s,
                                      u"取引方法"_s,
                                      u"月末締め翌月末払い"_s,
                                      u"受渡場所"_s,
                                      u"貴社倉庫"_s,
                                      u"2.50"_s,
                                      u"袋"_s,
                                      u"1,234.50"_s,
                                      u"3,086"_s,
                                      u"単位"_s,
                                      u"¥10,000"_s,
                                      u"¥1,000"_s,
                                      u"一"_s,
                                      u"三"_s})
            QVERIFY2(texts.contains(wanted), qPrintable(wanted + u" is not in "_s + texts.join(u'|')));
    }

    void honorifics_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("firm");
        QTest::addColumn<QString>("expected");
        QTest::newRow("person") << u"山田　太郎"_s << u"山田　太郎"_s << u"山田　太郎　様"_s;
        QTest::newRow("firm") << u"㈱宮﨑水産"_s << u"㈱宮﨑水産"_s << u"㈱宮﨑水産　様"_s;
        QTest::newRow("department") << u"仕入部"_s << u"有限会社髙島"_s << u"仕入部　様"_s;
        QTest::newRow("person of a firm") << u"田中 様"_s << u"有限会社髙島"_s << u"田中 様"_s;
        QTest::newRow("deleted") << u"(削除済み) ID 5"_s << u"(削除済み) ID 5"_s << u"(削除済み) ID 5"_s;
        QTest::newRow("no name") << u""_s << u""_s << u""_s;
    }
    void honorifics()
    {
        QFETCH(QString, name);
        QFETCH(QString, firm);
        QFETCH(QString, expected);
        book::Slip slip;
        slip.name1 = firm;
        slip.name2 = name == firm ? QString() : name;
        const auto addressed = [&] {
            printing::FormRecord items;
            addAddressee(items, slip);
            return std::get<QString>(items[name == firm ? u"宛先.名称1"_s : u"宛先.名称2"_s]);
        };
        QCOMPARE(addressed(), expected);
        slip.honorific = u"先生"_s; // chosen for the customer
        QCOMPARE(addressed(),
                 expected.contains(u'　') && !expected.startsWith(u'田') ? name + u"　先生"_s : expected);
    }

    void nothingLeavesThePaperOrStandsOnAnotherText_data()
    {
        QTest::addColumn<int>("length"); // of every text, full-width characters
        QTest::addColumn<double>("number");
        QTest::newRow("usual") << 8 << 1080.0;
        QTest::newRow("44 bytes") << 22 << 999'999.25;
        QTest::newRow("longest") << 60 << -999'999'999'999.0;
        QTest::newRow("longer than any box") << 200 << 1080.0;
    }
    void nothingLeavesThePaperOrStandsOnAnotherText()
    {
        QFETCH(int, length);
        QFETCH(double, number);
        const QString text(length, u'茶');
        const QString name = length < 200 ? text.left(22) : text; // what no editor takes may be imported
        EstimateData data = estimateOf(0);
        data.slip.name1 = data.slip.name2 = data.slip.address1 = data.slip.address2 = name;
        data.sender.name1 = data.sender.name2 = data.sender.address1 = data.sender.address2 = name;
        data.slip.zip = data.sender.zip = u"420-0001"_s;
        data.slip.employeeName = name;
        data.goods = data.tax = number;
        data.terms = {QDate(2026, 5, 1), QDate(2026, 4, 15), text, text, (text + u'\n').repeated(3)};
        for (int i = 0; i < 30; ++i)
            data.slip.lines.push_back({.product = text,
                                       .specification = text,
                                       .quantity = number,
                                       .unit = text.left(5),
                                       .price = number,
                                       .amount = number,
                                       .taxClass = book::GoodsTax::Food});
        data.rates.assign(mostInvoiceRates, {u"軽減8%税込"_s, number, number});
        data.reducedLegend = u"※は軽減税率（8%・1%）対象"_s;
        for (const Sheet &sheet : plainSheets(data))
            QCOMPARE(misplaced(sheet), QStringList());
    }

    // 1,999 yen of goods; at 5 % 99 yen of tax are added, at 10 % 199.
    void money_data()
    {
        QTest::addColumn<int>("taxClass");
        QTest::addColumn<bool>("closed"); // with the program, so that its tax line is stored where it is due
        QTest::addColumn<QString>("inclusive");
        QTest::addColumn<EstimateTax>("taxed");
        QTest::addColumn<QString>("figures"); // goods, tax, total
        QTest::newRow("open, added") << 0 << false << u"no"_s << EstimateTax::Added << u"1999 199 2198"_s;
        QTest::newRow("open, ticked")
            << 0 << false << u"yes"_s << EstimateTax::Included << u"1999 181 1999"_s;
        QTest::newRow("open, on bill") << 1 << false << u"no"_s << EstimateTax::Separate << u"1999 0 1999"_s;
        QTest::newRow("open, included")
            << 2 << false << u"yes"_s << EstimateTax::Included << u"1999 181 1999"_s;
        QTest::newRow("open, unticked") << 2 << false << u"no"_s << EstimateTax::Added << u"1999 199 2198"_s;
        QTest::newRow("closed, added") << 0 << true << u""_s << EstimateTax::Added << u"1999 99 2098"_s;
        QTest::newRow("closed, on bill") << 1 << true << u""_s << EstimateTax::Separate << u"1999 0 1999"_s;
        QTest::newRow("closed, included") << 2 << true << u""_s << EstimateTax::Included << u"1999 95 1999"_s;
    }
    void money()
    {
        QFETCH(int, taxClass);
        QFETCH(bool, closed);
        QFETCH(QString, inclusive);
        SlipDesk<frmMitsumori> desk;
        desk.open(taxClass);
        desk.goods(u"1"_s, u"1999"_s);
        EstimateReading reading;
        if (closed)
            desk.driver().press("cmdNext");
        else
            reading.closing = book::TaxRates::keptByHand(10);
        if (!inclusive.isEmpty())
            reading.inclusive = inclusive == "yes"_L1;
        const auto data = readEstimate(desk.shop.connection, 1, reading);
        QVERIFY(data);
        QTEST(data->taxed, "taxed");
        QTEST(u"%1 %2 %3"_s.arg(data->goods).arg(data->tax).arg(data->total()), "figures");
        QCOMPARE(data->slip.lines.size(), std::size_t{1});
    }

    void severalRates_data()
    {
        QTest::addColumn<QString>("registered"); // 登録番号
        QTest::addColumn<int>("taxClass");
        QTest::addColumn<bool>("isFood"); // one of the two lines
        QTest::addColumn<QStringList>("there");
        QTest::addColumn<QStringList>("missing"); // whatever holds one of them
        const QString number = u"T7000012050002"_s;
        const QStringList invoice{u"登録番号"_s, number, u"適格"_s};
        const QStringList marks{u"※"_s, u"※は軽減税率（8%）対象"_s};
        QTest::newRow("food and postage")
            << number << 0 << true
            << marks + QStringList{u"軽減8%対象"_s, u"¥5,000"_s, u"税 ¥400"_s, u"10%対象"_s,
                                   u"¥800"_s,       u"税 ¥80"_s, u"¥480"_s,    u"¥6,280"_s}
            << invoice;
        QTest::newRow("prices with the tax") << number << 2 << true
                                             << marks + QStringList{u"軽減8%税込対象"_s, u"税 ¥370"_s,
                                                                    u"10%税込対象"_s, u"税 ¥72"_s, u"¥442"_s}
                                             << invoice;
        QTest::newRow("tax with the bill")
            << number << 1 << true << marks << invoice + QStringList{u"%対象"_s};
        QTest::newRow("one rate") << number << 0 << false << QStringList{u"¥580"_s}
                                  << invoice + QStringList{u"※"_s, u"対象"_s, u"10%"_s};
        QTest::newRow("not registered")
            << QString() << 0 << true << marks << invoice + QStringList{u"%対象"_s, u"税 ¥"_s};
    }
    void severalRates()
    {
        QFETCH(QString, registered);
        QFETCH(int, taxClass);
        QFETCH(bool, isFood);
        QFETCH(QStringList, there);
        QFETCH(QStringList, missing);
        SlipDesk<frmMitsumori> desk;
        desk.shop.run(u"INSERT INTO 自社情報 (会社ID, 会社名1, 登録番号) VALUES (1, '山田茶舗', ?)"_s,
                      {registered});
        desk.open(taxClass);
        desk.goods(u"1"_s, u"5000"_s);
        desk.goods(u"1"_s, u"800"_s);
        if (isFood)
            desk.shop.run(u"UPDATE 入出庫サブ SET 税区分 = 1, 税率 = 8 WHERE 金額 = 5000"_s);
        const auto data =
            readEstimate(desk.shop.connection, 1, {taxClass == 2, book::TaxRates::keptByHand(10)});
        QVERIFY(data);
        const QStringList texts = textsOf(plainSheets(*data).front());
        for (const QString &text : there)
            QVERIFY2(texts.contains(text), qPrintable(text + u" is not in "_s + texts.join(u'|')));
        for (const QString &text : missing) {
            const QStringList found = texts.filter(text);
            QVERIFY2(found.isEmpty() || found == QStringList{u"※は軽減税率（8%）対象"_s},
                     qPrintable(found.join(u'|')));
        }
    }

    void slipLeftWithoutItsTaxPromisesNothing()
    {
        SlipDesk<frmMitsumori> desk;
        desk.open(0);
        desk.goods(u"1"_s, u"1999"_s);
        const auto data = readEstimate(desk.shop.connection, 1, {});
        QVERIFY(data);
        QCOMPARE(data->taxed, EstimateTax::Untold);
        QVERIFY(textsOf(plainSheets(*data).front()).filter(u"消費税"_s).isEmpty());
        QVERIFY(!readEstimate(desk.shop.connection, 2, {}));
        desk.shop.run(u"DELETE FROM 納品先"_s);
        QCOMPARE(readEstimate(desk.shop.connection, 1, {})->slip.name1, u"(削除済み) ID 1"_s);
    }

    void dialogPrintsWhatItShowsAndRemembersIt()
    {
        SlipDesk<frmMitsumori> desk;
        desk.open(0);
        desk.goods(u"1"_s, u"1999"_s);
        desk.driver().box("Text4").setText(u"送料込み"_s);
        const QString file = desk.shop.path(u"estimate.pdf"_s);
        bool visited = false;
        QTimer::singleShot(0, &desk.screen(), [&] {
            auto *dialog = qobject_cast<DialogMitsumori *>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            ScreenDriver driver(dialog);
            QCOMPARE(driver.box("txtKingaku").text(), u"2,098"_s);
            QCOMPARE(driver.box("txtDenNo").text(), u"M1"_s);
            QCOMPARE(driver.box("txtNouhinsaki1").text(), u"aite0"_s);
            QCOMPARE(driver.the<ui::DateBox>("DTPicker1").date(), QDate(2026, 5, 1));
            driver.the<ui::DateBox>("DTPicker1").setDate(QDate(2026, 4, 11));
            driver.box("Text1").setText(u"現金"_s);
            driver.the<QCheckBox>("Check2").setChecked(false);
            QVERIFY(!driver.the("DTPicker2").isEnabled());
            ui::file_dialogs::expectFont(QFont(u"@Noto Serif CJK JP"_s));
            driver.press("Command7");
            QCOMPARE(driver.box("txtFontName").text(), u"Noto Serif CJK JP"_s);
            QTimer::singleShot(0, dialog, [&] {
                QWidget *preview = QApplication::activeModalWidget();
                ui::file_dialogs::expectFile(file);
                ScreenDriver(preview).press("cmdPdf");
                preview->close();
            });
            QCOMPARE(driver.the<QPlainTextEdit>("txtMemo").toPlainText(), u"送料込み"_s);
            driver.press("Command2");
            visited = true;
            // What is not printed is not kept.
            driver.box("Text1").setText(u"掛売り"_s);
            ui::file_dialogs::expectFont(QFont(u"Noto Sans CJK JP"_s));
            driver.press("Command7");
            dialog->close();
        });
        desk.driver().press("Command3");
        QVERIFY(visited);
        QVERIFY(QFileInfo(file).size() > 1000);
        const workspace::Settings &settings = desk.shop.settings;
        QCOMPARE(settings.text(workspace::keys::estimatePayment), u"現金"_s);
        QCOMPARE(settings.integer(workspace::keys::estimateValidDays), 10);
        QVERIFY(!settings.checked(workspace::keys::estimateDelivery));
        QCOMPARE(settings.text(workspace::keys::printerFont), u"Noto Serif CJK JP"_s);
    }

    void remarksStayWithTheirEstimate()
    {
        SlipDesk<frmMitsumori> desk;
        desk.open(0);
        desk.goods(u"1"_s, u"1999"_s);
        desk.driver().box("Text4").setText(u"特別値引き"_s);
        desk.driver().box("Text5").setText(u"他言無用"_s);
        desk.driver().press("cmdNext");
        QCOMPARE(desk.driver().box("Text4").text(), QString());
        QCOMPARE(desk.driver().box("Text5").text(), QString());
    }

    void slipDeletedMeanwhileIsTold()
    {
        SlipDesk<frmMitsumori> desk;
        desk.open(0);
        desk.goods(u"1"_s, u"1999"_s);
        desk.shop.run(u"DELETE FROM 入出庫マスター"_s);
        const auto data = readEstimate(desk.shop.connection, 1, {});
        QVERIFY(!data);
        ui::prompts::expectInform(data.error().text);
        desk.driver().press("Command3");
        QVERIFY(!QApplication::activeModalWidget());
    }
};

QTEST_MAIN(TestEstimate)
#include "tst_estimate.moc"
