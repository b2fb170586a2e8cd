#include "ui/date_box.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolTip>

#include <utility>

using namespace Qt::StringLiterals;

namespace ui
{

namespace
{

// As a line of a slip whose figures disagree; readable in the light and in the dark appearance.
const QColor markBack(0xff, 0xe0, 0x8a);

bool isSeparator(QChar c) { return c == u'/' || c == u'-' || c == u'.' || c == u'／'; }

} // namespace

DateBox::DateBox(QWidget *parent)
    : QDateEdit(parent)
{
    setInputMethodHints(Qt::ImhPreferNumbers);
    connect(this, &QDateEdit::dateChanged, this, &DateBox::showMark);
}

void DateBox::markAllBut(const QDate &day)
{
    m_usual = day;
    showMark();
}

void DateBox::showMark()
{
    const bool marked = m_usual.isValid() && date() != m_usual;
    QPalette colours;
    if (marked) {
        colours.setColor(QPalette::Base, markBack);
        colours.setColor(QPalette::Text, Qt::black);
    }
    setPalette(colours);
    const QString remark =
        marked ? u"今日（%1）の日付ではありません。"_s.arg(m_usual.toString(u"yyyy/MM/dd"_s)) : QString();
    setToolTip(remark);
    setAccessibleDescription(remark);
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
    const QString before = lineEdit()->text();
    const int cursor = lineEdit()->cursorPosition();
    QDateEdit::keyPressEvent(event);
    m_movedOn = currentSectionIndex() != section;
    // The second digit of the 30th of February: the box does not take it and would be left at the 3rd.
    if (lineEdit()->text() == before && lineEdit()->cursorPosition() == cursor && !m_movedOn)
        tellRefused();
}

void DateBox::tellRefused()
{
    QApplication::beep();
    QToolTip::showText(mapToGlobal(rect().bottomLeft()),
                       u"この数字は日付に入れられません。日付を確かめてください。"_s, this);
}

} // namespace ui
