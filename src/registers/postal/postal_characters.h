#pragma once

#include <QString>

#include <functional>

// What the names of places are written with.
namespace registers
{

bool isKanji(QChar c);

/// An old or printers' form of a kanji and the one that is usual today.
struct KanjiForms
{
    char16_t old;
    char16_t modern;
};

/// Either form is met where the list of places has the other.
inline constexpr KanjiForms kanjiForms[] = {
    {u'龍', u'竜'}, {u'檜', u'桧'}, {u'曾', u'曽'}, {u'舘', u'館'}, {u'冨', u'富'}, {u'嶋', u'島'},
    {u'槇', u'槙'}, {u'籠', u'篭'}, {u'藪', u'薮'}, {u'祇', u'祗'}, {u'諫', u'諌'}, {u'條', u'条'},
    {u'澤', u'沢'}, {u'瀧', u'滝'}, {u'嶽', u'岳'}, {u'濱', u'浜'}, {u'櫻', u'桜'}, {u'廣', u'広'},
    {u'國', u'国'}, {u'邊', u'辺'}, {u'鹽', u'塩'}, {u'萬', u'万'}, {u'壽', u'寿'}, {u'驛', u'駅'},
    {u'髙', u'高'}, {u'﨑', u'崎'}, {u'德', u'徳'}, {u'蘆', u'芦'}, {u'礒', u'磯'}, {u'溪', u'渓'},
    {u'麴', u'麹'}, {u'竈', u'釜'}, {u'檮', u'梼'}, {u'惠', u'恵'}, {u'齋', u'斎'}, {u'眞', u'真'},
    {u'驒', u'騨'}, {u'鷗', u'鴎'}, {u'莊', u'荘'}, {u'豐', u'豊'}, {u'榮', u'栄'}, {u'學', u'学'},
    {u'會', u'会'}, {u'來', u'来'}, {u'淺', u'浅'}, {u'關', u'関'}, {u'靜', u'静'}, {u'邉', u'辺'},
    {u'縣', u'県'}, {u'區', u'区'}, {u'號', u'号'}, {u'圓', u'円'}, {u'寳', u'宝'}, {u'寶', u'宝'}};

/// The number that the kanji \a digits are: 二十一 is 21; with neither 十 nor 百, digit by digit.
int valueOfKanji(QStringView digits);

/// The digits of such a number, in the order of their values.
inline constexpr QStringView kanjiDigits = u"〇一二三四五六七八九";
/// All that such a number is written with.
inline constexpr QStringView numberKanji = u"〇一二三四五六七八九十百";

/// Whether a number before \a rest is one, and not a part of a name such as 三鷹: what counts follows.
bool countsBefore(QStringView rest);

/// \a name with each number out of \a digits written by \a write; with \a counted only where something that
/// counts follows. What is longer than four digits is read as several numbers.
QString withNumbers(const QString &name, QStringView digits, bool counted,
                    const std::function<QString(QStringView)> &write);

} // namespace registers
