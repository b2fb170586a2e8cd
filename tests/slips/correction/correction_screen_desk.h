#pragma once

#include "slips/correction/correction_desk.h"
#include "slips/correction/frmInAmd.h"
#include "slips/correction/frmMitumoriAmd.h"
#include "slips/correction/frmOutAmd.h"
#include "support/screen_driver.h"
#include "ui/grid.h"

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

/// The correction screen of a kind in the shop.
struct CorrectionDesk
{
    explicit CorrectionDesk(const book::SlipKind &kind = book::sale)
        : screen(screenOf(shop.workspace, kind))
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

    CorrectionShop shop;
    std::unique_ptr<slips::SlipCorrectionScreen> screen;
    ScreenDriver driver;
};
