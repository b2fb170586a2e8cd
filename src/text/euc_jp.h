#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace text
{

/// The text of EUC-JP bytes (with the additions of JIS X 0213), or nothing when they are malformed or the
/// system knows no converter.
std::optional<QString> fromEucJp(const QByteArray &bytes);

} // namespace text
