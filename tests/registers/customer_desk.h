#pragma once

#include "registers/frmNouhin.h"
#include "registers/register_desk.h"

#include <QtTest>

#include <functional>

using namespace Qt::StringLiterals;

// The register of a shop with two categories and, when wanted, three customers: 3 田中, 1 山田, 2 鈴木 in the
// list's order.
struct CustomerDesk : RegisterDesk<registers::frmNouhin>
{
    enum With { NoCategories, NoCustomers, Customers };

    explicit CustomerDesk(With with = Customers, const std::function<void(CustomerDesk &)> &before = {})
        : RegisterDesk(u"納品先"_s)
    {
        if (with != NoCategories)
            shop.run(u"INSERT INTO 登録区分 (区分ID, 区分名) VALUES (1, '得意先'), (2, '一般')"_s);
        if (with == Customers) {
            shop.run(
                u"INSERT INTO 納品先 (納品先ID, コード, 納品先名1, フリガナ, 納品先名キー, 区分ID, 更新日, "
                "締め日, 消費税区分, 元帳出力) VALUES "
                "(1, 'A1', '山田太郎', 'ﾔﾏﾀﾞﾀﾛｳ', '山田太郎 A1  ﾔﾏﾀﾞﾀﾛｳ', 1, '2026-02-01', 15, 1, 1), "
                "(2, 'B2', '鈴木花子', 'ｽｽﾞｷﾊﾅｺ', '鈴木花子 B2  ｽｽﾞｷﾊﾅｺ', 2, '2026-01-01', 0, 2, 0), "
                "(3, 'C3', '田中次郎', 'ﾀﾅｶｼﾞﾛｳ', '田中次郎 C3  ﾀﾅｶｼﾞﾛｳ', 1, '2026-02-01', NULL, 0, 0)"_s);
        }
        if (before)
            before(*this);
        show();
    }

    QString enabled()
    {
        return ScreenDriver::enabled(
            {"Frame2", "DataGrid1", "panel", "cmdAdd", "cmdUpdate", "cmdNewDate", "cmdCancel", "cmdDelete"});
    }
};

// Which controls can be used.
inline const QString browsing = u"Frame2 DataGrid1 panel cmdAdd cmdNewDate cmdDelete"_s;
inline const QString entry = u"panel cmdUpdate cmdCancel"_s;
inline const QString withoutRows = u"Frame2 DataGrid1 cmdAdd"_s;

inline void clickRow(CustomerDesk &r, int row)
{
    const QModelIndex index = r.grid().model()->index(row, r.grid().currentIndex().column());
    QTest::mouseClick(r.grid().viewport(), Qt::LeftButton, {}, r.grid().visualRect(index).center());
}
