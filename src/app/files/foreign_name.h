#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

#include <optional>

// Files whose names were given by a system of another encoding. The toolkit knows names as text alone and
// finds no file by bytes that are none.
namespace app
{

/// The path of \a raw with its last part read as Shift-JIS or EUC-JP; none when \a raw is UTF-8, when no file
/// is there, and when neither encoding, or its folder's name, gives a text.
std::optional<QString> readableName(const QByteArray &raw);

/// Renames the file \a raw to \a name. Fails, with nothing changed, where one of that name is there already.
base::Status giveName(const QByteArray &raw, const QString &name);

} // namespace app
