#pragma once

#include "base/result.h"

#include <QByteArray>
#include <QString>

// Changing single measures of a layout file: everything else, explanations included, stays as its owner wrote
// it.
namespace printing
{

/// \a content with the measure \a key ("x"; "label.x" in a table written in braces) of the element whose
/// heading stands on \a line, or of the file itself for line 0, set to \a value. \a measureLine: the line
/// that the measure stands on; 0 where it is not written yet, and it is put below the heading then. Fails,
/// with what to tell, where it is written in a way that only a text editor can change.
base::Result<QByteArray> withMeasure(const QByteArray &content, int line, int measureLine, const QString &key,
                                     double value);

/// \a value as layout files write it: "10.0", "91.385"; no more than thousandths.
QByteArray measureText(double value);

} // namespace printing
