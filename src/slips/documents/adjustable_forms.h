#pragma once

#include "printing/DialogFormLayout.h"

namespace workspace
{
class Settings;
} // namespace workspace

namespace slips
{

/// The forms of slips, for 「用紙の調整」, moved in use as \a settings say.
std::vector<printing::AdjustableForm> adjustableForms(const workspace::Settings &settings);

} // namespace slips
