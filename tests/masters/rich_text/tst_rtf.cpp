#include "masters/rich_text/ole_package.h"
#include "masters/rich_text/rtf_file.h"
#include "masters/rich_text/rtf_writer.h"

#include "masters/rich_text/rich_text_samples.h"

#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace masters;
using samples::described;

class tst_Rtf : public QObject
{
    Q_OBJECT

private slots:
    void readsWhatOtherProgramsWrite_data();
    void readsWhatOtherProgramsWrite();
    void readsPictures_data();
    void readsPictures();
    void countsPicturesThatCannotBeShown();
    void readsForeignObjectByItsResult();
    void roundTripKeepsFormats();
    void roundTripKeepsPictures();
    void roundTripKeepsAttachments();
    void packageNameLosesFolders_data();
    void packageNameLosesFolders();
    void writesCodePageWhereItCan();
    void savesOverOldFileOnlyWhenComplete();
    void tellsWhatCannotBeOpened_data();
    void tellsWhatCannotBeOpened();
    void foreignImageNamesLoadNothing();
    void copiesOnlyWhatTheBlockKnows();
};

namespace
{

QString read(const QByteArray &rtf)
{
    const auto text = readRtf(rtf);
    return text ? described(*text->document) : u"error: "_s + text.error().text;
}

std::unique_ptr<RichTextDocument> reread(const RichTextDocument &document)
{
    auto text = readRtf(*writeRtf(document));
    return std::move(text->document);
}

QByteArray inBody(const QByteArray &body)
{
    return "{\\rtf1\\ansi\\ansicpg932\\deff0{\\fonttbl{\\f0\\fnil\\fcharset128 F;}}" + body + "}";
}

QByteArray pict(const QByteArray &words, const QByteArray &data)
{
    return inBody("{\\pict" + words + " " + data.toHex() + "}");
}

// A metafile of one record that draws the bitmap, as word processors wrap a pasted one.
QByteArray metafileOf(const QByteArray &dib)
{
    QByteArray file(18, '\0');
    const auto words = static_cast<quint32>((6 + 22 + dib.size()) / 2);
    for (int shift : {0, 8, 16, 24})
        file += static_cast<char>(words >> shift);
    return file + "\x43\x0F" + QByteArray(22, '\0') + dib;
}

} // namespace

void tst_Rtf::readsWhatOtherProgramsWrite_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QString>("expected");

    QTest::newRow("word processor")
        << QByteArray(
               "{\\rtf1\\adeflang1025\\ansi\\ansicpg932\\uc2\\deff0\\stshfdbch13\r\n"
               "{\\fonttbl{\\f0\\froman\\fcharset0\\fprq2{\\*\\panose 02020603050405020304}Times New "
               "Roman;}\r\n"
               "{\\f13\\fnil\\fcharset128\\fprq1{\\*\\panose 02020609040205080304}\\'82\\'6c\\'82\\'72 "
               "\\'96\\'be\\'92\\'a9{\\*\\falt MS Mincho};}}\r\n"
               "{\\colortbl;\\red0\\green0\\blue0;\\red0\\green0\\blue255;}\r\n"
               "{\\stylesheet{\\ql\\fs21 \\snext0 \\sqformat Normal;}{\\*\\cs10 \\additive Default;}}\r\n"
               "{\\info{\\title \\'8e\\'52}{\\author "
               "{\\*\\ud\\u23665\\'8e\\'52}}{\\creatim\\yr2005\\mo4}}\r\n"
               "{\\*\\generator Some Writer 9;}\\paperw11906\\sectd\r\n"
               "\\pard\\plain \\qc \\fs21\\lang1033{\\b\\f13\\fs40\\cf2 "
               "\\'97\\'4c\\'8c\\'c0\\'89\\'ef\\'8e\\'d0}"
               "{\\f13  \\u23665\\'8e\\'52\\u30000\\'93\\'63}\\par }")
        << u"^{ＭＳ 明朝 20b #0000ff}有限会社{ＭＳ 明朝 10.5 -} 山田"_s;
    QTest::newRow("rich text box")
        << QByteArray(
               "{\\rtf1\\ansi\\deff0\\deftab720{\\fonttbl{\\f0\\fnil\\fcharset128 "
               "\\'82l\\'82r "
               "\\'83S\\'83V\\'83b\\'83N;}}\r\n{\\colortbl\\red0\\green0\\blue0;\\red255\\green0\\blue0;}\r\n"
               "\\deflang1041\\pard\\plain\\f0\\fs18\\cf0 A\\plain\\f0\\fs18\\cf1\\i\\ul\\strike B\\ul0\\i0 "
               "C\r\n"
               "\\par \\pard\\qr \\plain\\f0\\fs18 D\r\n\\par }\r\n\0")
        << u"<{ＭＳ ゴシック 9 #000000}A{ＭＳ ゴシック 9ius #ff0000}B{ＭＳ ゴシック 9s #ff0000}C\n>{ＭＳ ゴシック 9 #000000}D"_s;
    QTest::newRow("raw bytes with \\ { } as second byte")
        << inBody("\x83\x5c\x83\x7d\x83\x7b.") << u"<{F 12 -}ソマボ."_s;
    QTest::newRow("second byte escaped as a symbol") << inBody("\\'83\\\\ \\'83\\}") << u"<{F 12 -}ソ マ"_s;
    QTest::newRow("character over a line end") << inBody("\\'8e\r\n\\'52") << u"<{F 12 -}山"_s;
    QTest::newRow("half-width kana and ①") << inBody("\\'d4\\'cf\\'c0\\'de\\'87\\'40") << u"<{F 12 -}ﾔﾏﾀﾞ①"_s;
    QTest::newRow("fallback of one byte, default") << inBody("\\u12354?\\u-30179 ?.") << u"<{F 12 -}あ訝."_s;
    QTest::newRow("fallback lengths and groups")
        << inBody("{\\uc0\\u12354 i\\uc3\\u12356 \\'8e\\'52xu}\\u12358 ?e") << u"<{F 12 -}あiいuうe"_s;
    QTest::newRow("fallback ends with the group") << inBody("{\\uc5\\u12354 ab}c") << u"<{F 12 -}あc"_s;
    QTest::newRow("control word as fallback")
        << inBody("\\u12354\\tab b\\u12354\\'41b") << u"<{F 12 -}あbあb"_s;
    QTest::newRow("surrogates") << inBody("\\u-10174?\\u-8257?") << u"<{F 12 -}𠮿"_s;
    QTest::newRow("half a surrogate pair") << inBody("\\u-10174?a") << u"<{F 12 -}\uFFFDa"_s;
    QTest::newRow("marks of text documents")
        << inBody("a\\u-560?\\u-4?\\u8233?\\u-559?b") << u"<{F 12 -}ab"_s;
    QTest::newRow("Western code page")
        << QByteArray("{\\rtf1\\ansi\\ansicpg1252{\\fonttbl{\\f0\\fcharset0 G;}}\\f0 caf\\'e9 \\'80}")
        << u"<{G 12 -}café €"_s;
    QTest::newRow("UTF-8") << QByteArray("{\\rtf1\\ansi\\ansicpg65001{\\fonttbl{\\f0 G;}}\xe5\xb1\xb1}")
                           << u"<{G 12 -}山"_s;
    QTest::newRow("font table without groups")
        << QByteArray("{\\rtf1{\\fonttbl\\f1\\fcharset128 \\'8e\\'52;\\f2 K;}\\f1 a\\f2 b}")
        << u"<{山 12 -}a{K 12 -}b"_s;
    QTest::newRow("font for vertical lines")
        << QByteArray("{\\rtf1{\\fonttbl{\\f1\\fcharset128 @K;}}\\f1 a}") << u"<{K 12 -}a"_s;
    QTest::newRow("unknown font and colour") << inBody("\\f77\\cf99 a") << u"<{ＭＳ 明朝 12 -}a"_s;
    QTest::newRow("breaks, tabs, symbols")
        << inBody("a\\line b\\tab c\\~d\\_e\\-f\\{g\\}\\\\\\emdash h\\\r\ni")
        << u"<{F 12 -}a\u2028b\tc\u00A0d\u2011ef{g}\\—h\n<{F 12 -}i"_s;
    QTest::newRow("empty lines, last \\par ends the file")
        << inBody("a\\par\\par\\qr b\\par") << u"<{F 12 -}a\n<\n>{F 12 -}b"_s;
    QTest::newRow("unknown words and destinations")
        << inBody("a\\zzz\\zzz7\\averyveryveryverylongcontrolwordthatnobodyknows5 b{\\*\\zzz "
                  "hidden{x}}c{\\zzz d}")
        << u"<{F 12 -}abcd"_s;
    QTest::newRow("header and footer")
        << inBody("{\\header x}{\\footerr y}a{\\footnote z}") << u"<{F 12 -}a"_s;
    QTest::newRow("hidden text") << inBody("a{\\v b}c\\v d\\v0 e") << u"<{F 12 -}ace"_s;
    QTest::newRow("field shows its result")
        << inBody("{\\field{\\*\\fldinst HYPERLINK \"http://example.com\"}{\\fldrslt link}}")
        << u"<{F 12 -}link"_s;
    QTest::newRow("field without a star")
        << inBody("{\\field{\\fldinst INCLUDEPICTURE \"/etc/hostname\"}{\\fldrslt }}a") << u"<{F 12 -}a"_s;
    QTest::newRow("binary data passed over") << inBody("a{\\*\\zzz\\bin3 }}}}b") << u"<{F 12 -}ab"_s;
    QTest::newRow("table cells") << inBody("\\trowd a\\cell b\\cell\\row c")
                                 << u"<{F 12 -}a\tb\t\n<{F 12 -}c"_s;
    QTest::newRow("sizes within bounds")
        << inBody("\\fs0 a\\fs99999999999 b\\fs-5 c") << u"<{F 1 -}a{F 400 -}b{F 1 -}c"_s;
}

void tst_Rtf::readsWhatOtherProgramsWrite()
{
    QFETCH(QByteArray, rtf);
    QTEST(read(rtf), "expected");
}

void tst_Rtf::readsPictures_data()
{
    QTest::addColumn<QByteArray>("rtf");
    QTest::addColumn<QSizeF>("twips");
    const QImage image = samples::plainImage(6, 4);
    const QByteArray png = samples::encoded(image, "PNG");
    const QByteArray dib = samples::encoded(image, "BMP").mid(14);

    QTest::newRow("PNG, size told") << pict("\\pngblip\\picw6\\pich4\\picwgoal600\\pichgoal400", png)
                                    << QSizeF(600, 400);
    QTest::newRow("PNG, scaled") << pict("\\pngblip\\picwgoal600\\pichgoal400\\picscalex50\\picscaley200",
                                         png)
                                 << QSizeF(300, 800);
    QTest::newRow("PNG, size not told") << pict("\\pngblip", png) << QSizeF(90, 60);
    QTest::newRow("PNG, monstrous size")
        << pict("\\pngblip\\picw2147483647\\picwgoal2147483647\\pichgoal2147483647\\picscalex2147483647", png)
        << QSizeF(31680, 31680);
    QTest::newRow("PNG in a shape") << inBody("{\\*\\shppict{\\pict{\\*\\picprop x}\\pngblip " + png.toHex() +
                                              "}}{\\nonshppict{\\pict\\wmetafile8 00}}")
                                    << QSizeF(90, 60);
    QTest::newRow("JPEG") << pict("\\jpegblip", samples::encoded(image, "JPG")) << QSizeF(90, 60);
    QTest::newRow("binary") << inBody("{\\pict\\pngblip\\bin" + QByteArray::number(png.size()) + " " + png +
                                      "}")
                            << QSizeF(90, 60);
    QTest::newRow("bitmap") << pict("\\dibitmap0", dib) << QSizeF(90, 60);
    QTest::newRow("bitmap in a metafile") << pict("\\wmetafile8", metafileOf(dib)) << QSizeF(90, 60);
}

void tst_Rtf::readsPictures()
{
    QFETCH(QByteArray, rtf);
    const auto text = readRtf(rtf);
    QVERIFY(text);
    QCOMPARE(described(*text->document), u"<[6x4]"_s);
    QCOMPARE(text->picturesLeftOut, 0);
    const QTextCharFormat format = text->document->begin().begin().fragment().charFormat();
    QTEST(twipsOf(format.toImageFormat()), "twips");
}

void tst_Rtf::countsPicturesThatCannotBeShown()
{
    const auto text =
        readRtf(inBody("a{\\pict\\emfblip 0102}{\\pict\\pngblip 89504e47}{\\pict\\wmetafile8 ff}b"));
    QVERIFY(text);
    QCOMPARE(described(*text->document), u"<{F 12 -}ab"_s);
    QCOMPARE(text->picturesLeftOut, 3);
}

void tst_Rtf::readsForeignObjectByItsResult()
{
    QCOMPARE(read(inBody("{\\object\\objemb{\\*\\objclass Word.Document.8}{\\*\\objdata 0105000002}"
                         "{\\result shown}}")),
             u"<{F 12 -}shown"_s);
}

void tst_Rtf::roundTripKeepsFormats()
{
    RichTextDocument document;
    QTextCursor cursor(&document);
    const TextLook looks[] = {{u"ＭＳ 明朝"_s, 20.5, true, false, false, false, QColor(Qt::blue)},
                              {u"ＭＳ Ｐゴシック"_s, 9, false, true, true, true, QColor(1, 2, 3)},
                              {u"A;B{}\\"_s, 12, false, false, false, false, QColor()}};
    const QString texts[] = {u"有限会社　山田〜～−－‖∥¢£¬①㈱髙﨑"_s, u"\\{}¥ 𠮷😀\tｶﾅ\u2028次\u00A0é"_s,
                             u"A 12 b"_s};
    const Qt::Alignment alignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    for (size_t i = 0; i < 3; ++i) {
        QTextBlockFormat paragraph;
        paragraph.setAlignment(alignments[i]);
        cursor.setBlockFormat(paragraph);
        cursor.insertText(texts[i], formatOf(looks[i]));
        cursor.insertText(texts[2 - i], formatOf(looks[2 - i]));
        cursor.insertBlock(paragraph, formatOf(looks[1])); // an empty line of 9 points
        cursor.insertBlock();
    }
    const auto back = reread(document);
    const QString expected = described(document).replace(u"A;B{}\\"_s, u"AB{}\\"_s);
    QCOMPARE(described(*back), expected);
    QCOMPARE(back->begin().next().charFormat().fontPointSize(), 9.0);
}

void tst_Rtf::roundTripKeepsPictures()
{
    const QByteArray jpeg = samples::encoded(samples::plainImage(30, 20), "JPG");
    const QByteArray png = samples::encoded(samples::plainImage(10, 20, Qt::green), "PNG");
    RichTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(u"前"_s);
    cursor.insertImage(document.addPicture(*decodePicture(jpeg, 1000), QSizeF(1234, 567)));
    const QTextImageFormat twice = document.addPicture(*decodePicture(png, 1000));
    cursor.insertImage(twice);
    cursor.insertImage(twice);

    const auto back = reread(document);
    QCOMPARE(described(*back), u"<{ＭＳ 明朝 12 -}前[30x20][10x20]"_s); // equal neighbours are one run
    QCOMPARE(back->characterCount(), document.characterCount());
    auto it = back->begin().begin();
    const QTextCharFormat first = (++it).fragment().charFormat();
    QCOMPARE(back->picture(first)->data, jpeg);
    QCOMPARE(twipsOf(first.toImageFormat()), QSizeF(1234, 567));
    QCOMPARE(back->picture((++it).fragment().charFormat())->data, png);
}

void tst_Rtf::roundTripKeepsAttachments()
{
    const Attachment attachments[] = {{u"見積書 ソ表.doc"_s, samples::allBytes()},
                                      {u"𠮷野😀{}\\.txt"_s.remove(u'\\'), {}},
                                      {u"a.bin"_s, QByteArray(300'000, '\xff')}};
    RichTextDocument document;
    QTextCursor cursor(&document);
    for (const Attachment &attachment : attachments) {
        cursor.insertImage(document.addAttachment(attachment));
        cursor.insertText(u"と"_s);
    }
    const auto back = reread(*reread(document));
    QCOMPARE(described(*back), described(document));
    auto it = back->begin().begin();
    for (const Attachment &attachment : attachments) {
        QCOMPARE(back->attachment(it.fragment().charFormat()), attachment);
        ++ ++it;
    }
}

void tst_Rtf::packageNameLosesFolders_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Windows folder") << u"C:\\Temp\\a.doc"_s << u"a.doc"_s;
    QTest::newRow("climbing") << u"../../.bashrc"_s << u".bashrc"_s;
    QTest::newRow("folder only") << u"/etc/"_s << u"添付ファイル"_s;
    QTest::newRow("dots") << u".."_s << u"添付ファイル"_s;
    QTest::newRow("control characters") << u"a\nb\tc.doc"_s << u"abc.doc"_s;
}

void tst_Rtf::packageNameLosesFolders()
{
    QFETCH(QString, stored);
    const auto attachment = decodePackage(encodePackage({stored, "x"}));
    QVERIFY(attachment);
    QTEST(attachment->fileName, "expected");
}

void tst_Rtf::writesCodePageWhereItCan()
{
    RichTextDocument document;
    QTextCursor(&document).insertText(u"山ソ𠮷¥"_s);
    const QByteArray rtf = *writeRtf(document);
    QVERIFY(rtf.contains("\\'8e\\'52\\'83\\'5c\\u-10174?\\u-8265?\\u165?"));
    QVERIFY(rtf.contains("\\fcharset128 \\'82\\'6c\\'82\\'72 \\'96\\'be\\'92\\'a9;"));
}

void tst_Rtf::savesOverOldFileOnlyWhenComplete()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(u"社名.rtf"_s);
    RichTextDocument document;
    QTextCursor(&document).insertText(u"一"_s);
    QVERIFY(saveRtfFile(document, name));
    QTextCursor(&document).insertText(QString(250'000, u'あ'));
    QVERIFY(!saveRtfFile(document, name));
    const auto text = readRtfFile(name);
    QVERIFY(text);
    QCOMPARE(text->document->toPlainText(), u"一"_s);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{u"社名.rtf"_s});

    QVERIFY(!saveRtfFile(*text->document, folder.filePath(u"none/a.rtf"_s)));
}

void tst_Rtf::tellsWhatCannotBeOpened_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray() << u"リッチテキスト形式"_s;
    QTest::newRow("text") << QByteArray("有限会社") << u"リッチテキスト形式"_s;
    QTest::newRow("other program's file") << QByteArray("\xD0\xCF\x11\xE0") << u"リッチテキスト形式"_s;
    QTest::newRow("cut off") << QByteArray("{\\rtf1 a") << u"壊れている"_s;
    QTest::newRow("too large") << QByteArray("{\\rtf1 ") + QByteArray(33 * 1024 * 1024, ' ')
                               << u"大きすぎる"_s;
}

void tst_Rtf::tellsWhatCannotBeOpened()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"a.rtf"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    file.close();
    const auto text = readRtfFile(file.fileName());
    QVERIFY(!text);
    QVERIFY2(text.error().text.contains(reason), qPrintable(text.error().text));
    QVERIFY(!readRtfFile(folder.path()));
    QVERIFY(!readRtfFile(folder.filePath(u"absent.rtf"_s)));
}

void tst_Rtf::foreignImageNamesLoadNothing()
{
    QTemporaryDir folder;
    const QString name = folder.filePath(u"red.png"_s);
    QVERIFY(samples::plainImage(40, 40).save(name));
    RichTextDocument document;
    document.setHtml(
        u"<img src='%1' width=40 height=40><img src='file://%1' width=40 height=40>"_s.arg(name));
    QTextImageFormat format;
    format.setName(name);
    QTextCursor(&document).insertImage(format);

    QImage canvas(300, 100, QImage::Format_RGB32);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    document.drawContents(&painter);
    painter.end();
    const QImage blank = samples::plainImage(300, 100, Qt::white);
    QCOMPARE(canvas, blank);
}

void tst_Rtf::copiesOnlyWhatTheBlockKnows()
{
    QTextDocument html;
    html.setHtml(u"<p align=right><b>太字</b> <a href='http://example.com'>link</a>"
                 u"<img src='/tmp/x.png'></p><table><tr><td>1</td><td>2</td></tr></table>"_s);
    RichTextDocument document;
    document.insertDocument(QTextCursor(&document), html);
    QVERIFY(described(document).startsWith(u'>'));
    QVERIFY(document.toPlainText().startsWith(u"太字 link"_s));
    QVERIFY(!document.toPlainText().contains(QChar::ObjectReplacementCharacter));
    QVERIFY(!document.toHtml().contains(u"example.com"_s));
}

QTEST_MAIN(tst_Rtf)
#include "tst_rtf.moc"
