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

// Those that leave a cell for another one.
bool leadsOn(int key)
{
    return key == Qt::Key_Tab || key == Qt::Key_Backtab || key == Qt::Key_Up || key == Qt::Key_Down ||
           key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

bool isEnter(const QKeyEvent &event) { return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter; }

} // namespace

CellDelegate::CellDelegate(Grid *grid)
    : QStyledItemDelegate(grid)
    , m_grid(grid)
{
    grid->setItemDelegate(this);
    grid->installEventFilter(this);
    grid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                          QAbstractItemView::AnyKeyPressed);
}

QWidget *CellDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &,
                                    const QModelIndex &index) const
{
    auto *box = new QLineEdit(parent);
    m_editor = box;
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
    m_opened = isFraction ? text::formatPlain(value.toDouble()) : value.toString();
    static_cast<QLineEdit *>(editor)->setText(m_opened);
}

void CellDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    // Only looked at, a cell stays as it is, whether it would be taken today or not.
    const QString typed = static_cast<QLineEdit *>(editor)->text();
    m_taken = typed == m_opened || model->setData(index, typed, Qt::EditRole);
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
    // Out of the grid the next Enter would press a button.
    if (editor == m_grid) {
        const bool stays = event->type() == QEvent::KeyPress && isEnter(*static_cast<QKeyEvent *>(event));
        if (stays)
            moveOn();
        return stays;
    }
    // A look at another window does not leave the cell, as it leaves no box.
    if (event->type() == QEvent::FocusOut &&
        static_cast<QFocusEvent *>(event)->reason() == Qt::ActiveWindowFocusReason)
        return false;
    if (event->type() != QEvent::KeyPress)
        return QStyledItemDelegate::eventFilter(editor, event);
    // The view would have the model take back all edits of the row.
    if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        giveUp();
        return true;
    }
    const bool entered = isEnter(*static_cast<QKeyEvent *>(event));
    if (!entered && !leadsOn(static_cast<QKeyEvent *>(event)->key()))
        return QStyledItemDelegate::eventFilter(editor, event);
    auto *box = static_cast<QLineEdit *>(editor);
    if (!take(box))
        return true;
    if (!entered)
        return QStyledItemDelegate::eventFilter(editor, event);
    emit closeEditor(box, NoHint);
    moveOn();
    return true;
}

bool CellDelegate::take(QWidget *editor)
{
    m_taken = true;
    emit commitData(editor);
    if (!m_taken)
        static_cast<QLineEdit *>(editor)->selectAll();
    return m_taken;
}

bool CellDelegate::settle()
{
    // A closed one is hidden until it is deleted.
    if (!m_editor || m_editor->isHidden())
        return true;
    if (!take(m_editor))
        return false;
    emit closeEditor(m_editor, NoHint);
    return true;
}

void CellDelegate::giveUp()
{
    if (m_editor && !m_editor->isHidden())
        emit closeEditor(m_editor, NoHint);
}

void CellDelegate::moveOn()
{
    const QModelIndex from = m_grid->currentIndex();
    if (!from.isValid())
        return;
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
