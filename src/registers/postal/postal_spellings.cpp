#include "registers/postal/postal_spellings.h"

#include <algorithm>
#include <array>
#include <functional>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// A name with several such places would otherwise get hundreds of spellings.
constexpr qsizetype mostSpellings = 24;

bool isKanji(QChar c) { return (c >= u'一' && c <= u'\u9fff') || c == u'々'; }

bool isKatakana(QChar c) { return c >= u'ァ' && c <= u'ー' && c != u'ヶ' && c != u'ヵ'; }

// --- Small ke and the particle no ---

// Whether the character at \a i is the "ga" of 霞が関, however it is written.
bool isGa(const QString &s, qsizetype i)
{
    const QChar before = s[i - 1];
    const QChar after = i + 1 < s.size() ? s[i + 1] : QChar();
    if (s[i] == u'ヶ' || s[i] == u'ヵ')
        return true;
    if (s[i] == u'ケ' || s[i] == u'カ' || s[i] == u'ガ')
        return !isKatakana(before) && !isKatakana(after);
    return s[i] == u'が' && isKanji(after);
}

// Whether the character at \a i is the "no" of 丸の内, however it is written.
bool isNo(const QString &s, qsizetype i)
{
    return QStringView(u"のノ之").contains(s[i]) && isKanji(s[i - 1]) && i + 1 < s.size() &&
           isKanji(s[i + 1]);
}

// Adds to \a all its texts with every character that \a matches written as each of \a letters.
void widen(QStringList &all, bool (*matches)(const QString &, qsizetype), QStringView letters)
{
    const QStringList before = all;
    for (const QString &text : before) {
        for (const QChar letter : letters) {
            QString other = text;
            for (qsizetype i = 1; i < text.size(); ++i)
                if (matches(text, i))
                    other[i] = letter;
            if (!all.contains(other))
                all += other;
        }
    }
}

// --- Forms of a character ---

struct Forms
{
    char16_t old;
    char16_t modern;
};

// Either form is met where the list has the other.
constexpr auto bothWays = std::to_array<Forms>(
    {{u'龍', u'竜'}, {u'檜', u'桧'}, {u'曾', u'曽'}, {u'舘', u'館'}, {u'冨', u'富'}, {u'嶋', u'島'},
     {u'槇', u'槙'}, {u'籠', u'篭'}, {u'藪', u'薮'}, {u'祇', u'祗'}, {u'諫', u'諌'}, {u'條', u'条'},
     {u'澤', u'沢'}, {u'瀧', u'滝'}, {u'嶽', u'岳'}, {u'濱', u'浜'}, {u'櫻', u'桜'}, {u'廣', u'広'},
     {u'國', u'国'}, {u'邊', u'辺'}, {u'鹽', u'塩'}, {u'萬', u'万'}, {u'壽', u'寿'}, {u'驛', u'駅'},
     {u'髙', u'高'}, {u'﨑', u'崎'}, {u'德', u'徳'}, {u'蘆', u'芦'}, {u'礒', u'磯'}, {u'溪', u'渓'}});

// From the modern form the old one is tried only where the character is rare: half of all places have an 島.
constexpr QStringView rareModern = u"竜桧曽館槙篭薮祗諌芦";

void widenForms(QStringList &all)
{
    const QStringList before = all;
    for (const QString &text : before) {
        QString modern = text;
        QString old = text;
        for (const Forms &forms : bothWays) {
            modern.replace(QChar(forms.old), QChar(forms.modern));
            if (rareModern.contains(QChar(forms.modern)))
                old.replace(QChar(forms.modern), QChar(forms.old));
        }
        for (const QString &other : {modern, old})
            if (!all.contains(other))
                all += other;
    }
}

// --- Numbers ---

constexpr QStringView kanjiDigits = u"〇一二三四五六七八九";

// What a number is followed by where it is one, and not a part of a name such as 三鷹.
bool countsAfter(QStringView rest)
{
    return !rest.isEmpty() && QStringView(u"条丁番号線区地").contains(rest.front());
}

// 二十一 → 21; with neither 十 nor 百, digit by digit.
int valueOf(QStringView kanji)
{
    int sum = 0;
    int digit = 0;
    for (const QChar c : kanji) {
        if (c == u'十' || c == u'百') {
            sum += std::max(digit, 1) * (c == u'十' ? 10 : 100);
            digit = 0;
        } else {
            digit = digit * 10 + static_cast<int>(kanjiDigits.indexOf(c));
        }
    }
    return sum + digit;
}

QString inKanji(int value)
{
    QString text;
    if (value >= 20)
        text += kanjiDigits[value / 10];
    if (value >= 10)
        text += u'十';
    if (value % 10 != 0)
        text += kanjiDigits[value % 10];
    return text;
}

QString inDigits(int value, char16_t zero)
{
    QString text = QString::number(value);
    for (QChar &c : text)
        c = QChar(static_cast<char16_t>(c.unicode() - u'0' + zero));
    return text;
}

// \a s with each run of characters out of \a digits written by \a write.
QString withNumbers(const QString &s, QStringView digits, bool counted,
                    const std::function<QString(QStringView)> &write)
{
    QString text;
    for (qsizetype i = 0; i < s.size();) {
        qsizetype end = i;
        while (end < s.size() && digits.contains(s[end]) && end - i < 4)
            ++end;
        const QStringView run = QStringView(s).sliced(i, end - i);
        if (run.isEmpty())
            text += s[i++];
        else if (counted && !countsAfter(QStringView(s).sliced(end)))
            text += run;
        else
            text += write(run);
        i = std::max(i, end);
    }
    return text;
}

void widenNumbers(QStringList &all)
{
    static const QString kanji = kanjiDigits.toString() + u"十百"_s;
    static const QString wide = u"０１２３４５６７８９"_s;
    const auto wideValue = [](QStringView run) {
        int value = 0;
        for (const QChar c : run)
            value = value * 10 + (c.unicode() - u'０');
        return value;
    };
    const QStringList before = all;
    for (const QString &text : before) {
        const auto fromKanji = [](char16_t zero) {
            return [zero](QStringView run) { return inDigits(valueOf(run), zero); };
        };
        const QStringList others = {
            withNumbers(text, kanji, true, fromKanji(u'0')),
            withNumbers(text, kanji, true, fromKanji(u'０')),
            withNumbers(text, wide, false, [&](QStringView run) { return inDigits(wideValue(run), u'0'); }),
            withNumbers(text, wide, true,
                        [&](QStringView run) {
                            const int value = wideValue(run);
                            return value > 0 && value < 100 ? inKanji(value) : run.toString();
                        }),
        };
        for (const QString &other : others)
            if (!all.contains(other))
                all += other;
    }
}

} // namespace

QStringList citySpellings(const QString &name)
{
    QStringList all{name};
    widen(all, isGa, u"ヶケが");
    widen(all, isNo, u"のノ之");
    widenForms(all);
    return all.first(std::min(all.size(), mostSpellings));
}

QStringList townSpellings(const QString &name)
{
    QStringList all{name};
    widenNumbers(all);
    widen(all, isGa, u"ヶケがガ");
    widen(all, isNo, u"のノ之");
    widenForms(all);
    return all.first(std::min(all.size(), mostSpellings));
}

} // namespace registers
