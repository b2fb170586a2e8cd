#include "ui/width_check.h"

#include "text/cp932.h"
#include "ui/leave_watch.h"
#include "ui/messages.h"
#include "ui/prompts.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace ui
{

const WidthLimit nameWidth{44, messages::widthLimit};
const WidthLimit noteWidth{100, messages::memoLimit};

namespace
{

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
    connect(new LeaveWatch(box), &LeaveWatch::left, this, &WidthCheck::tellAndReturn);
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

void WidthCheck::tellAndReturn()
{
    if (const auto sentence = error()) {
        m_box->setFocus();
        tellWidth(m_box->window(), *sentence);
    }
}

} // namespace ui
