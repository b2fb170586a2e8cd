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
    static const QRegularExpression bare(u"^[0-9]{13}$"_s);
    QString number = text::withPlainHyphens(text::toHalfWidthAscii(typed)).toUpper();
    number.remove(u' ').remove(u'-');
    return bare.match(number).hasMatch() ? u'T' + number : number;
}

bool isRegistrationNumber(const QString &number)
{
    static const QRegularExpression pattern(u"^T[0-9]{13}$"_s);
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

} // namespace masters
