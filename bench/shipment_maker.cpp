#include "shipment_maker.h"

#include "db/connection.h"

using namespace Qt::StringLiterals;

namespace bench
{

namespace
{

// Primes spread senders and consignees over all customers without a pattern that an index could profit from.
const QString statement =
    u"WITH RECURSIVE n(i) AS (SELECT ? UNION ALL SELECT i + 1 FROM n WHERE i < ?), "
    "c(total) AS (SELECT MAX(納品先ID) FROM 納品先) "
    "INSERT INTO 発送マスター (発送ID, 受付日, 配達日, 発送区分, 発送方法, 依頼主名1, 依頼主郵便番号, "
    "依頼主住所1, 依頼主電話, 依頼主名キー, 届先名1, 届先名2, 届先郵便番号, 届先住所1, 届先電話, 届先名キー, "
    "品名, 価格, 送料, 送り状番号, 納品先ID, 依頼主ID, 印刷日, 出力日, 個数, 版) "
    "SELECT i, date('2016-04-01', (i * 3652 / ?) || ' days'), "
    "date('2016-04-01', (i * 3652 / ? + 2) || ' days'), "
    "CASE i % 3 WHEN 0 THEN 'お中元' WHEN 1 THEN 'お歳暮' ELSE '通常' END, "
    "CASE i % 4 WHEN 0 THEN '佐川急便' WHEN 1 THEN 'ゆうパック' ELSE '宅急便' END, "
    "s.納品先名1, s.郵便番号, s.住所1, s.TEL1, substr(s.納品先名1 || coalesce(s.納品先名2, ''), 1, 16), "
    "t.納品先名1, t.納品先名2, t.郵便番号, t.住所1, t.TEL1, "
    "substr(t.納品先名1 || coalesce(t.納品先名2, ''), 1, 16), "
    "'りんご ' || (i % 10 + 1) || '箱', 1000 + i % 9000, 800 + i % 700, printf('%012d', 390000000000 + i), "
    "t.納品先ID, s.納品先ID, date('2016-04-01', (i * 3652 / ?) || ' days'), "
    "date('2016-04-01', (i * 3652 / ?) || ' days'), 1, 0 "
    "FROM n, c JOIN 納品先 s ON s.納品先ID = 1 + i * 7919 % total "
    "JOIN 納品先 t ON t.納品先ID = 1 + i * 104729 % total"_s;

} // namespace

base::Status addShipments(const QString &fileName, int count)
{
    db::Connection connection;
    if (const base::Status opened = connection.open(fileName); !opened)
        return opened;
    const auto highest = connection.integers(u"SELECT coalesce(MAX(発送ID), 0) FROM 発送マスター"_s);
    if (!highest)
        return highest.error();
    if (highest->front() >= count)
        return {};
    const qint64 first = highest->front() + 1;
    return connection.execute(statement, {first, count, count, count, count, count}).status();
}

} // namespace bench
