#pragma once

#include "printing/DialogFormLayout.h"

namespace workspace
{
class Settings;
} // namespace workspace

namespace slips
{

/// What a note shows of prices that include the tax, and of no others.
QStringList inclusiveItems();

/// The forms of slips, for 「用紙の調整」, moved in use as \a settings say.
std::vector<printing::AdjustableForm> adjustableForms(const workspace::Settings &settings);

} // namespace slips
