#pragma once

class QComboBox;
class QLabel;
class QLineEdit;

namespace ui
{

/// Shows in \a shown the item whose number \a stored holds, and writes the number of the item that the clerk
/// chooses back into it. An empty box says nothing about the drop-down, which goes on showing what it did;
/// \a unset stands beside it then and says so.
void bindDropDown(QComboBox *shown, QLineEdit *stored, QLabel *unset);

} // namespace ui
