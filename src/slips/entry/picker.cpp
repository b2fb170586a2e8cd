#include "slips/entry/picker.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>

namespace slips
{

namespace
{

constexpr int longestName = 100; // characters; far wider than a printed line

} // namespace

Picker::Picker(QComboBox *box)
    : QObject(box)
    , m_box(box)
{
    box->setInsertPolicy(QComboBox::NoInsert);
    box->lineEdit()->setMaxLength(longestName);
    QCompleter *completer = box->completer();
    completer->setCompletionMode(QCompleter::PopupCompletion);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->popup()->installEventFilter(this);
}

// The list of matches would keep Enter for itself, and the clerk would have to press it twice.
bool Picker::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return QObject::eventFilter(watched, event);
    QAbstractItemView *matches = m_box->completer()->popup();
    const QModelIndex marked = matches->currentIndex();
    if (marked.isValid())
        m_box->setEditText(marked.data().toString());
    matches->hide();
    QApplication::postEvent(m_box, new QKeyEvent(QEvent::KeyPress, key, Qt::NoModifier));
    return true;
}

} // namespace slips
