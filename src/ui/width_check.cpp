#include "ui/width_check.h"

#include "text/cp932.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace ui
{

const WidthLimit nameWidth{44, messages::widthLimit};
const WidthLimit noteWidth{100, messages::memoLimit};

namespace
{

// "お届け先 住所１", as the label of \a box and the frame around it say; empty where it has no label.
QString nameOf(const QLineEdit &box)
{
    const auto labels = box.window()->findChildren<QLabel *>();
    const auto label = std::ranges::find(labels, &box, &QLabel::buddy);
    if (label == labels.end())
        return {};
    const QString name = (*label)->text().section(u"(&"_s, 0, 0);
    const auto *frame = qobject_cast<QGroupBox *>(box.parentWidget());
    return frame ? frame->title().section(u'　', 0, 0) + u' ' + name : name;
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

WidthCheck::WidthCheck(QLineEdit *box, const WidthLimit &limit, bool ofTyping)
    : QObject(box)
    , m_box(box)
    , m_limit(limit)
    , m_ofTyping(ofTyping)
{
    connect(new LeaveWatch(box), &LeaveWatch::left, this, &WidthCheck::tellAndReturn);
}

void WidthCheck::guard(QLineEdit *box, const WidthLimit &limit) { new WidthCheck(box, limit, false); }

void WidthCheck::guardTyping(QLineEdit *box, const WidthLimit &limit) { new WidthCheck(box, limit, true); }

std::optional<QString> WidthCheck::error() const
{
    return m_ofTyping && !m_box->isModified() ? std::nullopt : widthError(m_box->text(), m_limit);
}

void WidthCheck::tell(const QString &sentence) const
{
    const QString name = m_ofTyping ? nameOf(*m_box) : QString();
    const auto fullWidth = (text::cp932Bytes(m_box->text()) + 1) / 2;
    prompts::inform(
        m_box->window(), sentence, QString::fromUtf16(prompts::errorCheck), prompts::Icon::Information,
        name.isEmpty() ? name : u"%1：いまは全角で %2 文字分あります。"_s.arg(name).arg(fullWidth));
}

const WidthCheck *WidthCheck::firstTooWide(const QWidget *screen)
{
    const auto checks = screen->findChildren<WidthCheck *>();
    const auto found =
        std::ranges::find_if(checks, [](const WidthCheck *check) { return check->error().has_value(); });
    return found == checks.end() ? nullptr : *found;
}

std::optional<QString> WidthCheck::refusal(QWidget *screen)
{
    const WidthCheck *check = firstTooWide(screen);
    if (!check)
        return std::nullopt;
    check->m_box->setFocus();
    return check->error();
}

bool WidthCheck::allFit(QWidget *screen)
{
    const WidthCheck *check = firstTooWide(screen);
    if (!check)
        return true;
    check->m_box->setFocus();
    check->tell(*check->error());
    return false;
}

void WidthCheck::tellAndReturn()
{
    if (const auto sentence = error()) {
        m_box->setFocus();
        tell(*sentence);
    }
}

} // namespace ui
