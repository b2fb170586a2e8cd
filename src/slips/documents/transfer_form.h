#pragma once

#include "base/result.h"
#include "printing/forms/form_values.h"

namespace db
{
class Connection;
}

// The postal transfer form (払込取扱票), with which a customer pays at the post office. The forms are the
// bank's own; what they say is read by a machine.
namespace slips
{

/// Who pays. The form bears 様 itself.
struct TransferPayer
{
    QString name1;
    QString name2;
    QString zip;
    QString address1;
    QString address2;
    QString tel;
};

/// What all forms of the shop say.
struct TransferTexts
{
    QString account; // of the payee: "00990-4-313097"
    QString payee;   // 加入者名
    QString note1;   // 通信欄
    QString note2;
};

/// What one form says.
struct TransferForm
{
    TransferPayer payer;
    double amount = 0; // yen
    TransferTexts texts;
};

/// An account number in its three parts.
struct TransferAccount
{
    QString symbol; // five digits, the first a 0
    QString check;  // one digit
    QString number; // one to seven digits
};

/// \a typed in its parts, which blanks or hyphens may divide, in any width. Fails where it is no number of a
/// transfer account; those that begin with 1 are savings accounts.
base::Result<TransferAccount> transferAccount(const QString &typed);

/// The most that a form has cells for, yen.
inline constexpr double highestTransfer = 99'999'999;

/// The digits of \a amount. Fails for nothing, less than nothing, parts of a yen, and more than eight digits.
base::Result<QString> transferDigits(double amount);

/// The customer \a id. The error is `gone` when there is none.
base::Result<TransferPayer> transferPayer(db::Connection &connection, qint64 id);

/// The layout file of the form.
inline constexpr const char16_t *transferFormLayout = u"transfer-form.toml";

/// What a layout of the form may show: a digit a cell.
const printing::FormItems &transferFormItems();

/// Their values. Fails where the account, the payee's name or the amount cannot be printed.
base::Result<printing::FormValues> transferFormValues(const TransferForm &form);

/// A form that is filled in every place, to see how far a printer is off.
TransferForm transferSpecimen();

} // namespace slips
