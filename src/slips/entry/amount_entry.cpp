#include "slips/entry/amount_entry.h"

#include "book/tax.h"
#include "text/numbers.h"
#include "ui/prompts.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace slips
{

std::optional<double> readAmount(QWidget *screen, QLineEdit *box, const QString &missing)
{
    const auto refuse = [&](const QString &text) {
        ui::prompts::inform(screen, text);
        box->setFocus();
    };
    if (box->text().trimmed().isEmpty()) {
        refuse(missing);
        return std::nullopt;
    }
    const auto typed = text::parseNumber(box->text());
    if (!typed) {
        refuse(u"金額には数字を入力してください。"_s);
        box->selectAll();
        return std::nullopt;
    }
    const auto amount = book::currency(*typed);
    if (!amount) {
        refuse(amount.error().text);
        return std::nullopt;
    }
    // The books hold positive amounts, whatever the kind; a negative one is a deliberate reversal.
    if (*amount < 0 && !ui::prompts::askCautiously(screen, u"金額がマイナスです。よろしいですか。"_s)) {
        box->setFocus();
        return std::nullopt;
    }
    return *amount;
}

} // namespace slips
