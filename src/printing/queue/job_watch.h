#pragma once

#include "printing/queue/print_system.h"

#include <functional>

namespace printing
{

/// What a house above wants to hear of print jobs; it keeps one in the workspace.
struct JobWatch
{
    /// A job was taken back before it came out. Of one job it may come more than once.
    std::function<base::Status(const PrintJob &)> cancelled;
};

} // namespace printing
