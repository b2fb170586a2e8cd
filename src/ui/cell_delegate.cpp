#include "ui/cell_delegate.h"

#include "text/numbers.h"
#include "ui/grid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>

namespace ui
{

namespace
{

constexpr int longestText = 1000; // characters; the model says what is too long in words

} // namespace

CellDelegate::CellDelegate(Grid *grid)
    : QStyledItemDelegate(grid)
    , m_grid(grid)
{
    grid->setItemDelegate(this);
    grid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::AnyKeyPressed);
}

QWidget *CellDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                    const QModelIndex &index) const
{
    auto *box = new QLineEdit(parent);
    box->setFrame(false);
    box->setMaxLength(longestText);
    box->setAlignment(Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()));
    box->setAccessibleName(
        index.model()->headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    return box;
}

void CellDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const QVariant value = index.data(Qt::EditRole);
    const bool isFraction = value.typeId() == QMetaType::Double;
    static_cast<QLineEdit *>(editor)->setText(isFraction ? text::formatPlain(value.toDouble())
                                                         : value.toString());
}

void CellDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    m_taken = model->setData(index, static_cast<QLineEdit *>(editor)->text(), Qt::EditRole);
}

// A colour that the model gives a row is seen on the selected one too.
void CellDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const QVariant background = index.data(Qt::BackgroundRole);
    if (!background.isValid())
        return;
    const QColor colour = background.value<QBrush>().color();
    option->palette.setColor(QPalette::Highlight, colour.darker(120));
    option->palette.setColor(QPalette::HighlightedText, Qt::black);
}

void CellDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (!(option.state & QStyle::State_HasFocus))
        return;
    painter->save();
    painter->setPen(QPen(option.palette.color(QPalette::Text), 2));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    painter->restore();
}

bool CellDelegate::eventFilter(QObject *editor, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QStyledItemDelegate::eventFilter(editor, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return QStyledItemDelegate::eventFilter(editor, event);
    auto *box = static_cast<QLineEdit *>(editor);
    emit commitData(box);
    if (m_taken) {
        emit closeEditor(box, NoHint);
        moveOn();
    } else {
        box->selectAll();
    }
    return true;
}

void CellDelegate::moveOn()
{
    const QModelIndex from = m_grid->currentIndex();
    const QHeaderView *header = m_grid->horizontalHeader();
    for (int place = header->visualIndex(from.column()) + 1; place < header->count(); ++place) {
        const QModelIndex next = from.siblingAtColumn(header->logicalIndex(place));
        if (!m_grid->isColumnHidden(next.column()) && next.flags().testFlag(Qt::ItemIsEditable)) {
            m_grid->setCurrentIndex(next);
            return;
        }
    }
}

} // namespace ui
