#include "masters/rich_text/ole_package.h"
#include "masters/rich_text/rtf_reader.h"
#include "masters/rich_text/rtf_writer.h"

#include "masters/rich_text/rich_text_samples.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>
#include <QTextCursor>
#include <QtEndian>

using namespace Qt::StringLiterals;
using namespace masters;

// Files made to crash, hang or fill the memory of whoever opens them.
class tst_RtfHostile : public QObject
{
    Q_OBJECT

private slots:
    void isRefusedOrReadQuickly_data();
    void isRefusedOrReadQuickly();
    void everyTruncationIsAnError();
    void mutationsNeverCrash();
    void damagedPackages();

private:
    static QByteArray richSample();
};

namespace
{

QByteArray inBody(const QByteArray &body)
{
    return "{\\rtf1\\ansi\\ansicpg932{\\fonttbl{\\f0\\fcharset128 F;}}" + body + "}";
}

quint32 crc32(const QByteArray &data)
{
    quint32 crc = 0xFFFFFFFF;
    for (char byte : data) {
        crc ^= static_cast<uchar>(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

// A PNG whose header promises more than a shop's computer holds.
QByteArray pngClaiming(quint32 side)
{
    QByteArray png = samples::encoded(samples::plainImage(1, 1), "PNG");
    qToBigEndian(side, png.data() + 16);
    qToBigEndian(side, png.data() + 20);
    qToBigEndian(crc32(png.mid(12, 17)), png.data() + 29);
    return png;
}

} // namespace

QByteArray tst_RtfHostile::richSample()
{
    RichTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"有限会社　山田商店😀"_s,
                      formatOf({u"ＭＳ 明朝"_s, 20, true, true, true, true, Qt::blue}));
    cursor.insertImage(document.addPicture(*encodePicture(samples::plainImage(3, 3), 1000)));
    cursor.insertBlock();
    cursor.insertImage(document.addAttachment({u"表.doc"_s, "data"}));
    QByteArray rtf = *writeRtf(document);
    // The icon is most of the file and tests nothing that the picture does not.
    const qsizetype icon = rtf.indexOf("{\\result");
    return rtf.left(icon) + "{\\result \\u23665\\'8e\\'52{\\*\\x\\bin2 }}}}}\\par}";
}

void tst_RtfHostile::isRefusedOrReadQuickly_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<bool>("readable");
    const QByteArray png = samples::encoded(samples::plainImage(1, 1), "PNG").toHex();

    QTest::newRow("nested 100,000 deep")
        << inBody(QByteArray(100'000, '{') + QByteArray(100'000, '}')) << false;
    QTest::newRow("nested within the bound") << inBody(QByteArray(90, '{') + QByteArray(90, '}')) << true;
    QTest::newRow("nested deep in a skipped group")
        << inBody("{\\*\\x" + QByteArray(100'000, '{') + QByteArray(100'000, '}') + "}") << false;
    QTest::newRow("only closing") << QByteArray("{\\rtf1") + QByteArray(100'000, '}') << true;
    QTest::newRow("\\bin beyond the end") << inBody("{\\pict\\bin2147483647 x}") << false;
    QTest::newRow("\\bin negative") << inBody("{\\pict\\bin-1 x}") << false;
    QTest::newRow("\\bin above 32 bits") << inBody("{\\pict\\bin99999999999999999999 x}") << false;
    QTest::newRow("bad digits") << inBody("\\'zz") << false;
    QTest::newRow("word of a million letters") << inBody("\\" + QByteArray(1'000'000, 'a') + " x") << true;
    QTest::newRow("number of a million digits") << inBody("\\fs" + QByteArray(1'000'000, '9') + " x") << true;
    QTest::newRow("300,000 characters") << inBody(QByteArray(300'000, 'x')) << false;
    QTest::newRow("300,000 paragraphs") << inBody(QByteArray("\\par").repeated(300'000)) << false;
    QTest::newRow("16,000 runs of changing look")
        << inBody(QByteArray("\\b x\\b0 y").repeated(8'000)) << true;
    QTest::newRow("300,000 fonts") << QByteArray("{\\rtf1{\\fonttbl") + [] {
        QByteArray fonts;
        for (int i = 0; i < 300'000; ++i)
            fonts += "\\f" + QByteArray::number(i) + " F;";
        return fonts;
    }() + "}}" << false;
    QTest::newRow("300,000 colours") << inBody("{\\colortbl" + QByteArray(300'000, ';') + "}") << false;
    QTest::newRow("font name of a million letters")
        << QByteArray("{\\rtf1{\\fonttbl{\\f0 ") + QByteArray(1'000'000, 'F') + ";}}x}" << true;
    QTest::newRow("ten million empty words") << inBody(QByteArray("\\b").repeated(10'000'000)) << true;
    QTest::newRow("fallback length of two thousand million") << inBody("\\uc2147483647\\u65 abc") << true;
    QTest::newRow("pictures that claim 49 million pixels")
        << inBody(("{\\pict\\pngblip " + pngClaiming(7000).toHex() + "}").repeated(5000)) << true;
    QTest::newRow("picture of 2^31 pixels a side")
        << inBody("{\\pict\\pngblip " + pngClaiming(0x7fffffff).toHex() + "}") << true;
    QTest::newRow("the same picture 5,000 times")
        << inBody(("{\\pict\\pngblip " + png + "}").repeated(5000)) << true;
    QTest::newRow("pictures within pictures")
        << inBody(QByteArray("{\\pict\\pngblip ").repeated(90) + png + QByteArray(90, '}')) << true;
    QTest::newRow("objects within objects")
        << inBody(QByteArray("{\\object{\\*\\objdata 01}{\\result ").repeated(40) + "x" + QByteArray(80, '}'))
        << true;
}

void tst_RtfHostile::isRefusedOrReadQuickly()
{
    QFETCH(QByteArray, rtf);
    QFETCH(bool, readable);
    QElapsedTimer timer;
    timer.start();
    const auto text = readRtf(rtf);
    QCOMPARE(bool(text), readable);
    if (text) { // the screen has to lay it out as well
        text->document->setTextWidth(500);
        QVERIFY(text->document->size().height() > 0);
    }
    QVERIFY2(timer.elapsed() < 15'000, "the reader takes too long"); // generous: sanitizers, a slow machine
}

void tst_RtfHostile::everyTruncationIsAnError()
{
    const QByteArray whole = richSample();
    const qsizetype last = whole.lastIndexOf('}');
    QVERIFY(readRtf(whole));
    for (qsizetype length = 0; length <= last; ++length)
        QVERIFY2(!readRtf(whole.left(length)), QByteArray::number(length).constData());
}

void tst_RtfHostile::mutationsNeverCrash()
{
    const QByteArray whole = richSample();
    QRandomGenerator random(20260401);
    const char interesting[] = "{}\\'0\xff\x81;*u-9 \r";
    int read = 0;
    for (int round = 0; round < 4000; ++round) {
        QByteArray damaged = whole;
        for (quint32 changes = random.bounded(1U, 6U); changes > 0; --changes) {
            const auto at = static_cast<qsizetype>(random.bounded(static_cast<int>(damaged.size())));
            switch (random.bounded(4)) {
            case 0:
                damaged[at] = static_cast<char>(random.bounded(256));
                break;
            case 1:
                damaged.insert(at, interesting[random.bounded(static_cast<int>(sizeof interesting - 1))]);
                break;
            case 2:
                damaged.remove(at, random.bounded(1, 40));
                break;
            default:
                damaged.insert(at,
                               whole.mid(random.bounded(static_cast<int>(whole.size())), random.bounded(40)));
            }
        }
        const auto text = readRtf(damaged);
        if (!text)
            continue;
        ++read;
        QVERIFY(writeRtf(*text->document)); // what can be shown can be kept
    }
    QVERIFY(read > 100); // else the damage was too heavy to reach anything behind the first bytes
}

void tst_RtfHostile::damagedPackages()
{
    const QByteArray whole = encodePackage({u"表.doc"_s, samples::allBytes()});
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const auto attachment = decodePackage(whole.left(length));
        QVERIFY(!attachment || attachment->data == samples::allBytes());
        QByteArray huge = whole;
        huge.replace(length, 4, "\xff\xff\xff\xff");
        decodePackage(huge);
    }
}

QTEST_MAIN(tst_RtfHostile)
#include "tst_rtf_hostile.moc"
