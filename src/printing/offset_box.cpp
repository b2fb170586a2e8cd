#include "printing/offset_box.h"

#include "text/numbers.h"
#include "ui/prompts.h"
#include "ui/up_down.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace printing
{

namespace
{

constexpr int mostLetters = 6;

} // namespace

OffsetBox::OffsetBox(const OffsetRule &rule, QLineEdit &box, ui::UpDown &arrows, QLabel *label)
    : QObject(&box)
    , m_rule(rule)
    , m_box(box)
    , m_label(label)
{
    box.setMaxLength(mostLetters);
    box.installEventFilter(this);
    connect(&box, &QLineEdit::textChanged, this, &OffsetBox::correct);
    // What is no number counts as none, and is seen to.
    connect(&box, &QLineEdit::editingFinished, this, [this] { setSteps(steps()); });
    connect(&arrows, &ui::UpDown::stepped, this, &OffsetBox::step);
    correct();
}

int OffsetBox::steps() const { return offsetFrom(m_box.text(), m_rule); }

void OffsetBox::setSteps(int steps)
{
    if (m_box.text() != QString::number(steps))
        m_box.setText(QString::number(steps));
}

void OffsetBox::correct()
{
    if (m_box.text().isEmpty()) {
        setSteps(0);
        m_box.selectAll(); // so that what is typed next takes its place
    }
    if (m_rule.lowest && text::numberOrZero(m_box.text()) < *m_rule.lowest)
        setSteps(*m_rule.lowest);
    if (m_label)
        m_label->setText(offsetLabel(steps(), m_rule));
}

// What was typed beyond the reach of the arrows stays where it is, or comes nearer.
void OffsetBox::step(int direction)
{
    const int now = steps();
    const int next = std::clamp(now + direction, std::min(now, m_rule.least), std::max(now, m_rule.most));
    setSteps(next);
}

bool OffsetBox::confirm(QWidget *screen) const
{
    if (!isFarOff() ||
        ui::prompts::askCautiously(
            screen, u"「%1」の %2 は、動かす量が多すぎるようです。このまま登録しますか。"_s.arg(
                        m_box.accessibleName(), m_box.text())))
        return true;
    m_box.setFocus();
    m_box.selectAll();
    return false;
}

bool OffsetBox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            step(key == Qt::Key_Up ? 1 : -1);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace printing
