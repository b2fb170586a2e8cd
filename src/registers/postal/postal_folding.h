#pragma once

#include <QString>

namespace registers
{

/// The form that all ways of writing a place share: 阿佐ケ谷, 阿佐が谷 and 阿佐谷; 四ッ谷 and 四谷; 三の輪
/// and 三ノ輪; 麹町 and 麴町; 字 and 大字 put in or not; 北一条西, 北１条西 and 北1条西; any width, and
/// blanks between the parts. Two places of one city may share it, so it is for what the names as they stand
/// do not tell.
QString foldedPlace(QStringView name);

} // namespace registers
