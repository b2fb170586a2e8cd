#include "reports/bills/receipts/payment_taking.h"

#include "base/exact_sum.h"
#include "book/taken_payments.h"
#include "reports/bills/receipts/payer_key.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

base::Error inRow(const PaymentRow &row, const base::Error &error)
{
    base::Error told = error;
    told.text = u"%1 行目（%2）：%3\n入金伝票は一枚も作っていません。"_s.arg(row.line).arg(row.payer.left(40),
                                                                                           error.text);
    return told;
}

base::Status checkNotTaken(db::Connection &connection, const PaymentMatch &match)
{
    if (!match.taken.isEmpty()) // the clerk takes it once more although it was told
        return {};
    const auto slip = book::receiptOf(connection, match.row.key);
    if (!slip)
        return slip.error();
    if (!*slip)
        return {};
    return base::Error{
        .text =
            u"ほかのプログラムで、もう入金伝票（%1）になっています。読み込み直してください。"_s.arg(**slip),
        .changed = true};
}

base::Status keepTaken(db::Connection &connection, const PaymentRow &row, const book::SavedHeader &slip,
                       const TakingOptions &options)
{
    return book::keepTaken(connection, {.key = row.key,
                                        .file = QFileInfo(options.fileName).fileName(),
                                        .date = row.date,
                                        .payer = row.payer,
                                        .payerKey = payerKey(row.payer),
                                        .amount = row.amount,
                                        .slip = slip,
                                        .when = options.now});
}

base::Result<book::SavedHeader> writeHeader(db::Connection &connection, const PaymentMatch &match,
                                            const TakingOptions &options)
{
    const auto rate = options.taxRate(match.row.date);
    if (!rate)
        return rate.error();
    book::NewSlip slip;
    slip.kind = book::receipt;
    slip.date = match.row.date;
    slip.counterpart = match.customer;
    slip.employee = options.employee;
    slip.taxRate = *rate;
    slip.infix = options.infix;
    return book::saveHeader(connection, slip);
}

base::Status writeLines(db::Connection &connection, qint64 slip, const PaymentMatch &match, double fee,
                        const TakingOptions &options)
{
    const QString means = meansOf(match.row, options.isCashBook);
    const base::Status received =
        book::addLine(connection, slip, book::receipt, {u"入　金"_s, means, match.row.amount});
    if (!received || fee == 0)
        return received;
    const QString item = match.difference == Difference::TransferFee ? u"振込手数料"_s : u"手数料"_s;
    return book::addLine(connection, slip, book::receipt, {item, means, fee});
}

base::Result<book::SavedHeader> take(db::Connection &connection, const PaymentMatch &match, double fee,
                                     const TakingOptions &options)
{
    if (const base::Status fresh = checkNotTaken(connection, match); !fresh)
        return fresh.error();
    auto header = writeHeader(connection, match, options);
    if (!header)
        return header;
    base::Status done = writeLines(connection, header->id, match, fee, options);
    if (done)
        done = book::closeUntaxedSlip(connection, header->id).status();
    if (done)
        done = keepTaken(connection, match.row, *header, options);
    return done ? header : base::Result<book::SavedHeader>(done.error());
}

} // namespace

base::Result<TakenPayments> takePayments(db::Connection &connection, const std::vector<PaymentMatch> &matches,
                                         const PayingCustomers &customers, const TakingOptions &options,
                                         const base::Progress &progress)
{
    return db::atomically(connection, [&]() -> base::Result<TakenPayments> {
        TakenPayments taken;
        base::ExactSum total;
        qint64 done = 0;
        for (const PaymentMatch &match : matches) {
            if (!progress(done++, qint64(matches.size())))
                return base::cancelled();
            if (!match.ticked || !match.canBeTaken())
                continue;
            const PayingCustomer *customer = customers.with(match.customer);
            const auto slip = take(connection, match, customer ? feeOf(match, *customer) : 0, options);
            if (!slip)
                return inRow(match.row, slip.error());
            taken.numbers << slip->number;
            total.add(match.row.amount);
        }
        taken.total = total.value();
        return taken;
    });
}

} // namespace reports
