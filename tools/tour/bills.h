#pragma once

#include <QDir>

class QWidget;

namespace tour
{

class Walker;

/// Issues the bill of a customer who is charged the tax on it, as bill.pdf in \a folder, and takes the tax
/// back.
void issueBill(Walker &walker, QWidget &window, const QDir &folder);

/// Issues all bills of the month's end from their list, as PDFs in \a folder's folder bills.
void issueAllBills(Walker &walker, QWidget &window, const QDir &folder);

} // namespace tour
