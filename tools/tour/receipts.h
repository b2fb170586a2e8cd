#pragma once

#include <QDir>

namespace app
{
class frmAMain;
}

namespace tour
{

class Walker;

/// Looks at a bank's list of payments as receipts to be written.
void lookAtPayments(Walker &walker, app::frmAMain &window, const QDir &folder);

} // namespace tour
