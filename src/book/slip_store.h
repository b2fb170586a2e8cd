#pragma once

#include "book/slip_kind.h"
#include "book/slip_reader.h"
#include "book/taxes_by_rate.h"
#include "db/connection.h"
#include "db/transaction.h"

#include <QDate>
#include <QStringList>

#include <optional>

// Slips in the database: a header in 入出庫マスター, its lines in 入出庫サブ. Each function is one action of
// the clerk: done as a whole in one transaction, or not at all.
namespace book
{

/// What is known when a header is saved.
struct NewSlip
{
    SlipKind kind = sale;
    QDate date;
    qint64 counterpart = 0;        // 納品先ID or 仕入先ID; 0: none is chosen
    qint64 employee = 0;           // 社員ID of the person in charge; 0: nobody is chosen
    double taxRate = 0;            // percent
    std::optional<bool> inclusive; // whether its prices include the tax; empty where no tax is kept

    QString infix;                       // of an automatic number
    std::optional<QString> manualNumber; // the typed number in place of an automatic one
    char16_t manualLetter = u'\0';       // with which a typed number begins

    std::optional<QDate> stamp; // day that becomes the customer's 更新日
    bool needsClosing = true;   // lines are to follow, and closeSlip() after them
};

struct SavedHeader
{
    qint64 id = 0;
    QString number;
    qint64 counterpart = 0;
};

/// Whether a slip can bear \a date: a year that a clerk can have meant.
bool isSlipDate(const QDate &date);

/// Stores the header under the next free key, and the customer's 更新日 with it. The error is the sentence to
/// tell: nobody chosen, a number that is taken, a counterpart deleted meanwhile (the error is then `gone`), a
/// database that refused.
base::Result<SavedHeader> saveHeader(db::Connection &connection, const NewSlip &slip);

/// A line of goods.
struct GoodsLine
{
    QString product;
    QString specification;
    double quantity = 0;
    QString unit;
    double price = 0;
    double amount = 0;            // whole yen
    std::optional<LineTax> tax{}; // empty: the slip's own
};

/// Appends \a line to the slip \a id. The error is `gone` when the slip is no longer there; so it is below.
base::Status addLine(db::Connection &connection, qint64 id, const GoodsLine &line);

/// A line of money.
struct MoneyLine
{
    QString item;      // stored as 商品名
    QString means;     // stored as 規格; may be empty
    double amount = 0; // yen, to four decimals
};

/// Appends \a line to the slip \a id of \a kind, which must still be there. A payment's unit is stored as an
/// empty text, a receipt's not at all: so the users' books have always held them.
base::Status addLine(db::Connection &connection, qint64 id, const SlipKind &kind, const MoneyLine &line);

/// Appends the tax line of \a tax yen to the slip \a id, which must still be there.
base::Status addTaxLine(db::Connection &connection, qint64 id, double tax);

/// Appends \a line, a tax line, with the class and the rate that it may have for itself, and what its 規格
/// says of them.
base::Status addTaxLine(db::Connection &connection, qint64 id, const SlipLine &line);

/// Whether the slip is still there: another program may have deleted it.
base::Result<bool> slipExists(db::Connection &connection, qint64 id);

/// Deletes the line entered last. \return whether there was one. Fails when the slip is no longer there.
base::Result<bool> removeLastLine(db::Connection &connection, qint64 id);

/// What the lines of a slip come to.
struct SlipSums
{
    double total = 0;                 // yen
    std::vector<TaxableAmount> goods; // without tax lines, by what they are taxed at
    bool hasTaxLine = false;
};

/// Σ 金額 of the slip's lines, nothing without lines. \a taxRate: percent, of lines that have no rate of
/// their own.
base::Result<SlipSums> slipSums(db::Connection &connection, qint64 id, double taxRate = 0);

/// Whether the slip with the key of \a saved is still that one. A slip that another program deleted leaves
/// its key to the next one: the error is `gone` then. No slip at all is left to the action to tell.
base::Status checkKeyIsNotAnothers(db::Connection &connection, const SavedHeader &saved);

/// Does \a action, which returns a Result, on the slip \a saved, unless its key is another slip's by now.
template <class Action>
auto onSlip(db::Connection &connection, const SavedHeader &saved, const Action &action) -> decltype(action())
{
    return db::atomically(connection, [&]() -> decltype(action()) {
        if (const base::Status same = checkKeyIsNotAnothers(connection, saved); !same)
            return same.error();
        return action();
    });
}

/// What a slip came to.
struct ClosedSlip
{
    double total = 0; // yen, before the tax lines that closing appends
    double tax = 0;   // yen of the tax lines, 0 when none was appended
};

/// Keeps on the slip whether its prices include the tax. Fails when the slip is no longer there.
base::Status keepInclusive(db::Connection &connection, qint64 id, bool inclusive);

/// Closes the slip: marks it in 完了 (1; 0 as long as it is open; slips of older files have no mark), keeps
/// \a inclusive on it, and appends a tax line for each rate when tax is added to such a slip (see
/// taxIsAdded), it is not 0 and the slip has no tax line yet. \a taxRate: percent, of lines that have no rate
/// of their own. Fails when the slip is no longer there.
base::Result<ClosedSlip> closeSlip(db::Connection &connection, qint64 id, double taxRate, TaxClass taxClass,
                                   bool inclusive);

/// The numbers of the slips that were left without being closed, the newest first, at most \a most of them.
base::Result<QStringList> slipsLeftOpen(db::Connection &connection, int most);

/// The numbers of closed sales and purchases of the day \a from and later that have no tax line, though their
/// prices do not include the tax and their counterpart is not charged it on the bill: the newest first, at
/// most \a most of them. Slips of which nobody knows whether their prices include it are not among them, nor
/// are those whose tax would be nothing.
base::Result<QStringList> slipsWithoutTax(db::Connection &connection, const QDate &from, int most);

/// What the slip comes to where no tax is kept; it is closed as well. Fails when the slip is no longer there.
base::Result<ClosedSlip> closeUntaxedSlip(db::Connection &connection, qint64 id);

/// Whether the stored slip \a saved is still that one, with a tax line of \a tax yen as its only line.
base::Result<bool> holdsTaxAlone(db::Connection &connection, const SavedHeader &saved, double tax);

/// Keeps \a text as the slip's own remark, 摘要. Fails when the slip is no longer there.
base::Status keepRemark(db::Connection &connection, qint64 id, const QString &text);

/// Deletes the slip, lines and header.
base::Status deleteSlip(db::Connection &connection, qint64 id);

/// The goods lines of the counterpart's earlier slips of \a kind, the newest slip first, its lines in
/// the order of entry.
base::Result<db::Rows> previousLines(db::Connection &connection, const SlipKind &kind, qint64 counterpart);

} // namespace book
