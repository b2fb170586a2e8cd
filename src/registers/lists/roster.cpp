#include "registers/lists/roster.h"

#include "book/slip_reader.h"
#include "db/connection.h"
#include "registers/customer.h"
#include "text/japanese_order.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace registers
{

namespace
{

constexpr qsizetype blockSize = 500;

struct Column
{
    const char16_t *name; // its heading where no setting holds one
    double millimetres;
    bool usual;
    const char16_t *fields[2]; // one over the other in the cell
    bool stretches = false;
    base::Format format = base::Format::Text;
    bool centred = false;
};

constexpr std::array<Column, rosterColumns> columns{{
    {u"番号", 10, true, {}, false, base::Format::Number},
    {u"コード", 18, false, {u"コード"}},
    {u"納品先名", 44, true, {u"納品先名1", u"納品先名2"}, true},
    {u"敬称", 12, false, {u"敬称"}},
    {u"フリガナ", 28, false, {u"フリガナ"}},
    {u"郵便番号", 16, true, {u"郵便番号"}},
    {u"住所", 50, true, {u"住所1", u"住所2"}, true},
    {u"TEL1", 22, true, {u"TEL1"}},
    {u"TEL2", 22, true, {u"TEL2"}},
    {u"FAX", 22, true, {u"FAX"}},
    {u"メールアドレス", 34, false, {u"メール"}},
    {u"納品先区分", 20, false, {u"区分名"}},
    {u"担当者名", 20, false, {u"担当者名"}},
    {u"締め日", 12, false, {u"締め日"}, false, base::Format::Text, true},
    {u"備考", 40, false, {u"メモ"}, true},
}};

constexpr qsizetype honorificPlace = 3; // which older settings do not know
constexpr std::size_t firstPhone = 7;   // TEL1, TEL2, FAX follow each other

constexpr const char16_t *closingDay = u"締め日";
constexpr const char16_t *honorific = u"敬称";

struct Entry
{
    QString reading;
    QVariantList values; // without the number
};

QString cellText(const db::Rows &rows, int row, const Column &column)
{
    QStringList lines;
    for (const char16_t *field : column.fields) {
        QVariant value = field ? rows.value(row, QString::fromUtf16(field)) : QVariant();
        if (field && value.toString().isEmpty() && QStringView(field) == QStringView(honorific))
            value = honorifics().constFirst(); // as on all paper
        if (value.isNull())
            continue;
        const bool isDay = QStringView(field) == QStringView(closingDay);
        const QString text = isDay ? closingDayNames().value(value.toInt()) : value.toString().trimmed();
        const bool isNone =
            QStringView(field) == QStringView(honorific) && text == QStringView(book::noHonorific);
        if (!text.isEmpty() && !isNone)
            lines << text;
    }
    return lines.join(u'\n');
}

base::Result<std::vector<Entry>> readBlock(db::Connection &connection, const std::vector<qint64> &keys,
                                           std::size_t first, std::size_t end, const RosterOptions &options)
{
    QVariantList bound;
    for (std::size_t i = first; i < end; ++i)
        bound << keys[i];
    const auto rows = connection.select(
        u"SELECT 納品先ID, コード, 納品先名1, 納品先名2, 敬称, フリガナ, 郵便番号, 住所1, 住所2, TEL1, TEL2, "
        u"FAX, "
        u"メール, "
        "メモ, 担当者名, 締め日, 区分名 FROM 納品先 LEFT JOIN 登録区分 ON 納品先.区分ID = 登録区分.区分ID "
        "WHERE 納品先ID IN ("_s +
            QStringList(bound.size(), u"?"_s).join(u',') + u')',
        bound);
    if (!rows)
        return rows.error();
    QHash<qint64, int> places;
    for (int row = 0; row < rows->count(); ++row)
        places.insert(rows->rows[static_cast<std::size_t>(row)].front().toLongLong(), row);
    std::vector<Entry> entries;
    for (std::size_t i = first; i < end; ++i) {
        const auto place = places.constFind(keys[i]);
        if (place == places.constEnd())
            continue;
        Entry &entry = entries.emplace_back();
        entry.reading = rows->value(*place, u"フリガナ"_s).toString();
        for (std::size_t column = 1; column < columns.size(); ++column) {
            if (options.shown[column])
                entry.values << cellText(*rows, *place, columns[column]);
        }
    }
    return entries;
}

std::vector<base::Column> columnsOf(const RosterOptions &options)
{
    std::vector<base::Column> shown;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!options.shown[i])
            continue;
        const bool isPhone = i >= firstPhone && i < firstPhone + options.phoneHeadings.size();
        const QString heading =
            isPhone ? options.phoneHeadings[i - firstPhone] : QString::fromUtf16(columns[i].name);
        base::Column &column = shown.emplace_back(base::Column{heading, columns[i].format});
        column.millimetres = columns[i].millimetres;
        column.stretches = columns[i].stretches;
        column.centred = columns[i].centred;
    }
    return shown;
}

} // namespace

std::array<QString, rosterColumns> rosterColumnNames()
{
    std::array<QString, rosterColumns> names;
    std::transform(columns.begin(), columns.end(), names.begin(),
                   [](const Column &column) { return QString::fromUtf16(column.name); });
    return names;
}

std::array<bool, rosterColumns> rosterColumnsFrom(const QString &stored)
{
    std::array<bool, rosterColumns> shown{};
    QString ticks = stored;
    if (ticks.size() == qsizetype(rosterColumns) - 1)
        ticks.insert(honorificPlace, u'0');
    const bool usable = ticks.size() == qsizetype(rosterColumns) && ticks.contains(u'1');
    for (std::size_t i = 0; i < columns.size(); ++i)
        shown[i] = usable ? ticks[static_cast<qsizetype>(i)] == u'1' : columns[i].usual;
    return shown;
}

QString storedRosterColumns(const std::array<bool, rosterColumns> &shown)
{
    QString stored;
    for (const bool isShown : shown)
        stored += isShown ? u'1' : u'0';
    return stored;
}

base::Result<base::Report> roster(db::Connection &connection, const std::vector<qint64> &keys,
                                  const RosterOptions &options, const base::Progress &progress)
{
    std::vector<Entry> entries;
    for (std::size_t first = 0; first < keys.size(); first += blockSize) {
        if (!progress(static_cast<qint64>(first), static_cast<qint64>(keys.size())))
            return base::cancelled();
        auto block = readBlock(connection, keys, first, std::min<std::size_t>(first + blockSize, keys.size()),
                               options);
        if (!block)
            return block.error();
        std::move(block->begin(), block->end(), std::back_inserter(entries));
    }
    if (options.byReading)
        std::stable_sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
            return text::comesBefore(a.reading, b.reading);
        });
    base::Report report{options.title, u"%1 件"_s.arg(entries.size()), options.title, columnsOf(options)};
    report.rows.reserve(entries.size());
    for (Entry &entry : entries) {
        if (options.shown.front())
            entry.values.prepend(static_cast<qint64>(report.rows.size() + 1));
        report.rows.push_back({std::move(entry.values)});
    }
    return report;
}

} // namespace registers
