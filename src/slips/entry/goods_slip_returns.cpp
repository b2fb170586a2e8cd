// Goods that come back on a slip: of which sale, and at its rate.
#include "book/returned_goods.h"
#include "masters/own_company.h"
#include "masters/registration_number.h"
#include "slips/entry/DialogOriginal.h"
#include "slips/entry/goods_slip_screen.h"
#include "ui/prompts.h"
#include "workspace/workspace.h"

using namespace Qt::StringLiterals;

namespace slips
{

namespace
{

constexpr int mostOriginals = 200; // that a return can be of, the newest

} // namespace

// A shop of one rate that issues no invoices has nothing to tell of a return.
bool GoodsSlipScreen::asksForOriginal(const book::GoodsLine &line) const
{
    if (line.quantity >= 0 || !m_description.takesReturns)
        return false;
    const auto own = masters::ownCompany(workspace().connection);
    return m_entry->hasChoice() || (own && *own && masters::isRegistrationNumber((*own)->registrationNumber));
}

// \return \a line at the rate of its sale; nothing when the clerk has gone back
std::optional<book::GoodsLine> GoodsSlipScreen::asReturned(book::GoodsLine line)
{
    if (!asksForOriginal(line))
        return line;
    if (!m_originalIsKnown && !chooseOriginal(line.product))
        return std::nullopt;
    if (m_original == 0 || m_entry->taxIsChosen())
        return line;
    const auto tax = book::taxWhenSold(workspace().connection, m_original, line.product);
    if (!tell(tax.status()))
        return std::nullopt;
    if (*tax) {
        line.tax = book::besideSlips(**tax, m_slipRate);
        return line;
    }
    return mayComeBackAsItIs(line) ? std::optional(line) : std::nullopt;
}

// A slip has one original: goods of another sale belong on a slip of their own.
bool GoodsSlipScreen::mayComeBackAsItIs(const book::GoodsLine &line)
{
    const auto original = book::originalOf(workspace().connection, header().id);
    const QString number = original && *original ? (*original)->number : QString();
    if (ui::prompts::askCautiously(
            this,
            u"元の伝票 %1 に「%2」はありません。いまの税区分のまま入れますか。"_s.arg(number, line.product),
            u"別の伝票の返品は、伝票を分けて入力してください。"_s))
        return true;
    m_originalIsKnown = m_hasReturned;
    m_entry->beginQuantity();
    return false;
}

bool GoodsSlipScreen::chooseOriginal(const QString &product)
{
    const auto slips =
        book::slipsToReturnOf(workspace().connection, kind(), header(), date(), product, mostOriginals);
    if (!tell(slips.status()))
        return false;
    DialogOriginal question(workspace(), *slips, product, this);
    if (question.exec() != QDialog::Accepted) {
        m_entry->beginQuantity();
        return false;
    }
    const qint64 original = question.original();
    db::Connection &connection = workspace().connection;
    const base::Status kept = original == 0 ? base::Status() : book::onSlip(connection, header(), [&] {
        return book::keepOriginal(connection, header().id, original);
    });
    if (!kept) {
        tellOfSlip(kept.error());
        return false;
    }
    m_original = original;
    m_originalIsKnown = true;
    return true;
}

} // namespace slips
