// Reads the tables of an old file for the program: kanbalore-old-file-reader FILE. A process of its own,
// since the library that reads breaks off or never ends on some damaged files. Ends at once after its last
// frame: the library's clearing up is one more thing that a damaged file can break.
#include "db/old_files/old_reader/confinement.h"
#include "db/old_files/old_reader/table_reader.h"

using namespace db::old_reader;

namespace
{

// The table that lists all tables.
constexpr char catalogName[] = "MSysObjects";

[[noreturn]] void finish(FrameWriter &out, Frame last)
{
    out.begin(last);
    out.end();
    out.send();
    std::_Exit(0);
}

long long sizeOf(const char *fileName)
{
    struct stat status
    {};
    return stat(fileName, &status) == 0 ? status.st_size : -1;
}

// What the old engine deletes keeps its entry for a while, under a name like this.
bool isDeleted(const MdbCatalogEntry &entry) { return entry.object_name[0] == '~'; }

// A table whose entry a damage took away must not pass as one that the file never had.
bool isCatalogWhole(MdbHandle &file)
{
    MdbCatalogEntry *entry = mdb_get_catalogentry_by_name(&file, catalogName);
    const MdbTableDef *catalog = entry ? mdb_read_table(entry) : nullptr;
    return catalog && catalog->num_rows == file.num_catalog;
}

void writeTable(FrameWriter &out, const MdbTableDef &table)
{
    out.begin(Frame::Table);
    out.number<std::uint32_t>(table.num_rows);
    out.number(static_cast<std::uint16_t>(table.num_cols));
    out.text(table.entry->object_name);
    for (unsigned i = 0; i < table.num_cols; ++i)
        out.text(static_cast<const MdbColumn *>(g_ptr_array_index(table.columns, i))->name);
    out.end();
}

// The rows lie in another file, which the earlier program may have shared; this one has a name alone.
void writeLink(FrameWriter &out, const MdbCatalogEntry &entry)
{
    out.begin(Frame::Linked);
    out.text(entry.object_name);
    out.end();
}

std::vector<MdbTableDef *> tablesOf(MdbHandle &file, FrameWriter &out)
{
    std::vector<MdbTableDef *> tables;
    for (guint i = 0; i < file.catalog->len; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(file.catalog, i));
        if (entry->object_type == MDB_LINKED_TABLE && !isDeleted(*entry))
            writeLink(out, *entry);
        if (!mdb_is_user_table(entry) || isDeleted(*entry))
            continue;
        MdbTableDef *table = mdb_read_table(entry);
        if (!table || table->num_cols == 0 || !mdb_read_columns(table))
            finish(out, Frame::Damaged);
        tables.push_back(table);
    }
    return tables;
}

} // namespace

int main(int argc, char *argv[])
{
    const long long size = argc == 2 ? sizeOf(argv[1]) : -1;
    std::FILE *pipe = size >= 0 ? takeOutput() : nullptr;
    if (!pipe || !confine(size))
        return 2;
    FrameWriter out(pipe);
    MdbHandle *file = mdb_open(argv[1], MDB_NOFLAGS);
    if (!file || !mdb_read_catalog(file, MDB_ANY) || !isCatalogWhole(*file))
        finish(out, Frame::Damaged);
    const std::vector<MdbTableDef *> tables = tablesOf(*file, out);
    for (const MdbTableDef *table : tables)
        writeTable(out, *table);
    for (std::size_t i = 0; i < tables.size(); ++i) {
        out.begin(Frame::Begin);
        out.number(static_cast<std::uint32_t>(i));
        out.end();
        TableReader(*file, *tables[i], out).run();
        out.begin(Frame::End);
        out.end();
    }
    finish(out, Frame::Finished);
}
