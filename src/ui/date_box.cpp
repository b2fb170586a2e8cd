#include "ui/date_box.h"

#include "text/dates.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QToolTip>

#include <utility>

using namespace Qt::StringLiterals;

namespace ui
{

namespace
{

// As a line of a slip whose figures disagree; readable in the light and in the dark appearance.
const QColor markBack(0xff, 0xe0, 0x8a);

constexpr qsizetype wholeDate = 8; // digits

bool isSeparator(QChar c) { return c == u'/' || c == u'-' || c == u'.' || c == u'／'; }

} // namespace

DateBox::DateBox(QWidget *parent)
    : QDateEdit(parent)
{
    setInputMethodHints(Qt::ImhPreferNumbers);
    setAttribute(Qt::WA_InputMethodEnabled);
    lineEdit()->setAcceptDrops(false);
    lineEdit()->installEventFilter(this);
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
    if (event->matches(QKeySequence::Paste)) {
        paste(QClipboard::Clipboard);
        return;
    }
    const QChar typed = event->text().isEmpty() ? QChar() : event->text().front();
    if (typed.isDigit()) {
        typeDigit(event);
        return;
    }
    const bool movedOn = std::exchange(m_movedOn, false);
    endRun();
    if (isSeparator(typed)) {
        if (!movedOn && currentSectionIndex() + 1 < sectionCount())
            setSelectedSection(sectionAt(currentSectionIndex() + 1));
        event->accept();
        return;
    }
    if (event->modifiers() == Qt::NoModifier && moveByKey(event->key()))
        return;
    QDateEdit::keyPressEvent(event);
}

// A part without a selection is full: nothing could be typed into it.
void DateBox::selectPart() { setSelectedSection(currentSection()); }

bool DateBox::moveByKey(int key)
{
    const int last = sectionCount() - 1;
    const int part = currentSectionIndex();
    switch (key) {
    case Qt::Key_Home:
        setSelectedSection(sectionAt(0));
        return true;
    case Qt::Key_End:
        setSelectedSection(sectionAt(last));
        return true;
    case Qt::Key_Left:
        setSelectedSection(sectionAt(std::max(part - 1, 0)));
        return true;
    case Qt::Key_Right:
        setSelectedSection(sectionAt(std::min(part + 1, last)));
        return true;
    default:
        return false;
    }
}

void DateBox::beginRun()
{
    if (lineEdit()->hasSelectedText() && lineEdit()->selectedText() == lineEdit()->text())
        setSelectedSection(sectionAt(0));
    m_run = {{}, date(), wholeDate};
    for (int part = 0; part < currentSectionIndex(); ++part)
        m_run.capacity -= sectionAt(part) == YearSection ? 4 : 2;
}

// Of more digits than there is room for none are taken. \return whether all were
bool DateBox::endRun()
{
    const Run run = std::exchange(m_run, {});
    if (run.digits.isEmpty() || !run.isOver())
        return true;
    setDate(run.before);
    tellRefused(run.digits);
    return false;
}

void DateBox::typeDigit(QKeyEvent *event)
{
    if (m_run.digits.isEmpty())
        beginRun();
    m_run.digits += QChar(u'0' + event->text().front().digitValue());
    if (m_run.digits.size() == wholeDate && m_run.capacity < wholeDate) {
        const Run run = std::exchange(m_run, {});
        setDate(run.before);
        take(run.digits);
        return;
    }
    if (m_run.isOver())
        return;
    const int section = currentSectionIndex();
    const QString before = lineEdit()->text();
    const int cursor = lineEdit()->cursorPosition();
    QDateEdit::keyPressEvent(event);
    m_movedOn = currentSectionIndex() != section;
    // The second digit of the 30th of February: the box does not take it and would be left at the 3rd.
    if (m_run.digits.size() == m_run.capacity && lineEdit()->text() == before &&
        lineEdit()->cursorPosition() == cursor && !m_movedOn)
        tellRefused({});
}

void DateBox::focusOutEvent(QFocusEvent *event)
{
    endRun();
    QDateEdit::focusOutEvent(event);
}

// Qt's box hands it on to its line.
bool DateBox::event(QEvent *event)
{
    if (event->type() != QEvent::InputMethod)
        return QDateEdit::event(event);
    const QString text = static_cast<QInputMethodEvent *>(event)->commitString();
    if (!text.isEmpty() && !isReadOnly())
        takeWritten(text);
    event->accept();
    return true;
}

// Digits of an input method that does not write whole dates are typed.
void DateBox::takeWritten(const QString &text)
{
    const bool isTyped =
        std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.isDigit() || isSeparator(c); });
    if (text::parseAnyDate(text) || !isTyped) {
        take(text);
        return;
    }
    for (const QChar c : text) {
        const QString half = c.isDigit() ? QString::number(c.digitValue()) : QString(c);
        QKeyEvent key(QEvent::KeyPress, half.front().unicode(), Qt::NoModifier, half);
        keyPressEvent(&key);
    }
}

bool DateBox::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == lineEdit() && event->type() == QEvent::MouseButtonPress)
        endRun();
    if (watched == lineEdit() && event->type() == QEvent::MouseButtonRelease) {
        if (static_cast<QMouseEvent *>(event)->button() == Qt::MiddleButton) {
            paste(QClipboard::Selection);
            return true;
        }
        if (!lineEdit()->hasSelectedText())
            selectPart();
    }
    return QDateEdit::eventFilter(watched, event);
}

void DateBox::contextMenuEvent(QContextMenuEvent *event)
{
    QMenu *menu = lineEdit()->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto actions = menu->actions();
    for (QAction *action : actions) {
        // Undoing brings parts of dates back.
        if (action->objectName() == u"edit-undo" || action->objectName() == u"edit-redo" ||
            action->objectName() == u"edit-cut" || action->objectName() == u"edit-delete")
            action->setVisible(false);
        if (action->objectName() != u"edit-paste")
            continue;
        action->disconnect();
        connect(action, &QAction::triggered, this, [this] { paste(QClipboard::Clipboard); });
    }
    menu->popup(event->globalPos());
}

void DateBox::paste(QClipboard::Mode mode)
{
    if (!isReadOnly())
        take(QApplication::clipboard()->text(mode));
}

void DateBox::take(const QString &text)
{
    m_run = {};
    m_movedOn = false;
    const auto day = text::parseAnyDate(text.trimmed());
    if (!day || *day < minimumDate() || *day > maximumDate()) {
        tellRefused(text.trimmed());
        return;
    }
    QToolTip::hideText();
    setDate(*day);
    setSelectedSection(sectionAt(sectionCount() - 1));
}

void DateBox::tellRefused(const QString &text)
{
    const qsizetype longest = 20;
    QApplication::beep();
    QToolTip::showText(mapToGlobal(rect().bottomLeft()),
                       text.isEmpty() ? u"この数字は日付に入れられません。日付を確かめてください。"_s
                                      : u"「%1」は日付として読み取れません。日付は変わっていません。"_s.arg(
                                            text.left(longest).toHtmlEscaped()),
                       this);
}

} // namespace ui
