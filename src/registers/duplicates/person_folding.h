#pragma once

#include <QString>
#include <QStringList>

// What two rows of a register share when they are one customer that was written in two ways.
namespace registers
{

/// A name as two clerks write it: widths, kana, blanks, old kanji, ㈱ and （株） and 株式会社, a 様 behind
/// it.
QString foldedPerson(const QString &name);

/// An address up to its number: 東京都港区芝公園４丁目２番８号　角ビル as 港区芝公園4-2-8. The prefecture,
/// the building and the ways to write ヶ and 字 do not count.
QString foldedAddress(const QString &address);

/// The digits of a telephone number, with the 0 that stands for +81; empty for what is too short to be one.
QString foldedPhone(const QString &phone);

} // namespace registers
