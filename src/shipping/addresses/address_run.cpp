#include "shipping/addresses/address_run.h"

#include "db/connection.h"
#include "db/transaction.h"
#include "shipping/addresses/address_marks.h"

#include <algorithm>

namespace shipping
{

namespace
{

std::vector<qint64> customersOf(const std::vector<Addressee> &addressees)
{
    std::vector<qint64> customers;
    for (const Addressee &addressee : addressees)
        customers.push_back(addressee.customer);
    return customers;
}

base::Status printPart(db::Connection &connection, const std::vector<Addressee> &part, const AddressRun &run,
                       int firstPlace, const PrintAddresses &print, const WithdrawJob &withdraw)
{
    std::optional<int> taken;
    const base::Status done = db::atomically(connection, [&]() -> base::Status {
        if (const base::Status marked = markAddressed(connection, customersOf(part), run.paper, run.today);
            !marked)
            return marked;
        const auto job = print(part, firstPlace);
        if (job)
            taken = *job;
        return job.status();
    });
    if (!done && taken)
        withdraw(*taken);
    return done;
}

// Whole sheets, but for the first one, of which places are gone, and the last.
std::size_t partSize(const AddressRun &run, int firstPlace)
{
    const std::size_t gone = static_cast<std::size_t>(firstPlace) - 1;
    const std::size_t sheets = std::max<std::size_t>(1, run.jobSize / run.places);
    return std::max<std::size_t>(1, sheets * run.places - gone);
}

} // namespace

AddressRunOutcome printAddresses(db::Connection &connection, const std::vector<Addressee> &addressees,
                                 const AddressRun &run, const PrintAddresses &print,
                                 const WithdrawJob &withdraw, const base::Progress &progress)
{
    AddressRunOutcome outcome;
    outcome.nextPlace = run.firstPlace;
    while (outcome.printed < addressees.size()) {
        if (!progress(qint64(outcome.printed), qint64(addressees.size()))) {
            outcome.stopped = true;
            return outcome;
        }
        const auto first = addressees.begin() + std::ptrdiff_t(outcome.printed);
        const std::size_t count =
            std::min(partSize(run, outcome.nextPlace), addressees.size() - outcome.printed);
        const std::vector<Addressee> part(first, first + std::ptrdiff_t(count));
        if (const base::Status done = printPart(connection, part, run, outcome.nextPlace, print, withdraw);
            !done) {
            outcome.failure = done.error();
            return outcome;
        }
        outcome.printed += count;
        outcome.nextPlace = int((std::size_t(outcome.nextPlace) - 1 + count) % run.places) + 1;
    }
    return outcome;
}

} // namespace shipping
