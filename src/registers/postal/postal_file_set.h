#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace registers
{

/// A file by its name in a folder.
struct PostalFile
{
    QString name;
    QByteArray content;
};

/// Puts all of \a files into \a folder, or none: they are written beside the old ones and flushed before the
/// first takes its place, and when one cannot, those before it are put back.
base::Status replaceTogether(const QString &folder, const std::vector<PostalFile> &files);

} // namespace registers
