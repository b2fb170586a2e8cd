// A slip is pre-printed paper: what stands a little aside stands in the wrong box.
#include "printing/forms/form_files.h"
#include "printing/pdf.h"
#include "printing/queue/print_system.h"
#include "shipping/slips/label_places.h"
#include "shipping/slips/shipping_form.h"
#include "shipping/slips/slip_document.h"
#include "slip_cases.h"
#include "slips/documents/placed_texts.h"
#include "support/fresh_shop.h"
#include "support/pdf_words.h"
#include "workspace/settings.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace shipping;
using slip_cases::longest;
using slip_cases::parcel;

namespace
{

constexpr double tolerance = 0.1; // millimetres

struct Placed
{
    const char16_t *text;
    double x;
    double y;
};

constexpr Placed takkyubin[] = {{u"1 0 0 0 0 0 1", 36, 12},   {u"０４ ０３", 94, 17},
                                {u"090-1234-5678", 35, 24},   {u"東京都千代田区千代田１－１", 27, 33},
                                {u"ふじ10kg", 110, 34},       {u"御歳暮", 100, 40},
                                {u"宮前コーポ402号", 27, 41}, {u"山田", 100, 44},
                                {u"3 8 0 0 8 2 1", 36, 67},   {u"026-224-1137", 35, 76},
                                {u"0262241137", 95, 80},      {u"長野県長野市上千歳町1137", 27, 84},
                                {u"038-021", 95, 89},         {u"千歳ﾋﾞﾙ2F", 27, 92}};
constexpr Placed oneLine[] = {{u"佐藤花子", 30, 58}, {u"信州りんご園", 30, 100}};
constexpr Placed twoLines[] = {
    {u"㈱山田商店", 30, 57}, {u"佐藤花子", 30, 61}, {u"信州りんご園", 30, 98}, {u"発送係", 30, 102}};

bool isNear(double a, double b) { return std::abs(a - b) <= tolerance; }

/// What stands in one line from \a x on, as the sheet is read.
QString lineAt(const std::vector<PdfWord> &words, double x, double y)
{
    std::vector<PdfWord> line;
    std::ranges::copy_if(words, std::back_inserter(line), [&](const PdfWord &word) {
        return isNear(word.area.top(), y) && word.area.left() > x - tolerance;
    });
    std::ranges::sort(line, {}, [](const PdfWord &word) { return word.area.left(); });
    if (line.empty() || !isNear(line.front().area.left(), x))
        return {};
    constexpr double gap = 9; // to the next item
    QString text = line.front().text;
    for (std::size_t i = 1; i < line.size() && line[i].area.left() - line[i - 1].area.right() < gap; ++i)
        text += u' ' + line[i].text;
    return text;
}

/// The words of \a pdf's page; with \a turned as they are read when it is turned back by 90 degrees.
std::vector<PdfWord> wordsAsRead(const QByteArray &pdf, bool turned)
{
    std::vector<PdfWord> words = wordsOfPages(pdf).front().words;
    constexpr double paperWidth = 6486 * 25.4 / 1440;
    for (PdfWord &word : words) {
        const QRectF area = word.area;
        if (turned)
            word.area = {area.top(), paperWidth - area.right(), area.height(), area.width()};
    }
    return words;
}

Shipment withTwoLines()
{
    Shipment shipment = parcel();
    shipment.consignee.name1 = u"㈱山田商店"_s;
    shipment.consignee.name2 = u"佐藤花子"_s;
    shipment.sender.name2 = u"発送係"_s;
    return shipment;
}

} // namespace

class TestSlipForms : public QObject
{
    Q_OBJECT

private slots:
    void everyItemAtItsMillimetres_data()
    {
        QTest::addColumn<bool>("hasTwoLines");
        QTest::addColumn<bool>("isDeclared");
        QTest::addColumn<QPoint>("moved");
        QTest::newRow("as read") << false << false << QPoint(0, 0);
        QTest::newRow("two lines, moved") << true << false << QPoint(3, -2);
        QTest::newRow("declared") << true << true << QPoint(0, 0);
        QTest::newRow("declared, moved") << false << true << QPoint(-4, 5);
    }

    void everyItemAtItsMillimetres()
    {
        QFETCH(bool, hasTwoLines);
        QFETCH(bool, isDeclared);
        QFETCH(QPoint, moved);
        FreshShop shop;
        shop.settings.write(workspace::keys::kuOffsetX, moved.x());
        shop.settings.write(workspace::keys::kuOffsetY, moved.y());
        shop.workspace.panel.slipPaperDeclared = isDeclared;
        for (const QString &form : {u"宅急便"_s, u"宅急便　コレクト"_s}) {
            Shipment shipment = hasTwoLines ? withTwoLines() : parcel();
            shipment.method = form;
            const auto document = slipDocument(shop.workspace, shipment);
            QVERIFY(document);
            const QSizeF fed = isDeclared ? QSizeF(114.4, 230) : QSizeF(210, 297);
            printing::JobSettings settings;
            settings.paper = fed;
            const auto pdf =
                printing::pdfOf(*document, printing::lookOn(settings, printing::Look{u"IPAMincho"_s}));
            const QSizeF page = wordsOfPages(*pdf).front().size;
            QVERIFY(std::abs(page.width() - fed.width()) < 0.4 &&
                    std::abs(page.height() - fed.height()) < 0.4);
            const std::vector<PdfWord> words = wordsAsRead(*pdf, isDeclared);
            check(words, takkyubin, moved);
            hasTwoLines ? check(words, twoLines, moved) : check(words, oneLine, moved);
            QVERIFY(std::ranges::none_of(words,
                                         [](const PdfWord &word) { return word.text.contains(u"3,980"_s); }));
        }
    }

    void whatIsTypedAsPostalCode_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("printed");
        QTest::addColumn<bool>("isTold");
        QTest::newRow("hyphen") << u"100-0001"_s << u"1 0 0 0 0 0 1"_s << false;
        QTest::newRow("none") << u"1000001"_s << u"1 0 0 0 0 0 1"_s << false;
        QTest::newRow("full width") << u"〒１００ー０００１"_s << u"1 0 0 0 0 0 1"_s << false;
        QTest::newRow("five digits") << u"100-01"_s << u"100-01"_s << true;
        QTest::newRow("abroad") << u"SW1A 2AA"_s << u"SW1A 2AA"_s << true;
        QTest::newRow("empty") << u""_s << u""_s << false;
    }

    void whatIsTypedAsPostalCode()
    {
        QFETCH(QString, typed);
        QTEST(spreadPostalCode(typed), "printed");
        FreshShop shop;
        Shipment shipment = parcel();
        shipment.consignee.zip = typed;
        QTEST(slipDocument(shop.workspace, shipment)->remark.contains(u"お届け先の郵便番号"_s), "isTold");
    }

    void honorifics_data()
    {
        QTest::addColumn<QString>("name1");
        QTest::addColumn<QString>("name2");
        QTest::addColumn<QString>("honorific");
        QTest::newRow("person") << u"佐藤花子"_s << u""_s << u"様"_s;
        QTest::newRow("firm") << u"（株）山田"_s << u""_s << u"御中"_s;
        QTest::newRow("section") << u"山田商店"_s << u"仕入部"_s << u"御中"_s;
        QTest::newRow("person in a firm") << u"㈱山田"_s << u"仕入部　佐藤"_s << u"様"_s;
        QTest::newRow("person behind a firm") << u"山田商店　佐藤花子"_s << u""_s << u"様"_s;
        QTest::newRow("firm with a blank") << u"株式会社 山田"_s << u""_s << u"御中"_s;
        QTest::newRow("branch behind a firm") << u"㈱山田 東京支店"_s << u""_s << u"御中"_s;
        QTest::newRow("a family name") << u"服部"_s << u""_s << u"様"_s;
        QTest::newRow("typed already") << u"佐藤 様"_s << u" "_s << u""_s;
        QTest::newRow("none") << u""_s << u"　"_s << u""_s;
    }

    void honorifics()
    {
        QFETCH(QString, name1);
        QFETCH(QString, name2);
        QTEST(honorificOf({name1, name2, {}, {}, {}, {}}), "honorific");
    }

    void nothingRunsIntoAnythingElse_data()
    {
        QTest::addColumn<QString>("form");
        for (const QString &form : shippingForms())
            QTest::newRow(qPrintable(form)) << form;
    }

    // Each on all the places of its sheet; a label's type may come down to five points, not below.
    void nothingRunsIntoAnythingElse()
    {
        QFETCH(QString, form);
        FreshShop shop;
        shop.workspace.panel.deliveryNotice = true;
        for (const LabelSheet &labels : labelSheets()) {
            chooseLabelSheet(shop.settings, labels.name);
            const auto sheet = sheetOfForm(form, shop.settings);
            const std::size_t count = sheet ? std::size_t(sheet->places()) : 1;
            for (const Shipment &shipment : {parcel(form), longest(form)}) {
                const auto document =
                    slipsDocument(shop.workspace, std::vector(count, shipment), Sending::Other, 1);
                QVERIFY2(document, document ? "" : qPrintable(document.error().text));
                QCOMPARE(document->sheets.size(), std::size_t(1));
                const printing::Sheet &page = document->sheets.front();
                const QRectF paper(0, 0, page.readWidth(), page.readHeight());
                const double edge = isCarriersForm(form) ? 0 : 5;
                QCOMPARE(misplaced(page, paper.adjusted(edge, edge, -edge, -edge)), QStringList());
                for (const printing::TextItem &item : page.texts)
                    QVERIFY2(item.points >= 4.9 || shipment.goods != u"ふじ10kg"_s, qPrintable(item.text));
                const QStringList texts = textsOf(page);
                QVERIFY(texts.filter(shipment.consignee.name1.left(5)).size() >= qsizetype(count));
            }
        }
    }

    void onlyOneSheetAndOnlyFormsThatThereAre()
    {
        FreshShop shop;
        QVERIFY(!slipDocument(shop.workspace, parcel(u"ペリカン便"_s)));
        QVERIFY(!slipsDocument(shop.workspace, {}, Sending::Other, 1));
        const QString tag = u"オリジナル荷札２"_s;
        QVERIFY(slipsDocument(shop.workspace, std::vector(2, parcel(tag)), Sending::Other, 3));
        QVERIFY(!slipsDocument(shop.workspace, std::vector(3, parcel(tag)), Sending::Other, 3));
        QVERIFY(!slipDocument(shop.workspace, parcel(tag), Sending::Other, 5));
    }

    // Of mail order and of the others, each by a box of its own.
    void theNoticeOfDelivery()
    {
        FreshShop shop;
        shop.workspace.panel.deliveryNoticeMailOrder = true;
        const auto isTicked = [&shop](Sending sending, const QString &form) {
            return itemWith(slipDocument(shop.workspace, parcel(form), sending)->sheets.front(), u"レ"_s) !=
                   nullptr;
        };
        QVERIFY(isTicked(Sending::MailOrder, u"ゆうパック"_s));
        QVERIFY(!isTicked(Sending::Other, u"ゆうパック"_s));
        QVERIFY(!isTicked(Sending::MailOrder, u"宅急便"_s));
        shop.workspace.panel.deliveryNotice = true;
        QVERIFY(isTicked(Sending::Other, u"ゆうパック"_s));
    }

    void everyFormCanBeAdjusted()
    {
        FreshShop shop;
        const auto forms = adjustableSlips(shop.workspace);
        QCOMPARE(forms.size(), std::size_t(8));
        for (const printing::AdjustableForm &form : forms)
            QVERIFY(printing::loadForm(shop.folder.path(), form.fileName, *form.items).complaint.isEmpty());
    }

private:
    template <std::size_t count>
    static void check(const std::vector<PdfWord> &words, const Placed (&places)[count], const QPoint &moved)
    {
        for (const Placed &place : places)
            QCOMPARE(lineAt(words, place.x + moved.x(), place.y + moved.y()), QString::fromUtf16(place.text));
    }
};

QTEST_MAIN(TestSlipForms)
#include "tst_slip_forms.moc"
