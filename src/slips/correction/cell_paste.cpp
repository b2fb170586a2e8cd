#include "slips/correction/cell_paste.h"

#include "db/recordset.h"
#include "ui/grid.h"

#include <QHeaderView>

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

// Those that show, in the order in which they do.
QModelIndexList cellsFromCurrent(const ui::Grid &grid)
{
    QModelIndexList cells;
    const QHeaderView *header = grid.horizontalHeader();
    const QModelIndex current = grid.currentIndex();
    for (int place = header->visualIndex(current.column()); place < header->count(); ++place) {
        const QModelIndex cell = current.siblingAtColumn(header->logicalIndex(place));
        if (!grid.isColumnHidden(cell.column()))
            cells << cell;
    }
    return cells;
}

base::Status checkFit(const QModelIndexList &cells, const QStringList &texts)
{
    if (texts.size() > cells.size())
        return base::Error{u"%1 列を貼り付けようとしましたが、ここから右には %2 列しかありません。"
                           "貼り付けていません。"_s.arg(texts.size())
                               .arg(cells.size())};
    for (const QModelIndex &cell : cells.first(texts.size())) {
        if (!cell.flags().testFlag(Qt::ItemIsEditable))
            return base::Error{u"「%1」の欄には入力できないため、貼り付けていません。"_s.arg(
                cell.model()->headerData(cell.column(), Qt::Horizontal).toString())};
    }
    return {};
}

} // namespace

base::Status pasteCells(const ui::Grid &grid, db::Recordset &rows, const QString &text)
{
    QString lines = text;
    lines.remove(u'\r');
    if (lines.endsWith(u'\n'))
        lines.chop(1);
    if (!grid.currentIndex().isValid() || lines.isEmpty())
        return {};
    if (lines.contains(u'\n'))
        return base::Error{u"複数の行は貼り付けられません。1 行ずつコピーして貼り付けてください。"_s};
    const QStringList texts = lines.split(u'\t');
    const QModelIndexList cells = cellsFromCurrent(grid);
    if (const base::Status fits = checkFit(cells, texts); !fits)
        return fits;
    QVariantMap before;
    for (qsizetype place = 0; place < texts.size(); ++place) {
        const QString column = rows.columns().at(cells.at(place).column());
        before.insert(column, rows.value(column));
        if (grid.model()->setData(cells.at(place), texts.at(place).trimmed(), Qt::EditRole))
            continue;
        for (auto value = before.cbegin(); value != before.cend(); ++value)
            rows.setValue(value.key(), value.value());
        break;
    }
    return {};
}

} // namespace slips
