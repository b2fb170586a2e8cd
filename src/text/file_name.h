#pragma once

#include <QString>

// Names of files made of what people typed.
namespace text
{

/// \a typed as a part of a name whose parts are joined with "_": what some file system does not take, what
/// cannot be seen and the "_" itself become "-".
QString fileNamePart(const QString &typed);

/// \a name without what is beyond \a bytes in UTF-8; characters stay whole.
QString cutToBytes(const QString &name, qsizetype bytes);

} // namespace text
