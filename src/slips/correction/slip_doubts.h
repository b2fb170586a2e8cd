#pragma once

#include "slips/correction/slip_recalculation.h"

// Where the figures of a slip disagree, and what computing them anew would make of it, in the words of the
// questions and remarks of the correction screens.
namespace slips
{

/// Where its tax does not fit: sentences, one in a line; empty where it fits or nobody can tell.
QString taxDoubt(const Figures &figures);

/// The same of its tax and of the 金額 of all lines.
QString everyDoubt(const Figures &figures);

/// What the slip comes to once \a what is done to it; empty where nothing can be put right, or nothing would
/// be another.
QString mendedRemark(const Figures &figures, const Recalculation &what);

/// Sentences in lines, without the empty ones.
QString joined(QStringList sentences);

} // namespace slips
