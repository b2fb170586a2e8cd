#pragma once

#include "base/exact_sum.h"

namespace book
{

using base::ExactSum;

} // namespace book
