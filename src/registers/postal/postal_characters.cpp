#include "registers/postal/postal_characters.h"

#include <algorithm>

namespace registers
{

bool isKanji(QChar c) { return (c >= u'一' && c <= u'\u9fff') || c == u'々'; }

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

QString withNumbers(const QString &name, QStringView digits, bool counted,
                    const std::function<QString(QStringView)> &write)
{
    QString text;
    for (qsizetype i = 0; i < name.size();) {
        qsizetype end = i;
        while (end < name.size() && digits.contains(name[end]) && end - i < 4)
            ++end;
        const QStringView run = QStringView(name).sliced(i, end - i);
        if (run.isEmpty())
            text += name[i++];
        else if (counted && !countsBefore(QStringView(name).sliced(end)))
            text += run;
        else
            text += write(run);
        i = std::max(i, end);
    }
    return text;
}

} // namespace registers
