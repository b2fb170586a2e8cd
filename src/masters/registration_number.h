#pragma once

#include <QString>

// The number of a business that issues qualified invoices (登録番号): "T" and 13 digits.
namespace masters
{

/// \a typed as it is stored: half-width, without blanks, hyphens and the word 登録番号 before it, with its
/// "T" where only the digits were typed. What is no such number stays as far as that goes.
QString registrationNumber(const QString &typed);

/// Whether \a number has the form of one.
bool isRegistrationNumber(const QString &number);

/// Whether the digits of \a number are a corporate number by their check digit. Those of a business without
/// one, such as a single person's, are given so that they are not.
bool isCorporate(const QString &number);

/// What stands beside a box that holds \a typed: that it is no such number, or that its check digit is not a
/// corporate number's; empty for a number that is in order, and for none.
QString registrationRemark(const QString &typed);

} // namespace masters
