#include "reports/bills/receipts/payment_matches.h"

#include "reports/bills/receipts/payer_key.h"
#include "text/numbers.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr double highestFee = 1000; // yen; what banks take for a transfer stays below
constexpr std::size_t mostCandidates = 50;

class Matching
{
public:
    explicit Matching(const PayingCustomers &customers)
        : m_customers(customers)
        , m_paid(customers.all().size(), 0)
    {}

    void match(PaymentMatch &match);

private:
    using Places = PayingCustomers::Places;

    [[nodiscard]] bool isOwed(std::size_t place, double amount) const;
    [[nodiscard]] Places owing(const Places &places, double amount) const;
    void byName(PaymentMatch &match, const Places &places);
    void byCutName(PaymentMatch &match, const Places &places);
    void byAmount(PaymentMatch &match);
    void preset(PaymentMatch &match, std::size_t place, Certainty certainty);
    void offer(PaymentMatch &match, const Places &places) const;

    const PayingCustomers &m_customers;
    std::vector<double> m_paid; // yen, by the rows before
};

bool Matching::isOwed(std::size_t place, double amount) const
{
    const PayingCustomer &customer = m_customers.all()[place];
    return customer.billed - m_paid[place] == amount || customer.balance - m_paid[place] == amount;
}

Matching::Places Matching::owing(const Places &places, double amount) const
{
    Places owing;
    std::ranges::copy_if(places, std::back_inserter(owing),
                         [&](std::size_t place) { return isOwed(place, amount); });
    return owing;
}

void Matching::offer(PaymentMatch &match, const Places &places) const
{
    for (const std::size_t place : places) {
        const qint64 id = m_customers.all()[place].id;
        if (match.candidates.size() < mostCandidates && !std::ranges::count(match.candidates, id))
            match.candidates.push_back(id);
    }
}

void Matching::preset(PaymentMatch &match, std::size_t place, Certainty certainty)
{
    match.certainty = certainty;
    match.customer = m_customers.all()[place].id;
    match.ticked = certainty == Certainty::Certain;
    m_paid[place] += match.row.amount;
}

void Matching::byName(PaymentMatch &match, const Places &places)
{
    const Places owing = this->owing(places, match.row.amount);
    offer(match, owing);
    offer(match, places);
    if (places.size() == 1) {
        match.reason = owing.empty() ? u"名前が一致"_s : u"名前と金額が一致"_s;
        preset(match, places.front(), owing.empty() ? Certainty::Likely : Certainty::Certain);
    } else if (owing.size() == 1) {
        match.reason = u"同じ名前の %1 件のうち、金額が一致"_s.arg(places.size());
        preset(match, owing.front(), Certainty::Likely);
    } else {
        match.reason = u"同じ名前の納品先が %1 件"_s.arg(places.size());
        match.certainty = Certainty::Ambiguous;
    }
}

void Matching::byCutName(PaymentMatch &match, const Places &places)
{
    const Places owing = this->owing(places, match.row.amount);
    offer(match, owing);
    offer(match, places);
    if (places.size() == 1 && owing.size() == 1) {
        match.reason = u"名前の初めと金額が一致"_s;
        preset(match, places.front(), Certainty::Likely);
        return;
    }
    match.reason = u"名前の初めが一致（%1 件）"_s.arg(places.size());
    match.certainty = Certainty::Ambiguous;
}

void Matching::byAmount(PaymentMatch &match)
{
    const Places owing = this->owing(m_customers.owing(match.row.amount), match.row.amount);
    offer(match, owing);
    match.certainty = owing.empty() ? Certainty::None : Certainty::Ambiguous;
    match.reason = owing.empty() ? QString() : u"金額だけが一致（%1 件）"_s.arg(owing.size());
}

void Matching::match(PaymentMatch &match)
{
    const QString key = payerKey(match.row.payer);
    Places named = m_customers.named(key);
    const Places known = m_customers.known(key);
    const Places coded = m_customers.coded(payerNumber(match.row.payer));
    // A name that was another customer's before, or a code that is: all of them come into question.
    for (const Places &more : {known, coded}) {
        for (const std::size_t place : more) {
            if (!std::ranges::count(named, place))
                named.push_back(place);
        }
    }
    if (!named.empty())
        byName(match, named);
    else if (const Places cut = m_customers.beginning(key); !cut.empty())
        byCutName(match, cut);
    else
        byAmount(match);
}

} // namespace

QString nameOf(Certainty certainty)
{
    static const QString names[] = {u"確実"_s, u"有力"_s, u"要確認"_s, u"該当なし"_s};
    return names[std::size_t(certainty)];
}

std::vector<PaymentMatch> matchPayments(const std::vector<PaymentRow> &rows, const PayingCustomers &customers,
                                        const QHash<QString, QString> &taken)
{
    Matching matching(customers);
    std::vector<PaymentMatch> matches;
    matches.reserve(rows.size());
    for (const PaymentRow &row : rows) {
        PaymentMatch match{.row = row, .reason = row.trouble, .taken = taken.value(row.key)};
        if (row.trouble.isEmpty() && match.taken.isEmpty())
            matching.match(match);
        matches.push_back(std::move(match));
    }
    settleInOrder(matches, customers);
    return matches;
}

double owedBy(const PayingCustomer &customer)
{
    return customer.billed > 0 ? customer.billed : customer.balance;
}

double missingOf(const PaymentMatch &match, const PayingCustomer &customer)
{
    if (match.before + match.row.amount == customer.balance)
        return 0;
    return owedBy(customer) - match.before - match.row.amount;
}

double feeOf(const PaymentMatch &match, const PayingCustomer &customer)
{
    return match.difference == Difference::Stays ? 0 : std::max(0.0, missingOf(match, customer));
}

void settleInOrder(std::vector<PaymentMatch> &matches, const PayingCustomers &customers)
{
    QHash<qint64, double> paid;
    for (PaymentMatch &match : matches) {
        const PayingCustomer *customer = customers.with(match.customer);
        match.before = customer ? paid.value(match.customer) : 0;
        if (customer && match.ticked)
            paid[match.customer] += match.row.amount + feeOf(match, *customer);
    }
}

QString missingInWords(double missing)
{
    if (missing == 0)
        return {};
    if (missing < 0)
        return u"%1 円多い"_s.arg(text::formatAmount(-missing));
    return u"%1 円少ない"_s.arg(text::formatAmount(missing)) +
           (missing < highestFee ? u"（振込手数料？）"_s : QString());
}

} // namespace reports
