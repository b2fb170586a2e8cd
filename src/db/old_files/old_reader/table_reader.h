#pragma once

#include "db/old_files/old_reader/frame_writer.h"

#include <mdbtools.h>

#include <unordered_set>
#include <vector>

namespace db::old_reader
{

/// Sends the rows of one table in the order in which they were entered.
class TableReader
{
public:
    TableReader(MdbHandle &file, MdbTableDef &table, FrameWriter &out);

    void run();

private:
    /// Where a row lies, as the file itself writes it: page in the upper three bytes, row in the lowest.
    using Place = std::uint32_t;

    void readPage();
    void readMoved(int pointerAt);
    void readUnclaimed();
    void readRow(int start, std::size_t size);
    void writeCell(const MdbColumn &column, const MdbField &field);
    void writeValue(const MdbColumn &column, const MdbField &field);
    template <class Stored, class Sent = Stored>
    void writeNumber(Cell kind, const unsigned char *bytes, std::size_t size);
    void writeDigits(const MdbColumn &column, const MdbField &field);
    void writeLongText(const unsigned char *head, std::size_t size);
    [[nodiscard]] bool appendPiece(Place place, std::size_t skipped, std::string &into, Place *next);
    [[nodiscard]] Cell textKind() const;

    MdbHandle &m_file;
    MdbTableDef &m_table;
    FrameWriter &m_out;
    std::vector<MdbField> m_fields;
    std::unordered_set<Place> m_claimed;
    std::vector<Place> m_targets;
    std::uint32_t m_rows = 0;
};

} // namespace db::old_reader
