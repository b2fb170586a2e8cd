#include "shipping/slips/slip_run.h"

#include <iterator>

namespace shipping
{

SlipRunOutcome issueAll(SlipPrinter &printer, const std::vector<Shipment> &shipments, Record record,
                        const base::Progress &progress)
{
    SlipRunOutcome outcome;
    while (outcome.issued.size() < shipments.size()) {
        const std::size_t done = outcome.issued.size();
        if (!progress(qint64(done), qint64(shipments.size()))) {
            outcome.stopped = true;
            break;
        }
        const auto first = shipments.begin() + static_cast<std::ptrdiff_t>(done);
        const auto count = static_cast<std::ptrdiff_t>(printer.countTogether(shipments, done));
        auto issued = printer.issueTogether({first, first + count}, record);
        if (!issued) {
            outcome.failure = issued.error();
            break;
        }
        std::move(issued->begin(), issued->end(), std::back_inserter(outcome.issued));
    }
    return outcome;
}

} // namespace shipping
