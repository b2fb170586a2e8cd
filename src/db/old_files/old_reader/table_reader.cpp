#include "db/old_files/old_reader/table_reader.h"

#include <algorithm>
#include <array>
#include <memory>

namespace db::old_reader
{

namespace
{

// A row's entry in its page: the offset and two flags. Both flags together: the row was deleted.
constexpr int offsetMask = 0x1fff;
constexpr int movedAway = 0x4000;   // a pointer stands here; the row outgrew its page
constexpr int movedHither = 0x8000; // a row that such a pointer means

// The head of a long text: length in 24 bits, flags, place of its first piece.
constexpr std::size_t longTextHead = 12;
constexpr std::uint32_t lengthMask = 0x00ffffff;
constexpr std::uint32_t inTheRow = 0x80000000;
constexpr std::uint32_t inOnePiece = 0x40000000;

template <class T>
T numberAt(const unsigned char *bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

std::string_view bytesOf(const unsigned char *bytes, std::size_t size)
{
    return {reinterpret_cast<const char *>(bytes), size};
}

} // namespace

TableReader::TableReader(MdbHandle &file, MdbTableDef &table, FrameWriter &out)
    : m_file(file)
    , m_table(table)
    , m_out(out)
    , m_fields(table.num_cols)
{}

Cell TableReader::textKind() const
{
    return m_file.f->jet_version == MDB_VER_JET3 ? Cell::Text3 : Cell::Text4;
}

void TableReader::run()
{
    mdb_rewind_table(&m_table);
    while (mdb_read_next_dpg(&m_table))
        readPage();
    readUnclaimed();
}

void TableReader::readPage()
{
    const int rows = mdb_get_int16(m_file.pg_buf, m_file.fmt->row_count_offset);
    for (int row = 0; row < rows; ++row) {
        int start = 0;
        std::size_t size = 0;
        if (mdb_find_row(&m_file, row, &start, &size) != 0)
            continue;
        const bool away = (start & movedAway) != 0;
        const bool hither = (start & movedHither) != 0;
        if (away && !hither && size >= sizeof(Place))
            readMoved(start & offsetMask);
        else if (hither && !away)
            m_targets.push_back(static_cast<Place>(m_file.cur_pg << 8 | static_cast<Place>(row)));
        else if (!away && size > 0)
            readRow(start & offsetMask, size);
    }
}

// The row is sent from the place of its pointer: slip lines are in the order in which they were entered.
void TableReader::readMoved(int pointerAt)
{
    const auto place = numberAt<Place>(m_file.pg_buf + pointerAt);
    if (!m_claimed.insert(place).second)
        return;
    const auto page = std::to_array(m_file.pg_buf);
    const auto number = m_file.cur_pg;
    int start = 0;
    std::size_t size = 0;
    if (mdb_read_pg(&m_file, place >> 8) == m_file.fmt->pg_size && m_file.pg_buf[0] == MDB_PAGE_DATA &&
        static_cast<unsigned long>(mdb_get_int32(m_file.pg_buf, 4)) == m_table.entry->table_pg &&
        mdb_find_row(&m_file, static_cast<int>(place & 0xff), &start, &size) == 0 && size > 0)
        readRow(start & offsetMask, size);
    std::copy(page.begin(), page.end(), m_file.pg_buf);
    m_file.cur_pg = number;
}

// A row that was moved and that no pointer means is what a deletion left, unless rows are missing.
void TableReader::readUnclaimed()
{
    if (m_rows >= m_table.num_rows)
        return;
    for (const Place place : m_targets) {
        int start = 0;
        std::size_t size = 0;
        if (!m_claimed.contains(place) && mdb_read_pg(&m_file, place >> 8) == m_file.fmt->pg_size &&
            mdb_find_row(&m_file, static_cast<int>(place & 0xff), &start, &size) == 0 && size > 0)
            readRow(start & offsetMask, size);
    }
}

void TableReader::readRow(int start, std::size_t size)
{
    if (mdb_crack_row(&m_table, start, size, m_fields.data()) < 0)
        return;
    m_out.begin(Frame::Row);
    // The row names its fields in an order of its own.
    std::vector<const MdbField *> byColumn(m_table.num_cols);
    for (const MdbField &field : m_fields) {
        if (field.colnum >= 0 && static_cast<unsigned>(field.colnum) < m_table.num_cols)
            byColumn[static_cast<std::size_t>(field.colnum)] = &field;
    }
    for (unsigned i = 0; i < m_table.num_cols; ++i) {
        const auto &column = *static_cast<const MdbColumn *>(g_ptr_array_index(m_table.columns, i));
        if (byColumn[i])
            writeCell(column, *byColumn[i]);
        else
            m_out.cell(Cell::Unreadable);
    }
    m_out.end();
    ++m_rows;
}

void TableReader::writeCell(const MdbColumn &column, const MdbField &field)
{
    if (column.col_type == MDB_BOOL) { // its value is the mark that others have for NULL
        m_out.cell(Cell::Boolean);
        m_out.number<std::uint8_t>(field.is_null ? 0 : 1);
        return;
    }
    if (field.is_null) {
        m_out.cell(Cell::Null);
        return;
    }
    if (field.start < 0 || field.siz < 0 || field.start + field.siz > m_file.fmt->pg_size) {
        m_out.cell(Cell::Unreadable);
        return;
    }
    writeValue(column, field);
}

void TableReader::writeValue(const MdbColumn &column, const MdbField &field)
{
    const unsigned char *bytes = m_file.pg_buf + field.start;
    const auto size = static_cast<std::size_t>(field.siz);
    switch (column.col_type) {
    case MDB_BYTE:
        return writeNumber<std::uint8_t, std::int32_t>(Cell::Integer, bytes, size);
    case MDB_INT:
        return writeNumber<std::int16_t, std::int32_t>(Cell::Integer, bytes, size);
    case MDB_LONGINT:
        return writeNumber<std::int32_t>(Cell::Integer, bytes, size);
    case MDB_MONEY:
        return writeNumber<std::int64_t>(Cell::Money, bytes, size);
    case MDB_FLOAT:
        return writeNumber<float>(Cell::Single, bytes, size);
    case MDB_DOUBLE:
        return writeNumber<double>(Cell::Double, bytes, size);
    case MDB_DATETIME:
        return writeNumber<double>(Cell::Date, bytes, size);
    case MDB_TEXT:
        m_out.cell(textKind());
        return m_out.text(bytesOf(bytes, size));
    case MDB_MEMO:
        return writeLongText(bytes, size);
    case MDB_NUMERIC:
        return writeDigits(column, field);
    default:
        return m_out.cell(Cell::Other);
    }
}

template <class Stored, class Sent>
void TableReader::writeNumber(Cell kind, const unsigned char *bytes, std::size_t size)
{
    const bool isWhole = size >= sizeof(Stored);
    m_out.cell(isWhole ? kind : Cell::Unreadable);
    if (isWhole)
        m_out.number<Sent>(numberAt<Stored>(bytes));
}

void TableReader::writeDigits(const MdbColumn &column, const MdbField &field)
{
    const std::unique_ptr<char, void (*)(void *)> digits(
        mdb_numeric_to_string(&m_file, field.start, column.col_scale, column.col_prec), g_free);
    m_out.cell(digits ? Cell::Digits : Cell::Unreadable);
    if (digits)
        m_out.text(digits.get());
}

void TableReader::writeLongText(const unsigned char *head, std::size_t size)
{
    if (size < longTextHead) {
        m_out.cell(Cell::Unreadable);
        return;
    }
    const auto lengthAndFlags = numberAt<std::uint32_t>(head);
    const std::size_t length = lengthAndFlags & lengthMask;
    auto place = numberAt<Place>(head + sizeof lengthAndFlags);
    std::string text;
    bool whole = true;
    if (lengthAndFlags & inTheRow) {
        text = bytesOf(head + longTextHead, size - longTextHead);
    } else if (lengthAndFlags & inOnePiece) {
        whole = appendPiece(place, 0, text, nullptr);
    } else {
        // A damaged chain may run in a circle; the length ends it, and no piece is empty.
        while (whole && place != 0 && text.size() < length)
            whole = appendPiece(place, sizeof(Place), text, &place);
        whole = whole && place == 0;
    }
    if (!whole || text.size() < length) {
        m_out.cell(Cell::Unreadable);
        return;
    }
    m_out.cell(textKind());
    m_out.text(std::string_view(text).substr(0, length));
}

bool TableReader::appendPiece(Place place, std::size_t skipped, std::string &into, Place *next)
{
    void *page = nullptr;
    int start = 0;
    std::size_t size = 0;
    if (mdb_find_pg_row(&m_file, static_cast<int>(place), &page, &start, &size) != 0 || size <= skipped)
        return false;
    const unsigned char *bytes = static_cast<const unsigned char *>(page) + start;
    into.append(bytesOf(bytes + skipped, size - skipped));
    if (next)
        *next = numberAt<Place>(bytes);
    return true;
}

} // namespace db::old_reader
