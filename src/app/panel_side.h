#pragma once

namespace app
{

/// Where in its group of a page of the tab panel a widget goes: over the group's buttons, or under them.
enum class PanelSide { Above, Below };

} // namespace app
