#pragma once

namespace masters
{

/// The habits in which the editors differ.
enum class EditorKind { Plain, Categories, OwnCompany };

/// What has just been done in an editor.
enum class EditorStep { Opened, Added, Edited, Confirmed, Cancelled, Deleted };

/// Which buttons can be pressed.
struct EditorButtons
{
    bool add = false;
    bool confirm = false;
    bool cancel = false;
    bool remove = false;

    bool operator==(const EditorButtons &) const = default;
};

/// The buttons after \a step. \a hasRows: the list has rows now; \a before: the buttons until now.
EditorButtons buttonsAfter(EditorStep step, EditorKind kind, bool hasRows, const EditorButtons &before);

} // namespace masters
