#include "placed_texts.h"
#include "plain_sheets.h"
#include "printing/pdf.h"
#include "slips/documents/delivery_note.h"
#include "slips/documents/delivery_note_print.h"
#include "support/fresh_shop.h"
#include "workspace/settings.h"

#include <QApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace slips;
using printing::Sheet;
using printing::TextItem;

namespace
{

constexpr int noteRows = 20;

book::SlipLine goods(const QString &product, double quantity, double price, double amount)
{
    return {product, u"100g"_s, quantity, u"袋"_s, price, amount};
}

DeliveryNoteData note(int lines)
{
    DeliveryNoteData data;
    data.sender.name1 = u"有限会社山田茶舗"_s;
    data.sender.name2 = u"通信販売部"_s;
    data.sender.zip = u"420-0001"_s;
    data.sender.address1 = u"静岡市葵区井宮町１２３"_s;
    data.sender.tel1 = u"054-123-4567"_s;
    data.slip.number = u"O24-125"_s;
    data.slip.date = QDate(2026, 4, 1);
    data.slip.employeeName = u"鈴木"_s;
    data.slip.name1 = u"株式会社東京百貨店"_s;
    data.slip.zip = u"150-0001"_s;
    data.slip.address1 = u"東京都渋谷区神宮前１－２－３"_s;
    data.slip.tel = u"03-1234-5678"_s;
    data.slip.fax = u"03-1234-5679"_s;
    for (int i = 0; i < lines; ++i)
        data.slip.lines.push_back(goods(u"煎茶"_s, 2, 1080, 2160));
    return data;
}

void addShop(FreshShop &shop, const QString &taxClass)
{
    shop.run(
        u"INSERT INTO 自社情報 (会社ID, 会社名1, 会社名2) VALUES (1, '有限会社山田茶舗', '通信販売部')"_s);
    shop.run(u"INSERT INTO 社員 (社員ID, 社員名) VALUES (3, '鈴木')"_s);
    shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 郵便番号, 住所1, TEL1, FAX, 消費税区分) VALUES "
             "(7, '山田　太郎', '150-0001', '東京都渋谷区', '03-1', '03-2', ?)"_s,
             {taxClass});
    shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率) VALUES "
             "(1, '2026-04-01', 'O1', 7, 3, 5)"_s);
    shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) VALUES "
             "(1, '煎茶', '100g', 1, '袋', 1999, 1999)"_s);
}

} // namespace

class TestDeliveryNote : public QObject
{
    Q_OBJECT

private slots:
    void sheets_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<int>("sheets");
        QTest::newRow("none") << 0 << 1;
        QTest::newRow("one") << 1 << 1;
        QTest::newRow("exactly full") << noteRows << 1;
        QTest::newRow("one more") << noteRows + 1 << 2;
        QTest::newRow("two full") << 2 * noteRows << 2;
        QTest::newRow("three pages") << 2 * noteRows + 1 << 3;
    }

    void sheets()
    {
        QFETCH(int, lines);
        QFETCH(int, sheets);
        const std::vector<Sheet> found = plainSheets(note(lines));
        QCOMPARE(found.size(), static_cast<std::size_t>(sheets));
        qsizetype printed = 0;
        for (int page = 1; page <= sheets; ++page) {
            const QStringList texts = textsOf(found[static_cast<std::size_t>(page - 1)]);
            const bool last = page == sheets;
            QCOMPARE(texts.contains(u"次葉へ繰越"_s), !last);
            QCOMPARE(texts.contains(u"合計金額"_s), last);
            QCOMPARE(texts.contains(u"%1 / %2"_s.arg(page).arg(sheets)), sheets > 1);
            printed += texts.count(u"煎茶"_s);
        }
        QCOMPARE(printed, lines);
    }

    void wording()
    {
        DeliveryNoteData data = note(1);
        data.slip.lines.push_back(goods(u"玉露"_s, 2.5, 1234.5, 3086));
        data.total = 1234567;
        data.memo = u"新茶は五月"_s;
        const QStringList texts = textsOf(plainSheets(data).front());
        for (const QString &wanted : {u"納品書"_s,
                                      u"１５０－０００１"_s, // without 〒: it shows through a window
                                      u"株式会社東京百貨店　様"_s,
                                      u"TEL 03-1234-5678　FAX 03-1234-5679"_s,
                                      u"伝票番号　O24-125"_s,
                                      u"2026年4月1日"_s,
                                      u"担当者　鈴木"_s,
                                      u"毎度ありがとうございます。下記の通り納品いたします。"_s,
                                      u"商品名"_s,
                                      u"規格"_s,
                                      u"数量"_s,
                                      u"単価"_s,
                                      u"金額"_s,
                                      u"備考"_s,
                                      u"2"_s,
                                      u"2.50"_s,
                                      u"1,080"_s,
                                      u"1,234.50"_s,
                                      u"3,086"_s,
                                      u"合計金額"_s,
                                      u"¥1,234,567"_s,
                                      u"新茶は五月"_s})
            QVERIFY2(texts.contains(wanted), qPrintable(wanted + u" is not in "_s + texts.join(u'|')));
        QVERIFY(!texts.contains(u"内税額"_s));

        data.slip.name2 = u"食品課"_s;
        data.slip.employeeName.clear();
        const QStringList others = textsOf(plainSheets(data).front());
        QVERIFY(others.contains(u"株式会社東京百貨店"_s) && others.contains(u"食品課　様"_s));
        QVERIFY(others.filter(u"担当者"_s).isEmpty());
    }

    void nothingLeavesThePaperOrStandsOnAnotherText_data()
    {
        QTest::addColumn<int>("length"); // of every text, full-width characters
        QTest::addColumn<double>("number");
        QTest::newRow("usual") << 8 << 1080.0;
        QTest::newRow("44 bytes") << 22 << 999'999.25;
        QTest::newRow("45 bytes and more") << 23 << -1234.5;
        QTest::newRow("longest") << 200 << 999'999'999'999.0;
        QTest::newRow("beyond reason") << 5000 << -1e15;
    }

    void nothingLeavesThePaperOrStandsOnAnotherText()
    {
        QFETCH(int, length);
        QFETCH(double, number);
        const QString text(length, u'茶');
        DeliveryNoteData data = note(2);
        // A name or address line holds 44 bytes.
        const QString line = text.left(22);
        data.slip.name1 = data.slip.name2 = data.slip.address1 = data.slip.address2 = line;
        data.sender.name1 = data.sender.name2 = data.sender.address1 = data.sender.address2 = line;
        data.memo = text.left(1000);
        data.total = number;
        data.includedTax = number;
        data.slip.lines.push_back({text, text, number, text.left(20), number, number});
        data.slip.lines.push_back(goods(u"次の品"_s, 1, 1, 1));
        QString printed;
        for (const Sheet &sheet : plainSheets(data)) {
            const QStringList wrong = misplaced(sheet, {10, 10, 190, 277});
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u'\n').left(2000)));
            printed += textsOf(sheet).join(QString());
        }
        QVERIFY(printed.count(u'茶') >= 2 * length + data.memo.size()); // nothing is cut off
    }

    void offsetsMoveTheNoteAndTheAddressee()
    {
        DeliveryNoteData data = note(1);
        const Sheet plain = plainSheets(data).front();
        data.offsets = {.down = 2, .right = -3, .addresseeRight = 4};
        const Sheet moved = plainSheets(data).front();
        const auto shift = [&](const QString &text) {
            const TextItem *from = itemWith(plain, text);
            const TextItem *to = itemWith(moved, text);
            return QPointF(to->x - from->x, to->y - from->y) / printing::twipsPerMillimetre;
        };
        QCOMPARE(shift(u"納品書"_s), QPointF(-5.25, 2.82));
        QCOMPARE(shift(u"１５０－０００１"_s), QPointF(1.75, 2.82));
        QCOMPARE(moved.boxes.front().x - plain.boxes.front().x, printing::twipsFromMillimetres(-5.25));
    }

    void theSenderIsNamedAsChosen()
    {
        DeliveryNoteData data = note(1);
        data.companyName = CompanyName::Omitted;
        Sheet sheet = plainSheets(data).front();
        QVERIFY(!itemWith(sheet, u"有限会社山田茶舗"_s) && !itemWith(sheet, u"通信販売部"_s));
        QVERIFY(itemWith(sheet, u"〒420-0001"_s));
        QVERIFY(sheet.richTexts.empty());

        data.companyName = CompanyName::Extended;
        sheet = plainSheets(data).front();
        QVERIFY(!itemWith(sheet, u"有限会社山田茶舗"_s));
        QCOMPARE(sheet.richTexts.size(), std::size_t(1));
    }

    void tax_data()
    {
        QTest::addColumn<QString>("taxClass");
        QTest::addColumn<bool>("inclusive");
        QTest::addColumn<bool>("closed");
        QTest::addColumn<QString>(
            "printed"); // tax line, included tax, total, total before tax, tax or its rate
        QTest::newRow("on delivery") << u"0"_s << false << false << u"消費税 99|-|¥2,098|¥1,999|（5%）¥99"_s;
        QTest::newRow("on delivery, ticked") << u"0"_s << true << false << u"-|¥95|¥1,999|-|5%"_s;
        QTest::newRow("on the bill") << u"1"_s << false << false << u"-|-|¥1,999|-|ご請求時に加算"_s;
        QTest::newRow("included") << u"2"_s << true << false << u"-|¥95|¥1,999|-|5%"_s;
        QTest::newRow("included, unticked")
            << u"2"_s << false << false << u"消費税 99|-|¥2,098|¥1,999|（5%）¥99"_s;
        QTest::newRow("class empty") << QString() << false << false
                                     << u"消費税 99|-|¥2,098|¥1,999|（5%）¥99"_s;
        QTest::newRow("closed without tax") << u"0"_s << false << true << u"-|-|¥1,999|-|-"_s;
    }

    void tax()
    {
        QFETCH(QString, taxClass);
        QFETCH(bool, inclusive);
        QFETCH(bool, closed);
        FreshShop shop;
        addShop(shop, taxClass);
        const auto data = readDeliveryNote(
            shop.connection, 1,
            {inclusive, closed ? std::nullopt : std::optional(book::TaxRates::keptByHand(5)), {}, {}, {}});
        QVERIFY(data);
        const Sheet sheet = plainSheets(*data).front();
        const QStringList texts = textsOf(sheet);
        const auto after = [&](const QString &label) {
            return texts.contains(label) ? texts.at(texts.lastIndexOf(label) + 1) : u"-"_s;
        };
        const bool hasLine = texts.count(u"消費税"_s) == 2;
        const QString taxLine = hasLine ? u"消費税 "_s + texts.at(texts.indexOf(u"消費税"_s) + 1) : u"-"_s;
        const QString told = after(texts.contains(u"内税率"_s) ? u"内税率"_s : u"消費税"_s);
        QTEST(QStringList({taxLine, after(u"内税額"_s), after(u"合計金額"_s), after(u"小計"_s), told})
                  .join(u'|'),
              "printed");
    }

    void aClosedSlipKeepsItsOneTaxLine()
    {
        FreshShop shop;
        addShop(shop, u"0"_s);
        shop.run(u"INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (1, '消費税', 99)"_s);
        const auto data =
            readDeliveryNote(shop.connection, 1, {false, book::TaxRates::keptByHand(8), {}, {}, {}});
        QVERIFY(data);
        QCOMPARE(data->slip.lines.size(), std::size_t(2));
        QCOMPARE(data->total, 2098.0);
        QVERIFY(!readDeliveryNote(shop.connection, 99, {}));
    }

    void thePanelAndTheSettingsDecide()
    {
        FreshShop shop;
        addShop(shop, u"0"_s);
        shop.settings.write(workspace::keys::offsetB, 1);
        const auto plain = deliveryNoteDocument(shop.workspace, {.slipId = 1});
        QVERIFY(plain);
        QVERIFY(itemWith(plain->sheets.front(), u"有限会社山田茶舗"_s));
        QCOMPARE(plain->title, u"納品書 O1"_s);
        QVERIFY(itemWith(plain->sheets.front(), u"99"_s)); // 5 % tax on top

        shop.workspace.panel.taxRate = 10;
        shop.workspace.panel.deliveryPaper = u"HISAGO 1149"_s;
        const auto onForm = deliveryNoteDocument(shop.workspace, {.slipId = 1});
        QVERIFY(onForm && itemWith(onForm->sheets.front(), u"199"_s));
        shop.workspace.panel.deliveryPaper = u"A4 無地"_s;

        // Without a registered block the plain name stays.
        shop.workspace.panel.extendedCompanyName = true;
        const auto unregistered = deliveryNoteDocument(shop.workspace, {.slipId = 1});
        QVERIFY(unregistered && itemWith(unregistered->sheets.front(), u"有限会社山田茶舗"_s));

        const QString block = shop.path(u"社名.rtf"_s);
        shop.settings.write(workspace::keys::richTextFileName, block);
        const auto without = deliveryNoteDocument(shop.workspace, {.slipId = 1}); // the file is missing
        QVERIFY(without && itemWith(without->sheets.front(), u"有限会社山田茶舗"_s));
        QVERIFY2(without->remark.contains(u"「社名拡張」の印を外して"_s), qPrintable(without->remark));
        QFile file(block);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("{\\rtf1\\ansi Yamada}") > 0);
        file.close();
        const auto extended = deliveryNoteDocument(shop.workspace, {.slipId = 1});
        QVERIFY(extended);
        QCOMPARE(extended->richTexts.at(u"社名"_s)->toPlainText(), u"Yamada"_s);
        QVERIFY(printing::writePdf(shop.workspace, *extended, shop.path(u"note.pdf"_s)));

        shop.workspace.panel.omitCompanyName = true;
        const auto omitted = deliveryNoteDocument(shop.workspace, {.slipId = 1});
        QVERIFY(omitted && omitted->richTexts.empty());
    }
};

QTEST_MAIN(TestDeliveryNote)
#include "tst_delivery_note.moc"
