#include "ui/grid.h"

#include "db/recordset.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace ui
{

namespace
{

// Added to the height of a line of type, pixels.
int spacingOf(workspace::GridSpacing spacing)
{
    switch (spacing) {
    case workspace::GridSpacing::Small:
        return 4;
    case workspace::GridSpacing::Medium:
        return 10;
    case workspace::GridSpacing::Large:
        return 16;
    }
    return 4;
}

} // namespace

Grid::Grid(QWidget *parent)
    : QTableView(parent)
{
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setContextMenuPolicy(Qt::NoContextMenu); // the grid's
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->hide();
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (m_sharing)
            return;
        m_gaveWay.remove(column);
        if (column < m_given.size())
            m_given[column] = qRound(width / m_share);
    });
}

void Grid::setUp(const workspace::Workspace &workspace, const QString &name)
{
    m_name = name;
    m_widths = keptWidths(workspace);
    if (m_choosesColumns)
        m_leftOut = workspace.settings.layout(name + u"/hidden"_s).split(u' ', Qt::SkipEmptyParts);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + spacingOf(workspace.panel.gridSpacing));
    // Widths that a screen gave its columns stay where nothing else is remembered.
    if (m_leftOut.isEmpty())
        applyWidths();
    else
        arrangeColumns();
}

void Grid::saveLayout(workspace::Workspace &workspace) const
{
    if (m_name.isEmpty() || !model() || model()->columnCount() == 0)
        return;
    workspace.settings.writeLayout(m_name + u"/columns"_s, currentWidths());
    workspace.settings.writeLayout(m_name + u"/digit"_s, QString::number(digitWidth()));
    if (m_choosesColumns)
        workspace.settings.writeLayout(m_name + u"/hidden"_s, m_leftOut.join(u' '));
}

void Grid::bind(db::Recordset &recordset, std::function<void(const QString &)> refused)
{
    m_recordset = &recordset;
    m_refused = std::move(refused);
    delete m_rows;
    m_rows = new GridRows(recordset);
    m_rows->setColumns(m_columns);
    setModel(m_rows);
    connect(&recordset, &db::Recordset::currentRowChanged, this, &Grid::followRecordset);
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex &now) {
        if (m_following || !now.isValid() || now.row() == m_recordset->currentRow())
            return;
        const base::Status moved = goTo(now.row());
        // A click goes on to mark the row that it hit, whichever is current by then.
        if (m_recordset->currentRow() != now.row())
            QMetaObject::invokeMethod(
                this, [this] { followRecordset(m_recordset->currentRow()); }, Qt::QueuedConnection);
        if (!moved && m_refused && !moved.error().text.isEmpty())
            m_refused(moved.error().text);
    });
    // A header forgets its columns with every new statement.
    connect(m_rows, &GridRows::modelAboutToBeReset, this, [this] {
        if (model()->columnCount() > 0)
            m_widths = currentWidths();
    });
    connect(m_rows, &GridRows::modelReset, this, &Grid::arrangeColumns);
    connect(m_rows, &GridRows::modelReset, this, &Grid::showSorting);
    followRecordset(recordset.currentRow());
    arrangeColumns();
}

// Where several rows can be marked, the view marks as its keys and buttons say.
base::Status Grid::goTo(int row)
{
    const bool marksItself = selectionMode() != SingleSelection;
    m_following = marksItself;
    const base::Status moved = m_recordset->moveTo(row);
    m_following = false;
    if (!marksItself || m_recordset->currentRow() != row)
        followRecordset(m_recordset->currentRow());
    if (m_recordset->currentRow() == row)
        emit wentTo(row);
    return moved;
}

// --- Sorting ---

void Grid::letSort()
{
    m_sorts = true;
    horizontalHeader()->setSectionsClickable(true);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &Grid::sortBy);
}

void Grid::sortBy(int column)
{
    if (!m_recordset)
        emit sortWanted(column);
    if (!m_recordset || !m_recordset->isOpen())
        return;
    const QString name = m_recordset->columns().value(column);
    const bool again = name == m_sortedBy;
    const bool isLast = again && m_direction == Qt::DescendingOrder;
    const auto direction = again ? Qt::DescendingOrder : Qt::AscendingOrder;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_isSorting = true;
    const QString before = std::exchange(m_sortedBy, isLast ? QString() : name);
    const auto directionBefore = std::exchange(m_direction, direction);
    const base::Status sorted = m_recordset->sortBy(m_sortedBy, direction);
    m_isSorting = false;
    QGuiApplication::restoreOverrideCursor();
    if (!sorted) {
        m_sortedBy = before;
        m_direction = directionBefore;
        if (m_refused && !sorted.error().text.isEmpty())
            m_refused(sorted.error().text);
    }
    showSorting();
}

// A new statement comes in its own order.
void Grid::showSorting()
{
    if (!m_sorts)
        return;
    if (!m_isSorting && sender() == m_rows)
        m_sortedBy.clear();
    const int column = m_recordset->columnOf(m_sortedBy);
    horizontalHeader()->setSortIndicatorShown(column >= 0);
    if (column >= 0)
        horizontalHeader()->setSortIndicator(column, m_direction);
}

void Grid::followRecordset(int row)
{
    if (m_following)
        return;
    m_following = true;
    if (row < 0) {
        selectionModel()->clear();
    } else if (currentIndex().row() != row || !selectionModel()->isRowSelected(row)) {
        const QModelIndex index = model()->index(row, cursorColumn());
        selectionModel()->setCurrentIndex(index,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        scrollTo(index);
    }
    m_following = false;
}

// With new rows the view would draw all of them anew, and the clerk would wait for it at every line.
void Grid::showAppended(const std::function<void()> &append)
{
    executeDelayedItemsLayout();
    const QSize size = viewport()->size();
    const int first = model()->rowCount();
    const bool isDrawn = viewport()->updatesEnabled();
    viewport()->setAttribute(Qt::WA_UpdatesDisabled);
    append();
    executeDelayedItemsLayout();
    viewport()->setAttribute(Qt::WA_UpdatesDisabled, !isDrawn);
    // What is scrolled is not moved on the screen: the rows that were hidden until now are drawn with the
    // rest.
    if (viewport()->size() != size || verticalScrollBar()->value() != verticalScrollBar()->maximum())
        viewport()->update();
    else
        viewport()->update(0, rowViewportPosition(first), size.width(),
                           rowHeight(first) * (model()->rowCount() - first));
    scrollToBottom();
}

// The arrow keys move from a column that shows only.
int Grid::cursorColumn() const
{
    if (currentIndex().isValid() && !isColumnHidden(currentIndex().column()))
        return currentIndex().column();
    for (int place = 0; place < horizontalHeader()->count(); ++place) {
        const int column = horizontalHeader()->logicalIndex(place);
        if (!isColumnHidden(column))
            return column;
    }
    return 0;
}

QString Grid::selectedText() const
{
    QStringList lines;
    const QModelIndexList rows = selectionModel() ? selectionModel()->selectedRows() : QModelIndexList();
    for (const QModelIndex &row : rows) {
        QStringList cells;
        for (int place = 0; place < model()->columnCount(); ++place) {
            const int column = horizontalHeader()->logicalIndex(place);
            if (!isColumnHidden(column))
                cells << model()->index(row.row(), column).data().toString();
        }
        lines << cells.join(u'\t');
    }
    return lines.join(u'\n');
}

// A key goes to the row it is meant for, also while the record set is still getting to know its rows.
QModelIndex Grid::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (m_recordset && !m_recordset->isComplete())
        reachFor(action, modifiers);
    return QTableView::moveCursor(action, modifiers);
}

void Grid::reachFor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const int page = viewport()->height() / std::max(1, verticalHeader()->defaultSectionSize()) + 1;
    const int row = m_recordset->currentRow();
    const bool byControl = modifiers.testFlag(Qt::ControlModifier);
    base::Status moved;
    if (action == MoveDown || action == MovePageDown)
        m_recordset->reach(row + page);
    else if (action == MoveUp || action == MovePageUp)
        m_recordset->reach(row - page);
    else if (byControl && (action == MoveHome || action == MoveEnd))
        moved = action == MoveHome ? m_recordset->moveFirst() : m_recordset->moveLast();
    if (!moved && m_refused && !moved.error().text.isEmpty())
        m_refused(moved.error().text);
}

// Rows that come in above those that are seen leave them where they are.
void Grid::rowsInserted(const QModelIndex &parent, int start, int end)
{
    const int top = verticalScrollBar()->value();
    QTableView::rowsInserted(parent, start, end);
    if (!m_recordset || start > top || m_recordset->currentRow() <= end)
        return;
    updateGeometries();
    verticalScrollBar()->setValue(top + end - start + 1);
}

void Grid::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(selectedText());
        return;
    }
    // Return goes on to the screen, which moves the focus as it does from every box.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        event->ignore();
        return;
    }
    QTableView::keyPressEvent(event);
}

// Ctrl takes the mark off the row it is used on, but the screen goes on showing that row.
QItemSelectionModel::SelectionFlags Grid::selectionCommand(const QModelIndex &index,
                                                           const QEvent *event) const
{
    const auto command = QTableView::selectionCommand(index, event);
    if (selectionMode() == SingleSelection && command.testFlag(QItemSelectionModel::Deselect))
        return QItemSelectionModel::NoUpdate;
    return command;
}

} // namespace ui
