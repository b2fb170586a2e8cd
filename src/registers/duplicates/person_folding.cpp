#include "registers/duplicates/person_folding.h"

#include "registers/postal/postal_folding.h"
#include "text/like.h"
#include "text/width.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qsizetype shortestPhone = 9; // digits

QString plain(const QString &text)
{
    QString folded = QString::fromStdU16String(text::folded(text));
    folded.removeIf([](QChar c) { return c.isSpace(); });
    return folded;
}

} // namespace

QString foldedPerson(const QString &name)
{
    static const QRegularExpression company(uR"(\(株\)|株式会社|㈱)"_s);
    static const QRegularExpression limited(uR"(\(有\)|有限会社|㈲)"_s);
    static const QRegularExpression honorific(u"(様|殿|御中|先生)$"_s);
    static const QRegularExpression marks(u"[・･.,．，、。]"_s);
    return plain(name).replace(company, u"㈱"_s).replace(limited, u"㈲"_s).remove(honorific).remove(marks);
}

QString foldedAddress(const QString &address)
{
    static const QRegularExpression prefecture(
        u"^(東京都|北海道|京都府|大阪府|..県|神奈川県|和歌山県|鹿児島県)"_s);
    static const QRegularExpression between(u"(丁目|番地ノ?|番|号|ノ)(?=[0-9])"_s);
    static const QRegularExpression behind(u"(丁目|番地|番|号)(?![0-9])"_s);
    // Folded, の is ノ. 北1条西2-3 goes on behind its first number.
    static const QRegularExpression number(u"^(.*?[0-9](?![0-9条線])[0-9-]*)"_s);
    const QString text = plain(foldedPlace(text::withPlainHyphens(address)))
                             .remove(prefecture)
                             .replace(between, u"-"_s)
                             .replace(behind, u"|"_s);
    const auto upToNumber = number.match(text);
    QString folded = upToNumber.hasMatch() ? upToNumber.captured(1) : text;
    while (folded.endsWith(u'-'))
        folded.chop(1);
    return folded.remove(u'|');
}

QString foldedPhone(const QString &phone)
{
    QString plain = text::toHalfWidthAscii(phone).simplified();
    if (plain.startsWith("+81"_L1))
        plain = u'0' + plain.sliced(3).remove(u"(0)"_s);
    plain.removeIf([](QChar c) { return !c.isDigit(); });
    return plain.size() >= shortestPhone ? plain : QString();
}

} // namespace registers
