#include "masters/editor_states.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace masters
{

namespace
{

enum class To { Off, On, Same, IfRows };

struct Line
{
    EditorStep step;
    std::optional<EditorKind> kind; // any, unless given
    To add, confirm, cancel, remove;
};

// The first line that fits counts.
constexpr Line lines[] = {
    {EditorStep::Added, EditorKind::OwnCompany, To::Off, To::On, To::On, To::Off},
    {EditorStep::Deleted, EditorKind::OwnCompany, To::On, To::On, To::Off, To::IfRows},
    {EditorStep::Deleted, EditorKind::Categories, To::On, To::Off, To::Off, To::IfRows},

    {EditorStep::Opened, {}, To::On, To::Off, To::Off, To::IfRows},
    // Deleting is refused while a new row is open, but the button is left alone.
    {EditorStep::Added, {}, To::Off, To::On, To::On, To::Same},
    {EditorStep::Edited, {}, To::Same, To::On, To::Same, To::Same},
    {EditorStep::Confirmed, {}, To::On, To::Off, To::Off, To::IfRows},
    {EditorStep::Cancelled, {}, To::On, To::Off, To::Off, To::IfRows},
    {EditorStep::Deleted, {}, To::Same, To::Same, To::Off, To::IfRows},
};

bool decide(To to, bool hasRows, bool before)
{
    switch (to) {
    case To::Off:
        return false;
    case To::On:
        return true;
    case To::IfRows:
        return hasRows;
    case To::Same:
        break;
    }
    return before;
}

} // namespace

EditorButtons buttonsAfter(EditorStep step, EditorKind kind, bool hasRows, const EditorButtons &before)
{
    const auto *const line = std::find_if(std::begin(lines), std::end(lines), [&](const Line &candidate) {
        return candidate.step == step && candidate.kind.value_or(kind) == kind;
    });
    return {decide(line->add, hasRows, before.add), decide(line->confirm, hasRows, before.confirm),
            decide(line->cancel, hasRows, before.cancel), decide(line->remove, hasRows, before.remove)};
}

} // namespace masters
