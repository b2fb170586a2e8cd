#pragma once

#include <QString>

#include <functional>

// What the names of places are written with.
namespace registers
{

bool isKanji(QChar c);

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
