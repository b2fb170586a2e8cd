#include "registers/postal/postal_spellings.h"

#include "registers/postal/postal_characters.h"
#include "text/kanji_forms.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// A name with several such places would otherwise get hundreds of spellings.
constexpr qsizetype mostSpellings = 24;

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

// From the modern form the old one is tried only where the character is rare: half of all places have an 島.
constexpr QStringView rareModern = u"竜桧曽館槙篭薮祗諌芦";

void widenForms(QStringList &all)
{
    const QStringList before = all;
    for (const QString &text : before) {
        QString modern = text;
        QString old = text;
        for (const text::KanjiForms &forms : text::kanjiForms) {
            modern.replace(QChar(forms.old), QChar(forms.common));
            if (rareModern.contains(QChar(forms.common)))
                old.replace(QChar(forms.common), QChar(forms.old));
        }
        for (const QString &other : {modern, old})
            if (!all.contains(other))
                all += other;
    }
}

// --- Numbers ---

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

void widenNumbers(QStringList &all)
{
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
            return [zero](QStringView run) { return inDigits(valueOfKanji(run), zero); };
        };
        const QStringList others = {
            withNumbers(text, numberKanji, true, fromKanji(u'0')),
            withNumbers(text, numberKanji, true, fromKanji(u'０')),
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
