// Sorting machines read the postal code in its boxes, people the rest; nothing may be lost or stand under
// the stamp.
#include "printing/pdf.h"
#include "printing/renderer.h"
#include "shipping/addresses/address_form.h"
#include "shipping/addresses/house_numbers.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace shipping;

namespace
{

struct Word
{
    QString text;
    QRectF area; // millimetres
};

QString read(const QString &pdf, const QStringList &options)
{
    QProcess reader;
    reader.start(u"pdftotext"_s, options + QStringList{pdf, u"-"_s});
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAll());
}

/// What is drawn on \a page within \a area, without blanks.
QString textIn(const QString &pdf, const QRectF &area, int page = 1)
{
    const auto tenths = [](double measure) { return QString::number(qRound(measure * 10)); };
    const QString number = QString::number(page);
    return read(pdf, {u"-f"_s, number, u"-l"_s, number, u"-r"_s, u"254"_s, u"-x"_s, tenths(area.x()), u"-y"_s,
                      tenths(area.y()), u"-W"_s, tenths(area.width()), u"-H"_s, tenths(area.height())})
        .remove(QRegularExpression(u"\\s"_s));
}

std::vector<Word> wordsOf(const QString &pdf, QSizeF &page)
{
    constexpr double mm = 25.4 / 72;
    static const QRegularExpression line(
        uR"x(<page width="([0-9.]+)" height="([0-9.]+)">|)x"
        uR"x(<word xMin="([-0-9.]+)" yMin="([-0-9.]+)" xMax="([-0-9.]+)" yMax="([-0-9.]+)">(.*)</word>)x"_s);
    std::vector<Word> words;
    auto found = line.globalMatch(read(pdf, {u"-bbox"_s}));
    while (found.hasNext()) {
        const auto match = found.next();
        const auto number = [&](int group) { return match.captured(group).toDouble() * mm; };
        if (match.captured(7).isEmpty())
            page = {number(1), number(2)};
        else
            words.push_back(
                {match.captured(7), QRectF(QPointF(number(3), number(4)), QPointF(number(5), number(6)))});
    }
    return words;
}

Addressee usual()
{
    Addressee addressee;
    addressee.zip = u"３８０ー０８２１"_s;
    addressee.address1 = u"長野市上千歳町1137-23"_s;
    addressee.address2 = u"ｺｰﾎﾟ千歳405号"_s;
    addressee.names = QStringList{u"高橋 花子"_s};
    return addressee;
}

Addressee longest()
{
    Addressee addressee;
    addressee.zip = u"390-0811"_s;
    addressee.address1 = u"長野県松本市大字島内字中村前一丁目松本工業団地内東側第二区画1234番地の56"_s;
    addressee.address2 = u"松本グランドマンションヒルズステーションタワー弐号館12階1203号室小林様方"_s;
    addressee.company = u"特定非営利活動法人長野県りんご生産者連合会松本支部協議会"_s;
    addressee.section = u"第二営業本部法人営業部第三課販売促進グループ"_s;
    addressee.names = QStringList{u"勅使河原 長左衛門"_s, u"みどり"_s, u"健太郎"_s};
    return addressee;
}

masters::OwnCompany shop()
{
    masters::OwnCompany own;
    own.name1 = u"信州りんご園"_s;
    own.name2 = u"直売部"_s;
    own.zip = u"389-2254"_s;
    own.address1 = u"飯山市大字南町1137-23"_s;
    own.address2 = u"りんごビル3F"_s;
    own.tel1 = u"0269-62-1137"_s;
    return own;
}

Addressee section(Addressee addressee)
{
    addressee.names.clear();
    return addressee;
}

/// A paper as it is read, by the makers' and the postal service's measures.
struct Paper
{
    QString name;
    Writing writing = Writing::Vertical;
    QSizeF size{};
    QPointF number{}; // of a code without boxes: the middle of its first digit, and the top
    double pitch = 0; // of its digits; 0: it stands in boxes

    [[nodiscard]] QRectF stamp() const
    {
        const bool lies = size.width() > size.height();
        return lies ? QRectF(size.width() - 70, 0, 70, 35) : QRectF(0, 0, 35, 70);
    }
};

const std::vector<Paper> &papers()
{
    constexpr auto down = Writing::Vertical;
    constexpr auto across = Writing::Horizontal;
    static const std::vector<Paper> all{
        {u"はがき"_s, down, {100, 148}},
        {u"はがき"_s, across, {100, 148}},
        {u"年賀はがき"_s, down, {100, 148}},
        {u"年賀はがき"_s, across, {100, 148}},
        {u"封筒　長形3号"_s, down, {120, 235}},
        {u"封筒　長形3号"_s, across, {235, 120}, {22, 35}, 4.9},
        {u"封筒　長形4号"_s, down, {90, 205}},
        {u"封筒　長形4号"_s, across, {205, 90}, {22, 20}, 4.9},
        {u"封筒　角形2号"_s, down, {240, 332}, {177.5, 18}, 6},
        {u"封筒　角形2号"_s, across, {240, 332}, {38.5, 141}, 6},
        {u"封筒　角形3号"_s, down, {216, 277}, {153.5, 18}, 6},
        {u"封筒　角形3号"_s, across, {216, 277}, {32.5, 113}, 6},
        {u"封筒　洋形2号"_s, down, {114, 162}},
        {u"封筒　洋形2号"_s, across, {162, 114}, {22, 32}, 4.9},
        {u"封筒　洋形4号"_s, down, {105, 235}},
        {u"封筒　洋形4号"_s, across, {235, 105}, {22, 27.5}, 4.9},
        {u"封筒　洋形長3号"_s, down, {120, 235}},
        {u"封筒　洋形長3号"_s, across, {235, 120}, {22, 35}, 4.9},
    };
    return all;
}

AddressSetup setupOf(const Paper &paper)
{
    return {.paper = addressPaper(paper.name), .writing = paper.writing, .sender = shop()};
}

/// More than small kana, which stand a little higher than their squares.
bool overlaps(const QRectF &one, const QRectF &other)
{
    constexpr double share = 0.15;
    const QRectF common = one.intersected(other);
    return common.width() > share * std::min(one.width(), other.width()) &&
           common.height() > share * std::min(one.height(), other.height());
}

constexpr double fromRight[] = {55.7, 48.7, 41.7, 34.1, 27.3, 20.5, 13.7}; // left edges of the boxes
constexpr QSizeF box(5.7, 8.0);
constexpr double boxTop = 12;

} // namespace

class TestAddressLayouts : public QObject
{
    Q_OBJECT

private slots:
    void everyDigitIsInItsPlace_data() { eachPaper(); }
    void everyDigitIsInItsPlace();
    void nothingIsLostOrStandsWhereItMayNot_data() { eachPaper(); }
    void nothingIsLostOrStandsWhereItMayNot();
    void aFirmStandsBeforeItsSection_data() { eachPaper(); }
    void aFirmStandsBeforeItsSection();
    void columnsOfAnAddressEndLevel();
    void householdsStandAboutTheNamesAxis_data() { eachPaper(); }
    void householdsStandAboutTheNamesAxis();
    void newYearCardsBearTheSendersCodeInItsCells();
    void boxesAreDrawnByChoiceOnly();
    void labelsBeginAtTheirPlace();

private:
    static void eachPaper()
    {
        QTest::addColumn<Paper>("paper");
        for (const Paper &paper : papers())
            QTest::addRow("%s %s", qPrintable(paper.name),
                          paper.writing == Writing::Vertical ? "down" : "across")
                << paper;
    }
    /// The PDF of \a addressees; empty where it cannot be made.
    QString pdfOf(std::vector<Addressee> addressees, const AddressSetup &setup)
    {
        const auto sheets = addressSheets(m_folder.path(), std::move(addressees), setup);
        if (!sheets)
            return {};
        printing::Document document;
        document.title = u"宛名"_s;
        document.sheets = sheets->sheets;
        const QString pdf = m_folder.filePath(u"address.pdf"_s);
        return printing::writePdf(document, {u"IPAMincho"_s}, pdf) ? pdf : QString();
    }

    QTemporaryDir m_folder;
};

void TestAddressLayouts::everyDigitIsInItsPlace()
{
    QFETCH(Paper, paper);
    AddressSetup setup = setupOf(paper);
    const QPointF moved(2, -3);
    setup.shifts = {{u"letterOffsetX"_s, moved.x()}, {u"letterOffsetY"_s, moved.y()}};
    const QString pdf = pdfOf({usual()}, setup);
    const QString digits = paper.pitch > 0 ? u"３８０－０８２１"_s : u"３８００８２１"_s;
    constexpr double aside = 0.5;
    for (qsizetype i = 0; i < digits.size(); ++i) {
        const bool inBox = paper.pitch == 0;
        const double middle = inBox ? paper.size.width() - fromRight[i] + box.width() / 2
                                    : paper.number.x() + paper.pitch * double(i);
        const double top = inBox ? boxTop : paper.number.y();
        const QRectF strip(middle - aside, top, 2 * aside, inBox ? box.height() : paper.pitch);
        QCOMPARE(textIn(pdf, strip.translated(moved)), QString(digits[i]));
    }
    // Upright in its box, and nothing of a code that cannot be read.
    QSizeF page;
    for (const Word &word : wordsOf(pdf, page)) {
        if (paper.pitch == 0 && word.text.contains(u"３８０"_s))
            QVERIFY(std::abs(word.area.center().y() - moved.y() - (boxTop + box.height() / 2)) < 0.3);
    }
    QVERIFY(std::abs(page.width() - paper.size.width()) < 0.5);
    QVERIFY(std::abs(page.height() - paper.size.height()) < 0.5);
    Addressee doubtful = usual();
    doubtful.zip = u"380-08"_s;
    setup.style.sender = false;
    const QString without = read(pdfOf({doubtful}, setup), {});
    QVERIFY(!without.contains(u'８') && !without.contains(u'－') && !without.contains(u'〒'));
}

void TestAddressLayouts::nothingIsLostOrStandsWhereItMayNot()
{
    QFETCH(Paper, paper);
    const Addressee addressee = longest();
    QSizeF page;
    std::vector<std::vector<Word>> letters;
    for (const Addressee &each : {section(addressee), addressee})
        letters.push_back(wordsOf(pdfOf({each}, setupOf(paper)), page));
    const QString pdf = m_folder.filePath(u"address.pdf"_s);
    for (const std::vector<Word> &words : letters) {
        QVERIFY(words.size() > 10);
        constexpr double edge = 5;
        const QRectF printable =
            QRectF({}, paper.size).adjusted(edge - 0.1, edge - 0.1, 0.1 - edge, 0.1 - edge);
        // The boxes of the cards and envelopes are where they are.
        const QRectF ownBoxes(paper.size.width() - fromRight[0], boxTop, 47.7, box.height());
        const QRectF cells(4, 122, 31, 9);
        const bool usesCells = paper.name == u"年賀はがき"_s;
        for (const Word &word : words) {
            const QString where = u"%1 at %2, %3"_s.arg(word.text).arg(word.area.x()).arg(word.area.y());
            const bool inBox = (paper.pitch == 0 && ownBoxes.contains(word.area.center())) ||
                               (usesCells && cells.contains(word.area));
            QVERIFY2(inBox || printable.contains(word.area), qPrintable(where));
            QVERIFY2(inBox || !paper.stamp().intersects(word.area), qPrintable(where));
            for (const Word &other : words)
                QVERIFY2(&other == &word || !overlaps(word.area, other.area), qPrintable(where + other.text));
        }
    }
    static const QRegularExpression blanks(u"\\s"_s);
    const QString drawn = read(pdf, {u"-raw"_s}).remove(blanks);
    const bool down = paper.writing == Writing::Vertical;
    const auto address = [&](const QString &typed) {
        return down ? columnAddress(typed, Figures::Upright, Between::Dash) : lineAddress(typed);
    };
    for (const QString &text :
         {address(addressee.address1), address(addressee.address2), addressee.company, addressee.section,
          u"勅使河原長左衛門様"_s, u"みどり様"_s, u"健太郎様"_s, address(shop().address1), shop().name1})
        QVERIFY2(drawn.contains(text), qPrintable(text + u" / "_s + drawn));
}

void TestAddressLayouts::aFirmStandsBeforeItsSection()
{
    QFETCH(Paper, paper);
    const bool down = paper.writing == Writing::Vertical;
    Addressee shop = section(usual());
    shop.company = u"株式会社髙島商店"_s;
    shop.section = u"仕入部"_s;
    for (const Addressee &addressee : {shop, section(longest())}) {
        const auto sheets = addressSheets(m_folder.path(), {addressee}, setupOf(paper));
        const printing::Sheet sheet = sheets->sheets.front();
        const auto item = [&sheet](const QString &text) {
            const auto found = std::ranges::find(sheet.texts, text, &printing::TextItem::text);
            return found == sheet.texts.end() ? printing::TextItem() : *found;
        };
        const printing::TextItem firm = item(addressee.company);
        const printing::TextItem part = item(addressee.section + u"　御中"_s);
        QVERIFY(!firm.text.isEmpty() && !part.text.isEmpty());
        QVERIFY(part.points < firm.points && part.y > firm.y);
        QVERIFY(down ? part.x < firm.x : part.x > firm.x);
        // Nothing is as large as whom the letter is to.
        const auto largest = std::ranges::max(sheet.texts, {}, &printing::TextItem::points);
        QVERIFY(addressee.section != shop.section || firm.points == largest.points);
    }
}

void TestAddressLayouts::columnsOfAnAddressEndLevel()
{
    // The second column's end below the first one's, millimetres.
    const auto below = [this](const QString &first, const QString &second) {
        Addressee addressee = usual();
        addressee.address1 = first;
        addressee.address2 = second;
        QSizeF page;
        double ends[2] = {};
        for (const Word &word : wordsOf(pdfOf({addressee}, setupOf({u"はがき"_s})), page)) {
            for (const int column : {0, 1}) {
                if (word.text.endsWith((column == 0 ? first : second).back()))
                    ends[column] = word.area.bottom();
            }
        }
        return ends[1] - ends[0];
    };
    const double level = below(u"長野県長野市大字西長野上千歳町"_s, u"飯田荘"_s);
    QVERIFY2(std::abs(level) < 1, qPrintable(QString::number(level)));
    QVERIFY(below(u"長野県長野市"_s, u"上千歳町りんごビル飯田荘"_s) > 10);
}

void TestAddressLayouts::householdsStandAboutTheNamesAxis()
{
    QFETCH(Paper, paper);
    const bool down = paper.writing == Writing::Vertical;
    // Of one to three persons: the middles of their 様, the eldest first.
    const auto middles = [&](const QStringList &names) {
        Addressee addressee = usual();
        addressee.names = names;
        QSizeF page;
        QList<QPointF> found;
        for (const Word &word : wordsOf(pdfOf({addressee}, setupOf(paper)), page)) {
            if (word.text.endsWith(u'様'))
                found << QPointF(down ? word.area.center().x() : word.area.right(), word.area.center().y());
        }
        std::ranges::sort(
            found, [&](const QPointF &a, const QPointF &b) { return down ? a.x() > b.x() : a.y() < b.y(); });
        return found;
    };
    const QList<QPointF> one = middles({u"高橋 太郎"_s});
    const QList<QPointF> two = middles({u"高橋 太郎"_s, u"花子"_s});
    const QList<QPointF> three = middles({u"高橋 太郎"_s, u"花子"_s, u"健"_s});
    QCOMPARE((QList<qsizetype>{one.size(), two.size(), three.size()}), (QList<qsizetype>{1, 2, 3}));
    for (const QList<QPointF> &group : {two, three}) {
        for (const QPointF &each : group)
            QVERIFY(std::abs(down ? each.y() - group[0].y() : each.x() - group[0].x()) < 0.1);
        const double middle = (group.first().x() + group.last().x()) / 2;
        QVERIFY2(!down || std::abs(middle - one[0].x()) < 0.2, qPrintable(QString::number(middle)));
    }
}

void TestAddressLayouts::newYearCardsBearTheSendersCodeInItsCells()
{
    constexpr double lefts[] = {4.5, 8.5, 12.5, 17.5, 21.5, 25.5, 29.5};
    for (const Writing writing : {Writing::Vertical, Writing::Horizontal}) {
        const QString pdf = pdfOf({usual()}, setupOf({u"年賀はがき"_s, writing}));
        for (qsizetype i = 0; i < 7; ++i) {
            const QRectF middle(lefts[i] + 1.5, 123, 1, 6.5);
            QCOMPARE(textIn(pdf, middle), QString(u"３８９２２５４"_s.at(i)));
        }
        AddressSetup none = setupOf({u"年賀はがき"_s, writing});
        none.style.sender = false;
        QCOMPARE(textIn(pdfOf({usual()}, none), QRectF(4, 122, 31, 10)), QString());
    }
}

void TestAddressLayouts::boxesAreDrawnByChoiceOnly()
{
    for (const Paper &paper : papers()) {
        AddressSetup setup = setupOf(paper);
        QVERIFY(addressSheets(m_folder.path(), {usual()}, setup)->sheets.front().boxes.empty());
        setup.style.boxes = true;
        const auto drawn = addressSheets(m_folder.path(), {usual()}, setup);
        const std::vector<printing::Box> boxes = drawn->sheets.front().boxes;
        const bool uses = setup.paper.usesBoxes(paper.writing);
        QCOMPARE(uses, paper.pitch == 0);
        QCOMPARE(boxes.size(), std::size_t(uses ? 8 : 0)); // and the hyphen
        for (std::size_t i = 0; i < boxes.size() && i < 7; ++i) {
            // Measured at the inner side of the line.
            const double left = (boxes[i].x + boxes[i].lineWidth / 2) / printing::twipsPerMillimetre;
            QVERIFY(std::abs(left - (paper.size.width() - fromRight[i])) < 0.01);
            QVERIFY(boxes[i].vermilion);
        }
    }
}

void TestAddressLayouts::labelsBeginAtTheirPlace()
{
    AddressSetup setup = setupOf({u"宛名ラベル"_s, Writing::Horizontal});
    for (const LabelSheet &sheet : labelSheets()) {
        setup.labels = sheet;
        setup.firstPlace = sheet.places() - 1;
        const QString pdf = pdfOf({usual(), longest(), usual(), section(longest())}, setup);
        const QString where = u"上千歳町1137-23"_s;
        QVERIFY2(textIn(pdf, *labelArea(sheet, sheet.places() - 1)).contains(where), qPrintable(sheet.name));
        const QString second = textIn(pdf, *labelArea(sheet, sheet.places()));
        QVERIFY(second.startsWith(u"３９０－０８１１"_s) && second.contains(u"健太郎様"_s));
        QVERIFY(second.contains(lineAddress(longest().address2)));
        QVERIFY(textIn(pdf, *labelArea(sheet, 1), 2).contains(where));
        const QString third = textIn(pdf, *labelArea(sheet, 2), 2);
        QVERIFY(third.contains(longest().company) && third.endsWith(longest().section + u"御中"_s));
        setup.firstPlace = sheet.places() + 1;
        QVERIFY(!addressSheets(m_folder.path(), {usual()}, setup));
    }
}

QTEST_MAIN(TestAddressLayouts)
#include "tst_address_layouts.moc"
