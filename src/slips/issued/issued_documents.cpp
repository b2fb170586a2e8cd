#include "slips/issued/issued_documents.h"

#include "db/keys.h"
#include "db/transaction.h"
#include "printing/pdf_mark.h"
#include "slips/issued/document_files.h"
#include "slips/issued/withdrawn_prints.h"
#include "text/dates.h"
#include "workspace/document_places.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

struct Version
{
    QVariant key; // NULL: there is none
    DocumentPlace place;
};

// A counterpart that no register has is nobody in particular.
base::Result<Version> lastVersion(db::Connection &connection, const IssuedDocument &document)
{
    if (document.counterpart.value_or(0) == 0)
        return Version();
    const auto found =
        connection.select(u"SELECT 発行ID, 日付, ハッシュ FROM 発行控 WHERE 相手先ID = ? AND 番号 = ? AND "
                          "種類 IN (?, ?) ORDER BY 発行ID DESC LIMIT 1"_s,
                          {*document.counterpart, document.number, document.kind,
                           document.kind + QString::fromUtf16(reissueMark)});
    if (!found)
        return found.error();
    if (found->isEmpty())
        return Version();
    const QVariantList &row = found->rows.front();
    return Version{row.at(0), {QDate::fromString(row.at(1).toString(), Qt::ISODate), row.at(2).toString()}};
}

// What was printed for another printer, or moved on its form, says the same in other bytes.
bool saysTheSame(const QString &folder, const Version &last, const QByteArray &pdf)
{
    if (last.place.hash == hashOf(pdf))
        return true;
    const QByteArray mark = printing::markIn(pdf);
    return !mark.isEmpty() && mark == printing::markIn(findDocument({folder}, last.place).pdf);
}

base::Status addRow(db::Connection &connection, const IssuedDocument &document, const QString &hash,
                    const QVariant &corrected, const QDateTime &now, const QString &employee)
{
    const auto key = db::nextKey(connection, u"発行控"_s);
    if (!key)
        return key.error();
    return connection
        .execute(u"INSERT INTO 発行控 (発行ID, 種類, 番号, 日付, 伝票種別, 相手先ID, 相手先名, 税込金額, "
                 "発行日時, 社員名, 訂正元, ハッシュ) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"_s,
                 {*key, document.kind, document.number,
                  document.date.isValid() ? QVariant(text::stored(document.date)) : QVariant(),
                  QString(QChar(document.slipKind.letter)),
                  document.counterpart ? QVariant(*document.counterpart) : QVariant(),
                  document.counterpartName, document.amount, now.toString(u"yyyy-MM-dd HH:mm:ss"_s), employee,
                  corrected, hash})
        .status();
}

} // namespace

IssuedDocument describedDocument(const QString &kind, const book::SlipKind &slipKind, const book::Slip &slip,
                                 double amount)
{
    return {.kind = kind,
            .number = slip.number,
            .date = slip.date,
            .slipKind = slipKind,
            .counterpart = slip.counterpart,
            .counterpartName = book::counterpartName(slip.name1, slip.name2),
            .amount = amount};
}

base::Status keepDocument(db::Connection &connection, const QString &folder, const IssuedDocument &document,
                          const QByteArray &pdf, const QDateTime &now, const QString &employee)
{
    const QString hash = hashOf(pdf);
    if (const base::Status stored = storeDocument(folder, {document.date, hash}, pdf); !stored)
        return stored;
    return db::atomically(connection, [&]() -> base::Status {
        const auto last = lastVersion(connection, document);
        if (!last)
            return last.error();
        if (!saysTheSame(folder, *last, pdf))
            return addRow(connection, document, hash, last->key, now, employee);
        IssuedDocument again = document;
        again.kind += QString::fromUtf16(reissueMark);
        return addRow(connection, again, hash, {}, now, employee);
    });
}

std::function<base::Status(const QByteArray &pdf)> keeperOf(workspace::Workspace &workspace,
                                                            const IssuedDocument &document)
{
    return [&workspace, document](const QByteArray &pdf) {
        return keepDocument(workspace.connection,
                            workspace::documentFolderOf(workspace.connection.fileName()), document, pdf,
                            workspace.now(), workspace.panel.employeeName);
    };
}

base::Status noteReissue(db::Connection &connection, qint64 key, const QDateTime &now,
                         const QString &employee)
{
    return db::atomically(connection, [&]() -> base::Status {
        const auto next = db::nextKey(connection, u"発行控"_s);
        if (!next)
            return next.error();
        const QString mark = QString::fromUtf16(reissueMark);
        const auto noted = connection.execute(
            u"INSERT INTO 発行控 (発行ID, 種類, 番号, 日付, 伝票種別, 相手先ID, 相手先名, 税込金額, "
            "発行日時, 社員名, ハッシュ) SELECT ?, replace(replace(種類, ?, ''), ?, '') || ?, 番号, 日付, "
            "伝票種別, "
            "相手先ID, 相手先名, 税込金額, ?, ?, ハッシュ FROM 発行控 WHERE 発行ID = ?"_s,
            {*next, mark, QString::fromUtf16(withdrawnMark), mark, now.toString(u"yyyy-MM-dd HH:mm:ss"_s),
             employee, key});
        if (noted && *noted != 1)
            return base::Error{.text = u"控えが見つからないため、再発行を記録できませんでした。"_s,
                               .gone = true};
        return noted.status();
    });
}

} // namespace slips
