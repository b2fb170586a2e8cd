#pragma once

class QComboBox;
class QLineEdit;

namespace ui
{

/// Shows in \a shown the item whose number \a stored holds, and writes the number of the item that the clerk
/// chooses back into it. An empty box says nothing about the drop-down.
void bindDropDown(QComboBox *shown, QLineEdit *stored);

} // namespace ui
