#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The system's multi-byte code page (Windows code page 932, Shift-JIS with the vendors' additions).
namespace text
{

/// Length of \a s in bytes of CP932: full-width characters 2, half-width ones 1. A character that has
/// no place in the code page (an emoji, 𠮷) counts 2, as it takes the room of a full-width one in print.
int cp932Bytes(QStringView s);

/// The characters of \a s that have no place in CP932, each once, in their order of appearance.
QString notInCp932(QStringView s);

/// \a s in CP932, or nothing when a character has no place there.
std::optional<QByteArray> toCp932(QStringView s);

/// The text of CP932 bytes, or nothing when the bytes are malformed.
std::optional<QString> fromCp932(const QByteArray &bytes);

/// The longest head of \a s that takes at most \a bytes in CP932; never splits a surrogate pair.
QString leftCp932(QStringView s, int bytes);

} // namespace text
