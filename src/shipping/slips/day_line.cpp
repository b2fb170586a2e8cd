#include "shipping/slips/day_line.h"

#include "shipping/slips/shipment_entry.h"
#include "text/dates.h"

#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

const QColor markBack(0xff, 0xe0, 0x8a); // as dates of other screens

} // namespace

DayLine::DayLine(QWidget *parent)
    : QLineEdit(parent)
{
    setInputMethodHints(Qt::ImhPreferNumbers);
    connect(this, &QLineEdit::editingFinished, this, &DayLine::showWhole);
    connect(this, &QLineEdit::textChanged, this, &DayLine::showMark);
}

void DayLine::setDay(const QDate &day) { setText(text::formatDate(day)); }

std::optional<QDate> DayLine::day() const
{
    return text().trimmed().isEmpty() ? std::optional(QDate()) : typedDay(text(), m_today);
}

void DayLine::markAllBut(const QDate &day)
{
    m_usual = day;
    showMark();
}

QSize DayLine::minimumSizeHint() const
{
    constexpr int margins = 14; // pixels, frame and cursor included
    const int wholeDay = fontMetrics().horizontalAdvance(u"2026/00/00"_s) + margins;
    return QLineEdit::minimumSizeHint().expandedTo({wholeDay, 0});
}

void DayLine::showWhole()
{
    if (const auto typed = day(); typed && !isReadOnly())
        setDay(*typed);
}

void DayLine::showMark()
{
    if (!m_usual.isValid() || isReadOnly())
        return;
    const bool isUsual = day() == std::optional(m_usual);
    QPalette colours;
    if (!isUsual) {
        colours.setColor(QPalette::Base, markBack);
        colours.setColor(QPalette::Text, Qt::black);
    }
    setPalette(colours);
    const QString remark =
        isUsual ? QString() : u"今日（%1）の日付ではありません。"_s.arg(text::formatDate(m_usual));
    setToolTip(remark);
    setAccessibleDescription(remark);
}

void DayLine::keyPressEvent(QKeyEvent *event)
{
    const bool isUp = event->key() == Qt::Key_Up;
    const auto typed = day();
    if ((!isUp && event->key() != Qt::Key_Down) || isReadOnly() || !typed) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    setDay(typed->isValid() ? typed->addDays(isUp ? 1 : -1) : m_today);
}

} // namespace shipping
