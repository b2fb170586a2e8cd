#include "shipping/carriers/tracking_columns.h"

#include "registers/import/import_fields.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr std::size_t mostPreamble = 20; // rows before the headings
constexpr qsizetype mostForms = 8;
constexpr qsizetype longestHeading = 40; // characters

// The field's own name first; then what the carriers' programs call it.
const std::array<QStringList, trackingFieldCount> headings{
    QStringList{u"お客様管理番号"_s, u"お客様側管理番号"_s, u"お客さま管理番号"_s, u"お客さま側管理番号"_s,
                u"お客様管理ナンバー"_s, u"管理番号"_s},
    QStringList{u"送り状番号"_s, u"伝票番号"_s, u"お問い合わせ番号"_s, u"お問い合せ送り状No."_s,
                u"お問合せ送り状No."_s, u"お問い合わせ送り状番号"_s, u"お問い合せ送り状番号"_s,
                u"お問い合わせ伝票番号"_s, u"問い合わせ番号"_s, u"追跡番号"_s},
    QStringList{u"お届け先"_s, u"お届け先名"_s, u"お届け先氏名1"_s, u"お届け先氏名"_s, u"お届け先名称1"_s,
                u"お届け先名称"_s, u"お届け先 氏名"_s}};

// The column with the first of \a names that there is.
qsizetype columnNamed(const QStringList &folded, const QStringList &names)
{
    for (const QString &name : names) {
        if (const qsizetype found = folded.indexOf(registers::foldedHeading(name)); found >= 0)
            return found;
    }
    return -1;
}

QStringList foldedRow(const QStringList &cells)
{
    QStringList folded;
    for (const QString &cell : cells)
        folded << registers::foldedHeading(cell.left(longestHeading));
    return folded;
}

// By what a form is known again: the row above the first parcel, and how many columns there are.
QString formOf(const registers::ImportTable &table, std::size_t firstRow)
{
    const QStringList cells =
        firstRow > 0 && firstRow <= table.rows.size() ? table.rows[firstRow - 1].cells : QStringList();
    return QString::number(table.columns) + u'|' + foldedRow(cells).join(u',').remove(u'\n').remove(u'\r');
}

std::optional<TrackingColumns> columnsFrom(const QString &line, const registers::ImportTable &table)
{
    QList<qsizetype> numbers;
    for (const QString &part : line.section(u'|', 0, 0).split(u' ')) {
        bool isNumber = false;
        numbers << part.toLongLong(&isNumber);
        if (!isNumber)
            return std::nullopt;
    }
    if (numbers.size() != 1 + trackingFieldCount || numbers.front() < 0 ||
        numbers.front() > qsizetype(table.rows.size()))
        return std::nullopt;
    TrackingColumns columns;
    columns.firstRow = std::size_t(numbers.front());
    for (std::size_t field = 0; field < columns.columns.size(); ++field)
        columns.columns[field] = std::clamp<qsizetype>(numbers[1 + qsizetype(field)], -1, table.columns - 1);
    const bool fits = line.section(u'|', 1) == formOf(table, columns.firstRow);
    return fits && columns.lack().isEmpty() ? std::optional(columns) : std::nullopt;
}

} // namespace

QString nameOf(TrackingField field) { return headings[std::size_t(field)].front(); }

QString TrackingColumns::lack() const
{
    for (const TrackingField field : {TrackingField::Management, TrackingField::Number}) {
        if (of(field) < 0)
            return u"「%1」にする列を指定してください。"_s.arg(nameOf(field));
    }
    for (std::size_t one = 0; one < columns.size(); ++one) {
        for (std::size_t other = one + 1; other < columns.size(); ++other) {
            if (columns[one] >= 0 && columns[one] == columns[other])
                return u"「%1」と「%2」に同じ列が指定されています。"_s.arg(nameOf(TrackingField(one)),
                                                                           nameOf(TrackingField(other)));
        }
    }
    return {};
}

std::optional<TrackingColumns> trackingColumnsByHeadings(const registers::ImportTable &table)
{
    for (std::size_t row = 0; row < std::min(mostPreamble, table.rows.size()); ++row) {
        const QStringList folded = foldedRow(table.rows[row].cells);
        TrackingColumns columns;
        columns.firstRow = row + 1;
        for (std::size_t field = 0; field < headings.size(); ++field)
            columns.columns[field] = columnNamed(folded, headings[field]);
        if (columns.lack().isEmpty())
            return columns;
    }
    return std::nullopt;
}

QString withStoredColumns(const QString &stored, const TrackingColumns &columns,
                          const registers::ImportTable &table)
{
    const QString form = formOf(table, columns.firstRow);
    QStringList lines = stored.split(u'\n', Qt::SkipEmptyParts);
    lines.removeIf([&](const QString &line) { return line.section(u'|', 1) == form; });
    QStringList numbers{QString::number(columns.firstRow)};
    for (const qsizetype column : columns.columns)
        numbers << QString::number(column);
    lines.prepend(numbers.join(u' ') + u'|' + form);
    return lines.first(std::min(mostForms, lines.size())).join(u'\n');
}

std::optional<TrackingColumns> columnsFromStored(const QString &stored, const registers::ImportTable &table)
{
    for (const QString &line : stored.split(u'\n', Qt::SkipEmptyParts)) {
        if (const auto columns = columnsFrom(line, table))
            return columns;
    }
    return std::nullopt;
}

} // namespace shipping
