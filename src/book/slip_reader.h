#pragma once

#include "book/slip_kind.h"
#include "book/tax_rates.h"
#include "db/connection.h"

#include <QDate>

#include <optional>

namespace book
{

/// A line as it is stored; what is not written (a tax or money line's quantity) is empty.
struct SlipLine
{
    QString product;
    QString specification;
    std::optional<double> quantity;
    QString unit;
    std::optional<double> price;
    double amount = 0;                  // yen
    std::optional<GoodsTax> taxClass{}; // empty: the slip's own
    std::optional<double> taxRate{};    // percent; empty: the slip's own

    [[nodiscard]] bool isTax() const { return product == QStringView(taxLineName); }
    /// A number that is none, which a text in its place is read as, equals another one.
    bool operator==(const SlipLine &other) const;
};

/// What 敬称 holds of a customer who is to be addressed without any; an empty one was not chosen yet.
inline constexpr const char16_t *noHonorific = u"なし";

/// A stored slip with what a printed form needs of its counterpart and the person in charge.
struct Slip
{
    qint64 id = 0;
    QDate date;
    QString number;
    double taxRate = 0; // percent
    QString memo;
    QString employeeName;

    qint64 counterpart = 0;
    QString name1;
    QString name2;
    QString zip;
    QString address1;
    QString address2;
    QString tel;
    QString fax;
    QString code;
    std::optional<QString> honorific{}; // an empty one for none; nothing where none was chosen
    TaxClass taxClass = TaxClass::OnDelivery;

    std::vector<SlipLine> lines; // in the order of entry

    bool operator==(const Slip &) const = default;
};

/// The slip \a id, whose 相手先ID is of \a party: a sales slip numbered by hand may bear another kind's
/// letter. Fails when the slip is not there. A deleted employee leaves the name empty, a deleted counterpart
/// its fields, and name1 is then what the lists call it.
base::Result<Slip> readSlip(db::Connection &connection, qint64 id, Party party);

} // namespace book
