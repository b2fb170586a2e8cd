#include "registers/postal/postal_folding.h"

#include "registers/postal/postal_characters.h"
#include "text/kanji_forms.h"
#include "text/width.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

QChar modernForm(QChar c)
{
    static const QHash<QChar, QChar> forms = [] {
        QHash<QChar, QChar> result;
        for (const text::KanjiForms &each : text::kanjiForms)
            result.insert(QChar(each.old), QChar(each.common));
        return result;
    }();
    return isKanji(c) || c >= u'\uf900' ? forms.value(c, c) : c;
}

// ﾉ and １: one width for each.
QString inOneWidth(QStringView name)
{
    QString text = text::toHalfWidthAscii(name);
    const auto isHalfKana = [](QChar c) { return c >= u'｡' && c <= u'ﾟ'; };
    if (std::any_of(text.cbegin(), text.cend(), isHalfKana))
        text = text::toHalfWidthAscii(text::toFullWidth(text));
    return text;
}

// Between two kanji these are written in one way, in another or not at all.
bool isParticle(const QString &s, qsizetype i)
{
    static const QString particles = u"ヶヵケカガがッツつのノ之"_s;
    return i > 0 && i + 1 < s.size() && particles.contains(s[i]) && isKanji(s[i - 1]) && isKanji(s[i + 1]);
}

// 北一条 as 北1条.
QString withDigits(const QString &name)
{
    return withNumbers(name, numberKanji, true,
                       [](QStringView run) { return QString::number(valueOfKanji(run)); });
}

} // namespace

QString foldedPlace(QStringView name)
{
    QString text = inOneWidth(name);
    for (QChar &c : text)
        c = modernForm(c);
    text.remove(u' ').remove(u"大字"_s).remove(u'字');
    text.replace(u"恵比須"_s, u"恵比寿"_s);
    // The ways of Kyoto: 上ル, 上る.
    for (const QChar way : {u'上', u'下', u'入'})
        text.replace(QString(way) + u'ル', QString(way) + u'る');
    QString plain;
    for (qsizetype i = 0; i < text.size(); ++i)
        if (!isParticle(text, i))
            plain += text[i];
    return withDigits(plain);
}

} // namespace registers
