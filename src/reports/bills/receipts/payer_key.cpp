#include "reports/bills/receipts/payer_key.h"

#include "text/like.h"
#include "text/width.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

// As they are left by normalisedReading(): half-width, without small kana.
const QString companyWords[] = {
    u"株式会社"_s,           u"有限会社"_s,     u"合同会社"_s,     u"合資会社"_s,     u"合名会社"_s,
    u"一般社団法人"_s,       u"公益社団法人"_s, u"一般財団法人"_s, u"公益財団法人"_s, u"社会福祉法人"_s,
    u"特定非営利活動法人"_s, u"医療法人社団"_s, u"医療法人"_s,     u"学校法人"_s,     u"宗教法人"_s,
    u"農業協同組合"_s,       u"㈱"_s,           u"㈲"_s,           u"ｶﾌﾞｼｷｶﾞｲｼﾔ"_s,   u"ｶﾌﾞｼｷｶｲｼﾔ"_s,
    u"ﾕｳｹﾞﾝｶﾞｲｼﾔ"_s,         u"ﾕｳｹﾞﾝｶｲｼﾔ"_s,    u"ｺﾞｳﾄﾞｳｶﾞｲｼﾔ"_s,  u"ｺﾞｳｼｶﾞｲｼﾔ"_s,    u"ｺﾞｳﾒｲｶﾞｲｼﾔ"_s};

// Banks shorten them before or behind the name, in the alphabet of their wires: ｶ) (ｶ) (ｶ.
const QRegularExpression &shortForms()
{
    static const QRegularExpression forms(
        u"^(?:株|有|同|資|名|ｶ|ﾕ|ﾄﾞ|ｼ|ﾒ|ｲ|ｲｼﾔ|ｼﾔ|ｻﾞｲ|ｶﾞｸ|ﾌｸ|ｼﾕｳ|ﾄｸﾋ|ﾉｳｷﾖｳ)\\)|"
        "\\((?:株|有|同|資|名|ｶ|ﾕ|ﾄﾞ|ｼ|ﾒ|ｲ|ｲｼﾔ|ｼﾔ|ｻﾞｲ|ｶﾞｸ|ﾌｸ|ｼﾕｳ|ﾄｸﾋ|ﾉｳｷﾖｳ)\\)|"
        "\\((?:株|有|同|資|名|ｶ|ﾕ|ﾄﾞ|ｼ|ﾒ|ｲ)$"_s);
    return forms;
}

const QRegularExpression &leadingFigures()
{
    static const QRegularExpression figures(u"^[0-9][0-9 -]*(?=\\D)"_s);
    return figures;
}

// Folded, 髙橋 is 高橋.
QString plain(const QString &name)
{
    const QString folded = QString::fromStdU16String(text::folded(name));
    return text::normalisedReading(text::toHalfWidth(folded)).trimmed();
}

} // namespace

QString payerNumber(const QString &name)
{
    QString figures = leadingFigures().match(plain(name)).captured();
    figures.removeIf([](QChar c) { return !c.isDigit(); });
    return figures;
}

QString payerKey(const QString &name)
{
    static const QRegularExpression honorific(u"(様|殿|御中|ｻﾏ)$"_s);
    QString key = plain(name).remove(leadingFigures()).trimmed().toUpper();
    key.remove(shortForms());
    for (const QString &word : companyWords)
        key.remove(word);
    key.removeIf([](QChar c) { return !c.isLetterOrNumber() && c != u'ﾞ' && c != u'ﾟ'; });
    key.remove(honorific);
    return key.replace(u'ｦ', u'ｵ');
}

} // namespace reports
