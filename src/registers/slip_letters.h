#pragma once

#include <string_view>

namespace registers
{

/// The first letters of the numbers of those slips (入出庫マスター) whose 相手先ID is a 納品先ID; those of
/// the other slips are suppliers'. What each letter means is the slips' own business.
inline constexpr std::u16string_view customerSlipLetters = u"ORBM";

} // namespace registers
