#pragma once

#include "printing/queue/print_system.h"

#include <QSizeF>
#include <QString>

// What queues say, in the clerk's words.
namespace printing
{

/// A bin by the name that the system gives it ("manual", "tray-1"); one that is not known as it stands.
QString binInWords(const QString &bin);

/// "A4" or "幅 241.3 × 長さ 114.3 mm", as it is fed.
QString paperInWords(const QSizeF &paper);

QString stateInWords(JobState state);

} // namespace printing
