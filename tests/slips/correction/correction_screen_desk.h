#pragma once

#include "slips/correction/correction_desk.h"
#include "slips/correction/frmInAmd.h"
#include "slips/correction/frmMitumoriAmd.h"
#include "slips/correction/frmOutAmd.h"
#include "support/screen_driver.h"
#include "ui/grid.h"
#include "ui/prompts.h"

#include <QLabel>
#include <QLineEdit>
#include <QtTest>

using namespace Qt::StringLiterals;

inline std::unique_ptr<slips::SlipCorrectionScreen> screenOf(workspace::Workspace &workspace,
                                                             const book::SlipKind &kind)
{
    if (kind == book::estimate)
        return std::make_unique<slips::frmMitumoriAmd>(workspace);
    if (kind.party == book::Party::Customer)
        return std::make_unique<slips::frmOutAmd>(workspace, nullptr, kind);
    return std::make_unique<slips::frmInAmd>(workspace, nullptr, kind);
}

// The answers to the screens' questions; Enter alone goes back.
inline const QString recalculate = u"計算し直して更新"_s;
inline const QString asItIs = u"このまま更新"_s;
inline const QString intoTheSlip = u"伝票に入れる"_s;
inline const QString drop = u"変更をやめる"_s;
inline const QString goBack;

inline const QString doubtQuestion =
    u"金額または消費税が、明細と合っていません。計算し直して更新しますか。"_s;

inline void expectDoubt(const QString &answer) { ui::prompts::expectAskWhichWay(doubtQuestion, answer); }
inline void expectNewLine(const QString &answer) { ui::prompts::expectAskWhichWay({}, answer); }

/// The correction screen of a kind in the shop.
struct CorrectionDesk
{
    explicit CorrectionDesk(const book::SlipKind &kind = book::sale, bool followsTaxTable = false)
        : screen(screenOf(shop.following(followsTaxTable), kind))
        , driver(screen.get())
    {
        driver.show();
    }

    ui::Grid &headers() { return driver.the<ui::Grid>("DataGrid1"); }
    ui::Grid &lines() { return driver.the<ui::Grid>("dgdSub"); }
    QString message() { return driver.the<QLabel>("lblMessage").text(); }
    QStringList numbers()
    {
        QStringList found;
        for (int row = 0; row < headers().model()->rowCount(); ++row)
            found << cell(headers(), row, u"伝票番号"_s).data().toString();
        return found;
    }
    static QModelIndex cell(const ui::Grid &grid, int row, const QString &heading)
    {
        for (int column = 0; column < grid.model()->columnCount(); ++column) {
            if (grid.model()->headerData(column, Qt::Horizontal).toString() == heading)
                return grid.model()->index(row, column);
        }
        qFatal("no column %s", qPrintable(heading));
    }

    /// Types into a cell as a clerk does, and leaves it with Enter.
    void type(ui::Grid &grid, int row, const QString &heading, const QString &text)
    {
        QTest::keyClick(typeInto(grid, row, heading, text), Qt::Key_Return);
        QTest::qWait(1); // a refusal is told with the next turn of the event loop
    }
    /// The same, with the cell still open.
    QLineEdit *typeInto(ui::Grid &grid, int row, const QString &heading, const QString &text)
    {
        grid.setFocus();
        grid.setCurrentIndex(cell(grid, row, heading));
        QTest::keyClick(&grid, Qt::Key_F2);
        auto *editor = grid.viewport()->findChild<QLineEdit *>();
        if (!editor)
            qFatal("%s cannot be edited", qPrintable(heading));
        editor->setText(text);
        return editor;
    }

    /// The lines of the slip 9 as they are stored.
    QStringList stored()
    {
        return shop.rows(u"SELECT 商品名, 数量, 金額 FROM 入出庫サブ WHERE ID = 9 ORDER BY 明細ID"_s);
    }

    CorrectionShop shop;
    std::unique_ptr<slips::SlipCorrectionScreen> screen;
    ScreenDriver driver;
};
