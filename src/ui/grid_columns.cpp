#include "db/recordset.h"
#include "ui/grid.h"
#include "workspace/settings.h"
#include "workspace/workspace.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QScopedValueRollback>

#include <numeric>

using namespace Qt::StringLiterals;

// The columns of a grid: which ones, in which order and how wide.
namespace ui
{

QString Grid::currentWidths() const
{
    QStringList widths;
    const QList<int> given = givenWidths();
    for (const int width : given)
        widths << QString::number(width);
    return widths.join(u' ');
}

int Grid::digitWidth() const { return fontMetrics().horizontalAdvance(u'0'); }

// What was wide enough for a smaller type is not for a larger one.
QString Grid::keptWidths(const workspace::Workspace &workspace) const
{
    const QString kept = workspace.settings.layout(m_name + u"/columns"_s);
    const int before = workspace.settings.layout(m_name + u"/digit"_s).toInt();
    const int now = digitWidth();
    if (before < 2 || before > 100 || before == now)
        return kept;
    QStringList widths = kept.split(u' ', Qt::SkipEmptyParts);
    for (QString &width : widths)
        width = QString::number(width.toLongLong() % 10000 * now / before);
    return widths.join(u' ');
}

// Without what they have of the room that was left; 0 of a hidden column.
QList<int> Grid::givenWidths() const
{
    QList<int> widths = m_given;
    for (int column = int(widths.size()); column < model()->columnCount(); ++column)
        widths << (isColumnHidden(column) ? 0 : m_gaveWay.value(column, columnWidth(column)));
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
    keepInSight();
}

void Grid::letGiveWay(const QList<GivingWay> &columns)
{
    m_givingWay = columns;
    keepInSight();
}

void Grid::takeGivenWayBack()
{
    const QScopedValueRollback quiet(m_sharing, true);
    for (auto column = m_gaveWay.cbegin(); column != m_gaveWay.cend(); ++column)
        setColumnWidth(column.key(), column.value());
    m_gaveWay.clear();
}

void Grid::keepInSight()
{
    if (m_sharing || m_givingWay.isEmpty() || !model())
        return;
    takeGivenWayBack();
    const QScopedValueRollback quiet(m_sharing, true);
    int excess = -viewport()->width();
    for (int column = 0; column < model()->columnCount(); ++column)
        excess += columnWidth(column);
    for (const auto &[column, narrowest] : std::as_const(m_givingWay)) {
        const int width = columnWidth(column);
        const int less = std::min(excess, width - narrowest);
        if (less <= 0)
            continue;
        m_gaveWay.insert(column, width);
        setColumnWidth(column, width - less);
        excess -= less;
    }
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
    hideLeftOut();
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
        setColumnWidth(column, (shown.characters + 2) * digitWidth());
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(column), place++);
    }
}

void Grid::applyWidths()
{
    if (!model())
        return;
    takeRoomBack();
    takeGivenWayBack();
    useRememberedWidths();
    shareRoom();
    keepInSight();
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

// --- Columns of the clerk's choice ---

void Grid::letChooseColumns(int first)
{
    m_choosesColumns = true;
    for (int column = first; !m_recordset && model() && column < model()->columnCount(); ++column) {
        if (!isColumnHidden(column))
            m_choosable << column;
    }
}

QList<GridColumn> Grid::offeredColumns() const
{
    QList<GridColumn> offered = m_columns;
    for (const int column : m_choosable)
        offered.push_back({model()->headerData(column, Qt::Horizontal).toString(), 0});
    return offered;
}

void Grid::hideLeftOut()
{
    for (const int column : std::as_const(m_choosable))
        setColumnHidden(column, m_leftOut.contains(model()->headerData(column, Qt::Horizontal).toString()));
}

void Grid::setShown(const QString &column, bool shown)
{
    m_widths = currentWidths();
    if (shown)
        m_leftOut.removeAll(column);
    else if (m_leftOut.size() + 1 < offeredColumns().size())
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
    if (!m_choosesColumns)
        return menu;
    QMenu *columns = menu->addMenu(u"表示する項目(&C)"_s);
    const QList<GridColumn> offered = offeredColumns();
    for (const GridColumn &shown : offered) {
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
    if (!model() || !(m_choosesColumns || (m_sorts && currentIndex().isValid())))
        return;
    QMenu *menu = columnMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QPoint ofCursor = viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
    menu->popup(event->reason() == QContextMenuEvent::Keyboard ? ofCursor : event->globalPos());
}

} // namespace ui
