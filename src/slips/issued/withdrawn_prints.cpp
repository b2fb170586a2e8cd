#include "slips/issued/withdrawn_prints.h"

#include "db/keys.h"
#include "db/transaction.h"
#include "printing/queue/job_watch.h"
#include "slips/issued/issued_documents.h"
#include "workspace/workspace.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

// "請求書 7-20261031　山田商店", as the jobs of documents are called, the name where there is one.
struct JobTitle
{
    explicit JobTitle(const QString &title)
        : kind(title.section(u' ', 0, 0))
        , number(title.section(u' ', 1).section(u'　', 0, 0))
    {
        kind.remove(QString::fromUtf16(reissueMark));
        number.remove(QString::fromUtf16(reissueMark));
    }

    QString kind;
    QString number;
};

bool isIssued(const QString &kind)
{
    return kind == QStringView(deliveryNoteKind) || kind == QStringView(estimateKind) ||
           kind == QStringView(billKind);
}

// The row that was written when the job was taken: the one nearest to it in time.
base::Result<std::optional<qint64>> rowOf(db::Connection &connection, const JobTitle &title,
                                          const QDateTime &taken)
{
    const auto rows =
        connection.select(u"SELECT 発行ID, 発行日時 FROM 発行控 WHERE 番号 = ? AND "
                          "種類 IN (?, ?) ORDER BY 発行ID"_s,
                          {title.number, title.kind, title.kind + QString::fromUtf16(reissueMark)});
    if (!rows)
        return rows.error();
    std::optional<qint64> nearest;
    qint64 least = 0;
    for (const QVariantList &row : rows->rows) {
        const QDateTime issued = QDateTime::fromString(row.at(1).toString(), u"yyyy-MM-dd HH:mm:ss"_s);
        const qint64 apart = std::abs(issued.secsTo(taken));
        if (!nearest || apart < least) {
            nearest = row.at(0).toLongLong();
            least = apart;
        }
    }
    return nearest;
}

base::Result<bool> isNoted(db::Connection &connection, qint64 key, const QString &kind)
{
    const auto found = connection.integers(
        u"SELECT 発行ID FROM 発行控 WHERE 訂正元 = ? AND 種類 = ? ORDER BY 発行ID"_s, {key, kind});
    return found ? base::Result<bool>(!found->empty()) : found.error();
}

base::Status addRow(db::Connection &connection, qint64 key, const QString &kind, const QDateTime &now,
                    const QString &employee)
{
    const auto next = db::nextKey(connection, u"発行控"_s);
    if (!next)
        return next.error();
    return connection
        .execute(u"INSERT INTO 発行控 (発行ID, 種類, 番号, 日付, 伝票種別, 相手先ID, 相手先名, 税込金額, "
                 "発行日時, 社員名, 訂正元, ハッシュ) SELECT ?, ?, 番号, 日付, 伝票種別, 相手先ID, 相手先名, "
                 "税込金額, ?, ?, 発行ID, ハッシュ FROM 発行控 WHERE 発行ID = ?"_s,
                 {*next, kind, now.toString(u"yyyy-MM-dd HH:mm:ss"_s), employee, key})
        .status();
}

} // namespace

base::Status noteWithdrawn(db::Connection &connection, const QString &title, const QDateTime &taken,
                           const QDateTime &now, const QString &employee)
{
    const JobTitle job(title);
    if (!isIssued(job.kind))
        return {};
    const QString kind = job.kind + QString::fromUtf16(withdrawnMark);
    return db::atomically(connection, [&]() -> base::Status {
        const auto row = rowOf(connection, job, taken);
        if (!row || !*row)
            return row.status();
        const auto noted = isNoted(connection, **row, kind);
        if (!noted || *noted)
            return noted.status();
        return addRow(connection, **row, kind, now, employee);
    });
}

void watchPrintJobs(workspace::Workspace &workspace)
{
    workspace.keep(printing::JobWatch{[&workspace](const printing::PrintJob &job) -> base::Status {
        if (!workspace.connection.isOpen())
            return {};
        return noteWithdrawn(workspace.connection, job.title, job.taken, workspace.now(),
                             workspace.panel.employeeName);
    }});
}

} // namespace slips
