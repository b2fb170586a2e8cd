#pragma once

#include <QStringList>

namespace text
{

/// What a clerk \a typed into a search box, as words; a blank of either width parts them (高橋　花子).
QStringList searchWords(const QString &typed);

/// The LIKE patterns, for ESCAPE '\', of which a search key matches one when it holds \a word: as it is typed
/// and, where that is another text, as readings are stored (しょうじ finds ｼﾖｳｼﾞ).
QStringList keyPatterns(const QString &word);

} // namespace text
