#include "book/taken_payments.h"

#include "book/slip_columns.h"
#include "db/keys.h"
#include "text/dates.h"

using namespace Qt::StringLiterals;

namespace book
{

namespace
{

QString ofReceipts()
{
    return u" FROM 入金取込, 入出庫マスター WHERE 入出庫マスター.ID = 入金取込.伝票ID AND "_s +
           columns::kind + u" = ?"_s;
}

QString letter() { return QString(QChar(receipt.letter)); }

} // namespace

base::Status keepTaken(db::Connection &connection, const TakenPayment &taken)
{
    const auto key = db::nextKey(connection, u"入金取込"_s);
    if (!key)
        return key.error();
    return connection
        .execute(
            u"INSERT INTO 入金取込 (取込ID, 行キー, ファイル, 日付, 名義, 名義キー, 金額, 伝票ID, 伝票番号, "
            "取込日時, 版) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, (SELECT 最終 FROM 版数))"_s,
            {*key, taken.key, taken.file, text::stored(taken.date), taken.payer, taken.payerKey, taken.amount,
             taken.slip.id, taken.slip.number, taken.when.toString(Qt::ISODate)})
        .status();
}

base::Status forgetTaken(db::Connection &connection, qint64 id)
{
    return db::deleteRows(connection, u"DELETE FROM 入金取込 WHERE 伝票ID = ?"_s, {id}).status();
}

base::Result<QHash<QString, QString>> takenPayments(db::Connection &connection)
{
    const auto rows = connection.select(u"SELECT 入金取込.行キー, 入出庫マスター.伝票番号"_s + ofReceipts() +
                                            u" ORDER BY 入金取込.取込ID"_s,
                                        {letter()});
    if (!rows)
        return rows.error();
    QHash<QString, QString> taken;
    for (const QVariantList &row : rows->rows)
        taken.insert(row.at(0).toString(), row.at(1).toString());
    return taken;
}

base::Result<std::optional<QString>> receiptOf(db::Connection &connection, const QString &key)
{
    const auto rows = connection.select(u"SELECT 入出庫マスター.伝票番号"_s + ofReceipts() +
                                            u" AND 入金取込.行キー = ? ORDER BY 入金取込.取込ID"_s,
                                        {letter(), key});
    if (!rows)
        return rows.error();
    return rows->isEmpty() ? std::optional<QString>() : rows->rows.front().front().toString();
}

base::Result<std::vector<KnownPayer>> knownPayers(db::Connection &connection)
{
    const auto rows =
        connection.select(u"SELECT DISTINCT 入金取込.名義キー, 入出庫マスター.相手先ID"_s + ofReceipts() +
                              u" ORDER BY 入金取込.名義キー, 入出庫マスター.相手先ID"_s,
                          {letter()});
    if (!rows)
        return rows.error();
    std::vector<KnownPayer> payers;
    for (const QVariantList &row : rows->rows)
        payers.push_back({row.at(0).toString(), row.at(1).toLongLong()});
    return payers;
}

} // namespace book
