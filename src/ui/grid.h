#pragma once

#include "base/result.h"
#include "ui/grid_rows.h"

#include <QPointer>
#include <QTableView>

#include <functional>

class QMenu;

namespace workspace
{
class Workspace;
}

namespace db
{
class Recordset;
}

namespace ui
{

/// The grid of every screen: whole rows selected, column widths remembered, Ctrl+C copies the selected rows
/// with their headings' columns as tab-separated text, line spacing as the settings panel has it. Tab leaves
/// it.
class Grid : public QTableView
{
    Q_OBJECT

public:
    explicit Grid(QWidget *parent = nullptr);

    /// Applies the panel's spacing and the widths stored under \a name ("frmOut/dgdSub").
    void setUp(const workspace::Workspace &workspace, const QString &name);
    /// Stores the column widths under the name given to setUp().
    void saveLayout(workspace::Workspace &workspace) const;

    /// Shows only \a columns, in this order, whichever statement the record set opens.
    void setColumns(const QList<GridColumn> &columns);

    /// Shows what \a nameOf gives in place of the numbers of \a column, from now on.
    void setNames(const QString &column, const NameOf &nameOf);

    /// Shows \a recordset and keeps the grid's current row and the record set's one together. When a row
    /// cannot be left, \a refused gets the reason and the grid stays.
    void bind(db::Recordset &recordset, std::function<void(const QString &)> refused);

    /// From now on a click on a heading, or the context menu, sorts the record set's rows by its column: up,
    /// down, and as before. To be called before bind(). Other rows are for who hears sortWanted() to sort.
    void letSort();

    /// From now on the clerk chooses with the context menu which of the columns of setColumns() show; of
    /// other models which of those that show now, \a first and the ones behind it. They are remembered as
    /// the widths are.
    void letChooseColumns(int first = 0);
    /// That menu, for the column with the cursor. The caller owns it.
    [[nodiscard]] QMenu *columnMenu();

    /// A column that gives way to the others, down to so many pixels.
    struct GivingWay
    {
        int column;
        int narrowest;
    };
    /// From now on \a columns, in this order, are narrower than they were set where the table is too narrow
    /// for all of its columns, and only as long as it is.
    void letGiveWay(const QList<GivingWay> &columns);
    /// Does so anew, after a column was shown or hidden.
    void keepInSight();

    /// Scrolls to the row that \a append puts at the end, and draws that one alone.
    void showAppended(const std::function<void()> &append);

    /// The selected rows as tab-separated lines.
    [[nodiscard]] QString selectedText() const;

signals:
    /// The clerk went to another row of the record set.
    void wentTo(int row);
    /// Rows that are no record set's are to be sorted by \a column.
    void sortWanted(int column);

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;

private:
    void followRecordset(int row);
    base::Status goTo(int row);
    void reachFor(CursorAction action, Qt::KeyboardModifiers modifiers);
    [[nodiscard]] int cursorColumn() const;
    void arrangeColumns();
    void showColumns();
    void sortBy(int column);
    void showSorting();
    void setShown(const QString &column, bool shown);
    [[nodiscard]] QList<GridColumn> offeredColumns() const;
    void hideLeftOut();
    void applyWidths();
    void useRememberedWidths();
    [[nodiscard]] QList<int> givenWidths() const;
    void setWidths(const QList<int> &given, double share);
    void shareRoom();
    void takeRoomBack();
    void takeGivenWayBack();
    [[nodiscard]] QString currentWidths() const;
    [[nodiscard]] QString keptWidths(const workspace::Workspace &workspace) const;
    [[nodiscard]] int digitWidth() const; // pixels

    QString m_name;
    QList<int> m_given; // the columns' own widths while they share the room of a wide display
    double m_share = 1; // by which they are wider then
    bool m_sharing = false;
    QList<GivingWay> m_givingWay;
    QHash<int, int> m_gaveWay; // columns that did, with the widths that they were set to
    QString m_widths;
    QList<GridColumn> m_columns;
    db::Recordset *m_recordset = nullptr;
    QPointer<GridRows> m_rows; // of the record set, and gone with it
    std::function<void(const QString &)> m_refused;
    bool m_following = false;

    bool m_sorts = false;
    QString m_sortedBy; // empty: in the order of the statement
    Qt::SortOrder m_direction = Qt::AscendingOrder;
    bool m_isSorting = false;
    bool m_choosesColumns = false;
    QList<int> m_choosable; // of a model of the screen's own
    QStringList m_leftOut;  // columns that the clerk does not want to see
};

} // namespace ui
