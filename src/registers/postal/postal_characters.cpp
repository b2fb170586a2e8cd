#include "registers/postal/postal_characters.h"

#include <algorithm>

namespace registers
{

namespace
{

constexpr QStringView kanjiDigits = u"〇一二三四五六七八九";

} // namespace

bool isKanji(QChar c) { return (c >= u'一' && c <= u'\u9fff') || c == u'々'; }

bool isKanjiDigit(QChar c) { return kanjiDigits.contains(c) || c == u'十' || c == u'百'; }

bool countsBefore(QStringView rest)
{
    return !rest.isEmpty() && QStringView(u"条丁番号線区地").contains(rest.front());
}

int valueOfKanji(QStringView digits)
{
    int sum = 0;
    int digit = 0;
    for (const QChar c : digits) {
        if (c == u'十' || c == u'百') {
            sum += std::max(digit, 1) * (c == u'十' ? 10 : 100);
            digit = 0;
        } else {
            digit = digit * 10 + static_cast<int>(kanjiDigits.indexOf(c));
        }
    }
    return sum + digit;
}

} // namespace registers
