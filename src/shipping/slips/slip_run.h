#pragma once

#include "base/progress.h"
#include "shipping/slips/slip_printer.h"

namespace shipping
{

/// How far a run came. What was not issued is neither printed nor in the history.
struct SlipRunOutcome
{
    std::vector<Shipment> issued;       // the first so many of the list, as their rows stand now
    std::optional<base::Error> failure; // what ended the run, unless the clerk did
    bool stopped = false;               // by the clerk
};

/// Issues \a shipments one after the other on \a printer, which is prepared for them: a job for each; labels
/// and tags fill sheets, a job for each of these. \a progress counts shipments, and stops between two jobs.
SlipRunOutcome issueAll(SlipPrinter &printer, const std::vector<Shipment> &shipments, Record record,
                        const base::Progress &progress = base::unwatched);

} // namespace shipping
