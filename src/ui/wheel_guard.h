#pragma once

class QWidget;

namespace ui
{

/// Keeps a wheel turned over the drop-downs and the boxes of dates and numbers of \a window from changing
/// them, unless the cursor is in the box: what lies under the mouse in passing would be changed unseen, and
/// much of it is stored at once. The page below scrolls instead. Holds for the boxes that are there now.
void ignoreWheelInPassing(QWidget *window);

} // namespace ui
