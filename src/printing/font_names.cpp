#include "printing/font_names.h"

#include "text/width.h"

#include <array>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

enum Style { Mincho, ProportionalMincho, Gothic, ProportionalGothic };

// A face goes by its Japanese and its English name, whichever the system was asked for.
struct Face
{
    QStringList names;
    Style style;
};

const std::array<Face, 4> &windowsFaces()
{
    static const std::array<Face, 4> faces{{
        {{u"ＭＳ 明朝"_s, u"MS Mincho"_s}, Mincho},
        {{u"ＭＳ Ｐ明朝"_s, u"MS PMincho"_s}, ProportionalMincho},
        {{u"ＭＳ ゴシック"_s, u"MS Gothic"_s}, Gothic},
        {{u"ＭＳ Ｐゴシック"_s, u"MS PGothic"_s}, ProportionalGothic},
    }};
    return faces;
}

// The IPA faces come first: text copied out of a PDF set in them is the text that went in, while the Noto
// faces give some characters back as the radicals that share their shape.
QStringList standIns(Style style)
{
    static const QStringList mincho{u"IPAMincho"_s, u"IPA明朝"_s, u"IPAexMincho"_s, u"IPAex明朝"_s};
    static const QStringList gothic{u"IPAGothic"_s, u"IPAゴシック"_s, u"IPAexGothic"_s, u"IPAexゴシック"_s};
    static const QStringList pMincho{u"IPAPMincho"_s, u"IPA P明朝"_s};
    static const QStringList pGothic{u"IPAPGothic"_s, u"IPA Pゴシック"_s};
    static const QStringList serif{u"Noto Serif CJK JP"_s};
    static const QStringList sans{u"Noto Sans Mono CJK JP"_s, u"Noto Sans CJK JP"_s};
    switch (style) {
    case Mincho:
        return mincho + pMincho + serif + gothic + sans;
    case ProportionalMincho:
        return pMincho + mincho + serif + pGothic + sans;
    case Gothic:
        return gothic + pGothic + sans + mincho + serif;
    case ProportionalGothic:
        break;
    }
    return pGothic + gothic + sans + pMincho + serif;
}

// Names compare without regard to case, width ("ＭＳ" and "MS") and blanks.
QString comparable(const QString &face) { return text::toHalfWidthAscii(face).remove(u' ').toCaseFolded(); }

QString found(const QString &face, const QStringList &installed)
{
    const QString wanted = comparable(face);
    for (const QString &candidate : installed) {
        if (comparable(candidate) == wanted)
            return candidate;
    }
    return {};
}

QString firstFound(const QStringList &faces, const QStringList &installed)
{
    for (const QString &face : faces) {
        if (const QString name = found(face, installed); !name.isEmpty())
            return name;
    }
    return {};
}

Style styleByName(const QString &face)
{
    static const QStringList gothicMarks{u"ゴシック"_s, u"gothic"_s, u"sans"_s, u"メイリオ"_s, u"meiryo"_s};
    for (const QString &mark : gothicMarks) {
        if (face.contains(mark, Qt::CaseInsensitive))
            return Gothic;
    }
    return Mincho;
}

} // namespace

QString withoutVerticalMark(const QString &face) { return face.startsWith(u'@') ? face.sliced(1) : face; }

QString installedFace(const QString &stored, const QStringList &installed)
{
    const QString face = withoutVerticalMark(stored);
    if (const QString name = found(face, installed); !face.isEmpty() && !name.isEmpty())
        return name;
    for (const Face &known : windowsFaces()) {
        if (!firstFound({face}, known.names).isEmpty())
            return firstFound(known.names + standIns(known.style), installed);
    }
    return firstFound(standIns(styleByName(face)), installed);
}

} // namespace printing
