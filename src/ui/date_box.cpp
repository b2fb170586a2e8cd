#include "ui/date_box.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <utility>

namespace ui
{

namespace
{

bool isSeparator(QChar c) { return c == u'/' || c == u'-' || c == u'.' || c == u'／'; }

} // namespace

DateBox::DateBox(QWidget *parent)
    : QDateEdit(parent)
{
    setInputMethodHints(Qt::ImhPreferNumbers);
}

void DateBox::keyPressEvent(QKeyEvent *event)
{
    const QChar typed = event->text().isEmpty() ? QChar() : event->text().front();
    if (typed.isDigit()) {
        typeDigit(event);
        return;
    }
    const bool movedOn = std::exchange(m_movedOn, false);
    if (isSeparator(typed)) {
        if (!movedOn && currentSectionIndex() + 1 < sectionCount())
            setSelectedSection(sectionAt(currentSectionIndex() + 1));
        event->accept();
        return;
    }
    QDateEdit::keyPressEvent(event);
}

void DateBox::typeDigit(QKeyEvent *event)
{
    const bool wholeDate = lineEdit()->hasSelectedText() && lineEdit()->selectedText() == lineEdit()->text();
    if (wholeDate)
        setSelectedSection(sectionAt(0));
    const int section = currentSectionIndex();
    QDateEdit::keyPressEvent(event);
    m_movedOn = currentSectionIndex() != section;
}

} // namespace ui
