#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace text
{

/// The text of ISO-2022-JP bytes, in which mail programs and old host systems write: seven bits, the sets of
/// characters changed by escape sequences, every line beginning in ASCII. The vendors' additions (①㈱) and
/// half-width kana count too. Nothing when the bytes are malformed or have eight bits.
std::optional<QString> fromIso2022Jp(const QByteArray &bytes);

} // namespace text
