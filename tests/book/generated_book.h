#pragma once

#include "db/transaction.h"
#include "support/fresh_shop.h"

#include <QRandomGenerator>

/// Fifteen months of a shop, out of a seeded generator: slips of all kinds and none in the order of their
/// dates, amounts with decimals, reversals, tax lines, headers without lines, and counterparts that were
/// deleted afterwards. The keys of customers (1 to 12) and suppliers (5 to 14) overlap, as they do in every
/// shop.
class GeneratedBook
{
public:
    static constexpr int slips = 3000;
    static constexpr int firstSupplier = 5;

    inline static const QDate firstDay{2025, 1, 1};
    inline static const QDate lastDay{2026, 3, 31};

    /// The last days of the book's months, and the day before it begins.
    static QList<QDate> monthEnds()
    {
        QList<QDate> ends{firstDay.addDays(-1)};
        for (QDate month = firstDay; month < lastDay; month = month.addMonths(1))
            ends << month.addMonths(1).addDays(-1);
        return ends;
    }

    static void writeTo(FreshShop &shop)
    {
        const base::Status written = db::atomically(shop.connection, [&shop] {
            GeneratedBook(shop).write();
            return base::Status();
        });
        if (!written)
            qFatal("%s", qPrintable(written.error().text));
    }

private:
    explicit GeneratedBook(FreshShop &shop)
        : m_shop(shop)
    {}

    void write()
    {
        using namespace Qt::StringLiterals;
        m_shop.run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, '木村', '')"_s);
        for (int i = 0; i < 12; ++i)
            writeCounterpart(u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, 納品先名キー, フリガナ, "
                             "消費税区分) VALUES (?, ?, ?, ?, ?, ?)"_s,
                             1 + i, u"ﾔﾏﾀﾞ"_s);
        for (int i = 0; i < 10; ++i)
            writeCounterpart(u"INSERT INTO 仕入先 (仕入先ID, コード, 仕入先名1, 仕入先名キー, 担当者1, "
                             "消費税区分) VALUES (?, ?, ?, ?, ?, ?)"_s,
                             firstSupplier + i, u"佐藤"_s);
        for (int id = 1; id <= slips; ++id)
            writeSlip(id);
        m_shop.run(u"DELETE FROM 納品先 WHERE 納品先ID IN (3, 11)"_s);
        m_shop.run(u"DELETE FROM 仕入先 WHERE 仕入先ID IN (6, 13)"_s);
    }

    // One of each three has each class of tax.
    void writeCounterpart(const QString &statement, int id, const QString &text)
    {
        const QString name = QStringLiteral("相手%1").arg(id);
        m_shop.run(statement, {id, QStringLiteral("C%1").arg(100 - id), name, name,
                               text + QString::number(id % 4), id % 3});
    }

    int upTo(int highest) { return static_cast<int>(m_random.bounded(1, highest + 1)); }

    void writeSlip(int id)
    {
        // How often each kind comes: sales, purchases, receipts, payments, estimates, stocktakes, carried.
        const char kind = "OOOOOOIIIIIRRRPPMTAB"[upTo(20) - 1];
        const bool ofSupplier = QByteArray("IPAT").contains(kind);
        const int counterpart = ofSupplier ? firstSupplier - 1 + upTo(10) : upTo(12);
        const QDate date = firstDay.addDays(upTo(static_cast<int>(firstDay.daysTo(lastDay)) + 1) - 1);
        const QString infix = upTo(5) == 1 ? QStringLiteral("25-") : QString();
        m_shop.run(
            QStringLiteral("INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率) "
                           "VALUES (?, ?, ?, ?, 1, 10)"),
            {id, date.toString(Qt::ISODate), QLatin1Char(kind) + infix + QString::number(id), counterpart});
        const int lines = upTo(5) - 1; // some have none
        if (QByteArray("OIMT").contains(kind))
            writeGoods(id, lines, QByteArray("OI").contains(kind) && counterpart % 3 != 1);
        else
            writeMoney(id, lines);
    }

    void writeGoods(int id, int lines, bool taxed)
    {
        qint64 total = 0;
        for (int i = 0; i < lines; ++i) {
            const double quantity = upTo(3) == 1 ? upTo(400) / 10.0 : upTo(40);
            const int price = upTo(20) == 1 ? -upTo(3000) : upTo(3000);
            const auto amount = static_cast<qint64>(quantity * 10) * price / 10;
            total += amount;
            m_shop.run(QStringLiteral("INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) "
                                      "VALUES (?, ?, ?, ?, ?, ?, ?)"),
                       {id, QStringLiteral("商品%1").arg(upTo(8)),
                        upTo(2) == 1 ? QStringLiteral("大") : QVariant(), quantity,
                        upTo(3) == 1 ? QStringLiteral("箱") : QStringLiteral("kg"), price, amount});
        }
        if (taxed && total / 10 != 0)
            m_shop.run(QStringLiteral("INSERT INTO 入出庫サブ (ID, 商品名, 金額) VALUES (?, '消費税', ?)"),
                       {id, total / 10});
    }

    void writeMoney(int id, int lines)
    {
        for (int i = 0; i < lines; ++i) {
            const double amount = upTo(4) == 1 ? upTo(90'000'000) / 10000.0 : upTo(40'000);
            m_shop.run(QStringLiteral("INSERT INTO 入出庫サブ (ID, 商品名, 規格, 金額) VALUES (?, ?, ?, ?)"),
                       {id, QStringLiteral("入　金"), QStringLiteral("銀行振込"), amount});
        }
    }

    FreshShop &m_shop;
    QRandomGenerator m_random{20260401};
};
