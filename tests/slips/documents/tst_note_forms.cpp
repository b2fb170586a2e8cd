#include "placed_texts.h"
#include "printing/forms/form_files.h"
#include "printing/forms/form_sheets.h"
#include "slips/documents/delivery_note.h"
#include "slips/documents/delivery_note_print.h"
#include "support/fresh_shop.h"

#include <QApplication>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace slips;
using printing::Sheet;

namespace
{

const QString plain = u"delivery-note-a4.toml"_s;
const QString continuous = u"delivery-note-1149.toml"_s;
const QString withReceipt = u"delivery-note-bp0201.toml"_s;
const QString designated = u"delivery-note-designated.toml"_s;

DeliveryNoteData note(int lines)
{
    DeliveryNoteData data;
    data.sender.name1 = u"有限会社山田茶舗"_s;
    data.sender.name2 = u"通信販売部"_s;
    data.sender.zip = u"4200001"_s;
    data.sender.address1 = u"静岡市葵区井宮町１２３"_s;
    data.sender.tel1 = u"054-123-4567"_s;
    data.slip.number = u"O24-125"_s;
    data.slip.date = QDate(2026, 4, 1);
    data.slip.employeeName = u"鈴木"_s;
    data.slip.name1 = u"株式会社東京百貨店"_s;
    data.slip.code = u"T-0042"_s;
    data.slip.zip = u"1500001"_s;
    data.slip.address1 = u"東京都渋谷区神宮前１－２－３"_s;
    data.slip.tel = u"03-1234-5678"_s;
    for (int i = 1; i <= lines; ++i)
        data.slip.lines.push_back({u"品%1"_s.arg(i), u"100g"_s, 1.0, u"袋"_s, 10.0 * i, 10.0 * i});
    data.total = 5 * lines * (lines + 1);
    data.memo = u"注文番号 A-7788"_s;
    return data;
}

std::vector<Sheet> sheetsOf(const DeliveryNoteData &data, const QString &layout)
{
    return deliveryNote(data, printing::builtInForm(layout, deliveryNoteItems()));
}

/// The paper without sprocket strips, and two lines of the receipt printer's perforation.
QRectF printable(const Sheet &sheet)
{
    if (sheet.paperWidth > 210)
        return {12.7, 8.4, sheet.paperWidth - 2 * 12.7, sheet.paperHeight - 2 * 8.4};
    return {10, 8.4, 190, 279.6};
}

/// What a sheet has on each side of the perforation, from its top.
std::vector<QStringList> productsOf(const Sheet &sheet, const QString &layout)
{
    std::vector<QStringList> halves(layout == withReceipt ? 2 : 1);
    for (const printing::TextItem &item : sheet.texts) {
        const bool isBelow = halves.size() > 1 && placeOf(item).y() > 148.5;
        if (item.text.startsWith(u'品') || item.text == u"次葉へ繰越"_s)
            halves[isBelow ? 1 : 0] << item.text;
    }
    return halves;
}

void addLayouts()
{
    QTest::addColumn<QString>("layout");
    for (const QString &layout : {plain, continuous, withReceipt, designated})
        QTest::newRow(qPrintable(layout)) << layout;
}

} // namespace

class TestNoteForms : public QObject
{
    Q_OBJECT

private slots:
    // Measured by hand from the upper left corner of the paper: what stands where, and how far the offsets
    // move it when the note is to go 2 steps down, the receipt 3, both 3 to the left, the addressee 4
    // characters to the right, and the receipt's totals higher.
    void everythingStandsWhereTheFormWantsIt_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("later"); // the first of that text, or the next
        QTest::addColumn<QPointF>("at");
        QTest::addColumn<QPointF>("moved");
        const QPointF withNote(-5.25, 2.82);
        const QPointF withReceiptPart(-5.25, 4.23);
        const QPointF name(1.75, 2.82);
        const double middle = 3.351 / 2; // of 9.5-point type in a row
        const auto row = [](const char *what, const QString &layout, const char16_t *text, int later,
                            QPointF at, QPointF moved) {
            QTest::addRow("%s of %s", what, qPrintable(layout))
                << layout << QString::fromUtf16(text) << later << at << moved;
        };
        row("customer", plain, u"１５０－０００１", 0, {20, 20}, name);
        row("first row", plain, u"品1", 0, {16.2, 91.385 + 3.8075 - middle}, withNote);
        row("first amount", plain, u"10", 1, {179.8, 91.385 + 3.8075 - middle}, withNote);
        row("number", plain, u"伝票番号　O24-125", 0, {195, 23.5}, withNote);

        row("customer", continuous, u"〒150-0001", 0, {20, 12.7}, name);
        row("sender", continuous, u"有限会社山田茶舗", 0, {135, 12.9}, withNote);
        row("first row", continuous, u"品1", 0, {15, 46.6 + 4.2335 - middle}, withNote);
        row("last row", continuous, u"品5", 0, {15, 46.6 + 4.5 * 8.467 - middle}, withNote);
        row("amount in it", continuous, u"50", 1, {194, 46.6 + 4.5 * 8.467 - middle}, withNote);
        row("total", continuous, u"¥150", 0, {194, 92.9}, withNote);

        row("customer", withReceipt, u"〒150-0001", 0, {14, 18}, name);
        row("title", withReceipt, u"納品書", 0, {105, 9}, withNote);
        row("first row", withReceipt, u"品1", 0, {12, 60 + 4.5 - middle}, withNote);
        row("last row", withReceipt, u"品5", 0, {12, 60 + 36 + 4.5 - middle}, withNote);
        row("total", withReceipt, u"¥150", 0, {169, 116.5}, withNote);
        row("receipt's title", withReceipt, u"物品受領書", 0, {105, 157.5}, withReceiptPart);
        row("receipt's customer", withReceipt, u"株式会社東京百貨店　様", 1, {14, 170.5}, {1.75, 4.23});
        row("receipt's sender", withReceipt, u"有限会社山田茶舗", 1, {120, 167.5}, withReceiptPart);
        row("receipt's first row", withReceipt, u"品1", 1, {12, 208.5 + 4.5 - middle}, withReceiptPart);
        row("receipt's amount", withReceipt, u"50", 3, {169, 208.5 + 36 + 4.5 - middle}, withReceiptPart);
        row("receipt's total", withReceipt, u"¥150", 1, {169, 268}, {-5.25, 4.23 - 25.4 / 6});
        row("receipt's seal", withReceipt, u"受領印", 0, {110, 279.5}, withReceiptPart);

        row("customer", designated, u"〒150-0001", 0, {20, 10}, name);
        row("order", designated, u"A-7788", 0, {15, 44.4}, withNote);
        row("code", designated, u"T-0042", 0, {80, 44.4}, withNote);
        row("first row", designated, u"品1", 0, {15, 55.033 + 4.2335 - middle}, withNote);
        row("total", designated, u"¥150", 0, {206, 107.1}, withNote);
    }

    void everythingStandsWhereTheFormWantsIt()
    {
        QFETCH(QString, layout);
        QFETCH(QString, text);
        QFETCH(int, later);
        QFETCH(QPointF, at);
        QFETCH(QPointF, moved);
        DeliveryNoteData data = note(5);
        const auto placed = [&] {
            const Sheet sheet = sheetsOf(data, layout).front();
            const printing::TextItem *item = itemWith(sheet, text, later);
            if (!item)
                qWarning("%s", qPrintable(textsOf(sheet).join(u'|')));
            return item ? placeOf(*item) : QPointF();
        };
        const QPointF usual = placed();
        QVERIFY2(QLineF(usual, at).length() < 0.02,
                 qPrintable(u"%1 %2"_s.arg(usual.x(), 0, 'f', 3).arg(usual.y(), 0, 'f', 3)));
        data.offsets = {
            .down = 2, .right = -3, .addresseeRight = 4, .receiptDown = 3, .receiptTotalsHigher = true};
        const QPointF by = placed() - usual;
        QVERIFY2(QLineF(by, moved).length() < 0.01,
                 qPrintable(u"moved by %1 %2"_s.arg(by.x(), 0, 'f', 3).arg(by.y(), 0, 'f', 3)));
    }

    void noLineIsLostWhereASlipGoesOn_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<int>("lines");
        QTest::addColumn<QStringList>("carried"); // at the end of each sheet but the last
        QTest::newRow("1149, full") << continuous << 5 << QStringList();
        QTest::newRow("1149, one more") << continuous << 6 << QStringList{u"100"_s};
        QTest::newRow("1149, thirteen") << continuous << 13 << QStringList{u"100"_s, u"360"_s};
        QTest::newRow("BP0201, full") << withReceipt << 6 << QStringList();
        QTest::newRow("BP0201, thirteen") << withReceipt << 13 << QStringList{u"150"_s, u"550"_s};
        QTest::newRow("designated, five") << designated << 5 << QStringList();
        QTest::newRow("designated, thirteen") << designated << 13 << QStringList{u"150"_s, u"550"_s};
        QTest::newRow("A4, full") << plain << 20 << QStringList();
        QTest::newRow("A4, one more") << plain << 21 << QStringList{u"¥2,100"_s};
    }

    void noLineIsLostWhereASlipGoesOn()
    {
        QFETCH(QString, layout);
        QFETCH(int, lines);
        QFETCH(QStringList, carried);
        const std::vector<Sheet> sheets = sheetsOf(note(lines), layout);
        QCOMPARE(qsizetype(sheets.size()), carried.size() + 1);
        std::vector<QStringList> products(layout == withReceipt ? 2 : 1);
        for (std::size_t i = 0; i < sheets.size(); ++i) {
            const bool goesOn = i + 1 < sheets.size();
            const std::vector<QStringList> found = productsOf(sheets[i], layout);
            for (std::size_t half = 0; half < found.size(); ++half) {
                QCOMPARE(found[half].count(u"次葉へ繰越"_s), goesOn ? 1 : 0);
                products[half] << found[half];
                products[half].removeAll(u"次葉へ繰越"_s);
            }
            if (goesOn)
                QCOMPARE(textsOf(sheets[i]).count(carried[qsizetype(i)]), qsizetype(found.size()));
            QCOMPARE(textsOf(sheets[i]).filter(u"合計"_s).isEmpty(), goesOn);
        }
        QStringList all;
        for (int i = 1; i <= lines; ++i)
            all << u"品%1"_s.arg(i);
        for (const QStringList &half : products)
            QCOMPARE(half, all);
    }

    void nothingIsCutOffOrStandsOnAnotherText_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<int>("length");
        for (const QString &layout : {plain, continuous, withReceipt, designated}) {
            for (const int length : {8, 22, 60})
                QTest::addRow("%s %d", qPrintable(layout), length) << layout << length;
        }
    }

    void nothingIsCutOffOrStandsOnAnotherText()
    {
        QFETCH(QString, layout);
        QFETCH(int, length);
        const QString text(length, u'茶');
        DeliveryNoteData data = note(1);
        data.slip.name1 = data.slip.name2 = data.slip.address1 = data.slip.address2 = text;
        data.sender.name1 = data.sender.name2 = data.sender.address1 = data.sender.address2 = text;
        data.slip.number = data.slip.code = data.slip.employeeName = text.left(22);
        data.slip.fax = data.sender.fax = data.slip.tel;
        data.memo = u"注文番号 12345678901234567890123456789\n"_s + text;
        data.includedTax = data.total = -123'456'789'012.0;
        data.slip.lines.push_back({text, text, 123456.25, text, 1234567.25, -123'456'789'012.0});
        for (const bool inclusive : {true, false}) {
            if (!inclusive)
                data.slip.lines.push_back({u"消費税"_s, {}, {}, {}, {}, -99.0, {}, 10.0});
            QString printed;
            for (const Sheet &sheet : sheetsOf(data, layout)) {
                const QStringList wrong = misplaced(sheet, printable(sheet));
                QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u'\n').left(2000)));
                printed += textsOf(sheet).join(QString());
            }
            // Names, addresses, memo and the line with its unit.
            QVERIFY(printed.count(u'茶') >= 12 * length);
        }
    }

    void theSenderIsNamedAsChosen_data() { addLayouts(); }
    void theSenderIsNamedAsChosen()
    {
        QFETCH(QString, layout);
        const std::size_t places = layout == withReceipt ? 2 : 1;
        DeliveryNoteData data = note(1);
        for (const auto name : {CompanyName::Plain, CompanyName::Omitted, CompanyName::Extended}) {
            data.companyName = name;
            const Sheet sheet = sheetsOf(data, layout).front();
            const bool isPlain = name == CompanyName::Plain;
            QCOMPARE(textsOf(sheet).count(u"有限会社山田茶舗"_s), isPlain ? qsizetype(places) : 0);
            QCOMPARE(textsOf(sheet).count(u"通信販売部"_s), isPlain ? qsizetype(places) : 0);
            QCOMPARE(sheet.richTexts.size(), name == CompanyName::Extended ? places : 0);
            for (const printing::RichTextSlot &slot : sheet.richTexts) {
                const double mm = printing::twipsPerMillimetre;
                const QRectF area(slot.x / mm, slot.y / mm, slot.width / mm, slot.height / mm);
                QVERIFY(printable(sheet).contains(area));
                for (const printing::TextItem &item : sheet.texts)
                    QVERIFY2(!area.intersects(areaOf(item)), qPrintable(item.text));
            }
        }
    }

    void theTaxIsToldOnEveryForm_data() { addLayouts(); }
    void theTaxIsToldOnEveryForm()
    {
        QFETCH(QString, layout);
        const auto textsWith = [&](const DeliveryNoteData &data) {
            return textsOf(sheetsOf(data, layout).front()).join(u'|');
        };
        DeliveryNoteData added = note(1);
        added.slip.lines.push_back({u"消費税"_s, {}, {}, {}, {}, 98.0, {}, 10.0});
        const QString withLine = textsWith(added);
        QVERIFY2(withLine.contains(u"消費税|98|"_s) && withLine.contains(u"（10%）¥98"_s) &&
                     !withLine.contains(u"内税"_s),
                 qPrintable(withLine));

        DeliveryNoteData included = note(1);
        included.slip.taxClass = book::TaxClass::Included;
        included.includedTax = 98;
        const QString inside = textsWith(included);
        static const QRegularExpression amount(u"内税額[ |]¥98"_s);
        QVERIFY2(inside.contains(amount) && !inside.contains(u"消費税"_s), qPrintable(inside));

        DeliveryNoteData onBill = note(1);
        onBill.slip.taxClass = book::TaxClass::OnBill;
        QVERIFY(textsWith(onBill).contains(u"ご請求時に加算"_s));
    }

    // Number, rates and mark have room of their own; without values nothing is printed of them.
    void whatMakesAnInvoiceHasRoom_data() { addLayouts(); }

    void whatMakesAnInvoiceHasRoom()
    {
        QFETCH(QString, layout);
        const printing::Form form = printing::builtInForm(layout, deliveryNoteItems());
        printing::FormValues values;
        for (const auto &[name, kind] : deliveryNoteItems().items) {
            if (kind == printing::FormItemKind::Number)
                values.items[name] = 12'345'678.0;
            else if (kind == printing::FormItemKind::Text)
                values.items[name] = u"株式会社東京百貨店"_s;
        }
        values.items[u"自社.登録番号"_s] = u"T7000012050002"_s;
        values.items[u"軽減の注記"_s] = u"※は軽減税率（8%）対象"_s;
        // Of a document only one of the two is told.
        values.items.remove(u"内税額"_s);
        values.items.remove(u"内税率"_s);
        for (int rate = 1; rate <= 3; ++rate)
            values.items[u"税率%1"_s.arg(rate)] = u"10%"_s;
        values.rows.push_back({{u"明細.商品名"_s, u"ほうじ茶"_s}, {u"明細.軽減"_s, u"※"_s}});
        const Sheet sheet = printing::formSheets(form, values).front();
        const QStringList wrong = misplaced(sheet, printable(sheet));
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(u'\n')));
        const QStringList texts = textsOf(sheet);
        // Note and receipt of goods on one sheet are torn apart.
        const int papers = layout == withReceipt ? 2 : 1;
        QCOMPARE(texts.filter(u"T7000012050002"_s).size(), papers);
        QCOMPARE(texts.count(u"※は軽減税率（8%）対象"_s), papers);
        QCOMPARE(texts.filter(u"10%"_s).size(), 3);
        QCOMPARE(texts.count(u"※"_s), papers);
        QVERIFY(texts.filter(u"登録番号"_s).size() == papers &&
                textsOf(sheetsOf(note(1), layout).front()).filter(u"登録番号"_s).isEmpty());
    }

    void theOrderNumberIsTakenFromTheMemo_data()
    {
        QTest::addColumn<QString>("memo");
        QTest::addColumn<QString>("number");
        QTest::addColumn<QString>("rest");
        QTest::newRow("none") << u"午前中にお届け"_s << QString() << u"午前中にお届け"_s;
        QTest::newRow("alone") << u"注文番号 A-1234"_s << u"A-1234"_s << QString();
        QTest::newRow("in a hurry") << u"ご注文番号：８８１２　午前着"_s << u"８８１２"_s << u"午前着"_s;
        QTest::newRow("behind") << u"冷蔵\n発注番号4711"_s << u"4711"_s << u"冷蔵"_s;
        QTest::newRow("not yet known") << u"注文番号："_s << QString() << u"注文番号："_s;
        QTest::newRow("left out") << u"注文番号：、午前着"_s << QString() << u"注文番号：、午前着"_s;
        QTest::newRow("a sentence") << u"注文番号は後日連絡します"_s << QString()
                                    << u"注文番号は後日連絡します"_s;
        QTest::newRow("another") << u"注文番号変更のため再発行"_s << QString()
                                 << u"注文番号変更のため再発行"_s;
        QTest::newRow("in a sentence")
            << u"ご注文番号8812の分です"_s << u"8812"_s << u"ご注文番号8812の分です"_s;
        QTest::newRow("the word alone") << u"注文番号"_s << QString() << u"注文番号"_s;
    }

    void theOrderNumberIsTakenFromTheMemo()
    {
        QFETCH(QString, memo);
        QTEST(takeOrderNumber(memo), "number");
        QTEST(memo, "rest");
    }

    void panelAndScreenChooseTheForm_data()
    {
        QTest::addColumn<QString>("paper");
        QTest::addColumn<bool>("asDesignated");
        QTest::addColumn<QString>("layout");
        QTest::addColumn<QSizeF>("size"); // as the paper is fed
        QTest::newRow("1149") << u"HISAGO 1149"_s << false << continuous << QSizeF(241.3, 114.3);
        QTest::newRow("BP0201") << u"HISAGO BP0201"_s << false << withReceipt << QSizeF(210, 297);
        QTest::newRow("A4") << u"A4 無地"_s << false << plain << QSizeF(210, 297);
        QTest::newRow("unknown") << u"はがき"_s << false << plain << QSizeF(210, 297);
        QTest::newRow("designated") << u"HISAGO 1149"_s << true << designated << QSizeF(254, 127);
    }

    void panelAndScreenChooseTheForm()
    {
        QFETCH(QString, paper);
        QFETCH(bool, asDesignated);
        QFETCH(QString, layout);
        QFETCH(QSizeF, size);
        FreshShop shop;
        shop.run(u"INSERT INTO 納品先 (納品先ID, 納品先名1) VALUES (7, '山田')"_s);
        shop.run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 消費税率) VALUES "
                 "(1, '2026-04-01', 'O1', 7, 5)"_s);
        shop.workspace.panel.deliveryPaper = paper;
        const NoteRequest request{
            .slipId = 1, .designatedForm = asDesignated, .memo = u"注文番号 A-1 割れ物"_s};
        auto document = deliveryNoteDocument(shop.workspace, request);
        QVERIFY(document && document->remark.isEmpty());
        const Sheet &sheet = document->sheets.front();
        QCOMPARE(QSizeF(sheet.paperWidth, sheet.paperHeight), size);
        QVERIFY(!sheet.turned && sheet.origin == printing::Origin::PaperEdge);
        QCOMPARE(textsOf(sheet).contains(u"A-1"_s), asDesignated);
        QVERIFY(textsOf(sheet).contains(asDesignated ? u"割れ物"_s : u"注文番号 A-1 割れ物"_s));

        // A layout of the shop's own wins until it is damaged.
        QVERIFY(QDir(shop.workspace.applicationFolder()).mkpath(u"layouts"_s));
        QFile own(shop.workspace.inApplicationFolder(u"layouts/"_s + layout));
        const QByteArray content = "format = 1\nname = \"自作\"\npaper = { width = 148, height = 100 }\n"
                                   "[[text]]\nitem = \"備考\"\nx = 10\ny = 10\n";
        QVERIFY(own.open(QIODevice::WriteOnly) && own.write(content) == content.size());
        own.close();
        document = deliveryNoteDocument(shop.workspace, request);
        QVERIFY(document && document->remark.isEmpty());
        QCOMPARE(textsOf(document->sheets.front()), QStringList{u"注文番号 A-1 割れ物"_s}); // nothing goes
        QCOMPARE(document->sheets.front().paperWidth, 148.0);

        QVERIFY(own.resize(own.size() - 3)); // "y =", without its value
        document = deliveryNoteDocument(shop.workspace, request);
        QVERIFY(document && document->sheets.front().paperWidth == size.width());
        QVERIFY2(document->remark.startsWith(layout + u":7: "_s), qPrintable(document->remark));
    }
};

QTEST_MAIN(TestNoteForms)
#include "tst_note_forms.moc"
