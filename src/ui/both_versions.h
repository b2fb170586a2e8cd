#pragma once

#include "base/result.h"

#include <QList>
#include <QVariant>

#include <functional>

class QWidget;

namespace db
{
class Recordset;
}

namespace ui
{

/// What a value of a column is called on the screen; empty where it stands there as it is stored.
using ValueWords = std::function<QString(const QString &column, const QVariant &value)>;

/// Saves the edits of the current rows of \a rows by \a save. Where another program changed one of them
/// meanwhile, the clerk is shown both versions and chooses: what was typed is saved over the other's row, or
/// dropped for it, or she goes on editing. \a words tells values that are numbers for something.
/// \return what came of it; a cancellation without a text when she goes on editing
base::Status saveBesideOthers(QWidget *parent, const QList<db::Recordset *> &rows,
                              const std::function<base::Status()> &save, const ValueWords &words = {});

} // namespace ui
