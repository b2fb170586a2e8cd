#pragma once

#include "support/fresh_shop.h"
#include "support/screen_driver.h"
#include "ui/grid.h"

/// A register in a shop of its own, with hands on its screen and its list.
template <class Screen>
struct RegisterDesk : ScreenDriver
{
    /// \a table is the one that the register shows, its key named after it.
    explicit RegisterDesk(QString shownTable)
        : ScreenDriver(&screen)
        , table(std::move(shownTable))
    {}

    ui::Grid &grid() { return the<ui::Grid>("DataGrid1"); }
    void goTo(int row) { grid().setCurrentIndex(grid().model()->index(row, grid().currentIndex().column())); }
    /// The keys in the list, in its order.
    QString listed()
    {
        QStringList keys;
        for (int row = 0; row < grid().model()->rowCount(); ++row)
            keys << grid().model()->index(row, 0).data().toString();
        return keys.join(u' ');
    }
    /// What the file holds of the row with the key \a id.
    QString stored(const QString &columns, int id)
    {
        return shop.rows(QStringLiteral("SELECT %1 FROM %2 WHERE %2ID = ?").arg(columns, table), {id})
            .join(u'\n');
    }

    QString table;
    FreshShop shop;
    Screen screen{shop.workspace};
};
