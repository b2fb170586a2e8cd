#pragma once

#include "book/counterpart_name.h"
#include "book/slip_reader.h"
#include "db/connection.h"

#include <QDateTime>

#include <functional>

namespace workspace
{
class Workspace;
}

// The shop's copies of what it issued (発行控): of each document one row, which nothing changes or deletes
// any more, and its PDF beside the database. The law asks for seven years, of some for ten
// (法人税法施行規則第59条, 電子帳簿保存法).
namespace slips
{

/// What a document is.
struct IssuedDocument
{
    QString kind;   // 納品書, 見積書, 請求書
    QString number; // of its slip; of a bill its own
    QDate date;
    book::SlipKind slipKind;
    book::CounterpartKey counterpart;
    QString counterpartName; // as it is written on the paper
    double amount = 0;       // yen, with the tax
};

inline constexpr const char16_t *deliveryNoteKind = u"納品書";
inline constexpr const char16_t *estimateKind = u"見積書";
inline constexpr const char16_t *billKind = u"請求書";

/// The paper of \a slip, which is of \a slipKind.
IssuedDocument describedDocument(const QString &kind, const book::SlipKind &slipKind, const book::Slip &slip,
                                 double amount);

/// The word behind the kind of a row that tells of the same document once more.
inline constexpr const char16_t *reissueMark = u"（再発行）";

/// Keeps \a pdf in \a folder, the file first, and then its row. The document is the next version of the one
/// that was issued last of the same kind, number and counterpart, whose row 訂正元 names; what says the
/// same is no version but the same document once more, be it in other bytes for another printer.
base::Status keepDocument(db::Connection &connection, const QString &folder, const IssuedDocument &document,
                          const QByteArray &pdf, const QDateTime &now, const QString &employee);

/// The same for the open database, its folder, clock and person in charge: what a printing::Document keeps
/// itself by. Works as long as \a workspace.
std::function<base::Status(const QByteArray &pdf)> keeperOf(workspace::Workspace &workspace,
                                                            const IssuedDocument &document);

/// Notes in a row of its own that the document \a key was printed once more.
base::Status noteReissue(db::Connection &connection, qint64 key, const QDateTime &now,
                         const QString &employee);

} // namespace slips
