#pragma once

#include "book/slip_kind.h"
#include "db/connection.h"

#include <QStringList>

// Slips that go over to another counterpart, when two rows of a register turn out to be one.
namespace book
{

/// The numbers of the slips of \a counterpart that are not completed: somebody may be entering lines into
/// them at this moment.
base::Result<QStringList> openSlipsOf(db::Connection &connection, Party party, qint64 counterpart);

/// Makes all slips of \a from, and the documents that were issued to it, those of \a to. The slips get
/// \a version as their 版. To be called inside the transaction of the change. \return how many slips there
/// were
base::Result<int> moveSlips(db::Connection &connection, Party party, qint64 from, qint64 to, qint64 version);

} // namespace book
