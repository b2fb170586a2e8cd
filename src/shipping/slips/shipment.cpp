#include "shipping/slips/shipment.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const QString collect = u"宅急便　コレクト"_s;

} // namespace

const QStringList &shippingForms()
{
    static const QStringList forms{u"宅急便"_s,           collect,
                                   u"佐川急便"_s,         u"ゆうパック"_s,
                                   u"宛名ラベル"_s,       u"オリジナル荷札１"_s,
                                   u"オリジナル荷札２"_s, u"オリジナル荷札３"_s,
                                   u"オリジナル伝票"_s};
    return forms;
}

bool isCollected(const QString &form) { return form == collect; }

const QStringList &timeSlots()
{
    static const QStringList wishes{u""_s,      u"午前中"_s, u"12-14"_s, u"14-16"_s, u"16-18"_s,
                                    u"18-20"_s, u"18-21"_s,  u"19-21"_s, u"20-21"_s};
    return wishes;
}

const QStringList &coolings()
{
    static const QStringList kinds{u""_s, u"冷蔵"_s, u"冷凍"_s};
    return kinds;
}

QString withBlanksForBreaks(QString text)
{
    if (text.isEmpty()) // a null one stays null, which is stored as no value
        return text;
    text.replace(u"\r\n"_s, u" "_s);
    for (QChar &c : text) {
        if (c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return text;
}

QString nameKey(const Party &party)
{
    constexpr qsizetype longest = 16;
    QString key = withBlanksForBreaks(party.name1 + party.name2).left(longest);
    if (!key.isEmpty() && key.back().isHighSurrogate())
        key.chop(1);
    return key.trimmed();
}

} // namespace shipping
