#include "bare.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>

namespace bench
{

namespace
{

void check(bool good, sqlite3 *handle)
{
    if (good)
        return;
    qFatal("bare measurement failed: %s", sqlite3_errmsg(handle));
}

sqlite3_stmt *prepared(sqlite3 *handle, const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    check(sqlite3_prepare_v2(handle, sql, -1, &statement, nullptr) == SQLITE_OK, handle);
    return statement;
}

// Reads every column, as a screen that shows them has to.
int readAll(sqlite3 *handle, sqlite3_stmt *statement)
{
    int rows = 0;
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(statement)) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            if (sqlite3_column_type(statement, column) == SQLITE_TEXT)
                (void)sqlite3_column_text(statement, column);
            else
                (void)sqlite3_column_double(statement, column);
        }
        ++rows;
    }
    check(code == SQLITE_DONE, handle);
    sqlite3_finalize(statement);
    return rows;
}

} // namespace

Bare::Bare(const QString &fileName)
{
    check(sqlite3_open(fileName.toUtf8().constData(), &m_handle) == SQLITE_OK, m_handle);
    run("PRAGMA journal_mode = DELETE; PRAGMA synchronous = EXTRA; PRAGMA busy_timeout = 5000");
}

Bare::~Bare() { sqlite3_close(m_handle); }

void Bare::run(const char *sql)
{
    check(sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) == SQLITE_OK, m_handle);
}

std::int64_t Bare::saveHeader(std::int64_t customer)
{
    run("BEGIN IMMEDIATE");
    sqlite3_stmt *stamp = prepared(m_handle, "UPDATE 納品先 SET 更新日 = '2026-04-01' WHERE 納品先ID = ?");
    sqlite3_bind_int64(stamp, 1, customer);
    readAll(m_handle, stamp);
    sqlite3_stmt *header = prepared(
        m_handle, "INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 完了, 版) "
                  "SELECT max(ID) + 1, '2026-04-01', 'O' || (max(ID) + 1), ?, 1, 5, 0, "
                  "(SELECT 最終 FROM 版数) FROM 入出庫マスター");
    sqlite3_bind_int64(header, 1, customer);
    readAll(m_handle, header);
    const std::int64_t id = sqlite3_last_insert_rowid(m_handle);
    run("COMMIT");
    return id;
}

void Bare::saveLine(std::int64_t slip)
{
    run("BEGIN IMMEDIATE");
    sqlite3_stmt *insert =
        prepared(m_handle, "INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額, 版) "
                           "VALUES (?, 'りんご', '贈答用', 2, '箱', 3980, 7960, "
                           "(SELECT 最終 FROM 版数))");
    sqlite3_bind_int64(insert, 1, slip);
    readAll(m_handle, insert);
    run("COMMIT");
}

void Bare::saveSlip(std::int64_t customer)
{
    const std::int64_t slip = saveHeader(customer);
    for (int line = 0; line < 6; ++line)
        saveLine(slip);
}

void Bare::enterLine(std::int64_t slip)
{
    saveLine(slip);
    for (const char *sql : {"SELECT * FROM 入出庫サブ WHERE ID = ? ORDER BY 明細ID",
                            "SELECT sum(金額) FROM 入出庫サブ WHERE ID = ?"}) {
        sqlite3_stmt *shown = prepared(m_handle, sql);
        sqlite3_bind_int64(shown, 1, slip);
        readAll(m_handle, shown);
    }
}

std::int64_t Bare::customerOfClass(int taxClass)
{
    sqlite3_stmt *statement = prepared(m_handle, "SELECT 納品先ID FROM 納品先 WHERE 消費税区分 = ?");
    sqlite3_bind_int(statement, 1, taxClass);
    check(sqlite3_step(statement) == SQLITE_ROW, m_handle);
    const std::int64_t found = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    return found;
}

QString Bare::searchKeyOf(std::int64_t customer)
{
    sqlite3_stmt *statement = prepared(m_handle, "SELECT 納品先名キー FROM 納品先 WHERE 納品先ID = ?");
    sqlite3_bind_int64(statement, 1, customer);
    check(sqlite3_step(statement) == SQLITE_ROW, m_handle);
    const QString found =
        QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(statement, 0)));
    sqlite3_finalize(statement);
    return found;
}

int Bare::count(const char *sql, const QString &text)
{
    sqlite3_stmt *statement = prepared(m_handle, sql);
    const QByteArray utf8 = text.toUtf8();
    if (sqlite3_bind_parameter_count(statement) > 0)
        sqlite3_bind_text(statement, 1, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    return readAll(m_handle, statement);
}

int Bare::findDocuments(const char *condition)
{
    const QByteArray sql =
        QByteArray("SELECT 発行ID FROM 発行控 WHERE ") + condition + " ORDER BY 日付 DESC, 発行ID DESC";
    return count(sql.constData(), {});
}

int Bare::findShipments(const QString &sender, const QString &consignee)
{
    // Where no key holds it, the whole names may.
    for (const char *sql :
         {"SELECT 発送ID FROM 発送マスター WHERE (依頼主名キー LIKE ?) AND (届先名キー LIKE ?) "
          "ORDER BY 発送ID DESC",
          "SELECT 発送ID FROM 発送マスター WHERE (依頼主名1 || coalesce(依頼主名2, '') LIKE ?) AND "
          "(届先名1 || coalesce(届先名2, '') LIKE ?) ORDER BY 発送ID DESC"}) {
        sqlite3_stmt *statement = prepared(m_handle, sql);
        int at = 0;
        for (const QString &key : {sender, consignee}) {
            const QByteArray pattern = '%' + key.toUtf8() + '%';
            sqlite3_bind_text(statement, ++at, pattern.constData(), int(pattern.size()), SQLITE_TRANSIENT);
        }
        if (const int found = readAll(m_handle, statement); found > 0)
            return found;
    }
    return 0;
}

void Bare::addShipment()
{
    run("BEGIN IMMEDIATE");
    run("INSERT INTO 発送マスター (発送ID, 受付日, 配達日, 発送区分, 発送方法, 依頼主名1, 依頼主郵便番号, "
        "依頼主住所1, "
        "依頼主電話, 依頼主名キー, 届先名1, 届先名2, 届先郵便番号, 届先住所1, 届先住所2, 届先電話, "
        "届先名キー, 品名, "
        "価格, 備考1, 印刷日, 個数, 版) SELECT coalesce(max(発送ID), 0) + 1, '2026-04-01', '2026-04-03', "
        "'通常', "
        "'宅急便', '有限会社山田茶舗', '420-0001', '静岡市葵区井宮町１２３', '054-123-4567', "
        "'有限会社山田茶舗', "
        "'株式会社東京百貨店第1売場', '仕入部', '150-0001', '東京都渋谷区神宮前1－２－３', '神宮前ビル1階', "
        "'03-1234-0001', '株式会社東京百貨店第1売場仕', '煎茶 1号', 3980, '御中元', '2026-04-01', 1, "
        "(SELECT 最終 FROM 版数) FROM 発送マスター");
    run("COMMIT");
}

int Bare::searchCustomers(const QString &key)
{
    return count("SELECT 納品先ID FROM 納品先 WHERE (納品先名キー LIKE ?) ORDER BY 更新日 DESC",
                 u'%' + key + u'%');
}

int Bare::findCustomers(const QString &key)
{
    if (key.isEmpty())
        return count("SELECT 納品先ID FROM 納品先, 登録区分 WHERE 納品先.区分ID = 登録区分.区分ID "
                     "ORDER BY 納品先ID",
                     {});
    return count("SELECT 納品先ID FROM 納品先, 登録区分 WHERE (納品先.区分ID = 登録区分.区分ID) AND "
                 "(納品先名キー LIKE ?) ORDER BY 納品先名キー",
                 u'%' + key + u'%');
}

void Bare::writeCustomers(const QString &fileName)
{
    std::FILE *file = std::fopen(fileName.toLocal8Bit().constData(), "wb");
    if (!file)
        qFatal("%s cannot be written", qPrintable(fileName));
    sqlite3_stmt *statement = prepared(m_handle, "SELECT * FROM 納品先 ORDER BY 納品先ID");
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
            std::fputs(text ? text : "", file);
            std::fputc(',', file);
        }
        std::fputs("\r\n", file);
    }
    sqlite3_finalize(statement);
    std::fclose(file);
}

void Bare::saveCustomer(std::int64_t customer)
{
    run("BEGIN IMMEDIATE");
    sqlite3_stmt *update = prepared(m_handle, "UPDATE 納品先 SET 担当者名 = '担当' || (random() % 1000), "
                                              "更新日 = date('2026-01-01', random() % 99 || ' days') "
                                              "WHERE 納品先ID = ?");
    sqlite3_bind_int64(update, 1, customer);
    readAll(m_handle, update);
    run("COMMIT");
}

int Bare::ledger(std::int64_t customer, const char *from, const char *to)
{
    sqlite3_stmt *brought = prepared(
        m_handle, "SELECT total(CASE WHEN m.伝票番号 LIKE 'R%' THEN -s.金額 ELSE s.金額 END) "
                  "FROM 入出庫マスター m, 入出庫サブ s WHERE s.ID = m.ID AND m.相手先ID = ? AND m.日付 < ? "
                  "AND (m.伝票番号 LIKE 'O%' OR m.伝票番号 LIKE 'R%' OR m.伝票番号 LIKE 'B%')");
    sqlite3_bind_int64(brought, 1, customer);
    sqlite3_bind_text(brought, 2, from, -1, SQLITE_STATIC);
    readAll(m_handle, brought);
    sqlite3_stmt *lines = prepared(
        m_handle, "SELECT m.日付, m.ID, m.伝票番号, s.商品名, s.規格, s.数量, s.単位, s.単価, s.金額 "
                  "FROM 入出庫マスター m, 入出庫サブ s WHERE s.ID = m.ID AND m.相手先ID = ? "
                  "AND m.日付 BETWEEN ? AND ? "
                  "AND (m.伝票番号 LIKE 'O%' OR m.伝票番号 LIKE 'R%' OR m.伝票番号 LIKE 'B%') "
                  "ORDER BY m.日付, m.ID, s.明細ID");
    sqlite3_bind_int64(lines, 1, customer);
    sqlite3_bind_text(lines, 2, from, -1, SQLITE_STATIC);
    sqlite3_bind_text(lines, 3, to, -1, SQLITE_STATIC);
    return readAll(m_handle, lines);
}

int Bare::bill(std::int64_t customer, const char *from, const char *to)
{
    sqlite3_stmt *statement = prepared(
        m_handle, "SELECT 納品先ID, コード, 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1, FAX, "
                  "敬称, 締め日, 消費税区分 FROM 納品先 WHERE 納品先ID = ?");
    sqlite3_bind_int64(statement, 1, customer);
    return readAll(m_handle, statement) + ledger(customer, from, to);
}

int Bare::bills(int closingDay, const char *from, const char *to)
{
    sqlite3_stmt *statement = prepared(
        m_handle, "SELECT m.相手先ID, m.種別 AS k, m.日付 >= ? AS w, total(s.金額), "
                  "total(CASE WHEN s.商品名 = '消費税' THEN s.金額 END) "
                  "FROM 納品先 c CROSS JOIN 入出庫マスター m CROSS JOIN 入出庫サブ s " // customers first
                  "WHERE c.締め日 = ? AND m.相手先ID = c.納品先ID AND s.ID = m.ID AND m.日付 <= ? "
                  "AND m.種別 IN ('O', 'R', 'B') "
                  "GROUP BY m.相手先ID, k, w");
    sqlite3_bind_text(statement, 1, from, -1, SQLITE_STATIC);
    sqlite3_bind_int(statement, 2, closingDay);
    sqlite3_bind_text(statement, 3, to, -1, SQLITE_STATIC);
    return readAll(m_handle, statement);
}

int Bare::balances()
{
    return readAll(
        m_handle,
        prepared(m_handle,
                 "SELECT m.相手先ID, total(CASE WHEN m.伝票番号 LIKE 'R%' THEN -s.金額 ELSE s.金額 END) "
                 "FROM 入出庫マスター m, 入出庫サブ s WHERE s.ID = m.ID "
                 "AND (m.伝票番号 LIKE 'O%' OR m.伝票番号 LIKE 'R%' OR m.伝票番号 LIKE 'B%') "
                 "GROUP BY m.相手先ID"));
}

int Bare::purchases(const char *from, const char *to)
{
    sqlite3_stmt *statement = prepared(
        m_handle, "SELECT m.相手先ID, substr(m.伝票番号, 1, 1) AS k, m.日付 >= ? AS w, total(s.金額) "
                  "FROM 入出庫マスター m, 入出庫サブ s WHERE s.ID = m.ID AND m.日付 <= ? "
                  "AND (m.伝票番号 LIKE 'I%' OR m.伝票番号 LIKE 'P%' OR m.伝票番号 LIKE 'A%') "
                  "GROUP BY m.相手先ID, k, w");
    sqlite3_bind_text(statement, 1, from, -1, SQLITE_STATIC);
    sqlite3_bind_text(statement, 2, to, -1, SQLITE_STATIC);
    return readAll(m_handle, statement);
}

int Bare::previousSales(std::int64_t customer)
{
    sqlite3_stmt *statement =
        prepared(m_handle, "SELECT m.伝票番号, m.日付, s.商品名, s.規格, s.数量, s.単位, s.単価, s.金額 "
                           "FROM 入出庫サブ s, 入出庫マスター m WHERE s.ID = m.ID AND m.伝票番号 LIKE 'O%' "
                           "AND m.相手先ID = ? AND s.商品名 <> '消費税' ORDER BY m.日付 DESC");
    sqlite3_bind_int64(statement, 1, customer);
    return readAll(m_handle, statement);
}
} // namespace bench
