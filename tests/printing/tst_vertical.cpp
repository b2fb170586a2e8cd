#include "printing/renderer.h"
#include "printing/vertical.h"

#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace printing;

namespace
{

constexpr int dotsPerMillimetre = 10;
constexpr double points = 40; // a square of 14.1 mm
constexpr double square = points * 25.4 / 72;

// One vertical text whose column has its middle at x 50, from y 20.
QImage drawn(const TextItem &item)
{
    QImage image(100 * dotsPerMillimetre, 150 * dotsPerMillimetre, QImage::Format_Grayscale8);
    image.setDotsPerMeterX(dotsPerMillimetre * 1000);
    image.setDotsPerMeterY(dotsPerMillimetre * 1000);
    image.fill(Qt::white);
    Sheet sheet;
    sheet.origin = Origin::PaperEdge;
    sheet.texts.push_back(item);
    Document document;
    document.sheets.push_back(sheet);
    QPainter painter(&image);
    drawSheet(painter, document, document.sheets.front(), Look{u"IPAMincho"_s}, {});
    return image;
}

TextItem vertical(const QString &text, double size = points)
{
    TextItem item{twipsFromMillimetres(50), twipsFromMillimetres(20), text, size};
    item.vertical = true;
    return item;
}

/// The bounds of the ink in parts of a square, from the middle of the column and its top.
QRectF ink(const QImage &image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.constScanLine(y)[x] <= 127)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    const QPointF topLeft = QPointF(bounds.topLeft()) / dotsPerMillimetre - QPointF(50, 20);
    return {topLeft / square, QSizeF(bounds.size()) / (dotsPerMillimetre * square)};
}

QString squaresOf(const QString &text, bool pairDigits)
{
    QStringList squares;
    for (const VerticalSquare &found : verticalSquares(text, pairDigits))
        squares << found.text + (found.pair ? u"*"_s : QString());
    return squares.join(u'|');
}

} // namespace

class TestVertical : public QObject
{
    Q_OBJECT

private slots:
    void classes_data()
    {
        QTest::addColumn<QString>("characters");
        QTest::addColumn<VerticalForm>("form");
        QTest::newRow("upright") << u"東京あアンＡａ１９・々〇％／㈱①〒゛；！？＆"_s << VerticalForm::Upright;
        QTest::newRow("turned") << u"Aa1-.ｱﾝｰ｡－−‐–—―…‥＝→“”：（）「」『』【】〔〕〈〉［］｛｝｜"_s
                                << VerticalForm::Turned;
        QTest::newRow("mirrored") << u"ー〜～"_s << VerticalForm::Mirrored;
        QTest::newRow("commas") << u"、。，．"_s << VerticalForm::Comma;
        QTest::newRow("small kana") << u"っゃゅょぁッャュョァヶ"_s << VerticalForm::SmallKana;
    }

    void classes()
    {
        QFETCH(QString, characters);
        QFETCH(VerticalForm, form);
        for (const QChar c : std::as_const(characters))
            QVERIFY2(verticalForm(c.unicode()) == form, qPrintable(QString(c)));
        QCOMPARE(verticalForm(0x20BB7), VerticalForm::Upright); // 𠮷
    }

    void squares_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("single");
        QTest::addColumn<QString>("paired");
        QTest::newRow("half width") << u"1-2 ﾋﾞﾙA"_s << u"１|－|２|　|ビ|ル|Ａ"_s
                                    << u"１|－|２|　|ビ|ル|Ａ"_s;
        QTest::newRow("two digits") << u"12月３１日"_s << u"１|２|月|３|１|日"_s << u"12*|月|31*|日"_s;
        QTest::newRow("runs of other lengths")
            << u"405号5階1234"_s << u"４|０|５|号|５|階|１|２|３|４"_s << u"４|０|５|号|５|階|１|２|３|４"_s;
        QTest::newRow("house number") << u"3-10-12"_s << u"３|－|１|０|－|１|２"_s << u"３|－|10*|－|12*"_s;
        QTest::newRow("beyond 16 bits, with a selector")
            << u"𠮷葛\U000E0100城"_s << u"𠮷|葛\U000E0100|城"_s << u"𠮷|葛\U000E0100|城"_s;
        QTest::newRow("half a character")
            << QString(QChar(0xD842)) << QString(QChar(0xD842)) << QString(QChar(0xD842));
        QTest::newRow("nothing") << QString() << QString() << QString();
    }

    void squares()
    {
        QFETCH(QString, text);
        QTEST(squaresOf(text, false), "single");
        QTEST(squaresOf(text, true), "paired");
    }

    // Where the ink of a single character lies in its square, whose middle is 0 and whose top is 0.
    void ink_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QRectF>("within"); // and most of it
        QTest::newRow("upright") << u"国"_s << QRectF(-0.5, 0, 1, 1);
        QTest::newRow("a comma, upper right") << u"、"_s << QRectF(0.1, 0, 0.4, 0.4);
        QTest::newRow("a full stop, upper right") << u"。"_s << QRectF(0.1, 0, 0.4, 0.4);
        QTest::newRow("an opening bracket, at the bottom") << u"「"_s << QRectF(-0.5, 0.4, 1, 0.6);
        QTest::newRow("a closing bracket, at the top") << u"」"_s << QRectF(-0.5, 0, 1, 0.6);
        QTest::newRow("a dash stands upright") << u"ー"_s << QRectF(-0.25, 0, 0.5, 1);
        QTest::newRow("a hyphen stands upright") << u"-"_s << QRectF(-0.15, 0, 0.3, 1);
        QTest::newRow("two squares") << u"国国"_s << QRectF(-0.5, 0, 1, 2);
        QTest::newRow("paired digits in one square") << u"12"_s << QRectF(-0.5, 0, 1, 1);
    }

    void ink()
    {
        QFETCH(QString, text);
        QFETCH(QRectF, within);
        TextItem item = vertical(text);
        item.pairedDigits = true;
        const QRectF found = ::ink(drawn(item));
        QVERIFY2(within.adjusted(-0.02, -0.02, 0.02, 0.02).contains(found),
                 qPrintable(
                     u"%1 %2 %3 %4"_s.arg(found.x()).arg(found.y()).arg(found.width()).arg(found.height())));
        QVERIFY(found.width() > 0.02 && found.height() > 0.02);
    }

    void aSmallKanaIsMovedUpAndRight()
    {
        TextItem flat = vertical(u"っ"_s);
        flat.vertical = false;
        flat.align = Align::Centre;
        const QRectF lying = ::ink(drawn(flat));
        const QRectF standing = ::ink(drawn(vertical(u"っ"_s)));
        QVERIFY(std::abs(standing.x() - lying.x() - 0.09) < 0.02);
        QVERIFY(std::abs(lying.y() - standing.y() - 0.09) < 0.02);
    }

    void theColumnIsAlignedAndSqueezedAlongItsLength()
    {
        const QString text = u"国国国国"_s;
        TextItem item = vertical(text);
        item.align = Align::Right; // ends at y
        item.y = twipsFromMillimetres(20 + 4 * square);
        QVERIFY(std::abs(::ink(drawn(item)).top()) < 0.15);
        item.align = Align::Centre;
        item.y = twipsFromMillimetres(20 + 2 * square);
        QVERIFY(std::abs(::ink(drawn(item)).top()) < 0.15);
        item = vertical(text);
        const QRectF natural = ::ink(drawn(item));
        item.room = twipsFromMillimetres(2 * square);
        const QRectF squeezed = ::ink(drawn(item));
        QVERIFY(squeezed.bottom() <= 2 && squeezed.bottom() > 1.8);
        QVERIFY(std::abs(squeezed.width() - natural.width()) < 0.02);
    }
};

QTEST_MAIN(TestVertical)
#include "tst_vertical.moc"
