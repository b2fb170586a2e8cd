#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

namespace ui
{

class Grid;

/// Makes the cells of a grid editable as in a table on paper: typing replaces a cell, F2 and a double click
/// open it, Enter takes what was typed and goes on to the next cell, with no cell open too, and never leaves
/// the row, Esc leaves it as it was. What the model
/// does not take stays open to be mended. The current cell is framed, since the grid marks whole rows.
class CellDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// Lives as long as \a grid.
    explicit CellDelegate(Grid *grid);

    /// Takes what stands in the open cell and closes it, as before an action that works on what was entered.
    /// \return whether it was taken, or no cell is open
    bool settle();
    /// Closes the open cell, and what stands in it is not taken.
    void giveUp();

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
    bool eventFilter(QObject *editor, QEvent *event) override;

private:
    bool take(QWidget *editor);
    void moveOn();

    Grid *m_grid;
    mutable QPointer<QWidget> m_editor;
    mutable QString m_opened;    // what stood in it
    mutable bool m_taken = true; // what was typed last
};

} // namespace ui
