#include "masters/rich_text/rtf_words.h"

namespace masters
{

namespace
{

using Kind = RtfWord::Kind;
using Words = QHash<QByteArray, RtfWord>;

RtfWord plain(Kind kind)
{
    RtfWord word;
    word.kind = kind;
    return word;
}

void addDestinations(Words &words)
{
    const auto add = [&words](RtfDestination destination, std::initializer_list<const char *> names) {
        for (const char *name : names) {
            RtfWord &word = words[name];
            word.kind = Kind::Destination;
            word.destination = destination;
        }
    };
    add(RtfDestination::FontTable, {"fonttbl"});
    add(RtfDestination::ColourTable, {"colortbl"});
    add(RtfDestination::Picture, {"pict"});
    add(RtfDestination::ObjectData, {"objdata"});
    // Written with \* by some, and still to be shown.
    add(RtfDestination::Body, {"shppict"});
    // Text that is no part of the page's body; not all of them come with \*.
    add(RtfDestination::Skip,
        {"stylesheet", "info",     "header",     "headerl",   "headerr",           "headerf",
         "footer",     "footerl",  "footerr",    "footerf",   "footnote",          "ftnsep",
         "ftnsepc",    "ftncn",    "annotation", "fldinst",   "nonshppict",        "objclass",
         "objname",    "objalias", "objsect",    "listtable", "listoverridetable", "revtbl",
         "rsidtbl",    "xe",       "tc",         "comment",   "private1",          "falt",
         "panose",     "fontemb",  "fontfile",   "blipuid",   "picprop",           "shpinst",
         "ud"});
}

void addToggles(Words &words)
{
    const auto add = [&words](bool RtfCharacters::*toggle, std::initializer_list<const char *> names) {
        for (const char *name : names) {
            RtfWord &word = words[name];
            word.kind = Kind::Toggle;
            word.toggle = toggle;
        }
    };
    add(&RtfCharacters::bold, {"b"});
    add(&RtfCharacters::italic, {"i"});
    add(&RtfCharacters::strikeOut, {"strike", "striked"});
    add(&RtfCharacters::hidden, {"v"});
    add(&RtfCharacters::underline, {"ul", "uld", "uldash", "uldashd", "uldashdd", "uldb", "ulhair", "ulhwave",
                                    "ulldash", "ulth", "ulthd", "ulthdash", "ulw", "ulwave"});
}

void addParagraphs(Words &words)
{
    const auto add = [&words](const char *name, Qt::Alignment alignment) {
        RtfWord &word = words[name];
        word.kind = Kind::Alignment;
        word.alignment = alignment;
    };
    add("ql", Qt::AlignLeft);
    add("qc", Qt::AlignHCenter);
    add("qr", Qt::AlignRight);
    add("qj", Qt::AlignJustify);
    add("qd", Qt::AlignJustify);
    for (const char *name : {"par", "sect", "page", "row"})
        words[name] = plain(Kind::EndOfParagraph);
}

void addCharacters(Words &words)
{
    const auto add = [&words](const char *name, char16_t character) {
        RtfWord &word = words[name];
        word.kind = Kind::Character;
        word.character = character;
    };
    add("tab", u'\t');
    add("cell", u'\t');
    add("line", u'\u2028');
    add("emdash", u'\u2014');
    add("endash", u'\u2013');
    add("bullet", u'\u2022');
    add("lquote", u'\u2018');
    add("rquote", u'\u2019');
    add("ldblquote", u'\u201C');
    add("rdblquote", u'\u201D');
    add("emspace", u'\u2003');
    add("enspace", u'\u2002');
    add("qmspace", u'\u2005');
}

void addPictureWords(Words &words)
{
    const auto addKind = [&words](const char *name, RtfPicture::Kind kind) {
        RtfWord &word = words[name];
        word.kind = Kind::PictureKind;
        word.pictureKind = kind;
    };
    addKind("pngblip", RtfPicture::Kind::Sniffed);
    addKind("jpegblip", RtfPicture::Kind::Sniffed);
    addKind("dibitmap", RtfPicture::Kind::Dib);
    addKind("wmetafile", RtfPicture::Kind::Metafile);
    const auto addSize = [&words](const char *name, int RtfPicture::*size) {
        RtfWord &word = words[name];
        word.kind = Kind::PictureSize;
        word.pictureSize = size;
    };
    addSize("picwgoal", &RtfPicture::goalWidth);
    addSize("pichgoal", &RtfPicture::goalHeight);
    addSize("picscalex", &RtfPicture::scaleX);
    addSize("picscaley", &RtfPicture::scaleY);
}

void addColourParts(Words &words)
{
    const auto add = [&words](const char *name, RtfColourTable::SetPart setPart) {
        RtfWord &word = words[name];
        word.kind = Kind::ColourPart;
        word.setPart = setPart;
    };
    add("red", &QColor::setRed);
    add("green", &QColor::setGreen);
    add("blue", &QColor::setBlue);
}

Words allWords()
{
    Words words{{"object", plain(Kind::Object)},
                {"result", plain(Kind::ObjectResult)},
                {"ulnone", plain(Kind::UnderlineOff)},
                {"pard", plain(Kind::ResetParagraph)},
                {"plain", plain(Kind::ResetCharacters)},
                {"u", plain(Kind::Unicode)},
                {"uc", plain(Kind::FallbackLength)},
                {"ansicpg", plain(Kind::CodePage)},
                {"deff", plain(Kind::DefaultFont)},
                {"f", plain(Kind::Font)},
                {"fs", plain(Kind::FontSize)},
                {"fcharset", plain(Kind::FontCharset)},
                {"cf", plain(Kind::Colour)}};
    addDestinations(words);
    addToggles(words);
    addParagraphs(words);
    addCharacters(words);
    addPictureWords(words);
    addColourParts(words);
    return words;
}

} // namespace

RtfWord rtfWord(QByteArrayView name)
{
    static const Words words = allWords();
    return words.value(QByteArray::fromRawData(name.data(), name.size()));
}

} // namespace masters
