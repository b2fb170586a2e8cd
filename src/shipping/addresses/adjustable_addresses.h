#pragma once

#include "printing/DialogFormLayout.h"

namespace workspace
{
class Settings;
} // namespace workspace

namespace shipping
{

/// The layouts of addresses, for 「用紙の調整」, moved in use as \a settings say.
std::vector<printing::AdjustableForm> adjustableAddresses(const workspace::Settings &settings);

} // namespace shipping
