#include "ui/width_check.h"

#include "text/cp932.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace ui
{

const WidthLimit nameWidth{44, messages::widthLimit};
const WidthLimit noteWidth{100, messages::memoLimit};

namespace
{

constexpr int busyInterval = 30; // milliseconds

// The cursor taken away by the program, by another window or by a menu is not the clerk's leaving; a box
// left that way may well be the one that the cursor was just put back from, and the two would never end.
bool leavesByUser(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
}

void tellWidth(QWidget *screen, const QString &sentence)
{
    prompts::inform(screen, sentence, QString::fromUtf16(prompts::errorCheck));
}

} // namespace

std::optional<QString> widthError(const QString &text, const WidthLimit &limit)
{
    if (text::cp932Bytes(text) <= limit.bytes)
        return std::nullopt;
    const QString strangers = text::notInCp932(text);
    if (strangers.isEmpty())
        return limit.sentence();
    return limit.sentence() + u"\n次の文字はシフト JIS にないため、全角１文字と数えます： "_s + strangers;
}

WidthCheck::WidthCheck(QLineEdit *box, const WidthLimit &limit)
    : QObject(box)
    , m_box(box)
    , m_limit(limit)
{
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &WidthCheck::checkAfterLeaving);
    box->installEventFilter(this);
}

void WidthCheck::guard(QLineEdit *box, const WidthLimit &limit) { new WidthCheck(box, limit); }

std::optional<QString> WidthCheck::error() const { return widthError(m_box->text(), m_limit); }

std::optional<QString> WidthCheck::refusal(QWidget *screen)
{
    const auto checks = screen->findChildren<WidthCheck *>();
    for (const WidthCheck *check : checks) {
        if (const auto sentence = check->error()) {
            check->m_box->setFocus();
            return sentence;
        }
    }
    return std::nullopt;
}

bool WidthCheck::allFit(QWidget *screen)
{
    const auto sentence = refusal(screen);
    if (sentence)
        tellWidth(screen, *sentence);
    return !sentence;
}

bool WidthCheck::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && leavesByUser(static_cast<QFocusEvent *>(event)->reason()))
        m_later.start(0);
    return QObject::eventFilter(watched, event);
}

// Not within the change of focus itself: a message box there would swallow the click that caused it.
void WidthCheck::checkAfterLeaving()
{
    if (QGuiApplication::mouseButtons() != Qt::NoButton || QApplication::activePopupWidget()) {
        m_later.start(busyInterval);
        return;
    }
    // The click may have closed the screen, opened another one or put the cursor back.
    if (!m_box->isVisible() || !m_box->isEnabled() || m_box->hasFocus() || !m_box->isActiveWindow())
        return;
    if (const auto sentence = error()) {
        m_box->setFocus();
        tellWidth(m_box->window(), *sentence);
    }
}

} // namespace ui
