#pragma once

#include <QString>

class QWidget;

namespace app
{

/// The file to work in when \a fileName was chosen: itself, unless it is of the old format. Then the user is
/// told so and asked for the name of a new file, the contents are carried over and what became of them is
/// shown. Empty when nothing came of it; the old file is never changed. \a applicationFolder: the initial
/// file there is no target. Must not be called for the file that is open.
QString openableFile(QWidget *parent, const QString &fileName, const QString &applicationFolder);

} // namespace app
