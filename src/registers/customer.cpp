#include "registers/customer.h"

#include "book/slip_counts.h"
#include "book/slip_reader.h"
#include "db/condition.h"
#include "db/connection.h"
#include "db/keys.h"
#include "db/recordset.h"
#include "db/transaction.h"
#include "registers/counterpart.h"
#include "text/dates.h"
#include "text/width.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// Lengths in characters.
constexpr int phoneLength = 15;
constexpr int mailLength = 50;

// The one served last first; of the rows of one day, those of one reading in the order of the search keys.
db::Query customersWhere(const QString &condition, const QVariantList &values)
{
    return {.table = u"納品先"_s,
            .where = condition,
            .order = {u"更新日 DESC"_s, u"フリガナ"_s, u"納品先名キー"_s},
            .values = values};
}

// A voiced kana becomes two characters, so the text is cut again after the conversion.
QString halfWidth(const QString &text, int count)
{
    return firstCharacters(text::toHalfWidth(firstCharacters(text, count)), count);
}

void storeForms(db::Recordset &customers)
{
    for (const QString &column : {u"TEL1"_s, u"TEL2"_s, u"FAX"_s}) {
        if (customers.isEdited(column))
            customers.setValue(column, normalisedPhone(customers.text(column)));
    }
    if (customers.isEdited(u"メール"_s))
        customers.setValue(u"メール"_s, normalisedMail(customers.text(u"メール"_s)));
    if (customers.isEdited(u"フリガナ"_s))
        customers.setValue(u"フリガナ"_s, text::normalisedReading(customers.text(u"フリガナ"_s)));
}

QString keyOf(const db::Recordset &customer)
{
    return customerKey(customer.text(u"納品先名1"_s), customer.text(u"納品先名2"_s),
                       customer.text(u"コード"_s), customer.text(u"TEL1"_s), customer.text(u"フリガナ"_s));
}

// What was there before stays until somebody works on it.
std::optional<Refusal> birthdayRefusal(const db::Recordset &customers)
{
    const QString typed = customers.text(u"誕生日"_s);
    if (!customers.isEdited(u"誕生日"_s) || !isImpossibleDay(typed))
        return std::nullopt;
    return Refusal{
        u"誕生日「%1」は暦にない日付です。\n1980/2/3、S55.2.3、昭和55年2月3日のように入力してください。"_s
            .arg(typed),
        u"誕生日"_s};
}

} // namespace

QString customerKey(const QString &name1, const QString &name2, const QString &code, const QString &tel1,
                    const QString &reading)
{
    return counterpartKey(name1, name2, {code, tel1, reading});
}

QString normalisedPhone(const QString &typed)
{
    return halfWidth(text::withPlainHyphens(typed), phoneLength);
}

QString normalisedMail(const QString &typed)
{
    const auto scheme = "mailto:"_L1;
    const QString address = typed.startsWith(scheme, Qt::CaseInsensitive) ? typed.mid(scheme.size()) : typed;
    return halfWidth(address, mailLength);
}

bool isImpossibleDay(const QString &typed)
{
    return text::isWrittenAsDay(typed) && !text::parseAnyDate(typed);
}

std::optional<QUrl> mailLink(const QString &address)
{
    static const QRegularExpression plain(uR"(\A[A-Za-z0-9.!#$'*+/=^_`{|}~-]+@[A-Za-z0-9.-]+\z)"_s);
    if (!plain.match(address).hasMatch())
        return std::nullopt;
    QUrl link;
    link.setScheme(u"mailto"_s);
    link.setPath(address, QUrl::DecodedMode);
    return link;
}

QStringList closingDayNames()
{
    QStringList names{u"末日"_s};
    for (int day = 1; day <= 30; ++day)
        names << QString::number(day) + u" 日"_s;
    return names;
}

QStringList honorifics() { return {u"様"_s, u"御中"_s, u"先生"_s, QString::fromUtf16(book::noHonorific)}; }

base::Status openEveryCustomer(db::Recordset &customers) { return customers.open(customersWhere({}, {})); }

base::Result<bool> openCustomersLike(db::Recordset &customers, const QString &text)
{
    const db::Condition holds = db::keyHolds(u"納品先名キー"_s, text);
    return customers.openIfAny(customersWhere(holds.sql, holds.values));
}

base::Status openCustomer(db::Recordset &customers, qint64 id)
{
    return customers.open(customersWhere(u"(納品先ID = ?)"_s, {id}));
}

base::Result<qint64> addCustomer(db::Connection &connection, const QDate &today)
{
    return db::atomically(connection, [&]() -> base::Result<qint64> {
        const auto next = db::nextKey(connection, u"納品先"_s);
        const auto key = next ? book::keyWithoutSlips(connection, book::Party::Customer, *next) : next;
        if (!key)
            return key;
        const QString date = text::stored(today);
        const auto added =
            connection.execute(u"INSERT INTO 納品先 (納品先ID, 登録日, 更新日, 元帳出力, 消費税区分, 版) "
                               "VALUES (?, ?, ?, 0, 0, (SELECT 最終 FROM 版数))"_s,
                               {*key, date, date});
        return added ? key : added.error();
    });
}

base::Status openForEntry(db::Recordset &customers, qint64 id)
{
    const base::Status opened = customers.open({.table = u"納品先"_s, .order = {u"納品先ID"_s}});
    return opened ? customers.moveToKey(id) : opened;
}

std::optional<Refusal> customerRefusal(const db::Recordset &customers,
                                       const std::vector<masters::Entry> &categories)
{
    // The blanks give these two short messages the width of a message box.
    if (customers.text(u"納品先名1"_s).trimmed().isEmpty())
        return Refusal{u"納品先名が入力されていません。               "_s, u"納品先名1"_s};
    const QVariant category = customers.value(u"区分ID"_s);
    const bool known =
        std::any_of(categories.cbegin(), categories.cend(), [&](const masters::Entry &candidate) {
            return !category.isNull() && candidate.id == category.toLongLong();
        });
    if (!known)
        return Refusal{u"納品先区分が入力されていません。               "_s, u"区分ID"_s};
    return birthdayRefusal(customers);
}

std::optional<Refusal> rosterRefusal(const db::Recordset &customers,
                                     const std::vector<masters::Entry> &categories)
{
    const QString sentence = u"入力漏れがあります。"_s;
    if (const auto refusal = customerRefusal(customers, categories))
        return refusal->column == u"誕生日"_s ? *refusal : Refusal{sentence, refusal->column};
    if (customers.text(u"郵便番号"_s).trimmed().isEmpty())
        return Refusal{sentence, u"郵便番号"_s};
    return std::nullopt;
}

base::Status saveCustomer(db::Recordset &customers, const QDate &today)
{
    storeForms(customers);
    return saveCounterpart(customers, u"納品先名キー"_s, keyOf, {{u"更新日"_s, text::stored(today)}});
}

base::Status saveNewCustomer(db::Recordset &customers, const QDate &today)
{
    storeForms(customers);
    QVariantMap values{{u"更新日"_s, text::stored(today)}};
    if (customers.text(u"締め日"_s).isEmpty())
        values.insert(u"締め日"_s, 0);
    return saveCounterpart(customers, u"納品先名キー"_s, keyOf, values);
}

base::Status saveCategory(db::Connection &connection, db::Recordset &customers, qint64 category)
{
    const base::Status saved = db::atomically(connection, [&]() -> base::Status {
        if (const base::Status same = customers.checkAsRead(); !same)
            return same;
        const auto version = db::nextVersion(connection);
        if (!version)
            return version.error();
        return connection
            .execute(u"UPDATE 納品先 SET 区分ID = ?, 版 = ? WHERE 納品先ID = ?"_s,
                     {category, *version, customers.currentKey()})
            .status();
    });
    if (saved || saved.error().changed)
        customers.refresh();
    if (!saved && saved.error().gone)
        return base::Error{u"表示中の納品先はほかのプログラムで削除されたため、保存できませんでした。"_s};
    return saved;
}

base::Result<bool> codeIsShared(db::Connection &connection, const db::Recordset &customers)
{
    const QString code = customers.text(u"コード"_s);
    if (code.isEmpty())
        return false;
    // The row on the screen has the code whether it is saved already or not, so one other row is enough.
    const auto keys = connection.integers(u"SELECT 納品先ID FROM 納品先 WHERE コード = ? LIMIT 2"_s, {code});
    if (!keys)
        return keys.error();
    return std::any_of(keys->cbegin(), keys->cend(),
                       [&](qint64 key) { return key != customers.currentKey(); });
}

} // namespace registers
