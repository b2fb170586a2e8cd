#pragma once

#include "db/connection.h"
#include "db/query.h"
#include "slips/issued/document_files.h"

#include <optional>
#include <vector>

// Finding issued documents: by ranges of date and amount and by counterpart, together, as the law wants it
// (電子帳簿保存法施行規則第2条第6項第5号).
namespace slips
{

/// What is looked for; what is left empty is no condition.
struct IssuedQuery
{
    QDate from{};
    QDate to{};
    std::optional<double> least{}; // yen, with the tax
    std::optional<double> most{};
    QString counterpart{}; // words of its name, as it was written then
    QString kind{};
    QString number{}; // or its beginning
};

/// The documents of \a query, the latest first. Ranges the wrong way round are turned.
db::Query findingIssued(const IssuedQuery &query);

/// A row of 発行控.
struct IssuedRow
{
    qint64 key = 0;
    QString kind;
    QString number;
    QString date; // yyyy-MM-dd; empty: none
    QString counterpartName;
    double amount = 0;
    QString issuedAt; // yyyy-MM-dd HH:mm:ss
    QString employee;
    std::optional<qint64> corrected; // 訂正元
    QString hash;

    [[nodiscard]] DocumentPlace place() const;
    /// "納品書 O1　山田商店"
    [[nodiscard]] QString words() const;
};

/// How many papers went out under \a number of a slip.
base::Result<qint64> countIssued(db::Connection &connection, const QString &number);

/// What became of a document that was issued.
struct Fate
{
    std::optional<qint64> successor; // 発行ID of the version that came after it
    bool isWithdrawn = false;        // its print job was taken back
};

base::Result<Fate> fateOf(db::Connection &connection, qint64 key);

/// When a document went out, and for how much.
struct LastIssue
{
    QString issuedAt;  // yyyy-MM-dd HH:mm:ss
    double amount = 0; // yen, with the tax
};

/// The last time that the document \a number of \a kind went out to \a counterpart, first or again. What was
/// taken back at the printer does not count. Nothing where it never did.
base::Result<std::optional<LastIssue>> lastIssue(db::Connection &connection, const QString &kind,
                                                 const QString &number, qint64 counterpart);

/// The rows \a keys, in their order; one that is gone is left out.
base::Result<std::vector<IssuedRow>> readIssued(db::Connection &connection, const std::vector<qint64> &keys);

/// The keys of all rows, in their order.
base::Result<std::vector<qint64>> allIssued(db::Connection &connection);

} // namespace slips
