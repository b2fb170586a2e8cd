#pragma once

#include <QStringList>

namespace registers
{

/// The ways in which people write the name of a city or county, \a name itself first: ケ, ヶ and が; の, ノ
/// and 之; old and new forms of a character.
QStringList citySpellings(const QString &name);

/// The same for a town; besides, its numbers in kanji, full-width and half-width digits (北一条西, 北１条西,
/// 北1条西).
QStringList townSpellings(const QString &name);

} // namespace registers
