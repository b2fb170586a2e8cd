#pragma once

#include <cstdint>

// What the reader of old files and the program say to each other over a pipe. Every frame is its kind (1
// byte), the length of its content (4 bytes) and the content; all numbers are little-endian, names are UTF-8.
namespace db::old_reader
{

/// The file name of the reader's program.
inline constexpr char programName[] = "kanbalore-old-file-reader";

enum class Frame : std::uint8_t {
    Table = 'T',    ///< rows its head declares (u32), number of columns (u16), name, names of the columns
    Linked = 'L',   ///< name of a table whose rows lie in another file; among the Table frames
    Begin = 'B',    ///< index of the table whose rows follow (u32), in the order of the Table frames
    Row = 'R',      ///< a cell for each column
    End = 'E',      ///< that was the last row of the table
    Damaged = 'D',  ///< the file cannot be read; nothing follows
    Finished = 'F', ///< that was the file
};

/// The kind of a cell (1 byte) and what follows it.
enum class Cell : std::uint8_t {
    Null = 'n',
    Boolean = 'b',    ///< u8
    Integer = 'i',    ///< i32
    Money = 'm',      ///< i64, in ten-thousandths
    Single = 's',     ///< float, 4 bytes
    Double = 'd',     ///< 8 bytes
    Date = 't',       ///< double, days since 1899-12-30
    Digits = 'g',     ///< u32 length, decimal number as ASCII
    Text4 = 'u',      ///< u32 length, text as Jet 4 stores it: UTF-16, perhaps compressed
    Text3 = 'c',      ///< u32 length, text in the system's multi-byte code page
    Other = 'o',      ///< of a type that has no place in this program
    Unreadable = 'x', ///< a long text whose pieces do not fit together
};

inline constexpr std::uint32_t frameHeadSize = 5;
/// A row has at most 255 columns; a long text at most 16 MiB.
inline constexpr std::uint32_t longestFrame = 64U << 20;

} // namespace db::old_reader
