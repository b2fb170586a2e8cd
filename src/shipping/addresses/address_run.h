#pragma once

#include "base/progress.h"
#include "base/result.h"
#include "shipping/addresses/addressee.h"

#include <QDate>

#include <functional>
#include <optional>

namespace db
{
class Connection;
}

// Printing many addresses so that those marked as printed are those that a queue took.
namespace shipping
{

/// Prints the part of a run that is one job. \return its number
using PrintAddresses = std::function<base::Result<int>(const std::vector<Addressee> &part, int firstPlace)>;
/// Takes a job back whose marks could not be kept.
using WithdrawJob = std::function<void(int job)>;

struct AddressRun
{
    QString paper;
    QDate today;
    std::size_t jobSize = 1; // addresses a job
    std::size_t places = 1;  // on a sheet, which is never divided between two jobs
    int firstPlace = 1;      // of the first job
};

/// How far a run came.
struct AddressRunOutcome
{
    std::size_t printed = 0;            // of the first addresses of the list; they are marked
    std::optional<base::Error> failure; // what ended the run, unless the clerk did
    bool stopped = false;               // by the clerk
    int nextPlace = 1;                  // that is free on the last sheet
};

/// Prints \a addressees, a job after the other. Marks and job are one action: where the queue takes nothing
/// nobody is marked, and where the marks cannot be kept the job is withdrawn. \a progress counts addresses
/// and stops between two jobs.
AddressRunOutcome printAddresses(db::Connection &connection, const std::vector<Addressee> &addressees,
                                 const AddressRun &run, const PrintAddresses &print,
                                 const WithdrawJob &withdraw, const base::Progress &progress);

} // namespace shipping
