#pragma once

#include <cstddef>

namespace slips
{

/// The life of a slip screen.
enum class SlipState {
    NoHeader,     // the counterpart is being chosen
    HeaderSaved,  // lines may be entered
    LinesPresent, // the slip may be closed, cancelled, printed
    Closed,       // the slip is done, the next one may begin
};

/// Where a control can be used.
struct ControlLife
{
    bool enabled[4];
};

inline constexpr bool on = true;
inline constexpr bool off = false;

// clang-format off
//                                            NoHeader  HeaderSaved  LinesPresent  Closed
inline constexpr ControlLife headerLife    {{ on,       off,         off,          on  }};
inline constexpr ControlLife linesLife     {{ off,      on,          on,           off }};
inline constexpr ControlLife finishingLife {{ off,      off,         on,           off }};
// clang-format on

/// Whether \a life's control can be used in \a state.
constexpr bool isUsable(const ControlLife &life, SlipState state)
{
    return life.enabled[static_cast<std::size_t>(state)];
}

} // namespace slips
