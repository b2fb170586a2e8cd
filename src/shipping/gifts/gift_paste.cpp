#include "shipping/gifts/gift_paste.h"

#include "tables/csv_reader.h"
#include "text/width.h"

using namespace Qt::StringLiterals;

namespace shipping
{

namespace
{

constexpr std::size_t mostLines = 2000;
constexpr qsizetype mostFields = 64;
constexpr qsizetype fewestHeadings = 2; // that make a first line one of headings

// What lists of addresses call their columns; the longer names first, as the shorter ones are in them.
std::optional<GiftColumn> columnCalled(const QString &heading)
{
    static const std::vector<std::pair<QString, GiftColumn>> names{
        {u"郵便"_s, GiftColumn::Zip},       {u"〒"_s, GiftColumn::Zip},
        {u"住所2"_s, GiftColumn::Address2}, {u"建物"_s, GiftColumn::Address2},
        {u"住所"_s, GiftColumn::Address1},  {u"電話"_s, GiftColumn::Tel},
        {u"TEL"_s, GiftColumn::Tel},        {u"名前2"_s, GiftColumn::Name2},
        {u"届先名2"_s, GiftColumn::Name2},  {u"部署"_s, GiftColumn::Name2},
        {u"品名"_s, GiftColumn::Goods},     {u"商品"_s, GiftColumn::Goods},
        {u"価格"_s, GiftColumn::Price},     {u"単価"_s, GiftColumn::Price},
        {u"送料"_s, GiftColumn::Carriage},  {u"時間"_s, GiftColumn::TimeSlot},
        {u"配達"_s, GiftColumn::Delivery},  {u"クール"_s, GiftColumn::Cooling},
        {u"名入れ"_s, GiftColumn::Memo2},   {u"のし"_s, GiftColumn::Memo1},
        {u"届先名"_s, GiftColumn::Name1},   {u"届け先"_s, GiftColumn::Name1},
        {u"氏名"_s, GiftColumn::Name1},     {u"名前"_s, GiftColumn::Name1},
        {u"宛名"_s, GiftColumn::Name1}};
    const QString word = text::toHalfWidthAscii(heading).toUpper();
    for (const auto &[name, column] : names) {
        if (word.contains(name))
            return column;
    }
    return std::nullopt;
}

// Which field of a line is what; those that are nothing are left out.
using Mapping = QMap<qsizetype, GiftColumn>;

Mapping headingsIn(const QStringList &record)
{
    Mapping mapping;
    for (qsizetype field = 0; field < record.size(); ++field) {
        const auto column = columnCalled(record.at(field));
        if (column && !mapping.values().contains(*column))
            mapping.insert(field, *column);
    }
    return mapping.size() >= fewestHeadings ? mapping : Mapping();
}

base::Result<Mapping> mappingFrom(GiftColumn first, qsizetype fields)
{
    const int begin = std::max(int(first), int(GiftColumn::Name1));
    const int room = int(GiftColumn::State) - begin;
    if (fields > room)
        return base::Error{u"%1 列を貼り付けようとしましたが、ここから右には %2 列しかありません。"
                           "貼り付けていません。"_s.arg(fields)
                               .arg(std::max(0, room))};
    Mapping mapping;
    for (qsizetype field = 0; field < fields; ++field)
        mapping.insert(field, static_cast<GiftColumn>(begin + int(field)));
    return mapping;
}

base::Result<std::vector<QStringList>> recordsIn(const QString &text)
{
    tables::CsvReader reader(text, text.contains(u'\t') ? u'\t' : u',');
    reader.limitFields(mostFields);
    std::vector<QStringList> records;
    QStringList record;
    while (reader.next(record)) {
        if (records.size() > mostLines)
            return base::Error{u"一度に貼り付けられるのは %1 行までです。"_s.arg(mostLines)};
        records.push_back(record);
    }
    return records;
}

base::Error at(std::size_t line, GiftColumn column, const QString &why)
{
    return {u"貼り付ける %1 行目の「%2」: %3\n何も貼り付けていません。"_s.arg(line + 1).arg(
        lookOf(column).heading, why)};
}

} // namespace

base::Result<std::vector<PastedLine>> pastedCells(const QString &text, GiftColumn first)
{
    const auto records = recordsIn(text);
    if (!records)
        return records.error();
    if (records->empty())
        return std::vector<PastedLine>();
    const Mapping headings = headingsIn(records->front());
    std::vector<PastedLine> lines;
    for (std::size_t i = headings.isEmpty() ? 0 : 1; i < records->size(); ++i) {
        const QStringList &record = (*records)[i];
        const auto mapping =
            headings.isEmpty() ? mappingFrom(first, record.size()) : base::Result<Mapping>(headings);
        if (!mapping)
            return mapping.error();
        PastedLine line;
        for (auto field = mapping->cbegin(); field != mapping->cend(); ++field)
            line.insert(field.value(), record.value(field.key()));
        lines.push_back(std::move(line));
    }
    return lines;
}

base::Result<std::vector<GiftRow>> pastedInto(const GiftOrder &order, int row,
                                              const std::vector<PastedLine> &lines)
{
    std::vector<GiftRow> rows = order.rows;
    std::size_t place = std::min(std::size_t(std::max(0, row)), rows.size());
    for (std::size_t i = 0; i < lines.size(); ++i, ++place) {
        if (place == rows.size())
            rows.emplace_back();
        if (rows[place].issued)
            return base::Error{u"%1 行目は発行済みです。何も貼り付けていません。"_s.arg(place + 1)};
        for (auto cell = lines[i].cbegin(); cell != lines[i].cend(); ++cell) {
            const base::Status taken = enterCell(rows[place], cell.key(), cell.value(), order.accepted);
            if (!taken)
                return at(i, cell.key(), taken.error().text);
        }
    }
    return rows;
}

} // namespace shipping
