#include "reports/bills/receipts/payment_rows.h"

#include "book/slip_store.h"
#include "reports/bills/receipts/payer_key.h"
#include "text/dates.h"
#include "text/numbers.h"

#include <QCryptographicHash>
#include <QHash>

#include <cmath>

using namespace Qt::StringLiterals;

namespace reports
{

namespace
{

constexpr qsizetype longestText = 200; // characters
constexpr double highestAmount = 9'999'999'999;

QString textAt(const QStringList &cells, qsizetype column)
{
    return column >= 0 ? cells.value(column).simplified().left(longestText) : QString();
}

// "2026-11-20 00:00:00" of a database, too.
std::optional<QDate> dateFrom(const QString &cell)
{
    static const QString midnight = u" 00:00:00"_s;
    return text::parseAnyDate(cell.endsWith(midnight) ? cell.chopped(midnight.size()) : cell);
}

QString troubleOf(const PaymentRow &row, const QString &date, const QString &amount)
{
    const auto number = text::parseNumber(amount);
    if (!number)
        return u"金額「%1」を数字として読み取れません。"_s.arg(amount.left(20));
    if (row.amount < 0)
        return u"金額がマイナスです。"_s;
    if (row.amount != std::floor(row.amount) || row.amount > highestAmount)
        return u"金額「%1」は、円の金額ではありません。"_s.arg(amount.left(20));
    if (!book::isSlipDate(row.date))
        return u"日付「%1」を読み取れません。"_s.arg(date.left(20));
    return {};
}

QByteArray contentOf(const PaymentRow &row)
{
    const QStringList parts{text::stored(row.date), text::formatPlain(row.amount), payerKey(row.payer),
                            payerKey(row.text), payerKey(row.account)};
    return QCryptographicHash::hash(parts.join(QChar(0x1f)).toUtf8(), QCryptographicHash::Sha256).toHex();
}

// Two equal payments of one day are both real: the second one's key says that it is the second.
void giveKeys(std::vector<PaymentRow> &rows)
{
    QHash<QByteArray, int> seen;
    for (PaymentRow &row : rows) {
        if (!row.trouble.isEmpty())
            continue;
        const QByteArray content = contentOf(row);
        row.key = QString::fromLatin1(content) + u'-' + QString::number(++seen[content]);
    }
}

} // namespace

PaymentRows paymentRows(const PaymentTable &table, const PaymentColumns &columns)
{
    PaymentRows found;
    for (std::size_t at = columns.firstRow; at < table.rows.size(); ++at) {
        const auto &[line, cells] = table.rows[at];
        const auto cell = [&](PaymentField field) { return textAt(cells, columns.of(field)); };
        const QString amount = cell(PaymentField::Amount);
        const auto number = text::parseNumber(amount);
        if (amount.isEmpty() || amount == u"-" || (number && *number == 0)) {
            ++found.withoutAmount;
            continue;
        }
        PaymentRow row{.line = line,
                       .date = dateFrom(cell(PaymentField::Date)).value_or(QDate()),
                       .amount = number.value_or(0),
                       .payer = cell(PaymentField::Payer),
                       .text = cell(PaymentField::Text),
                       .account = cell(PaymentField::Account)};
        if (row.payer.isEmpty())
            row.payer = row.text;
        row.trouble = troubleOf(row, cell(PaymentField::Date), amount);
        found.rows.push_back(std::move(row));
    }
    giveKeys(found.rows);
    return found;
}

QString meansOf(const PaymentRow &row, bool isCashBook)
{
    if (row.account.contains(u"郵便"_s) || row.account.contains(u"振替"_s) ||
        row.account.contains(u"ゆうちょ"_s))
        return u"郵便振替"_s;
    const bool isCash = isCashBook && (row.account.isEmpty() || row.account.contains(u"現金"_s));
    return isCash ? u"現　金"_s : u"銀行振込"_s;
}

} // namespace reports
