#pragma once

#include "printing/queue/queue_abilities.h"

// What a queue calls its papers and bins, as the codes of Windows.
namespace printing
{

/// A paper of a printer's list.
struct ListedPaper
{
    int code = 0;
    QSizeF size; // millimetres, as it is fed; empty: any
};

/// The code of the paper \a size, to a millimetre; nothing where Windows has none.
std::optional<int> paperCode(const QSizeF &size);

/// The papers of a queue in its own order, those that Windows has no code for as the driver's own, and the
/// one that the user sizes himself where the queue takes such.
std::vector<ListedPaper> listedPapers(const QueueAbilities &abilities);

/// The paper that the queue prints on unless it is told otherwise; nothing where it does not say.
std::optional<ListedPaper> usualPaper(const QueueAbilities &abilities);

/// The code of the bin \a source ("tray-1", "manual", by PWG 5101.1); 0 where Windows has none.
int binCode(const QString &source);

/// That of the bin which the queue feeds from unless it is told otherwise. A queue that has bins and does not
/// say takes its own choice.
int usualBinCode(const QueueAbilities &abilities);

} // namespace printing
