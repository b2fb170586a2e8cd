#pragma once

#include "book/printed_slip.h"
#include "book/slip_store.h"

// Goods that come back, as lines of negative quantity: they are taxed at the rate of their sale, whatever the
// day (消費税法第38条), and the paper of the return names it (適格返還請求書, 消費税法第57条の4第3項).
namespace book
{

/// The slip that goods come back of.
struct OriginalSlip
{
    qint64 id = 0;
    QDate date;
    QString number;
    bool holdsProduct = false; // that was asked for

    bool operator==(const OriginalSlip &) const = default;
};

/// Slips of \a kind and \a counterpart but for \a slip itself, of the day \a until and earlier: the \a most
/// newest on which anything was sold, of these those that hold \a product first.
base::Result<std::vector<OriginalSlip>> slipsToReturnOf(db::Connection &connection, const SlipKind &kind,
                                                        const SavedHeader &slip, const QDate &until,
                                                        const QString &product, int most);

/// What \a product was taxed at on the slip \a original; nothing where that does not hold it. Fails when the
/// slip is no longer there.
base::Result<std::optional<LineTax>> taxWhenSold(db::Connection &connection, qint64 original,
                                                 const QString &product);

/// Keeps on the slip \a id that goods come back of \a original. Fails when the slip is no longer there.
base::Status keepOriginal(db::Connection &connection, qint64 id, qint64 original);

/// The slip that goods of the slip \a id come back of; nothing where none is kept, or it was deleted.
base::Result<std::optional<OriginalSlip>> originalOf(db::Connection &connection, qint64 id);

/// What comes back on \a slip at each rate: negative amounts, those that include the tax where \a basis is
/// Gross. \a rate: percent, of lines that have none of their own.
base::Result<std::vector<RateTax>> returnedAt(const Slip &slip, double rate, Basis basis);

/// Whether a return of \a taxes needs a document: from 10,000 yen with tax on, all rates together
/// (消費税法施行令第70条の9第3項).
bool needsReturnDocument(const std::vector<RateTax> &taxes);

} // namespace book
