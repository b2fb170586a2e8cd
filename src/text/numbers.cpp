#include "text/numbers.h"

#include "text/width.h"

#include <QByteArray>
#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace text
{

namespace
{

// Whether the commas of \a whole, the part before a point, stand between groups of three digits: in "2,5" the
// comma is a point of other countries, and taking it for nothing would make 25 of it.
bool groupsAreOfThree(QStringView whole)
{
    const qsizetype first = whole.indexOf(u',');
    bool fits = first != 0 && first <= 3;
    for (qsizetype at = first; fits && at >= 0;) {
        const qsizetype next = whole.indexOf(u',', at + 1);
        fits = (next < 0 ? whole.size() : next) - at == 4;
        at = next;
    }
    return fits;
}

// The plain ASCII of a typed number, "-1234.50": no plus sign, no separators, a digit at both ends of
// a point. Nothing when it is no number.
std::optional<QByteArray> plainNumber(QStringView s)
{
    const QString typed = toHalfWidthAscii(s).trimmed();
    const qsizetype sign = typed.startsWith(u'-') || typed.startsWith(u'+') ? 1 : 0;
    const qsizetype point = typed.indexOf(u'.');
    const QString whole = typed.mid(sign, point < 0 ? -1 : point - sign);
    const QString decimals = point < 0 ? QString() : typed.mid(point + 1);
    const QString digits = QString(whole).remove(u',');
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if ((digits.isEmpty() && decimals.isEmpty()) || !std::all_of(digits.cbegin(), digits.cend(), isDigit) ||
        !std::all_of(decimals.cbegin(), decimals.cend(), isDigit) || !groupsAreOfThree(whole))
        return std::nullopt;
    QByteArray plain = typed.startsWith(u'-') ? "-" : "";
    plain += digits.isEmpty() ? QByteArray("0") : digits.toLatin1();
    if (point >= 0)
        plain += '.' + (decimals.isEmpty() ? QByteArray("0") : decimals.toLatin1());
    return plain;
}

bool isMinus(QChar c) { return QStringView(u"-‐‑‒–—―ーｰ▲△").contains(c); }

// On a Japanese keyboard the key for ¥ gives a backslash.
bool isYen(QChar c) { return QStringView(u"¥￥\\").contains(c); }

// An amount as clerks write it, "▲￥1,234円", "¥-500", as a number with at most a plain sign before it.
QString withoutMoneyMarks(QStringView s)
{
    QString typed = toHalfWidthAscii(s).trimmed();
    if (typed.endsWith(u'円'))
        typed.chop(1);
    QString sign;
    bool yen = false;
    qsizetype at = 0;
    for (; at < typed.size(); ++at) {
        if (!yen && isYen(typed[at]))
            yen = true;
        else if (sign.isEmpty() && (isMinus(typed[at]) || typed[at] == u'+'))
            sign = typed[at] == u'+' ? u'+' : u'-';
        else
            break;
    }
    return sign + typed.mid(at);
}

// Fifteen significant digits are what a double surely holds; the rest is noise of binary arithmetic, which
// would show 0.1 × 3 as 0.30000000000000004 and round 2.675 down. From 1e15 on there are only whole numbers
// of interest, and they are left as they are.
double withoutNoise(double value)
{
    if (!(std::abs(value) < 1e15))
        return value;
    return QByteArray::number(value, 'g', 15).toDouble();
}

bool isWhole(double value) { return std::trunc(value) == value; }

// What lists show where a stored value is no amount, and where a sum holds one.
QString uncountable() { return QStringLiteral("計算不能"); }

// "#,##0" with as many decimals, rounded half away from zero.
QString fixedPoint(double value, int decimals)
{
    constexpr double beyondAllAmounts = 1e18;
    if (!(std::abs(value) < beyondAllAmounts))
        return uncountable();
    const double units = std::round(withoutNoise(std::abs(value) * std::pow(10.0, decimals)));
    QString result = QString::number(units, 'f', 0).rightJustified(decimals + 1, u'0');
    const qsizetype wholeDigits = result.size() - decimals;
    if (decimals > 0)
        result.insert(wholeDigits, u'.');
    for (qsizetype at = wholeDigits - 3; at > 0; at -= 3)
        result.insert(at, u',');
    return value < 0 && units != 0 ? QString(u'-' + result) : result;
}

} // namespace

std::optional<double> parseNumber(QStringView s)
{
    const std::optional<QByteArray> plain = plainNumber(withoutMoneyMarks(s));
    if (!plain)
        return std::nullopt;
    double value = 0;
    const auto [end, error] = std::from_chars(plain->begin(), plain->end(), value, std::chars_format::fixed);
    if (error == std::errc::result_out_of_range) {
        // Too large, or nearer to 0 than a double can tell.
        const QByteArray whole = plain->split('.').constFirst();
        const bool tiny = whole.count('0') + whole.count('-') == whole.size();
        return tiny ? std::optional(0.0) : std::nullopt;
    }
    return value == 0 ? 0.0 : value; // never -0
}

std::optional<qint64> parseInteger(QStringView s)
{
    std::optional<QByteArray> plain = plainNumber(s);
    if (!plain)
        return std::nullopt;
    if (const qsizetype point = plain->indexOf('.'); point >= 0) {
        const QByteArray decimals = plain->mid(point + 1);
        if (decimals.count('0') != decimals.size())
            return std::nullopt;
        plain->truncate(point);
    }
    bool fits = false;
    const qint64 value = plain->toLongLong(&fits);
    return fits ? std::optional(value) : std::nullopt;
}

double numberOrZero(QStringView s) { return parseNumber(s).value_or(0); }

QString formatAmount(double value) { return fixedPoint(value, 0); }

QString formatQuantity(double value) { return fixedPoint(value, isWhole(withoutNoise(value)) ? 0 : 2); }

QString formatPlain(double value)
{
    if (!std::isfinite(value))
        return uncountable();
    const double shown = withoutNoise(value);
    return shown == 0 ? QStringLiteral("0") : QString::number(shown, 'f', QLocale::FloatingPointShortest);
}

} // namespace text
