#pragma once

#include "printing/DialogFormLayout.h"

namespace slips
{

/// The forms of slips, for 「用紙の調整」.
std::vector<printing::AdjustableForm> adjustableForms();

} // namespace slips
