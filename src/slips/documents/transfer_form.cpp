#include "slips/documents/transfer_form.h"

#include "db/connection.h"
#include "text/numbers.h"
#include "text/postal_code.h"
#include "text/width.h"

#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;
using printing::FormItemKind;
using printing::FormRecord;

namespace slips
{

namespace
{

constexpr int symbolCells = 5; // and one for the digit behind them
constexpr int numberCells = 7;
constexpr int amountCells = 8;

QString cell(const QString &name, int number) { return name + QString::number(number); }

// A digit a cell, the last one in the last.
void addRightAligned(FormRecord &record, const QString &name, const QString &digits, int cells)
{
    const int empty = cells - int(digits.size());
    for (int i = 0; i < digits.size(); ++i)
        record[cell(name, empty + i + 1)] = QString(digits.at(i));
}

void addAccount(FormRecord &record, const TransferAccount &account)
{
    addRightAligned(record, u"記号"_s, account.symbol + account.check, symbolCells + 1);
    addRightAligned(record, u"番号"_s, account.number, numberCells);
}

// The mark keeps a digit from being put before the amount; eight digits leave no room for either.
void addAmount(FormRecord &record, const QString &digits)
{
    const QString marked = digits.size() < amountCells ? u'¥' + digits : digits;
    addRightAligned(record, u"金額"_s, marked, amountCells);
}

// The three parts of a number that is written with them; one that is not stands across their places.
void addTelephone(FormRecord &record, const QString &tel)
{
    static const QRegularExpression between(u"[-()\\s]+"_s);
    const QString plain = text::withPlainHyphens(text::toHalfWidthAscii(tel)).trimmed();
    const QStringList parts = plain.split(between, Qt::SkipEmptyParts);
    if (parts.size() != 3) {
        record[u"依頼人.電話"_s] = plain;
        return;
    }
    for (int part = 1; part <= 3; ++part)
        record[cell(u"依頼人.電話"_s, part)] = parts.at(part - 1);
}

void addPayer(FormRecord &record, const TransferPayer &payer)
{
    if (const auto zip = text::completePostalCode(payer.zip)) {
        record[u"依頼人.郵便番号1"_s] = zip->section(u'-', 0, 0);
        record[u"依頼人.郵便番号2"_s] = zip->section(u'-', 1, 1);
    }
    record[u"依頼人.住所1"_s] = payer.address1;
    record[u"依頼人.住所2"_s] = payer.address2;
    record[u"依頼人.名称1"_s] = payer.name1;
    record[u"依頼人.名称2"_s] = payer.name2;
    addTelephone(record, payer.tel);
}

} // namespace

base::Result<TransferAccount> transferAccount(const QString &typed)
{
    static const QRegularExpression form(
        u"^(\\d{5})(?:\\s*-\\s*|\\s+|)(\\d)(?:\\s*-\\s*|\\s+|)(\\d{1,7})$"_s);
    const QString plain = text::withPlainHyphens(text::toHalfWidthAscii(typed)).trimmed();
    if (plain.isEmpty())
        return base::Error{
            u"口座番号が入力されていません。払込取扱票の口座番号（例：00990-4-313097）を入力してください。"_s};
    if (plain.startsWith(u'1'))
        return base::Error{u"「1」で始まるのは貯金の記号番号で、払込取扱票には使えません。"
                           "「0」で始まる振替口座の番号を入力してください。"_s};
    const auto parts = form.match(plain);
    if (!parts.hasMatch() || !plain.startsWith(u'0') || parts.captured(3).toInt() == 0)
        return base::Error{u"口座番号が正しくありません。「0」で始まる 5 桁、1 桁、7 桁までの数字を"
                           "「-」で区切って入力してください（例：00990-4-313097）。"_s};
    return TransferAccount{parts.captured(1), parts.captured(2), parts.captured(3)};
}

base::Result<QString> transferDigits(double amount)
{
    if (!std::isfinite(amount) || amount > highestTransfer)
        return base::Error{u"金額が 8 桁（99,999,999 円）を超えるため、郵便振替用紙を印刷できません。"_s};
    if (amount <= 0)
        return base::Error{
            u"金額が %1 円のため、郵便振替用紙を印刷できません。"_s.arg(text::formatAmount(amount))};
    if (amount != std::floor(amount))
        return base::Error{u"金額に 1 円未満の端数があるため、郵便振替用紙を印刷できません。"_s};
    return QString::number(qint64(amount));
}

base::Result<TransferPayer> transferPayer(db::Connection &connection, qint64 id)
{
    const auto rows = connection.select(u"SELECT 納品先名1, 納品先名2, 郵便番号, 住所1, 住所2, TEL1 "
                                        "FROM 納品先 WHERE 納品先ID = ?"_s,
                                        {id});
    if (!rows)
        return rows.error();
    if (rows->count() == 0)
        return base::Error{
            .text = u"納品先（ID %1）が削除されているため、郵便振替用紙を印刷できません。"_s.arg(id),
            .gone = true};
    const QVariantList &row = rows->rows.front();
    const auto text = [&row](int column) { return row.at(column).toString(); };
    return TransferPayer{text(0), text(1), text(2), text(3), text(4), text(5)};
}

const printing::FormItems &transferFormItems()
{
    static const printing::FormItems items = [] {
        printing::FormItems all;
        const auto addCells = [&all](const QString &name, int cells) {
            for (int number = 1; number <= cells; ++number)
                all.items[cell(name, number)] = FormItemKind::Text;
        };
        addCells(u"記号"_s, symbolCells + 1);
        addCells(u"番号"_s, numberCells);
        addCells(u"金額"_s, amountCells);
        addCells(u"通信欄"_s, 2);
        for (const QString &name : {u"依頼人.郵便番号"_s, u"依頼人.住所"_s, u"依頼人.名称"_s})
            addCells(name, 2);
        addCells(u"依頼人.電話"_s, 3);
        for (const QString &name : {u"加入者名"_s, u"依頼人.電話"_s})
            all.items[name] = FormItemKind::Text;
        all.shifts = QStringList{u"OderOffsetX"_s, u"OderOffsetY"_s};
        return all;
    }();
    return items;
}

base::Result<printing::FormValues> transferFormValues(const TransferForm &form)
{
    const auto account = transferAccount(form.texts.account);
    if (!account)
        return account.error();
    if (form.texts.payee.trimmed().isEmpty())
        return base::Error{u"加入者名が入力されていません。口座の名義を入力してください。"_s};
    const auto digits = transferDigits(form.amount);
    if (!digits)
        return digits.error();
    printing::FormValues values;
    addAccount(values.items, *account);
    addAmount(values.items, *digits);
    values.items[u"加入者名"_s] = form.texts.payee;
    values.items[u"通信欄1"_s] = form.texts.note1;
    values.items[u"通信欄2"_s] = form.texts.note2;
    addPayer(values.items, form.payer);
    return values;
}

TransferForm transferSpecimen()
{
    return {.payer = {u"依頼人の名称１"_s, u"依頼人の名称２"_s, u"888-8888"_s, u"依頼人の住所１"_s,
                      u"依頼人の住所２"_s, u"888-888-8888"_s},
            .amount = 88'888'888,
            .texts = {u"08888-8-8888888"_s, u"加入者名"_s, u"通信欄１"_s, u"通信欄２"_s}};
}

} // namespace slips
