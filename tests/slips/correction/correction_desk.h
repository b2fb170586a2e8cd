#pragma once

#include "book/slip_kind.h"
#include "support/fresh_shop.h"

/// A shop with a slip of every kind, 1 to 8 in the order of slips::allKinds, each of counterpart 1; slip 9 is
/// another sale, of customer 2.
class CorrectionShop : public FreshShop
{
public:
    CorrectionShop()
    {
        using namespace Qt::StringLiterals;
        run(u"BEGIN"_s);
        run(u"INSERT INTO 社員 (社員ID, 社員名, 内線番号) VALUES (1, '木村', ''), (2, '田中', '')"_s);
        for (int id = 1; id <= 3; ++id) {
            // 3 shares its key with 2.
            const QVariantList values{id, u"客%1"_s.arg(id), u"key%1"_s.arg(std::min(id, 2))};
            run(u"INSERT INTO 納品先 (納品先ID, 納品先名1, 納品先名キー, 消費税区分) VALUES (?, ?, ?, 0)"_s,
                values);
            run(u"INSERT INTO 仕入先 (仕入先ID, 仕入先名1, 仕入先名キー, 消費税区分) VALUES (?, ?, ?, 0)"_s,
                values);
        }
        qint64 id = 0;
        for (const book::SlipKind &kind : book::allKinds) {
            ++id;
            addSlip(id, QChar(kind.letter) + QString::number(id), 1);
        }
        addSlip(9, u"O9"_s, 2);
        run(u"COMMIT"_s);
    }

    void addSlip(qint64 id, const QString &number, qint64 counterpart)
    {
        using namespace Qt::StringLiterals;
        run(u"INSERT INTO 入出庫マスター (ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考) "
            "VALUES (?, '2026-03-01', ?, ?, 1, 5, NULL)"_s,
            {id, number, counterpart});
        run(u"INSERT INTO 入出庫サブ (ID, 商品名, 規格, 数量, 単位, 単価, 金額) VALUES (?, 'りんご', '箱', "
            u"2, '個', 1000, 2000), "
            "(?, '消費税', NULL, NULL, NULL, NULL, 100)"_s,
            {id, id});
    }

    /// The workspace of a shop that goes by the table of rates, or keeps one by hand.
    workspace::Workspace &following(bool table)
    {
        workspace.panel.followsTaxTable = table;
        return workspace;
    }

    /// What the slips hold, line by line.
    QStringList book()
    {
        using namespace Qt::StringLiterals;
        return rows(
                   u"SELECT ID, 日付, 伝票番号, 相手先ID, 社員ID, 消費税率, 備考 FROM 入出庫マスター ORDER BY ID"_s) +
               rows(u"SELECT ID, 商品名, 規格, 数量, 単位, 単価, 金額 FROM 入出庫サブ ORDER BY rowid"_s);
    }
};
