#pragma once

#include "db/connection.h"

#include <QDateTime>

namespace workspace
{
class Workspace;
}

// Issued documents whose print job was taken back: they never came out, and the row of the copy, which
// nothing changes any more, is followed by one that says so.
namespace slips
{

/// The word behind the kind of such a row; 訂正元 names the row of the copy.
inline constexpr const char16_t *withdrawnMark = u"（印刷取消）";

/// Notes that the print job called \a title, which the printer took at \a taken, was taken back. Does nothing
/// for the title of no issued document and where it was noted already.
base::Status noteWithdrawn(db::Connection &connection, const QString &title, const QDateTime &taken,
                           const QDateTime &now, const QString &employee);

/// Has it noted whenever the print jobs of \a workspace tell of one. Works as long as that.
void watchPrintJobs(workspace::Workspace &workspace);

} // namespace slips
