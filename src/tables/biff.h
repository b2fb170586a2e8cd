#pragma once

#include <QByteArray>
#include <QStringView>
#include <QtEndian>

#include <initializer_list>
#include <type_traits>

// The records of which a BIFF8 workbook consists: a number, the length of the content, and the content, all
// little-endian.
namespace tables::biff
{

/// The most bytes that a record may hold; more go into CONTINUE records behind it.
inline constexpr qsizetype longestRecord = 8224;

enum Record : quint16 {
    Eof = 0x000A,
    DateMode = 0x0022,
    Continue = 0x003C,
    Font = 0x0031,
    Window1 = 0x003D,
    Pane = 0x0041,
    CodePage = 0x0042,
    ColInfo = 0x007D,
    BoundSheet = 0x0085,
    Xf = 0x00E0,
    SharedStrings = 0x00FC,
    LabelSst = 0x00FD,
    Dimensions = 0x0200,
    Number = 0x0203,
    Window2 = 0x023E,
    Style = 0x0293,
    Format = 0x041E,
    Selection = 0x001D,
    Bof = 0x0809,
};

/// Bytes that grow value by value.
class Bytes
{
public:
    template <class Value>
    requires std::is_arithmetic_v<Value> Bytes &add(Value value)
    {
        const Value little = qToLittleEndian(value);
        m_bytes.append(reinterpret_cast<const char *>(&little), sizeof little);
        return *this;
    }
    Bytes &add(std::initializer_list<quint16> values)
    {
        for (const quint16 value : values)
            add(value);
        return *this;
    }
    /// A text as one byte or two a character; nothing tells its length.
    Bytes &addCharacters(QStringView text, bool wide);

    [[nodiscard]] qsizetype size() const { return m_bytes.size(); }
    [[nodiscard]] const QByteArray &content() const { return m_bytes; }
    void clear() { m_bytes.resize(0); }

private:
    QByteArray m_bytes;
};

/// Whether \a text needs two bytes a character.
bool isWide(QStringView text);

/// A whole record, its head before the content.
QByteArray record(Record number, const Bytes &content);

/// What the workbook (\a kind 0x0005) and a sheet (0x0010) begin with.
Bytes beginning(quint16 kind);

/// The workbook's records before its shared strings: fonts, number formats, looks of cells and the one sheet
/// "Sheet1", which begins behind \a stringsSize bytes of shared strings and the record Eof.
QByteArray workbookHead(qint64 stringsSize);

/// Numbers of the cell looks that workbookHead() declares.
enum Look : quint16 { PlainLook = 15, DateLook = 16, HeadingLook = 17, TextLook = 18 };

} // namespace tables::biff
