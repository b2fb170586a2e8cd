#pragma once

#include <QStringList>

namespace text
{

/// More words than anybody types: a page that was pasted into a search box would be too deep a condition for
/// the database.
inline constexpr qsizetype mostSearchWords = 100;

/// What a clerk \a typed into a search box, as words, the first of them where they are too many; a blank of
/// either width parts them (高橋　花子).
QStringList searchWords(const QString &typed);

/// The LIKE patterns, for ESCAPE '\', of which a search key matches one when it holds \a word: as it is typed
/// and, where that is another text, as readings are stored (しょうじ finds ｼﾖｳｼﾞ).
QStringList keyPatterns(const QString &word);

} // namespace text
