#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

namespace tables
{

/// Text as other programs write it: UTF-8 with or without its mark, UTF-16 with its mark ("Unicode text" of
/// spreadsheet programs), else the system's Japanese code page. Fails for what is none of them.
base::Result<QString> decodeText(const QByteArray &content);

/// The text of a whole file of at most \a highestSize bytes.
base::Result<QString> readTextFile(const QString &fileName, qint64 highestSize);

} // namespace tables
