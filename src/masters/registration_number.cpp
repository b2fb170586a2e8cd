#include "masters/registration_number.h"

#include "text/width.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace masters
{

namespace
{

constexpr int digits = 13;

} // namespace

QString registrationNumber(const QString &typed)
{
    static const QRegularExpression bare(u"\\A[0-9]{13}\\z"_s);
    // Copied out of a letter or off a screen it has words before it, and characters that nobody sees.
    static const QRegularExpression beside(u"\\A[^0-9]*登録番号[:]?|[-\\s\u200B-\u200F\u2060\uFEFF]"_s,
                                           QRegularExpression::UseUnicodePropertiesOption);
    QString number = text::withPlainHyphens(text::toHalfWidthAscii(typed)).toUpper();
    number.remove(beside);
    return bare.match(number).hasMatch() ? u'T' + number : number;
}

bool isRegistrationNumber(const QString &number)
{
    static const QRegularExpression pattern(u"\\AT[0-9]{13}\\z"_s);
    return pattern.match(number).hasMatch();
}

// The first digit is 9 less what is left of the sum of the others by 9, where every second one from the right
// counts twice (ordinance on the designation of corporate numbers, article 2).
bool isCorporate(const QString &number)
{
    if (!isRegistrationNumber(number))
        return false;
    int sum = 0;
    for (int place = 1; place < digits; ++place)
        sum += number.at(digits + 1 - place).digitValue() * (place % 2 == 0 ? 2 : 1);
    return number.at(1).digitValue() == 9 - sum % 9;
}

QString registrationRemark(const QString &typed)
{
    const QString number = registrationNumber(typed);
    if (number.isEmpty() || isCorporate(number))
        return {};
    return isRegistrationNumber(number)
               ? u"法人番号の検査数字と合いません。法人のときは、番号を確かめてください。"_s
               : u"登録番号は「T」と数字13桁です。"_s;
}

} // namespace masters
