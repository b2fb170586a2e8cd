#include "registers/import/import_rules.h"

#include "book/slip_reader.h"
#include "registers/counterpart.h"
#include "registers/customer.h"
#include "text/cp932.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "text/width.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

// Bytes of the code page.
constexpr int nameWidth = 44;
constexpr int noteWidth = 100;
// Characters. The register sets fields without a printed place no limit; beyond this a file is damaged.
constexpr qsizetype longestText = 255;
constexpr qsizetype longestHonorific = 6; // what is longer is no part of a name on an envelope

ImportValue refused(const QString &why) { return {{}, why}; }

ImportValue fitting(const QString &cell, int bytes)
{
    if (text::cp932Bytes(cell) <= bytes)
        return {cell, {}};
    const QString strangers = text::notInCp932(cell);
    const QString limit = u"全角%1文字、半角%2文字を超えています"_s.arg(bytes / 2).arg(bytes);
    return refused(strangers.isEmpty()
                       ? limit
                       : limit + u"（全角１文字と数える文字：%1）"_s.arg(text::leftCp932(strangers, 20)));
}

ImportValue fittingText(const QString &cell)
{
    return cell.size() <= longestText ? ImportValue{cell, {}}
                                      : refused(u"%1文字を超えています"_s.arg(longestText));
}

// Seven digits get their hyphen; other codes, of other countries or of old, stay as they are.
ImportValue postalCode(const QString &cell)
{
    static const QRegularExpression sevenDigits(uR"(\A〒?([0-9]{3})-?([0-9]{4})\z)"_s);
    QString plain = text::toHalfWidth(cell).replace(u'ｰ', u'-').replace(u'−', u'-').replace(u'‐', u'-');
    plain.removeIf([](QChar c) { return c.isSpace(); });
    const auto match = sevenDigits.match(plain);
    return match.hasMatch() ? ImportValue{match.captured(1) + u'-' + match.captured(2), {}}
                            : fittingText(cell);
}

ImportValue cutTo(const QString &stored, const QString &whole)
{
    return {stored, {}, stored.size() < whole.size()};
}

ImportValue phone(const QString &cell) { return cutTo(normalisedPhone(cell), text::toHalfWidth(cell)); }

ImportValue mail(const QString &cell)
{
    const QString whole = text::toHalfWidth(cell);
    const bool hasScheme = whole.startsWith("mailto:"_L1, Qt::CaseInsensitive);
    return cutTo(normalisedMail(cell), hasScheme ? whole.sliced(7) : whole);
}

// Databases export the day with its time: 2020/04/01 0:00:00.
std::optional<QDate> dayIn(const QString &cell)
{
    const auto day = text::parseDate(cell.trimmed().section(u' ', 0, 0));
    return day ? day : text::parseWrittenDate(cell);
}

ImportValue date(const QString &cell)
{
    const auto day = dayIn(cell);
    return day ? ImportValue{text::stored(*day), {}} : refused(u"日付として読み取れません"_s);
}

ImportValue birthday(const QString &cell)
{
    if (const auto day = dayIn(cell))
        return {text::stored(*day), {}};
    // A day counted by a spreadsheet (45000) means nothing to a person.
    if (text::parseNumber(cell))
        return refused(u"日付として読み取れません"_s);
    return isImpossibleDay(cell) ? refused(u"暦にない日付です"_s) : fittingText(cell);
}

ImportValue category(const QString &cell, const std::vector<masters::Entry> &categories)
{
    const auto number = text::parseInteger(cell);
    for (const masters::Entry &entry : categories) {
        if (number == entry.id)
            return {QString::number(entry.id), {}};
    }
    const QString wanted = nameAsWritten(cell);
    for (const masters::Entry &entry : categories) {
        if (nameAsWritten(entry.name) == wanted)
            return {QString::number(entry.id), {}};
    }
    return refused(u"納品先区分に登録されていません"_s);
}

// The place of \a cell in a list, by number or name.
ImportValue listed(const QString &cell, const QStringList &names)
{
    if (const auto number = text::parseInteger(cell); number && *number >= 0 && *number < names.size())
        return {QString::number(*number), {}};
    for (int place = 0; place < names.size(); ++place) {
        if (nameAsWritten(names.at(place)) == nameAsWritten(cell))
            return {QString::number(place), {}};
    }
    return refused(u"「%1」から「%2」までのどれでもありません"_s.arg(names.first(), names.last()));
}

// 月末, 31 and the 99 of other programs are the month's end; 20日締め is the 20th.
ImportValue closingDay(const QString &cell)
{
    static const QStringList ends{u"末"_s, u"月末"_s, u"末日"_s, u"31"_s, u"99"_s};
    static const QRegularExpression frame(u"^毎月|日?締メ?切?リ?$"_s);
    const QString day = nameAsWritten(cell).remove(frame);
    return ends.contains(day) ? ImportValue{u"0"_s, {}}
                              : listed(QString(day).remove(u"日"_s),
                                       closingDayNames().replaceInStrings(u" 日"_s, QString()));
}

// 外税 alone is what most shops mean by it, added on each delivery.
ImportValue taxClass(const QString &cell)
{
    const QString word = nameAsWritten(cell);
    const bool isAdded =
        word.startsWith(u"外税"_s) || word.startsWith(u"税抜"_s) || word.startsWith(u"税別"_s);
    if (word.startsWith(u"内税"_s) || word.startsWith(u"税込"_s))
        return {u"2"_s, {}};
    if (word.contains(u"請求"_s))
        return {u"1"_s, {}};
    return isAdded ? ImportValue{u"0"_s, {}} : listed(cell, taxClassNames());
}

ImportValue yesNo(const QString &cell)
{
    static const QStringList yes{u"1"_s,    u"-1"_s, u"true"_s, u"yes"_s,  u"ハイ"_s,
                                 u"アリ"_s, u"有"_s, u"○"_s,    u"スル"_s, u"出力スル"_s};
    static const QStringList no{u"0"_s,  u"false"_s, u"no"_s,     u"イイエ"_s,    u"ナシ"_s,
                                u"無"_s, u"×"_s,     u"シナイ"_s, u"出力シナイ"_s};
    const QString answer = nameAsWritten(cell);
    if (yes.contains(answer))
        return {u"1"_s, {}};
    return no.contains(answer) ? ImportValue{u"0"_s, {}} : refused(u"0 か 1 で指定してください"_s);
}

// 殿, 各位 and the like are as good as those that the register offers.
ImportValue honorific(const QString &cell)
{
    static const QStringList none{u"ナシ"_s, u"無"_s, u"無シ"_s, u"敬称ナシ"_s, u"-"_s};
    const QString word = nameAsWritten(cell);
    if (none.contains(word))
        return {QString::fromUtf16(book::noHonorific), {}};
    if (word == u"サマ"_s)
        return {honorifics().constFirst(), {}};
    return cell.trimmed().size() <= longestHonorific
               ? ImportValue{cell.trimmed(), {}}
               : refused(u"%1文字を超えています"_s.arg(longestHonorific));
}

ImportValue key(const QString &cell)
{
    const auto number = text::parseInteger(cell);
    return number && *number > 0 ? ImportValue{QString::number(*number), {}}
                                 : refused(u"番号ではありません"_s);
}

ImportValue byRule(ImportRule rule, const QString &cell, const std::vector<masters::Entry> &categories)
{
    switch (rule) {
    case ImportRule::NameLine:
        return fitting(cell, nameWidth);
    case ImportRule::Note:
        return fitting(cell, noteWidth);
    case ImportRule::Reading:
        return fittingText(text::normalisedReading(cell));
    case ImportRule::PostalCode:
        return postalCode(cell);
    case ImportRule::Phone:
        return phone(cell);
    case ImportRule::Mail:
        return mail(cell);
    case ImportRule::Date:
        return date(cell);
    case ImportRule::Birthday:
        return birthday(cell);
    case ImportRule::Honorific:
        return honorific(cell);
    case ImportRule::Category:
        return category(cell, categories);
    case ImportRule::ClosingDay:
        return closingDay(cell);
    case ImportRule::TaxClass:
        return taxClass(cell);
    case ImportRule::YesNo:
        return yesNo(cell);
    case ImportRule::Key:
        return key(cell);
    case ImportRule::Text:
        break;
    }
    return fittingText(cell);
}

} // namespace

QString plainCell(const QString &cell)
{
    static const QRegularExpression formulaText(uR"re(\A="(.*)"\z)re"_s);
    const QRegularExpressionMatch kept = formulaText.match(cell.trimmed());
    // No box of the register holds more than one line.
    QString line = kept.hasMatch() ? kept.captured(1) : cell;
    line.replace("\r\n"_L1, " "_L1);
    for (QChar &c : line) {
        if (c.category() == QChar::Other_Control)
            c = u' ';
    }
    return line;
}

ImportValue importValue(const ImportField &field, const QString &cell,
                        const std::vector<masters::Entry> &categories)
{
    const QString line = plainCell(cell);
    if (line.trimmed().isEmpty())
        return {};
    ImportValue value = byRule(field.rule, line, categories);
    if (!value.refusal.isEmpty())
        value.refusal = field.column + u"："_s + value.refusal;
    return value;
}

QVariant boundImportValue(int field, const QString &text)
{
    static const QList<ImportRule> numbers{ImportRule::Category, ImportRule::ClosingDay, ImportRule::TaxClass,
                                           ImportRule::YesNo, ImportRule::Key};
    if (text.isEmpty())
        return {};
    return numbers.contains(importFields().at(field).rule) ? QVariant(text.toLongLong()) : QVariant(text);
}

} // namespace registers
