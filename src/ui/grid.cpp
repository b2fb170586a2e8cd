#include "ui/grid.h"

#include "db/recordset.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <numeric>

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
        if (!m_sharing && column < m_given.size())
            m_given[column] = qRound(width / m_share);
    });
}

void Grid::setUp(const workspace::Workspace &workspace, const QString &name)
{
    m_name = name;
    m_widths = workspace.settings.layout(name + u"/columns"_s);
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
    if (m_choosesColumns)
        workspace.settings.writeLayout(m_name + u"/hidden"_s, m_leftOut.join(u' '));
}

QString Grid::currentWidths() const
{
    QStringList widths;
    const QList<int> given = givenWidths();
    for (const int width : given)
        widths << QString::number(width);
    return widths.join(u' ');
}

// Without what they have of the room that was left; 0 of a hidden column.
QList<int> Grid::givenWidths() const
{
    QList<int> widths = m_given;
    for (int column = int(widths.size()); column < model()->columnCount(); ++column)
        widths << (isColumnHidden(column) ? 0 : columnWidth(column));
    return widths;
}

void Grid::setWidths(const QList<int> &given, double share)
{
    const QScopedValueRollback quiet(m_sharing, true);
    for (int column = 0; column < int(given.size()); ++column) {
        if (given.at(column) > 0)
            setColumnWidth(column, int(given.at(column) * share));
    }
}

// On a wide display the columns share what room is left, each in its proportion.
void Grid::shareRoom()
{
    constexpr int wide = 1200; // pixels; in a smaller table they have the widths that they were given
    if (m_sharing || !model() || horizontalHeader()->stretchSectionCount() > 0)
        return;
    const QList<int> given = givenWidths();
    const int total = std::accumulate(given.begin(), given.end(), 0);
    const int room = viewport()->width();
    const bool isLeft = room > wide && total > 0 && total < room;
    if (!isLeft && m_given.isEmpty())
        return;
    m_share = isLeft ? double(room) / total : 1;
    setWidths(given, m_share);
    m_given = isLeft ? given : QList<int>();
}

void Grid::takeRoomBack()
{
    setWidths(m_given, 1);
    m_given.clear();
}

void Grid::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    shareRoom();
}

void Grid::setColumns(const QList<GridColumn> &columns)
{
    m_columns = columns;
    if (m_rows)
        m_rows->setColumns(columns);
    arrangeColumns();
}

void Grid::setNames(const QString &column, const NameOf &nameOf)
{
    for (GridColumn &shown : m_columns) {
        if (shown.column == column)
            shown.nameOf = nameOf;
    }
    if (m_rows)
        m_rows->setNames(column, nameOf);
}

void Grid::arrangeColumns()
{
    m_given.clear();
    if (m_recordset && !m_columns.isEmpty())
        showColumns();
    applyWidths();
}

// Scroll bars come and go meanwhile, and with them the room; it is shared when all columns are there.
void Grid::showColumns()
{
    const QScopedValueRollback quiet(m_sharing, true);
    for (int column = 0; column < model()->columnCount(); ++column)
        setColumnHidden(column, true);
    int place = 0;
    for (const GridColumn &shown : std::as_const(m_columns)) {
        const int column = m_recordset->columnOf(shown.column);
        if (column < 0 || m_leftOut.contains(shown.column))
            continue;
        setColumnHidden(column, false);
        setColumnWidth(column, (shown.characters + 2) * fontMetrics().horizontalAdvance(u'0'));
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(column), place++);
    }
}

void Grid::applyWidths()
{
    if (!model())
        return;
    takeRoomBack();
    useRememberedWidths();
    shareRoom();
}

void Grid::useRememberedWidths()
{
    const QScopedValueRollback quiet(m_sharing, true);
    const QStringList widths = m_widths.split(u' ', Qt::SkipEmptyParts);
    for (int column = 0; column < std::min<int>(int(widths.size()), model()->columnCount()); ++column) {
        const int width = widths.at(column).toInt();
        if (width >= 10 && width <= 4000 && !isColumnHidden(column))
            setColumnWidth(column, width);
    }
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
        const base::Status moved = m_recordset->moveTo(now.row());
        followRecordset(m_recordset->currentRow());
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

// --- Sorting, and columns of the clerk's choice ---

void Grid::letSort()
{
    m_sorts = true;
    horizontalHeader()->setSectionsClickable(true);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &Grid::sortBy);
}

void Grid::sortBy(int column)
{
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

void Grid::letChooseColumns() { m_choosesColumns = true; }

void Grid::setShown(const QString &column, bool shown)
{
    m_widths = currentWidths();
    if (shown)
        m_leftOut.removeAll(column);
    else if (m_leftOut.size() + 1 < m_columns.size())
        m_leftOut << column;
    arrangeColumns();
}

QMenu *Grid::columnMenu()
{
    auto *menu = new QMenu(this);
    const int column = currentIndex().isValid() ? currentIndex().column() : -1;
    if (m_sorts && column >= 0) {
        const QString heading = model()->headerData(column, Qt::Horizontal).toString();
        menu->addAction(u"「%1」で並べ替え(&S)"_s.arg(heading), this, [this, column] { sortBy(column); });
    }
    QMenu *columns = menu->addMenu(u"表示する項目(&C)"_s);
    for (const GridColumn &shown : std::as_const(m_columns)) {
        QAction *action = columns->addAction(shown.heading.isEmpty() ? shown.column : shown.heading);
        action->setCheckable(true);
        action->setChecked(!m_leftOut.contains(shown.column));
        connect(action, &QAction::toggled, this,
                [this, name = shown.column](bool wanted) { setShown(name, wanted); });
    }
    return menu;
}

void Grid::contextMenuEvent(QContextMenuEvent *event)
{
    if (!m_choosesColumns || !model())
        return;
    QMenu *menu = columnMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QPoint ofCursor = viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
    menu->popup(event->reason() == QContextMenuEvent::Keyboard ? ofCursor : event->globalPos());
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

// With each new row the view would draw all of them anew, and the clerk would wait for it at every line.
void Grid::showAppended(const std::function<void()> &append)
{
    executeDelayedItemsLayout();
    const QSize size = viewport()->size();
    const int top = verticalScrollBar()->value();
    const bool isDrawn = viewport()->updatesEnabled();
    viewport()->setAttribute(Qt::WA_UpdatesDisabled);
    append();
    executeDelayedItemsLayout();
    viewport()->setAttribute(Qt::WA_UpdatesDisabled, !isDrawn);
    const int last = model()->rowCount() - 1;
    if (viewport()->size() != size || verticalScrollBar()->value() != top)
        viewport()->update();
    else
        viewport()->update(0, rowViewportPosition(last), size.width(), rowHeight(last));
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
