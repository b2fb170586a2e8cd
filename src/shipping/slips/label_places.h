#pragma once

#include "shipping/slips/label_sheet.h"

#include <optional>

namespace workspace
{
class Settings;
} // namespace workspace

// Which place is free next on the sheet that lies in the printer: the settings keep it from one print to the
// next.
namespace shipping
{

/// The form "宛名ラベル", whose sheet is chosen; addresses and slips share it.
QString labelForm();

/// The sheet that slips of \a form are put on by places: the chosen one of labels, a tag's own; none of the
/// forms that take a sheet each.
std::optional<LabelSheet> sheetOfForm(const QString &form, const workspace::Settings &settings);

/// Takes the sheet called \a name for labels from now on, beginning at its first place where it is another.
void chooseLabelSheet(workspace::Settings &settings, const QString &name);

/// The place of \a form's sheet that is free next; 1 where the settings name none that there is.
int nextPlace(const workspace::Settings &settings, const QString &form);

/// Makes \a place the next one; one behind the last is the first of a new sheet.
void setNextPlace(workspace::Settings &settings, const QString &form, int place);

} // namespace shipping
