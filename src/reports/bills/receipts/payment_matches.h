#pragma once

#include "reports/bills/receipts/paying_customers.h"
#include "reports/bills/receipts/payment_rows.h"

namespace reports
{

/// How sure it is whose payment a row is.
enum class Certainty {
    Certain,   // one customer of that name, who owes just that
    Likely,    // one customer stands out, but the amount or the name says otherwise
    Ambiguous, // several come into question, or the amount alone speaks for one
    None,
};

/// "確実", "有力", "要確認", "該当なし".
QString nameOf(Certainty certainty);

/// What is done with what a customer has paid too little.
enum class Difference { Stays, TransferFee, Fee };

/// A payment and whose it is. What is not sure is left to a person.
struct PaymentMatch
{
    PaymentRow row;
    Certainty certainty = Certainty::None;
    QString reason{};                 // in words
    std::vector<qint64> candidates{}; // 納品先ID, the best one first
    qint64 customer = 0;              // preset, or chosen by the clerk; 0: nobody
    QString taken{};                  // the number of the slip that was written from it; empty: none was
    bool ticked = false;              // a receipt is to be written
    Difference difference = Difference::Stays;
    double before = 0; // yen that ticked rows before it are to pay for the same customer

    /// Whether a receipt can be written of it.
    [[nodiscard]] bool canBeTaken() const { return row.trouble.isEmpty() && customer != 0; }
};

/// The payments of \a rows, each with the customer that it is certainly or likely from. What one payment
/// settles is not open for the next one. \a taken: the slips by the rows' keys, as book::takenPayments()
/// reads them.
std::vector<PaymentMatch> matchPayments(const std::vector<PaymentRow> &rows, const PayingCustomers &customers,
                                        const QHash<QString, QString> &taken);

/// What \a customer owes on the last bill; where nothing of it is open, altogether.
double owedBy(const PayingCustomer &customer);

/// What is missing of that in a payment: negative where more was paid. Nothing where all is paid at once.
double missingOf(const PaymentMatch &match, const PayingCustomer &customer);

/// What is written as a fee of \a match, by the clerk's choice; 0 for none.
double feeOf(const PaymentMatch &match, const PayingCustomer &customer);

/// Works out anew what is paid before each of \a matches, after a choice was changed.
void settleInOrder(std::vector<PaymentMatch> &matches, const PayingCustomers &customers);

/// A missing sum in words: "440 円少ない（振込手数料？）"; empty for none.
QString missingInWords(double missing);

} // namespace reports
