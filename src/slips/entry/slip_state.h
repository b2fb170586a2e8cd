#pragma once

#include <array>

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
    const char16_t *control; // object name
    std::array<bool, 4> enabled;
};

inline constexpr bool on = true;
inline constexpr bool off = false;

/// The controls that the state switches. A screen that lacks one (the purchase slip prints nothing) passes
/// over its row.
inline constexpr std::array controlLives{
    // clang-format off
    //                               NoHeader  HeaderSaved  LinesPresent  Closed
    ControlLife{u"Frame2",          {on,       off,         off,          on}},
    ControlLife{u"Frame1",          {off,      on,          on,           off}},
    ControlLife{u"cmdSubAdd",       {off,      on,          on,           off}},
    ControlLife{u"cmdSubCancel",    {off,      on,          on,           off}},
    ControlLife{u"cmdNext",         {off,      off,         on,           off}},
    ControlLife{u"cmdMasterCancel", {off,      off,         on,           off}},
    ControlLife{u"Command3",        {off,      off,         on,           off}},
    // clang-format on
};

/// Whether \a life's control can be used in \a state.
constexpr bool isUsable(const ControlLife &life, SlipState state)
{
    return life.enabled[static_cast<std::size_t>(state)];
}

} // namespace slips
