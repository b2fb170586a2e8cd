#include "db/old_files/old_values.h"

#include <QDate>
#include <QRegularExpression>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace db
{

using old_reader::Cell;

namespace
{

constexpr qint64 moneyUnit = 10'000;

CarriedValue refused(const QString &why) { return {{}, why, false}; }

QString moneyText(qint64 tenThousandths)
{
    // The lowest value has no positive counterpart.
    const auto absolute = tenThousandths < 0 ? quint64(0) - static_cast<quint64>(tenThousandths)
                                             : static_cast<quint64>(tenThousandths);
    return (tenThousandths < 0 ? u"-"_s : QString()) + QString::number(absolute / moneyUnit) + u'.' +
           QString::number(absolute % moneyUnit).rightJustified(4, u'0');
}

// The shortest number that is this one: a Single of 0.1 was entered as 0.1, not as 0.10000000149.
double widened(float value)
{
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size() - 1, value);
    double wide = static_cast<double>(value);
    std::from_chars(digits.data(), end.ptr, wide);
    return wide;
}

CarriedValue realOf(double value)
{
    if (!std::isfinite(value))
        return refused(u"数値として正しくありません"_s);
    return {value, {}, false};
}

CarriedValue wholeOf(double value)
{
    constexpr double beyond = 9'007'199'254'740'992.0; // from here doubles leave out integers
    if (!std::isfinite(value) || std::trunc(value) != value || std::abs(value) >= beyond)
        return refused(u"整数ではありません（%1）"_s.arg(value));
    return {static_cast<qint64>(value), {}, false};
}

CarriedValue numberOf(double value, ColumnKind kind)
{
    return kind == ColumnKind::Integer ? wholeOf(value) : realOf(value);
}

CarriedValue moneyOf(qint64 tenThousandths, ColumnKind kind)
{
    const double value = static_cast<double>(tenThousandths) / static_cast<double>(moneyUnit);
    // Doubles hold four decimals up to hundreds of thousands of millions.
    if (std::abs(value) > 1e14 || std::llround(value * static_cast<double>(moneyUnit)) != tenThousandths)
        return refused(u"金額が大きすぎます（%1）"_s.arg(moneyText(tenThousandths)));
    return numberOf(value, kind);
}

// The old engine counts days from 1899-12-30; the part behind the point is the time of day, before that day
// too.
CarriedValue dateOf(double days)
{
    const double day = std::trunc(days);
    const QDate earliest(100, 1, 1);
    const QDate latest(9999, 12, 31);
    const QDate start(1899, 12, 30);
    if (!std::isfinite(days) || day < static_cast<double>(start.daysTo(earliest)) ||
        day > static_cast<double>(start.daysTo(latest)))
        return refused(u"日付として正しくありません"_s);
    return {start.addDays(static_cast<qint64>(day)).toString(Qt::ISODate), {}, day != days};
}

CarriedValue dateOf(const QString &text)
{
    static const QRegularExpression form(uR"(^\s*(\d{4})[/-](\d{1,2})[/-](\d{1,2})\s*$)"_s);
    const auto match = form.match(text);
    const QDate date(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    if (text.trimmed().isEmpty())
        return {};
    if (!match.hasMatch() || !date.isValid())
        return refused(u"日付として読めません（%1）"_s.arg(text));
    return {date.toString(Qt::ISODate), {}, false};
}

CarriedValue numberOf(const QString &text, ColumnKind kind)
{
    bool isNumber = false;
    const double value = text.trimmed().toDouble(&isNumber);
    if (text.trimmed().isEmpty())
        return {};
    return isNumber ? numberOf(value, kind) : refused(u"数値として読めません（%1）"_s.arg(text));
}

CarriedValue textOf(const OldCell &cell)
{
    // Half of a surrogate pair is no character, and a zero would end the text for every other program.
    const bool isText = cell.text.isValidUtf16() && !cell.text.contains(QChar(0));
    return isText ? CarriedValue{cell.text, {}, false}
                  : refused(u"文字として正しくないものが含まれています"_s);
}

CarriedValue writtenOut(const OldCell &cell)
{
    switch (cell.kind) {
    case Cell::Boolean:
    case Cell::Integer:
        return {QString::number(cell.integer), {}, false};
    case Cell::Money:
        return {moneyText(cell.integer), {}, false};
    case Cell::Single:
    case Cell::Double:
        return {QString::number(cell.real, 'g', QLocale::FloatingPointShortest), {}, false};
    case Cell::Date:
        return dateOf(cell.real);
    default:
        return textOf(cell);
    }
}

} // namespace

ColumnKind columnKind(const QString &column, const QString &type)
{
    static const QStringList dates{u"登録日"_s, u"更新日"_s, u"誕生日"_s,
                                   u"日付"_s,   u"受付日"_s, u"配達日"_s};
    if (type == "INTEGER"_L1)
        return ColumnKind::Integer;
    if (type == "REAL"_L1)
        return ColumnKind::Real;
    return dates.contains(column) ? ColumnKind::Date : ColumnKind::Text;
}

CarriedValue carriedOver(const OldCell &cell, ColumnKind kind)
{
    const bool isText = cell.kind == Cell::Text4 || cell.kind == Cell::Text3;
    switch (cell.kind) {
    case Cell::Null:
        return {};
    case Cell::Unreadable:
        return refused(u"読み取れません"_s);
    case Cell::Other:
        return refused(u"扱えない種類のデータです"_s);
    default:
        break;
    }
    if (kind == ColumnKind::Text)
        return writtenOut(cell);
    if (kind == ColumnKind::Date) {
        if (cell.kind == Cell::Date)
            return dateOf(cell.real);
        return isText ? dateOf(cell.text) : refused(u"日付ではありません"_s);
    }
    switch (cell.kind) {
    case Cell::Boolean:
    case Cell::Integer:
        return kind == ColumnKind::Integer ? CarriedValue{cell.integer, {}, false}
                                           : CarriedValue{static_cast<double>(cell.integer), {}, false};
    case Cell::Money:
        return moneyOf(cell.integer, kind);
    case Cell::Single:
        return numberOf(widened(static_cast<float>(cell.real)), kind);
    case Cell::Double:
        return numberOf(cell.real, kind);
    case Cell::Date:
        return refused(u"数値ではありません"_s);
    default:
        return numberOf(cell.text, kind);
    }
}

} // namespace db
